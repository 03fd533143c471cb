"""What the tests share: every card file at hand, and what pxcard makes of one."""
import glob
import json
import os
import re
import subprocess

os.environ["LC_ALL"] = "C"  # errors are compared in English

ROOT = os.path.join(os.path.dirname(__file__), "..", "..")
FOLDERS = [os.path.join(ROOT, "samples"), os.path.join(ROOT, "tests", "cards"),
           os.environ.get("PX_CORPUS", "")]
FILES = [os.path.realpath(path) for folder in FOLDERS if folder
         for path in sorted(glob.glob(folder + "/*.[vi]c[sf]"))]


def pxcard(path):
    """The lines of JSON, the error or None, and the faults."""
    ran = subprocess.run([os.environ["PXCARD"], "--format", "jsonl", path], capture_output=True,
                         timeout=60)
    lines = ran.stdout.decode().splitlines()
    error = json.loads(lines[-1]).get("error") if lines else None
    faults = re.findall(r": line (\d+): (.*)$", ran.stderr.decode(), re.M)
    return lines[:-1] if error else lines, error, [(int(line), text) for line, text in faults]

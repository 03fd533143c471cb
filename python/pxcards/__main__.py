"""python -m pxcards FILE...: the cards as JSON, one section a line."""

import argparse
import json
import os
import sys

import pxcards
from pxcards._reader import printable


# The exit codes of pxcard; for wrong use argparse has the same one.
FAULTS, FAILED = 1, 3


def main() -> int:
    parser = argparse.ArgumentParser(
        prog="python -m pxcards", description="Writes the sections of card files as JSON, one a "
        "line. Exit codes: 0 all was read; 1 all files were read, with faults in them, which are "
        "told on standard error; 2 wrong use; 3 a file, or the rest of it, could not be read or "
        "holds no card, or the output failed.")
    parser.add_argument("files", nargs="+", metavar="FILE", help="'-' is standard input")
    parser.add_argument("--raw", action="store_true", help="read the bytes as they stand")
    parser.add_argument("--tolerant", action="store_true",
                        help="exit with 0 where there are faults in files")
    parser.add_argument("--no-limit", dest="limit", action="store_false",
                        help="read on where a file costs more work than its size")
    options = parser.parse_args()
    out, worst = sys.stdout.buffer, 0

    def complain(code: int, text: str) -> None:
        nonlocal worst
        worst = max(worst, code)
        print("pxcards:", printable(text), file=sys.stderr)

    for file in options.files:
        name = "standard input" if file == "-" else file
        try:
            for section in pxcards.read(
                    sys.stdin.buffer if file == "-" else file, name=name, raw=options.raw,
                    limit=options.limit,
                    fault=lambda one: complain(FAULTS, f"{name}: line {one.line}: {one.text}")):
                out.write(section.to_json().encode() + b"\n")
        except pxcards.Error as error:
            complain(FAILED, f"{name}: {error.text}")
            shown = os.fsencode(name).decode(errors="replace")
            out.write(json.dumps({"file": shown, "error": error.text}).encode() + b"\n")
    out.flush()
    return 0 if options.tolerant and worst == FAULTS else worst


if __name__ == "__main__":
    try:
        sys.exit(main())
    except OSError as error:  # of the output; a broken pipe means that nobody reads on
        if not isinstance(error, BrokenPipeError):
            print("pxcards: standard output:", error.strerror, file=sys.stderr)
        os._exit(FAILED)

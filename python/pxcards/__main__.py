"""python -m pxcards FILE...: the cards as JSON, one section a line."""

import argparse
import json
import os
import sys

import pxcards
from pxcards._reader import printable


def main() -> int:
    parser = argparse.ArgumentParser(
        prog="python -m pxcards", description="Writes the sections of card files as JSON, one a "
        "line. Errors are told on standard error and make the exit code 1.")
    parser.add_argument("files", nargs="+", metavar="FILE", help="'-' is standard input")
    parser.add_argument("--raw", action="store_true", help="read the bytes as they stand")
    parser.add_argument("--no-limit", dest="limit", action="store_false",
                        help="read on where a file costs more work than its size")
    options = parser.parse_args()
    out, code = sys.stdout.buffer, 0

    def complain(text: str) -> None:
        nonlocal code
        code = 1
        print("pxcards:", printable(text), file=sys.stderr)

    for file in options.files:
        name = "standard input" if file == "-" else file
        try:
            for section in pxcards.read(
                    sys.stdin.buffer if file == "-" else file, name=name, raw=options.raw,
                    limit=options.limit,
                    fault=lambda one: complain(f"{name}: line {one.line}: {one.text}")):
                out.write(section.to_json().encode() + b"\n")
        except pxcards.Error as error:
            complain(f"{name}: {error.text}")
            shown = os.fsencode(name).decode(errors="replace")
            out.write(json.dumps({"file": shown, "error": error.text}).encode() + b"\n")
    out.flush()
    return code


if __name__ == "__main__":
    try:
        sys.exit(main())
    except BrokenPipeError:  # nobody reads on
        os._exit(1)

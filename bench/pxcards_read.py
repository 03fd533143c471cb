#!/usr/bin/python3
"""What pxcards.read costs beside json.loads over the same lines: bench/pxcards_read.py FILE...

PYTHONPATH and PX_LIBRARY name the package and the library to measure, of a release build. The files
are measured together; each round reads them, and parses the lines that are in memory, in turn. It
prints medians of 9 rounds: seconds of the processor, and by the clock.
"""

import json
import statistics
import sys
import time

import pxcards

ROUNDS = 9


def sections(files):
    for file in files:
        try:
            yield from pxcards.read(file, fault=lambda _: None)
        except pxcards.Error as error:
            print(error, file=sys.stderr)


def seconds(work):
    clock, processor = time.perf_counter(), time.process_time()
    for _ in work():
        pass
    return time.process_time() - processor, time.perf_counter() - clock


def main(files):
    lines = [one.to_json() for one in sections(files)]
    ways = {
        "json.loads": lambda: map(json.loads, lines),
        "pxcards.read": lambda: sections(files),
        "pxcards.read, each name": lambda: (one.name for one in sections(files)),
    }
    times = {name: [] for name in ways}
    for _ in range(ROUNDS):
        for name, work in ways.items():
            times[name].append(seconds(work))
    print(f"{len(lines)} sections, {sum(map(len, lines)) / 1e6:.1f} MB of JSON")
    floor = None
    for name in ways:
        medians = [statistics.median(column) for column in zip(*times[name])]
        floor = floor or medians
        print(f"{name:20}", *(f"{value:8.3f} s {value / least:5.2f}"
                              for value, least in zip(medians, floor)))


if __name__ == "__main__":
    main(sys.argv[1:])

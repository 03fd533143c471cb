"""Reading an input: its sections one after the other, and its faults."""

from __future__ import annotations

import warnings
from collections.abc import Callable, Iterator
from dataclasses import dataclass

from pxcards._input import Input, Settings, Source, name_of, prepare
from pxcards._records import Origin, Section


@dataclass(frozen=True)
class Fault:
    """Something in the input that can't be read. The rest of the input is read all the same."""

    line: int  # from 1
    text: str  # for a person
    file: str | None = None


class FaultWarning(UserWarning):
    """Tells of a `Fault`."""


def printable(text: str) -> str:
    """The text with escapes for what would move a terminal."""
    return "".join(c if c.isprintable() else ascii(c)[1:-1] for c in text)


def warn(fault: Fault) -> None:
    # The place is the card's line. With the angle brackets Python doesn't look for it in the file,
    # and without a registry it doesn't keep all that it was told.
    place = f"<{printable(fault.file or 'bytes')}>"
    warnings.warn_explicit(printable(fault.text), FaultWarning, place, fault.line)


class Reader(Iterator[Section]):
    """Gives the sections of an input, each read when it is asked for. One thread uses it at a
    time; another one waits."""

    def __init__(self, source: Source, fault: Callable[[Fault], object],
                 settings: Settings) -> None:
        prepared = prepare(source)
        self.file = settings.name or name_of(prepared)
        self._fault = fault
        self._input = Input(prepared, settings, want_faults=True)
        self._origin = Origin(prepared, settings, self._input)

    def __next__(self) -> Section:
        try:
            section = self._input.read_json()
        except BaseException:
            self.close()
            raise
        finally:
            if self._input.faults:
                self._tell_faults()
        if section is None:
            self.close()
            raise StopIteration
        return Section(*section, self._origin)

    def _tell_faults(self) -> None:
        faults = [Fault(line, text.decode(), self.file) for line, text in self._input.faults]
        self._input.faults.clear()
        for fault in faults:
            self._fault(fault)

    def close(self) -> None:
        """Ends the reading: no section comes any more. At the end of the input it isn't needed."""
        self._input.close()

    def __enter__(self) -> Reader:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


def read(source: Source, *, name: str | None = None, fault: Callable[[Fault], object] = warn,
         raw: bool = False, limit: bool = True) -> Reader:
    """Opens `source` and gives its sections.

    A str or an os.PathLike is the path of a file, bytes are the content itself. Anything else is a
    binary file: it is read from where it stands and stays open, and nobody else reads it meanwhile.
    One that can't seek is copied to a temporary file first. `name` is what sections and errors call
    the input; when it isn't given that is the path, or the name of a file that was opened by one.

    `fault` is called for what can't be read, before the section in which it stands is given; it may
    be the `append` of a list. By default it is told as a `FaultWarning`. With `raw` the bytes are
    read as they stand, in the oldest dialect alone. Some small inputs are made to cost hours of work:
    the reading ends with an `Error` where it costs more than the size allows, unless `limit` is
    False.

    Raises `Error` when the source can't be opened. The reader raises it when the source can't be
    read, is changed meanwhile, or holds no card.
    """
    return Reader(source, fault, Settings(raw, limit, name))

"""Folders of card files by Dask, on all cores or on many machines.

    import dask.distributed, pxcards.dask

    with dask.distributed.Client("scheduler.example.org:8786"):
        names = pxcards.dask.read("/srv/cards").map(lambda card: card.name).compute()

The workers open the files themselves: each has to see them under the same path, and to have
pxcards.
"""

from __future__ import annotations

import os
from collections.abc import Iterable, Iterator
from typing import TYPE_CHECKING, Any, Union

from dask.bag.core import Bag, from_sequence

from pxcards import Error, Fault, Section
from pxcards import read as read_file
from pxcards._reader import warn

if TYPE_CHECKING:
    from dask.dataframe.core import DataFrame

Path = Union[str, "os.PathLike[str]"]
SUFFIXES = (".vcf", ".vcard", ".vcs", ".ics")

# The columns of `frame`, each a field of `Section`, and their types in pandas. Of the tuples it
# has the values, divided by line ends.
COLUMNS = {
    "file": "object", "number": "int64", "format": "object", "component": "object",
    "version": "object", "part_of": "Int64", "name": "object", "title": "object", "organisation": "object",
    "address": "object", "telephones": "object", "emails": "object", "urls": "object",
    "summary": "object", "location": "object", "start": "object", "status": "object",
}


def read(paths: Path | Iterable[Path], *, block_size: int = 1 << 22, skip_unreadable: bool = False,
         raw: bool = False, limit: bool = True) -> Bag:
    """Gives a bag of the sections of all files, in the order of the files.

    A path is a file, or a folder: of that all files are read, at any depth, that have one of
    `SUFFIXES`, in the order of their names. A partition is files of about `block_size` bytes
    together; a file is never divided.

    A file that can't be read raises `pxcards.Error`. With `skip_unreadable` there is a
    `pxcards.FaultWarning` instead, on the worker, and the sections before the error stand. `raw` and
    `limit` are those of `pxcards.read`.
    """
    if isinstance(paths, (str, os.PathLike)):
        paths = [paths]
    files = [file for path in paths for file in _files(os.fspath(path))]
    blocks = list(_blocks(files, block_size)) or [[]]
    return from_sequence(blocks, partition_size=1).map(
        _sections, skip_unreadable=skip_unreadable, raw=raw, limit=limit).flatten()


def frame(paths: Path | Iterable[Path], **options: Any) -> DataFrame:
    """Gives a data frame with a row for each section; the columns are `COLUMNS`. The options are
    those of `read`. Needs pandas."""
    return read(paths, **options).map(_row).to_dataframe(meta=COLUMNS)


def _files(path: str) -> Iterator[str]:
    if not os.path.isdir(path):
        yield path
        return
    for folder, folders, names in os.walk(path):
        folders.sort()
        for name in sorted(names):
            if name.lower().endswith(SUFFIXES):
                yield os.path.join(folder, name)


def _blocks(files: list[str], block_size: int) -> Iterator[list[str]]:
    block: list[str] = []
    size = 0
    for file in files:
        try:
            here = os.path.getsize(file)
        except OSError:  # the worker tells
            here = 0
        if block and size + here > block_size:
            yield block
            block, size = [], 0
        block.append(file)
        size += here
    if block:
        yield block


def _sections(block: list[str], skip_unreadable: bool, raw: bool,
              limit: bool) -> Iterator[Section]:
    for file in block:
        try:
            yield from read_file(file, raw=raw, limit=limit)
        except Error as error:
            if not skip_unreadable:
                raise
            warn(Fault(0, error.text, file))


def _row(section: Section) -> dict[str, Any]:
    row = {name: getattr(section, name) for name in COLUMNS}
    for name, value in row.items():
        if isinstance(value, tuple):
            row[name] = "\n".join(str(getattr(one, "value", one)) for one in value) or None
    return row

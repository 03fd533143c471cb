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
from typing import TYPE_CHECKING, Any

from dask.bag.core import Bag, from_sequence

from pxcards._frame import (COLUMNS as COLUMNS, SUFFIXES as SUFFIXES, Path, column_types, files_of,
                            row, sections)
from pxcards._reader import warn

if TYPE_CHECKING:
    from dask.dataframe.core import DataFrame


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
    blocks = list(_blocks(files_of(paths), block_size)) or [[]]
    return from_sequence(blocks, partition_size=1).map(
        sections, skip_unreadable=skip_unreadable, fault=warn, raw=raw, limit=limit).flatten()


def frame(paths: Path | Iterable[Path], *, columns: str | Iterable[str] | None = None,
          **options: Any) -> DataFrame:
    """Gives a Dask data frame with a row for each section. `columns` is that of `pxcards.frame`,
    `COLUMNS` when it isn't given; the options are those of `read`. Needs pandas."""
    types = column_types(columns)
    return read(paths, **options).map(row, types).to_dataframe(meta=types)


def _blocks(files: Iterable[str], block_size: int) -> Iterator[list[str]]:
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

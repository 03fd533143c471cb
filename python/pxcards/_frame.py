"""Sections as the rows of a data frame, and the files that they come from."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Iterator
from typing import TYPE_CHECKING, Any, Union

from pxcards._library import Error
from pxcards._reader import Fault, read, warn
from pxcards._records import Property, Section

if TYPE_CHECKING:
    from pandas import DataFrame  # type: ignore[import]

Path = Union[str, "os.PathLike[str]"]
SUFFIXES = (".vcf", ".vcard", ".vcs", ".ics")

# The columns that a frame has when none are asked for, each a field of `Section`, and their types
# in pandas.
COLUMNS = {
    "file": "object", "number": "int64", "format": "object", "component": "object",
    "version": "object", "part_of": "Int64", "name": "object", "title": "object",
    "organisation": "object", "address": "object", "telephones": "object", "emails": "object",
    "urls": "object", "summary": "object", "location": "object", "start": "object",
    "status": "object",
}
_FURTHER = {"agent_of": "Int64", "offset": "Int64", "length": "Int64", "lines": "object"}


def frame(paths: Path | Iterable[Path], *, columns: str | Iterable[str] | None = None,
          skip_unreadable: bool = False, fault: Callable[[Fault], object] = warn,
          raw: bool = False, limit: bool = True) -> DataFrame:
    """Gives a pandas data frame with a row for each section of all files, in their order.

    A path is a file, or a folder: of that all files are read, at any depth, whose names end in
    .vcf, .vcard, .vcs or .ics, in the order of their names.

    `columns` names the columns. In small letters it is a field of `Section`, in capitals a property
    of the file: "TEL", "X-ABC". What isn't there is None. Several values, of a field or of several
    properties with the name, have a line end between them; the fields of a structured value have
    ";", and several items in one field a comma. An object is told by its type, "image/jpeg".

    A file that can't be read raises `Error`. With `skip_unreadable` it is told to `fault` as well,
    with the line 0, and the sections before the error stand. The other arguments are those of
    `read`.
    """
    import pandas
    types = column_types(columns)
    rows = [row(one, types) for one in sections(files_of(paths), skip_unreadable=skip_unreadable,
                                                fault=fault, raw=raw, limit=limit)]
    return pandas.DataFrame(rows, columns=list(types)).astype(types)


def column_types(columns: str | Iterable[str] | None) -> dict[str, str]:
    """The columns and their types in pandas."""
    if columns is None:
        return COLUMNS
    types = {}
    for name in [columns] if isinstance(columns, str) else columns:
        known = COLUMNS.get(name) or _FURTHER.get(name)
        if not known and name != name.upper():
            raise ValueError(f"{name!r} is no column; the name of a property is in capitals")
        types[name] = known or "object"
    return types


def row(section: Section, columns: Iterable[str]) -> dict[str, Any]:
    return {name: _cell(section, name) for name in columns}


def _cell(section: Section, name: str) -> Any:
    if name == name.upper():
        return "\n".join(map(_text, section.find(name))) or None
    value = getattr(section, name)
    if isinstance(value, tuple):
        return "\n".join(str(getattr(one, "value", one)) for one in value) or None
    return value


def _text(one: Property) -> str:
    if one.object:
        return one.object.type
    if isinstance(one.value, list):
        return ";".join(field if isinstance(field, str) else ",".join(field)
                        for field in one.value)
    return one.value or ""


def files_of(paths: Path | Iterable[Path]) -> Iterator[str]:
    if isinstance(paths, (str, os.PathLike)):
        paths = [paths]
    for given in paths:
        path = os.fspath(given)
        if not os.path.isdir(path):
            yield path
            continue
        for folder, folders, names in os.walk(path):
            folders.sort()
            for name in sorted(names):
                if name.lower().endswith(SUFFIXES):
                    yield os.path.join(folder, name)


def sections(files: Iterable[str], *, skip_unreadable: bool, fault: Callable[[Fault], object],
             raw: bool, limit: bool) -> Iterator[Section]:
    for file in files:
        try:
            yield from read(file, fault=fault, raw=raw, limit=limit)
        except Error as error:
            if not skip_unreadable:
                raise
            fault(Fault(0, error.text, file))

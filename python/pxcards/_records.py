"""The records: a section and what stands in it."""

from __future__ import annotations

import io
import json
from collections.abc import Callable
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, BinaryIO, cast

from pxcards._input import FileSource, Input, ObjectFile, Settings
from pxcards._library import Error, Result

_parse = json.JSONDecoder().raw_decode  # without a look for spaces around the text


@dataclass(slots=True)
class Typed:
    """A telephone number or an e-mail address."""

    value: str
    types: tuple[str, ...] = ()  # "work", in small letters


@dataclass(frozen=True)
class Object:
    """What stands in a property as Base64: a photo, a sound, a key, an attachment."""

    type: str  # of the content, told by the content itself: "image/jpeg"
    size: int  # of the content in bytes
    offset: int | None  # of the Base64 text in the input
    length: int | None
    title: str | None  # an attachment's file name: a hint from a stranger, no path to trust

    def open(self) -> BinaryIO:
        """Opens the content as a file, from its start.

        It can be read until the reader gives its next section. An object of a section before that
        one is read by going through the input once more, up to the section: objects in their order
        cost one such pass together. `Error` is raised when the input is no longer there or has
        changed. Where a byte that is no Base64 ends the content, that was a fault, and in raw
        reading it is an `Error` behind the good bytes.
        """
        section: Section
        section, number = self.__dict__["place"]
        return section._origin.open_object(section, number)

    def read(self) -> bytes:
        """The content whole."""
        with self.open() as file:
            return file.read()


@dataclass(slots=True)
class Property:
    """A line of the section. What isn't known is None or empty."""

    name: str | None  # in capitals
    group: str | None  # as the file writes it
    label: str | None  # what a person calls it, in English
    params: dict[str, list[str]]  # names in capitals
    value: str | list[str] | None  # a list for a structured value, with the empty fields too
    object: Object | None  # instead of a value
    offset: int | None  # of the whole line in the input, in bytes
    length: int | None


@dataclass(init=False, frozen=True, eq=False)
class Section:
    """A card, or a part of a calendar: an event, an alarm, the calendar's own lines.

    What isn't known is None or empty. The fields are filled when one of them is looked at, so a
    section that is only passed on costs little. Sections with the same JSON are equal. They can be
    pickled; their objects are read from the file, then, and not at all when the input had no path.
    """

    file: str | None  # as it was given
    number: int  # in the input, from 1
    format: str  # "vcard" or "vcalendar"
    component: str | None  # "VCARD", "VEVENT", "VALARM" ...
    version: str | None  # that the file states
    offset: int | None  # where it stands in the input, in bytes
    length: int | None
    part_of: int | None  # number of the section in which it stands
    agent_of: int | None  # number of the card whose agent this card is

    name: str | None
    title: str | None
    organisation: tuple[str, ...]  # a line for each unit
    address: tuple[str, ...]  # its lines; an empty one divides two addresses
    telephones: tuple[Typed, ...]
    emails: tuple[Typed, ...]
    urls: tuple[str, ...]

    summary: str | None  # from here on: of calendars
    location: str | None
    start: str | None  # as the file writes it: "20240418T190000Z"
    status: str | None
    lines: tuple[str, ...]  # lines of the summary of which isn't known what they show

    properties: tuple[Property, ...]  # all of them, in the order of the file

    def __init__(self, number: int, text: str, origin: Origin) -> None:
        """`text` is the JSON of the section that `origin` gave as the one with the number."""
        self.__dict__.update(_number=number, _text=text, _origin=origin)

    # All fields but the properties are filled at once, those when they are asked for themselves;
    # until then they stand in `_listed`.
    if TYPE_CHECKING:
        _number: int
        _text: str
        _origin: Origin
    else:
        def __getattr__(self, name):
            """Is called once for a field, since then the fields are there."""
            fields = self.__dict__
            if name not in self.__dataclass_fields__:
                raise AttributeError(f"a section has no {name!r}")
            if "_listed" not in fields:
                fields.update(_head(self.to_dict()))
            if name == "properties":
                fields["properties"] = _properties(self, fields["_listed"])
                fields["_listed"] = None
            return fields[name]

    def __dir__(self) -> list[str]:
        return sorted({*object.__dir__(self), *self.__dataclass_fields__})

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Section):
            return NotImplemented
        return self._text == other._text

    def __hash__(self) -> int:
        return hash(self._text)

    @property
    def objects(self) -> list[Object]:
        """All that stands in the section as Base64, in the order of the file."""
        return [one.object for one in self.properties if one.object]

    def find(self, name: str) -> list[Property]:
        """The properties with a name, such as "NOTE"."""
        return [one for one in self.properties if one.name == name.upper()]

    def to_json(self) -> str:
        """The section as one line of JSON, whose keys docs/json.md tells."""
        return self._text

    def to_dict(self) -> dict[str, Any]:
        """The same, as json.loads gives it: a new one each time."""
        data: dict[str, Any] = _parse(self._text)[0]
        return data

    def __reduce__(self) -> tuple[Any, ...]:
        return Section, (self._number, self._text, self._origin)


def _head(data: dict[str, Any]) -> dict[str, Any]:
    get, of = data.get, data.get("summary", {}).get
    return {
        "file": get("file"), "number": data["section"], "format": data["format"],
        "component": get("component"), "version": get("version"),
        "offset": get("offset"), "length": get("length"),
        "part_of": get("partOf"), "agent_of": get("agentOf"),
        "name": of("name"), "title": of("title"), "organisation": tuple(of("organisation", ())),
        "address": tuple(of("address", ())), "telephones": _typed(of("telephones", ())),
        "emails": _typed(of("emails", ())), "urls": tuple(of("urls", ())),
        "summary": of("summary"), "location": of("location"), "start": of("start"),
        "status": of("status"), "lines": tuple(of("lines", ())), "_listed": data["properties"],
    }


def _typed(entries: Any) -> tuple[Typed, ...]:
    return tuple([Typed(one["value"], tuple(one.get("types", ()))) for one in entries])


def _properties(section: Section, listed: list[dict[str, Any]]) -> tuple[Property, ...]:
    objects = 0
    properties = []
    for one in listed:
        get = one.get
        content = get("object")
        if content is not None:
            objects += 1
            content = Object(content["type"], content["size"], content.get("offset"),
                             content.get("length"), content.get("title"))
            content.__dict__["place"] = section, objects
        properties.append(Property(get("name"), get("group"), get("label"), get("params", {}),
                                   get("value"), content, get("offset"), get("length")))
    return tuple(properties)


def _open(source: Input, number: int, then: Callable[[Input], object]) -> BinaryIO:
    return cast(BinaryIO, io.BufferedReader(ObjectFile(source, source.open_object(number), then)))


class Origin:
    """The input of sections: opens their objects, also when a later section was read since."""

    def __init__(self, source: str | bytes | FileSource | None, settings: Settings,
                 reading: Input | None = None) -> None:
        """`reading` is what a reader reads; without a source no object can be read."""
        self._source, self._settings, self._reading = source, settings, reading
        # Reads behind `reading`, for one object file at a time; is taken out for it.
        self._again: list[Input] = []

    def open_object(self, section: Section, number: int) -> BinaryIO:
        if reading := self._reading:
            with reading.lock:
                if reading.is_open and reading.sections == section._number:
                    return _open(reading, number, lambda _: None)
        try:
            again = self._again.pop()
        except IndexError:
            again = self._open_again()
        if again.sections > section._number:
            again = self._open_again()
        if again.sections < section._number:
            while again.sections + 1 < section._number and again.pass_section():
                pass
            if again.read_json() != (section._number, section._text):
                raise Error(Result.READ, "has changed since it was read", section.file)
        return _open(again, number, self._keep)

    def _open_again(self) -> Input:
        if self._source is None:
            raise Error(Result.OBJECT, "the section's input is not at hand")
        return Input(self._source, self._settings, want_faults=False)

    def _keep(self, again: Input) -> None:
        self._again[:] = [again]

    def __reduce__(self) -> tuple[Any, ...]:
        return Origin, (self._source if isinstance(self._source, str) else None, self._settings)

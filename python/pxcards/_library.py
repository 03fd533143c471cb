"""libpx_cards by ctypes: the routines of px/cards.h that the package calls."""

from __future__ import annotations

import ctypes
import enum
import functools
import os
from ctypes import POINTER, c_char_p, c_int32, c_int64, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any

SONAME = "libpx_cards.so.1"


class Result(enum.IntEnum):
    """What the library's routines answer, as PxResult of px/cards.h."""

    GOOD = 0
    END = 1
    STOPPED = 2
    ARGUMENT = -1
    ORDER = -2
    BUSY = -3
    OBJECT = -4
    FILE = -5
    READ = -6
    NOT_CARDS = -7
    TEMPORARY = -8
    MEMORY = -9
    FILTER = -10
    INTERNAL = -11
    DAMAGED = -12
    LIMIT = -13


# What an error is as well. For what the system refuses, its number tells which OSError.
_KINDS: dict[Result, type[Exception]] = {
    Result.FILE: OSError,
    Result.READ: OSError,
    Result.TEMPORARY: OSError,
    Result.FILTER: OSError,
    Result.MEMORY: MemoryError,
    Result.BUSY: RuntimeError,
    Result.INTERNAL: RuntimeError,
}


class Error(Exception):
    """Something can't be read. Its text is for a person.

    It is an error of Python's own, too: FileNotFoundError, PermissionError, IsADirectoryError or
    another OSError for what can't be opened or read, with `errno`, `strerror` and `filename`;
    MemoryError; ValueError for an input that holds no card, is damaged, costs too much or was
    closed; RuntimeError for what only a fault in a program brings about.
    """

    def __new__(cls, result: Result, text: str, file: str | None = None, number: int = 0) -> Any:
        kind = _KINDS.get(result, ValueError)
        if not issubclass(kind, OSError):
            make: Any = Exception.__new__
            return make(_also(cls, kind), result, text, file)
        if number:
            kind = type(OSError(number, text))
        make = OSError.__new__
        return make(_also(cls, kind), number or None, text, file)

    def __init__(self, result: Result, text: str, file: str | None = None,
                 number: int = 0) -> None:
        self.result = result
        self.text = text
        self.file = file  # None for an input without a name
        self._number = number

    def __str__(self) -> str:
        return f"{self.file}: {self.text}" if self.file else self.text

    def __reduce__(self) -> tuple[Any, ...]:
        return Error, (self.result, self.text, self.file, self._number)


_classes: dict[Any, Any] = {}


def _also(cls: Any, kind: Any) -> Any:
    """A class that is both, made once."""
    if (cls, kind) not in _classes:
        names = {"__doc__": cls.__doc__, "__module__": "pxcards"}
        _classes[cls, kind] = type(cls.__name__, (cls, kind), names)
    return _classes[cls, kind]


class Text(ctypes.Structure):
    """A JSON text: a NUL in it is escaped, so that `bytes` ends with the text."""
    _fields_ = [("bytes", c_char_p), ("size", c_uint64)]


class Events(ctypes.Structure):
    """Without a routine: a section read with it is passed over."""
    _fields_ = [("size", c_uint64), ("routines", c_void_p * 11)]


class Io(ctypes.Structure):
    """The caller's I/O object, with the slots of px/vcard_io.h."""


FaultRoutine = ctypes.CFUNCTYPE(None, c_void_p, c_uint64, c_char_p)
ReadSlot = ctypes.CFUNCTYPE(c_int32, POINTER(Io), c_void_p, c_uint32, POINTER(c_uint32))
SeekSlot = ctypes.CFUNCTYPE(c_int32, POINTER(Io), c_uint16, c_uint64)
GetInfoSlot = ctypes.CFUNCTYPE(c_int32, POINTER(Io), c_uint32, c_void_p)
Seek64Slot = ctypes.CFUNCTYPE(c_int32, POINTER(Io), c_uint16, c_int64)
Tell64Slot = ctypes.CFUNCTYPE(c_int32, POINTER(Io), POINTER(c_int64))

Io._fields_ = [("Close", c_void_p), ("Read", ReadSlot), ("Write", c_void_p), ("Seek", SeekSlot),
               ("Tell", c_void_p), ("GetInfo", GetInfoSlot), ("Open", c_void_p),
               ("Seek64", Seek64Slot), ("Tell64", Tell64Slot)]

_ROUTINES = {
    "PxNewReader": (c_void_p,),
    "PxFreeReader": (c_int32, POINTER(c_void_p)),
    "PxErrorText": (c_char_p, c_void_p),
    "PxErrorNumber": (c_int32, c_void_p),
    "PxVersion": (c_char_p,),
    "PxSetFault": (c_int32, c_void_p, FaultRoutine, c_void_p),
    "PxSetRaw": (c_int32, c_void_p, c_int32),
    "PxSetLimit": (c_int32, c_void_p, c_int32),
    "PxSetName": (c_int32, c_void_p, c_char_p),
    "PxOpenFile": (c_int32, c_void_p, c_char_p),
    "PxOpenMemory": (c_int32, c_void_p, c_char_p, c_uint64),
    "PxOpenIo": (c_int32, c_void_p, POINTER(Io)),
    "PxReadJson": (c_int32, c_void_p, POINTER(Text)),
    "PxReadEvents": (c_int32, c_void_p, POINTER(Events), c_void_p),
    "PxOpenObject": (c_int32, c_void_p, c_uint32, POINTER(c_uint64)),
    "PxReadObject": (c_int32, c_void_p, c_uint64, c_void_p, c_uint64, POINTER(c_uint64)),
    "PxCloseObject": (c_int32, c_void_p, c_uint64),
}


@functools.cache
def library() -> ctypes.CDLL:
    """The shared library, loaded when it is first needed. Its calls let other threads run."""
    name = os.environ.get("PX_LIBRARY") or SONAME
    try:
        loaded = ctypes.CDLL(name)
    except OSError as error:
        raise Error(Result.FILTER, f"can't load libpx_cards: {error}") from error
    for routine, (answer, *arguments) in _ROUTINES.items():
        getattr(loaded, routine).restype = answer
        getattr(loaded, routine).argtypes = arguments
    return loaded


def version() -> str:
    """The version of libpx_cards, "0.1.0"."""
    text: bytes = library().PxVersion()
    return text.decode()

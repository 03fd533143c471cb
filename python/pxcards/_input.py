"""An open input: a reader of the library as an object, and what such a reader reads."""

from __future__ import annotations

import ctypes
import io
import os
import shutil
import tempfile
import threading
from collections.abc import Callable
from dataclasses import dataclass, field
from typing import IO, Any, BinaryIO, Union

from pxcards._library import (Error, Events, FaultRoutine, GetInfoSlot, Io, ReadSlot, Result,
                              Seek64Slot, SeekSlot, Tell64Slot, Text, library)

_GOOD = int(Result.GOOD)  # looking up a member takes as long as a call

Source = Union[str, "os.PathLike[str]", "os.PathLike[bytes]", bytes, bytearray, memoryview, BinaryIO]


@dataclass(frozen=True)
class FileSource:
    """A binary file that can seek, from `start` on."""

    file: IO[bytes]
    start: int
    name: str | None
    lock: Any = field(default_factory=threading.RLock)  # for a place and what is read there


def prepare(source: Source) -> str | bytes | FileSource:
    """The path, the content or the file."""
    if isinstance(source, (str, os.PathLike)):
        path = os.fsdecode(source)
        if "\0" in path:
            raise ValueError("embedded null character in the path")
        return path
    if isinstance(source, (bytes, bytearray, memoryview)):
        return bytes(source)
    if isinstance(source, io.TextIOBase) or not hasattr(source, "read"):
        raise TypeError(f"a path, bytes or a binary file is needed, not {type(source).__name__}")
    name = getattr(source, "name", None)  # of what isn't a file by its path it is 3 or "<stdin>"
    if not isinstance(name, str) or name.startswith("<") and name.endswith(">"):
        name = None
    if source.seekable():
        return FileSource(source, source.tell(), name)
    copy = tempfile.TemporaryFile()
    shutil.copyfileobj(source, copy)
    return FileSource(copy, 0, name)


def name_of(source: str | bytes | FileSource) -> str | None:
    """The path as it was given or the name of a file, where there is one."""
    if isinstance(source, FileSource):
        return source.name
    return source if isinstance(source, str) else None


class _FileIo:
    """The library's I/O object for a file. It has a place of its own in it, so several can stand
    on one file. What the file raises is kept, since nothing can pass through the library."""

    def __init__(self, source: FileSource) -> None:
        self.failure: BaseException | None = None
        position = 0

        def read(_: Any, to: int, size: int, count: Any) -> int:
            nonlocal position
            try:
                with source.lock:
                    source.file.seek(source.start + position)
                    got = bytes(memoryview(source.file.read(size)))
                if len(got) > size:
                    raise ValueError(f"{len(got)} bytes read instead of {size}")
                ctypes.memmove(to, got, len(got))
            except BaseException as error:
                self.failure = error
                return -1
            count[0] = len(got)
            position += len(got)
            return 0

        def seek(_: Any, whence: int, to: int) -> int:
            nonlocal position
            if whence or to < 0:
                return -1
            position = to
            return 0

        def tell(_: Any, to: Any) -> int:
            to[0] = position
            return 0

        wide = GetInfoSlot(lambda _, selector, argument: 0)
        self.slots = Io(None, ReadSlot(read), None, SeekSlot(seek), None, wide, None,
                        Seek64Slot(seek), Tell64Slot(tell))


@dataclass(frozen=True)
class Settings:
    """How an input is read."""

    raw: bool
    limit: bool
    name: str | None  # instead of the input's own


class Input:
    """An open input. Its routines raise Error; `sections` counts those that were read."""

    def __init__(self, source: str | bytes | FileSource, settings: Settings,
                 want_faults: bool) -> None:
        self._handle = ctypes.c_void_p()  # none yet, for __del__
        # Without it another thread could end the reader, or a text, that a call has just got.
        self.lock = threading.RLock()
        self._library = library()
        self._source = source  # bytes have to stay
        self._file: _FileIo | None = None
        self._text = Text()
        self.sections = 0
        self.faults: list[tuple[int, bytes]] = []  # those that came since somebody took them
        self._open(settings, want_faults)

    def _open(self, settings: Settings, want_faults: bool) -> None:
        call, source = self._library, self._source
        self._name = name = settings.name or name_of(source)
        self._handle = handle = ctypes.c_void_p(call.PxNewReader())
        if not handle:
            raise Error(Result.MEMORY, "out of memory")
        self._check(call.PxSetRaw(handle, settings.raw))
        self._check(call.PxSetLimit(handle, settings.limit))
        if want_faults:
            put: Callable[[tuple[int, bytes]], None] = self.faults.append
            self._fault = FaultRoutine(lambda _, line, text: put((line, text)))
            self._check(call.PxSetFault(handle, self._fault, None))
        if isinstance(source, str):
            self._check(call.PxOpenFile(handle, os.fsencode(source)))
        elif isinstance(source, bytes):
            self._check(call.PxOpenMemory(handle, source, len(source)))
        else:
            self._file = _FileIo(source)
            self._check(call.PxOpenIo(handle, self._file.slots))
        if name:
            self._check(call.PxSetName(handle, os.fsencode(name)))

    def _check(self, result: int) -> bool:
        """Answers False at the end."""
        if result >= 0:
            return result == _GOOD
        if not self._handle:
            raise Error(Result.ORDER, "the input was closed", self._name)
        if self._file and self._file.failure:
            raise self._file.failure
        text: bytes = self._library.PxErrorText(self._handle)
        raise Error(Result(result), text.decode(errors="replace"), self._name,
                    self._library.PxErrorNumber(self._handle))

    @property
    def is_open(self) -> bool:
        return bool(self._handle)

    def read_json(self) -> tuple[int, str] | None:
        """Reads the next section: its number and text. None at the end, and when the input was
        closed."""
        with self.lock:
            if not self._handle or not self._check(
                    self._library.PxReadJson(self._handle, self._text)):
                return None
            self.sections += 1
            number, text = self.sections, self._text.bytes
        return number, text.decode()

    def pass_section(self) -> bool:
        events = Events(ctypes.sizeof(Events))
        with self.lock:
            self.sections += 1
            return self._check(self._library.PxReadEvents(self._handle, events, None))

    def open_object(self, number: int) -> int:
        handle = ctypes.c_uint64()
        with self.lock:
            self._check(self._library.PxOpenObject(self._handle, number, handle))
        return handle.value

    def read_object(self, handle: int, to: memoryview) -> int:
        count = ctypes.c_uint64()
        start = (ctypes.c_char * len(to)).from_buffer(to)
        with self.lock:
            self._check(self._library.PxReadObject(self._handle, handle, start, len(to), count))
        return count.value

    def close_object(self, handle: int) -> None:
        with self.lock:
            self._library.PxCloseObject(self._handle, handle)  # it may have ended with its section

    def close(self) -> None:
        if self._handle:
            with self.lock:
                self._library.PxFreeReader(self._handle)

    def __del__(self) -> None:
        self.close()


class ObjectFile(io.RawIOBase):
    """The content of an object as a file."""

    def __init__(self, source: Input, handle: int, then: Callable[[Input], object]) -> None:
        """`then` is called with the input when the file is closed."""
        super().__init__()
        self._input, self._handle, self._then = source, handle, then

    def readable(self) -> bool:
        return True

    def readinto(self, to: Any) -> int:
        return self._input.read_object(self._handle, memoryview(to).cast("B"))

    def close(self) -> None:
        if not self.closed:
            super().close()
            self._input.close_object(self._handle)
            self._then(self._input)

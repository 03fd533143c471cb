import base64
import copy
import errno
import io
import itertools
import json
import os
import pickle
import subprocess
import sys
from collections.abc import Hashable
from concurrent.futures import ThreadPoolExecutor

import pxcards
import pytest
from conftest import FILES, ROOT, pxcard

CARD = b"BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann\r\nPHOTO;ENCODING=b:%s\r\nEND:VCARD\r\n"
PHOTOS = [b"one photo", bytes(range(256)) * 50, b"three"]
CARDS = b"".join(CARD % base64.b64encode(photo) for photo in PHOTOS)


def read(source, faults=None):
    """The sections and the text of the error that ended them."""
    sections = []
    try:
        for section in pxcards.read(source, fault=[].append if faults is None else faults.append):
            sections.append(section)
    except pxcards.Error as error:
        return sections, error.text
    return sections, None


def rebuild(record):
    """The JSON of a section out of its fields."""
    def known(**values):
        names = {"part_of": "partOf", "agent_of": "agentOf"}
        return {names.get(name, name): list(value) if isinstance(value, tuple) else value
                for name, value in values.items() if value not in (None, (), {})}

    def typed(entries):
        return tuple(known(value=one.value, types=one.types) for one in entries)

    summary = known(
        name=record.name, title=record.title, organisation=record.organisation,
        address=record.address, telephones=typed(record.telephones), emails=typed(record.emails),
        urls=record.urls, summary=record.summary, location=record.location, start=record.start,
        status=record.status, lines=record.lines)
    return known(
        file=record.file, section=record.number, format=record.format, version=record.version,
        component=record.component, offset=record.offset, length=record.length,
        part_of=record.part_of, agent_of=record.agent_of, summary=summary,
    ) | {"properties": [
        known(name=one.name, group=one.group, label=one.label, params=one.params, value=one.value,
              offset=one.offset, length=one.length,
              object=one.object and known(
                  type=one.object.type, size=one.object.size, title=one.object.title,
                  offset=one.object.offset, length=one.object.length))
        for one in record.properties]}


@pytest.mark.parametrize("path", FILES, ids=os.path.basename)
def test_gives_what_pxcard_gives(path, tmp_path):
    lines, error, faults = pxcard(path)
    told = []
    sections, failure = read(path, told)
    assert [one.to_json() for one in sections] == lines
    assert failure == error
    assert [(one.line, one.text) for one in told][:100] == faults
    wanted = [json.loads(line) for line in lines]
    assert [one.to_dict() for one in sections] == wanted
    assert [rebuild(one) for one in sections] == wanted

    content = open(path, "rb").read()
    behind = io.BytesIO(b"head" + content)
    behind.seek(4)
    reading, writing = os.pipe()
    with subprocess.Popen(["cat", path], stdout=writing), open(reading, "rb", closefd=True) as pipe:
        os.close(writing)
        for source in content, bytearray(content), behind, pipe:
            sections = read(source)[0]
            assert [one.to_dict() | {"file": path} for one in sections] == wanted
            assert not any(one.file for one in sections)


@pytest.mark.parametrize("path", FILES, ids=os.path.basename)
def test_objects_now_and_later(path):
    now, sections = [], []
    for section in pxcards.read(path, fault=lambda _: None):
        sections.append(section)
        now += [one.read() for one in section.objects]
    objects = [one for section in sections for one in section.objects]
    assert [len(content) for content in now] == [one.size for one in objects]
    assert [one.read() for one in objects] == now
    assert [one.read() for one in reversed(objects)] == now[::-1]
    carried = pickle.loads(pickle.dumps(sections))
    assert [one.read() for section in carried for one in section.objects] == now


def test_objects_are_files(tmp_path):
    for source in CARDS, io.BytesIO(CARDS):
        cards = list(pxcards.read(source))
        assert [one.objects[0].read() for one in cards] == PHOTOS
        with cards[0].objects[0].open() as one, cards[1].objects[0].open() as two:
            assert two.read(10) == PHOTOS[1][:10]
            assert one.read() == PHOTOS[0]
            assert two.read() == PHOTOS[1][10:]
        with pytest.raises(pxcards.Error, match="not at hand"):
            pickle.loads(pickle.dumps(cards[0])).objects[0].read()
    path = tmp_path / "cards.vcf"
    path.write_bytes(CARDS)
    cards = list(pxcards.read(path))
    path.write_bytes(CARDS.replace(b"Ann", b"Bob"))
    with pytest.raises(pxcards.Error, match="has changed"):
        cards[1].objects[0].read()
    reader = pxcards.read(CARDS)
    first = next(reader)
    file = first.objects[0].open()
    next(reader)
    assert first.objects[0].read() == PHOTOS[0]
    with pytest.raises(pxcards.Error) as raised:
        file.read()
    assert raised.value.result == pxcards.Result.OBJECT
    reader.close()
    assert list(reader) == []
    with pytest.raises(pxcards.Error, match="closed"):
        file.read()
    damaged = next(pxcards.read(b"BEGIN:VCARD\nKEY;BASE64:QUJD*QUJD\nEND:VCARD\n", raw=True))
    with damaged.objects[0].open() as content:
        assert content.read(3) == b"ABC"
        with pytest.raises(pxcards.Error) as raised:
            content.read()
        assert raised.value.result == pxcards.Result.DAMAGED


class Odd(io.BytesIO):
    def __init__(self, read):
        self.read = lambda size: read(CARDS, size)


@pytest.mark.parametrize("source, error, text", [
    ("no such.vcf", pxcards.Error, "^no such.vcf: No such file"),
    ("no such.vcf", FileNotFoundError, "^no such.vcf: No such file"),
    (__file__ + "/no.vcf", NotADirectoryError, "Not a directory"),
    ("/", IsADirectoryError, "^/: Is a directory"),
    ("/proc/self/mem", OSError, "Input/output error"),
    (b"nothing of that kind", pxcards.Error, "not a vCard"),
    (b"", ValueError, "is empty"),
    ("a\0b.vcf", ValueError, "null"),
    (io.StringIO(CARDS.decode()), TypeError, "binary"),
    (5, TypeError, "int"),
    (Odd(lambda cards, size: 1 // 0), ZeroDivisionError, "division"),
    (Odd(lambda cards, size: cards.decode()), TypeError, "bytes-like"),
    (Odd(lambda cards, size: cards + bytes(size)), ValueError, "instead of"),
])
def test_errors(source, error, text):
    with pytest.raises(error, match=text):
        list(pxcards.read(source))


@pytest.mark.parametrize("result", [one for one in pxcards.Result if one < 0])
@pytest.mark.parametrize("number", [0, errno.EACCES])
def test_errors_are_of_two_kinds(result, number):
    error = pxcards.Error(result, "text", "a.vcf", number)
    for one in error, pickle.loads(pickle.dumps(error)), copy.copy(error):
        assert isinstance(one, pxcards.Error)
        assert isinstance(one, (OSError, ValueError, MemoryError, RuntimeError))
        assert (type(one), str(one), one.result) == (type(error), "a.vcf: text", result)
        if isinstance(one, OSError):
            assert isinstance(one, PermissionError) == bool(number)
            assert (one.errno, one.strerror, one.filename) == (number or None, "text", "a.vcf")


def test_records_as_values():
    cards = list(pxcards.read(CARDS))
    again = list(pxcards.read(CARDS))
    before = dir(cards[0])
    assert set(before) >= {*pxcards.Section.__annotations__} - {"_number", "_text", "_origin"}
    assert cards[0].name == "Ann"
    assert set(dir(cards[0])) >= set(before)
    assert cards == again and cards[0] != cards[1] and cards[0] != "Ann"
    assert len({*cards, *again}) == len(cards)
    for one in cards[0].objects[0], *cards[0].properties, *cards[0].telephones:
        assert not isinstance(one, Hashable) or isinstance(hash(one), int)


def test_names(tmp_path):
    path = tmp_path / "cards.vcf"
    path.write_bytes(CARDS)
    with open(path, "rb") as file, open(path, "rb") as behind:
        pseudo = io.BytesIO(CARDS)
        pseudo.name = "<stdin>"
        for source, name in [(path, str(path)), (file, str(path)), (CARDS, None), (pseudo, None)]:
            card = next(pxcards.read(source))
            assert (card.file, card.to_dict().get("file")) == (name, name)
        named = [next(pxcards.read(source, name="here")) for source in (CARDS, path, behind)]
        assert [one.file for one in named] == ["here"] * 3
        assert pickle.loads(pickle.dumps(named[1])).objects[0].read() == PHOTOS[0]
    with pytest.raises(ValueError, match="^here: not a vCard"):
        next(pxcards.read(b"?", name="here"))


def test_a_file_that_is_changed(tmp_path):
    path = tmp_path / "cards.vcf"
    path.write_bytes(CARDS)
    os.utime(path, (0, 0))
    cards = pxcards.read(path)
    with open(path, "r+b") as file:
        file.write(CARDS)
    with pytest.raises(OSError, match="changed while it was read"):
        list(cards)


def test_frame(tmp_path):
    pytest.importorskip("pandas")
    (tmp_path / "a.vcf").write_bytes(
        b"BEGIN:VCARD\nVERSION:3.0\nFN:Ann\nN:Example;Ann;;;\nX-Abc:1\nx-abc:2\n"
        b"TEL;TYPE=home:555\nPHOTO;ENCODING=b:R0lGODlh\nEND:VCARD\n")
    (tmp_path / "b.vcf").write_bytes(b"BEGIN:VCARD\nN:Bo;Bob\nEND:VCARD\n")
    table = pxcards.frame(tmp_path, columns=["name", "offset", "part_of", "N", "X-ABC", "PHOTO"])
    assert table.astype(object).where(table.notna(), None).values.tolist() == [
        ["Ann", 0, None, "Example;Ann;;;", "1\n2", "image/gif"],
        ["Bob Bo", 0, None, "Bo;Bob;;;", None, None]]
    assert list(pxcards.frame(tmp_path, columns="TEL").TEL) == ["555", None]
    usual = pxcards.frame(FILES, fault=lambda _: None)
    assert list(usual.name.fillna("")) == [
        one.name or "" for path in FILES for one in pxcards.read(path, fault=lambda _: None)]
    assert pxcards.frame([], columns=["number", "TEL"]).dtypes.number == "int64"
    with pytest.raises(ValueError, match="telephone"):
        pxcards.frame(tmp_path, columns=["telephone"])
    with pytest.raises(FileNotFoundError):
        pxcards.frame([tmp_path, "gone"])
    told = []
    assert len(pxcards.frame([tmp_path, "gone"], skip_unreadable=True, fault=told.append)) == 2
    assert told == [pxcards.Fault(0, "No such file or directory", "gone")]


def test_faults_are_warnings():
    with pytest.warns(pxcards.FaultWarning, match="no colon"):
        assert [one.name for one in pxcards.read(CARDS.replace(b"VERSION:", b"VERSION", 1))]


@pytest.mark.filterwarnings("error")
def test_a_warning_that_is_an_error_ends_nothing():
    reader = pxcards.read(CARDS.replace(b"VERSION:", b"VERSION", 1))
    with pytest.raises(pxcards.FaultWarning):
        next(reader)
    assert [one.number for one in reader] == [2, 3]


def test_what_costs_too_much():
    costly = b"BEGIN:VCARD\nN:a;\nEND:VCARD\n" * 6000
    cards = []
    with pytest.raises(pxcards.Error, match="more work than its size allows") as raised:
        cards.extend(card.number for card in pxcards.read(costly, raw=True))
    assert raised.value.result == pxcards.Result.LIMIT
    further = itertools.islice(pxcards.read(costly, raw=True, limit=False), len(cards), None)
    assert next(further).number == cards[-1] + 1


def test_threads_take_turns():
    reader = pxcards.read(CARDS * 500)
    with ThreadPoolExecutor(4) as pool:
        shares = pool.map(lambda _: [card.number for card in reader if card.name], range(4))
        cards = list(pxcards.read(io.BytesIO(CARDS * 30)))
        photos = list(pool.map(lambda card: card.objects[0].read(), cards))
    assert sorted(itertools.chain(*shares)) == list(range(1, 1501))
    assert photos == PHOTOS * 30


def run(*arguments, stdout=subprocess.PIPE):
    return subprocess.run([sys.executable, *arguments], stdout=stdout, stderr=subprocess.PIPE,
                          timeout=60)


def test_command(tmp_path):
    (tmp_path / "no card").write_bytes(b"?")
    (tmp_path / "empty").write_bytes(b"")
    files = [*FILES, str(tmp_path / "no card"), str(tmp_path / "empty")]
    command = subprocess.run([os.environ["PXCARD"], "--format", "jsonl", *files],
                             capture_output=True, timeout=60)
    ran = run("-m", "pxcards", *files)
    assert list(map(json.loads, ran.stdout.splitlines())) == list(
        map(json.loads, command.stdout.splitlines()))
    assert ran.returncode == command.returncode == 3
    assert b"no card: not a vCard" in ran.stderr and b"empty: is empty" in ran.stderr
    (tmp_path / "fault").write_bytes(CARD + b"?\n")
    assert run("-m", "pxcards", str(tmp_path / "fault")).returncode == 1
    assert run("-m", "pxcards", "--tolerant", str(tmp_path / "fault")).returncode == 0
    with open("/dev/full", "wb") as full:
        assert run("-m", "pxcards", files[0], stdout=full).returncode == 3
    assert rb"no\x1b: No such file" in run("-m", "pxcards", "no\33").stderr
    for content in CARDS, b"?", b"":
        told = [subprocess.run([*one, "-"], input=content, capture_output=True) for one in (
            [os.environ["PXCARD"], "--format", "jsonl"], [sys.executable, "-m", "pxcards"])]
        assert json.loads(told[0].stdout.splitlines()[0])["file"] == "standard input"
        assert told[0].stdout == told[1].stdout.replace(b'": "', b'":"').replace(b'", "', b'","')


def test_example(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "cards.vcf").write_bytes(CARDS.replace(b"FN:", b"TEL;TYPE=home:555\r\nFN:"))
    example = os.path.abspath(os.path.join(ROOT, "examples", "telephones.py"))
    with open(example) as code, open(os.path.join(ROOT, "README.md")) as readme:
        assert f"```python\n{code.read()}```" in readme.read()
    ran = run(example, "cards.vcf")
    assert ran.stdout.decode().splitlines() == ["Ann\t555\thome"] * 3
    assert [(tmp_path / f"photo-{number}-0").read_bytes() for number in (1, 2, 3)] == PHOTOS


def test_types():
    pytest.importorskip("mypy", reason="mypy is not installed")
    ran = run("-m", "mypy", "--strict", "--follow-imports=skip", "--cache-dir=/dev/null",
              "-p", "pxcards")
    assert ran.returncode == 0, ran.stdout.decode()

#!/usr/bin/python3
"""Compares the JSON of pxcard with a reading of the same cards by the few rules in this file.

    jsonl_test.py PXCARD SOURCE_FOLDER [CORPUS_FOLDER]

Every property has to be there once, whole and in the file's order, every object with its bytes, and
what can't be read has to be told with its line. Left open are blanks at the head of a plain value,
empty fields at the end of a list, and the line ends at the end of an extent.
"""
import base64, glob, json, os, re, subprocess, sys, tempfile
from types import SimpleNamespace
import jsonschema

FIELDS = {"N": 5, "ADR": 7, "ORG": 1}  # lists, and how many fields they have at least
CALENDAR_FIELDS = ("CATEGORIES", "RESOURCES", "AALARM", "DALARM", "MALARM", "PALARM")
BARE = {**dict.fromkeys(("7BIT", "8BIT", "QUOTED-PRINTABLE", "BASE64"), "ENCODING"),
        **dict.fromkeys(("INLINE", "URL", "CONTENT-ID", "CID"), "VALUE")}
CARET = {"^n": "\n", "^'": '"', "^^": "^"}
ADDRESS = ("LABEL", "X-ADDRESS", "X-TITLE")  # parameters that are an address or a part of it
# What a line that seems to go on may be instead.
PROPERTY = re.compile(rb"(?:[\w-]+\.)?(?:X-[\w-]+|N(?=;|:[^;]*[^;\\];)|FN|TEL|EMAIL|URL|VERSION|TITLE)"
                      rb"(;[^:]*)?:")
PARAMETER = re.compile(rb"[\w-]+=.*|CELL|HOME|WORK|INTERNET")


class Source:
    """The bytes of a file without its mark, UTF-16 as UTF-8, and the way back to the file."""
    def __init__(self, data, guess=None, inner=False):
        self.data, self.guess, self.inner = data, guess, inner
        self.wide = {b"\xff\xfe": "utf-16-le", b"\xfe\xff": "utf-16-be"}.get(data[:2])
        self.mark = 2 if self.wide else 3 if data[:3] == b"\xef\xbb\xbf" else 0
        self.text = data[self.mark:].decode(self.wide).encode() if self.wide else data[self.mark:]

    def at(self, place):
        start = place.get("offset", 0)
        part = self.data[start:start + place.get("length", 0)]
        return part.decode(self.wide).encode() if self.wide else part

    def is_at(self, place, start, stop):
        before = self.text[:start].decode().encode(self.wide) if self.wide else self.text[:start]
        return self.inner or place.get("offset") == self.mark + len(before) and (
            stop is None or self.at(place).rstrip() == self.text[start:stop].rstrip())

    def decode(self, raw, charset=None):
        """The text, and whether the named character set fits it."""
        names = [charset or "utf-8"] if charset or self.mark else ["utf-8", self.guess or "cp1252"]
        for name in names:
            try:
                return raw.decode(name), True
            except UnicodeDecodeError:
                pass
        return raw.decode(name, "replace"), len(names) > 1


def split(line):
    """The head of a line and its value; a quoted parameter can hold a colon."""
    match = (re.match(rb'((?:"[^"]*"|[^":])*):', line)
             or re.match(rb'((?:"[^"]*"|[^":])*[=,]"[^":]*):(?=[^"]*$)', line)  # it isn't closed
             or re.match(rb"([^:]*):", line))
    return (match[1], line[match.end():]) if match else (line, None)


def encoding(pieces):
    head = split(b"".join(pieces[:20]))[0]
    words = re.split(rb"[;=]", b"".join(head.split()).upper())  # even with a fold in a word
    if b"QUOTED-PRINTABLE" in words:
        return "quoted"
    return "base64" if b"BASE64" in words or b"ENCODING" in words and b"B" in words else ""


def goes_on(pieces, piece):
    if encoding(pieces) == "quoted" and pieces[-1].rstrip().endswith(b"="):  # a soft break
        return True
    fold = piece[:1] in (b" ", b"\t") and piece.strip()
    return fold or encoding(pieces) == "base64" and re.fullmatch(rb"[A-Za-z0-9+/]+=*\s*", piece)


def is_property(line, piece, rest):
    """Whether what seems to go on with a line is one of its own. Text that goes on has a reason to:
    there was no room for it, or a line end is before it."""
    last, piece, soft = line.pieces[-1].rstrip(), piece.strip(), encoding(line.pieces) == "quoted"
    frame = re.fullmatch(rb"(BEGIN|END):(VCARD|VEVENT)", piece)
    match = frame or PROPERTY.match(piece)
    if not match or split(b"".join(line.pieces))[1] is None and last.endswith((b";", b"=")):
        return False
    if frame:
        surely = re.match(rb"\s*(?:\Z|BEGIN:|END:(?!%s))" % frame[2], rest)
        if frame[1] == b"BEGIN":
            surely = True
            if re.match(rb"\s*\\", rest):  # of an escaped card
                return False
    else:
        surely = match[1] and all(map(PARAMETER.fullmatch, match[1][1:].split(b";")))
    reason = line.columns + len(piece.split()[0]) >= 72 or re.search(
        rb"=0[AD]=$" if soft else rb"\\n$", last)
    ends_softly = soft and re.search(rb"[^=]=$", piece) and not encoding([piece])
    return not reason or bool(surely and not ends_softly)


def join(pieces, old):
    text, quoted = pieces[0], encoding(pieces) == "quoted"
    for piece in pieces[1:]:
        if quoted and text.rstrip().endswith(b"="):
            text = text.rstrip()[:-1] + piece
        else:
            text += piece if old or piece[:1] not in b" \t" else piece[1:]
    return split(text)


def read_tree(text, faults):
    """The sections of a text as they stand in each other, with their logical lines."""
    roots, every, stack, line, outside, ends = [], [], [], None, False, []
    for number, match in enumerate(re.finditer(rb"([^\r\n]*)(\r\n|[\r\n]|$)", text), 1):
        piece, stop = match[1], match.end(1)
        ends = ends[-1:] + [match[2]]
        if not piece and ends == [b"\r", b"\r\n"]:  # they are one line end
            continue
        if line and goes_on(line.pieces, piece):
            if not is_property(line, piece, text[match.end():]):
                line.pieces.append(piece)
                line.stop, line.columns = stop, len(piece)
                continue
            if encoding(line.pieces) == "quoted":
                line.pieces[-1] = re.sub(rb"=\s*$", b"", line.pieces[-1])
            if split(b"".join(line.pieces))[1] is not None:
                faults.add(number)
        before, line = line, None
        word = re.fullmatch(rb"\s*(BEGIN|END)\s*:\s*([\w-]+)\s*", piece, re.I)
        component = word and word[2].decode().upper()
        if word and word[1].upper() == b"BEGIN":
            if before and re.fullmatch(rb"([\w-]+\.)?AGENT\b[^:]*:\s*", before.pieces[0], re.I):
                before.optional = True
            elif component in ("VCARD", "VCALENDAR"):
                stack.clear()  # they have no END
            section = SimpleNamespace(component=component, number=number, start=match.start(),
                                      stop=None, entries=[], properties=[])
            (stack[-1].entries if stack else roots).append(section)
            every.append(section)
            stack.append(section)
            outside = False
            line = SimpleNamespace(pieces=[piece], columns=len(piece))
        elif word and component in [section.component for section in stack]:
            while stack[-1].component != component:
                stack.pop()
            stack.pop().stop = stop
        elif piece.strip() and stack:
            columns, piece = len(piece), piece.lstrip()
            line = SimpleNamespace(component=None, pieces=[piece], number=number, optional=False,
                                   start=stop - len(piece), stop=stop, columns=columns)
            stack[-1].entries.append(line)
        elif piece.strip() and not outside:
            faults.add(number)
            outside = True
    faults.update(section.number for section in every if section.stop is None)
    return roots


def read_head(head, old, escapes):
    name, *parts = re.findall(r'(?:"[^"]*"|[^;])+', head) or [""]
    group, _, name = name.strip().rpartition(".")
    params = {}
    for part in parts:
        key, equals, value = part.partition("=")
        key = key.strip().upper()
        if not equals:
            key, value = BARE.get(key, "TYPE"), part
        value += '"' * (value.count('"') % 2)
        for one in [value] if key in ADDRESS else re.findall(r'(?:"[^"]*"|[^,])+', value):
            one = one.replace('"', "").strip()
            if key == "TYPE":
                one = one.removeprefix("TYPE=")
            if escapes and key in ADDRESS:
                one = re.sub(r"\\+([nN,])", lambda match: "\n" if match[1] in "nN" else match[1], one)
            if not old:
                one = re.sub(r"\^[n'^]", lambda match: CARET[match[0]], one)
            params.setdefault(key, []).extend(one.split(",") if key == "TYPE" else [one])
    return group, name.upper(), params


def unbase64(text):
    """The content up to the first byte that is none, and whether that was the end."""
    text = b"".join(text.split())
    good = re.match(rb"[A-Za-z0-9+/]*", text)[0]
    whole = good[:-1] if len(good) % 4 == 1 else good
    return base64.b64decode(whole + b"=" * (-len(whole) % 4)), not text[len(good):].strip(b"=")


def unescape(text):
    return re.sub(r"\\([nN,;\\])", lambda match: "\n" if match[1] in "nN" else match[1], text)


def read_property(line, section, source, faults):
    old = re.match(r"2\.1|1\.|$", section.version)
    escapes = not old or not section.version
    head, raw = join(line.pieces, old)
    line.group, line.name, line.params = read_head(source.decode(head)[0], old, escapes)
    if head.count(b'"') % 2:
        faults.add(line.number)
    line.optional |= raw is None or not line.name
    if raw is None:
        faults.add(line.number)
    line.object, line.value, line.encoding, raw = None, "", encoding(line.pieces), raw or b""
    uri = re.match(rb"\s*data:(?:([^,;]*/[^,;]*)?(?:;[^,;]*)*[;,])?base64,", raw, re.I)
    digits = re.fullmatch(rb"[A-Za-z0-9+/=]+", b"".join(raw.split())[:64])
    if uri or line.encoding == "base64" and digits:
        line.object, good = unbase64(raw[uri.end():] if uri else raw)
        line.type = uri and uri[1] and uri[1].decode()
    else:
        if line.encoding == "base64" and raw.strip():
            faults.add(line.number)
        if line.encoding == "quoted":
            raw = re.sub(rb"=([0-9A-Fa-f]{2})", lambda match: bytes.fromhex(match[1].decode()), raw)
        named = line.encoding == "quoted" or not source.mark
        text, good = source.decode(raw, line.params.get("CHARSET", [None])[0] if named else None)
        line.value = text = re.sub("\r\n?", "\n", text)
        old = not escapes
        calendar = CALENDAR_FIELDS if old else CALENDAR_FIELDS[:2]
        if line.name in (FIELDS if section.component == "VCARD" else calendar):
            stop = ";" if old or line.name in FIELDS else ","
            fields = re.findall(rf"((?:\\.|[^{stop}])*)(?:{stop}|$)", text, re.S)
            line.value = [one.replace("\\;", ";") if old else unescape(one) for one in fields]
        elif not old:
            line.value = unescape(text)
    if not good:
        faults.add(line.number)


def flatten(section, source, faults, parent=None):
    """A section and all that stand in it, each behind its parent, with their properties."""
    versions = [split(one.pieces[0])[1].strip().decode() for one in section.entries
                if not one.component and re.match(rb"VERSION\b[^:-]*:", one.pieces[0], re.I)]
    section.version = (versions + [parent.version if parent else ""])[0]
    section.source, section.parent, flat = source, parent, [section]
    for one in section.entries:
        if one.component:
            flat += flatten(one, source, faults, section)
            continue
        read_property(one, section, source, faults)
        section.properties.append(one)
        if one.name == "AGENT" and re.match(r"\s*BEGIN\s*:\s*VCARD", str(one.value), re.I):
            one.optional = True
            inner = Source(one.value.encode(), inner=True)
            for root in read_tree(inner.text, set()):
                flat += flatten(root, inner, set(), section)
    return flat


def read(data, guess=None):
    """The sections of a file, and the numbers of the lines with faults."""
    source, faults = Source(data, guess), set()
    roots = read_tree(source.text, faults)
    return [one for root in roots for one in flatten(root, source, faults)], faults


# What follows compares: it yields what it looked at, what is shown and what is wanted.

def words(value):
    """All text in a value, blanks and line ends being alike."""
    values = value.values() if isinstance(value, dict) else value
    return " ".join((value if isinstance(value, str) else " ".join(map(words, values))).split())


def plain(value, exact):
    if isinstance(value, list):
        return "\0".join(plain(one, exact) for one in value).rstrip("\0").split("\0")
    return value and re.sub("\ufffd+", "\ufffd", value if exact else value.lstrip(" \t"))


def compare_property(wanted, shown, source):
    def lower(params):
        return {key: ",".join([values] if isinstance(values, str) else values).lower()
                for key, values in params.items()}
    yield "group", shown.get("group", ""), wanted.group
    yield "params", lower(shown.get("params", {})), lower(wanted.params)
    yield "is in place", source.is_at(shown, wanted.start, wanted.stop), True
    value, placed, exact = shown.get("value"), shown.get("object"), wanted.encoding == "quoted"
    if wanted.object is None:
        yield "value", plain(value, exact), plain(wanted.value, exact)
        if isinstance(value, list):
            yield "has all fields", len(value) >= FIELDS.get(wanted.name, 1), True
    else:
        yield "size", placed and placed.get("size"), len(wanted.object)
        yield "type", wanted.type and placed and placed.get("type"), wanted.type
        if placed and not source.inner:
            yield "data", unbase64(source.at(placed))[0], wanted.object


def compare_summary(section, summary):
    def of(name, most=None):
        return [one for one in section.properties if one.name == name and any(one.value)][:most]

    def entry(value, types=()):
        return re.sub("^(tel|mailto):", "", words(value), flags=re.I), sorted(map(str.lower, types))

    texts = {}
    if section.component == "VCARD":
        for key, name in ("telephones", "TEL"), ("emails", "EMAIL"):
            shown = [entry(one["value"], one.get("types", ())) for one in summary.get(key, [])]
            wanted = [entry(one.value, one.params.get("TYPE", ())) for one in of(name)]
            yield key, sorted(shown), sorted(wanted)
        urls = sorted(words(one.value) for one in of("URL"))
        yield "urls", sorted(map(words, summary.get("urls", []))), urls
        texts = {"name": of("FN", 1) or of("N", 1), "title": of("TITLE", 1),
                 "organisation": of("ORG", 1), "address": of("ADR")}
    elif section.component in ("VEVENT", "VTODO"):
        texts = {key: of(key.upper(), 1) for key in ("summary", "location", "status")}
        start = (of("DTSTART") + [SimpleNamespace(value="")])[0].value
        yield "start", re.findall(r"\d", summary.get("start", "")), re.findall(r"\d", start)
    for key, lines in texts.items():
        shown = words(summary.get(key, ""))
        for value in [one.value for one in lines]:
            fields = [value] if isinstance(value, str) else value
            yield f"{key} '{shown}' lacks", [one for one in fields if words(one) not in shown], []


def compare(sections, shown):
    yield "sections", [one.get("component") for one in shown], [one.component for one in sections]
    for place, (section, got) in enumerate(zip(sections, shown), 1):
        section.place = place
        wanted = {"section": place, "partOf": None, "agentOf": None,
                  "format": "vcard" if section.component == "VCARD" else "vcalendar",
                  "version": section.version or got.get("version")}
        if section.parent:
            wanted["agentOf" if section.component == "VCARD" else "partOf"] = section.parent.place
        yield f"section {place}", {key: got.get(key) for key in wanted}, wanted
        here = section.source.is_at(got, section.start, section.stop)
        yield f"section {place} in place", here, True
        left = list(got.get("properties", []))
        for line in section.properties:
            there = left and left[0].get("name") == line.name
            if line.optional:
                if there and section.source.is_at(left[0], line.start, line.stop):
                    left.pop(0)
                continue
            yield f"line {line.number} {line.name} is there", bool(there), True
            for what, *both in compare_property(line, left.pop(0), section.source) if there else ():
                yield f"line {line.number} {line.name} {what}", *both
        yield f"section {place} has too much", left, []
        for what, *both in compare_summary(section, got.get("summary", {})):
            yield f"section {place} {what}", *both


def check(pxcard, path, validator, guess=None, lines=None):
    """`lines` are those with faults, where they are known."""
    def run(*arguments):
        return subprocess.run([pxcard, *arguments, path], capture_output=True, timeout=60)
    with open(path, "rb") as file:
        sections, faults = read(file.read(), guess)
    ran = run("--format", "jsonl")
    shown = [json.loads(line) for line in ran.stdout.splitlines()]
    for one in shown:
        yield "schema", [error.message[:300] for error in validator.iter_errors(one)], []
    yield "json", json.loads(run("--format", "json").stdout), shown
    if path.endswith("get_char_test.ics"):  # noise: what is a line of it is anybody's guess
        return
    yield "faults by this reading", faults, faults if lines is None else lines
    errors = ran.stderr.decode()
    told = re.findall(rf"^pxcard: {re.escape(path)}: line (\d+): ", errors, re.M)
    yield "faults told", (set(map(int, told)), ran.returncode), (faults, int(bool(faults)))
    yield "errors without a line", len(errors.splitlines()), len(told)
    yield from compare(sections, [one for one in shown if "error" not in one])
    objects = [one.object for section in sections for one in section.properties]
    with tempfile.TemporaryDirectory() as folder:
        run("--extract", folder)
        saved = [open(entry, "rb").read() for entry in os.scandir(folder)]
    yield "extracted", sorted(saved), sorted({one for one in objects if one is not None})


def card(family, given, note, params=""):
    return (f"BEGIN:VCARD\r\nVERSION:2.1\r\nN{params}:{family};{given};;;\r\n"
            f"FN{params}:{given} {family}\r\nTEL;CELL:+1-202-555-0101\r\n"
            f"NOTE{params}:{note}\r\nEND:VCARD\r\n")


JAPANESE = ("表", "ソフィア", "能力の高い設計者です。予定表はソファの上にあります。")
RUSSIAN = ("Соколова", "Вера", "Звонить после обеда, лучше всего по четвергам.")
WESTERN = ("Müller–Brandt", "Zoë", "„Schöne Grüße“ kosten 5 €, für Bücher und Möbel fragen wir.")
EMOJI = card("Berg 🌉", "Ann", "a 🧁 b") + card(*JAPANESE)
PLAIN = card("Berg", "Ann", "short")
EVENT = ("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nSUMMARY:Frühstück mit Jürgen\r\n"
         "LOCATION:Café Größenwahn\r\nDTSTART:20240418T190000Z\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
# What no editor keeps, and what can't be read: bytes, set of unlabelled text, lines with faults.
MADE = {
    "mark.vcf": (b"\xef\xbb\xbf" + EMOJI.encode(), None, ()),
    "little.vcf": (b"\xff\xfe" + EMOJI.encode("utf-16-le"), None, ()),
    "big.vcf": (b"\xfe\xff" + EMOJI.encode("utf-16-be"), None, ()),
    "cr.vcf": (EMOJI.replace("\r\n", "\r").encode(), None, ()),
    "ff.vcf": (card("Berg", "Ann", "a\xffb").encode("cp1252") + PLAIN.encode(), "cp1252", ()),
    "latin.ics": (EVENT.encode("latin-1"), "latin-1", ()),
    "western.vcf": (card(*WESTERN).encode("cp1252"), "cp1252", ()),
    "sjis.vcf": (card(*JAPANESE).encode("shift_jis"), "shift_jis", ()),
    "koi8.vcf": (card(*RUSSIAN).encode("koi8-r"), "koi8-r", ()),
    "named.vcf": (card(*JAPANESE, ";CHARSET=Shift_JIS").encode("shift_jis")
                  + card(*JAPANESE, ";CHARSET=iso-2022-jp").encode("iso2022_jp")
                  + card(*RUSSIAN, ";CHARSET=KOI8-R").encode("koi8-r") + EMOJI.encode(), None, ()),
    "no-end.vcf": (PLAIN[:-11].encode() + PLAIN.encode(), None, {1}),
    "cut.vcf": ((PLAIN + PLAIN[:-11]).encode(), None, {8}),
    "invalid.vcf": (card("Berg", "Ann", "a\xffb", ";CHARSET=UTF-8").encode("latin-1"), None, {6}),
    **{f"plain-{key}.vcf": (PLAIN.replace(";;;", "").replace("TEL", f"{line}\r\nTEL").encode(), None, ())
       for key, line in {
           "key": "KEY;BASE64:QUJD\r\n QU JD\r\n",
           "version": "VERSION:3.0\r\nTITLE:a\\,b",
           "encodings": "NOTE;QUOTED-PRINTABLE;ENCODING=8BIT:=41",
           "soft-break": "NOTE;QUOTED-PRINTABLE:a= \r\n b",
           "agent": f"AGENT:{'x' * 70000}\r\n\"a:b\":c",
           "full-field": f"ADR;QUOTED-PRINTABLE:{'x' * 255}=0A;"}.items()},
    "base64.vcf": (PLAIN.replace("TEL", f"KEY;BASE64:{'QUJD' * 20}*QUJD\r\nTEL").encode(), None, {5}),
    "outside.vcf": (f"Found:\n{PLAIN}\non a shelf\nTEL:1\n{PLAIN}end".encode(), None, {1, 10, 19}),
}


def main(pxcard, root, *folders):
    os.environ["LC_ALL"] = "C"  # errors are compared in English
    with open(os.path.join(root, "docs", "card.schema.json"), encoding="utf-8") as file:
        schema = json.load(file)
    validator = jsonschema.validators.validator_for(schema)(schema)
    folders = (os.path.join(root, "samples"), os.path.join(root, "tests", "cards"), *folders)
    files = [(path,) for folder in folders for path in sorted(glob.glob(folder + "/*.[vi]c[sf]"))]
    failures = 0
    made = dict(MADE)
    for name in "exported.vcf", "damaged.vcf":  # with LF; here with other line ends
        with open(os.path.join(root, "tests", "cards", name), "rb") as file:
            data = file.read()
        for end in b"\r\n", b"\r", b"\r\r\n":
            made[f"{end.hex()}-{name}"] = (data.replace(b"\n", end), None, None)
    with tempfile.TemporaryDirectory() as folder:
        for name, (data, guess, lines) in made.items():
            files.append((os.path.join(folder, name), guess, None if lines is None else set(lines)))
            with open(files[-1][0], "wb") as file:
                file.write(data)
        for path, *known in files:
            for what, got, wanted in check(pxcard, path, validator, *known):
                if got != wanted:
                    failures += 1
                    print(f"{os.path.basename(path)}: {what}: {got!r:.300}, not {wanted!r:.300}")
    print(f"{len(files)} files, {failures} differences")
    return failures > 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

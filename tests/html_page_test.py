#!/usr/bin/python3
"""Pages of cards in a browser: html_page_test.py PXCARD ROOT CORPUS

Each page is valid, draws its pictures, asks for nothing from elsewhere, and overflows nowhere, wide
and narrow, light and dark, with its script and without, written to the right and to the left."""

import contextlib
import pathlib
import subprocess
import sys
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common import utils

SWITCHES = """--headless=new --no-sandbox --disable-gpu --disable-quic --no-first-run
--disable-background-networking --disable-component-update --disable-sync --hide-scrollbars
--remote-debugging-pipe"""

LONG = "W" * 400
HOSTILE = f"""BEGIN:VCARD
VERSION:3.0
FN:{LONG}
N:{LONG};{LONG};;;
ORG:\u05de\u05e9\u05e8\u05d3;<img src=http://x.example>
TITLE:</style><script>alert(1)</script>
TEL;TYPE={LONG}:{LONG}
EMAIL:{LONG}@x.example
URL:javascript:alert(1)
item1.URL:https://x.example/{LONG}
item1.X-ABLabel:{LONG}
ADR:;;{LONG};{LONG};;;
NOTE:\u202e{LONG} " onclick="alert(1)
X-{LONG};X-P={LONG}:{LONG}
PHOTO;ENCODING=b;MEDIATYPE=image/jpeg;TYPE=JPEG:bm90IGEgcGljdHVyZQ==
END:VCARD
BEGIN:VCALENDAR
VERSION:2.0
X-WR-CALNAME:{LONG}
BEGIN:VEVENT
SUMMARY:{LONG}
LOCATION:{LONG}
STATUS:{LONG}
DTSTART;TZID={LONG}:20240101T000000
DTEND:99991231
ATTENDEE;CN={LONG};ROLE={LONG};PARTSTAT={LONG}:mailto:{LONG}
BEGIN:VALARM
DESCRIPTION:{LONG}
END:VALARM
END:VEVENT
END:VCALENDAR
"""

# What is wrong with the page, as a list of texts.
LOOK = """
const wrong = [];
const say = (what, element) => wrong.push(what + ": " + element.outerHTML.slice(0, 120));
for (const img of document.images) if (!img.naturalWidth) say("not drawn", img);
for (const element of document.querySelectorAll("[href], [src]")) {
  const address = element.getAttribute("href") ?? element.getAttribute("src");
  const isLink = /^(https?|mailto|tel|sms|geo|#)/i.test(address) && element.localName == "a";
  const isData = address.startsWith("data:") && (element.localName != "a" || element.download);
  if (!isLink && !isData) say("address", element);
}
const root = document.documentElement;
if (root.scrollWidth > innerWidth) say("wider than the window", root);
for (const box of document.querySelectorAll(".card, .entry")) {
  const outer = box.getBoundingClientRect();
  for (const element of box.querySelectorAll("*")) {
    const inner = element.getBoundingClientRect();
    if (inner.right > outer.right + 1 || inner.left < outer.left - 1) say("sticks out", element);
  }
  const head = box.querySelector(".head")?.getBoundingClientRect();
  const photo = box.querySelector(".photo")?.getBoundingClientRect();
  const rows = box.querySelector(".rows")?.getBoundingClientRect();
  const besides = photo && (photo.right <= head.left || photo.left >= head.right);
  if (photo && !besides && photo.bottom > head.top) say("photo over text", box);
  if (photo && photo.top > head.top + head.height / 2) say("photo not at the head", box);
  if (head && rows && head.bottom > rows.top + 1) say("head below the rows", box);
}
return wrong;
"""

FILTER = """
const filter = document.getElementById("filter"), shown = () =>
  [...document.querySelectorAll(".card, .entry")].filter((box) => box.checkVisibility()).length;
const done = arguments[0], all = shown();
filter.value = "lindstrom 0143";
filter.dispatchEvent(new Event("input"));
setTimeout(() => {
  const found = shown(), count = document.getElementById("count").textContent;
  document.getElementById("details").click();
  done([found, count == "1 / " + all, document.querySelector(".rows").checkVisibility()]);
}, 300);
"""


class Driver(Service):
    """Reached by its address, and the browser by a pipe: a bare machine knows no name localhost."""

    service_url = property(lambda self: f"http://127.0.0.1:{self.port}")

    def is_connectable(self):
        return utils.is_connectable(self.port, "127.0.0.1")


@contextlib.contextmanager
def browser():
    with tempfile.TemporaryDirectory() as profile:
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for switch in SWITCHES.split() + ["--user-data-dir=" + profile]:
            options.add_argument(switch)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        driver = webdriver.Chrome(service=Driver("/usr/bin/chromedriver"), options=options)
        try:
            yield driver
        finally:
            driver.quit()


def show(driver, page, width, scheme):
    driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
        "width": width, "height": 800, "deviceScaleFactor": 1, "mobile": width < 500})
    driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
        "features": [{"name": "prefers-color-scheme", "value": scheme}]})
    driver.get(page.as_uri())


def main():
    pxcard, root, corpus = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    own = sorted((root / "samples").glob("*.v?[fs]")) + sorted((root / "tests/cards").iterdir())
    faults = []
    with tempfile.TemporaryDirectory() as folder, browser() as driver:
        hostile = pathlib.Path(folder) / "hostile.vcf"
        hostile.write_text(HOSTILE, "utf-8")
        own.append(hostile)
        for name, language, files in (("own", "en", own), ("arabic", "ar", own),
                                      ("corpus", "en", sorted(corpus.glob("*.[vi]c[fs]")))):
            if not files:
                continue
            page = pathlib.Path(folder) / (name + ".html")
            with page.open("wb") as out:
                subprocess.run([pxcard, "--lang", language, "--format", "html", *files], stdout=out,
                               stderr=subprocess.DEVNULL, check=False)
            tidy = subprocess.run(["/usr/bin/tidy", "-q", "-e", page], capture_output=True, text=True,
                                  check=False)
            faults += [f"{name}: {line}" for line in tidy.stderr.splitlines()]
            text = page.read_text("utf-8")
            bare = pathlib.Path(folder) / (name + "-bare.html")
            bare.write_text(text[:text.rindex("<script>")] + "</body></html>", "utf-8")
            papers = {}
            for each, width in ((page, 1280), (page, 360), (bare, 800)):
                for scheme in ("light", "dark"):
                    show(driver, each, width, scheme)
                    faults += [f"{each.name} {width} {scheme}: {fault}"
                               for fault in driver.execute_script(LOOK)]
                    papers[scheme] = driver.execute_script(
                        "return getComputedStyle(document.body).backgroundColor")
            if papers["light"] == papers["dark"]:
                faults.append(name + ": light and dark are one")
            if name == "own":
                show(driver, page, 1280, "light")
                found = driver.execute_async_script(FILTER)
                if found != [1, True, False]:
                    faults.append(f"filter: {found}")
        # What the page's policy refuses is told here.
        faults += [entry["message"] for entry in driver.get_log("browser")]
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())

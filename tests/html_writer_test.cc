// The HTML page from scripted events.

#include "host/writers/html_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

#include "host/writers/links.h"
#include "tests/support/scripted_events.h"

namespace px::test {
namespace {

// Fails the running test unless tidy finds nothing to say.
void expectValid(const std::string &html) {
  FILE *tidy = popen("/usr/bin/tidy -q -e >&2", "w");
  EXPECT_EQ(std::fwrite(html.data(), 1, html.size(), tidy), html.size());
  EXPECT_EQ(pclose(tidy), 0) << html.substr(std::min(html.find("<main>"), html.size()));
}

// What stands in main, after a check that the page is valid and that pieces make no difference.
std::string mainOf(std::string_view script) {
  std::string first;
  for (const size_t piece : {100000, 1, 3}) {
    std::string page;
    HtmlWriter writer(scriptedContentType, [&page](std::string_view part) {
      EXPECT_LT(part.size(), 120000U);
      page += part;
    });
    writer.begin("t", false);
    writer.beginFile("a");
    play(script, piece, &writer);
    writer.end();
    if (first.empty()) first = page;
    EXPECT_EQ(page, first) << "in pieces of " << piece;
  }
  expectValid(first);
  const size_t begin = first.find("<div class=\"file\">\n") + 19;
  return first.substr(begin, first.find("</div>\n</main>") - begin);
}

// Fails the running test unless the parts stand in the text, one behind the other.
void expectInOrder(const std::string &html, std::initializer_list<std::string_view> parts) {
  size_t at = 0;
  for (const std::string_view part : parts) {
    const size_t found = html.find(part, at);
    EXPECT_NE(found, html.npos) << part << "\nin\n" << html.substr(at);
    if (found == html.npos) return;
    at = found + part.size();
  }
}

TEST(HtmlWriter, Card) {
  EXPECT_EQ(mainOf("[VCARD 1 0]\nName: Ann <b>\\n& Co\nTitle: Boss\nOrganisation: Mill\n"
                   "Address: One\\nTwo\nAddress:\nAddress: Three\nTelephone/work,fax: +1 (2) 345\n"
                   "Email: a@example.org\nUrl: javascript:alert(1)\nUrl: http://a.example/?a=1&b\n"
                   "79411 VERSION: 3.0\n79400 NOTE: \\nx\\n\\ny\\n\n0 X-EMPTY: \n"
                   "[VCARD 2 1]\nTelephone: 12\n"),
            R"(<article class="card h-card" id="c1">
<header class="head">
<h2 class="name p-name" dir="auto">Ann &lt;b&gt;<br>&amp; Co</h2>
<p class="job p-job-title" dir="auto">Boss</p>
<p class="org p-org" dir="auto">Mill</p>
<div class="contact">
<div>
<p class="p-adr" dir="auto">One<br>Two</p>
<p class="p-adr" dir="auto">Three</p>
</div>
<ul>
<li><a class="p-tel" href="tel:+12345" dir="auto">+1 (2) 345</a> <small>work, fax</small></li>
<li><a class="u-email" href="mailto:a@example.org" dir="auto">a@example.org</a></li>
<li><span class="u-url" dir="auto">javascript:alert(1)</span></li>
<li><a class="u-url" href="http://a.example/?a=1&amp;b" dir="auto">http://a.example/?a=1&amp;b</a></li>
</ul>
</div>
</header>
<dl class="rows first">
<dt><bdi>Note</bdi></dt><dd class="p-note" dir="auto">x<br><br>y</dd>
<dt><bdi>Version</bdi></dt><dd dir="auto">3.0</dd>
</dl>
</article>
<article class="card h-card nested" id="c2">
<header class="head">
<p class="part">Agent of <a href="#c1"><bdi>Ann &lt;b&gt; &amp; Co</bdi></a></p>
<h2 class="name none">Untitled</h2>
<div class="contact">
<ul>
<li><span class="p-tel" dir="auto">12</span></li>
</ul>
</div>
</header>
</article>
)");
}

TEST(HtmlWriter, Values) {
  const std::string photo = "<figure class=\"photo\"><img class=\"u-photo\" alt=\"Photo\" src=\"";
  const std::string zone = " <span class=\"zone\">Europe/Berlin</span>";
  const std::pair<std::string, std::string> cases[] = {
      {"79406 item1(_$!<Other>!$_).TEL;TYPE=home: tel:+1",
       "Telephone</bdi> <small><bdi>Other, home</bdi></small></dt>"
       "<dd dir=\"auto\"><a href=\"tel:+1\">tel:+1</a></dd>"},
      {"79399 N: 79412=Ann|79413=|79414=\\nB",
       "<dl class=\"fields\">\n<dt>Family name</dt>"
       "<dd dir=\"auto\" class=\"p-family-name\">Ann</dd>\n<dt>Additional names</dt>"
       "<dd dir=\"auto\" class=\"p-additional-name\">B</dd>\n</dl></dd>"},
      {"79401 ORG: 0=A&B|0=C", "<dd><ul>\n<li dir=\"auto\">A&amp;B</li>\n<li dir=\"auto\">C</li>"},
      {"79391 BDAY: 19800302", "<time class=\"dt-bday\" datetime=\"1980-03-02\">1980-03-02</time>"},
      {"79391 BDAY: --0302", "<time class=\"dt-bday\">2 March</time>"},
      {"79370 EXDATE;TZID=Europe/Berlin: 20240101,soon", "2024-01-01</time>, soon" + zone},
      {"0 DURATION: P1DT02H30M",
       "<time class=\"dt-duration\" datetime=\"P1DT02H30M\">1 d 2 h 30 min</time>"},
      {"0 DURATION: P1H", ">P1H</dd>"},
      {"79360 ATTENDEE: Bo <b@example.org>\nlate STATUS=DECLINED",
       "href=\"mailto:b@example.org\">Bo &lt;b@example.org&gt;</a> <span class=\"tag "
       "no\">declined<"},
      {"0 ATTENDEE;CN=Bo;RSVP=TRUE;ROLE=CHAIR: urn:x",
       ">Bo</span> <small>chair, reply requested</small>"},
      {"79402 PHOTO: <me.jpg>J<>", photo + "data:image/jpeg;base64,Sjw+\"></figure>\n"
                                           "<dl class=\"rows first\">\n<dt><bdi>Photo</bdi></dt>"
                                           "<dd><span class=\"quiet\">JPEG image, <bdi>3 bytes<"},
      {"79402 PHOTO: <>no picture", "<dd><a download=\"Photo\" href=\"data:text/plain;base64,"},
      {"79361 ATTACH: <a\"<.jpg>" + std::string("J") + std::string(40000, 'J'),
       "<a download=\"a&quot;&lt;.jpg\" href=\"data:image/jpeg;base64,SkpKSkpK"},
      {"79361 ATTACH: <>abc",
       "YWJj\"><bdi>Attachment</bdi></a> <span class=\"quiet\">text, <bdi>3 bytes<"},
      {"0 X-\"&: \"'\x01\x7F\xC2\x9B\u202E\uFFFF\U0001FFFE\u00FC\U0001F600",
       "X-&quot;&amp;</bdi></dt><dd "
       "dir=\"auto\">&quot;&#39;\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\u00FC\U0001F600<"},
      {"0 : v", "<dt><bdi>\u2013</bdi></dt>"},
      {"0 ATTENDEE;CN=Bo: " + std::string(3000, 'x'), "x<dl class=\"fields\">\n<dt>Name</dt>"},
      {"0 X: " + std::string(5000, 'x') + "\\ny", std::string(5000, 'x') + "<br>y</dd>"},
      {"0 X: a\\n" + std::string(5000, 'x'), ">a<br>" + std::string(5000, 'x')},
  };
  for (const auto &[property, expected] : cases) {
    expectInOrder(mainOf("[VCARD 1 0]\n" + property + "\n"), {expected});
  }
  EXPECT_EQ(mainOf("[- 1 0]\n"), "") << "the calls tell an empty calendar";
  // A second photo, and a picture elsewhere, stand in their rows.
  expectInOrder(mainOf("[VCARD 1 0]\nName: A\n79402 PHOTO: <>J\n79402 PHOTO: <>J\n0 X: <>J\n"),
                {"class=\"photo\"", "alt=\"Photo: A\"", "class=\"picture\"", "class=\"picture\""});
}

TEST(HtmlWriter, Calendar) {
  const std::string html = mainOf(
      "[VCALENDAR 1 0]\n0 X-WR-CALNAME: Home\n0 METHOD: PUBLISH\n"
      "[VTIMEZONE 2 1]\n0 TZID: hidden\n[STANDARD 3 2]\nStart: hidden\n0 X: hidden\n"
      "[VEVENT 4 1]\nSummary: Late\nLocation: Hall\nStatus: TENTATIVE\n79609 SUMMARY: Late\n"
      "79373 LOCATION: Hall\n85564 STATUS: TENTATIVE\n79382 DTSTART;TZID=Europe/Berlin: "
      "20240418T190000\n79369 DTEND;TZID=Europe/Berlin: 20240419T010000\n"
      "[VALARM 5 4]\n0 TRIGGER: -PT30M\n"
      "[VEVENT 6 1]\n79382 DTSTART: 20240418\n79369 DTEND: 20240420\n79400 NOTE: all day\n"
      "[VEVENT 7 1]\n79382 DTSTART: 20240101T000000Z\n79369 DTEND: 20240101T013000Z\n"
      "[VTODO 8 1]\nSummary: Undated\n[VTODO 9 1]\n79368 DUE: 20230101\n"
      "[VEVENT 10 1]\n79369 DTEND: 20230101T080000\n");
  EXPECT_EQ(html.find("hidden"), html.npos);
  expectInOrder(html,
                {"Home</h2>",
                 "PUBLISH",
                 "Sunday, 1 January 2023</time></h2>",
                 "<div>Due </div>",
                 ">to do<",
                 "\u2013 <time class=\"dt-end\" datetime=\"2023-01-01T08:00\">08:00</time></div>",
                 "Monday, 1 January 2024</time></h2>",
                 "<time class=\"dt-start\" datetime=\"2024-01-01T00:00Z\">00:00</time> \u2013 "
                 "<time class=\"dt-end\" datetime=\"2024-01-01T01:30Z\">01:30</time> "
                 "<span class=\"zone\">UTC</span>",
                 "Thursday, 18 April 2024</time></h2>",
                 "datetime=\"2024-04-18\">All day</time> \u2013 ",
                 "2024-04-19</time>",
                 "Untitled</h3>",
                 "all day</dd>",
                 ">19:00</time> \u2013 ",
                 ">2024-04-19 01:00</time> <span class=\"zone\">Europe/Berlin</span>",
                 "<h3 class=\"name p-name\" dir=\"auto\">Late</h3>",
                 "p-location\" dir=\"auto\">Hall</p>",
                 "<span class=\"tag maybe\">tentative</span>",
                 "<section class=\"alarm\">",
                 ">30 min before</time>",
                 "</section>\n</div></article>",
                 "Without a date</h2>",
                 "Undated"});
  // What the head tells isn't told again.
  EXPECT_EQ(html.find("<bdi>Summary"), html.npos);
  EXPECT_EQ(html.find("<bdi>Start"), html.npos);
}

// A run that ends anywhere, also within an object, leaves a valid page.
TEST(HtmlWriter, ErrorWithinASection) {
  const std::string script =
      "[VCARD 1 0]\nName: Ann\nTelephone/home: 1\n79399 N: 79412=a|79413=b\n79401 ORG: 0=a|0=b\n"
      "79402 PHOTO: <>Jjj\n79395 KEY: <>kk\n[VEVENT 2 0]\nSummary: s\n79382 DTSTART: 20240418\n"
      "0 X: y\n[VALARM 3 2]\n0 TRIGGER: -PT5M\n";
  struct Cut : std::exception {};
  struct Cutter : HtmlWriter {
    using HtmlWriter::HtmlWriter;
    void text(std::string_view utf8) override {
      HtmlWriter::text(utf8);
      if (--left == 0) throw Cut();
    }
    void object(const PlacedObject &object) override {
      struct Broken : PlacedObject {
        OpenIo open() const override {
          auto *io = whole->open().release();
          static int reads;
          reads = 0;
          io->Read = [](VcardIo *, void *to, uint32_t, uint32_t *count) {
            *static_cast<char *>(to) = 'J';
            *count = 1;
            return ++reads < 40000 ? 0 : -1;
          };
          return OpenIo(io);
        }
        const PlacedObject *whole = nullptr;
      };
      Broken broken;
      broken.whole = &object;
      HtmlWriter::object(--left == 0 ? broken : object);
    }
    int left = 0;
  };
  for (int cut = 1; cut <= 12; ++cut) {
    std::string page;
    Cutter writer(scriptedContentType, [&page](std::string_view part) { page += part; });
    writer.left = cut;
    writer.begin("t", true);
    writer.beginFile("a");
    try {
      play(script, 100, &writer);
      ADD_FAILURE() << cut;
    } catch (const std::exception &) {
    }
    writer.error("b<", "no & card");
    writer.end();
    expectValid(page);
    expectInOrder(page, {"<h2 id=\"f1\"><bdi>a</bdi></h2>",
                         "</section>\n<p class=\"fault\"><b>"
                         "<bdi>b&lt;</bdi></b> <bdi>no &amp; card</bdi></p>\n</main>"});
  }
}

TEST(Links, Addresses) {
  struct Case {
    std::string (*of)(std::string_view);
    std::string_view value, address;
  };
  constexpr Case cases[] = {
      {addressOf, " HTTPS://a.example/x \n", "HTTPS://a.example/x"},
      {addressOf, "geo:1,2", "geo:1,2"},
      {addressOf, "sms:+1", "sms:+1"},
      {addressOf, "http://\xC3\xBC.example/\\|%41", "http://%C3%BC.example/%5C%7C%41"},
      {addressOf, "http:", ""},
      {addressOf, "javascript:alert(1)", ""},
      {addressOf, "java\nscript:alert(1)", ""},
      {addressOf, "data:text/html,x", ""},
      {addressOf, "file:///etc/passwd", ""},
      {addressOf, "http://a.example/ b", ""},
      {addressOf,
       "http://a.example/\xE2\x80\xAE"
       "b",
       ""},
      {addressOf, "see http://a.example", ""},
      {telephoneAddressOf, "+49 (0)30/12-34.5", "tel:+4903012345"},
      {telephoneAddressOf, "*21*555#", ""},
      {telephoneAddressOf, "call 555", ""},
      {telephoneAddressOf, "1+234", ""},
      {mailAddressOf, "a@b.example", "mailto:a@b.example"},
      {mailAddressOf, "A <a@b.example>", "mailto:a@b.example"},
      {mailAddressOf, "MAILTO:a@b.example", "MAILTO:a@b.example"},
      {mailAddressOf, "a?bcc=x@b.example", "mailto:a%3Fbcc=x@b.example"},
      {mailAddressOf, "javascript:alert(1)@x", "mailto:javascript%3Aalert(1)@x"},
      {mailAddressOf, "a b@c.example", ""},
      {mailAddressOf, "a@b@c", ""},
      {mailAddressOf, "@b", ""},
  };
  for (const Case &each : cases) EXPECT_EQ(each.of(each.value), each.address) << each.value;
}

}  // namespace
}  // namespace px::test

// JSON from scripted events.

#include "host/writers/json_writer.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/scripted_events.h"

namespace px::test {
namespace {

// Fails the running test unless docs/card.schema.json allows each line.
void expectValid(const std::string &lines) {
  FILE *check = popen("/usr/bin/python3 " PX_SAMPLES "/../tests/validate_json.py " PX_SAMPLES
                      "/../docs/card.schema.json",
                      "w");
  EXPECT_EQ(std::fwrite(lines.data(), 1, lines.size(), check), lines.size());
  EXPECT_EQ(pclose(check), 0) << lines;
}

// The text of two files, the second of which can't be read, after a check that pieces make no
// difference.
std::string jsonOf(std::string_view script, JsonForm form = JsonForm::Lines) {
  std::string first;
  for (const size_t piece : {100000, 1, 3}) {
    std::string text;
    JsonWriter writer(form, scriptedContentType, [&text](std::string_view part) {
      EXPECT_LT(part.size(), 120000U);
      text += part;
    });
    writer.beginFile("a\xFF");
    play(script, piece, &writer);
    writer.error("b", "no \"card\"");
    writer.flush();
    if (first.empty()) first = text;
    EXPECT_EQ(text, first) << "in pieces of " << piece;
  }
  return first;
}

constexpr char kFailure[] = "{\"file\":\"b\",\"error\":\"no \\\"card\\\"\"}";

TEST(JsonWriter, Sections) {
  const std::string script =
      "[VCARD 1 0 3.0]\n"
      "Name: Ann\\nExample\n"
      "Title:\n"
      "Organisation: Mill\n"
      "Organisation: Bakery\n"
      "Address:\n"
      "Address: One\\nTwo\n"
      "Address:\n"
      "Address: Three\n"
      "Address:\n"
      "Telephone/work,pref: 27\n"
      "Telephone: 64\n"
      "Email: a@example.org\n"
      "Url/home: http://a.example\n"
      "[VCARD 2 1]\n"
      "[VEVENT 3 2]\n"
      "Summary: Meeting\n"
      "Status: DONE\n"
      "Entry: more\n"
      "0 X:\n";
  const std::string place = "\"offset\":100,\"length\":1000";
  const std::string objects[] = {
      "{\"file\":\"a\uFFFD\",\"section\":1,\"format\":\"vcard\",\"component\":\"VCARD\","
      "\"version\":\"3.0\"," +
          place +
          ",\"summary\":{\"name\":\"Ann\\nExample\","
          "\"organisation\":[\"Mill\",\"Bakery\"],\"address\":[\"One\",\"Two\",\"\",\"Three\"],"
          "\"telephones\":[{\"value\":\"27\",\"types\":[\"work\",\"pref\"]},{\"value\":\"64\"}],"
          "\"emails\":[{\"value\":\"a@example.org\"}],\"urls\":[\"http://a.example\"]},"
          "\"properties\":[]}",
      "{\"file\":\"a\uFFFD\",\"section\":2,\"format\":\"vcard\",\"component\":\"VCARD\"," + place +
          ",\"agentOf\":1,\"properties\":[]}",
      "{\"file\":\"a\uFFFD\",\"section\":3,\"format\":\"vcalendar\",\"component\":\"VEVENT\"," +
          place +
          ",\"partOf\":2,\"summary\":{\"summary\":\"Meeting\",\"status\":\"DONE\","
          "\"lines\":[\"more\"]},\"properties\":[{\"name\":\"X\",\"value\":\"\"," +
          place + "}]}",
      kFailure};
  std::string lines, elements;
  for (const std::string &object : objects) {
    lines += object + "\n";
    elements += (elements.empty() ? "\n" : ",\n") + object;
  }
  EXPECT_EQ(jsonOf(script), lines);
  expectValid(lines);
  EXPECT_EQ(jsonOf(script, JsonForm::Elements), elements);
}

TEST(JsonWriter, Properties) {
  const std::pair<std::string, std::string> cases[] = {
      {"79406 item1.tel;TYPE=work;A=1;TYPE=fax,x: 27",
       R"("name":"TEL","group":"item1","label":"Telephone","params":{"TYPE":["work","fax","x"],)"
       R"("A":["1"]},"value":"27")"},
      {"79399 N: 79412=Family|79413=\\nG|0=",
       R"("name":"N","label":"Name parts","value":["Family","\nG",""])"},
      {"79360 ATTENDEE: ann\nlate ROLE=CHAIR",
       R"("name":"ATTENDEE","label":"Attendee","value":"ann","params":{"ROLE":["CHAIR"]})"},
      {"79361 ATTACH: <a\".txt>" + std::string(40000, 't'),
       R"("name":"ATTACH","label":"Attachment","object":{"type":"text/plain","size":40000,"offset":200,)"
       R"("length":20,"title":"a\".txt"})"},
      {"0 X: " + std::string(1, '\0'), R"("name":"X","value":"\u0000")"},
      {"0 : a\\nb", R"("value":"a\nb")"},
      {"0 X: \"\\\t\x01\x1F\x7F\xC2\x9B\xC3\xBC\xE2\x80\xA8\xE2\x80\xAE\u2066\xE2\x80\x94\U0001F600",
       R"("name":"X","value":"\"\\\t\u0001\u001f\u007f\u009b)"
       "\xC3\xBC"
       R"(\u2028\u202e\u2066)"
       "\u2014\U0001F600\""},
      {"0 X: " + std::string(100000, 'x'),
       "\"name\":\"X\",\"value\":\"" + std::string(100000, 'x') + "\""},
  };
  std::string all;
  for (const auto &[property, members] : cases) {
    const std::string text = jsonOf("[- 1 0]\n" + property + "\n");
    all += text;
    EXPECT_EQ(text,
              "{\"file\":\"a\uFFFD\",\"section\":1,\"format\":\"vcalendar\",\"offset\":100,"
              "\"length\":1000,\"properties\":[{" +
                  members + ",\"offset\":100,\"length\":1000}]}\n" + kFailure + "\n");
  }
  expectValid(all);
}

// A run that ends anywhere leaves text that can be read.
TEST(JsonWriter, ErrorWithinASection) {
  const std::string script = "[VCARD 1 0]\nName: Ann\nTelephone/home: 1\n0 N: 1=a|2=b\n";
  struct Cut : std::exception {};
  struct Cutter : JsonWriter {
    using JsonWriter::JsonWriter;
    void text(std::string_view utf8) override {
      JsonWriter::text(utf8);
      if (--left == 0) throw Cut();
    }
    int left = 0;
  };
  std::string all;
  for (int cut = 1; cut <= 7; ++cut) {
    std::string text;
    Cutter writer(JsonForm::Lines, scriptedContentType,
                  [&text](std::string_view part) { text += part; });
    writer.left = cut;
    try {
      play(script, 2, &writer);
    } catch (const Cut &) {
    }
    writer.error("b", "no \"card\"");
    writer.flush();
    all += text;
    EXPECT_TRUE(text.ends_with(std::string("\n") + kFailure + "\n"));
  }
  expectValid(all);
}

}  // namespace
}  // namespace px::test

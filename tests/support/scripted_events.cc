#include "tests/support/scripted_events.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <sstream>
#include <utility>

#include "host/io/memory_io.h"
#include "px/vcrd.h"

namespace px::test {
namespace {

constexpr std::string_view kKinds[] = {"Name",      "Title", "Organisation", "Address",
                                       "Telephone", "Email", "Url",          "Summary",
                                       "Location",  "Start", "Status",       "Entry"};

std::vector<std::string> split(const std::string &text, char at) {
  std::vector<std::string> parts(1);
  for (char c : text) {
    if (c == at) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

// Takes what stands before the sign, or all.
std::string takeTo(char sign, std::string *text) {
  const size_t end = std::min(text->find(sign), text->size());
  const std::string taken = text->substr(0, end);
  text->erase(0, end + 1);
  return taken;
}

struct MemoryObject : PlacedObject {
  OpenIo open() const override {
    auto *io = new MemoryIo(content);
    io->Close = [](VcardIo *self) {
      delete static_cast<MemoryIo *>(self);
      return 0;
    };
    return OpenIo(io);
  }
  std::string content;
};

Parameter parameter(std::string text) {
  std::string name = takeTo('=', &text);
  return {name, split(text, ',')};
}

struct Player {
  CardEvents *to;
  size_t piece;

  void text(std::string_view text) {
    while (!text.empty()) {
      if (text.starts_with("\\n")) {
        to->lineBreak();
        text.remove_prefix(2);
        continue;
      }
      const std::string_view line = text.substr(0, text.find("\\n"));
      size_t end = std::min(piece, line.size());
      while (end < line.size() && (line[end] & 0xC0) == 0x80) ++end;
      to->text(line.substr(0, end));
      text.remove_prefix(end);
    }
  }

  void section(std::string line) {
    Section section;
    std::istringstream(line.substr(1, line.size() - 2)) >> section.component >> section.number >>
        section.partOf >> section.version;
    if (section.component == "-") section.component.clear();
    section.format = section.component == "VCARD" ? VcardFormatVcard : VcardFormatVcalendar;
    section.extent = Extent{100, 1000};
    to->beginSection(section);
  }

  void summaryLine(std::string line) {
    std::string head = takeTo(':', &line);
    const std::string kind = takeTo('/', &head);
    const auto *found = std::find(std::begin(kKinds), std::end(kKinds), kind);
    to->beginSummaryLine(static_cast<SummaryKind>(found - kKinds), false);
    text(line.substr(line.empty() ? 0 : 1));
    to->endSummaryLine(head.empty() ? std::vector<std::string>() : split(head, ','));
  }

  void property(std::string line) {
    Property property;
    property.label = static_cast<uint32_t>(std::stoul(takeTo(' ', &line)));
    std::string head = takeTo(':', &line);
    std::string name = takeTo(';', &head);
    property.group = name.find('.') == name.npos ? "" : takeTo('.', &name);
    property.name = name;
    if (const size_t at = property.group.find('('); at != std::string::npos) {
      property.groupLabel = property.group.substr(at + 1, property.group.size() - at - 2);
      property.group.resize(at);
    }
    while (!head.empty()) property.parameters.push_back(parameter(takeTo(';', &head)));
    for (const Parameter &each : property.parameters) {
      if (each.name == "TYPE") property.types = each.values;
    }
    property.extent = Extent{100, 1000};
    to->beginProperty(property);
    line.erase(0, 1);
    if (line.starts_with("<")) {
      MemoryObject object;
      object.title = takeTo('>', &line).substr(1);
      object.content = line;
      object.extent = Extent{200, 20};
      to->object(object);
    } else if (line.find('|') != line.npos) {
      for (std::string &field : split(line, '|')) {
        to->beginField(static_cast<uint32_t>(std::stoul(takeTo('=', &field))));
        text(field);
      }
    } else {
      text(line);
    }
  }
};

}  // namespace

void play(std::string_view script, size_t piece, CardEvents *to) {
  Player player{to, piece};
  bool inSection = false, inProperty = false;
  std::istringstream lines{std::string(script)};
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("late ")) {
      to->lateParameter(parameter(line.substr(5)));
      continue;
    }
    if (std::exchange(inProperty, false)) to->endProperty();
    if (line[0] == '[') {
      if (std::exchange(inSection, true)) to->endSection();
      player.section(line);
    } else if (std::isdigit(line[0])) {
      player.property(line);
      inProperty = true;
    } else {
      player.summaryLine(line);
    }
  }
  if (inProperty) to->endProperty();
  if (inSection) to->endSection();
}

std::string scriptedContentType(const void *bytes, size_t size) {
  return size > 0 && *static_cast<const char *>(bytes) == 'J' ? "image/jpeg" : "text/plain";
}

}  // namespace px::test

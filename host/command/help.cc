#include "host/command/help.h"

#include "host/command/exit_code.h"
#include "host/command/option_table.h"
#include "host/languages/translation.h"
#include "host/writers/wrapped_lines.h"

namespace px {
namespace {

constexpr uint32_t kWidth = 80;
constexpr uint32_t kHelpColumn = 26;

struct Example {
  const char *command;
  const char *text;
};

constexpr Example kExamples[] = {
    {"pxcard card.vcf", N_("show a card")},
    {"pxcard -r --format json -o cards.json contacts", N_("all cards below a folder as JSON")},
    {"pxcard --extract photos --name '{file}-{card}-{kind}' *.vcf", N_("save what is embedded")},
};

void writeOption(const OptionRow &row, WrappedLines *lines) {
  lines->write(row.isShort() ? std::string("  -") + static_cast<char>(row.id) + ", --"
                             : "      --");
  lines->write(row.name);
  if (row.value) lines->write(std::string(" ") + row.value);
  if (lines->column() + 2 > kHelpColumn) lines->endLine();
  lines->setIndent(kHelpColumn);
  lines->padTo(kHelpColumn);
  lines->write(tr(row.help));
  lines->endLine();
  lines->setIndent(0);
}

}  // namespace

std::string helpText() {
  std::string text;
  WrappedLines lines(kWidth, [&text](std::string_view piece) { text += piece; });
  const auto line = [&lines](std::string_view each) {
    lines.write(each);
    lines.endLine();
  };
  line(filled(tr("Usage: %1"), {"pxcard [OPTION...] [FILE...]"}));
  lines.skipLine();
  line(
      tr("Shows vCard and vCalendar files. Without FILE, or where FILE is -, it reads standard "
         "input."));
  lines.skipLine();
  line(tr("Options:"));
  for (const OptionRow &row : optionTable()) writeOption(row, &lines);
  lines.skipLine();
  line(tr("Examples:"));
  for (const Example &example : kExamples) {
    line(std::string("  ") + example.command);
    line(std::string("      ") + std::string(tr(example.text)));
  }
  lines.skipLine();
  line(tr("Exit codes:"));
  for (const ExitCodeText &each : kExitCodes) {
    lines.setIndent(5);
    line("  " + std::to_string(each.code) + "  " + std::string(tr(each.text)));
  }
  lines.flush();
  return text;
}

}  // namespace px

#include "host/command/option_table.h"

#include "host/languages/translation.h"

namespace px {
namespace {

constexpr OptionRow kOptions[] = {
    {OptionFormat, "format", "FORMAT", Completes::Words, "text html json jsonl trace",
     N_("show text, html (one page), json (one array), jsonl (a line for each card) or trace (the "
        "filter's calls); text when not given")},
    {OptionCheck, "check", nullptr, Completes::Nothing, "", N_("show nothing, only tell faults")},
    {OptionExtract, "extract", "DIR", Completes::Folders, "",
     N_("save the embedded objects in DIR instead; writes a line for each: name, type, size in "
        "bytes, file and card, with tabs between. Equal content is saved once. Reads one file at "
        "a time. With - as DIR one object is written to standard output")},
    {OptionObject, "object", "N", Completes::Words, "photo",
     N_("which object --extract - writes: that of this number, or photo for the first picture; the "
        "first when not given")},
    {OptionName, "name", "PATTERN", Completes::Words,
     "{file}-{card}-{kind} {file}-{number} {title}",
     N_("name the saved objects by {file}, {card}, {kind}, {number} and {title}; the extension "
        "comes from the content")},
    {OptionRecursive, "recursive", nullptr, Completes::Nothing, "",
     N_("read every .vcf, .vcard, .vcs and .ics file below folders")},
    {OptionFiles0From, "files0-from", "FILE", Completes::Files, "",
     N_("read the files that FILE names, with a zero byte behind each name; - for standard input")},
    {OptionOutput, "output", "FILE", Completes::Files, "",
     N_("write to FILE, which is replaced when all is written")},
    {OptionQuiet, "quiet", nullptr, Completes::Nothing, "",
     N_("don't tell faults of files; the exit code does")},
    {OptionTolerant, "tolerant", nullptr, Completes::Nothing, "",
     N_("exit with 0 where there are faults in files; they are told all the same")},
    {OptionJobs, "jobs", "N", Completes::Nothing, "", N_("read N files at a time")},
    {OptionRaw, "raw", nullptr, Completes::Nothing, "",
     N_("read the bytes as they stand, as trace always does")},
    {OptionNoLimit, "no-limit", nullptr, Completes::Nothing, "",
     N_("read on where a file costs more work than its size allows")},
    {OptionWidth, "width", "N", Completes::Nothing, "",
     N_("wrap text to N columns, or not at all with 0; the width of the terminal, else COLUMNS, "
        "else 80 when not given")},
    {OptionColor, "color", "WHEN", Completes::Words, "auto always never",
     N_("colours in text: auto, always or never")},
    {OptionLang, "lang", "LANG", Completes::Words, "ar de en es fr ja",
     N_("speak a language: ar, de, en, es, fr or ja; that of the locale when not given")},
    {OptionCompletion, "completion", "SHELL", Completes::Words, "bash zsh fish",
     N_("write the completion for bash, zsh or fish")},
    {OptionHelp, "help", nullptr, Completes::Nothing, "", N_("show this help")},
    {OptionVersion, "version", nullptr, Completes::Nothing, "", N_("show the versions")},
};

}  // namespace

std::span<const OptionRow> optionTable() { return kOptions; }

}  // namespace px

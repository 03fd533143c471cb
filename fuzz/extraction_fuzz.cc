// What is saved: names that are safe whatever a title says, types that are known whatever the
// content is, and files in the folder alone.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

#include "fuzz/fuzz_target.h"
#include "host/reading/file_reading.h"
#include "host/saving/content_type.h"
#include "host/saving/object_extraction.h"
#include "host/source/utf8.h"

namespace px::fuzz {
namespace {

void requireSafe(std::string_view name, std::string_view extension) {
  if (name.empty()) return;
  require(name.size() <= 255, "a name fits into a folder");
  require(name.find('/') == name.npos && name.find('\\') == name.npos, "a name is no path");
  require(name.front() != '.' && name.front() != '-', "a name is neither hidden nor an option");
  require(name.ends_with(extension) && name.size() > extension.size(), "a name and its extension");
  require(isCleanText(name) && name.find('\n') == name.npos, "a name is clean UTF-8");
  std::string shown;
  appendPrintable(name, &shown);
  require(shown == name, "a name can be shown");
}

void checkNames(std::string_view text, Choices *choices) {
  bool cut;
  std::string title;
  for (size_t at = 0; at < text.size(); ++at) {
    const size_t valid = validUtf8Length(text.substr(at), &cut);
    title += text.substr(at, valid);
    at += valid;
  }
  constexpr std::string_view extensions[] = {"", ".jpg", ".jpeg", ".tar"};
  const std::string_view extension = extensions[choices->below(4)];
  const std::string name = safeFileName(title, extension);
  requireSafe(name, extension);
  if (!name.empty()) {
    const std::string_view stem = std::string_view(name).substr(0, name.size() - extension.size());
    require(safeFileName(name, "") == name || stem.empty(), "a safe name stays as it is");
  }
}

void checkType(std::string_view content) {
  const ContentType type = guessContentType(content);
  require(std::count(type.mime.begin(), type.mime.end(), '/') == 1, "a MIME type");
  require(type.extensions.empty() || type.extensions.front() == '.', "extensions with their dots");
}

// All of a file's objects, in a folder of the process's own.
void checkExtraction(std::string_view text, Reading reading, const std::string &pattern) {
  namespace fs = std::filesystem;
  static const fs::path parent = [] {
    std::string path = (fs::temp_directory_path() / "px-fuzz-XXXXXX").string();
    require(mkdtemp(path.data()) != nullptr, "a temporary folder");
    static const struct Removal {
      fs::path path;
      ~Removal() { fs::remove_all(path); }
    } removal{path};
    return fs::path(path);
  }();
  std::set<std::string> names;
  {
    ObjectExtraction::Target target{SaveDirectory(parent / "objects"), {}, pattern};
    const auto report = [&](const SavedObject &saved) {
      requireSafe(saved.name, "");
      names.insert(saved.name);  // equal content has one file
      require(fs::file_size(parent / "objects" / saved.name) == saved.size, "and its size");
    };
    ObjectExtraction extraction(
        "../a b.vcf", &target, [] {}, report);
    MemoryIo io(text);
    try {
      readFile(
          filterLibrary(), &io, reading, [](uint64_t, const std::string &) {}, &extraction);
    } catch (const std::runtime_error &) {
    }
  }
  size_t count = 0;
  if (fs::exists(parent / "objects")) {
    for (const auto &entry : fs::directory_iterator(parent / "objects")) {
      require(names.contains(entry.path().filename()), "nothing else is left in the folder");
      ++count;
    }
    fs::remove_all(parent / "objects");
  }
  require(count == names.size(), "each object is there");
  require(fs::is_empty(parent), "nothing is written elsewhere");
}

}  // namespace
}  // namespace px::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  using namespace px;
  using namespace px::fuzz;
  const std::string_view text = textOf(data, size);
  Choices choices(text);
  checkNames(text, &choices);
  checkType(text);
  const Reading reading = choices.yes() ? Reading::Viewed : Reading::Raw;
  constexpr const char *patterns[] = {"", "{title}", "{file}-{card}-{kind}-{number}", ".{kind}"};
  checkExtraction(text, reading, patterns[choices.below(4)]);
  return 0;
}

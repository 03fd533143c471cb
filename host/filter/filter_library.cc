#include "host/filter/filter_library.h"

#include <dlfcn.h>

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>

#include "host/io/beside_program.h"

namespace px {
namespace {

// The library beside the one that this stands in, or in the folder for libraries beside the
// program's bin/, goes before any other, so that a build tree runs its own. A run path would say
// the same, but the sanitizers' dlopen doesn't go by it.
std::string libraryPath() {
  namespace fs = std::filesystem;
  std::string name = PX_FILTER_NAME;
  std::error_code none;
  for (const fs::path &beside :
       {ownFile().parent_path() / name, besideProgram(PX_LIBDIR "/" + name)}) {
    if (beside.is_absolute() && fs::exists(beside, none)) return beside.string();
  }
  return name;
}

FilterLibrary load() {
  const std::string path = libraryPath();
  void *library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) throw std::runtime_error(dlerror());
  const auto getRtns = reinterpret_cast<decltype(VwGetRtns) *>(dlsym(library, "VwGetRtns"));
  const auto versionText = static_cast<const char *const *>(dlsym(library, "version"));
  // It is the sibling library's, which comes with the filter.
  const auto setOption =
      reinterpret_cast<decltype(UTSetGlobalOption) *>(dlsym(library, "UTSetGlobalOption"));
  if (!getRtns || !versionText || !setOption)
    throw std::runtime_error(path + ": no filter library");

  void *table[VwSlotCount] = {};
  getRtns(table, VwSlotCount);
  auto take = [&](int slot, auto &entry) {
    entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(table[slot]);
    if (!entry) throw std::runtime_error(path + ": no entry point in slot " + std::to_string(slot));
  };
  FilterLibrary filter{};
  take(VwSlotStreamOpen, filter.streamOpen);
  take(VwSlotStreamSection, filter.streamSection);
  take(VwSlotStreamRead, filter.streamRead);
  take(VwSlotStreamTell, filter.streamTell);
  take(VwSlotStreamSeek, filter.streamSeek);
  take(VwSlotGetInfo, filter.getInfo);
  take(VwSlotGetData, filter.getData);
  take(VwSlotSetData, filter.setData);
  take(VwSlotLocalUp, filter.localUp);
  take(VwSlotLocalDown, filter.localDown);
  take(VwSlotAllocProc, filter.allocProc);
  take(VwSlotFreeProc, filter.freeProc);
  take(VwSlotSetUser, filter.setUser);
  take(VwSlotSetSoRtn, filter.setSoRtn);
  take(VwSlotDoSpecial, filter.doSpecial);
  filter.setGlobalOption = setOption;

  const char *number = std::strchr(*versionText, '=');
  filter.version = number ? number + 1 : *versionText;
  return filter;
}

}  // namespace

const FilterLibrary &filterLibrary() {
  static const FilterLibrary library = load();
  return library;
}

void setInputBuffer(const FilterLibrary &filter, uint32_t kilobytes) {
  filter.setGlobalOption(UTOptionInputBuffer, &kilobytes, sizeof kilobytes);
}

}  // namespace px

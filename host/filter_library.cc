#include "host/filter_library.h"

#include <dlfcn.h>

#include <cstring>
#include <filesystem>
#include <system_error>
#include <type_traits>

namespace px {
namespace {

struct Loaded {
  FilterLibrary filter{};
  std::string error;  // empty when `filter` is complete
};

// The library in lib/ beside the program's bin/ goes before any other, so that a build tree runs
// its own. A run path would say the same, but the sanitizers' dlopen doesn't go by the program's.
std::string libraryPath() {
  namespace fs = std::filesystem;
  const std::string name = "libpx_vcrd.so";
  std::error_code none;
  const fs::path program = fs::read_symlink("/proc/self/exe", none);
  const fs::path beside = program.parent_path().parent_path() / "lib" / name;
  return fs::exists(beside, none) ? beside.string() : name;
}

Loaded load() {
  Loaded loaded;
  const std::string path = libraryPath();
  void *library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    loaded.error = dlerror();
    return loaded;
  }
  const auto getRtns = reinterpret_cast<decltype(VwGetRtns) *>(dlsym(library, "VwGetRtns"));
  const auto versionText = static_cast<const char *const *>(dlsym(library, "version"));
  if (!getRtns || !versionText) {
    loaded.error = path + ": no filter library";
    return loaded;
  }

  void *table[VwSlotCount] = {};
  getRtns(table, VwSlotCount);
  auto take = [&](int slot, auto &entry) {
    entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(table[slot]);
    if (!entry) loaded.error = path + ": no entry point in slot " + std::to_string(slot);
  };
  FilterLibrary &filter = loaded.filter;
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

  const char *number = std::strchr(*versionText, '=');
  filter.version = number ? number + 1 : *versionText;
  return loaded;
}

}  // namespace

const FilterLibrary *loadFilterLibrary(std::string *error) {
  static const Loaded loaded = load();
  if (loaded.error.empty()) return &loaded.filter;
  *error = loaded.error;
  return nullptr;
}

}  // namespace px

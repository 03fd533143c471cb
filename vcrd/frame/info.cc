// What the library says of itself: the answers of VwGetInfo, the formats, the version.

#include <cstring>

#include "build_stamp.h"
#include "vcrd/frame/vcard_data.h"

extern const VcardOverlay VcardOverlayId[2] = {{VcardFormatVcard, "xvCard"},
                                               {VcardFormatVcalendar, "xvCalendar"}};
static_assert(sizeof(VcardOverlayId) == 72);

extern const char *const version = "ZEV_VER=" PX_VERSION;

static_assert(sizeof(PX_BUILD_DATE) == 12 && sizeof(PX_BUILD_TIME) == 9);

namespace {

inline constexpr uint16_t kInitSize = 4752;  // sizeof(VcardInit), checked where it is defined

template <typename Number>
int32_t Answer(void *out, Number number) {
  std::memcpy(out, &number, sizeof number);
  return 1;
}

template <size_t Size>
int32_t Answer(void *out, const char (&text)[Size]) {
  std::memcpy(out, text, Size);
  return 1;
}

}  // namespace

int32_t VwGetInfo(void *out, uint16_t selector) {
  switch (selector) {
    case 1:
      return Answer(out, uint16_t{kSaveSize});
    case 2:
      return Answer(out, uint16_t{kOpenSize});
    case 3:
      return Answer(out, kInitSize);
    case 4:
      return Answer(out, uint16_t{400});
    case 5:
      return Answer(out, uint16_t{440});
    case 6:
      return Answer(out, uint16_t{2});
    case 7: {
      const uint16_t ids[] = {VcardOverlayId[0].Id, VcardOverlayId[1].Id};
      std::memcpy(out, ids, sizeof ids);
      return 1;
    }
    case 8:
      return Answer(out, PX_BUILD_DATE);
    case 9:
      return Answer(out, PX_BUILD_TIME);
    case 10:
    case 11:
      return Answer(out, uint16_t{0});
    case 12:
      return Answer(out, uint32_t{0x12345678});
    case 13:
      return Answer(out, uint32_t{0});
    default:
      return 0;
  }
}

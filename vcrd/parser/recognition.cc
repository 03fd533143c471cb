// VwStreamOpen: readies the record and recognises the BEGIN line.

#include "vcrd/parser/content_line.h"
#include "vcrd/parser/scanner.h"

namespace {

void WriteInfo(void *info) {
  const uint8_t type[] = {0x78, 0x00, 0x00, 0x00, 0x00, 0x01, 0x03, 0x00};
  auto *to = static_cast<uint8_t *>(info);
  std::memcpy(to + offsetof(VcardInfo, Type), type, sizeof type);
  // The vCard name for both formats.
  std::memcpy(to + offsetof(VcardInfo, Name), VcardOverlayId[0].Name + 1, sizeof(VcardInfo::Name));
}

// Whether the next token, scanned in `state`, is `token` with the text `first` or `second` in any
// case.
bool NextTokenIs(VcardState state, VcardToken token, const char *first, const char *second,
                 VcardData *data) {
  VcardText text;
  data->ParseState = state;
  if (VcardGetToken(text, data) != token) return false;
  VcardLowerText(text, text);
  return VcardSameText(text, first) || VcardSameText(text, second);
}

}  // namespace

int32_t VwStreamOpen(VcardStream *stream, int16_t id, uint64_t, void *info, VcardData *data) {
  if (id != VcardFormatVcard && id != VcardFormatVcalendar) return VcardOpenUnknownFormat;
  std::memset(static_cast<void *>(data), 0, kOpenSize);
  VcardClearProp(data);
  data->Version = 1;
  data->NextObjectId = 1;
  VcardForgetPositions(data);
  data->FilterId = static_cast<uint16_t>(id);
  data->Stream = stream;
  if (info != nullptr) WriteInfo(info);

  // The value is scanned like that of a named parameter, so that it has to end with its line. It
  // isn't compared with `id`.
  const bool good = NextTokenIs(StateName, TokenColon, "begin", "begin", data) &&
                    NextTokenIs(StateParmValue, TokenEnd, "vcard", "vcalendar", data);
  data->ParseState = StateName;
  return good ? VcardOpenGood : VcardOpenNotRecognised;
}

// The parser's actions for groups and names. Those for parameters stand in parameters.cc; what is
// done with a complete head, in the output.

#include "vcrd/frame/vcard_data.h"

int64_t TavoVcardAddGroup(const char *text, VcardData *data) {
  const size_t length = std::strlen(text);
  if (length > 253) return 0;
  const size_t used = std::strlen(data->GroupName);
  if (used + length + 1 >= kTextSize) return 0;  // many groups: what no longer fits is dropped
  std::memcpy(data->GroupName + used, text, length);
  data->GroupName[used + length] = '.';
  data->GroupName[used + length + 1] = '\0';
  return 0;
}

int64_t TavoVcardSetPropName(const char *text, VcardData *data) {
  VcardCopyText(data->PropName, text);
  return 0;
}

// A line that ended before its colon. Nothing is reset: what its parameters set stays in force on
// the next line.
int64_t TavoVcardError(const char *text, VcardData *) { return reinterpret_cast<int64_t>(text); }

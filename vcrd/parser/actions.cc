// The parser's actions for groups and names, and all actions as the state tables take them. Those
// for parameters are done in parameters.cc; what is done with a complete head, in the output.

#include "vcrd/parser/actions.h"

void VcardAddGroup(VcardTokenText text, VcardData *data) {
  if (text.Length > 253) return;
  const size_t used = std::strlen(data->GroupName);
  if (used + text.Length + 1 >= kTextSize) return;  // many groups: what no longer fits is dropped
  char *const to = data->GroupName + used;
  std::memcpy(to, text.Begin, text.Length);
  to[text.Length] = '.';
  to[text.Length + 1] = '\0';
}

int64_t TavoVcardAddGroup(const char *text, VcardData *data) {
  VcardAddGroup(VcardPaddedText(text).Text(), data);
  return 0;
}

int64_t TavoVcardSetPropName(const char *text, VcardData *data) {
  VcardSetPropName(VcardPaddedText(text).Text(), data);
  return 0;
}

int64_t TavoVcardSetParmId(const char *text, VcardData *data) {
  VcardSetParmId(VcardPaddedText(text).Text(), data);
  return 0;
}

int64_t TavoVcardSetParmValue(const char *text, VcardData *data) {
  VcardSetParmValue(VcardPaddedText(text).Text(), data);
  return 0;
}

int64_t TavoVcardSetIdParmValue(const char *text, VcardData *data) {
  VcardSetIdParmValue(VcardPaddedText(text).Text(), data);
  return 0;
}

// A line that ended before its colon. Nothing is reset: what its parameters set stays in force on
// the next line.
int64_t TavoVcardError(const char *text, VcardData *) { return reinterpret_cast<int64_t>(text); }

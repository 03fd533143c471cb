// A complete head of a content line goes to one of the two passes.

#include "vcrd/output/indexing_pass.h"
#include "vcrd/output/property_listing.h"
#include "vcrd/parser/content_line.h"
#include "vcrd/parser/property_names.h"

int64_t TavoVcardDisplayProp(const char *, VcardData *data) {
  const VcardProperty property = VcardFindProperty(data->PropName);
  if (data->IndexDone == 0) {
    VcardIndexProperty(property, data);
  } else {
    VcardListProperty(property, data);
  }
  VcardClearProp(data);
  return 0;
}

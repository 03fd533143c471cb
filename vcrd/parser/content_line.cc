#include "vcrd/parser/content_line.h"

void VcardClearProp(VcardData *data) {
  data->GroupName[0] = '\0';
  data->PropName[0] = '\0';
  if (data->HasFields != 0) {
    for (VcardText &value : data->Value) value[0] = '\0';
    data->HasFields = 0;
  }
  if (data->HasNamedParameters != 0) {
    data->TypeExt[0] = '\0';
    data->ValueExt[0] = '\0';
    data->EncodingExt[0] = '\0';
    data->Language[0] = '\0';
    data->Role[0] = '\0';
    data->Status[0] = '\0';
    data->Rsvp[0] = '\0';
    data->Expect[0] = '\0';
    data->ExtParmName[0] = '\0';
    data->ExtParmValue[0] = '\0';
    data->ParmId = 0;
    data->HasNamedParameters = 0;
  }
  data->ValueKind = ValueInline;
  data->Encoding = Encoding7bit;
  if (data->Types.Flag[TypeAny] != 0) data->Types = {};
  data->ParmPos = kNoPosition;
  // In the other versions a charset stays in force on the lines that follow, as producers of
  // version 2.1 that name it only once rely on.
  if (data->Version == 2) std::memcpy(data->Charset, "utf-8", sizeof "utf-8");
}

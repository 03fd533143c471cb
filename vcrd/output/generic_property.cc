#include "vcrd/output/generic_property.h"

#include "vcrd/input/logical_reader.h"
#include "vcrd/output/characters.h"
#include "vcrd/output/values.h"

namespace {

constexpr VcardLiteral kParametersBegin = " ( ";
constexpr VcardLiteral kParametersEnd = " )";

// Reads the parameters once more, up to the colon. Where ParmPos is left from an earlier line that
// had no colon, these are that line's, and the value that follows is the text behind them.
void PutParameters(VcardData *data) {
  VcardPutString(kParametersBegin, 0, data);
  VcardStreamSeek(data->Stream, data->ParmPos);
  uint8_t c;
  while (VcardGetChar(&c, data) == 0 && c != ':') VcardPutChar(c, data);
  VcardPutString(kParametersEnd, 0, data);
}

}  // namespace

void VcardPutGenericProp(VcardData *data) {
  SoUseStyle(data->StyleBodyPara, data);
  SoUseStyle(data->StyleLabel, data);
  VcardPutString(data->PropName, 0, data);
  SoUseStyle(data->StylePlain, data);
  if (data->ParmPos != kNoPosition) PutParameters(data);
  SoEmitSpecial(SoSpecialLineBreak, data);
  SoEmitSpecial(SoSpecialTab, data);
  SoEmitSpecial(SoSpecialTab, data);
  VcardPutPlainLine(data);
  SoEmitSpecial(SoSpecialLineBreak, data);
  VcardEndParagraph(data);
}

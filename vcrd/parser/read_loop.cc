// VwStreamRead: both passes over a section.
//
// The first pass indexes the lines and writes nothing; the second lists them. Between the two the
// summary is written and the stream goes back to the position of VwStreamTell. A pass ends at an
// END line, or with the input.

#include "vcrd/frame/host_routines.h"
#include "vcrd/input/stream.h"
#include "vcrd/parser/handover.h"
#include "vcrd/parser/heads.h"
#include "vcrd/parser/scanner.h"

namespace {

size_t Cell(VcardToken token, int32_t state) { return static_cast<size_t>(token * 4 + state); }

// Dispatches tokens to the end of the pass. Answers false when the host stops it on the way. A stop
// that was asked for in the summary is seen behind one token.
bool RunPass(VcardData *data) {
  VcardText text;
  do {
    if (data->StopRequested == 0 && VcardReadHeads(data)) break;
    const VcardToken token = VcardGetToken(text, data);
    if (token == TokenEof) return true;
    VcardInit.VcardActions[Cell(token, data->ParseState)](text, data);
    data->ParseState = VcardInit.VcardNextState[Cell(token, data->ParseState)];
  } while (data->StopRequested == 0 && data->Finished == 0);
  return data->StopRequested == 0;
}

// AtEof isn't reset: where the first pass or the summary has set it, the listing comes out empty.
void BeginListing(VcardData *data) {
  VcardPutSummary(data);
  SoEmitSpecial(SoSpecialLineBreak, data);
  data->IndexDone = 1;
  data->Finished = 0;
  // One byte back: VwStreamTell behind VwStreamOpen counts the pushed-back first byte of the next
  // line as read. In a later section this is the line end before the BEGIN line.
  VcardStreamSeek(data->Stream, data->SavedPos != 0 ? data->SavedPos - 1 : 0);
  data->ParseState = StateName;
  data->HasPushback = 0;
  data->ParmPos = kNoPosition;
  data->TokenPos = 0;
}

}  // namespace

int32_t VwStreamRead(uint64_t, VcardData *data) {
  data->AtEof = 0;
  data->Finished = 0;
  data->StopRequested = 0;
  if (data->PassCount > 1) {
    SoEmitBreak(SoBreakDocument, data);
    return 0;
  }
  do {
    if (!RunPass(data)) return 0;
    if (data->IndexDone == 0) BeginListing(data);
    ++data->PassCount;
  } while (data->PassCount <= 1);
  if (data->Finished == 0) SoEmitBreak(SoBreakDocument, data);
  return 0;
}

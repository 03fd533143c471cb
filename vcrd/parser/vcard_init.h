// The constant tables, in one exported block.

#ifndef PX_VCRD_PARSER_VCARD_INIT_H
#define PX_VCRD_PARSER_VCARD_INIT_H

#include <array>
#include <cstdint>

#include "px/vcrd.h"
#include "vcrd/parser/name_table.h"

// What the scanner answers.
enum VcardToken : int32_t {
  TokenPeriod = 0,
  TokenSemicolon = 1,
  TokenEquals = 2,
  TokenColon = 3,
  TokenEnd = 4,  // the line ended; or, in StateValue, the empty token that stands for the value
  TokenEof = 5
};

// What the next token of a content line is.
enum VcardState : int32_t {
  StateName = 0,       // a group or the property's name
  StateParm = 1,       // a bare parameter or the name of a named one
  StateParmValue = 2,  // the value of a named parameter
  StateValue = 3       // the value: the head is complete
};

using VcardAction = int64_t (*)(const char *text, VcardData *data);

struct VcardInitTables {
  // Both by token times 4 plus state.
  std::array<int32_t, 24> VcardNextState;
  std::array<VcardAction, 24> VcardActions;

  std::array<VcardName, 55> PropertyNames;
  std::array<VcardName, 10> ParameterNames;
  std::array<VcardName, 51> TypeNames;
  std::array<uint32_t, 31> TypeLabelIds;
  std::array<VcardName, 6> ValueKindNames;
  std::array<VcardName, 6> EncodingNames;

  // String ids of the labels of fields.
  std::array<uint32_t, 5> NameFieldIds;
  std::array<uint32_t, 7> AdrFieldIds;
  std::array<uint32_t, 4> AttendeeParmIds;
  std::array<uint32_t, 4> AalarmFieldIds;
  std::array<uint32_t, 5> MalarmFieldIds;
  std::array<uint32_t, 4> DalarmFieldIds;

  // The value of each Base64 character, 255 for every other byte below 128.
  std::array<uint8_t, 128> Base64Values;
};
static_assert(sizeof(VcardInitTables) == 4752);

#endif

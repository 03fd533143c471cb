// The names of parameters and of the values that the parser knows. The order of the rows fixes the
// numbers that stand for them.

#ifndef PX_VCRD_PARSER_PARAMETER_NAMES_H
#define PX_VCRD_PARSER_PARAMETER_NAMES_H

#include <array>

#include "vcrd/parser/name_table.h"

inline constexpr std::array<VcardName, 10> kParameterNames = {{
    {"type"},
    {"value"},
    {"encoding"},
    {"charset"},
    {"language"},
    {"x-"},
    {"role"},
    {"status"},
    {"rsvp"},
    {"expect"},
}};

inline constexpr std::array<VcardName, 51> kTypeNames = {{
    {"dom"},    {"intl"},     {"postal"},  {"parcel"},  {"home"},       {"work"},    {"pref"},
    {"voice"},  {"fax"},      {"msg"},     {"cell"},    {"pager"},      {"bbs"},     {"modem"},
    {"car"},    {"isdn"},     {"video"},   {"aol"},     {"applelink"},  {"attmail"}, {"cis"},
    {"eworld"}, {"internet"}, {"ibmmail"}, {"mcimail"}, {"powershare"}, {"prodigy"}, {"tlx"},
    {"x400"},   {"gif"},      {"cgm"},     {"wmf"},     {"bmp"},        {"met"},     {"pmb"},
    {"dib"},    {"pict"},     {"tiff"},    {"pdf"},     {"ps"},         {"jpeg"},    {"qtime"},
    {"mpeg"},   {"mpeg2"},    {"avi"},     {"wave"},    {"aiff"},       {"pcm"},     {"x509"},
    {"pgp"},    {"x-"},
}};

inline constexpr std::array<VcardName, 6> kValueKindNames = {
    {{"inline"}, {"url"}, {"content-id"}, {"cid"}, {"x-"}, {"binary"}}};

inline constexpr std::array<VcardName, 6> kEncodingNames = {
    {{"7bit"}, {"8bit"}, {"quoted-printable"}, {"base64"}, {"x-"}, {"utf-8"}}};

#endif

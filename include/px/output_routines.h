/*
 * The output routines: how the filter writes a card.
 *
 * A host stores routines by id with VwSetSoRtn; an id without a routine is SODummy. Every routine
 * gets the two values of VwSetUser, unchanged, as its last two arguments. Every routine answers an
 * int64_t, and the answers aren't looked at, but for SoEmitBreak of a paragraph. Pointers are
 * valid during the call only. Routines are called on the host's thread during VwStreamSection and
 * VwStreamRead, and must not call the filter with the same record.
 *
 * The order of calls
 *
 *   VwStreamSection   SoBeginSection, SoRoutine88, SoRoutine89; in the first section of a stream
 *                     then the nine styles, each as SoBeginDefinition, its attributes,
 *                     SoEndDefinition.
 *   VwStreamRead      first the summary, in the heading styles; it ends with SoEmitSpecial(5).
 *                     Then each property in the order of the file: the paragraph's style, the
 *                     label in the label's style, the value, SoEmitBreak(1, 0).
 *                     At the end of the card SoEmitBreak(3, 0) when another one follows, and
 *                     SoEmitBreak(2, 0) when none does.
 *
 * A paragraph is what stands between two SoEmitBreak calls. A style holds until the next SoUseStyle
 * of its kind (character or paragraph). A property that only refers to its content by a URL, and
 * a few malformed ones, write their text without a paragraph end of their own: they run on into
 * the next property's SoUseStyle.
 *
 * Summary or listing. From SoBeginSection to the first SoUseStyle of a paragraph style all is the
 * summary; from there to the section's end all is the listing. The heading styles are used in the
 * summary alone, the other styles in the listing alone. A host that wants one of the two passes
 * over the calls of the other.
 *
 * The styles. Their ids are the same in every stream, in the order of their definitions:
 *
 *   id      kind       bold  italic  underlined  height   stands for
 *   0       character  yes   -       yes         -        a property's label
 *   1       character  no    no      no          -        plain text: types, values
 *   2       character  no    yes     no          -        the label of a field of a value
 *   3 to 6  character  yes   no      no          44 to 24 headings of the summary, each smaller:
 *                                                         44, 32, 28 and 24
 *   7       paragraph                                     a property whose value has fields
 *   8       paragraph                                     a property with a plain value
 *
 * A host that reads the definitions instead sees the same: a height makes a heading, italics a
 * field's label, bold without a height a property's label.
 */
#ifndef PX_OUTPUT_ROUTINES_H
#define PX_OUTPUT_ROUTINES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The ids that the filter calls. VwSetSoRtn takes ids from 1 to 118 and from 121 to 150. */
enum {
  SoIdEmitChar = 1,
  SoIdEmitSpecial = 2,
  SoIdSetCharHeight = 3,
  SoIdAddTabStop = 4,
  SoIdEmitBreak = 5,
  SoIdBeginSection = 18,
  SoIdEmitObject = 45,
  SoIdBeginDefinition = 49,
  SoIdEndDefinition = 50,
  SoIdRoutine88 = 88,
  SoIdRoutine89 = 89,
  SoIdSetCharset = 90,
  SoIdGetObjectBase = 96,
  SoIdEmitResourceString = 97,
  SoIdUseStyle = 138,
  SoIdSetAttribute = 141,
  SoIdSetObjectData = 147,
  SoIdCommitObjectData = 148
};

/* Kinds of SoEmitSpecial. */
enum {
  SoSpecialTab = 1,
  SoSpecialLineBreak = 5,
  SoSpecialSeparator = 6 /* behind each type label, the last one included; between name parts */
};

/* Kinds of SoEmitBreak. */
enum {
  SoBreakParagraph = 1,
  SoBreakDocument = 2,
  SoBreakSection = 3
};

/* Character sets of SoSetCharset. */
enum {
  /*
   * No set was named: codes are the bytes of the file, one a call, whatever they mean there. Labels
   * and layout, such as the brackets around types, stand under it too and are ASCII. Good texts
   * come of collecting the codes up to the next call that isn't SoEmitChar, and reading them as
   * UTF-8 where they are valid UTF-8 and as windows-1252 where they aren't.
   */
  SoCharsetDefault = 0x30100,
  SoCharsetUtf8 = 0x14B00000,        /* codes are 16-bit characters, 0xFFFF one that isn't there */
  SoCharsetWindows1251 = 0x14E30100  /* codes are bytes of windows-1251 */
};

/* Type codes of definitions. The low 16 bits are the size of the record. */
#define SoDefinitionStyle UINT32_C(0xA008001C)
#define SoDefinitionAttachment UINT32_C(0x8003000C)

/* Selectors of SoSetObjectData. */
enum {
  SoObjectDataRange = 8,      /* values: start, length in bytes */
  SoObjectDataKind = 8192,    /* values: 2 (Base64), 0 */
  SoObjectDataExtent = 256    /* values: start, end: an attachment's range */
};

/* The record of a style's SoBeginDefinition, 28 bytes. */
typedef struct VcardStyleDef {
  uint32_t StyleDefSize; /* offset 0: 28 */
  uint32_t StyleDefId;   /* offset 4: the id that SoUseStyle gives later, from 0 upward */
  uint32_t StyleDefKind; /* offset 8: 0 character style, 1 paragraph style */
  uint32_t Reserved0;    /* offset 12: 0 */
  uint32_t Reserved1;    /* offset 16: 0xFFFFFFFF */
  uint32_t Reserved2;    /* offset 20: 0xFFFFFFFF */
  uint32_t Reserved3;    /* offset 24: 0 */
} VcardStyleDef;

/* The record of SoAddTabStop, 16 bytes. */
typedef struct VcardTabStop {
  uint32_t TabKind;     /* offset 0: 1 text begins there, 2 text ends there */
  uint32_t Reserved[2]; /* offset 4: 0 */
  uint32_t TabPosition; /* offset 12: from the left margin, meant in twentieths of a point */
} VcardTabStop;

/* Attributes of SoSetAttribute: SoAttributeFont, which of them, 1 on or 0 off, 0. */
enum {
  SoAttributeFont = 8,
  SoFontBold = 2,
  SoFontItalic = 3,
  SoFontUnderlined = 4,
  SoAttributeParagraphBegin = 21, /* around the tab stops of a paragraph style: three zeros */
  SoAttributeParagraphEnd = 23
};

/* The record of an attachment's SoBeginDefinition, 12 bytes. */
typedef struct VcardAttachmentDef {
  uint32_t Reserved0;  /* offset 0: 0 */
  uint32_t ObjectBase; /* offset 4: what SoGetObjectBase stored */
  uint32_t Reserved1;  /* offset 8: 0 */
} VcardAttachmentDef;

/* Five values that stand four times in an object record: 0, 0, 1, 0, 0. */
typedef struct VcardObjectGroup {
  uint32_t Value[5];
} VcardObjectGroup;

/* The record of SoEmitObject, 196 bytes. */
typedef struct VcardObjectRecord {
  uint32_t Size;             /* offset 0: 196 */
  uint32_t Reserved0;        /* offset 4: 0 */
  uint32_t Reserved1;        /* offset 8: 1 */
  uint32_t Reserved2[12];    /* offset 12: 0 */
  VcardObjectGroup Group[4]; /* offset 60 */
  uint32_t Reserved3;        /* offset 140: 4 */
  uint32_t Reserved4[4];     /* offset 144: 0 */
  uint32_t ObjectBase;       /* offset 160: what SoGetObjectBase stored */
  uint32_t Reserved5;        /* offset 164: 0xFFFFFFFF */
  uint32_t Reserved6[6];     /* offset 168: 0 */
  uint32_t Reserved7;        /* offset 192: 0xFFFFFFFF */
} VcardObjectRecord;

/* A stored routine. The filter casts it to the type of its id below before the call. */
typedef void (*SoRoutine)(void);

/* One character: a code of the set that the last SoSetCharset named. 0xFFFF: not decodable. */
typedef int64_t (*SoEmitCharRoutine)(uint16_t code, uint64_t user0, uint64_t user1);

/* A tab, a line break inside the paragraph, or a separator. */
typedef int64_t (*SoEmitSpecialRoutine)(uint32_t kind, uint64_t user0, uint64_t user1);

/*
 * Height of the style's characters, meant in half points: 24 is 12 points. Inside a style's
 * definition only. A style without it has the host's own height for plain text.
 */
typedef int64_t (*SoSetCharHeightRoutine)(uint32_t height, uint64_t user0, uint64_t user1);

/* A tab stop of the style. Inside a style's definition only. */
typedef int64_t (*SoAddTabStopRoutine)(const VcardTabStop *tab, uint64_t user0, uint64_t user1);

/*
 * The end of a paragraph, of the document, or of a section; `zero` is 0. An answer to the end of a
 * paragraph whose low 16 bits are 1 asks the filter to stop: VwStreamRead returns behind the
 * current property, and the next VwStreamRead goes on. In the summary the request is noted: the
 * summary runs to its end, and VwStreamRead returns in the head of the first line behind it. All
 * other answers mean: go on.
 * SODummy answers 1 here, which is a request to stop at every paragraph.
 */
typedef int64_t (*SoEmitBreakRoutine)(uint32_t kind, uint32_t zero, uint64_t user0,
                                      uint64_t user1);

/* The first call of a section. All three values are 0. */
typedef int64_t (*SoBeginSectionRoutine)(uint32_t a, uint32_t b, uint32_t c, uint64_t user0,
                                         uint64_t user1);

/*
 * Places an object. Before it come SoGetObjectBase, SoSetObjectData with the range, SoSetObjectData
 * with the kind, and SoCommitObjectData. The range, start and length, is what VwDoSpecial takes; it
 * covers the encoded text, white space included, and reaches one byte further.
 */
typedef int64_t (*SoEmitObjectRoutine)(const VcardObjectRecord *object, uint64_t user0,
                                       uint64_t user1);

/*
 * Opens a definition: a style (SoDefinitionStyle, a VcardStyleDef), or an attachment
 * (SoDefinitionAttachment, a VcardAttachmentDef) whose title is emitted inside the definition.
 * An attachment's range has been given just before by SoSetObjectData with SoObjectDataExtent and
 * SoCommitObjectData. Attachments are numbered from 1 through the whole stream.
 */
typedef int64_t (*SoBeginDefinitionRoutine)(uint32_t type, uint32_t id, const void *record,
                                            uint64_t user0, uint64_t user1);

/* Closes the definition with the same type and id. */
typedef int64_t (*SoEndDefinitionRoutine)(uint32_t type, uint32_t id, uint64_t user0,
                                          uint64_t user1);

/* Reset marks, called with (1, 0) at the start of a section and in each character style. */
typedef int64_t (*SoRoutine88Routine)(uint32_t a, uint32_t b, uint64_t user0, uint64_t user1);
typedef int64_t (*SoRoutine89Routine)(uint32_t a, uint32_t b, uint64_t user0, uint64_t user1);

/* The character set of the SoEmitChar calls that follow. Labels stand under SoCharsetDefault. */
typedef int64_t (*SoSetCharsetRoutine)(uint32_t set, uint64_t user0, uint64_t user1);

/* The host may store a value of its own at `base`, 0 otherwise; the object's record carries it. */
typedef int64_t (*SoGetObjectBaseRoutine)(uint32_t *base, uint64_t user0, uint64_t user1);

/*
 * Writes the host's text for a string id: a label, the name of a type, the name of a field.
 * px/string_ids.h has them all.
 */
typedef int64_t (*SoEmitResourceStringRoutine)(uint32_t id, uint64_t user0, uint64_t user1);

/* A style for what follows, by the id of its definition. */
typedef int64_t (*SoUseStyleRoutine)(uint32_t id, uint64_t user0, uint64_t user1);

/*
 * An attribute of the style: SoAttributeFont with which of the font's and its state, or one of the
 * two marks of a paragraph. Inside a style's definition only. What isn't set stays as it is.
 */
typedef int64_t (*SoSetAttributeRoutine)(uint32_t a, uint32_t b, uint32_t c, uint32_t d,
                                         uint64_t user0, uint64_t user1);

/* Facts of the object that follows; the values are by selector, positions and sizes in bytes. */
typedef int64_t (*SoSetObjectDataRoutine)(uint32_t selector, uint64_t a, uint64_t b,
                                          uint64_t user0, uint64_t user1);

/* Ends the SoSetObjectData calls of one object. */
typedef int64_t (*SoCommitObjectDataRoutine)(uint64_t user0, uint64_t user1);

#ifdef __cplusplus
}
#endif

#endif

/*
 * libpx_vcrd: reads vCard and vCalendar text and writes it through a host's output routines.
 *
 * Four headers make the whole interface: this one (the entry points), px/output_routines.h (what
 * the filter calls to write), px/string_ids.h (what labels it writes) and px/vcard_io.h (what it
 * calls to read). They are C99 and C++.
 *
 * A host loads the library, calls VwGetRtns for the table of entry points, and then, in this order:
 *
 *   VcardData *data = VwAllocProc();
 *   VwLocalUp(io, &stream, data);             the stream over the host's I/O object; this sets all
 *                                             output routines to SODummy, so it comes before them
 *   VwSetUser(user0, user1, data);
 *   VwSetSoRtn(SoIdEmitChar, routine, data);  and so on, each routine that the host has
 *   VwStreamOpen(stream, VcardFormatVcard, 0, NULL, data);    0: it is a card
 *   do {
 *     VwStreamTell(0, data);                  where the section begins
 *     VwStreamSection(0, data);
 *     while (the last SoEmitBreak was a paragraph's end) VwStreamRead(0, data);
 *   } while (the last SoEmitBreak was a section's end);
 *   VwLocalDown(stream, &io);
 *   VwFreeProc(data);
 *
 * VwStreamTell before VwStreamSection is needed: the second pass over a section goes back to the
 * position that it stores. VwStreamRead returns when it has called SoEmitBreak of a section or of
 * the document, or earlier when the host answered 1 to the end of a paragraph; it is then called
 * again and goes on with the next property.
 *
 * To come back to the place of a stop or the start of a section later, the host calls VwStreamTell
 * and then VwGetData there. Later, on the same open stream, VwSetData, VwStreamSeek and
 * VwStreamRead go on from that place. What the file's earlier lines left in force (a character set,
 * a version) isn't part of the saved state and holds as the stream was left. Nor is the head of a
 * line, so the place of a stop that was asked for in the summary is none to come back to.
 *
 * What is promised. No input makes the filter crash, hang or read out of bounds, and nothing is
 * allocated while a card is read. Malformed input is no error: a broken line costs at most itself.
 * Two things cost more, since they end the input: a byte 0xFF, which reads as the end in the head
 * of a line, in quoted-printable text that is listed, and in values that the pass for the summary
 * reads as heads, though not in plain text that is listed; and position 4,294,967,295 (2^32 - 1),
 * since positions have 32 bits. The bytes from there on are never seen. The library keeps no
 * writable global state: streams on different threads are independent, each record and stream
 * belongs to one caller at a time.
 *
 * What is not promised. Pointers given to the filter aren't checked, but where a routine's comment
 * says so. Nor is the order of the calls: VwStreamRead, VwStreamTell and VwStreamSeek before
 * VwStreamOpen, which gives the record its stream, may do anything, and so may any call with a
 * stream or record that was freed. The state given to VwSetData must come from VwGetData.
 */
#ifndef PX_VCRD_H
#define PX_VCRD_H

#include <stdint.h>

#include "px/export.h"
#include "px/output_routines.h"
#include "px/vcard_io.h"
#include "px/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The record of one stream. Its layout is the filter's own; its saved part is copied by size. */
typedef struct VcardData VcardData;

/* The buffered input of one stream. */
typedef struct VcardStream VcardStream;

/*
 * Format ids. The id decides how the content is handled, whatever the BEGIN line says: each is
 * accepted with the BEGIN line of the other, and a calendar that is read as a vCard has an empty
 * summary. So a host that wasn't told the format looks at the first line itself:
 * VcardFormatVcalendar where the input begins, behind white space and in any case, with
 * BEGIN:VCALENDAR, and VcardFormatVcard everywhere else. A host that reads through the view of
 * px/cards.h is told the id with each document.
 */
enum { VcardFormatVcard = 1141, VcardFormatVcalendar = 1196 };

/* Answers of VwStreamOpen. */
enum { VcardOpenGood = 0, VcardOpenNotRecognised = 9, VcardOpenUnknownFormat = -1 };

/* Bytes that VwGetData and VwSetData copy. */
enum { VcardSavedSize = 4804 };

/*
 * What VwStreamOpen writes at its `info`, 30 bytes. The last 6 end a larger record of the host's,
 * of which nothing else is touched.
 */
typedef struct VcardInfo {
  uint8_t Type[8];       /* offset 0: 78 00 00 00 00 01 03 00 */
  uint8_t Untouched[16]; /* offset 8: not written */
  char Name[6];          /* offset 24: "vCard", for both formats */
} VcardInfo;

/*
 * The entry points, by slot of the table that VwGetRtns fills. Slots 15, 16, 19 to 33 are set to
 * null where the table is long enough to have them, 34 and 35 always.
 */
enum {
  VwSlotStreamOpen = 0,
  VwSlotStreamSection = 1,
  VwSlotStreamRead = 2,
  VwSlotStreamTell = 3,
  VwSlotStreamSeek = 4,
  VwSlotGetInfo = 5,
  VwSlotGetData = 6,
  VwSlotSetData = 7,
  VwSlotLocalUp = 8,
  VwSlotLocalDown = 9,
  VwSlotAllocProc = 10,
  VwSlotFreeProc = 11,
  VwSlotSetUser = 12,
  VwSlotSetSoRtn = 13,
  VwSlotStreamClose = 14,
  VwSlotStreamReadRecord = 17,
  VwSlotDoSpecial = 18,
  VwSlotCount = 36 /* a table of this many pointers holds all that VwGetRtns writes */
};

/*
 * Fills the host's `table`, of 36 pointers, with the entry points. `count` says how many slots the
 * host knows: above 0 slots 0 to 17 are written, above 18 also slot 18, above 22 also 19 to 22,
 * above 29 also 23 to 33. Slots 34 and 35 are set to null whatever `count` is.
 */
PX_API void VwGetRtns(void **table, uint16_t count);

/*
 * Makes a record, all zero. Answers null when there is no memory. The host frees it with
 * VwFreeProc.
 */
PX_API VcardData *VwAllocProc(void);

/* Frees the record. A stream made for it is freed first, with VwLocalDown. */
PX_API void VwFreeProc(VcardData *data);

/*
 * Makes the stream over `io` and stores it at `stream`, null when there is no memory. The object
 * stays the host's and must outlive the stream. The buffer holds as many kilobytes as the global
 * option UTOptionInputBuffer says, or 2048 bytes. Every output routine of `data` is set to
 * SODummy, also without memory. The host frees the stream with VwLocalDown.
 */
PX_API void VwLocalUp(VcardIo *io, VcardStream **stream, VcardData *data);

/* Frees the stream and stores the object that it read from at `io`. */
PX_API void VwLocalDown(VcardStream *stream, VcardIo **io);

/* Sets the two values that every output routine gets as its last arguments. */
PX_API void VwSetUser(uint64_t user0, uint64_t user1, VcardData *data);

/*
 * Sets the output routine of an id from 1 to 118 or 121 to 150; another id is ignored. A null
 * routine is SODummy.
 */
PX_API void VwSetSoRtn(int16_t id, SoRoutine routine, VcardData *data);

/*
 * Recognises the stream by its BEGIN line and readies the record for the first section. `id` is a
 * format id, `info` receives a VcardInfo or is null, `reserved` isn't read. Calls no output
 * routine. Answers VcardOpenGood; VcardOpenNotRecognised when the text doesn't begin with a BEGIN
 * line of vCard or vCalendar, followed by a line end; VcardOpenUnknownFormat, with nothing touched,
 * for another id. The stream isn't taken back to its start.
 */
PX_API int32_t VwStreamOpen(VcardStream *stream, int16_t id, uint64_t reserved, void *info,
                            VcardData *data);

/*
 * Begins a section, one for each card: announces it, forgets what the last card's summary was made
 * of, and defines the styles in the first section of a stream. Answers 0.
 */
PX_API int32_t VwStreamSection(uint64_t reserved, VcardData *data);

/*
 * Reads the section: indexes it, writes its summary, goes back to the stored position and lists its
 * properties. Returns at the end of the section or the document, or at a stop; goes on behind a
 * stop when it is called again. Once a section has ended, only a new VwStreamSection makes a call
 * do more than SoEmitBreak(2, 0). Answers 0.
 */
PX_API int32_t VwStreamRead(uint64_t reserved, VcardData *data);

/* Stores the position of the stream in the record's saved part. Answers 0. */
PX_API int32_t VwStreamTell(uint64_t reserved, VcardData *data);

/* Moves the stream to the stored position. Answers 0, or -1 when the host's Seek failed. */
PX_API int32_t VwStreamSeek(uint64_t reserved, VcardData *data);

/* Copies the record's saved part, VcardSavedSize bytes, to `out`. It holds no pointers. */
PX_API void VwGetData(void *out, VcardData *data);

/* Copies VcardSavedSize bytes, which VwGetData has given, from `in` to the record's saved part. */
PX_API void VwSetData(const void *in, VcardData *data);

/*
 * Answers questions about the library. Writes to `out` and answers 1, or answers 0 and writes
 * nothing when there is no such selector.
 *
 *   selector  bytes  written to `out`
 *   1          2     uint16_t 4804, the size of the saved part
 *   2          2     uint16_t 10232, the size of all that VwStreamOpen clears
 *   3          2     uint16_t 4752, the size of VcardInit
 *   4, 5, 6    2     uint16_t 400, 440, 2
 *   7          4     two uint16_t, the format ids 1141 and 1196
 *   8         12     the date of the build, as "Jan 31 2026" with its NUL
 *   9          9     the time of the build, as "23:59:59" with its NUL
 *   10, 11     2     uint16_t 0
 *   12         4     uint32_t 0x12345678
 *   13         4     uint32_t 0
 */
PX_API int32_t VwGetInfo(void *out, uint16_t selector);

/*
 * Opens the decoded content of an embedded object. `start` and `length` are the two values of
 * SoSetObjectData(SoObjectDataRange, ...), for an attachment its start and its end less its start;
 * only their low 32 bits count. `kind` is 2. The object is made by two calls of Open on the object
 * that `stream` reads from, and stored at `out`; the host ends it with its slot Close. Any number
 * of objects can be open at once. `reserved` isn't read.
 *
 * Answers 0, or -1: when `start` or `length` is 0, when `kind` isn't 2 or when there is no memory,
 * `*out` is left as it was; when an Open failed it is null.
 */
PX_API int32_t VwDoSpecial(VcardStream *stream, uint64_t start, VcardIo **out, uint64_t length,
                           uint64_t reserved, uint32_t kind);

/*
 * The types of the entry points, for a host that takes them from the table of VwGetRtns:
 *
 *   void *table[VwSlotCount];
 *   VwGetRtns(table, VwSlotCount);
 *   VwAllocProcRoutine *allocProc = (VwAllocProcRoutine *)table[VwSlotAllocProc];
 *
 * and VwGetRtnsRoutine for the one that dlsym gives.
 */
typedef void VwGetRtnsRoutine(void **table, uint16_t count);
typedef VcardData *VwAllocProcRoutine(void);
typedef void VwFreeProcRoutine(VcardData *data);
typedef void VwLocalUpRoutine(VcardIo *io, VcardStream **stream, VcardData *data);
typedef void VwLocalDownRoutine(VcardStream *stream, VcardIo **io);
typedef void VwSetUserRoutine(uint64_t user0, uint64_t user1, VcardData *data);
typedef void VwSetSoRtnRoutine(int16_t id, SoRoutine routine, VcardData *data);
typedef int32_t VwStreamOpenRoutine(VcardStream *stream, int16_t id, uint64_t reserved, void *info,
                                    VcardData *data);
typedef int32_t VwStreamSectionRoutine(uint64_t reserved, VcardData *data);
typedef int32_t VwStreamReadRoutine(uint64_t reserved, VcardData *data);
typedef int32_t VwStreamTellRoutine(uint64_t reserved, VcardData *data);
typedef int32_t VwStreamSeekRoutine(uint64_t reserved, VcardData *data);
typedef int32_t VwGetInfoRoutine(void *out, uint16_t selector);
typedef void VwGetDataRoutine(void *out, VcardData *data);
typedef void VwSetDataRoutine(const void *in, VcardData *data);
typedef int32_t VwDoSpecialRoutine(VcardStream *stream, uint64_t start, VcardIo **out,
                                   uint64_t length, uint64_t reserved, uint32_t kind);
typedef int64_t VwStreamCloseRoutine(int64_t first);
typedef int64_t VwStreamReadRecordRoutine(int64_t first);

/* These do nothing: they return their first argument. */
PX_API int64_t SODummy(int64_t first);
PX_API int64_t VwStreamClose(int64_t first);
PX_API int64_t VwStreamReadRecord(int64_t first);
PX_API int64_t VwGetSectionDataFunc(int64_t first);
PX_API int64_t VwSetSectionDataFunc(int64_t first);

/* "ZEV_VER=" and the dotted version number of the library. */
PX_API extern const char *const version;

/* The two formats: an id and a name, which carries a leading "x". 72 bytes. */
typedef struct VcardOverlay {
  uint16_t Id;
  char Name[34];
} VcardOverlay;

PX_API extern const VcardOverlay VcardOverlayId[2];

/*
 * What follows is exported for hosts that look inside, and not needed to drive the filter.
 */

/* The parser's constant tables, 4752 bytes. */
typedef struct VcardInitTables VcardInitTables;
PX_API extern const VcardInitTables VcardInit;

/*
 * The parser's actions. Each takes the text of a token, of at most 255 characters, and the record.
 * TavoVcardError does nothing and answers `text`; the others answer 0.
 */
PX_API int64_t TavoVcardAddGroup(const char *text, VcardData *data);
PX_API int64_t TavoVcardSetPropName(const char *text, VcardData *data);
PX_API int64_t TavoVcardSetParmId(const char *text, VcardData *data);
PX_API int64_t TavoVcardSetParmValue(const char *text, VcardData *data);
PX_API int64_t TavoVcardSetIdParmValue(const char *text, VcardData *data);
PX_API int64_t TavoVcardError(const char *text, VcardData *data);
PX_API int64_t TavoVcardDisplayProp(const char *text, VcardData *data);

/* The slots of a VcardObjectIo. Each answers -4 for a null object. */
PX_API int32_t DoCloseVCRD(VcardIo *object);
PX_API int32_t DoReadVCRD(VcardIo *object, void *to, uint32_t size, uint32_t *count);
PX_API int32_t DoWriteVCRD(VcardIo *object, uint64_t a, uint64_t b, uint64_t c);
PX_API int32_t DoSeekVCRD(VcardIo *object, uint16_t whence, uint64_t position);
PX_API int32_t DoTellVCRD(VcardIo *object, uint32_t *position);
PX_API int32_t DoGetInfoVCRD(VcardIo *object, uint32_t selector, void *argument);
PX_API int32_t DoSeek64VCRD(VcardIo *object, uint16_t whence, int64_t position);
PX_API int32_t DoTell64VCRD(VcardIo *object, int64_t *position);

#ifdef __cplusplus
}
#endif

#endif

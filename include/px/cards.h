/*
 * libpx_cards: what a person sees in vCard and vCalendar files, for programs.
 *
 * The library reads vCard 2.1, 3.0 and 4.0, vCalendar 1.0 and iCalendar in any character set, and
 * tells what stands there section by section: a section is one card, or one component of a
 * calendar (an event, an alarm, the calendar's own lines). Each section comes as one JSON text or
 * as a row of events. What a card holds as Base64, a photo or an attachment, is opened and read.
 *
 *   PxReader *reader = PxNewReader();
 *   PxText json;
 *   int32_t result = PxOpenFile(reader, "ann.vcf");
 *   while (result == PxGood && (result = PxReadJson(reader, &json)) == PxGood) puts(json.bytes);
 *   if (result != PxEnd) fprintf(stderr, "%s\n", PxErrorText(reader));
 *   PxFreeReader(&reader);
 *
 * Results. Every routine that can fail answers PxGood or another PxResult, as an int32_t. Errors
 * are negative. PxErrorText tells a person more than the number does. What a routine stores
 * through its arguments is stored with the answer PxGood only, unless it says otherwise.
 *
 * Mistakes of the caller are errors too: a null pointer, calls in the wrong order, an object that
 * was closed, a second thread. They change nothing and never crash. A pointer that points nowhere
 * can't be told from a good one.
 *
 * Text. All text that the library gives is valid UTF-8 with a NUL behind it, in the file's own
 * characters: control characters aren't taken out, and a NUL of the file stays in it, so a text has
 * its length beside it. Positions and sizes are in bytes. Nothing that comes from a card is to be
 * trusted: not the title of an attachment, not a declared type, not a URL.
 *
 * Ownership. What the library gives belongs to it. A text or a record that an event gets is valid
 * during the event; any other text until the next call with the same reader.
 *
 * Threads. The library has no state of its own, and readers are independent: each thread can have
 * its own. One reader is used by one thread at a time. A call that meets another one on the same
 * reader answers PxErrorBusy; between calls a reader can be handed to another thread.
 *
 * Growth. A record may get new members at its end in a later version, so that programs go on to
 * work without being built again; docs/stability.md tells what else holds. PxText and PxExtent
 * never grow. What the library gives is read where the pointer to it points: PxSection, PxProperty,
 * PxObjectInfo and PxParameter, of which a property therefore has an array of pointers. What a
 * program gives, PxEvents and PxLook, begins with its size by that program's header and is zero
 * where it isn't set. A smaller record is an older program's and does what it did. A larger one is
 * a newer program's: it is taken where all that this library doesn't know in it is zero, and
 * otherwise refused with PxErrorArgument. PX_VERSION_NUMBER and PxVersion tell what is there.
 *
 * Memory. A reader holds some hundred kilobytes whatever the file contains, and puts the rest in
 * temporary files without a name, in TMPDIR or /tmp. PxReadJson holds the text of one section,
 * which isn't more than a small multiple of its bytes in the file and can be bounded by
 * PxWriteJson.
 *
 * Limits. An input has at most 4,294,967,295 bytes (2^32 - 1). Some inputs are small and make their
 * reader go over the same bytes again and again, above all where they are read as they stand. So
 * the work on an input is counted, in bytes read, those of objects too, and in calls of the filter:
 * each may come to 8 MB and 32 times what was read of the input so far. Behind that the section
 * ends and the next call answers PxErrorLimit. PxSetLimit takes the limit away.
 *
 * The library loads libpx_vcrd, which stands beside it. No routine throws a C++ exception, and no
 * routine that is given to it may.
 */
#ifndef PX_CARDS_H
#define PX_CARDS_H

#include <stdint.h>

#include "px/export.h"
#include "px/vcard_io.h"
#include "px/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads one input after the other. */
typedef struct PxReader PxReader;

/* What routines answer. */
enum PxResult {
  PxGood = 0,
  PxEnd = 1,     /* no section, document or byte is left; asking again gives the same */
  PxStopped = 2, /* a routine of the caller's answered that it has had enough */

  PxErrorArgument = -1, /* a null pointer, a record of unknown kind, an I/O object without a slot */
  PxErrorOrder = -2,    /* nothing is open, or the call doesn't go with those before it */
  PxErrorBusy = -3,     /* the reader is in use: by a thread, or by what called an event or slot */
  PxErrorObject = -4,   /* there is no such object: closed, of a section that is over, none ever */
  PxErrorFile = -5,     /* the file isn't there or may not be opened */
  PxErrorRead = -6,     /* the input can't be read on, was changed meanwhile, or is too large */
  PxErrorNotCards = -7, /* the input holds no card */
  PxErrorTemporary = -8, /* a temporary file can't be made, written or read */
  PxErrorMemory = -9,    /* there is no memory */
  PxErrorFilter = -10,   /* libpx_vcrd can't be loaded */
  PxErrorInternal = -11, /* a fault of the library */
  PxErrorDamaged = -12,  /* an object's content ended early, at a byte that is no Base64 */
  PxErrorLimit = -13     /* the input costs more work than its size allows */
};

/* Stands for a position or a size that isn't known. */
#define PxUnknown UINT64_MAX

/* A text, or a piece of one, which then has no NUL behind it. `bytes` is never null. */
typedef struct PxText {
  const char *bytes;
  uint64_t size; /* in bytes, without the NUL behind them */
} PxText;

/* A stretch of the input. Both are PxUnknown where it isn't known. */
typedef struct PxExtent {
  uint64_t offset; /* of the first byte, from the input's start */
  uint64_t length; /* in bytes */
} PxExtent;

/*
 * Readers.
 */

/* Makes a reader, with nothing open. Answers null without memory. Freed with PxFreeReader. */
PX_API PxReader *PxNewReader(void);

/*
 * Closes what is open, frees the reader at `*reader` and sets `*reader` to null, so that a second
 * call does nothing. Answers PxGood, also for a null reader; PxErrorArgument for a null `reader`;
 * PxErrorBusy, with nothing freed, inside an event or during another thread's call.
 */
PX_API int32_t PxFreeReader(PxReader **reader);

/*
 * Answers the text of the reader's last error for a person, in English, in one line without a full
 * stop; for PxErrorFile and PxErrorRead it says why. Empty where the last call went well. For a
 * null reader, and while another thread uses the reader, it is the text of what that is. Never
 * null; valid until the next call with the reader.
 */
PX_API const char *PxErrorText(const PxReader *reader);

/*
 * Answers the errno of the reader's last error where the system has told one, such as ENOENT for
 * PxErrorFile, and else 0: where the last call went well, for a null reader, and while another
 * thread uses the reader.
 */
PX_API int32_t PxErrorNumber(const PxReader *reader);

/* Answers what a result means, in English. Never null, valid for ever. */
PX_API const char *PxResultText(int32_t result);

/* Answers the library's version, "0.1.0". Valid for ever. */
PX_API const char *PxVersion(void);

/*
 * Settings. They hold for what is opened behind them, until they are changed.
 */

/*
 * Is called for something in the input that can't be read, before the events of the section in
 * which it stands: `line` counts from 1, `text` says what, for a person, and is valid during the
 * call. The rest of the input is read all the same.
 */
typedef void (*PxFault)(void *user, uint64_t line, const char *text);

/* Sets the routine that is told of faults, or none for null. */
PX_API int32_t PxSetFault(PxReader *reader, PxFault fault, void *user);

/*
 * With `raw` other than 0 the filter reads the bytes as they stand, with its own dialect alone: no
 * view is made of the input, and names, groups, versions and places aren't told. Otherwise, and in
 * a new reader, cards of today are read whole.
 */
PX_API int32_t PxSetRaw(PxReader *reader, int32_t raw);

/* With `limit` 0 the work on an input has no limit. Otherwise, and in a new reader, it has. */
PX_API int32_t PxSetLimit(PxReader *reader, int32_t limit);

/*
 * Sets the language of what PxWriteText and pages say from now on, by a tag such as "de" or
 * "de-AT"; null is English, the language of a new reader. Messages, results and faults stay
 * English, so that a program can know them. PxErrorArgument, with nothing changed: there are no
 * texts in that language.
 */
PX_API int32_t PxSetLanguage(PxReader *reader, const char *language);

/*
 * Inputs. Opening closes what was open before, also when it fails, but for a mistake of the caller.
 * Whether the input holds a card shows in the first call that reads it.
 */

/*
 * Opens the file at `path`, which is copied. What can't be moved about in, a pipe for one, is
 * brought into a temporary file first. A file that is written to while it is read, also at its end,
 * is PxErrorRead in the call that meets it, so that what was given before is of one state of it;
 * one that is replaced is read as it was. Errors: PxErrorFile, PxErrorRead, PxErrorTemporary.
 */
PX_API int32_t PxOpenFile(PxReader *reader, const char *path);

/*
 * Opens `size` bytes at `bytes`, which aren't copied and stay until the input is closed; null with
 * the size 0 is an empty input. PxErrorRead: they are too many.
 */
PX_API int32_t PxOpenMemory(PxReader *reader, const void *bytes, uint64_t size);

/*
 * Opens what `io` reads. The object stays the caller's, is never closed, and stays until the input
 * is closed. Its slots Read, Seek and GetInfo must be there, Seek64 is used where it is; the other
 * slots aren't called. They are called during calls with this reader only, and during calls of the
 * slots of an object that PxNextDocument gave. A call with this reader from within them answers
 * PxErrorBusy.
 */
PX_API int32_t PxOpenIo(PxReader *reader, VcardIo *io);

/* Closes what is open; nothing is no error. A text that was set by PxSetName is gone too. */
PX_API int32_t PxClose(PxReader *reader);

/*
 * Sets what the JSON of the open input says under "file": the path where nothing else is set. An
 * input without a name has no such key. What isn't UTF-8 in the name becomes U+FFFD.
 */
PX_API int32_t PxSetName(PxReader *reader, const char *name);

/*
 * Sections. Each of the routines here reads the next section, whichever of them read the one
 * before: its answer is PxEnd behind the last. After an error that isn't the caller's mistake
 * nothing more can be read: every further call answers the same until another input is opened.
 * A section in which an error comes has no end.
 */

/*
 * Reads a section into one JSON text, an object in one line without a line end; docs/json.md tells
 * the keys. Sets `*json` to it.
 */
PX_API int32_t PxReadJson(PxReader *reader, PxText *json);

/* Takes a piece of text, of any size, without a NUL behind it; answers 0 to go on. */
typedef int32_t (*PxSink)(void *user, const char *bytes, uint64_t size);

/*
 * The same, given to `sink` in pieces that together are the text. When it answers something else
 * than 0 it is called no more for this section and PxStopped is answered. A text that an error cuts
 * short is closed all the same.
 */
PX_API int32_t PxWriteJson(PxReader *reader, PxSink sink, void *user);

/*
 * Gives `sink` the object that stands in the place of what couldn't be read: {"file", "error"}, in
 * one line without a line end; without "file" where that is empty. What isn't UTF-8 in the
 * arguments becomes U+FFFD.
 */
PX_API int32_t PxWriteJsonError(const char *file, const char *error, PxSink sink, void *user);

/*
 * Events. A section comes as this row:
 *
 *     beginSection
 *       beginSummaryLine text* endSummaryLine          any number: the business card
 *       beginProperty                                  any number, in the order of the file
 *         text and lineBreak, any number               a plain value
 *         or beginField (text, lineBreak)*, any number a structured value, field by field
 *         or object                                    what stands in the card as Base64
 *         lateParameter, any number
 *       endProperty
 *     endSection
 */

typedef struct PxSection {
  uint32_t number;  /* in the input, from 1 */
  uint32_t partOf;  /* number of the section in which it stands; 0: none */
  int32_t format;   /* VcardFormatVcard 1141 or VcardFormatVcalendar 1196 of px/vcrd.h */
  PxText component; /* what stands behind BEGIN, in capitals; empty: not known */
  PxText version;   /* that the file states; empty: not known, or none */
  PxExtent extent;  /* from BEGIN to the line end behind END */
} PxSection;

/*
 * What a line of the business card shows. The kinds come in this order, each at most once but for
 * its lines, which stand together.
 */
enum PxSummaryKind {
  PxSummaryName = 0,
  PxSummaryTitle = 1,
  PxSummaryOrganisation = 2, /* a line for each unit */
  PxSummaryAddress = 3,      /* a line for each line of it; an empty one divides two addresses */
  PxSummaryTelephone = 4,
  PxSummaryEmail = 5,
  PxSummaryUrl = 6,
  PxSummarySummary = 7, /* from here on: of calendars */
  PxSummaryLocation = 8,
  PxSummaryStart = 9,
  PxSummaryStatus = 10,
  PxSummaryEntry = 11 /* of which isn't known what it shows */
};

typedef struct PxParameter {
  PxText name;          /* in capitals; "TYPE" for a type without a name */
  const PxText *values; /* quotes and escapes undone */
  uint64_t valueCount;
} PxParameter;

typedef struct PxProperty {
  uint32_t label;      /* string id of its label, see px/string_ids.h; 0: it has none */
  int32_t labelsGroup; /* 1: a line that only labels its group, which groupLabel tells elsewhere */
  PxText name;         /* as the file writes it; empty: the line has none, or it isn't known */
  PxText group;        /* "item1"; empty: none */
  PxText groupLabel;   /* what the card calls the group, or empty */
  const PxText *types; /* "work", in small letters: known ones first, in a fixed order */
  uint64_t typeCount;
  const PxParameter *const *parameters; /* all of them, TYPE too, in the order of the file */
  uint64_t parameterCount;
  PxExtent extent; /* of the line, or lines where it is folded, with the line end */
} PxProperty;

typedef struct PxObjectInfo {
  uint32_t number;     /* in the section, from 1: what PxOpenObject takes */
  PxText title;        /* an attachment's file name, or empty; a hint from a stranger */
  PxText declaredType; /* the MIME type that the card tells, or empty; a hint likewise */
  PxExtent extent;     /* of the Base64 text in the input */
  uint64_t size;       /* of the content in bytes, where it is known without decoding it */
} PxObjectInfo;

/*
 * The caller's routines. Any of them can be null. Each gets `user` of PxReadEvents first, and
 * answers 0 to go on; with any other answer no further event of the section comes and PxReadEvents
 * answers PxStopped. The next call reads the next section all the same.
 *
 * During an event the routines below that open, read and close objects can be called, and
 * PxErrorText and PxErrorNumber; all others answer PxErrorBusy.
 */
typedef struct PxEvents {
  uint64_t size; /* sizeof(PxEvents) */

  int32_t (*beginSection)(void *user, const PxSection *section);

  /* `completed` is 1 for a line that the filter's own summary has no room for. */
  int32_t (*beginSummaryLine)(void *user, int32_t kind, int32_t completed);
  int32_t (*endSummaryLine)(void *user, const PxText *types, uint64_t typeCount);

  int32_t (*beginProperty)(void *user, const PxProperty *property);

  /* `label` is a string id, 0 for a field without one. Empty fields come too. */
  int32_t (*beginField)(void *user, uint32_t label);

  /* A piece of text, of any size above 0, which ends between two characters; no NUL behind it. */
  int32_t (*text)(void *user, const char *bytes, uint64_t size);

  /* A line end in the value. */
  int32_t (*lineBreak)(void *user);

  int32_t (*object)(void *user, const PxObjectInfo *object);

  /* A parameter that is told behind the value, of a property that beginProperty gave none. */
  int32_t (*lateParameter)(void *user, const PxParameter *parameter);

  int32_t (*endProperty)(void *user);
  int32_t (*endSection)(void *user);
} PxEvents;

/* Reads a section as events. With no routine at all it passes over the section. */
PX_API int32_t PxReadEvents(PxReader *reader, const PxEvents *events, void *user);

/* How text for a person looks. */
typedef struct PxLook {
  uint64_t size;  /* sizeof(PxLook) */
  uint32_t width; /* of a line in columns, 40 at least; 0: lines aren't wrapped */
  int32_t color;  /* 1: bold and dim text by escape sequences of a terminal */
} PxLook;

/*
 * Reads all sections that are left, and gives `sink` what a person reads of them, in pieces: plain
 * text with LF line ends and without other control characters than those of `look`. A null `look`
 * is 80 columns without colours. Answers PxGood at the end of the input, PxEnd where no section was
 * left. What was written before an error stands.
 */
PX_API int32_t PxWriteText(PxReader *reader, const PxLook *look, PxSink sink, void *user);

/*
 * Gives `sink` every call that the filter makes for the open input, a line each, for who looks into
 * its ways. The bytes are read as they stand, whatever PxSetRaw says. It is the first and only
 * reading of the input: PxErrorOrder where another has begun, and for any that follows.
 */
PX_API int32_t PxWriteTrace(PxReader *reader, PxSink sink, void *user);

/*
 * A page of HTML, which shows any number of inputs and needs nothing else: pictures and what can be
 * saved are in it. Nothing of an input is markup in it, and no script comes from one.
 *
 *   PxBeginPage(reader, "Contacts", 1, sink, user);
 *   for each file:
 *     PxOpenFile(reader, file), PxWriteHtml(reader), or else PxTellOnPage(reader, file, text)
 *   PxEndPage(reader);
 *
 * The page is the reader's, and stays open whatever is opened and closed meanwhile. When `sink`
 * answers something else than 0 it is called no more for this page, and PxStopped is answered.
 */

/*
 * Begins a page and gives it to `sink`, piece by piece, here and in the calls below. With `several`
 * other than 0 each input has its name above it. PxErrorOrder: a page is open.
 */
PX_API int32_t PxBeginPage(PxReader *reader, const char *title, int32_t several, PxSink sink,
                           void *user);

/*
 * Reads all sections that are left onto the page. Answers as PxWriteText does; what an error cuts
 * short is closed by the page's next call.
 */
PX_API int32_t PxWriteHtml(PxReader *reader);

/* Tells on the page that a file, or the rest of it, couldn't be read. */
PX_API int32_t PxTellOnPage(PxReader *reader, const char *file, const char *text);

/* Ends the page. */
PX_API int32_t PxEndPage(PxReader *reader);

/*
 * Objects: Base64 data in the section that was read last, or, during an event, so far in the one
 * that is being read. They are numbered from 1 in the order of their events, which is the order of
 * the "object" keys in the JSON. The content is decoded while it is read.
 */

/* How many objects the section has. */
PX_API int32_t PxObjectCount(PxReader *reader, uint32_t *count);

/*
 * Opens an object by its number, to be read from its start, and sets `*handle`. Any number of
 * handles can be open, of the same object too. A handle ends when it is closed, when the next
 * section is read and when the input is closed; its number isn't used again. PxErrorObject: there
 * is no such object.
 */
PX_API int32_t PxOpenObject(PxReader *reader, uint32_t number, uint64_t *handle);

/*
 * Stores up to `size` bytes of the content at `to` and their number at `*count`: fewer than `size`
 * only at the end. With 0 in `*count`, when nothing is left, the answer is PxEnd, or PxErrorDamaged
 * where a byte that is no Base64 has ended the content. PxErrorObject: the handle is over.
 * PxErrorRead: the input can't be read.
 */
PX_API int32_t PxReadObject(PxReader *reader, uint64_t handle, void *to, uint64_t size,
                            uint64_t *count);

/* Ends the handle. PxErrorObject: it is over already. */
PX_API int32_t PxCloseObject(PxReader *reader, uint64_t handle);

/*
 * Labels: what a person calls things, in `language`, a tag such as "en" or "de-AT"; null is
 * English, and so is a language that there are no texts for. Valid for ever, but for a type's that
 * is the argument itself. Null arguments count as empty texts.
 */

/* The text of a string id; empty for an id that isn't known. */
PX_API const char *PxLabelText(uint32_t label, const char *language);

/*
 * The label of a property with the string id `label`, 0 for none, and the name, in capitals, which
 * may be empty; an empty text where there is none.
 */
PX_API const char *PxPropertyLabel(uint32_t label, const char *name, const char *language);

/* What a type, in small letters, is shown as; the type itself where it isn't a known one. */
PX_API const char *PxTypeLabel(const char *type, const char *language);

/*
 * The label of a parameter that is shown in a row of its own, such as the role of an attendee;
 * `name` is in capitals. Empty for any other one.
 */
PX_API const char *PxParameterLabel(const char *name, const char *language);

/*
 * The view, for hosts that drive the filter themselves. The filter reads one dialect of the formats
 * exactly; this gives it the open input in that dialect, so that a host of the filter reads the
 * cards of today.
 *
 *   PxOpenIo(reader, io);                          the host's own object
 *   while (PxNextDocument(reader, &format, &view) == PxGood) {
 *     VwLocalUp(view, &stream, data);              instead of io
 *     ...
 *     VwStreamOpen(stream, format, 0, NULL, data);
 *     ...
 *     VwLocalDown(stream, &view);                  before the next document
 *   }
 */

/*
 * Gives the next document: a file with cards and calendars has several, since the filter is opened
 * for one of them. Sets `*format` to the format id to open the filter with, and `*view` to the
 * object to read: read-only, with all slots, so that VwDoSpecial works on it, too. It belongs to
 * the reader and ends with the next call of this routine, with PxClose and with any opening; its
 * slot Close does nothing. The slots may be called by one thread at a time. Its positions are those
 * of the view, which aren't those of the input.
 *
 * Answers PxEnd behind the last document; PxErrorOrder when the input's sections were read by the
 * routines above. Those answer PxErrorOrder from now on. A failure of the input during the filter's
 * reading looks to the filter like the end; the next call of this routine tells it.
 */
PX_API int32_t PxNextDocument(PxReader *reader, int16_t *format, VcardIo **view);

#ifdef __cplusplus
}
#endif

#endif

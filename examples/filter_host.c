/* A host of the filter: writes the cards of a file as plain text. */
#include <stdio.h>
#include <px/string_ids.h>
#include <px/vcrd.h>

typedef struct FileIo { /* what the filter reads: the slots first, the host's own behind them */
  VcardIo slots;
  FILE *file;
} FileIo;

static int32_t readFile(VcardIo *io, void *to, uint32_t size, uint32_t *count) {
  *count = (uint32_t)fread(to, 1, size, ((FileIo *)io)->file);
  return ferror(((FileIo *)io)->file) ? -1 : 0;
}
static int32_t seekFile(VcardIo *io, uint16_t whence, uint64_t position) {
  return fseek(((FileIo *)io)->file, (long)position, SEEK_SET); /* whence is always the start */
}
static int32_t tellFile(VcardIo *io, uint32_t *position) {
  *position = (uint32_t)ftell(((FileIo *)io)->file);
  return 0;
}
static int32_t noInfo(VcardIo *io, uint32_t selector, void *argument) {
  return -1; /* no 64-bit slots */
}

/* What the output routines know, by their first user value. */
typedef struct Output {
  uint32_t charset; /* of the last SoSetCharset */
  uint32_t last;    /* the kind of the last break */
} Output;

static Output *of(uint64_t user) {
  return (Output *)(uintptr_t)user;
}
static int64_t setCharset(uint32_t set, uint64_t output, uint64_t unused) {
  return of(output)->charset = set;
}
/* The signs of windows-1251 from 0x80 to 0xBF; behind them come the letters. */
static const uint16_t windows1251[64] = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039,
    0x040A, 0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0xFFFD, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408,
    0x00A4, 0x0490, 0x00A6, 0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,
    0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB,
    0x0458, 0x0405, 0x0455, 0x0457};

/* Writes UTF-8. Bytes of a file that names no set go out as they stand: today they are UTF-8. */
static int64_t emitChar(uint16_t code, uint64_t output, uint64_t unused) {
  const uint32_t set = of(output)->charset;
  uint32_t c = code;
  if (c < 0x80 || (set != SoCharsetUtf8 && set != SoCharsetWindows1251)) return putchar(code);
  if (set == SoCharsetWindows1251) c = code >= 0xC0 ? 0x410 + (c - 0xC0) : windows1251[c - 0x80];
  if ((c >= 0xD800 && c < 0xE000) || c == 0xFFFF) c = 0xFFFD; /* no character */
  if (c < 0x800) {
    putchar(0xC0 | (int)(c >> 6));
  } else {
    putchar(0xE0 | (int)(c >> 12));
    putchar(0x80 | (int)(c >> 6 & 0x3F));
  }
  return putchar(0x80 | (int)(c & 0x3F));
}
static int64_t emitSpecial(uint32_t kind, uint64_t output, uint64_t unused) {
  return putchar(kind == SoSpecialLineBreak ? '\n' : kind == SoSpecialTab ? '\t' : ' ');
}
static int64_t emitLabel(uint32_t id, uint64_t output, uint64_t unused) {
  return id == VcardStringTelephone ? printf("Telephone") : printf("<%u>", (unsigned)id);
}
static int64_t emitBreak(uint32_t kind, uint32_t zero, uint64_t output, uint64_t unused) {
  of(output)->last = kind;
  return putchar('\n') & 0; /* 1 would ask the filter to stop here */
}

int main(int argc, char **argv) {
  FileIo io = {{NULL, readFile, NULL, seekFile, tellFile, noInfo, NULL, NULL, NULL}, NULL};
  if (argc != 2 || !(io.file = fopen(argv[1], "rb"))) return 2;
  Output output = {SoCharsetDefault, 0};
  VcardIo *back;
  VcardStream *stream;
  VcardData *data = VwAllocProc();
  VwLocalUp(&io.slots, &stream, data);
  VwSetUser((uintptr_t)&output, 0, data);
  VwSetSoRtn(SoIdSetCharset, (SoRoutine)setCharset, data);
  VwSetSoRtn(SoIdEmitChar, (SoRoutine)emitChar, data);
  VwSetSoRtn(SoIdEmitSpecial, (SoRoutine)emitSpecial, data);
  VwSetSoRtn(SoIdEmitResourceString, (SoRoutine)emitLabel, data);
  VwSetSoRtn(SoIdEmitBreak, (SoRoutine)emitBreak, data);
  int isCard = VwStreamOpen(stream, VcardFormatVcard, 0, NULL, data) == VcardOpenGood;
  if (isCard) do {
    VwStreamTell(0, data);
    VwStreamSection(0, data);
    do VwStreamRead(0, data); while (output.last == SoBreakParagraph);
  } while (output.last == SoBreakSection);
  VwLocalDown(stream, &back);
  VwFreeProc(data);
  fclose(io.file);
  return isCard ? 0 : 1;
}

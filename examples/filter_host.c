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

/* The output routines; `last`, the first user value, is where the kind of the last break goes. */
static int64_t emitChar(uint16_t code, uint64_t last, uint64_t unused) {
  return putchar(code < 0x80 ? code : '?');
}
static int64_t emitSpecial(uint32_t kind, uint64_t last, uint64_t unused) {
  return putchar(kind == SoSpecialLineBreak ? '\n' : kind == SoSpecialTab ? '\t' : ' ');
}
static int64_t emitLabel(uint32_t id, uint64_t last, uint64_t unused) {
  return id == VcardStringTelephone ? printf("Telephone") : printf("<%u>", (unsigned)id);
}
static int64_t emitBreak(uint32_t kind, uint32_t zero, uint64_t last, uint64_t unused) {
  *(uint32_t *)(uintptr_t)last = kind;
  return putchar('\n') & 0; /* 1 would ask the filter to stop here */
}

int main(int argc, char **argv) {
  FileIo io = {{NULL, readFile, NULL, seekFile, tellFile, noInfo, NULL, NULL, NULL}, NULL};
  if (argc != 2 || !(io.file = fopen(argv[1], "rb"))) return 2;
  uint32_t last = 0;
  VcardIo *back;
  VcardStream *stream;
  VcardData *data = VwAllocProc();
  VwLocalUp(&io.slots, &stream, data);
  VwSetUser((uintptr_t)&last, 0, data);
  VwSetSoRtn(SoIdEmitChar, (SoRoutine)emitChar, data);
  VwSetSoRtn(SoIdEmitSpecial, (SoRoutine)emitSpecial, data);
  VwSetSoRtn(SoIdEmitResourceString, (SoRoutine)emitLabel, data);
  VwSetSoRtn(SoIdEmitBreak, (SoRoutine)emitBreak, data);
  int isCard = VwStreamOpen(stream, VcardFormatVcard, 0, NULL, data) == VcardOpenGood;
  if (isCard) do {
    VwStreamTell(0, data);
    VwStreamSection(0, data);
    do VwStreamRead(0, data); while (last == SoBreakParagraph);
  } while (last == SoBreakSection);
  VwLocalDown(stream, &back);
  VwFreeProc(data);
  fclose(io.file);
  return isCard ? 0 : 1;
}

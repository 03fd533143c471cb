/* Writes each card of the files as a line of JSON, and the size of each object that it holds. */
#include <inttypes.h>
#include <stdio.h>
#include <px/cards.h>

int main(int argc, char **argv) {
  PxReader *reader = PxNewReader();
  int failed = 0;
  for (int i = 1; i < argc; ++i) {
    PxText json;
    int32_t result = PxOpenFile(reader, argv[i]);
    while (result == PxGood && (result = PxReadJson(reader, &json)) == PxGood) {
      puts(json.bytes);
      uint32_t objects = 0;
      PxObjectCount(reader, &objects);
      for (uint32_t number = 1; number <= objects; ++number) {
        uint64_t object, count, total = 0;
        char piece[4096];
        if (PxOpenObject(reader, number, &object) != PxGood) continue;
        while (PxReadObject(reader, object, piece, sizeof piece, &count) == PxGood) total += count;
        fprintf(stderr, "object %" PRIu32 ": %" PRIu64 " bytes\n", number, total);
        PxCloseObject(reader, object);
      }
    }
    if (result == PxEnd) continue;
    fprintf(stderr, "%s: %s\n", argv[i], PxErrorText(reader));
    failed = 1;
  }
  PxFreeReader(&reader);
  return failed;
}

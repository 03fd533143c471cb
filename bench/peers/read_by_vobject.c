/*
 * read_by_vobject FILE: reads a file of cards with libical's vobject reader, visits each property
 * and sums the bytes of each value. Card by card, as the reader can't take some hundred at once.
 */
#include <libical/vcc.h>
#include <libical/vobject.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

#include "cards.h"

static unsigned long sum(VObject *object) {
  unsigned long total = 0;
  switch (vObjectValueType(object)) {
    case VCVT_STRINGZ:
      for (const char *p = vObjectStringZValue(object); *p != '\0'; ++p) total += (unsigned char)*p;
      break;
    case VCVT_USTRINGZ:
      for (const wchar_t *p = vObjectUStringZValue(object); *p != 0; ++p)
        total += (unsigned long)*p;
      break;
    case VCVT_VOBJECT:
      total += sum(vObjectVObjectValue(object));
      break;
    case VCVT_RAW: {
      VObject *size = isAPropertyOf(object, VCDataSizeProp);
      const unsigned char *bytes = vObjectAnyValue(object);
      const unsigned long count = size != NULL ? vObjectLongValue(size) : 0;
      for (unsigned long i = 0; i < count; ++i) total += bytes[i];
      break;
    }
    default:
      break;
  }
  VObjectIterator properties;
  initPropIterator(&properties, object);
  while (moreIteration(&properties)) total += sum(nextVObject(&properties));
  return total;
}

static unsigned long sumCard(const char *text, size_t length) {
  unsigned long total = 0;
  VObject *card = Parse_MIME(text, length);
  if (card == NULL) {
    fprintf(stderr, "a card was not read\n");
    exit(1);
  }
  total = sum(card);
  cleanVObject(card);
  return total;
}

int main(int argc, char **argv) {
  struct text text;
  if (argc != 2 || !readFile(argv[1], &text)) return 2;
  unsigned long total = 0;
  unsigned long count = 0;
  for (char *card = text.begin; card != NULL; ++count) {
    char *next = nextCard(card);
    total += sumCard(card, (size_t)((next != NULL ? next : text.end) - card));
    card = next;
  }
  free(text.begin);
  printf("%lu cards, sum %lu\n", count, total);
  return 0;
}

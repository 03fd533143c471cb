/* A file of cards in memory, and where each of them begins. */
#ifndef PX_BENCH_PEERS_CARDS_H
#define PX_BENCH_PEERS_CARDS_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct text {
  char *begin; /* to be freed */
  char *end;   /* a NUL stands here */
};

/* Answers 0 when the file can't be read. */
static inline int readFile(const char *name, struct text *text) {
  FILE *file = fopen(name, "rb");
  if (file == NULL) return 0;
  fseek(file, 0, SEEK_END);
  const long size = ftell(file);
  rewind(file);
  text->begin = size < 0 ? NULL : malloc((size_t)size + 1);
  const int good = text->begin != NULL && fread(text->begin, 1, (size_t)size, file) == (size_t)size;
  fclose(file);
  if (!good) return 0;
  text->end = text->begin + size;
  *text->end = '\0';
  return 1;
}

/* The card behind the one at `card`, or null. */
static inline char *nextCard(char *card) {
  char *next = strstr(card + 1, "\nBEGIN:VCA"); /* VCARD or VCALENDAR */
  return next != NULL ? next + 1 : NULL;
}

#endif

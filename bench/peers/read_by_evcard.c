/*
 * read_by_evcard FILE: reads a file of cards with Evolution's EVCard, card by card, visits each
 * attribute and sums the bytes of each value, decoded.
 */
#include <libebook-contacts/libebook-contacts.h>
#include <stdio.h>

#include "cards.h"

static unsigned long sumCard(const char *text) {
  unsigned long total = 0;
  EVCard *card = e_vcard_new_from_string(text);
  for (GList *a = e_vcard_get_attributes(card); a != NULL; a = a->next) {
    for (GList *v = e_vcard_attribute_get_values_decoded(a->data); v != NULL; v = v->next) {
      const GString *value = v->data;
      for (gsize i = 0; i < value->len; ++i) total += (unsigned char)value->str[i];
    }
  }
  g_object_unref(card);
  return total;
}

int main(int argc, char **argv) {
  struct text text;
  if (argc != 2 || !readFile(argv[1], &text)) return 2;
  unsigned long total = 0;
  unsigned long count = 0;
  for (char *card = text.begin; card != NULL; ++count) {
    char *next = nextCard(card);
    if (next != NULL) next[-1] = '\0';
    total += sumCard(card);
    card = next;
  }
  free(text.begin);
  printf("%lu cards, sum %lu\n", count, total);
  return 0;
}

// read_by_kcontacts FILE: reads a file of cards with KContacts, visits each property and sums the
// characters or bytes of each value.

#include <KContacts/Addressee>
#include <KContacts/Picture>
#include <KContacts/VCardConverter>
#include <QFile>
#include <cstdio>

namespace {

unsigned long sum(const QString &text) {
  unsigned long total = 0;
  for (const QChar c : text) total += c.unicode();
  return total;
}

unsigned long sum(const QByteArray &bytes) {
  unsigned long total = 0;
  for (const char c : bytes) total += static_cast<unsigned char>(c);
  return total;
}

unsigned long sum(const KContacts::Addressee &card) {
  unsigned long total = sum(card.formattedName()) + sum(card.familyName()) + sum(card.givenName()) +
                        sum(card.suffix()) + sum(card.title()) + sum(card.organization()) +
                        sum(card.department()) + sum(card.note()) + sum(card.uid()) +
                        sum(card.url().url().toString()) + sum(card.photo().rawData());
  for (const KContacts::PhoneNumber &number : card.phoneNumbers()) total += sum(number.number());
  for (const QString &mail : card.emails()) total += sum(mail);
  for (const KContacts::Address &address : card.addresses()) {
    total += sum(address.street()) + sum(address.locality()) + sum(address.region()) +
             sum(address.postalCode()) + sum(address.country()) + sum(address.label());
  }
  return total;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) return 2;
  QFile file(QString::fromLocal8Bit(argv[1]));
  if (!file.open(QIODevice::ReadOnly)) return 2;
  const KContacts::Addressee::List cards = KContacts::VCardConverter().parseVCards(file.readAll());
  unsigned long total = 0;
  for (const KContacts::Addressee &card : cards) total += sum(card);
  std::printf("%d cards, sum %lu\n", static_cast<int>(cards.size()), total);
  return cards.isEmpty() ? 1 : 0;
}

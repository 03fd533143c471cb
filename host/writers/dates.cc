#include "host/writers/dates.h"

#include "host/languages/translation.h"

namespace px {
namespace {

constexpr std::string_view kMonths[] = {
    N_("January"), N_("February"), N_("March"),     N_("April"),   N_("May"),      N_("June"),
    N_("July"),    N_("August"),   N_("September"), N_("October"), N_("November"), N_("December"),
};

bool isDigit(char c) { return '0' <= c && c <= '9'; }

// Takes a date or a time apart from its start.
class Fields {
 public:
  explicit Fields(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }
  bool at(std::string_view text) const { return rest_.starts_with(text); }

  bool take(std::string_view text) {
    const bool found = at(text);
    if (found) rest_.remove_prefix(text.size());
    return found;
  }

  // Takes so many digits, whose number is in the bounds.
  bool number(size_t digits, uint32_t least, uint32_t most, std::string_view *taken) {
    if (rest_.size() < digits) return false;
    uint32_t value = 0;
    for (char c : rest_.substr(0, digits)) {
      if (!isDigit(c)) return false;
      value = value * 10 + static_cast<uint32_t>(c - '0');
    }
    if (value < least || value > most) return false;
    *taken = rest_.substr(0, digits);
    rest_.remove_prefix(digits);
    return true;
  }

  std::string_view digits() {
    size_t count = 0;
    while (count < rest_.size() && isDigit(rest_[count])) ++count;
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

 private:
  std::string_view rest_;
};

std::string_view withoutZero(std::string_view number) {
  return number.starts_with('0') ? number.substr(1) : number;
}

std::string_view monthName(std::string_view month) {
  return tr(kMonths[(month[0] - '0') * 10 + (month[1] - '0') - 1]);
}

// The day of any year: "2 March"; one of the two may be empty.
std::string dayAndMonth(std::string_view day, std::string_view month) {
  if (month.empty()) return filled(tr("day %1"), {withoutZero(day)});
  if (day.empty()) return std::string(monthName(month));
  return filled(trIn("day and month", "%1 %2"), {withoutZero(day), monthName(month)});
}

bool readDate(Fields *from, std::string_view omitted, std::string *to) {
  std::string_view year, month, day;
  if (from->take("---")) {
    if (!from->number(2, 1, 31, &day)) return false;
  } else if (from->take("--")) {
    if (!from->number(2, 1, 12, &month)) return false;
    const bool divided = from->take("-");
    if (!from->number(2, 1, 31, &day) && divided) return false;
  } else {
    if (!from->number(4, 0, 9999, &year)) return false;
    const bool divided = from->take("-");
    if (!from->number(2, 1, 12, &month)) return false;
    if ((!divided || from->take("-")) && !from->number(2, 1, 31, &day)) return false;
    if (year == omitted) year = {};
  }
  if (year.empty()) {
    *to += dayAndMonth(day, month);
    return true;
  }
  to->append(year).append("-").append(month);
  if (!day.empty()) to->append("-").append(day);
  return true;
}

bool readZone(Fields *from, std::string *to) {
  if (from->take("Z")) {
    *to += " UTC";
    return true;
  }
  const bool east = from->at("+");
  if (!from->take("+") && !from->take("-")) return true;
  std::string_view hour, minute = "00";
  if (!from->number(2, 0, 23, &hour)) return false;
  from->take(":");
  if (!from->atEnd() && !from->number(2, 0, 59, &minute)) return false;
  to->append(east ? " +" : " -").append(hour).append(":").append(minute);
  return true;
}

bool readTime(Fields *from, std::string *to) {
  std::string_view hour, minute = "00", second;
  if (!from->number(2, 0, 24, &hour)) return false;
  const bool divided = from->take(":");
  if (from->number(2, 0, 59, &minute)) {
    if (!divided || from->take(":")) from->number(2, 0, 60, &second);
  } else if (divided) {
    return false;
  }
  to->append(hour).append(":").append(minute);
  if (second.empty()) return readZone(from, to);
  const std::string_view fraction = from->take(".") || from->take(",") ? from->digits() : "";
  if (second != "00" || !fraction.empty()) to->append(":").append(second);
  if (!fraction.empty()) to->append(".").append(fraction);
  return readZone(from, to);
}

}  // namespace

std::optional<std::string> readableDate(std::string_view text, std::string_view omitted) {
  Fields fields(text);
  std::string readable;
  if (text.size() > LongestDate) return std::nullopt;
  if (!fields.at("T") && !readDate(&fields, omitted, &readable)) return std::nullopt;
  if (fields.take("T")) {
    if (!readable.empty()) readable += ' ';
    if (!readTime(&fields, &readable)) return std::nullopt;
  }
  if (!fields.atEnd()) return std::nullopt;
  return readable;
}

}  // namespace px

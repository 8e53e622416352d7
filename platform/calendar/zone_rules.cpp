// The rules become ICU's zones of two changes a year.
#include "platform/calendar/zone_rules.h"

#include <unicode/simpletz.h>

#include <optional>

namespace kelspar::calendar {

namespace {

constexpr int kHour = 3600, kDay = 24 * kHour;  // seconds
constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool isDigit(char unit) { return unit >= '0' && unit <= '9'; }
bool isLetter(char unit) { return (unit | 0x20) >= 'a' && (unit | 0x20) <= 'z'; }

// When clocks change: "the first such weekday from this day of the month on", or "the last up to
// it". Weekday 0: the day itself.
struct Change {
  int month = 0, day = 0, weekday = 0;  // from 0, from 1, Sunday is 1
  bool isLast = false;
  int seconds = 0;  // of the day
};

// Reads from the left; once something is missing, all that follows is.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  [[nodiscard]] bool isGood() const { return isGood_; }
  [[nodiscard]] bool isDone() const { return at_ == text_.size(); }
  [[nodiscard]] char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  bool takes(char unit) {
    const bool isThere = peek() == unit && !isDone();
    at_ += isThere;
    return isThere;
  }

  // Three letters and more, or what stands in "<>".
  void name() {
    const bool isQuoted = takes('<');
    const size_t from = at_;
    const auto isPart = [&] {
      return isLetter(peek()) || (isQuoted && (isDigit(peek()) || peek() == '+' || peek() == '-'));
    };
    while (isPart()) ++at_;
    need(at_ - from >= 3);
    if (isQuoted) need(takes('>'));
  }

  int number(int least, int most) {
    int value = 0;
    const size_t from = at_;
    while (isDigit(peek()) && at_ - from < 4) value = value * 10 + (text_[at_++] - '0');
    need(at_ > from && value >= least && value <= most);
    return isGood_ ? value : 0;  // what is not good is computed with all the same
  }

  // "[+-]hh[:mm[:ss]]" in seconds.
  int time(int mostHours) {
    const bool isNegative = takes('-');
    if (!isNegative) takes('+');
    int seconds = number(0, mostHours) * kHour;
    if (takes(':')) seconds += number(0, 59) * 60;
    if (takes(':')) seconds += number(0, 59);
    return isNegative ? -seconds : seconds;
  }

  // ",M3.5.0/2" or ",J60/2".
  Change change() {
    Change change;
    need(takes(','));
    const bool isByWeekday = takes('M');
    if (isByWeekday) {
      weekday(&change);
    } else {
      need(takes('J'));
      change.day = number(1, 365);
      while (isGood_ && change.day > kLengths[change.month]) change.day -= kLengths[change.month++];
    }
    change.seconds = takes('/') ? time(167) : 2 * kHour;
    if (isGood_) intoTheDay(&change);
    return change;
  }

 private:
  void need(bool holds) { isGood_ = isGood_ && holds; }

  void weekday(Change* change) {
    change->month = number(1, 12) - 1;
    need(takes('.'));
    const int week = number(1, 5);
    need(takes('.'));
    change->weekday = number(0, 6) + 1;
    if (!isGood_) return;
    change->isLast = week == 5;
    // A 29th of February is a last one as well.
    change->day = change->isLast ? kLengths[change->month] + (change->month == 1) : week * 7 - 6;
  }

  // A time before or after the day becomes one of another day.
  void intoTheDay(Change* change) {
    int days = change->seconds / kDay;
    if (change->seconds % kDay < 0) --days;
    if (days == 0) return;
    change->seconds -= days * kDay;
    change->day += days;
    if (change->weekday > 0) change->weekday = ((change->weekday - 1 + days) % 7 + 7) % 7 + 1;
    need(change->day >= 1 && change->day <= kLengths[change->month]);
  }

  std::string_view text_;
  size_t at_ = 0;
  bool isGood_ = true;
};

void setChange(icu::SimpleTimeZone* zone, const Change& change, bool isStart, UErrorCode& error) {
  const int32_t milliseconds = change.seconds * 1000;
  if (change.weekday == 0) {
    isStart ? zone->setStartRule(change.month, change.day, milliseconds, error)
            : zone->setEndRule(change.month, change.day, milliseconds, error);
    return;
  }
  isStart ? zone->setStartRule(change.month, change.day, change.weekday, milliseconds,
                               !change.isLast, error)
          : zone->setEndRule(change.month, change.day, change.weekday, milliseconds, !change.isLast,
                             error);
}

}  // namespace

template <class Zone>
std::unique_ptr<Zone> zoneOfRule(std::string_view rule) {
  constexpr size_t kLongest = 128;
  if (rule.size() > kLongest) return nullptr;
  const auto id = icu::UnicodeString::fromUTF8({rule.data(), static_cast<int32_t>(rule.size())});
  Scanner scanner(rule);
  scanner.name();
  const int offset = -scanner.time(24);
  auto zone = std::make_unique<icu::SimpleTimeZone>(offset * 1000, id);
  if (!scanner.isGood()) return nullptr;
  if (scanner.isDone()) return zone;
  scanner.name();
  const bool hasOffset = scanner.peek() != ',' && !scanner.isDone();
  const int saving = hasOffset ? -scanner.time(24) - offset : kHour;
  const bool hasRules = !scanner.isDone();
  Scanner usual(",M3.2.0,M11.1.0");
  Scanner& rules = hasRules ? scanner : usual;
  const Change start = rules.change(), end = rules.change();
  if (!scanner.isGood() || !scanner.isDone() || saving == 0) return nullptr;
  UErrorCode error = U_ZERO_ERROR;
  zone->setDSTSavings(saving * 1000, error);
  setChange(zone.get(), start, true, error);
  setChange(zone.get(), end, false, error);
  return U_SUCCESS(error) ? std::move(zone) : nullptr;
}

template std::unique_ptr<icu::TimeZone> zoneOfRule(std::string_view rule);

}  // namespace kelspar::calendar

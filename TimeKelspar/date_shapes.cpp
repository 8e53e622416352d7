// The scanner for plain date shapes.
#include "TimeKelspar/date_shapes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "TimeKelspar/TimeKelspar.h"
#include "platform/calendar/wall_clock.h"

namespace kelspar::dates {

namespace {

constexpr std::u16string_view kMonths = u"janfebmaraprmayjunjulaugsepoctnovdec";
constexpr std::u16string_view kWeekdays = u"sunmontuewedthufrisat";

// Calendars turned from Julian to Gregorian in 1582; years before, and those beyond four digits,
// are the formatters' business.
constexpr int kFirstYear = 1600;

// What the formatters take for a zone's name. Names of places' time are taken only where a weekday
// and two digits of the day stand before them.
struct NamedZone {
  std::u16string_view name;
  int offset;  // seconds
};
constexpr NamedZone kZones[] = {{u"GMT", 0},         {u"UTC", 0},         {u"UT", 0},
                                {u"Z", 0},           {u"EST", -5 * 3600}, {u"EDT", -4 * 3600},
                                {u"CST", -6 * 3600}, {u"CDT", -5 * 3600}, {u"MST", -7 * 3600},
                                {u"MDT", -6 * 3600}, {u"PST", -8 * 3600}, {u"PDT", -7 * 3600}};
constexpr size_t kZonesOfUTC = 4;
constexpr int kFirstYearOfPlaces = 1970;  // their clocks stood otherwise in years before

struct Moment {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

// Reads from the left; once something is missing, all that follows is.
class Scanner {
 public:
  explicit Scanner(std::u16string_view text) : text_(text) {}

  [[nodiscard]] bool isDone() const { return isGood_ && at_ == text_.size(); }
  [[nodiscard]] bool isGood() const { return isGood_; }
  [[nodiscard]] char16_t peek(size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
  }

  Scanner& literal(char16_t unit) {
    isGood_ &= peek() == unit;
    ++at_;
    return *this;
  }

  // Exactly `digits` digits, and no further one.
  Scanner& number(int digits, int* value) {
    *value = 0;
    for (int i = 0; i < digits; ++i, ++at_) {
      const bool isOne = isDigit(peek());
      *value = *value * 10 + (isOne ? peek() - u'0' : 0);
      isGood_ &= isOne;
    }
    isGood_ &= !isDigit(peek());
    return *this;
  }

  // The position of a three-letter name, from 0; ASCII case does not count.
  Scanner& name(std::u16string_view names, int* index) {
    std::array<char16_t, 3> letters{};
    for (char16_t& letter : letters)
      letter = static_cast<char16_t>(peek(&letter - letters.data()) | 0x20);
    const auto wanted = std::u16string_view(letters.data(), letters.size());
    for (size_t i = 0; i < names.size(); i += 3) {
      if (names.substr(i, 3) != wanted) continue;
      *index = static_cast<int>(i / 3);
      at_ += 3;
      return *this;
    }
    isGood_ = false;
    return *this;
  }

  Scanner& time(Moment* moment) {
    return number(2, &moment->hour)
        .literal(u':')
        .number(2, &moment->minute)
        .literal(u':')
        .number(2, &moment->second);
  }

  // One digit or two.
  Scanner& day(Moment* moment) { return number(isDigit(peek(1)) ? 2 : 1, &moment->day); }

  // "+hhmm", "-hhmm" or one of the first `named` zones' names, in seconds.
  Scanner& zone(int* offset, size_t named = kZonesOfUTC) {
    if (isLetter(peek())) return zoneNamed(std::span(kZones).first(named), offset);
    const char16_t sign = peek();
    isGood_ &= sign == u'+' || sign == u'-';
    ++at_;
    int value = 0;
    number(4, &value);
    isGood_ &= value / 100 <= 14 && value % 100 < 60;
    *offset = (value / 100 * 60 + value % 100) * (sign == u'-' ? -60 : 60);
    return *this;
  }

  // One of `zones` up to the text's end; ASCII case does not count.
  Scanner& zoneNamed(std::span<const NamedZone> zones, int* offset) {
    const std::u16string_view rest = text_.substr(std::min(at_, text_.size()));
    for (const NamedZone& zone : zones) {
      if (!std::ranges::equal(rest, zone.name, {}, &Scanner::upper)) continue;
      *offset = zone.offset;
      at_ += rest.size();
      return *this;
    }
    isGood_ = false;
    return *this;
  }

  static bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
  static bool isLetter(char16_t unit) { return upper(unit) >= u'A' && upper(unit) <= u'Z'; }
  static char16_t upper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
  }

 private:
  std::u16string_view text_;
  size_t at_ = 0;
  bool isGood_ = true;
};

// Seconds since 1970 as if the clock showed UTC; nothing for what is no time.
std::optional<int64_t> wallSeconds(const Moment& m) {
  if (m.year < kFirstYear || !TimeKelspar::dateIsValidWithDay(m.day, m.month, m.year) ||
      m.hour > 23 || m.minute > 59 || m.second > 59) {
    return std::nullopt;
  }
  return calendar::daysFromCivil(m.year, m.month, m.day) * 86400 + m.hour * 3600 + m.minute * 60 +
         m.second;
}

NSDate dated(std::optional<int64_t> seconds) {
  return seconds ? NSDate::since1970(static_cast<double>(*seconds)) : nil;
}

NSDate inZone(const Moment& moment, int offset) {
  const auto seconds = wallSeconds(moment);
  return seconds ? dated(*seconds - offset) : nil;
}

NSDate local(const Moment& moment) {
  const auto seconds = wallSeconds(moment);
  return seconds ? dated(calendar::utcFromWallClock(*seconds)) : nil;
}

// "1 Jan 1970 00:00:00 +0000"
NSDate readMailDate(Scanner scanner, bool hasWeekday) {
  Moment moment;
  int offset = 0;
  const bool isPadded = Scanner::isDigit(scanner.peek(1));
  scanner.day(&moment).literal(u' ').name(kMonths, &moment.month).literal(u' ');
  scanner.number(4, &moment.year).literal(u' ').time(&moment).literal(u' ');
  const bool takesPlaces = hasWeekday && isPadded && moment.year >= kFirstYearOfPlaces;
  scanner.zone(&offset, takesPlaces ? std::size(kZones) : kZonesOfUTC);
  ++moment.month;
  return scanner.isDone() ? inZone(moment, offset) : nil;
}

// "1970-01-01T00:00:00+0000", "1970-01-01 00:00:00 +0000"
NSDate readISODate(Scanner scanner) {
  Moment moment;
  int offset = 0;
  scanner.number(4, &moment.year).literal(u'-').number(2, &moment.month).literal(u'-');
  scanner.number(2, &moment.day);
  const bool isLettered = scanner.peek() == u'T';
  scanner.literal(isLettered ? u'T' : u' ').time(&moment);
  if (!isLettered) scanner.literal(u' ');
  scanner.zone(&offset);
  return scanner.isDone() ? inZone(moment, offset) : nil;
}

// "Jan  1 00:00:00 1970"; of the day's two blanks the header operation leaves one.
NSDate readCDate(Scanner scanner) {
  Moment moment;
  scanner.name(kMonths, &moment.month).literal(u' ').day(&moment).literal(u' ');
  scanner.time(&moment).literal(u' ').number(4, &moment.year);
  ++moment.month;
  return scanner.isDone() ? local(moment) : nil;
}

}  // namespace

NSDate readHeaderShape(std::u16string_view text) {
  Scanner scanner(text);
  if (Scanner::isDigit(scanner.peek())) {
    return Scanner::isDigit(scanner.peek(2)) ? readISODate(scanner) : readMailDate(scanner, false);
  }
  int weekday = 0;  // deliberate: a wrong one is read over
  if (!scanner.name(kWeekdays, &weekday).isGood()) return nil;
  if (scanner.peek() != u',') return readCDate(scanner.literal(u' '));
  return readMailDate(scanner.literal(u',').literal(u' '), true);
}

NSDate readGeneralShape(std::u16string_view text) {
  Moment moment;
  Scanner scanner(text);
  if (text.size() == 16 && text[8] == u'T') {
    int date = 0, time = 0;
    scanner.number(8, &date).literal(u'T').number(6, &time).literal(u'Z');
    moment = {date / 10000, date / 100 % 100, date % 100,
              time / 10000, time / 100 % 100, time % 100};
    return scanner.isDone() ? local(moment) : nil;
  }
  scanner.number(4, &moment.year).literal(u'-').number(2, &moment.month).literal(u'-');
  scanner.number(2, &moment.day);
  if (scanner.isDone()) return local(moment);
  scanner.literal(u' ').time(&moment);
  return scanner.isDone() ? local(moment) : nil;
}

}  // namespace kelspar::dates

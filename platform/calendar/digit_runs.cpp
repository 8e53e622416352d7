// Digits are those of every script, as ICU reads them.
#include "platform/calendar/digit_runs.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace kelspar::calendar {

namespace {

// Code points of a text, one after the other; a lone surrogate is one.
class Reader {
 public:
  explicit Reader(std::u16string_view text) : text_(text) {}

  [[nodiscard]] bool isDone() const { return at_ == text_.size(); }
  [[nodiscard]] UChar32 peek() const {
    UChar32 point = 0;
    U16_GET(text_.data(), 0, at_, text_.size(), point);
    return point;
  }
  std::u16string_view next() {
    const size_t from = at_;
    U16_FWD_1(text_.data(), at_, text_.size());
    return text_.substr(from, at_ - from);
  }

 private:
  std::u16string_view text_;
  size_t at_ = 0;
};

// Whether what stands behind a number may be its exponent, or what may stand before that.
bool mayBeExponent(UChar32 point) { return point == 'E' || point == 'e' || point >= 0x80; }

// Whether a number goes on with this unit, for all that one can tell without its locale.
bool isOfNumber(UChar32 point, UChar32 before) {
  if (u_isdigit(point) || mayBeExponent(point)) return true;
  const bool isSign = point == '+' || point == '-';
  return (isSign && mayBeExponent(before)) || (before == '.' && u_isUWhiteSpace(point));
}

}  // namespace

std::u16string withShorterNumbers(std::u16string_view text) {
  constexpr char16_t kNothing = u'\uFFFF';
  std::u16string shorter;
  shorter.reserve(text.size());
  size_t significant = 0;  // digits of the number at hand
  for (Reader reader(text); !reader.isDone();) {
    const UChar32 point = reader.peek();
    if (u_isdigit(point)) {
      significant += significant > 0 || u_charDigitValue(point) != 0;
    } else {
      if (significant > kMostDigits && mayBeExponent(point)) shorter += kNothing;
      significant = 0;
    }
    const auto units = reader.next();
    if (significant <= kMostDigits) shorter += units;
  }
  return shorter;
}

std::u16string withShorterFraction(std::u16string_view text) {
  const size_t point = text.find(u'.');
  if (point == text.npos) return std::u16string(text);
  std::u16string shorter(text.substr(0, point + 1));
  size_t digits = 0;
  UChar32 before = u'.';
  Reader reader(text.substr(point + 1));
  for (; !reader.isDone() && isOfNumber(reader.peek(), before);) {
    const UChar32 at = reader.peek();
    const auto units = reader.next();
    if (!u_isdigit(at) || ++digits <= kMostFractionDigits) shorter += units;
    if (before != u'.' || !u_isUWhiteSpace(at)) before = at;
  }
  while (!reader.isDone()) shorter += reader.next();
  return shorter;
}

}  // namespace kelspar::calendar

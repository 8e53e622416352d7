// CSS colours as HTML of mail programs writes them, and the RTF colour-table entries they become.
#include <algorithm>
#include <array>
#include <optional>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "RTFKelspar/white_space.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSScanner.h"

namespace kelspar::RTFKelsparNSStringAdditions {

namespace {

struct Colour {
  int32_t red, green, blue;
};

struct NamedColour {
  std::u16string_view name;
  std::u16string_view hex;
};

// The sixteen colours of HTML 4.01, orange, the second names of three, and a system colour.
constexpr NamedColour kNamedColours[] = {
    {u"aqua", u"00FFFF"},        // the same as cyan
    {u"black", u"000000"},       //
    {u"blue", u"0000FF"},        //
    {u"cyan", u"00FFFF"},        //
    {u"fuchsia", u"FF00FF"},     // the same as magenta
    {u"gray", u"808080"},        //
    {u"green", u"008000"},       //
    {u"grey", u"808080"},        //
    {u"lime", u"00FF00"},        //
    {u"magenta", u"FF00FF"},     //
    {u"maroon", u"800000"},      //
    {u"navy", u"000080"},        //
    {u"olive", u"808000"},       //
    {u"orange", u"FFA500"},      //
    {u"purple", u"800080"},      //
    {u"red", u"FF0000"},         //
    {u"silver", u"C0C0C0"},      //
    {u"teal", u"008080"},        //
    {u"white", u"FFFFFF"},       //
    {u"windowtext", u"000000"},  // word processors write it for "as the system has it"
    {u"yellow", u"FFFF00"},      //
};
static_assert(std::size(kNamedColours) == 21);
static_assert(std::ranges::adjacent_find(kNamedColours, std::ranges::greater_equal{},
                                         &NamedColour::name) == std::ranges::end(kNamedColours),
              "sorted, each name once");

// The longest name; what is longer needs no look into the table.
constexpr size_t kLongestName = 10;

// Lower case, as far as it gives an ASCII letter: U+212A, the Kelvin sign, is the one unit outside
// ASCII that does.
char16_t lowered(char16_t unit) {
  if (unit >= u'A' && unit <= u'Z') return static_cast<char16_t>(unit + 0x20);
  return unit == 0x212A ? u'k' : unit;
}

std::optional<Colour> parseHex(std::u16string_view text) {
  text = trimmed(text);
  if (text.starts_with(u'#')) {
    text.remove_prefix(1);
  } else if (text.starts_with(u"0x") || text.starts_with(u"0X")) {
    text.remove_prefix(2);
  }
  std::array<char16_t, 6> digits;
  if (text.size() == 3) {
    for (size_t i = 0; i < digits.size(); ++i) digits[i] = text[i / 2];
  } else if (text.size() == 6) {
    std::ranges::copy(text, digits.begin());
  } else {
    return std::nullopt;
  }
  NSScanner scanner(std::u16string_view(digits.data(), digits.size()));
  uint32_t value = 0;
  if (!scanner.scanHexInt(&value) || !scanner.isAtEnd()) return std::nullopt;
  return Colour{static_cast<int32_t>(value >> 16 & 0xFF), static_cast<int32_t>(value >> 8 & 0xFF),
                static_cast<int32_t>(value & 0xFF)};
}

// Reads `rgb\s*\(\s*(\d+)\s*,\s*(\d+)\s*,\s*(\d+)\s*\)`. What may follow one part never begins the
// next, so there is nothing to take back.
class RGBScanner {
 public:
  explicit RGBScanner(std::u16string_view text) : text_(text) {}

  // The numbers of the first match, saturated.
  std::optional<Colour> firstMatch() {
    for (size_t start = 0; start + 3 <= text_.size(); ++start) {
      if (lowered(text_[start]) != u'r' || lowered(text_[start + 1]) != u'g' ||
          lowered(text_[start + 2]) != u'b') {
        continue;
      }
      at_ = start + 3;
      Colour colour{};
      if (unit(u'(') && number(&colour.red) && unit(u',') && number(&colour.green) && unit(u',') &&
          number(&colour.blue) && unit(u')')) {
        return colour;
      }
    }
    return std::nullopt;
  }

 private:
  void spaces() {
    while (at_ < text_.size() && isSpace(text_[at_])) ++at_;
  }

  bool unit(char16_t wanted) {
    spaces();
    if (at_ == text_.size() || text_[at_] != wanted) return false;
    ++at_;
    return true;
  }

  // Any script's digits make up a number, but it is read in ASCII's only and ends before others.
  bool number(int32_t* value) {
    constexpr int64_t kMost = INT32_MAX;
    spaces();
    const size_t start = at_;
    int64_t sum = 0;
    bool isRead = true;
    while (const size_t length = digitLength()) {
      const char16_t digit = text_[at_];
      isRead = isRead && digit < 0x80;
      if (isRead) sum = std::min(sum * 10 + (digit - u'0'), kMost);
      at_ += length;
    }
    *value = static_cast<int32_t>(sum);
    return at_ > start;
  }

  // The units of the decimal digit (category Nd) that stands here; 0 when there is none.
  [[nodiscard]] size_t digitLength() const {
    if (at_ == text_.size()) return 0;
    const char16_t first = text_[at_];
    if (first < 0x80) return first >= u'0' && first <= u'9' ? 1 : 0;
    const bool isPair =
        (first & 0xFC00) == 0xD800 && at_ + 1 < text_.size() && (text_[at_ + 1] & 0xFC00) == 0xDC00;
    if (!isPair) return isDecimalDigit(first) ? 1 : 0;
    const char32_t second = text_[at_ + 1];
    return isDecimalDigit((char32_t{first} << 10) + second - 0x35FDC00) ? 2 : 0;
  }

  std::u16string_view text_;
  size_t at_ = 0;
};

std::optional<Colour> parseRGB(std::u16string_view text) {
  const auto colour = RGBScanner(text).firstMatch();
  if (!colour || std::max({colour->red, colour->green, colour->blue}) > 255) return std::nullopt;
  return colour;
}

std::optional<Colour> parseNamed(std::u16string_view text) {
  text = trimmed(text);
  if (text.size() > kLongestName) return std::nullopt;
  std::array<char16_t, kLongestName> letters;
  std::ranges::transform(text, letters.begin(), lowered);
  const std::u16string_view name(letters.data(), text.size());
  const auto* row = std::ranges::lower_bound(kNamedColours, name, {}, &NamedColour::name);
  if (row == std::ranges::end(kNamedColours) || row->name != name) return std::nullopt;
  return parseHex(row->hex);
}

bool store(const std::optional<Colour>& colour, int32_t* red, int32_t* green, int32_t* blue) {
  if (!colour) return false;
  *red = colour->red;
  *green = colour->green;
  *blue = colour->blue;
  return true;
}

}  // namespace

bool parseHexColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue) {
  return red && green && blue && store(parseHex(receiver), red, green, blue);
}

bool parseRGBColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue) {
  return red && green && blue && store(parseRGB(receiver), red, green, blue);
}

bool parseNamedColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue) {
  return red && green && blue && store(parseNamed(receiver), red, green, blue);
}

NSString convertToRTFColour(const NSString& receiver) {
  auto colour = parseHex(receiver);
  if (!colour) colour = parseRGB(receiver);
  if (!colour) colour = parseNamed(receiver);
  if (!colour) return u"\\red0\\green0\\blue0"_ns;
  return NSString("\\red" + std::to_string(colour->red) + "\\green" +
                  std::to_string(colour->green) + "\\blue" + std::to_string(colour->blue));
}

NSString escapeRegexSpecialCharacters(const NSString&, const NSString& text) {
  constexpr std::u16string_view kSpecial = u".*+?^${}()|[]\\";
  const auto isSpecial = [=](char16_t unit) { return kSpecial.find(unit) != kSpecial.npos; };
  const auto specials = std::ranges::count_if(text.view(), isSpecial);
  if (specials == 0) return text;
  return NSString::build(text.length() + static_cast<size_t>(specials), [&](char16_t* out) {
    for (const char16_t unit : text.view()) {
      if (isSpecial(unit)) *out++ = u'\\';
      *out++ = unit;
    }
  });
}

}  // namespace kelspar::RTFKelsparNSStringAdditions

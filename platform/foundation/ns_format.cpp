// The platform's format syntax: directives are read one by one, numbers are printed by snprintf.
#include "platform/foundation/NSFormat.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "platform/foundation/NSData.h"

namespace kelspar {

namespace {

// A width or precision beyond this prints as this: a format cannot claim memory that it did not
// fill.
constexpr int kWidest = 4096;

struct Directive {
  bool left = false, plus = false, blank = false, zero = false, alternate = false;
  int width = -1, precision = -1;
  int bits = 32;  // what an integer is cut to before it is printed
  char16_t conversion = 0;
};

class Formatter {
 public:
  Formatter(std::u16string_view format, std::span<const id> arguments)
      : format_(format), arguments_(arguments) {}

  NSString run() {
    while (at_ < format_.size()) {
      const size_t percent = std::min(format_.find(u'%', at_), format_.size());
      out_.append(format_.substr(at_, percent - at_));
      at_ = percent;
      if (at_ < format_.size()) directive();
    }
    return NSString(std::move(out_));
  }

 private:
  void directive() {
    const size_t start = at_++;
    Directive d;
    size_t position = 0;
    if (const size_t after = peekPosition(&position)) at_ = after;
    readFlags(&d);
    d.width = readNumber();
    if (d.width < -1) d.left = true, d.width = std::min(-d.width, kWidest);
    if (peek() == u'.') ++at_, d.precision = std::max(readNumber(), 0);
    d.bits = readLength();
    d.conversion = peek();
    ++at_;
    if (d.conversion == u'%') {
      out_ += u'%';
    } else if (!convert(d, position)) {
      out_.append(format_.substr(start, at_ - start));
    }
    at_ = std::min(at_, format_.size());
  }

  char16_t peek() const { return at_ < format_.size() ? format_[at_] : u'\0'; }

  // "3$" right behind the percent sign: the position after it, or 0.
  size_t peekPosition(size_t* position) const {
    size_t at = at_, value = 0;
    while (at < format_.size() && format_[at] >= u'0' && format_[at] <= u'9' && value < 100000) {
      value = value * 10 + (format_[at++] - u'0');
    }
    if (at == at_ || at >= format_.size() || format_[at] != u'$') return 0;
    *position = value;
    return at + 1;
  }

  void readFlags(Directive* d) {
    for (;; ++at_) {
      switch (peek()) {
        case u'-':
          d->left = true;
          break;
        case u'+':
          d->plus = true;
          break;
        case u' ':
          d->blank = true;
          break;
        case u'0':
          d->zero = true;
          break;
        case u'#':
          d->alternate = true;
          break;
        case u'\'':
          break;
        default:
          return;
      }
    }
  }

  // Digits, or "*" for the next argument; -1 when there is neither.
  int readNumber() {
    if (peek() == u'*') {
      ++at_;
      const auto value =
          std::clamp<int64_t>(nextArgument(0).as<NSNumber>().longValue(), -kWidest, kWidest);
      return static_cast<int>(value);
    }
    int value = -1;
    for (; peek() >= u'0' && peek() <= u'9'; ++at_) {
      value = std::min(std::max(value, 0) * 10 + (peek() - u'0'), kWidest);
    }
    return value;
  }

  int readLength() {
    int bits = 32;
    for (;; ++at_) {
      switch (peek()) {
        case u'h':
          bits = bits == 16 ? 8 : 16;
          break;
        case u'l':
        case u'q':
        case u'z':
        case u't':
        case u'j':
          bits = 64;
          break;
        case u'L':
          break;
        default:
          return bits;
      }
    }
  }

  const id& nextArgument(size_t position) {
    static const id none;
    const size_t index = position > 0 ? position - 1 : next_++;
    missing_ = index >= arguments_.size();
    return missing_ ? none : arguments_[index];
  }

  // False for a conversion that is not known; its text then stands as it is.
  bool convert(const Directive& d, size_t position) {
    constexpr std::u16string_view kKnown = u"@diuxXoDUOfFeEgGaAcCsSp";
    if (d.conversion == 0 || kKnown.find(d.conversion) == kKnown.npos) return false;
    const id argument = nextArgument(position);
    if (missing_) return true;
    switch (d.conversion) {
      case u'@':
      case u's':
      case u'S':
        text(d, argument);
        break;
      case u'c':
      case u'C':
        character(d, argument);
        break;
      case u'f':
      case u'F':
      case u'e':
      case u'E':
      case u'g':
      case u'G':
      case u'a':
      case u'A':
        real(d, argument.as<NSNumber>());
        break;
      case u'p':
        pointer(d, argument);
        break;
      default:
        integer(d, argument.as<NSNumber>());
        break;
    }
    return true;
  }

  void pad(const Directive& d, std::u16string_view text) {
    const size_t width = static_cast<size_t>(std::max(d.width, 0));
    const size_t fill = width > text.size() ? width - text.size() : 0;
    if (!d.left) out_.append(fill, u' ');
    out_.append(text);
    if (d.left) out_.append(fill, u' ');
  }

  void text(const Directive& d, const id& argument) {
    const auto data = argument.as<NSData>();
    const NSString shown =
        d.conversion == u's' && data ? NSString(data.chars()) : argument.description();
    pad(d, shown.view().substr(0, d.precision < 0 ? shown.length() : d.precision));
  }

  void character(const Directive& d, const id& argument) {
    const auto textual = argument.as<NSString>();
    auto unit = textual.isEmpty() ? static_cast<char16_t>(argument.as<NSNumber>().longValue())
                                  : textual.view()[0];
    if (d.conversion == u'c') unit &= 0xFF;
    pad(d, {&unit, 1});
  }

  // The directive for snprintf, with `length` and `letter` behind it.
  static std::string conversionFor(const Directive& d, const char* length, char letter) {
    std::string conversion = "%";
    if (d.left) conversion += '-';
    if (d.plus) conversion += '+';
    if (d.blank) conversion += ' ';
    if (d.zero) conversion += '0';
    if (d.alternate) conversion += '#';
    if (d.width >= 0) conversion += std::to_string(d.width);
    if (d.precision >= 0) conversion += "." + std::to_string(d.precision);
    return conversion + length + letter;
  }

  template <class Value>
  void print(const std::string& conversion, Value value) {
    char text[2 * kWidest + 512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = std::snprintf(text, sizeof text, conversion.c_str(), value);
#pragma GCC diagnostic pop
    out_.append(text, text + std::clamp<int>(length, 0, sizeof text - 1));
  }

  void integer(const Directive& d, const NSNumber& number) {
    const char16_t letter = d.conversion == u'i' || d.conversion == u'D' ? u'd'
                            : d.conversion == u'U'                       ? u'u'
                            : d.conversion == u'O'                       ? u'o'
                                                                         : d.conversion;
    const std::string conversion = conversionFor(d, "ll", static_cast<char>(letter));
    const int shift = 64 - d.bits;
    if (letter == u'd') {
      const auto bits = static_cast<uint64_t>(number.longValue()) << shift;
      print(conversion, static_cast<long long>(static_cast<int64_t>(bits) >> shift));
    } else {
      print(conversion,
            static_cast<unsigned long long>(number.unsignedLongValue() << shift >> shift));
    }
  }

  void real(const Directive& d, const NSNumber& number) {
    print(conversionFor(d, "", static_cast<char>(d.conversion)), number.doubleValue());
  }

  void pointer(const Directive& d, const id& argument) {
    Directive hex = d;
    hex.alternate = true;
    const auto number = argument.as<NSNumber>();
    const auto address =
        number ? number.unsignedLongValue() : reinterpret_cast<uint64_t>(argument.contents());
    print(conversionFor(hex, "ll", 'x'), static_cast<unsigned long long>(address));
  }

  std::u16string_view format_;
  std::span<const id> arguments_;
  size_t at_ = 0, next_ = 0;
  bool missing_ = false;
  std::u16string out_;
};

}  // namespace

NSString formatString(std::u16string_view format, std::span<const id> arguments) {
  return Formatter(format, arguments).run();
}

}  // namespace kelspar

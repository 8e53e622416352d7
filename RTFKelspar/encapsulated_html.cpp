// Takes the markup of encapsulated HTML (MS-OXRTFEX) back out of RTF: what stands in htmltag groups
// and is not hidden by \htmlrtf. A scanner, not a reader: the complete de-encapsulation is
// MailKelspar's.
#include <algorithm>
#include <string>

#include "RTFKelspar/RTFKelspar.h"
#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

namespace {

// Over bytes for ASCII, over units for everything else: the answers are the same.
template <class Char>
class Extractor {
 public:
  explicit Extractor(std::basic_string_view<Char> text) : text_(text) {}

  std::basic_string<Char> run() {
    while (at_ < text_.size()) {
      switch (text_[at_]) {
        case '\\':
          backslash();
          break;
        case '}':
          if (inTag_ && depth_ == tagDepth_) inTag_ = false;
          --depth_;
          ++at_;
          break;
        case '{':
          openingBrace();
          break;
        default:
          characters();
          break;
      }
    }
    return std::move(output_);
  }

 private:
  [[nodiscard]] bool startsWith(std::string_view word) const {
    return text_.size() - at_ >= word.size() &&
           std::equal(word.begin(), word.end(), text_.begin() + static_cast<ptrdiff_t>(at_));
  }

  [[nodiscard]] bool isAt(char c) const {
    return at_ < text_.size() && text_[at_] == static_cast<Char>(c);
  }

  [[nodiscard]] bool isDigitAt() const {
    if (at_ >= text_.size()) return false;
    const Char c = text_[at_];
    if (c >= '0' && c <= '9') return true;
    if constexpr (sizeof(Char) == 1) return false;
    static const NSCharacterSet digits = NSCharacterSet::decimalDigit();
    return c >= 0x80 && digits.contains(static_cast<char16_t>(c));
  }

  [[nodiscard]] bool isLetterAt() const {
    const auto letter = at_ < text_.size() ? text_[at_] | 0x20 : 0;
    return letter >= 'a' && letter <= 'z';
  }

  void backslash() {
    // The word is looked for only where at least one character follows "\htmlrtf".
    if (at_ + 8 < text_.size() && startsWith("\\htmlrtf")) {
      at_ += 8;
      if (isAt('0')) {
        ++at_;
        suppressed_ = false;  // deliberate: a blank behind it is text
      } else {
        suppressed_ = true;
        if (isAt(' ')) ++at_;
      }
      return;
    }
    ++at_;
    if (!inTag_) return;
    while (isLetterAt()) ++at_;
    // Deliberate: "-", digits and a blank go even where no letter stood before them.
    if (isAt('-') || isDigitAt()) {
      if (isAt('-')) ++at_;
      while (isDigitAt()) ++at_;
    }
    if (isAt(' ')) ++at_;
  }

  void openingBrace() {
    ++depth_;
    if (at_ + 12 >= text_.size() || !startsWith("{\\*\\htmltag")) {
      ++at_;
      return;
    }
    at_ += 11;
    while (isDigitAt()) ++at_;
    if (isAt(' ')) ++at_;
    inTag_ = true;
    tagDepth_ = depth_;
  }

  void characters() {
    size_t end = scan::findAny(text_, at_, '\\', '{', '}');
    if (inTag_ && !suppressed_) {
      while (at_ < end) {
        const size_t lineEnd = std::min(scan::findAny(text_.substr(0, end), at_, '\r', '\n'), end);
        output_.append(text_, at_, lineEnd - at_);
        at_ = lineEnd + 1;
      }
    }
    at_ = end;
  }

  std::basic_string_view<Char> text_;
  size_t at_ = 0;
  int64_t depth_ = 0, tagDepth_ = 0;
  bool inTag_ = false, suppressed_ = false;
  std::basic_string<Char> output_;
};

}  // namespace

bool RTFKelspar::isEncapsulatedHTML(const NSData& rtf) {
  constexpr size_t kLeast = 50, kLookedAt = 500;
  if (rtf.length() < kLeast) return false;
  const auto start = rtf.chars().substr(0, kLookedAt);
  return utf8::asciiPrefix(start) == start.size() && start.find("\\fromhtml") != start.npos;
}

NSString RTFKelspar::extractHTMLFromEncapsulatedRTF(const NSData& rtf) {
  const auto bytes = rtf.chars();
  if (utf8::asciiPrefix(bytes) == bytes.size()) {
    const std::string html = Extractor<char>(bytes).run();
    return html.empty() ? nil : NSString(html);
  }
  NSString text = stringWithData(rtf, NSUTF8StringEncoding);
  if (!text) text = stringWithData(rtf, NSWindowsCP1252StringEncoding);
  std::u16string html = Extractor<char16_t>(text.view()).run();
  return html.empty() ? nil : NSString(std::move(html));
}

NSString RTFKelspar::extractHTMLIfEncapsulated(const NSData& rtf) {
  return isEncapsulatedHTML(rtf) ? extractHTMLFromEncapsulatedRTF(rtf) : nil;
}

}  // namespace kelspar

// Values out of the JSON library's events: no tree of its own is built.
#include "platform/loading/json_reader.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <vector>

#include "platform/foundation/hex.h"

namespace kelspar {

namespace {

// The library takes an escape of a lone surrogate for an error. In a text with such escapes each of
// them is replaced by a private-use character, the mark, and its four digits; a mark that the text
// itself holds, raw or escaped, counts as two lone surrogates.
constexpr std::string_view kMark = "\xF4\x8F\xBF\xBD";  // U+10FFFD
constexpr char16_t kMarkUnits[] = {0xDBFF, 0xDFFD};

// The unit that the escape at `at` ("\uXXXX") stands for, or -1 when there is none.
int escapedUnit(std::string_view text, size_t at) {
  if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') return -1;
  const int high = hexByte(text.data() + at + 2), low = hexByte(text.data() + at + 4);
  return high < 0 || low < 0 ? -1 : high << 8 | low;
}

// A stretch without escapes.
void appendMarkingMarks(std::string_view stretch, std::string* marked) {
  for (size_t at; (at = stretch.find(kMark)) != stretch.npos;) {
    marked->append(stretch.substr(0, at)).append(kMark).append("dbff").append(kMark).append("dffd");
    stretch.remove_prefix(at + kMark.size());
  }
  marked->append(stretch);
}

// The text with its lone surrogate escapes marked; false when there are none.
bool markLoneSurrogates(std::string_view text, std::string* marked) {
  if (text.find("\\ud") == text.npos && text.find("\\uD") == text.npos) return false;
  bool found = false;
  for (size_t at = 0; at < text.size();) {
    if (text[at] != '\\') {
      const size_t next = std::min(text.find('\\', at), text.size());
      appendMarkingMarks(text.substr(at, next - at), marked);
      at = next;
      continue;
    }
    const int unit = escapedUnit(text, at);
    const int next = unit >= 0xD800 && unit < 0xDC00 ? escapedUnit(text, at + 6) : -1;
    if (unit == kMarkUnits[0] && next == kMarkUnits[1]) {
      appendMarkingMarks(kMark, marked);
      at += 12;
    } else if (next >= 0xDC00 && next < 0xE000) {
      marked->append(text.substr(at, 12));
      at += 12;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      marked->append(kMark).append(text.substr(at + 2, 4));
      at += 6;
      found = true;
    } else {
      marked->append(text.substr(at, 2));
      at += 2;
    }
  }
  return found;
}

NSString unmarked(const std::string& utf8) {
  const NSString text = NSString::fromUTF8(utf8);
  const auto units = text.view();
  std::u16string result;
  size_t from = 0;
  for (size_t at; (at = units.find({kMarkUnits, 2}, from)) != units.npos; from = at + 6) {
    const char16_t* const digits = units.data() + at + 2;  // four: nothing but marking makes marks
    result.append(units.substr(from, at - from));
    result.push_back(static_cast<char16_t>(hexByte(digits) << 8 | hexByte(digits + 2)));
  }
  return NSString(std::move(result.append(units.substr(from))));
}

class Builder : public nlohmann::json_sax<nlohmann::json> {
 public:
  Builder(bool marked, std::string* error) : marked_(marked), error_(error) {}

  id result() && { return std::move(result_); }

  bool null() override { return put(NSNull::null()); }
  bool boolean(bool value) override { return put(NSNumber(value)); }
  bool number_integer(number_integer_t value) override { return put(NSNumber(value)); }
  bool number_unsigned(number_unsigned_t value) override { return put(NSNumber(value)); }
  bool number_float(number_float_t value, const string_t& digits) override {
    // An integer just below the signed range must not become its least number.
    const bool isInteger = digits.find_first_of(".eE") == digits.npos;
    const bool seemsToFit = value == -0x1p63;
    return put(NSNumber(isInteger && seemsToFit ? std::nextafter(value, -HUGE_VAL) : value));
  }
  bool string(string_t& value) override { return put(textOf(value)); }
  bool binary(binary_t&) override { return fail("binary data"); }
  bool start_object(size_t) override { return open(false); }
  bool key(string_t& value) override {
    open_.back().key = textOf(value);
    return true;
  }
  bool end_object() override {
    NSDictionary dictionary(std::move(open_.back().entries));
    open_.pop_back();
    return put(std::move(dictionary));
  }
  bool start_array(size_t) override { return open(true); }
  bool end_array() override {
    NSArray array(std::move(open_.back().elements));
    open_.pop_back();
    return put(std::move(array));
  }
  bool parse_error(size_t position, const std::string&,
                   const nlohmann::detail::exception&) override {
    return fail("not JSON at byte " + std::to_string(position));
  }

 private:
  struct Container {
    bool isArray;
    std::vector<id> elements;
    NSMutableDictionary entries;
    NSString key;
  };

  [[nodiscard]] NSString textOf(const std::string& utf8) const {
    return marked_ ? unmarked(utf8) : NSString::fromUTF8(utf8);
  }

  bool open(bool isArray) {
    if (open_.size() >= kDeepestJSON) return fail("nested too deep");
    open_.push_back({isArray, {}, {}, {}});
    return true;
  }

  bool put(id value) {
    if (open_.empty()) {
      result_ = std::move(value);
    } else if (open_.back().isArray) {
      open_.back().elements.push_back(std::move(value));
    } else {
      open_.back().entries.setObject(std::move(value), open_.back().key);
    }
    return true;
  }

  bool fail(const std::string& reason) {
    if (error_) *error_ = reason;
    return false;
  }

  bool marked_;
  std::string* error_;
  std::vector<Container> open_;
  id result_;
};

}  // namespace

id parseJSON(std::string_view text, std::string* error) {
  // The library takes a NUL for the text's end; JSON has none, not even in its strings.
  if (const size_t nul = text.find('\0'); nul != text.npos) {
    if (error) *error = "not JSON at byte " + std::to_string(nul + 1);
    return nil;
  }
  std::string rewritten;
  const bool marked = markLoneSurrogates(text, &rewritten);
  if (marked) text = rewritten;
  Builder builder(marked, error);
  if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) return nil;
  return std::move(builder).result();
}

}  // namespace kelspar

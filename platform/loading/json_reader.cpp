// Values out of the JSON library's events: no tree of its own is built.
#include "platform/loading/json_reader.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <vector>

#include "platform/foundation/utf8.h"

namespace kelspar {

namespace {

// The library takes an escape of a lone surrogate for an error. Such escapes are replaced by a
// private-use character that the text does not hold otherwise, followed by the four digits.
constexpr char32_t kLoneMark = 0x10FFFD;

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

// The unit that the escape at `at` ("\uXXXX") stands for, or -1 when there is none.
int escapedUnit(std::string_view text, size_t at) {
  if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') return -1;
  int unit = 0;
  for (size_t i = at + 2; i < at + 6; ++i) {
    if (!isHexDigit(text[i])) return -1;
  }
  std::from_chars(text.data() + at + 2, text.data() + at + 6, unit, 16);
  return unit;
}

// The text with its lone surrogate escapes marked; false when there are none, or when the mark is
// in the text already.
bool markLoneSurrogates(std::string_view text, std::string* marked) {
  std::string mark;
  utf8::appendCodePoint(kLoneMark, &mark);
  if (text.find("\\ud") == text.npos && text.find("\\uD") == text.npos) return false;
  if (text.find(mark) != text.npos) return false;
  bool found = false;
  for (size_t at = 0; at < text.size();) {
    if (text[at] != '\\') {
      const size_t next = std::min(text.find('\\', at), text.size());
      marked->append(text.substr(at, next - at));
      at = next;
      continue;
    }
    const int unit = escapedUnit(text, at);
    const int next = unit >= 0xD800 && unit < 0xDC00 ? escapedUnit(text, at + 6) : -1;
    if (next >= 0xDC00 && next < 0xE000) {
      marked->append(text.substr(at, 12));
      at += 12;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      marked->append(mark).append(text.substr(at + 2, 4));
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
  constexpr char16_t kMark[] = {0xDBFF, 0xDFFD, 0};
  const auto units = text.view();
  std::u16string result;
  size_t from = 0;
  for (size_t at; (at = units.find(kMark, from)) != units.npos; from = at + 6) {
    result.append(units.substr(from, at - from));
    const NSString digits = text.substring(at + 2, 4);
    result.push_back(static_cast<char16_t>(std::stoi(digits.utf8(), nullptr, 16)));
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
  bool number_float(number_float_t value, const string_t&) override { return put(NSNumber(value)); }
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
  std::string rewritten;
  const bool marked = markLoneSurrogates(text, &rewritten);
  if (marked) text = rewritten;
  Builder builder(marked, error);
  if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) return nil;
  return std::move(builder).result();
}

}  // namespace kelspar

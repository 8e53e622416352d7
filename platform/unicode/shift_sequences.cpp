// A walk over the shifts that counts what stands between them.
#include "platform/unicode/shift_sequences.h"

#include <algorithm>
#include <cstddef>

namespace kelspar {

namespace {

bool isGraphic(char c) { return c > 0x20 && c < 0x7F; }

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// The sets in force, by what is behind the walk.
class ShiftState {
 public:
  // Takes the escape at the start of `rest`; its bytes, or 0 when it is none of ISO 2022's.
  size_t takeEscape(std::string_view rest) {
    const auto at = [rest](size_t i) { return i < rest.size() ? rest[i] : '\0'; };
    switch (at(1)) {
      case '$':
        if (std::string_view("@AB").find(at(2)) != std::string_view::npos) {
          isWide_ = true;
          return 3;
        }
        isWide_ |= at(2) == '(';
        return at(2) >= '(' && at(2) <= '+' && isGraphic(at(3)) ? 4 : 0;
      case '(':
        isWide_ = false;
        return isGraphic(at(2)) ? 3 : 0;
      case '.':
        return isGraphic(at(2)) ? 3 : 0;
      case 'N':  // the next character alone is of the third set
        return isGraphic(at(2)) ? 3 : 0;
      default:
        return 0;
    }
  }
  void shift(bool out) { isOut_ = out; }
  // Ends with the line, where it was forgotten.
  void takeLineEnd() { isWide_ = isOut_ = false; }
  [[nodiscard]] bool isWide() const { return isWide_ || isOut_; }

 private:
  bool isWide_ = false, isOut_ = false;
};

}  // namespace

bool isWholeISO2022(std::string_view bytes) {
  ShiftState state;
  size_t pairs = 0;
  for (size_t at = 0; at < bytes.size();) {
    const char c = bytes[at];
    size_t used = 1;
    if (c == '\x1B') {
      used = state.takeEscape(bytes.substr(at));
      if (used == 0) return false;
    } else if (c == '\x0E' || c == '\x0F') {
      state.shift(c == '\x0E');
    } else if (isLineEnd(c)) {
      state.takeLineEnd();
    } else if (state.isWide() && isGraphic(c)) {
      if (at + 1 == bytes.size() || !isGraphic(bytes[at + 1])) return false;
      used = 2;
      ++pairs;
    }
    at += used;
  }
  return pairs > 0 && !state.isWide();
}

bool isWholeHZ(std::string_view bytes) {
  constexpr char kFirstUsual = 0x30, kLastUsual = 0x57, kLastSign = 0x29;
  size_t usual = 0, signs = 0, rare = 0;
  for (size_t at = bytes.find('~'); at < bytes.size(); at = bytes.find('~', at)) {
    const char kind = at + 1 < bytes.size() ? bytes[at + 1] : '\0';
    at += 2;
    if (kind == '~' || kind == '\n') continue;
    if (kind != '{') return false;
    for (; !bytes.substr(at).starts_with("~}"); at += 2) {
      const std::string_view pair = bytes.substr(std::min(at, bytes.size()), 2);
      if (pair.size() < 2 || !std::ranges::all_of(pair, isGraphic)) return false;
      const char row = pair[0];
      ++(row >= kFirstUsual && row <= kLastUsual ? usual : row <= kLastSign ? signs : rare);
    }
    at += 2;
  }
  return usual >= 4 && signs <= usual && rare * 6 <= usual;
}

}  // namespace kelspar

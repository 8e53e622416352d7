// C0, DEL and C1 (ECMA-48) as blanks, in UTF-8 and outside of it.
#include "host/terminal.h"

#include <algorithm>
#include <iostream>

namespace kelspar::host {

namespace {

bool isContinuation(char c) { return (c & 0xC0) == 0x80; }

// The length of the character at the start of `text`; 0: it is none of UTF-8.
size_t characterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || length > text.size()) return 0;
  return std::ranges::all_of(text.substr(1, length - 1), isContinuation) ? length : 0;
}

bool isControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first < 0x20 || (first >= 0x7F && first < 0xA0);
  return first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

}  // namespace

std::string withoutControls(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const std::string_view character = text.substr(0, std::max<size_t>(1, characterLength(text)));
    const bool stays = character == "\t" || character == "\n" || !isControl(character);
    plain += stays ? character : " ";
    text.remove_prefix(character.size());
  }
  return plain;
}

void tellBare(std::string_view text) {
  std::string line = withoutControls(text);
  std::ranges::replace(line, '\n', ' ');
  std::cerr << line + '\n';
}

void tell(std::string_view text) { tellBare("kelspar: " + std::string(text)); }

}  // namespace kelspar::host

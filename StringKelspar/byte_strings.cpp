// Routines on NUL-terminated 8-bit strings.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <string>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {

bool StringKelspar::utf16CStringIsTerminated(const uint8_t* buffer, uint64_t length) {
  if (!buffer) return false;
  for (uint64_t at = 0; at < length; at += 2) {
    // Deliberate: behind an odd length the next byte is looked at all the same.
    if (buffer[at] == 0 && buffer[at + 1] == 0) return true;
    if (length - at <= 2) break;
  }
  return false;
}

void StringKelspar::removeCRsFromString(char* string) {
  if (!string) return;
  char* const end = string + std::strlen(string);
  *std::remove(string, end, '\r') = '\0';
}

namespace {

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

}  // namespace

const char* StringKelspar::caseInsensitiveSearchInString(const char* haystack, const char* needle) {
  if (!haystack || !needle) return nullptr;
  if (!*needle) return haystack;
  const std::string text = lowered(haystack), wanted = lowered(needle);
  // The C library's search is linear, which a comparison at every place is not.
  const void* found = ::memmem(text.data(), text.size(), wanted.data(), wanted.size());
  return found ? haystack + (static_cast<const char*>(found) - text.data()) : nullptr;
}

char* StringKelspar::escapeString(const char* string) {
  if (!string) return nullptr;
  const std::string_view text(string);
  const auto isEscaped = [](char c) { return c == '"' || c == '\\'; };
  const auto escapes = static_cast<size_t>(std::ranges::count_if(text, isEscaped));
  char* const escaped = static_cast<char*>(std::calloc(text.size() + escapes + 1, 1));
  if (!escaped) return nullptr;
  char* out = escaped;
  for (const char c : text) {
    if (isEscaped(c)) *out++ = '\\';
    *out++ = c;
  }
  return escaped;
}

}  // namespace kelspar

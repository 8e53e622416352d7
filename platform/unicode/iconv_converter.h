// The C library's converters, for the encodings that ICU does not have. Internal to the library.
#pragma once

#include <string>
#include <string_view>

namespace kelspar {

// Appends the text of `bytes` to `*out`; false at the first sequence that is not valid, and when
// the system has no such converter.
bool convertWithIconv(const char* converter, std::string_view bytes, std::u16string* out);

// Appends the bytes of `text`; false at the first character that the encoding does not have.
bool encodeWithIconv(const char* converter, std::u16string_view text, std::string* out);

// For each `length` bytes of `sequences` the unit that they are; U+FFFD where they are not exactly
// one.
void unitsByIconv(const char* converter, std::string_view sequences, size_t length, char16_t* out);

// Whether the system has this converter.
bool knownToIconv(const char* converter);

}  // namespace kelspar

// ICU converters, one a thread and name, kept open: opening one costs more than most texts do.
// Internal to the library.
#pragma once

#include <string>
#include <string_view>

namespace kelspar {

// Appends the text of `bytes` to `*out`. `stop`: false at the first invalid sequence; `replace`:
// writes U+FFFD for it and goes on. False also when ICU has no such converter.
enum class Malformed { stop, replace };
bool convertWithICU(const char* converter, std::string_view bytes, Malformed malformed,
                    std::u16string* out);

// Appends the bytes of `text` to `*out`; false at the first character that the encoding does not
// have.
bool encodeWithICU(const char* converter, std::u16string_view text, std::string* out);

// For each `length` bytes of `sequences` the unit that they are; U+FFFD where they are not exactly
// one.
void unitsByICU(const char* converter, std::string_view sequences, size_t length, char16_t* out);

// Whether ICU has this converter.
bool knownToICU(const char* converter);

}  // namespace kelspar

// What people read: control characters, which terminals obey, do not get there.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::host {

// The text with a blank for each control character of Unicode (Cc) in UTF-8 but tabs and line
// feeds, and for each byte that would be one on a terminal of 8-bit characters; all other bytes
// stay.
[[nodiscard]] std::string withoutControls(std::string_view text);

// Writes "kelspar: ", the text as one line without control characters, and a line feed to standard
// error, in one piece.
void tell(std::string_view text);

// The same without the name of the program.
void tellBare(std::string_view text);

}  // namespace kelspar::host

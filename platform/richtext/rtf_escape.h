// Text and pictures as they stand in RTF (RTF 1.9.1). Internal to the library.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::rtf {

// Text by escapes alone beyond ASCII ("\uN?", for readers under \uc1); line ends are \par and
// \line, the form feed is \page.
void appendText(std::u16string_view text, std::string* rtf);

// In twips; 0: as the picture has it.
struct PictureSize {
  int width = 0, height = 0;
};

// A group with the bytes of a PNG or JPEG file. False, and nothing, for any others.
bool appendPicture(std::string_view bytes, PictureSize size, std::string* rtf);

}  // namespace kelspar::rtf

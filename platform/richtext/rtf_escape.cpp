// Escapes by which text and pictures of any kind become RTF in ASCII.
#include "platform/richtext/rtf_escape.h"

#include <cstdint>

#include "platform/richtext/image_type.h"

namespace kelspar::rtf {

void appendText(std::u16string_view text, std::string* rtf) {
  for (const char16_t c : text) {
    if (c == u'\n') {
      *rtf += "\\par\n";
    } else if (c == u'\u2028') {
      *rtf += "\\line\n";
    } else if (c == u'\f') {
      *rtf += "\\page\n";
    } else if (c == u'\t') {
      *rtf += "\\tab ";
    } else if (c == u'\\' || c == u'{' || c == u'}') {
      *rtf += '\\';
      *rtf += static_cast<char>(c);
    } else if (c >= 0x7F) {
      *rtf += "\\u" + std::to_string(static_cast<int16_t>(c)) + "?";
    } else if (c >= u' ') {
      *rtf += static_cast<char>(c);
    }
  }
}

bool appendPicture(std::string_view bytes, PictureSize size, std::string* rtf) {
  constexpr char kDigits[] = "0123456789abcdef";
  constexpr size_t kBytesInLine = 64;
  const std::string_view type = imageTypeOf(bytes);
  const bool isPNG = type == "image/png";
  if (!isPNG && type != "image/jpeg") return false;
  *rtf += isPNG ? "{\\pict\\pngblip" : "{\\pict\\jpegblip";
  if (size.width > 0) *rtf += "\\picwgoal" + std::to_string(size.width);
  if (size.height > 0) *rtf += "\\pichgoal" + std::to_string(size.height);
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i % kBytesInLine == 0) *rtf += '\n';
    const auto byte = static_cast<uint8_t>(bytes[i]);
    *rtf += kDigits[byte >> 4];
    *rtf += kDigits[byte & 15];
  }
  *rtf += '}';
  return true;
}

}  // namespace kelspar::rtf

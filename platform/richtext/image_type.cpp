// Signatures of picture files. What follows them is the loaders' business.
#include "platform/richtext/image_type.h"

namespace kelspar {

namespace {

using namespace std::string_view_literals;

constexpr struct {
  std::string_view signature, type;
} kSignatures[] = {
    {"\x89PNG\r\n\x1A\n"sv, "image/png"sv},
    {"\xFF\xD8\xFF"sv, "image/jpeg"sv},
    {"GIF87a"sv, "image/gif"sv},
    {"GIF89a"sv, "image/gif"sv},
    {"BM"sv, "image/bmp"sv},
    {"II*\0"sv, "image/tiff"sv},
    {"MM\0*"sv, "image/tiff"sv},
    {"\0\0\1\0"sv, "image/x-icon"sv},
};

// A RIFF file says what it holds behind its length.
bool isWebP(std::string_view bytes) {
  constexpr size_t kForm = 8;
  return bytes.starts_with("RIFF") && bytes.size() > kForm &&
         bytes.substr(kForm).starts_with("WEBP");
}

}  // namespace

std::string_view imageTypeOf(std::string_view bytes) {
  for (const auto& [signature, type] : kSignatures) {
    if (bytes.starts_with(signature)) return type;
  }
  return isWebP(bytes) ? "image/webp"sv : std::string_view();
}

}  // namespace kelspar

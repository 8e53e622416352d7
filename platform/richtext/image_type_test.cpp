#include "platform/richtext/image_type.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

using namespace std::string_view_literals;

struct Row {
  const char* name;
  std::string_view bytes, type;
};
class ImageType : public testing::TestWithParam<Row> {};
TEST_P(ImageType, Is) { EXPECT_EQ(imageTypeOf(GetParam().bytes), GetParam().type); }
constexpr Row kRows[] = {
    {"Nothing", ""sv, ""sv},
    {"PNG", "\x89PNG\r\n\x1A\nx"sv, "image/png"sv},
    {"HalfAPNG", "\x89PNG\r\n"sv, ""sv},
    {"JPEG", "\xFF\xD8\xFF\xE0"sv, "image/jpeg"sv},
    {"GIF", "GIF89a"sv, "image/gif"sv},
    {"NoGIF", "GIF88a"sv, ""sv},
    {"Icon", "\0\0\1\0\1"sv, "image/x-icon"sv},
    {"TIFF", "MM\0*"sv, "image/tiff"sv},
    {"WebP", "RIFF\x1E\0\0\0WEBPVP8L"sv, "image/webp"sv},
    {"Sound", "RIFF\x1E\0\0\0WAVEfmt WEBP"sv, ""sv},
    {"HalfARIFF", "RIFF\x1E\0"sv, ""sv},
    {"WebPWithoutContents", "RIFF\x1E\0\0\0WEBP"sv, "image/webp"sv},
};
INSTANTIATE_TEST_SUITE_P(Pictures, ImageType, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar

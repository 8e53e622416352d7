#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelspar.h"

namespace kelspar {
namespace {

std::string form(const NSArray& locations) {
  std::string text;
  for (const id& each : locations) {
    const auto record = each.as<NSDictionary>();
    text += std::to_string(record.objectForKey<NSNumber>(u"image location").unsignedLongValue()) +
            "=" + record.objectForKey<NSString>(u"image source").utf8() + ";";
  }
  return text;
}

struct Row {
  const char* name;
  const char* in;
  const char* out;
};
constexpr Row kRows[] = {
    {"OneImage", "a<img src=\"cid:x@y\">b</p>", "0=cid:x@y;"},
    {"FirstOfTwoInAParagraph", "<img src=\"a\"><img src=\"b\"></p><img src=\"c\">", "0=a;1=c;"},
    {"ParagraphsAreCounted", "x</p>y</p><img src=\"a\"></p></p><img src=\"b\">", "2=a;4=b;"},
    {"CapitalEndsCount", "x</P>y</o:p>z</O:P><img src=\"a\">", "3=a;"},
    {"CapitalImageIsNone", "<IMG src=\"a\"></p><img SRC=\"b\">", ""},
    {"ImageWithoutSource", "<img alt=\"a\"></p><img src=\"b\">", "1=b;"},
    {"SingleQuotesAreNone", "<img src='a'>", ""},
    {"TagMustEnd", "<img src=\"a\" </p>x>", ""},
    {"SourceBehindTheTag", "<img>src=\"a\">", ""},
    {"ValueWithoutEnd", "<img src=\"a>b", "0=a>;"},
    {"EmptySource", "<img src=\"\">", "0=;"},
    {"SourceOfAnotherName", "<imgx data-src=\"a\">", "0=a;"},
    {"EndsInsideEnds", "<</o:p>/p></p></p><img src=\"a\">", "3=a;"},
    {"NotUTF8", "\xFF<img src=\"a\">", ""},
    {"Nothing", "", ""},
};
class ImageLocations : public testing::TestWithParam<Row> {};
TEST_P(ImageLocations, Give) {
  const NSArray locations =
      WebKelspar::imageLocationsFromRTF(NSData(std::string_view(GetParam().in)));
  EXPECT_TRUE(locations);
  EXPECT_EQ(form(locations), GetParam().out);
}
INSTANTIATE_TEST_SUITE_P(Rows, ImageLocations, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ImageLocations, NilGivesAnEmptyList) {
  EXPECT_TRUE(WebKelspar::imageLocationsFromRTF(nil));
  EXPECT_EQ(WebKelspar::imageLocationsFromRTF(nil).count(), 0u);
}

void replaceAll(std::string* text, const std::string& target, bool ignoresCase) {
  const auto same = [&](size_t at) {
    for (size_t i = 0; i < target.size(); ++i) {
      const char c = (*text)[at + i];
      const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
      if ((ignoresCase ? lower : c) != target[i]) return false;
    }
    return true;
  };
  for (size_t at = 0; at + target.size() <= text->size();) {
    if (same(at)) {
      text->replace(at, target.size(), "</p>");
      at += 4;
    } else {
      ++at;
    }
  }
}

// The steps one by one, as they are defined.
std::string literally(std::string text) {
  replaceAll(&text, "</o:p>", true);
  replaceAll(&text, "</P>", false);
  std::string result;
  size_t from = 0;
  for (size_t index = 0;; ++index) {
    const size_t end = text.find("</p>", from);
    std::string segment = text.substr(from, end == text.npos ? text.npos : end - from);
    from = end + 4;
    const size_t image = segment.find("<img");
    if (image != segment.npos) {
      segment.erase(0, image);
      const size_t close = segment.find('>');
      if (close != segment.npos) {
        segment.erase(close + 1);
        const size_t source = segment.find("src=\"");
        if (source != segment.npos) {
          const std::string tail = segment.substr(source + 5);
          result += std::to_string(index) + "=" + tail.substr(0, tail.find('"')) + ";";
        }
      }
    }
    if (end == text.npos) return result;
  }
}

TEST(ImageLocations, AreThoseOfTheLiteralSteps) {
  const char* const pieces[] = {"<",       "</p>", "</P>", "</o:p>", "</O:p>", "<img",
                                " src=\"", "\"",   ">",    "a",      "/p>",    "</"};
  const auto seed = std::random_device()();
  std::mt19937 random(seed);
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (size_t i = random() % 14; i > 0; --i) text += pieces[random() % std::size(pieces)];
    ASSERT_EQ(form(WebKelspar::imageLocationsFromRTF(NSData(std::string_view(text)))),
              literally(text))
        << text << " seed " << seed;
  }
}

}  // namespace
}  // namespace kelspar

#include "platform/unicode/text_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kelspar {
namespace {

std::vector<size_t> all(std::u16string_view needle, std::u16string_view text,
                        TextSearch::Kind kind) {
  std::vector<size_t> found;
  TextSearch search(needle, text, kind);
  for (size_t at; (at = search.next()) != TextSearch::npos;) found.push_back(at);
  return found;
}

std::vector<size_t> allPlainly(std::u16string_view needle, std::u16string_view text,
                               TextSearch::Kind kind) {
  std::vector<size_t> found;
  const size_t step = kind == TextSearch::overlapping ? 1 : needle.size();
  for (size_t at = text.find(needle); at != text.npos; at = text.find(needle, at + step)) {
    found.push_back(at);
  }
  return found;
}

TEST(TextSearch, IsThePlainSearch) {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text(random() % 60, u'a'), needle(1 + random() % 12, u'a');
    for (char16_t& unit : text) unit += random() % 8 == 0;
    for (char16_t& unit : needle) unit += random() % 8 == 0;
    for (const auto kind : {TextSearch::separate, TextSearch::overlapping}) {
      ASSERT_EQ(all(needle, text, kind), allPlainly(needle, text, kind)) << "round " << round;
    }
  }
}

TEST(TextSearch, AutomatonIsThePlainSearch) {
  std::mt19937 random(8);
  for (int round = 0; round < 20; ++round) {
    std::u16string text(20000, u'a'), needle(20 + random() % 30, u'a');
    for (char16_t& unit : text) unit += random() % 50 == 0;
    needle[random() % needle.size()] += random() % 2;
    for (const auto kind : {TextSearch::separate, TextSearch::overlapping}) {
      ASSERT_EQ(all(needle, text, kind), allPlainly(needle, text, kind)) << "round " << round;
    }
  }
}

TEST(TextSearch, BytesAreSearchedAsUnitsAre) {
  std::mt19937 random(9);
  for (int round = 0; round < 2000; ++round) {
    std::string text(random() % 5000, 'a'), needle(1 + random() % 30, 'a');
    for (char& byte : text) byte += random() % 30 == 0;
    needle[random() % needle.size()] += random() % 2;
    BasicTextSearch<char> bytes(needle, text);
    const std::u16string wideText(text.begin(), text.end()), wide(needle.begin(), needle.end());
    for (const size_t at : all(wide, wideText, TextSearch::separate)) ASSERT_EQ(bytes.next(), at);
    ASSERT_EQ(bytes.next(), BasicTextSearch<char>::npos) << "round " << round;
  }
}

TEST(TextSearch, HostileTextsAreLinear) {
  const std::u16string text(1'000'000, u'a');
  std::u16string needle(50'000, u'a');
  EXPECT_EQ(all(needle, text, TextSearch::overlapping).size(), 950'001u);
  needle[25'000] = u'b';
  EXPECT_TRUE(all(needle, text, TextSearch::separate).empty());
}

TEST(TextSearch, EmptyNeedleNeverOccurs) {
  EXPECT_EQ(findText(u"", u"abc"), TextSearch::npos);
  EXPECT_EQ(findText(u"c", u"abc", 2), 2u);
  EXPECT_EQ(findText(u"c", u"abc", 9), TextSearch::npos);
}

}  // namespace
}  // namespace kelspar

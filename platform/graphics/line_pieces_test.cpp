#include "platform/graphics/line_pieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "platform/graphics/pango_fonts.h"

namespace kelspar {
namespace {

struct Piece {
  std::u16string letter, text;
};

std::vector<Piece> piecesOf(const std::u16string& units, const NSTextAttributes& look = {}) {
  const NSAttributedString text(NSString(units), look);
  RunCursor looks(text);
  const auto part = [&](LinePieces::Range range) {
    return units.substr(range.begin, range.end - range.begin);
  };
  std::vector<Piece> pieces;
  for (LinePieces line(units, 0, units.size(), &looks); line.next();)
    pieces.push_back({part(line.letter()), part(line.piece())});
  return pieces;
}

std::u16string joined(const std::vector<Piece>& pieces) {
  std::u16string units;
  for (const Piece& piece : pieces) units += piece.text;
  return units;
}

size_t longest(const std::vector<Piece>& pieces) {
  return std::ranges::max(pieces, {}, [](const Piece& piece) { return piece.text.size(); })
      .text.size();
}

std::u16string repeated(std::u16string_view part, size_t count) {
  std::u16string units;
  while (count-- > 0) units += part;
  return units;
}

TEST(LinePieces, HoldFewTabs) {
  for (const std::u16string part : {u"\t", u"a\t", u"\ta"}) {
    const auto pieces = piecesOf(repeated(part, 100'000));
    EXPECT_EQ(joined(pieces), repeated(part, 100'000));
    for (const Piece& piece : pieces)
      EXPECT_LE(std::ranges::count(piece.text, u'\t'), LinePieces::kMostTabs);
    EXPECT_LE(pieces.size(), 100'000 / LinePieces::kMostTabs + 1) << "nor many pieces";
  }
}

TEST(LinePieces, HoldFewMarksOfALetter) {
  const std::u16string text = u"xa" + std::u16string(1'000, u'\u0301') + u"b";
  const auto pieces = piecesOf(text);
  EXPECT_EQ(joined(pieces), text);
  ASSERT_EQ(pieces.size(), 5u);
  EXPECT_EQ(pieces[0].letter, u"");
  for (size_t i = 1; i < 4; ++i) EXPECT_EQ(pieces[i].letter, u"a");
  EXPECT_EQ(longest(pieces), 2 + LinePieces::kMostMarks);
  EXPECT_EQ(pieces[4].text, u"b");
  EXPECT_EQ(pieces[4].letter, u"") << "a letter of its own";
}

TEST(LinePieces, KeepCharactersWhole) {
  for (const std::u16string part : {u"\U0001F600", u"e\u0301\u0302", u"\u0915\u094D\u200D", u"a"}) {
    for (size_t shift = 0; shift < 4; ++shift) {
      const std::u16string text = std::u16string(shift, u'x') + repeated(part, 30'000);
      const auto pieces = piecesOf(text);
      EXPECT_EQ(joined(pieces), text);
      size_t at = 0;
      for (const Piece& piece : pieces) {
        EXPECT_EQ(at > 0 ? (at - shift) % part.size() : 0, 0u) << shift;
        at += piece.text.size();
        EXPECT_LE(piece.text.size(), kLongestPiece + LinePieces::kMostMarks);
      }
    }
  }
}

TEST(LinePieces, EndBehindASpaceWhereOneIsNear) {
  const auto pieces = piecesOf(repeated(u"some words ", 10'000));
  ASSERT_GT(pieces.size(), 5u);
  for (const Piece& piece : pieces) EXPECT_EQ(piece.text.back(), u' ');
}

TEST(LinePieces, AreShortWhereLettersAreLarge) {
  NSTextAttributes look;
  look.font.size = 10'000;
  EXPECT_LE(longest(piecesOf(std::u16string(5'000, u'm'), look)), 100u);
  look.font.size = 12;
  EXPECT_EQ(piecesOf(std::u16string(5'000, u'm'), look).size(), 1u);
}

TEST(LinePieces, ShortLinesAreOnePiece) {
  std::minstd_rand random(1);
  const std::u16string letters = u"ab \u0301\u05D0\u0628\u064E\u200D\xD83D\xDE00\u6F22\uFFFC";
  for (int n = 0; n < 1'000; ++n) {
    std::u16string text;
    for (size_t length = 1 + random() % 2'000; text.size() < length;)
      text += letters[random() % letters.size()];
    const auto pieces = piecesOf(text);
    EXPECT_EQ(pieces.size(), 1u) << n;
    EXPECT_EQ(joined(pieces), text);
  }
}

}  // namespace
}  // namespace kelspar

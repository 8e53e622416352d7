#include "platform/richtext/NSAttributedString.h"

#include <gtest/gtest.h>

#include <random>

namespace kelspar {
namespace {

NSTextAttributes sized(double size) {
  NSTextAttributes attributes;
  attributes.font.size = size;
  return attributes;
}

std::shared_ptr<const NSTextAttributes> shared(double size) {
  return std::make_shared<NSTextAttributes>(sized(size));
}

// Every run as "units:size "...
std::string looks(const NSAttributedString& text) {
  std::string out;
  size_t at = 0;
  for (const NSTextRun& run : text.runs()) {
    out += text.string().substring(at, run.length).utf8() + ":" +
           std::to_string(static_cast<int>(run.attributes->font.size)) + " ";
    at += run.length;
  }
  EXPECT_EQ(at, text.length());
  return out;
}

TEST(AttributedString, NilAndEmptyDiffer) {
  EXPECT_FALSE(NSAttributedString());
  EXPECT_FALSE(NSAttributedString(NSString()));
  EXPECT_FALSE(NSAttributedString().string());
  EXPECT_TRUE(NSAttributedString::empty());
  EXPECT_EQ(NSAttributedString(), NSAttributedString());
  EXPECT_FALSE(NSAttributedString() == NSAttributedString::empty());
  EXPECT_TRUE(NSAttributedString::empty().runs().empty());
}

TEST(AttributedString, NeighboursOfOneLookAreOneRun) {
  const NSAttributedString text(u"abcd", {{1, shared(1)}, {0, shared(9)}, {2, shared(1)}, {1, {}}});
  EXPECT_EQ(looks(text), "abc:1 d:12 ");
}

TEST(AttributedString, RunsMustFitTheText) {
  EXPECT_THROW(NSAttributedString(u"abc", {{2, shared(1)}}), NSInvalidArgumentException);
  EXPECT_THROW(NSAttributedString(u"abc", {{4, shared(1)}}), NSInvalidArgumentException);
}

TEST(AttributedString, AttributesComeWithTheirRun) {
  const NSAttributedString text(u"abcd", {{1, shared(1)}, {2, shared(2)}, {1, shared(3)}});
  NSRange range;
  EXPECT_EQ(text.attributesAtIndex(2, &range).font.size, 2);
  EXPECT_EQ(range, (NSRange{1, 2}));
  EXPECT_EQ(text.attributesAtIndex(0).font.size, 1);
  EXPECT_EQ(text.attributesAtIndex(3).font.size, 3);
  EXPECT_THROW((void)text.attributesAtIndex(4), NSRangeException);
  EXPECT_THROW((void)NSAttributedString().attributesAtIndex(0), NSRangeException);
}

TEST(AttributedString, Substrings) {
  const NSAttributedString text(u"abcd", {{1, shared(1)}, {2, shared(2)}, {1, shared(3)}});
  EXPECT_EQ(looks(text.attributedSubstring({0, 2})), "a:1 b:2 ");
  EXPECT_EQ(looks(text.attributedSubstring({2, 2})), "c:2 d:3 ");
  EXPECT_EQ(text.attributedSubstring({4, 0}), NSAttributedString::empty());
  EXPECT_TRUE(text.attributedSubstring({0, 4}).isIdenticalTo(text));
  EXPECT_THROW((void)text.attributedSubstring({3, 2}), NSRangeException);
  EXPECT_THROW((void)text.attributedSubstring({5, 0}), NSRangeException);
}

TEST(AttributedString, EqualityLooksIntoParagraphsAndAttachments) {
  const auto with = [](double indent) {
    NSParagraphStyle style;
    style.headIndent = indent;
    NSTextAttributes attributes;
    attributes.paragraph = std::make_shared<NSParagraphStyle>(style);
    attributes.attachment = std::make_shared<NSTextAttachment>();
    return NSAttributedString(u"a", attributes);
  };
  EXPECT_EQ(with(1), with(1));
  EXPECT_FALSE(with(1) == with(2));
  EXPECT_FALSE(with(1) == NSAttributedString(u"a"));
  NSTextAttributes plain;
  plain.paragraph = std::make_shared<NSParagraphStyle>();
  EXPECT_EQ(NSAttributedString(u"a", plain), NSAttributedString(u"a"));
}

TEST(MutableAttributedString, Edits) {
  NSMutableAttributedString text(NSAttributedString(u"hello", sized(1)));
  text.append(u" world", sized(2));
  text.insert(NSAttributedString(u"XY", sized(3)), 2);
  EXPECT_EQ(looks(text.copy()), "he:1 XY:3 llo:1  world:2 ");
  text.deleteCharacters({1, 2});
  EXPECT_EQ(looks(text.copy()), "h:1 Y:3 llo:1  world:2 ");
  text.replaceCharacters({1, 2}, u"__");
  EXPECT_EQ(looks(text.copy()), "h:1 __:3 lo:1  world:2 ");
  text.replaceCharacters({3, 0}, u"+");
  text.replaceCharacters({0, 0}, u"^");
  text.replaceCharacters({text.length(), 0}, u"$");
  EXPECT_EQ(looks(text.copy()), "^h:1 __+:3 lo:1  world$:2 ");
  text.setAttributes({1, 3}, sized(4));
  EXPECT_EQ(looks(text.copy()), "^:1 h__:4 +:3 lo:1  world$:2 ");
  text.replaceCharacters({0, text.length()}, NSAttributedString());
  EXPECT_EQ(text.length(), 0u);
  text.replaceCharacters({0, 0}, u"new");
  EXPECT_EQ(looks(text.copy()), "new:12 ");
}

TEST(MutableAttributedString, RangesOutsideRaise) {
  NSMutableAttributedString text(NSAttributedString(u"abc"));
  EXPECT_THROW(text.insert(NSAttributedString(u"x"), 4), NSRangeException);
  EXPECT_THROW(text.deleteCharacters({2, 2}), NSRangeException);
  EXPECT_THROW(text.deleteCharacters({UINT64_MAX, 1}), NSRangeException);
  EXPECT_THROW(text.replaceCharacters({4, 0}, u"x"), NSRangeException);
  EXPECT_THROW(text.setAttributes({0, UINT64_MAX}, {}), NSRangeException);
}

TEST(MutableAttributedString, CopiesAreDeep) {
  NSMutableAttributedString one(NSAttributedString(u"abc"));
  NSMutableAttributedString two = one;
  two.append(u"d", {});
  EXPECT_EQ(one.copy().string(), NSString(u"abc"));
  one = two;
  EXPECT_EQ(one.copy().string(), NSString(u"abcd"));
}

// A text that is edited unit by unit, to compare with.
struct Plain {
  std::u16string text;
  std::vector<double> sizes;
  void replace(size_t at, size_t length, std::u16string_view with, double size) {
    text.replace(at, length, with);
    const auto from = sizes.begin() + static_cast<ptrdiff_t>(at);
    const auto next = sizes.erase(from, from + static_cast<ptrdiff_t>(length));
    sizes.insert(next, with.size(), size);
  }
  NSAttributedString copy() const {
    std::vector<NSTextRun> runs;
    for (const double size : sizes) runs.push_back({1, shared(size)});
    return NSAttributedString(NSString(text), std::move(runs));
  }
};

TEST(MutableAttributedString, RandomEditsGiveWhatPlainEditsGive) {
  std::mt19937 random(42);
  const auto below = [&](size_t end) { return end ? random() % end : 0; };
  Plain plain;
  NSMutableAttributedString text;
  for (int step = 0; step < 3000; ++step) {
    const bool large = below(50) == 0;
    const size_t at = below(plain.text.size() + 1);
    const size_t length =
        below(std::min(plain.text.size() - at, large ? SIZE_MAX : size_t{50}) + 1);
    const std::u16string with(below(large ? 30'000 : 60), static_cast<char16_t>(u'a' + step % 26));
    const double size = static_cast<double>(1 + below(3));
    plain.replace(at, length, with, size);
    text.replaceCharacters({at, length}, NSAttributedString(NSString(with), sized(size)));
    ASSERT_EQ(text.length(), plain.text.size()) << step;
    if (step % 100 == 0) {
      ASSERT_EQ(text.copy(), plain.copy()) << step;
    }
  }
  ASSERT_EQ(text.copy(), plain.copy());
}

TEST(MutableAttributedString, ManyEditsInALongText) {
  NSMutableAttributedString text(NSAttributedString(NSString(std::u16string(4'000'000, u'a'))));
  const NSAttributedString bold(u"b", sized(2));
  for (size_t i = 0; i < 100'000; ++i) text.insert(bold, i * 7919 % text.length());
  for (size_t i = 0; i < 100'000; ++i) text.deleteCharacters({i * 104729 % text.length(), 1});
  EXPECT_EQ(text.length(), 4'000'000u);
}

}  // namespace
}  // namespace kelspar

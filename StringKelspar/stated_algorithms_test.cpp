// The operations against their statement, step by step, over random texts of the pieces that they
// branch on. Line escaping and its like stand in cleaning_test.cpp.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar {
namespace {

using namespace std::string_view_literals;
namespace Category = StringKelsparNSStringAdditions;

constexpr std::u16string_view kPieces[] = {
    u"a",     u"A",         u"ab",     u" ",      u"\t",     u"\n",      u"\r",
    u"\0"sv,  u"\u0001",    u"\u00A0", u"\u0178", u"\u4E00", u"%41",     u"%C3%A9",
    u"%",     u"%4",        u"%zz",    u"\u0378", u"<html",  u"</html>", u"<HEAD",
    u"<body", u"<!DOCTYPE", u"\u00E9", u"\u20AC", u"words",  u"\xFFFD",  u"some more words",
};

NSString randomText(std::mt19937& random, size_t most) {
  std::u16string units;
  for (size_t left = random() % most; left > 0; --left) {
    units += kPieces[random() % std::size(kPieces)];
  }
  return NSString(units);
}

bool startsWith(const NSString& lower, std::u16string_view start) { return lower.hasPrefix(start); }

bool isHTMLPlainly(const NSString& receiver) {
  const NSString trimmed = stringByTrimming(receiver, NSCharacterSet::whitespaceAndNewline());
  if (trimmed.length() < 13) return false;
  const NSString lower = lowercaseString(trimmed);
  const size_t last = lower.view().rfind(u"</html>");
  const uint64_t bound = static_cast<uint64_t>(trimmed.length()) - 20;
  if (startsWith(lower, u"<html") && last != std::u16string_view::npos && last > bound) return true;
  if (startsWith(lower, u"<!doctype")) return true;
  int markers = 0;
  for (const auto marker : {u"<head"sv, u"<body"sv, u"<html"sv}) {
    markers += lower.view().find(marker) != std::u16string_view::npos;
  }
  return markers >= 2;
}

bool isValidPlainly(const NSString& text, bool strict) {
  constexpr std::u16string_view kAllowed = u" .,;:-_()[]{}<>!?@#$%^&*+=/\\\"'\n\r\t\u00A0";
  const auto letters = NSCharacterSet::alphanumeric();
  size_t outside = 0;
  for (const char16_t unit : text.view()) {
    outside += !letters.contains(unit) && kAllowed.find(unit) == kAllowed.npos;
  }
  if (strict) return outside == 0;
  return text.isEmpty() ||
         static_cast<double>(outside) / static_cast<double>(text.length()) <= 0.05;
}

NSString zapPlainly(const NSString& receiver) {
  NSString text = Category::truncateAtGarbageCharacters(receiver);
  const std::string bytes = text.utf8();
  std::string decoded;
  bool valid = true;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '%') {
      decoded += bytes[i];
      continue;
    }
    const bool isEscape = i + 2 < bytes.size() &&
                          std::isxdigit(static_cast<uint8_t>(bytes[i + 1])) &&
                          std::isxdigit(static_cast<uint8_t>(bytes[i + 2]));
    valid &= isEscape;
    if (isEscape) decoded += static_cast<char>(std::stoi(bytes.substr(i + 1, 2), nullptr, 16));
    i += 2;
  }
  if (valid) {
    if (const NSString unescaped = NSString::fromUTF8(decoded)) text = unescaped;
  }
  const auto illegal = NSCharacterSet::illegal();
  std::u16string out;
  for (const char16_t unit : text.view()) {
    if (!illegal.contains(unit)) out += unit;
  }
  return stringByTrimming(NSString(out), NSCharacterSet::whitespaceAndNewline());
}

NSString trimCharsPlainly(const NSString& receiver) {
  std::u16string out;
  for (const char16_t unit : receiver.view()) {
    if (unit != 0 && unit != 1 && unit != 0xA0) out += static_cast<char16_t>(unit & 0xFF);
  }
  return NSString(out);
}

TEST(StatedAlgorithms, OfTexts) {
  std::mt19937 random(13);
  for (int round = 0; round < 20000; ++round) {
    const NSString text = randomText(random, 10);
    ASSERT_EQ(Category::isHTML(text), isHTMLPlainly(text)) << text;
    ASSERT_EQ(Category::isValidNSStringWithStrictCheck(text, true), isValidPlainly(text, true));
    ASSERT_EQ(Category::isValidNSStringWithStrictCheck(text, false), isValidPlainly(text, false));
    ASSERT_EQ(Category::zapGremlins(text), text.isEmpty() ? text : zapPlainly(text)) << text;
    ASSERT_EQ(Category::trimCharsInString(text), trimCharsPlainly(text)) << text;
  }
}

std::vector<uint64_t> locationsPlainly(std::u16string_view needle, std::u16string_view haystack) {
  std::vector<uint64_t> found;
  if (needle.empty() || needle.size() > haystack.size()) return found;
  for (size_t p = haystack.find(needle); p != haystack.npos; p = haystack.find(needle, p + 1)) {
    found.push_back(p + 1);
  }
  return found;
}

NSString wordsPlainly(const NSString& receiver, uint64_t count) {
  const auto blanks = NSCharacterSet::whitespace();
  const NSString trimmed = stringByTrimming(receiver, NSCharacterSet::whitespaceAndNewline());
  std::vector<std::u16string> pieces(1);
  for (const char16_t unit : trimmed.view()) {
    if (blanks.contains(unit)) {
      pieces.emplace_back();
    } else {
      pieces.back() += unit;
    }
  }
  std::u16string out;
  for (const std::u16string& piece : pieces) {
    if (piece.empty() || count == 0) continue;
    out += (out.empty() ? u"" : u" ") + piece;
    --count;
  }
  return NSString(out);
}

NSString replacedPlainly(const NSString& receiver, const std::vector<NSString>& targets,
                         const NSString& replacement) {
  NSMutableString text(receiver.view());
  for (const NSString& target : targets) text.replaceOccurrences(target, replacement);
  return std::move(text).copy();
}

TEST(StatedAlgorithms, OfTextsAndOthers) {
  std::mt19937 random(14);
  for (int round = 0; round < 20000; ++round) {
    const NSString text = randomText(random, 12), other = randomText(random, 3);
    std::vector<uint64_t> locations;
    const NSArray found = StringKelspar::getLocationsOfString(other, text);
    for (size_t i = 0; i < found.count(); ++i) {
      locations.push_back(found.objectAtIndex(i).as<NSNumber>().unsignedLongValue());
    }
    ASSERT_EQ(locations, locationsPlainly(other, text)) << other << " in " << text;
    const uint64_t count = random() % 4;
    ASSERT_EQ(StringKelspar::wordsFromString(text, count), wordsPlainly(text, count)) << text;

    const NSString second = randomText(random, 2), replacement = randomText(random, 2);
    ASSERT_EQ(Category::stringByReplacingOccurrencesOfStringsInArray(text, NSArray({other, second}),
                                                                     replacement),
              replacedPlainly(text, {other, second}, replacement));
    std::u16string replaced;
    for (const char16_t unit : text.view()) {
      const bool isListed = other.view().find(unit) != std::u16string_view::npos;
      replaced += isListed ? std::u16string(replacement.view()) : std::u16string(1, unit);
    }
    ASSERT_EQ(Category::stringByReplacingOccurrencesOfCharactersInString(text, other, replacement),
              NSString(replaced));
    const bool ends = !other.isEmpty() && text.view().ends_with(other.view());
    ASSERT_EQ(Category::removeTrailingString(text, other),
              ends ? text.substring(0, text.length() - other.length()) : text);
    const bool begins = !other.isEmpty() && text.hasPrefix(other);
    ASSERT_EQ(Category::removeLeadingString(text, other),
              begins ? text.substring(other.length()) : text);
  }
}

}  // namespace
}  // namespace kelspar

#include "platform/foundation/scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kelspar {
namespace {

template <class Char>
void compareWithPlainSearch() {
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    std::basic_string<Char> text(random() % 70, Char('a'));
    for (Char& c : text) {
      if (random() % 20 == 0) c = static_cast<Char>(random());
    }
    const std::basic_string<Char> wanted{Char('{'), Char('\\'), static_cast<Char>(random())};
    const size_t from = random() % (text.size() + 1);
    const size_t found = text.find_first_of(wanted, from);
    ASSERT_EQ(
        scan::findAny(std::basic_string_view<Char>(text), from, wanted[0], wanted[1], wanted[2]),
        found == text.npos ? text.size() : found);
  }
}

TEST(FindAny, EqualsThePlainSearchOverBytes) { compareWithPlainSearch<char>(); }
template <class Char>
void compareCopies() {
  std::mt19937 random(6);
  for (int round = 0; round < 3000; ++round) {
    std::basic_string<Char> text(random() % 80, Char('a'));
    for (Char& c : text) c = random() % 20 ? static_cast<Char>('a' + random() % 20) : Char('=');
    const size_t from = random() % (text.size() + 1);
    std::basic_string<Char> out(text.size() + scan::kCopySlack, Char('-'));
    const size_t end =
        scan::copyUntil(std::basic_string_view<Char>(text), from, Char('='), out.data());
    ASSERT_EQ(end, std::min(text.find(Char('='), from), text.size()));
    ASSERT_EQ(out.substr(0, end - from), text.substr(from, end - from));
  }
}
TEST(CopyUntil, CopiesBytesUpToTheWantedOne) { compareCopies<char>(); }
TEST(CopyUntil, CopiesUnitsUpToTheWantedOne) { compareCopies<char16_t>(); }

TEST(ASCIIPrefix, EndsAtTheFirstUnitAbove) {
  for (size_t length = 0; length < 70; ++length) {
    std::u16string text(length, u'\x7F');
    EXPECT_EQ(scan::asciiPrefix(text), length);
    for (size_t at = 0; at < length; ++at) {
      for (const char16_t high : {u'\x80', u'\u0141', u'\uFF41'}) {
        text[at] = high;
        EXPECT_EQ(scan::asciiPrefix(text), at);
      }
      text[at] = u'\0';
    }
  }
}

TEST(FindAny, EqualsThePlainSearchOverUnits) { compareWithPlainSearch<char16_t>(); }

}  // namespace
}  // namespace kelspar

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
TEST(FindAny, EqualsThePlainSearchOverUnits) { compareWithPlainSearch<char16_t>(); }

}  // namespace
}  // namespace kelspar

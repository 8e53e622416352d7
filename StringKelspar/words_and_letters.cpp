// The first words of a text; letters by number.
#include <cctype>
#include <cstdio>

#include "StringKelspar/StringKelspar.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {

int32_t StringKelspar::indexOfCharacter(char character) {
  const auto c = static_cast<unsigned char>(character);
  return std::isalpha(c) ? std::toupper(c) - 'A' : -1;
}

int32_t StringKelspar::indexOfCharacter(char character, const NSArray& array) {
  const auto wanted = static_cast<signed char>(character);
  for (size_t i = 0; i < array.count(); ++i) {
    const auto text = array.objectAtIndex(i).as<NSString>();
    if (!text.isEmpty() && text.view()[0] == wanted) return static_cast<int32_t>(i);
  }
  return -1;
}

char StringKelspar::characterAtIndex(int32_t index) {
  return index >= 0 && index < 26 ? static_cast<char>('A' + index) : '\0';
}

NSString StringKelspar::wordsFromString(const NSString& string, uint64_t count) {
  static const NSCharacterSet blanks = NSCharacterSet::whitespace();
  static const NSCharacterSet blanksAndLineEnds = NSCharacterSet::whitespaceAndNewline();
  const NSString trimmed = stringByTrimming(string, blanksAndLineEnds);
  const auto text = trimmed.view();
  std::u16string words;
  size_t at = 0;
  for (uint64_t taken = 0; taken < count && at < text.size(); ++taken) {
    const size_t start = at;
    while (at < text.size() && !blanks.contains(text[at])) ++at;
    if (taken > 0) words.push_back(u' ');
    words.append(text.substr(start, at - start));
    while (at < text.size() && blanks.contains(text[at])) ++at;
  }
  return words.empty() ? u""_ns : NSString(std::move(words));
}

void StringKelspar::printLine(const NSString& line) { std::puts(line.utf8().c_str()); }

}  // namespace kelspar

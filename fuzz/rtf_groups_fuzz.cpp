// Groups of RTF: what is taken out and what replaces it are what the steps give, for any name. The
// first byte says how long the name is.
#include <cstdlib>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace kelspar;
  namespace RTF = RTFKelsparNSStringAdditions;
  constexpr size_t kMost = 2048, kLongestTag = 8;
  if (size == 0) return 0;
  const std::string_view input(reinterpret_cast<const char*>(bytes + 1), std::min(size - 1, kMost));
  const size_t tagLength = std::min<size_t>(bytes[0] % kLongestTag, input.size());
  const NSString tag(input.substr(0, tagLength)), text(input.substr(tagLength));
  const literal::Text tagUnits(tag.view()), units(text.view());

  const auto group = literal::group(units, tagUnits);
  const NSString found = RTF::extractRTFTagContent(text, tag);
  if (found != (group ? NSString(*group) : NSString())) std::abort();

  // The name without blanks around it; line ends stay.
  const literal::Text name(stringByTrimming(tag, NSCharacterSet::whitespace()).view());
  const auto content = name.empty() ? std::nullopt : literal::group(units, name);
  if (RTF::getContentOfRTFTag(text, tag) != (content ? NSString(*content) : NSString())) {
    std::abort();
  }
  const NSString replaced = RTF::stringByReplacingContentOfTag(text, tag, u"{\\new}");
  if (!content && !replaced.isIdenticalTo(text)) std::abort();
  if (content && replaced.view() != literal::replacingGroup(units, name, u"{\\new}")) std::abort();

  const NSString definitions = RTF::extractColorDefinitionsFromTable(nil, text);
  if (!text.isEmpty() && definitions.view() != literal::definitions(units)) std::abort();
  const NSArray blocks = RTF::buildColourBlockArray(text);
  const auto expected = literal::blocks(units);
  if (blocks.count() != expected.size()) std::abort();
  for (size_t i = 0; i < expected.size(); ++i) {
    const auto block = blocks.objectAtIndex(i).as<NSDictionary>();
    if (block.objectForKey<NSNumber>(u"Index").unsignedLongValue() != i) std::abort();
    if (block.objectForKey<NSString>(u"RTFColour").view() != expected[i].rtf) std::abort();
  }
  return 0;
}

// The colours of a whole body: the one-pass pipeline gives what the steps give, byte for byte, and
// the lines that it colours are those that the operations for hosts report. The first byte chooses
// the property that they are asked for.
#include <cstdlib>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSArrayAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace {

using namespace kelspar;
namespace RTF = RTFKelsparNSStringAdditions;

constexpr const char16_t* kItems[] = {u"color", u"co",    u" ",    u":",         u"c.l", u"(c",
                                      u"(?i)c", u"a|(b)", u"c\\b", u"font-size", u"é",   u"[;c]"};

void checkLines(const NSString& text, const char16_t* item) {
  const NSArray records = RTF::getLineNumbersForTag(text, u"tag", item);
  const auto expected = literal::lineRecords(literal::Text(text.view()), u"tag", item);
  if (records.count() != expected.size()) std::abort();
  for (size_t i = 0; i < expected.size(); ++i) {
    const auto record = records.objectAtIndex(i).as<NSDictionary>();
    const NSString line = record.objectForKey<NSString>(u"LineContent");
    if (line.view() != expected[i].line) std::abort();
    if (record.objectForKey<NSNumber>(u"LineNumber").unsignedLongValue() != expected[i].number) {
      std::abort();
    }
    if (record.objectForKey<NSString>(u"LineColour").view() != expected[i].colour) std::abort();
    if (RTF::searchLineForSpanItem(line, item).view() != expected[i].colour) std::abort();
  }
}

void checkTable(const NSString& text) {
  const NSArray records = RTF::getLineNumbersForTag(text, u"htmltag148", u"color");
  NSMutableArray blocks{RTF::buildColourBlockArray(text)};
  RTFKelspar::generateRTFColourBlockArray(
      blocks, RTFKelsparNSArrayAdditions::generateArrayForDictionaryKey(records, u"LineContent"));
  for (size_t i = 0; i < blocks.count(); ++i) {
    const auto block = blocks.objectAtIndex(i).as<NSDictionary>();
    if (block.objectForKey<NSNumber>(u"Index").unsignedLongValue() != i) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  constexpr size_t kMost = 4096;
  if (size == 0) return 0;
  const NSData rtf(bytes + 1, std::min(size - 1, kMost));
  if (RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(rtf) != literal::colouredRTF(rtf)) {
    std::abort();
  }
  const NSString text = RTFKelsparNSDataAdditions::rtfStringFromData(rtf);
  checkLines(text, kItems[bytes[0] % std::size(kItems)]);
  checkTable(text);
  return 0;
}

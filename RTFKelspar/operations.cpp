// The unit's operations, as hosts call them.
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSArrayAdditions.h"
#include "RTFKelspar/RTFKelsparNSAttributedStringAdditions.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(RTFKelspar) {
  using Class = RTFKelspar;
  auto rtf = registry.forClass("RTFKelspar");
  rtf.add("typeIsRTF:", &Class::typeIsRTF);
  rtf.add("getRTFFromBuffer:withSize:returnSize:returnData:", &Class::getRTFFromBuffer)
      .counted(1, 2)
      .slotSize(4, 3);
  rtf.add("decodeRTFSource:withCompressedSize:withUncompressedSize:", &Class::decodeRTFSource)
      .counted(1, 2)
      .resultSize(3);
  rtf.add("convertToLongLong:", &Class::convertToLongLong);
  rtf.add("initializeArrayWithEntryCount:ofSize:", &Class::initializeArrayWithEntryCount)
      .resultSize(1, 2);
  rtf.add("isEncapsulatedHTML:", &Class::isEncapsulatedHTML);
  rtf.add("extractHTMLFromEncapsulatedRTF:", &Class::extractHTMLFromEncapsulatedRTF);
  rtf.add("extractHTMLIfEncapsulated:", &Class::extractHTMLIfEncapsulated);
  rtf.add("generateRTFColourBlockArray:fromLineArray:", &Class::generateRTFColourBlockArray);
  rtf.add("generateRTFColourBlockFromArray:", &Class::generateRTFColourBlockFromArray);
  rtf.add("generateRTFColourTagsFromEmbeddedHTMLInRTF:",
          &Class::generateRTFColourTagsFromEmbeddedHTMLInRTF);

  namespace Data = RTFKelsparNSDataAdditions;
  auto data = registry.forCategory("RTFKelsparNSDataAdditions", "NSData");
  data.add("getRTFForData", &Data::getRTFForData);
  data.add("rtfStringFromData", &Data::rtfStringFromData);
  data.add("stringFromRTFData", &Data::stringFromRTFData);
  data.add("rtfAsPlainText", &Data::rtfAsPlainText);

  namespace Text = RTFKelsparNSStringAdditions;
  auto text = registry.forCategory("RTFKelsparNSStringAdditions", "NSString");
  text.add("getLineNumbersForTag:withSearchString:", &Text::getLineNumbersForTag);
  text.add("searchLineForSpanItem:", &Text::searchLineForSpanItem);
  text.add("convertToRTFColour", &Text::convertToRTFColour);
  text.add("parseHexColorWithRed:green:blue:", &Text::parseHexColorWithRed);
  text.add("parseRGBColorWithRed:green:blue:", &Text::parseRGBColorWithRed);
  text.add("parseNamedColorWithRed:green:blue:", &Text::parseNamedColorWithRed);
  text.add("escapeRegexSpecialCharacters:", &Text::escapeRegexSpecialCharacters);
  text.add("extractRTFTagContent:", &Text::extractRTFTagContent);
  text.add("getContentOfRTFTag:", &Text::getContentOfRTFTag);
  text.add("stringByReplacingContentOfTag:withString:", &Text::stringByReplacingContentOfTag);
  text.add("extractColorDefinitionsFromTable:", &Text::extractColorDefinitionsFromTable);
  text.add("buildColourBlockArray", &Text::buildColourBlockArray);

  namespace Array = RTFKelsparNSArrayAdditions;
  auto array = registry.forCategory("RTFKelsparNSArrayAdditions", "NSArray");
  array.add("generateArrayForDictionaryKey:", &Array::generateArrayForDictionaryKey);

  namespace Attributed = RTFKelsparNSAttributedStringAdditions;
  auto attributed =
      registry.forCategory("RTFKelsparNSAttributedStringAdditions", "NSAttributedString");
  attributed.add("createPdfDataFromAttributedString",
                 &Attributed::createPdfDataFromAttributedString);
  attributed.add("saveRtfAsPdfWithFilepath:", &Attributed::saveRtfAsPdfWithFilepath);
}

}  // namespace kelspar

// The unit's operations, as hosts call them.
#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/runtime/registry.h"

namespace kelspar {

namespace {

void enterStringAdditions(OperationRegistry& registry) {
  namespace Category = StringKelsparNSStringAdditions;
  auto string = registry.forCategory("StringKelsparNSStringAdditions", "NSString");
  string.add("trimTrailingNulls", &Category::trimTrailingNulls);
  string.add("stringByTrimmingLeadingCharactersInSet:",
             &Category::stringByTrimmingLeadingCharactersInSet);
  string.add("stringByTrimmingLeadingAndTrailingCharactersInSet:",
             &Category::stringByTrimmingLeadingAndTrailingCharactersInSet);
  string.add("componentsSeparatedByCaseInsensitiveString:",
             &Category::componentsSeparatedByCaseInsensitiveString);
  string.add("removeTrailingString:", &Category::removeTrailingString);
  string.add("removeLeadingString:", &Category::removeLeadingString);
  string.add("stringByReplacingOccurrencesOfCharactersInString:withString:",
             &Category::stringByReplacingOccurrencesOfCharactersInString);
  string.add("stringByReplacingOccurrencesOfStringsInArray:withString:",
             &Category::stringByReplacingOccurrencesOfStringsInArray);
  string.add("stringByReplacingOccurencesOfCaseInsensitiveString:withString:",
             &Category::stringByReplacingOccurencesOfCaseInsensitiveString);
  string.add("condenseWhitespace", &Category::condenseWhitespace);
  string.add("cleanString", &Category::cleanString);
  string.add("trimCharsInString", &Category::trimCharsInString);
  string.add("replaceDoubleNewline", &Category::replaceDoubleNewline);
  string.add("escapeFromLines", &Category::escapeFromLines);
  string.add("unescapeFromLines", &Category::unescapeFromLines);
  string.addClassOperation("escapeFromLines:", &Category::escapeFromLines);
  string.addClassOperation("unescapeFromLines:", &Category::unescapeFromLines);
  string.add("decodedStringFromPercentEscapesUsingEncoding:",
             &Category::decodedStringFromPercentEscapesUsingEncoding);
  string.add("truncateAtGarbageCharacters", &Category::truncateAtGarbageCharacters);
  string.add("zapGremlins", &Category::zapGremlins);
  string.add("isHTML", &Category::isHTML);
  string.add("isValidNSStringWithStrictCheck:", &Category::isValidNSStringWithStrictCheck);
  using Separate = NSArray (*)(const NSString&, const NSArray&);
  using SeparateByCase = NSArray (*)(const NSString&, const NSArray&, bool);
  string.add("stringSeparatedWithComponents:",
             static_cast<Separate>(&Category::stringSeparatedWithComponents));
  string.add("stringSeparatedWithComponents:preserveCase:",
             static_cast<SeparateByCase>(&Category::stringSeparatedWithComponents));
}

}  // namespace

KELSPAR_OPERATIONS(StringKelspar) {
  using Class = StringKelspar;
  auto text = registry.forClass("StringKelspar");
  text.add("getStringEncodingsForText", &Class::getStringEncodingsForText);
  text.add("getLocationsOfString:inString:", &Class::getLocationsOfString);

  enterStringAdditions(registry);
  auto mutableString =
      registry.forCategory("StringKelsparNSMutableStringAdditions", "NSMutableString");
  mutableString.add("replaceCharactersInSet:withString:",
                    &StringKelsparNSMutableStringAdditions::replaceCharactersInSet);
}

}  // namespace kelspar

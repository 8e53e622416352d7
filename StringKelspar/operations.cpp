// The unit's operations, as hosts call them.
#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "StringKelspar/text_transition.h"
#include "platform/runtime/registry.h"
#include "platform/runtime/text_field_value.h"

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

// Formats the arguments that follow the format, as many as there are.
class PrintLog final : public Operation {
 public:
  PrintLog() : Operation("printLog:", false) {}
  std::string receiverType() const override { return ""; }
  std::vector<std::string> argumentTypes() const override { return {"NSString", "any values"}; }
  std::string resultType() const override { return "nothing"; }
  void call(const Call& call, Reply reply) const override {
    if (call.arguments.empty()) throw CallError(CallError::badArguments, "a format is missing");
    const auto format = call.arguments[0].as<NSString>();
    if (!format && call.arguments[0] && !call.arguments[0].is<NSNull>()) {
      throw CallError(CallError::badArguments, "argument 1 should be NSString");
    }
    const std::vector<id> values(call.arguments.begin() + 1, call.arguments.end());
    StringKelspar::printLog(u"%@", formatString(format, values));
    reply(Answer{.value = nil, .out = {}, .receiver = nil});
  }
};

// Takes its arguments as the others do, but answers once the transition has ended.
class TransitionText final : public Operation {
 public:
  TransitionText()
      : Operation("transitionText:style:overTime:withInterval:intoTextField:", false) {}
  std::string receiverType() const override { return ""; }
  std::vector<std::string> argumentTypes() const override {
    return {"NSString", "signed 32-bit integer", "unsigned 64-bit integer", "32-bit float",
            "NSTextField"};
  }
  std::string resultType() const override { return "nothing"; }
  void call(const Call& call, Reply reply) const override {
    runtime::Argument<NSString> target;
    runtime::Argument<int32_t> style;
    runtime::Argument<uint64_t> duration;
    runtime::Argument<float> interval;
    runtime::Argument<NSTextField> field;
    runtime::loadArguments(call, {&target, &style, &duration, &interval, &field}, argumentTypes());
    startTransition(
        target.pass(), style.pass(), duration.pass(), interval.pass(), field.pass(),
        [reply = std::move(reply), sentTo = field.pass()] {
          std::vector<id> out(5);
          out[4] = runtime::sentToTextField(sentTo);
          reply(Answer{.value = nil, .hasOut = true, .out = std::move(out), .receiver = nil});
        });
  }
};

void enterEncodings(ClassEntry& text) {
  using Class = StringKelspar;
  text.add("getStringEncodingsForText", &Class::getStringEncodingsForText);
  text.add("stringFromCString:", &Class::stringFromCString);
  text.add("isValidDecodedString:", &Class::isValidDecodedString);
  text.add("stringFromNSData:", &Class::stringFromNSData);
  text.add("utf16CStringIsTerminated:withLength:", &Class::utf16CStringIsTerminated).counted(1, 2);
  text.add("removeCRsFromString:", &Class::removeCRsFromString);
  text.add("caseInsensitiveSearchInString:forString:", &Class::caseInsensitiveSearchInString);
  text.add("escapeString:", &Class::escapeString);
  text.add("fixUnicode:", &Class::fixUnicode);
}

void enterPresentation(ClassEntry& text) {
  using Class = StringKelspar;
  text.add("localizedStringFor:inTable:", &Class::localizedStringFor);
  text.add(std::make_unique<PrintLog>());
  text.add("randomStringWithLength:", &Class::randomStringWithLength);
  text.add("generateUUIDString", &Class::generateUUIDString);
  text.add("getLocationsOfString:inString:", &Class::getLocationsOfString);
  using Index = int32_t (*)(char);
  using IndexInArray = int32_t (*)(char, const NSArray&);
  text.add("indexOfCharacter:", static_cast<Index>(&Class::indexOfCharacter));
  text.add("indexOfCharacter:fromArray:", static_cast<IndexInArray>(&Class::indexOfCharacter));
  text.add("characterAtIndex:", &Class::characterAtIndex);
  text.add("wordsFromString:wordCount:", &Class::wordsFromString);
  text.add(std::make_unique<TransitionText>());
  text.add("getWidthForMutableString:", &Class::getWidthForMutableString);
  text.add("fitAttributedString:toSize:", &Class::fitAttributedString);
}

}  // namespace

KELSPAR_OPERATIONS(StringKelspar) {
  auto text = registry.forClass("StringKelspar");
  enterEncodings(text);
  enterPresentation(text);

  enterStringAdditions(registry);
  auto mutableString =
      registry.forCategory("StringKelsparNSMutableStringAdditions", "NSMutableString");
  mutableString.add("replaceCharactersInSet:withString:",
                    &StringKelsparNSMutableStringAdditions::replaceCharactersInSet);
}

}  // namespace kelspar

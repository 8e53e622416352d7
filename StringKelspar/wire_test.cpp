// Every operation of the unit as a host in another process reaches it: by name, with JSON values.
#include <gtest/gtest.h>

#include "platform/dispatch/dispatch.h"
#include "platform/runtime/Operations.h"

namespace kelspar {
namespace {

constexpr const char* kString = "StringKelsparNSStringAdditions";
constexpr const char* kMutable = "StringKelsparNSMutableStringAdditions";
constexpr const char* kClass = "StringKelspar";

struct Row {
  const char* name;
  const char* className;
  const char* operation;
  const char* receiver;   // JSON; null: none is given
  const char* arguments;  // JSON
  const char* answer;     // JSON; what it begins with when it ends in "..."
};
class Wire : public testing::TestWithParam<Row> {};

id parsed(const char* json) {
  std::string error;
  id value = valueFromJSON(json, &error);
  EXPECT_EQ(error, "") << json;
  return value;
}

TEST_P(Wire, Answers) {
  const Row& row = GetParam();
  const Operation* operation = Operations::shared().find(row.className, row.operation);
  ASSERT_TRUE(operation);
  Call call;
  if (row.receiver) call.receiver = parsed(row.receiver);
  const auto arguments = parsed(row.arguments).as<NSArray>();
  for (size_t i = 0; i < arguments.count(); ++i) {
    const id argument = arguments.objectAtIndex(i);
    call.arguments.push_back(argument.is<NSNull>() ? id(nil) : argument);
  }
  const std::string answer = jsonFromAnswer(operation->call(call));
  const std::string_view wanted(row.answer);
  if (wanted.ends_with("...")) {
    EXPECT_EQ(answer.substr(0, wanted.size() - 3), wanted.substr(0, wanted.size() - 3));
  } else {
    EXPECT_EQ(answer, wanted);
  }
}

constexpr Row kRows[] = {
    {"TrimTrailingNulls", kString, "trimTrailingNulls", R"("a\u0000")", "[]", R"({"value":"a"})"},
    {"TrimLeading", kString, "stringByTrimmingLeadingCharactersInSet:", R"("xxaxx")",
     R"([{"$characters":"x"}])", R"({"value":"axx"})"},
    {"TrimBoth", kString, "stringByTrimmingLeadingAndTrailingCharactersInSet:", R"("\ta ")",
     R"([{"$characterSet":"whitespace"}])", R"({"value":"a"})"},
    {"Components", kString, "componentsSeparatedByCaseInsensitiveString:", R"("aXbxc")", R"(["x"])",
     R"({"value":["a","b","c"]})"},
    {"RemoveTrailing", kString, "removeTrailingString:", R"("abc")", R"(["bc"])",
     R"({"value":"a"})"},
    {"RemoveLeading", kString, "removeLeadingString:", R"("abc")", R"(["ab"])", R"({"value":"c"})"},
    {"ReplaceCharacters", kString, "stringByReplacingOccurrencesOfCharactersInString:withString:",
     R"("a-b")", R"(["-","+"])", R"({"value":"a+b"})"},
    {"ReplaceStrings", kString, "stringByReplacingOccurrencesOfStringsInArray:withString:",
     R"("abc")", R"([["a","c"],null])", R"({"value":"b"})"},
    {"ReplaceIgnoringCase", kString,
     "stringByReplacingOccurencesOfCaseInsensitiveString:withString:", R"("aBc")", R"(["b","-"])",
     R"({"value":"a-c"})"},
    {"CondenseWhitespace", kString, "condenseWhitespace", R"(" a  b ")", "[]",
     R"({"value":"a b"})"},
    {"CleanString", kString, "cleanString", R"("a\u0001\tb")", "[]", R"({"value":"a\u0009b"})"},
    {"TrimChars", kString, "trimCharsInString", R"("a\u00A0\u0141")", "[]", R"({"value":"aA"})"},
    {"ReplaceDoubleNewline", kString, "replaceDoubleNewline", R"("a\n\r\nb")", "[]",
     R"({"value":"a\n\nb"})"},
    {"EscapeFromLines", kString, "escapeFromLines", R"("From a")", "[]", R"({"value":">From a"})"},
    {"UnescapeFromLines", kString, "unescapeFromLines", R"(">From a")", "[]",
     R"({"value":"From a"})"},
    {"EscapeOfAnArgument", kString, "escapeFromLines:", nullptr, R"(["a\rFrom x"])",
     R"({"value":"a\u000d>From x"})"},
    {"UnescapeOfNothing", kString, "unescapeFromLines:", nullptr, "[null]", R"({"value":""})"},
    {"PercentEscapes", kString, "decodedStringFromPercentEscapesUsingEncoding:", R"("a%41b%4")",
     "[4]", R"({"value":"aAb%4"})"},
    {"PercentEscapesThatAreNotValid", kString,
     "decodedStringFromPercentEscapesUsingEncoding:", R"("%FFab")", "[4]", R"({"value":null})"},
    {"TruncateAtGarbage", kString, "truncateAtGarbageCharacters", R"("abcdef\u4E00\u4E00\u4E00x")",
     "[]", R"({"value":"abcdef"})"},
    {"ZapGremlins", kString, "zapGremlins", R"(" %41\u0378 ")", "[]", R"({"value":"A"})"},
    {"IsHTML", kString, "isHTML", R"("<HEAD><BODY>hello")", "[]", R"({"value":true})"},
    {"IsHTMLOfNothing", kString, "isHTML", "null", "[]", R"({"value":false})"},
    {"IsValid", kString, "isValidNSStringWithStrictCheck:", R"("a\u00A0b")", "[true]",
     R"({"value":true})"},
    {"Separated", kString, "stringSeparatedWithComponents:", R"("To: a")", R"([["to:"]])",
     R"({"value":[""," A"]})"},
    {"SeparatedPreservingCase", kString, "stringSeparatedWithComponents:preserveCase:",
     R"("To: a")", R"([["to:"],true])", R"({"value":[""," a"]})"},
    {"ReplaceInSet", kMutable, "replaceCharactersInSet:withString:", R"("a--b")",
     R"([{"$characters":"-"},"+"])", R"({"value":null,"receiver":"a++b"})"},
    {"Encodings", kClass, "getStringEncodingsForText", nullptr, "[]", R"({"value":{...)"},
    {"StringFromCString", kClass, "stringFromCString:", nullptr, R"([{"$data":"w6k="}])",
     R"({"value":"é"})"},
    {"StringFromNothing", kClass, "stringFromCString:", nullptr, "[null]", R"({"value":""})"},
    {"IsValidDecodedString", kClass, "isValidDecodedString:", nullptr, R"([""])",
     R"({"value":false})"},
    {"StringFromData", kClass, "stringFromNSData:", nullptr, R"([{"$data":"6Q=="}])",
     R"({"value":"é"})"},
    {"StringFromANumber", kClass, "stringFromNSData:", nullptr, "[5]", R"({"value":""})"},
    {"IsTerminated", kClass, "utf16CStringIsTerminated:withLength:", nullptr,
     R"([{"$data":"QQAAAA=="},4])", R"({"value":true...)"},
    {"RemoveCRs", kClass, "removeCRsFromString:", nullptr, R"([{"$data":"YQ1i"}])",
     R"({"value":null,"out":[{"$data":"YWI="}]})"},
    {"SearchIgnoringCase", kClass, "caseInsensitiveSearchInString:forString:", nullptr,
     R"([{"$data":"c2F5IGhlbGxv"},{"$data":"SGVMTG8="}])", R"({"value":4...)"},
    {"EscapeString", kClass, "escapeString:", nullptr, R"([{"$data":"YSJi"}])",
     R"({"value":{"$data":"YVwiYg=="}...)"},
    {"FixUnicode", kClass, "fixUnicode:", nullptr, R"(["x"])", R"({"value":"x"})"},
    {"LocalizedString", kClass, "localizedStringFor:inTable:", nullptr, R"(["key",null])",
     R"({"value":"key"})"},
    {"RandomStringOfNoLength", kClass, "randomStringWithLength:", nullptr, "[0]",
     R"({"value":""})"},
    {"UUID", kClass, "generateUUIDString", nullptr, "[]", R"({"value":"...)"},
    {"Locations", kClass, "getLocationsOfString:inString:", nullptr, R"(["ab","abcab"])",
     R"({"value":[1,4]})"},
    {"IndexOfCharacter", kClass, "indexOfCharacter:", nullptr, "[109]", R"({"value":12})"},
    {"CharacterAtIndex", kClass, "characterAtIndex:", nullptr, "[25]", R"({"value":90})"},
    {"IndexInArray", kClass, "indexOfCharacter:fromArray:", nullptr, R"([45,["/","-"]])",
     R"({"value":1})"},
    {"Words", kClass, "wordsFromString:wordCount:", nullptr, R"(["  one two\tthree  ",2])",
     R"({"value":"one two"})"},
    {"WidthOfNothing", kClass, "getWidthForMutableString:", nullptr, "[null]", R"({"value":0...)"},
    {"FitIntoNothing", kClass, "fitAttributedString:toSize:", nullptr,
     R"([{"$attributed":{"string":"abc"}},0])", R"({"value":{"$attributed":{"...)"},
};
INSTANTIATE_TEST_SUITE_P(Operations, Wire, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar

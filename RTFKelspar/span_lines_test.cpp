#include <gtest/gtest.h>

#include <random>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace kelspar {
namespace {

namespace Text = RTFKelsparNSStringAdditions;

NSDictionary record(std::u16string_view line, uint64_t number, std::u16string_view colour) {
  return NSDictionary{{u"LineContent"_ns, NSString(line)},
                      {u"LineNumber"_ns, NSNumber(number)},
                      {u"LineColour"_ns, NSString(colour)}};
}

struct Row {
  const char* name;
  std::u16string_view line, item;
  const char16_t* value;  // null: nil
};
class SpanItem : public testing::TestWithParam<Row> {};
TEST_P(SpanItem, Gives) {
  const Row& row = GetParam();
  const NSString expected = row.value ? NSString(row.value) : nil;
  EXPECT_EQ(Text::searchLineForSpanItem(row.line, row.item), expected);
}
constexpr Row kRows[] = {
    {"Hex", u"<span style=\"color:#00f\">", u"color", u"#00f"},
    {"BlanksAroundTheColon", u"<span style='color \t:\u00A0 red;'>", u"color", u"red"},
    {"UnanchoredItem", u"<span style='background-color:#00ff00;color:#0000ff'>", u"color",
     u"#00ff00"},
    {"OtherItem", u"<span style='color:red;font-size:12pt'>", u"font-size", u"12pt"},
    {"FunctionWithoutBlanks", u"<span style='color:rgb(1,2,3)'>", u"color", u"rgb(1,2,3)"},
    {"FunctionEndsAtItsFirstBlank", u"<span style='color:rgb(1, 2, 3)'>", u"color", u"rgb(1,"},
    {"SecondPlaceWhenTheFirstHasNoValue", u"<span style='color:;color:red'>", u"color", u"red"},
    {"NameWithoutAColonComesFirst", u"<span color style='color:red'>", u"color", u"red"},
    {"ItemInsideAValue", u"<span style='x:color;color:red'>", u"color", u"red"},
    {"ValueMayHoldColons", u"<span style='color:color:red'>", u"color", u"color:red"},
    {"OnlyTheFirstSpan", u"<span class=a><span style='color:red'>", u"color", nullptr},
    {"EmptyFirstSpan", u"<span><span style='color:red'>", u"color", nullptr},
    {"SpanThatIsNotClosed", u"<span style='color:red'", u"color", nullptr},
    {"ClosedByALaterBracket", u"<span a <span style='color:red'>", u"color", u"red"},
    {"LongerElementName", u"<spanner color:red>", u"color", u"red"},
    {"ElementNameInCapitals", u"<SPAN style='color:red'>", u"color", nullptr},
    {"PropertyInCapitals", u"<span style='COLOR:red'>", u"color", nullptr},
    {"ColourOutsideTheTag", u"<span a>color:red", u"color", nullptr},
    {"LineEndsInsideTheTag", u"<span\r\nstyle='color:\nred'>", u"color", u"red"},
    {"SurrogatesInTheValue", u"<span color:\U0001F3A8>", u"color", u"\U0001F3A8"},
    {"ItemOfABlank", u"<span      :x>", u" ", u"x"},
    {"EmptyItem", u"<span color:red>", u"", nullptr},
    {"EmptyLine", u"", u"color", nullptr},
    {"NoSpan", u"color:red", u"color", nullptr},
    // The item is a pattern.
    {"Anchored", u"<span style='background-color:lime;color:red'>", u"(?<![-\\w])color", u"red"},
    {"AnyUnit", u"<span style='colour:red'>", u"col.ur", u"red"},
    {"CaseDoesNotCount", u"<span style='COLOR:red'>", u"(?i)color", u"red"},
    {"GroupOfTheItemComesFirst", u"<span style='color:red'>", u"(color|fill)", u"color"},
    {"AlternativeWithoutAGroup", u"<span style='color:red'>", u"style|color", nullptr},
    {"BrokenPattern", u"<span style='color:red'>", u"(color", nullptr},
    {"BrokenSet", u"<span style='[:red'>", u"[", nullptr},
    {"EscapedItem", u"<span style='a.b:red'>", u"a\\.b", u"red"},
    {"GroupOfBlanks", u"<span style=' color:red'>", u"( )color", nullptr},
    {"SurrogatePair", u"<span \U0001F3A8:red>", u"\U0001F3A8", u"red"},
    {"HalfOfASurrogatePair", u"<span \U0001F3A8:red>", u"\xDFA8", nullptr},
};
INSTANTIATE_TEST_SUITE_P(Values, SpanItem, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SpanItem, NilGivesNil) {
  EXPECT_EQ(Text::searchLineForSpanItem(nil, u"color"), nil);
  EXPECT_EQ(Text::searchLineForSpanItem(u"<span color:red>", nil), nil);
}

TEST(LineNumbers, CountEveryLine) {
  const NSString rtf =
      u"\n{\\*\\htmltag148 <span style='color:red'>}\r\n\n<span style='color:blue'>\n"
      u"{\\*\\htmltag148 <span>}\n<span style=\"color:lime\"> htmltag148"_ns;
  const NSArray expected{record(u"{\\*\\htmltag148 <span style='color:red'>}\r", 1, u"red"),
                         record(u"<span style=\"color:lime\"> htmltag148", 5, u"lime")};
  EXPECT_EQ(Text::getLineNumbersForTag(rtf, u"htmltag148", u"color"), expected);
}

TEST(LineNumbers, TheTagIsLookedForAsItStands) {
  const NSString line = u"<span color:red> HTMLTAG148 a.c"_ns;
  EXPECT_EQ(Text::getLineNumbersForTag(line, u"htmltag148", u"color").count(), 0u);
  EXPECT_EQ(Text::getLineNumbersForTag(line, u"a.c", u"color").count(), 1u);
  EXPECT_EQ(Text::getLineNumbersForTag(u"<span color:red> abc", u"a.c", u"color").count(), 0u);
}

TEST(LineNumbers, NilAndEmptyGiveTheEmptyList) {
  const NSString rtf = u"htmltag148 <span color:red>"_ns;
  for (const NSString& nothing : {NSString(), u""_ns}) {
    EXPECT_EQ(Text::getLineNumbersForTag(nothing, u"htmltag148", u"color"), NSArray::empty());
    EXPECT_EQ(Text::getLineNumbersForTag(rtf, nothing, u"color"), NSArray::empty());
    EXPECT_EQ(Text::getLineNumbersForTag(rtf, u"htmltag148", nothing), NSArray::empty());
  }
}

NSArray recordsOf(const std::vector<literal::Record>& records) {
  NSMutableArray list;
  for (const auto& each : records) list.addObject(record(each.line, each.number, each.colour));
  return list.copy();
}

TEST(LineNumbers, SameAsTheStepsOnRandomTexts) {
  const uint32_t seed = 99;
  std::mt19937 random(seed);
  const std::u16string_view pieces[] = {u"<span", u">",  u"color",  u":",     u" ",      u";",
                                        u"\n",    u"'",  u"red",    u"t",     u"\u2029", u"\u0085",
                                        u"<",     u"co", u"\xD83C", u"\xDFA8"};
  const std::u16string_view items[] = {u"color", u" ",       u"co",     u":",   u"c.l",
                                       u"(c",    u"a|(\\s)", u"\xD83C", u"o+?", u"color "};
  for (int round = 0; round < 30000; ++round) {
    std::u16string text = u"<span";
    for (auto left = random() % 16; left > 0; --left) text += pieces[random() % std::size(pieces)];
    const std::u16string item(items[random() % std::size(items)]);
    ASSERT_EQ(Text::getLineNumbersForTag(text, u"t", item),
              recordsOf(literal::lineRecords(text, u"t", item)))
        << NSString(text) << " item " << NSString(item) << " seed " << seed;
  }
}

TEST(SpanItem, AMillionOfAnythingIsLinear) {
  for (const std::u16string_view piece : {u"<span", u"color", u"color:", u" ", u"color ", u": "}) {
    std::u16string text = u"<span ";
    while (text.size() < 1'000'000) text += piece;
    text += u";>";
    for (const NSString& item : {u"color"_ns, u" "_ns, u"x"_ns}) {
      EXPECT_LE(Text::searchLineForSpanItem(text, item).length(), text.size());
      EXPECT_LE(Text::getLineNumbersForTag(text, u"htmltag148", item).count(), 1u);
    }
  }
}

}  // namespace
}  // namespace kelspar

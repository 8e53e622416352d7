#include <gtest/gtest.h>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSArrayAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace kelspar {
namespace {

namespace Text = RTFKelsparNSStringAdditions;

NSDictionary block(uint64_t index, std::u16string_view rtf, const char16_t* html = nullptr) {
  NSMutableDictionary entries{{u"Index"_ns, NSNumber(index)}};
  if (html) entries.setObject(NSString(html), u"HTMLColour"_ns);
  entries.setObject(NSString(rtf), u"RTFColour"_ns);
  return NSDictionary(std::move(entries));
}

struct Row {
  const char* name;
  std::u16string_view table, definitions;
};
class Definitions : public testing::TestWithParam<Row> {};
TEST_P(Definitions, Gives) {
  const Row& row = GetParam();
  EXPECT_EQ(Text::extractColorDefinitionsFromTable(u"unused", row.table).view(), row.definitions);
  EXPECT_EQ(literal::definitions(std::u16string(row.table)), row.definitions);
}
constexpr Row kRows[] = {
    {"Plain", u"{\\colortbl;\\red1;}", u";\\red1;"},
    {"BlanksAndLineEnds", u"{\\colortbl \r\n;\n\\red1; \n}", u";\n\\red1;"},
    {"InnerBraces", u"{\\colortbl{;}\\red1{}2;}", u";\\red12;"},
    {"NameInTwoParts", u"{\\color{tbl};", u";"},
    {"NameThatAppearsLater", u"\\color\\colortbltbl;", u"\\colortbl;"},
    {"NotATable", u"abc", u"abc"},
    {"NothingLeft", u"{\\colortbl}", u""},
};
INSTANTIATE_TEST_SUITE_P(Tables, Definitions, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Definitions, NilAndEmptyGiveNil) {
  EXPECT_EQ(Text::extractColorDefinitionsFromTable(u"x", nil), nil);
  EXPECT_EQ(Text::extractColorDefinitionsFromTable(u"x", u""), nil);
}

TEST(ColourBlocks, OfATableWithAnAutomaticColour) {
  const NSString table = u"{\\colortbl;\\red255\\green0\\blue0;}"_ns;
  const NSArray blocks = Text::buildColourBlockArray(u"{\\rtf1" + std::u16string(table) + u"}");
  EXPECT_EQ(blocks, (NSArray{block(0, u""), block(1, u"\\red255\\green0\\blue0")}));
  EXPECT_EQ(RTFKelspar::generateRTFColourBlockFromArray(blocks), table);
}

TEST(ColourBlocks, WithoutAnAutomaticColourTheFirstIsZero) {
  EXPECT_EQ(Text::buildColourBlockArray(u"{\\colortbl\\red1;;\\red2;}"),
            (NSArray{block(0, u"\\red1"), block(1, u"\\red2")}));
}

TEST(ColourBlocks, OnlyTheFirstEmptyDefinitionCounts) {
  EXPECT_EQ(Text::buildColourBlockArray(u"{\\colortbl ; ;\n;\\red1 ;;}"),
            (NSArray{block(0, u""), block(1, u"\\red1")}));
}

TEST(ColourBlocks, EmptyWithoutATable) {
  for (const NSString& rtf : {NSString(), u""_ns, u"{\\rtf1}"_ns, u"{\\colortbl;"_ns,
                              u"{\\colortbl}"_ns, u"{\\colortbl \n{}}"_ns}) {
    EXPECT_EQ(Text::buildColourBlockArray(rtf), NSArray::empty()) << rtf;
  }
}

TEST(ColourBlocks, AMillionEmptyDefinitions) {
  const std::u16string rtf = u"{\\colortbl" + std::u16string(1'000'000, u';') + u"\\red1;}";
  EXPECT_EQ(Text::buildColourBlockArray(rtf), (NSArray{block(0, u""), block(1, u"\\red1")}));
}

TEST(ValuesForKey, KeepTheirPlaces) {
  const NSArray records{NSDictionary{{u"a"_ns, NSNumber(1)}}, u"not a record"_ns, NSNull::null(),
                        NSDictionary{{u"b"_ns, NSNumber(2)}}, NSDictionary{{u"a"_ns, u"x"_ns}}};
  EXPECT_EQ(RTFKelsparNSArrayAdditions::generateArrayForDictionaryKey(records, u"a"),
            (NSArray{NSNumber(1), NSNull::null(), u"x"_ns}));
}

TEST(ValuesForKey, NilAndEmptyGiveTheEmptyList) {
  using namespace RTFKelsparNSArrayAdditions;
  const NSArray records{NSDictionary{{u"a"_ns, NSNumber(1)}}};
  EXPECT_EQ(generateArrayForDictionaryKey(records, nil), NSArray::empty());
  EXPECT_EQ(generateArrayForDictionaryKey(records, u""), NSArray::empty());
  EXPECT_EQ(generateArrayForDictionaryKey(nil, u"a"), NSArray::empty());
  EXPECT_EQ(generateArrayForDictionaryKey(NSArray::empty(), u"a"), NSArray::empty());
}

TEST(NewColours, OneBlockForEachSpelling) {
  NSMutableArray blocks{NSArray{block(0, u""), block(1, u"\\red1")}};
  const NSArray lines{u"<span style='color:red'>"_ns,   u"<span style='color:Red'>"_ns,
                      u"<span style='size:red'>"_ns,    NSNull::null(),
                      u"<span style='color:red'> 2"_ns, u"<span style='color:#00f'>"_ns};
  RTFKelspar::generateRTFColourBlockArray(blocks, lines);
  EXPECT_EQ(blocks.copy(), (NSArray{block(0, u""), block(1, u"\\red1"),
                                    block(2, u"\\red255\\green0\\blue0", u"red"),
                                    block(3, u"\\red255\\green0\\blue0", u"Red"),
                                    block(4, u"\\red0\\green0\\blue255", u"#00f")}));
}

TEST(NewColours, NoneForColoursThatAreThere) {
  const NSArray before{block(7, u"\\red9", u"red"), NSNull::null(), u"x"_ns};
  NSMutableArray blocks{before};
  RTFKelspar::generateRTFColourBlockArray(blocks, NSArray{u"<span color:red>"_ns});
  EXPECT_EQ(blocks.copy(), before);
  RTFKelspar::generateRTFColourBlockArray(blocks, nil);
  EXPECT_EQ(blocks.copy(), before);
}

TEST(TableText, OfNoBlocksIsEmpty) {
  EXPECT_EQ(RTFKelspar::generateRTFColourBlockFromArray(nil), u""_ns);
  EXPECT_EQ(RTFKelspar::generateRTFColourBlockFromArray(NSArray::empty()), u""_ns);
}

TEST(TableText, TakesTheOrderOfTheListAndWhatIsThere) {
  const NSArray blocks{block(5, u"\\red5"), NSDictionary{{u"Index"_ns, NSNumber(1)}},
                       block(0, u"")};
  EXPECT_EQ(RTFKelspar::generateRTFColourBlockFromArray(blocks), u"{\\colortbl\\red5;(null);;}"_ns);
}

}  // namespace
}  // namespace kelspar

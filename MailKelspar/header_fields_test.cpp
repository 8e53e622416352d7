#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct ParameterRow {
  const char* name;
  std::string_view header;
  const char16_t* key;
  std::u16string_view value;
};
class Parameters : public testing::TestWithParam<ParameterRow> {};
TEST_P(Parameters, Give) {
  const auto& row = GetParam();
  const NSDictionary all = MailKelspar::parametersOfHeader(NSData(row.header));
  EXPECT_EQ(all.objectForKey<NSString>(row.key).view(), row.value);
}
constexpr ParameterRow kParameters[] = {
    {"Value", "text/HTML; charset=utf-8", u"", u"text/html"},
    {"Plain", "text/plain; Charset=utf-8", u"charset", u"utf-8"},
    {"Quoted", "a; name=\"x; \\\"y\\\".txt\"", u"name", u"x; \"y\".txt"},
    {"Comment", "a; (note; x=y) charset=z", u"charset", u"z"},
    {"CommentBehind", "a (b); charset=z (c)", u"charset", u"z (c)"},
    {"EscapedLineEnd", "a; name*=utf-8''b%0D%0Ac%00", u"name", u"b  c "},
    {"LineEndInAPiece", "a; name*1*=b\rc", u"name", u"b c"},
    {"Percent", "a; name*=utf-8'en'%e2%82%ac%20x", u"name", u"\u20AC x"},
    {"Continued", "a; name*0=one; name*1=\" two\"", u"name", u"one two"},
    {"ContinuedOutOfOrder", "a; name*1=b; name*0=a", u"name", u"ab"},
    {"ContinuedPercent", "a; name*0*=utf-8''%C3; name*1*=%A9; name*2=!", u"name", u"\u00E9!"},
    {"ExtendedBeforePlain", "a; name=old; name*=utf-8''new", u"name", u"new"},
    {"EncodedWord", "a; name=\"=?utf-8?Q?=C3=A9?=\"", u"name", u"\u00E9"},
    {"FirstCounts", "a; x=1; x=2", u"x", u"1"},
    {"NoEndQuote", "a; x=\"1", u"x", u"1"},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, Parameters, testing::ValuesIn(kParameters),
                         [](const auto& row) { return std::string(row.param.name); });

struct AddressRow {
  const char* name;
  std::string_view header;
  std::u16string_view list;  // "name|address" joined by "/"
};
class Addresses : public testing::TestWithParam<AddressRow> {};
TEST_P(Addresses, Give) {
  std::u16string list;
  for (const id& each : MailKelspar::addressesFromHeader(NSData(GetParam().header))) {
    const auto entry = each.as<NSDictionary>();
    if (!list.empty()) list += u'/';
    list.append(entry.objectForKey<NSString>(u"name").view()).append(u"|");
    list.append(entry.objectForKey<NSString>(u"address").view());
  }
  EXPECT_EQ(NSString(list), NSString(GetParam().list));
}
constexpr AddressRow kAddresses[] = {
    {"Bare", "a@b.c", u"|a@b.c"},
    {"Named", "Ann Lee <a@b.c>, Bo <d@e.f>", u"Ann Lee|a@b.c/Bo|d@e.f"},
    {"QuotedComma", "\"Lee, Ann\" <a@b.c>", u"Lee, Ann|a@b.c"},
    {"EncodedComma", "=?utf-8?Q?Lee,_Ann?= <a@b.c>", u"Lee, Ann|a@b.c"},
    {"QuotedWord", "\"=?utf-8?Q?=C3=A9?=\" <a@b.c>", u"\u00E9|a@b.c"},
    {"CommentIsAName", "a@b.c (Ann)", u"Ann|a@b.c"},
    {"Group", "team: a@b.c, d@e.f; g@h.i", u"|a@b.c/|d@e.f/|g@h.i"},
    {"EmptyGroup", "undisclosed-recipients:;", u""},
    {"QuotedLocalPart", "<\"a b\"@c.d>", u"|\"a b\"@c.d"},
    {"NoAddress", "Ann Lee", u"Ann Lee|"},
    {"Nothing", "", u""},
    {"WordsOfNothing",
     "=?utf-8?Q?"
     "?=, a@b.c, =?utf-8?B?"
     "?= <>",
     u"|a@b.c"},
    {"NoEnd", "Ann <a@b", u"Ann|a@b"},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, Addresses, testing::ValuesIn(kAddresses),
                         [](const auto& row) { return std::string(row.param.name); });

std::string repeated(std::string_view piece, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// Each would take an hour if every piece walked over what was gathered before it.
TEST(Parameters, ManyCommentsOrQuotes) {
  const auto value = [](const std::string& header) {
    return MailKelspar::parametersOfHeader(NSData(header)).objectForKey<NSString>(u"x");
  };
  EXPECT_EQ(value("a/b;x=" + repeated(" ()", 2'000'000) + "1"), NSString(u"1"));
  EXPECT_EQ(value("a/b;x=" + repeated(" (", 2'000'000)), NSString(u""));
  EXPECT_EQ(value("a/b;x=1" + repeated(" ()", 1000)).length(), 3001u);
  EXPECT_EQ(value("a/b;x=" + repeated("\"ab\" ", 3'000'000)).length(), 6'000'000u);
  EXPECT_EQ(value("a/b;x=" + repeated("\"\" ()", 2'000'000)), NSString(u""));
}

TEST(Addresses, ManyColons) {
  const std::string header = std::string(3'000'000, 'a') + "@b" + std::string(3'000'000, ':');
  EXPECT_EQ(MailKelspar::addressesFromHeader(NSData(header)).count(), 1u);
}

TEST(ContentIdentifiers, AreBare) {
  for (const char16_t* value : {u"a@b", u"<a@b>", u"cid:a@b", u"CID:a%40b", u" <a@b> "}) {
    EXPECT_EQ(MailKelspar::bareContentIdentifier(value), NSString(u"a@b")) << NSString(value);
  }
  EXPECT_EQ(MailKelspar::bareContentIdentifier(NSString(std::u16string_view(u"<a@b>\0", 6))),
            NSString(u"a@b"));
  EXPECT_EQ(MailKelspar::bareContentIdentifier(u"<a%0Ab>"), NSString(u"a b"));
  EXPECT_FALSE(MailKelspar::bareContentIdentifier(nil));
}

TEST(HeaderFields, NilIsNil) {
  EXPECT_FALSE(MailKelspar::parametersOfHeader(nil));
  EXPECT_FALSE(MailKelspar::addressesFromHeader(nil));
}

}  // namespace
}  // namespace kelspar

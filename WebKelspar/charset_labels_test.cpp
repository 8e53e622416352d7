// Charset labels and the encodings that they name.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

struct LabelRow {
  const char16_t* label;
  NSStringEncoding encoding;
};
class NumberedLabels : public testing::TestWithParam<LabelRow> {};
TEST_P(NumberedLabels, AreTheirNumbers) {
  EXPECT_EQ(getCharacterEncodingFromMime(GetParam().label), GetParam().encoding);
}
constexpr LabelRow kNumbered[] = {{u"ascii", 1},
                                  {u"EUC-JP", 3},
                                  {u"iso-8859-1", 5},
                                  {u"iso-8859-2", 9},
                                  {u"utf-16", 10},
                                  {u"UTF-16BE", 0x90000100},
                                  {u"UTF-16LE", 0x94000100},
                                  {u"utf-8", 4},
                                  {u"windows-1250", 15},
                                  {u"windows-1251", 11},
                                  {u"windows-1252", 12},
                                  {u"windows-1253", 13},
                                  {u"Windows-1254", 14},
                                  // Letters that have an ASCII capital are folded like the rest.
                                  {u"\u0131so-8859-2", 9},
                                  {u"i\u017Fo-8859-2", 9},
                                  // What is not in the table, aliases included, is UTF-8.
                                  {u"us-ascii", 4},
                                  {u" utf-16le", 4},
                                  {u"latin1", 4},
                                  {u"", 4},
                                  {u"iso-8859-15", 4},
                                  {u"cp1252", 4},
                                  {u"an absurdly long label of a charset", 4}};
INSTANTIATE_TEST_SUITE_P(WebKelspar, NumberedLabels, testing::ValuesIn(kNumbered));

struct NamedRow {
  const char16_t *label, *displayName;
};
class NamedLabels : public testing::TestWithParam<NamedRow> {};
TEST_P(NamedLabels, AreTheEncodingsOfTheirNames) {
  const NSStringEncoding encoding = getCharacterEncodingFromMime(GetParam().label);
  EXPECT_EQ(localizedNameOfStringEncoding(encoding), NSString(GetParam().displayName));
}
constexpr NamedRow kNamed[] = {
    {u"windows-1255", u"Hebrew (Windows)"},    {u"windows-1256", u"Arabic (Windows)"},
    {u"windows-1257", u"Baltic (Windows)"},    {u"windows-1258", u"Vietnamese (Windows)"},
    {u"windows-874", u"Thai (Windows, DOS)"},  {u"iso-8859-5", u"Cyrillic (ISO 8859-5)"},
    {u"iso-8859-6", u"Arabic (ISO 8859-6)"},   {u"iso-8859-7", u"Greek (ISO 8859-7)"},
    {u"iso-8859-8", u"Hebrew (ISO 8859-8)"},   {u"iso-8859-11", u"Thai (ISO 8859-11)"},
    {u"koi8-r", u"Cyrillic (KOI8-R)"},         {u"koi8-u", u"Ukrainian (KOI8-U)"},
    {u"shift_jis", u"Japanese (Shift JIS)"},   {u"euc-kr", u"Korean (EUC)"},
    {u"big5", u"Traditional Chinese (Big 5)"}, {u"gb2312", u"Simplified Chinese (GB 2312)"},
    {u"gb18030", u"Chinese (GB 18030)"}};
INSTANTIATE_TEST_SUITE_P(WebKelspar, NamedLabels, testing::ValuesIn(kNamed));

TEST(CharsetLabels, NilIsUTF8) {
  EXPECT_EQ(getCharacterEncodingFromMime(nil), NSUTF8StringEncoding);
}

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions

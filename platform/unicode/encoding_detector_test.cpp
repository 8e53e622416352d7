#include "platform/unicode/NSEncodingDetector.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace kelspar {
namespace {

using namespace std::string_view_literals;

struct Row {
  const char* name;
  std::string_view bytes;
  NSStringEncoding encoding;
  std::u16string_view text;
};
class Detecting : public testing::TestWithParam<Row> {};
TEST_P(Detecting, Gives) {
  const auto found = stringEncodingForData(NSData(GetParam().bytes));
  EXPECT_EQ(found.encoding, GetParam().encoding);
  EXPECT_EQ(found.text, NSString(GetParam().text));
  EXPECT_FALSE(found.usedLossyConversion);
}
constexpr Row kRows[] = {
    {"Empty", "", NSASCIIStringEncoding, u""},
    {"Ascii", "plain", NSASCIIStringEncoding, u"plain"},
    {"UTF8", "caf\xC3\xA9", NSUTF8StringEncoding, u"caf\u00E9"},
    {"ShortUTF8", "\xC3\xA9", NSUTF8StringEncoding, u"\u00E9"},
    {"UTF8Mark",
     "\xEF\xBB\xBF"
     "a",
     NSUTF8StringEncoding, u"a"},
    {"UTF16BigMark", "\xFE\xFF\0a"sv, NSUTF16BigEndianStringEncoding, u"a"},
    {"UTF16LittleMark",
     "\xFF\xFE"
     "a\0"sv,
     NSUTF16LittleEndianStringEncoding, u"a"},
    {"UTF32LittleMark", "\xFF\xFE\0\0a\0\0\0"sv, NSUTF32LittleEndianStringEncoding, u"a"},
    {"UTF32BigMark", "\0\0\xFE\xFF\0\0\0a"sv, NSUTF32BigEndianStringEncoding, u"a"},
    {"UTF16NoMark", "w\0i\0d\0e\0 \0t\0"sv, NSUTF16LittleEndianStringEncoding, u"wide t"},
    {"UTF16BigNoMark", "\0w\0i\0d\0e\0 \0t"sv, NSUTF16BigEndianStringEncoding, u"wide t"},
    {"UTF32NoMark", "\0\0\0a\0\0\0b\0\0\0c"sv, NSUTF32BigEndianStringEncoding, u"abc"},
    {"TextWithAZeroByteIsNotWide", "text\0more"sv, NSASCIIStringEncoding, u"text\0more"sv},
    {"ISO2022JP", "\x1B$B$\"\x1B(B", NSISO2022JPStringEncoding, u"\u3042"},
    {"ISO2022KR", "\x1B$)C\x0E\x30\x21\x0F", 0x80000840, u"\uAC00"},
    {"ISO2022JPEndsInRoman", "\x1B$@$\"\x1B(J\\", NSISO2022JPStringEncoding, u"\u3042\u00A5"},
    {"ISO2022CN", "\x1B$)A\x0E=;\x0F a", 0x80000830, u"\u4EA4 a"},
    {"HZ", "~{Dc:CDc:C~} a", 0x80000A05, u"\u4F60\u597D\u4F60\u597D a"},
    {"HZInPieces", "~{Dc:C~} ~~ ~{Dc:C!#~}", 0x80000A05, u"\u4F60\u597D ~ \u4F60\u597D\u3002"},
    // Bytes that are valid ASCII are nothing else without evidence.
    {"LoneEscape", "\x1B$B", NSASCIIStringEncoding, u"\x1B$B"},
    {"EscapesWithoutAPair", "\x1B$B\x1B(B a", NSASCIIStringEncoding, u"\x1B$B\x1B(B a"},
    {"RomanWithoutAPair", "\x1B(J\\", NSASCIIStringEncoding, u"\x1B(J\\"},
    {"KanaWithoutAPair", "\x1B(I1\x1B(B", NSASCIIStringEncoding, u"\x1B(I1\x1B(B"},
    {"ISO2022JPThatDoesNotEnd", "\x1B$B$\"", NSASCIIStringEncoding, u"\x1B$B$\""},
    {"ISO2022JPCutShort", "\x1B$B$\"$\x1B(B", NSASCIIStringEncoding, u"\x1B$B$\"$\x1B(B"},
    {"ISO2022KRWithoutAPair", "\x1B$)Ca", NSASCIIStringEncoding, u"\x1B$)Ca"},
    {"ISO2022KRThatDoesNotEnd", "\x1B$)C\x0E\x30\x21", NSASCIIStringEncoding,
     u"\x1B$)C\x0E\x30\x21"},
    {"LoneShifts", "a\x0E b\x0F", NSASCIIStringEncoding, u"a\x0E b\x0F"},
    {"TerminalColours", "\x1B[31mred\x1B[0m $B", NSASCIIStringEncoding, u"\x1B[31mred\x1B[0m $B"},
    {"TildesAreNotHZ", "a ~{b~} c", NSASCIIStringEncoding, u"a ~{b~} c"},
    {"OnePairIsNotHZ", "~{ab~}", NSASCIIStringEncoding, u"~{ab~}"},
    {"TwoPairsAreNotHZ", "see ~{VPND~} ok", NSASCIIStringEncoding, u"see ~{VPND~} ok"},
    {"SmallLettersAreNotHZ", "~{abcdefgh~} and ~{ijklmnop~}", NSASCIIStringEncoding,
     u"~{abcdefgh~} and ~{ijklmnop~}"},
    {"HZThatDoesNotEnd", "~{Dc:CDc:C a", NSASCIIStringEncoding, u"~{Dc:CDc:C a"},
    {"HZThatEndsOnTheNextLine", "~{Dc:CDc:C\n~}", NSASCIIStringEncoding, u"~{Dc:CDc:C\n~}"},
    {"FourBytesAreNotWide", "\0\0\0a"sv, NSASCIIStringEncoding, u"\0\0\0a"sv},
    {"PaddedTextIsNotWide", "ab\0\0"sv, NSASCIIStringEncoding, u"ab\0\0"sv},
    {"PaddedLatinIsNotWide", "\xE9t\0\0"sv, NSWindowsCP1252StringEncoding, u"\u00E9t\0\0"sv},
    {"PaddedTextsAreNotWide", "ab\0\0cd\0\0"sv, NSASCIIStringEncoding, u"ab\0\0cd\0\0"sv},
    {"PairOfWideLetters", "\0\0\0a\0\0\0b"sv, NSUTF32BigEndianStringEncoding, u"ab"},
    {"WideCyrillic", "\x14\x04\0\0 \0\0\0"sv, NSUTF32LittleEndianStringEncoding, u"\u0414 "},
    {"FourWideLetters", "a\0b\0c\0d\0"sv, NSUTF16LittleEndianStringEncoding, u"abcd"},
    {"SevenBytesAreNotWide", "a\0b\0c\0d"sv, NSASCIIStringEncoding, u"a\0b\0c\0d"sv},
    {"French",
     "d\xE9j\xE0 vu, \xE7"
     "a",
     NSWindowsCP1252StringEncoding, u"d\u00E9j\u00E0 vu, \u00E7a"},
    {"Quotes", "it\x92s", NSWindowsCP1252StringEncoding, u"it\u2019s"},
    {"OneLetter", "\xE9", NSWindowsCP1252StringEncoding, u"\u00E9"},
    {"Russian", "\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0",
     NSWindowsCP1251StringEncoding,
     u"\u041F\u0440\u0438\u0432\u0435\u0442, \u043A\u0430\u043A \u0434\u0435\u043B\u0430"},
};
INSTANTIATE_TEST_SUITE_P(NSEncodingDetector, Detecting, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Detecting, NilFitsNothing) {
  const auto found = stringEncodingForData(nil);
  EXPECT_EQ(found.encoding, 0u);
  EXPECT_FALSE(found.text);
}

TEST(Detecting, OnlyTheSuggested) {
  const NSData latin("caf\xE9"sv);
  const NSStringEncoding turkish[] = {NSWindowsCP1254StringEncoding};
  EXPECT_EQ(stringEncodingForData(latin, turkish, true).encoding, NSWindowsCP1254StringEncoding);
  const NSStringEncoding ascii[] = {NSASCIIStringEncoding};
  const auto lossy = stringEncodingForData(latin, ascii, true);
  EXPECT_TRUE(lossy.usedLossyConversion);
  EXPECT_EQ(lossy.text, NSString(u"caf\uFFFD"));
}

TEST(Detecting, DamagedUTF8IsReportedAsLoss) {
  std::string text;
  for (int i = 0; i < 30; ++i) text += "\xD0\xBF\xD1\x80 ";
  const auto found = stringEncodingForData(NSData(text + "\xD0"));
  EXPECT_EQ(found.encoding, NSUTF8StringEncoding);
  EXPECT_TRUE(found.usedLossyConversion);
}

// What a line of measures, money or a word says by one or two bytes, with the hints that text from
// the western part of the world is guessed by.
constexpr NSStringEncoding kWestern[] = {NSUTF8StringEncoding, NSISOLatin1StringEncoding,
                                         NSWindowsCP1252StringEncoding};
constexpr std::u16string_view kWesternTexts[] = {
    u"20 °",        u"25°",     u"« oui »",    u"½ cup",       u"±5°C",      u"5 µm",
    u"¤ 5",         u"§ 5",     u"price: 5 €", u"€",           u"5£",        u"10 m²",
    u"5 m² / 3 m³", u"3½",      u"2×3",        u"6÷2",         u"½ + ¼ = ¾", u"x² + y² = z²",
    u"5 × 3 ÷ 2",   u"100 ± 5", u"wait…",      u"Foo™ ®",      u"• item",    u"1º",
    u"1ª vez",      u"5¢",      u"¥ 500",      u"25¢ / 30¢",   u"a ¬ b",     u"¿Qué?",
    u"xÿ",          u"à",       u"ça va",      u"ÅÄÖ",         u"ñ",         u"Straße",
    u"it’s",        u"“hi”",    u"a – b",      u"Smörgåsbord", u"cœur",      u"© 2020",
    u"ø",           u"¡Hola!",  u"Ø 30",       u"§ 12 Abs. 3", u"100 µl",    u"45° 30'",
};

TEST(Detecting, ShortTextsFollowTheHints) {
  for (const auto text : kWesternTexts) {
    const NSData data = dataUsingEncoding(NSString(text), NSWindowsCP1252StringEncoding);
    ASSERT_TRUE(data) << NSString(text);
    EXPECT_EQ(stringEncodingForData(data, kWestern).text, NSString(text));
  }
}

TEST(Detecting, SingleBytesFollowTheHints) {
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    const char c = static_cast<char>(byte);
    const NSString text = stringWithBytes({&c, 1}, NSWindowsCP1252StringEncoding);
    if (!text) continue;
    EXPECT_EQ(stringEncodingForData(NSData(std::string_view(&c, 1)), kWestern).text, text) << byte;
  }
}

// A line of mail in each language, under the pages that such mail comes in.
struct Language {
  const char* name;
  std::u16string_view text;
  std::vector<NSStringEncoding> pages;
};
const Language kLanguages[] = {
    {"German",
     u"Können wir uns nächste Woche treffen? Schöne Grüße aus Köln, wo es heute heiß ist.",
     {12, 0x8000020F, 0x80000410, 30}},
    {"French",
     u"Merci pour votre réponse, je serai là à midi pour le déjeuner avec les élèves.",
     {12, 0x80000410, 30}},
    {"Spanish",
     u"Mañana por la mañana te enviaré la información que pediste sobre el avión.",
     {12, 0x80000410, 30}},
    {"Danish", u"Tak for brevet, vi ses på søndag når færgen er kommet til øen.", {12, 0x80000410}},
    {"Icelandic",
     u"Það er ekki hægt að koma í dag, en ég hringi á morgun þegar ég er heima.",
     {12}},
    {"Polish",
     u"Dziękuję za wiadomość, spotkamy się później, żeby omówić następną część książki.",
     {15, 9, 0x80000412}},
    {"Czech",
     u"Děkuji za zprávu, příští týden přijedu do Prahy a můžeme si dát večeři.",
     {15, 9, 0x80000412}},
    {"Hungarian",
     u"Köszönöm a levelet, a jövő héten külföldön leszek, de utána örömmel találkozom.",
     {15, 9, 0x80000412}},
    {"Lithuanian",
     u"Ačiū už laišką, rytoj būsiu namie ir galėsime aptarti visą projektą.",
     {0x80000507, 0x8000020D}},
    {"Latvian",
     u"Paldies par vēstuli, rīt būšu mājās un varēsim apspriest jauno grāmatu.",
     {0x80000507, 0x8000020D}},
    {"Turkish",
     u"Mektubunuz için teşekkür ederim, yarın akşam görüşmek üzere, güzel günler.",
     {14}},
    {"Welsh",
     u"Mae'r tŷ ger y môr ac mae'r dŵr yn oer, ond mae gan y plant ddillad cynnes.",
     {0x8000020E}},
    {"Russian",
     u"Спасибо за письмо, мы приедем в понедельник утром.",
     {11, 0x80000A02, 0x80000205, 0x8000041B, 0x80000413}},
    {"Ukrainian",
     u"Дякую за лист, ми приїдемо у понеділок вранці, якщо зможемо.",
     {11, 0x80000A08, 0x80000205}},
    {"Bulgarian", u"Благодаря за писмото, ще пристигнем в понеделник сутринта.", {11, 0x80000205}},
    {"Greek", u"Ευχαριστώ για το γράμμα, θα φτάσουμε τη Δευτέρα το πρωί.", {13, 0x80000207}},
    {"Hebrew", u"תודה על המכתב, נגיע ביום שני בבוקר עם כל המשפחה.", {0x80000505, 0x80000208}},
    {"Arabic",
     u"شكرا على الرسالة، سوف نصل يوم الاثنين في الصباح مع العائلة.",
     {0x80000506, 0x80000206}},
    {"Thai", u"ขอบคุณสำหรับจดหมาย เราจะไปถึงในเช้าวันจันทร์", {0x8000041D}},
    {"Japanese", u"お手紙ありがとうございます。月曜日の朝に着きます。", {8, 3, 21}},
    {"Korean",
     u"편지 감사합니다. 우리는 월요일 아침에 도착합니다.",
     {0x80000422, 0x80000510, 0x80000840}},
    {"Simplified", u"谢谢你的来信，我们星期一早上到，请在家等我们。", {0x80000632}},
    {"Traditional", u"謝謝你的來信，我們星期一早上到，請在家等我們。", {0x80000A03}},
};

TEST(Detecting, OneLineOfManyLanguages) {
  for (const Language& language : kLanguages) {
    for (const NSStringEncoding page : language.pages) {
      const NSData data = dataUsingEncoding(NSString(language.text), page);
      ASSERT_TRUE(data) << language.name << " " << page;
      const auto found = stringEncodingForData(data);
      EXPECT_EQ(found.text, NSString(language.text))
          << language.name << " as " << localizedNameOfStringEncoding(page) << " taken for "
          << localizedNameOfStringEncoding(found.encoding);
      EXPECT_EQ(stringEncodingForData(data, kWestern).text, found.text)
          << language.name << " as " << localizedNameOfStringEncoding(page);
    }
  }
}

#ifdef KELSPAR_CORPUS

// Folder of the corpus -> what its texts are decoded with for comparison.
const std::map<std::string, NSStringEncoding> kFolders = {
    {"ASCII", 1},
    {"Big5", 0x80000A03},
    {"CP850", 0x80000410},
    {"CP852", 0x80000412},
    {"CP949", 0x80000422},
    {"EUC-JP", 3},
    {"EUC-KR", 0x80000940},
    {"GB18030", 0x80000632},
    {"IBM855", 0x80000413},
    {"IBM866", 0x8000041B},
    {"ISO-2022-CN", 0x80000830},
    {"ISO-2022-JP", 21},
    {"ISO-2022-KR", 0x80000840},
    {"ISO-8859-1", 5},
    {"ISO-8859-10", 0x8000020A},
    {"ISO-8859-13", 0x8000020D},
    {"ISO-8859-14", 0x8000020E},
    {"ISO-8859-15", 0x8000020F},
    {"ISO-8859-16", 0x80000210},
    {"ISO-8859-2", 9},
    {"ISO-8859-3", 0x80000203},
    {"ISO-8859-4", 0x80000204},
    {"ISO-8859-5", 0x80000205},
    {"ISO-8859-6", 0x80000206},
    {"ISO-8859-7", 0x80000207},
    {"ISO-8859-8", 0x80000208},
    {"ISO-8859-9", 0x80000209},
    {"KOI8-R", 0x80000A02},
    {"KOI8-U", 0x80000A08},
    {"Shift_JIS", 0x80000A01},
    {"UTF-16BE", 0x90000100},
    {"UTF-16LE", 0x94000100},
    {"UTF-32BE", 0x98000100},
    {"UTF-32LE", 0x9C000100},
    {"UTF-8", 4},
    {"big5hkscs", 0x80000A06},
    {"gb2312", 0x80000930},
    {"gbk", 0x80000631},
    {"hz", 0x80000A05},
    {"johab", 0x80000510},
    {"macintosh", 30},
    {"windows-1250", 15},
    {"windows-1251", 11},
    {"windows-1252", 12},
    {"windows-1253", 13},
    {"windows-1254", 14},
    {"windows-1255", 0x80000505},
    {"windows-1256", 0x80000506},
    {"windows-1257", 0x80000507},
    {"windows-1258", 0x80000508},
    {"windows-874", 0x8000041D},
    {"x-mac-cyrillic", 0x80000007},
};

std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// How many texts of a folder are not told; of all others every one is. These two are not valid
// under their label: a wrong mark, characters beyond the set.
const std::map<std::string, size_t> kNotTold = {{"UTF-16BE", 1}, {"big5hkscs", 1}};

// A text is right when it is decoded as under its label, a leading mark aside.
TEST(Detecting, CorpusOfEncodings) {
  for (const auto& [folder, encoding] : kFolders) {
    size_t rightHere = 0, here = 0;
    std::string wrong;
    const auto path = std::filesystem::path(KELSPAR_CORPUS) / "encodings" / folder;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      const std::string name = entry.path().filename().string();
      if (name.find(".utf8.") != std::string::npos) continue;
      const NSData data(readFile(entry.path()));
      NSString wanted = stringWithData(data, encoding);
      if (wanted.hasPrefix(u"\uFEFF")) wanted = wanted.substring(1);
      const auto found = stringEncodingForData(data);
      ++here;
      if (wanted && found.text == wanted) {
        ++rightHere;
      } else {
        wrong += " " + name + ":" + localizedNameOfStringEncoding(found.encoding).utf8() +
                 (wanted ? "" : "(undecodable)");
      }
    }
    const auto notTold = kNotTold.find(folder);
    EXPECT_EQ(rightHere + (notTold == kNotTold.end() ? 0 : notTold->second), here)
        << folder << ":" << wrong;
  }
}

#endif

}  // namespace
}  // namespace kelspar

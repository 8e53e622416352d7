#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/localized_text.h"

namespace kelspar {
namespace {

TEST(RandomString, IsDrawnFromTheAlphabet) {
  EXPECT_EQ(StringKelspar::randomStringWithLength(0), NSString(u""));
  const NSString text = StringKelspar::randomStringWithLength(62 * 2000);
  std::map<char16_t, int> counts;
  for (const char16_t unit : text.view()) ++counts[unit];
  ASSERT_EQ(counts.size(), 62u);
  for (const auto& [unit, count] : counts) {
    EXPECT_TRUE(unit < 0x80 && std::isalnum(unit));
    EXPECT_NEAR(count, 2000, 300) << int{unit};  // more than six times the deviation
  }
  EXPECT_THROW((void)StringKelspar::randomStringWithLength(UINT64_MAX), std::bad_alloc);
}

TEST(UUID, IsCanonicalAndNew) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string text = StringKelspar::generateUUIDString().utf8();
    ASSERT_EQ(text.size(), 36u);
    for (size_t at = 0; at < text.size(); ++at) {
      const bool isDash = at == 8 || at == 13 || at == 18 || at == 23;
      const std::string_view allowed = isDash ? "-" : "0123456789ABCDEF";
      ASSERT_NE(allowed.find(text[at]), allowed.npos) << text;
    }
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string_view("89AB").find(text[19]), std::string_view::npos);
    EXPECT_TRUE(seen.insert(text).second);
  }
}

TEST(LettersByNumber, GoBothWays) {
  EXPECT_EQ(StringKelspar::indexOfCharacter('m'), 12);
  EXPECT_EQ(StringKelspar::indexOfCharacter('A'), 0);
  EXPECT_EQ(StringKelspar::indexOfCharacter('z'), 25);
  for (const char other : {'1', '\0', ' ', '\xE9'}) {
    EXPECT_EQ(StringKelspar::indexOfCharacter(other), -1);
  }
  EXPECT_EQ(StringKelspar::characterAtIndex(25), 'Z');
  for (const int32_t other : {26, -1, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(StringKelspar::characterAtIndex(other), '\0');
  }
}

TEST(LettersByNumber, InAnArray) {
  const NSArray array{u""_ns, NSNumber(7), u"/"_ns, u"-x"_ns, u"\u00E9"_ns};
  EXPECT_EQ(StringKelspar::indexOfCharacter('/', array), 2);
  EXPECT_EQ(StringKelspar::indexOfCharacter('-', array), 3);
  EXPECT_EQ(StringKelspar::indexOfCharacter('x', array), -1);
  EXPECT_EQ(StringKelspar::indexOfCharacter('\xE9', array), -1);
  EXPECT_EQ(StringKelspar::indexOfCharacter('a', nil), -1);
  EXPECT_EQ(StringKelspar::indexOfCharacter('a', NSArray::empty()), -1);
}

struct WordsRow {
  const char* name;
  const char16_t* text;
  uint64_t count;
  const char16_t* words;
};
class Words : public testing::TestWithParam<WordsRow> {};
TEST_P(Words, Gives) {
  EXPECT_EQ(StringKelspar::wordsFromString(GetParam().text, GetParam().count),
            NSString(GetParam().words));
}
constexpr WordsRow kWords[] = {
    {"Two", u"  one two\tthree  ", 2, u"one two"},
    {"MoreThanThereAre", u"  one two\tthree  ", 10, u"one two three"},
    {"LineEndInside", u"\none\ntwo three\n", 1, u"one\ntwo"},
    {"RunsOfBlanks", u"a \t  b", 2, u"a b"},
    {"Zero", u"a b", 0, u""},
    {"BlanksOnly", u" \n ", 3, u""},
    {"Empty", u"", 3, u""},
};
INSTANTIATE_TEST_SUITE_P(StringKelspar, Words, testing::ValuesIn(kWords),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Words, EmptyForNil) { EXPECT_EQ(StringKelspar::wordsFromString(nil, 3), NSString(u"")); }

TEST(PrintLog, WritesOneLineToStandardOutput) {
  testing::internal::CaptureStdout();
  StringKelspar::printLog(u"%@ is %d, %5.1f%%", u"caf\u00E9"_ns, 7, 2.25);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "caf\xC3\xA9 is 7,   2.2%\n");
}

// A catalogue file with these entries, sorted by key (gettext's manual, "MO Files").
void writeCatalogue(const std::filesystem::path& path,
                    const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string file, texts;
  const auto put = [&file](size_t number) {
    const auto value = static_cast<uint32_t>(number);
    file.append(reinterpret_cast<const char*>(&value), 4);
  };
  const size_t count = entries.size(), first = 28 + 16 * count;
  put(0x950412DE), put(0), put(count), put(28), put(28 + 8 * count), put(0), put(first);
  for (const bool values : {false, true}) {
    for (const auto& [key, value] : entries) {
      const std::string& text = values ? value : key;
      put(text.size()), put(first + texts.size());
      texts += text + '\0';
    }
  }
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << file << texts;
}

class Localized : public testing::Test {
 protected:
  void SetUp() override {
    before_ = setLogSink([this](std::string_view line) { log_.emplace_back(line); });
    folder_ = testing::TempDir() + "kelspar_locale";
    writeCatalogue(folder_ + "/xx/LC_MESSAGES/Localizable.mo",
                   {{"", "Content-Type: text/plain; charset=UTF-8\n"},
                    {"Blank", ""},
                    {"Yes", "D\xC3\xA4\xC3\xA4"}});
    writeCatalogue(folder_ + "/xx/LC_MESSAGES/Other.mo",
                   {{"", "Content-Type: text/plain; charset=UTF-8\n"}, {"Yes", "Oui"}});
    ::setenv("LANGUAGE", "xx", 1);
    hasLocale_ = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    ASSERT_TRUE(hasLocale_);
  }
  void TearDown() override {
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LANGUAGE");
    setLogSink(before_);
    std::filesystem::remove_all(folder_);
  }
  std::string folder_;
  bool hasLocale_ = false;
  std::vector<std::string> log_;
  NSLogSink before_;
};

TEST_F(Localized, LooksTheKeyUp) {
  EXPECT_EQ(localizedString(u"Yes", nil, folder_), NSString(u"D\u00E4\u00E4"));
  EXPECT_EQ(localizedString(u"Yes", u"Other", folder_), NSString(u"Oui"));
  EXPECT_EQ(localizedString(u"Nothing of the kind", nil, folder_),
            NSString(u"Nothing of the kind"));
  EXPECT_EQ(localizedString(u"Yes", u"NoSuchTable", folder_), NSString(u"Yes"));
  EXPECT_EQ(localizedString(u"Yes", u"../Other", folder_), NSString(u"Yes"));
  EXPECT_EQ(localizedString(u"", nil, folder_), NSString(u""));
  EXPECT_EQ(localizedString(nil, nil, folder_), NSString(u""));
  EXPECT_TRUE(log_.empty());
}

TEST_F(Localized, LogsWhatIsMissing) {
  EXPECT_EQ(localizedString(u"Blank", nil, folder_), NSString(u"Blank"));
  EXPECT_EQ(localizedString(u"Blank", nil, ""), NSString(u"Blank"));
  EXPECT_EQ(log_, (std::vector<std::string>{
                      "Warning: Localization returned nil or empty for key 'Blank' in table "
                      "'(default)'",
                      "Warning: mainBundle is nil, returning original string"}));
}

TEST_F(Localized, WithoutACatalogueTheKeyComesBack) {
  EXPECT_EQ(StringKelspar::localizedStringFor(u"Yes", u"NoSuchTable"), NSString(u"Yes"));
}

}  // namespace
}  // namespace kelspar

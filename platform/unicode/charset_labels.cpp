// Charset labels by the table of the WHATWG Encoding Standard (4.2), and text under a label.
#include "platform/unicode/charset_labels.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "platform/foundation/ascii.h"
#include "platform/unicode/code_pages.h"
#include "platform/unicode/icu_converter.h"

namespace kelspar {

namespace {

struct LabelRow {
  const char* name;       // the standard's
  const char* converter;  // ICU's
  const char* labels;     // lower case
};

constexpr LabelRow kRows[] = {
    {"UTF-8", "utf-8",
     "unicode-1-1-utf-8 unicode11utf8 unicode20utf8 utf-8 utf8 x-unicode20utf8 65001"},
    {"IBM866", "ibm-866", "866 cp866 csibm866 ibm866"},
    {"ISO-8859-2", "iso-8859-2",
     "csisolatin2 iso-8859-2 iso-ir-101 iso8859-2 iso88592 iso_8859-2 iso_8859-2:1987 l2 latin2"},
    {"ISO-8859-3", "iso-8859-3",
     "csisolatin3 iso-8859-3 iso-ir-109 iso8859-3 iso88593 iso_8859-3 iso_8859-3:1988 l3 latin3"},
    {"ISO-8859-4", "iso-8859-4",
     "csisolatin4 iso-8859-4 iso-ir-110 iso8859-4 iso88594 iso_8859-4 iso_8859-4:1988 l4 latin4"},
    {"ISO-8859-5", "iso-8859-5",
     "csisolatincyrillic cyrillic iso-8859-5 iso-ir-144 iso8859-5 iso88595 iso_8859-5 "
     "iso_8859-5:1988"},
    {"ISO-8859-6", "iso-8859-6",
     "arabic asmo-708 csiso88596e csiso88596i csisolatinarabic ecma-114 iso-8859-6 iso-8859-6-e "
     "iso-8859-6-i iso-ir-127 iso8859-6 iso88596 iso_8859-6 iso_8859-6:1987"},
    {"ISO-8859-7", "iso-8859-7",
     "csisolatingreek ecma-118 elot_928 greek greek8 iso-8859-7 iso-ir-126 iso8859-7 iso88597 "
     "iso_8859-7 iso_8859-7:1987 sun_eu_greek"},
    {"ISO-8859-8", "iso-8859-8",
     "csiso88598e csisolatinhebrew hebrew iso-8859-8 iso-8859-8-e iso-ir-138 iso8859-8 iso88598 "
     "iso_8859-8 iso_8859-8:1988 visual"},
    {"ISO-8859-8-I", "iso-8859-8", "csiso88598i iso-8859-8-i logical 38598"},
    {"ISO-8859-10", "iso-8859-10",
     "csisolatin6 iso-8859-10 iso-ir-157 iso8859-10 iso885910 l6 latin6"},
    {"ISO-8859-13", "iso-8859-13", "iso-8859-13 iso8859-13 iso885913"},
    {"ISO-8859-14", "iso-8859-14", "iso-8859-14 iso8859-14 iso885914"},
    {"ISO-8859-15", "iso-8859-15",
     "csisolatin9 iso-8859-15 iso8859-15 iso885915 iso_8859-15 l9 latin-9"},
    {"KOI8-R", "koi8-r", "cskoi8r koi koi8 koi8-r koi8_r"},
    {"KOI8-U", "koi8-u", "koi8-ru koi8-u"},
    {"macintosh", "macintosh", "csmacintosh mac macintosh x-mac-roman"},
    {"windows-874", "windows-874", "dos-874 iso-8859-11 iso8859-11 iso885911 tis-620 windows-874"},
    {"windows-1250", "windows-1250", "cp1250 windows-1250 x-cp1250"},
    {"windows-1251", "windows-1251", "cp1251 windows-1251 x-cp1251"},
    // The standard decodes ISO-8859-1 so, and the five bytes that the page leaves undefined as C1
    // controls.
    {"windows-1252", "windows-1252",
     "ansi_x3.4-1968 ascii cp1252 cp819 csisolatin1 ibm819 iso-8859-1 iso-ir-100 iso8859-1 "
     "iso88591 iso_8859-1 iso_8859-1:1987 l1 latin1 us-ascii windows-1252 x-cp1252"},
    {"windows-1253", "windows-1253", "cp1253 windows-1253 x-cp1253"},
    {"windows-1254", "windows-1254",
     "cp1254 csisolatin5 iso-8859-9 iso-ir-148 iso8859-9 iso88599 iso_8859-9 iso_8859-9:1989 l5 "
     "latin5 windows-1254 x-cp1254"},
    {"windows-1255", "windows-1255", "cp1255 windows-1255 x-cp1255"},
    {"windows-1256", "windows-1256", "cp1256 windows-1256 x-cp1256"},
    {"windows-1257", "windows-1257", "cp1257 windows-1257 x-cp1257"},
    {"windows-1258", "windows-1258", "cp1258 windows-1258 x-cp1258"},
    {"x-mac-cyrillic", "x-mac-cyrillic", "x-mac-cyrillic x-mac-ukrainian"},
    // The standard decodes GBK as GB 18030, its superset; so do we.
    {"GBK", "gb18030",
     "chinese csgb2312 csiso58gb231280 gb2312 gb_2312 gb_2312-80 gbk iso-ir-58 x-gbk 936"},
    {"gb18030", "gb18030", "gb18030"},
    {"Big5", "big5-hkscs", "big5 big5-hkscs cn-big5 csbig5 x-x-big5"},
    {"EUC-JP", "euc-jp", "cseucpkdfmtjapanese euc-jp x-euc-jp"},
    {"ISO-2022-JP", "ISO_2022,locale=ja,version=1", "csiso2022jp iso-2022-jp"},
    {"Shift_JIS", "windows-932",
     "csshiftjis ms932 ms_kanji shift-jis shift_jis sjis windows-31j x-sjis"},
    {"EUC-KR", "windows-949",
     "cseuckr csksc56011987 euc-kr iso-ir-149 korean ks_c_5601-1987 ks_c_5601-1989 ksc5601 "
     "ksc_5601 windows-949"},
    {"UTF-16BE", "utf-16be", "unicodefffe utf-16be 1201"},
    {"UTF-16LE", "utf-16le",
     "csunicode iso-10646-ucs-2 ucs-2 unicode unicodefeff utf-16 utf-16le 1200"},
    // Not the standard's: mail has them.
    {"UTF-7", "utf-7", "utf-7 unicode-1-1-utf-7 x-unicode-2-0-utf-7"},
    {"ISO-2022-KR", "ISO_2022,locale=ko,version=0", "csiso2022kr iso-2022-kr"},
    {"ISO-2022-CN", "ISO_2022,locale=zh,version=0", "iso-2022-cn"},
    {"HZ-GB-2312", "HZ", "hz-gb-2312"},
    {"UTF-32BE", "utf-32be", "utf-32be"},
    {"UTF-32LE", "utf-32le", "utf-32 utf-32le"},
    {"IBM437", "ibm-437", "cp437 ibm437"},
    {"IBM850", "ibm-850", "cp850 ibm850"},
    {"IBM852", "ibm-852", "cp852 ibm852"},
    {"IBM862", "ibm-862", "cp862 ibm862 dos-862"},
};

using Labels = std::unordered_map<std::string_view, const LabelRow*>;

const Labels& labels() {
  static const Labels& table = *[] {
    auto* built = new Labels;
    for (const LabelRow& row : kRows) {
      std::string_view rest = row.labels;
      while (!rest.empty()) {
        const size_t length = std::min(rest.find(' '), rest.size());
        built->emplace(rest.substr(0, length), &row);
        rest.remove_prefix(std::min(length + 1, rest.size()));
      }
    }
    return built;
  }();
  return table;
}

std::string normalized(const NSString& label) {
  const std::string text = label.utf8();
  const auto isBlank = [](char c) {
    return c == '\0' || std::string_view(" \t\r\n\f\"'").find(c) != std::string_view::npos;
  };
  return ascii::lowerCase(ascii::trimmed(std::string_view(text), isBlank));
}

// 0 when the label is no number.
int pageNumber(std::string_view label) {
  if (label.starts_with("cp")) label.remove_prefix(2);
  if (label.empty() || label.size() > 5) return 0;
  int number = 0;
  for (const char c : label) {
    if (c < '0' || c > '9') return 0;
    number = 10 * number + (c - '0');
  }
  return number;
}

bool isASCIILabel(std::string_view label) {
  return label == "us-ascii" || label == "ascii" || label == "ansi_x3.4-1968" || label == "20127";
}

NSString withoutMark(std::u16string&& text) {
  if (!text.empty() && text.front() == u'\uFEFF') text.erase(0, 1);
  return NSString(std::move(text));
}

NSString unlabelled(std::string_view bytes) {
  if (const NSString text = NSString::fromUTF8(bytes))
    return withoutMark(std::u16string(text.view()));
  std::u16string units;
  convertWithICU("windows-1252", bytes, Malformed::replace, &units);
  return NSString(std::move(units));
}

// Bytes that are not valid under their label but are UTF-8 were labelled wrongly.
NSString decoded(const char* converter, std::string_view bytes) {
  std::u16string units;
  if (convertWithICU(converter, bytes, Malformed::stop, &units))
    return withoutMark(std::move(units));
  if (const NSString text = NSString::fromUTF8(bytes); text && !ascii::isAll(bytes)) {
    return withoutMark(std::u16string(text.view()));
  }
  units.clear();
  convertWithICU(converter, bytes, Malformed::replace, &units);
  return withoutMark(std::move(units));
}

}  // namespace

NSString encodingOfCharsetLabel(const NSString& label) {
  if (!label) return nil;
  const std::string key = normalized(label);
  if (const auto found = labels().find(key); found != labels().end()) {
    return NSString(found->second->name);
  }
  const int number = pageNumber(key);
  return CodePage::known(number) ? NSString("cp" + std::to_string(number)) : NSString();
}

NSString textUnderCharsetLabel(const NSData& bytes, const NSString& label) {
  if (!bytes) return nil;
  const std::string key = normalized(label);
  if (isASCIILabel(key)) return unlabelled(bytes.chars());
  if (const auto found = labels().find(key); found != labels().end()) {
    const char* converter = found->second->converter;
    // "UTF-16" is little-endian, but for a mark that says otherwise.
    const bool isMarkedBig = key == "utf-16" && bytes.chars().starts_with("\xFE\xFF");
    return decoded(isMarkedBig ? "utf-16be" : converter, bytes.chars());
  }
  const int number = pageNumber(key);
  if (!CodePage::known(number)) return unlabelled(bytes.chars());
  std::u16string units;
  CodePage::numbered(number).append(bytes.chars(), &units);
  return withoutMark(std::move(units));
}

}  // namespace kelspar

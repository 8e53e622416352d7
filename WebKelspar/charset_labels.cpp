// MIME charset labels and their encodings.
#include <algorithm>
#include <array>

#include "StringKelspar/StringKelspar.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"
#include "platform/foundation/scan.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

struct CharsetRow {
  std::u16string_view label;
  NSStringEncoding encoding;  // 0: to be looked up by its name
  std::u16string_view displayName;
};

// Exact match, no aliases: "US-ASCII" is absent on purpose.
constexpr CharsetRow kCharsets[] = {
    {u"ASCII", NSASCIIStringEncoding, u""},
    {u"BIG5", 0, u"Traditional Chinese (Big 5)"},
    {u"EUC-JP", NSJapaneseEUCStringEncoding, u""},
    {u"EUC-KR", 0, u"Korean (EUC)"},
    {u"GB18030", 0, u"Chinese (GB 18030)"},
    {u"GB2312", 0, u"Simplified Chinese (GB 2312)"},
    {u"ISO-8859-1", NSISOLatin1StringEncoding, u""},
    {u"ISO-8859-11", 0, u"Thai (ISO 8859-11)"},
    {u"ISO-8859-2", NSISOLatin2StringEncoding, u""},
    {u"ISO-8859-5", 0, u"Cyrillic (ISO 8859-5)"},
    {u"ISO-8859-6", 0, u"Arabic (ISO 8859-6)"},
    {u"ISO-8859-7", 0, u"Greek (ISO 8859-7)"},
    {u"ISO-8859-8", 0, u"Hebrew (ISO 8859-8)"},
    {u"KOI8-R", 0, u"Cyrillic (KOI8-R)"},
    {u"KOI8-U", 0, u"Ukrainian (KOI8-U)"},
    {u"SHIFT_JIS", 0, u"Japanese (Shift JIS)"},
    {u"UTF-16", NSUnicodeStringEncoding, u""},
    {u"UTF-16BE", NSUTF16BigEndianStringEncoding, u""},
    {u"UTF-16LE", NSUTF16LittleEndianStringEncoding, u""},
    {u"UTF-8", NSUTF8StringEncoding, u""},
    {u"WINDOWS-1250", NSWindowsCP1250StringEncoding, u""},
    {u"WINDOWS-1251", NSWindowsCP1251StringEncoding, u""},
    {u"WINDOWS-1252", NSWindowsCP1252StringEncoding, u""},
    {u"WINDOWS-1253", NSWindowsCP1253StringEncoding, u""},
    {u"WINDOWS-1254", NSWindowsCP1254StringEncoding, u""},
    {u"WINDOWS-1255", 0, u"Hebrew (Windows)"},
    {u"WINDOWS-1256", 0, u"Arabic (Windows)"},
    {u"WINDOWS-1257", 0, u"Baltic (Windows)"},
    {u"WINDOWS-1258", 0, u"Vietnamese (Windows)"},
    {u"WINDOWS-874", 0, u"Thai (Windows, DOS)"},
};
static_assert(std::ranges::adjacent_find(kCharsets, std::ranges::greater_equal{},
                                         &CharsetRow::label) == std::ranges::end(kCharsets),
              "sorted, each label once");
constexpr size_t kLongest = std::ranges::max(kCharsets, {}, [](const CharsetRow& row) {
                              return row.label.size();
                            }).label.size();

using Encodings = std::array<NSStringEncoding, std::size(kCharsets)>;

Encodings resolve() {
  const NSMutableDictionary catalogue = StringKelspar::getStringEncodingsForText();
  Encodings encodings{};
  for (size_t row = 0; row < encodings.size(); ++row) {
    encodings[row] = kCharsets[row].encoding;
    if (encodings[row] != 0) continue;
    const NSNumber number = catalogue.objectForKey(kCharsets[row].displayName).as<NSNumber>();
    encodings[row] = number ? number.unsignedIntValue() : NSUTF8StringEncoding;
  }
  return encodings;
}

NSStringEncoding encodingOfCapitals(std::u16string_view label) {
  static const Encodings encodings = resolve();
  const auto* const row = std::ranges::lower_bound(kCharsets, label, {}, &CharsetRow::label);
  if (row == std::end(kCharsets) || row->label != label) return NSUTF8StringEncoding;
  return encodings[static_cast<size_t>(row - kCharsets)];
}

}  // namespace

NSStringEncoding encodingOfLabel(std::u16string_view label) {
  char16_t capitals[kLongest];
  if (scan::asciiPrefix(label) != label.size())
    return encodingOfCapitals(uppercaseString(NSString(label)));
  if (label.size() > kLongest) return NSUTF8StringEncoding;
  std::ranges::transform(label, capitals, [](char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
  });
  return encodingOfCapitals({capitals, label.size()});
}

NSStringEncoding getCharacterEncodingFromMime(const NSString& receiver) {
  return encodingOfLabel(receiver.view());
}

}  // namespace kelspar::WebKelsparNSStringAdditions

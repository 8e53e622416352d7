// The table of string encodings. Extended numbers are 0x80000000 and the number of the encoding in
// the platform's lower layer.
#include "platform/unicode/encoding_table.h"

#include <algorithm>
#include <iterator>

namespace kelspar {

namespace {

using enum EncodingShape;

// Labels mean more in mail than they say: GB 2312 text holds GBK, EUC-KR text holds Windows-949,
// and ICU's converters of the narrow sets would turn what is beyond them into C1 controls.
constexpr EncodingRow kRows[] = {
    {1, u"Western (ASCII)", ascii, nullptr},
    {2, u"Western (NextStep)", own, nullptr},
    {3, u"Japanese (EUC)", pairs, "euc-jp"},
    {4, u"Unicode (UTF-8)", utf8, nullptr},
    {5, u"Western (ISO Latin 1)", latin1, nullptr},
    {6, u"Symbol (Mac OS)", own, nullptr},
    {8, u"Japanese (Windows, DOS)", pairs, "windows-932"},
    {9, u"Central European (ISO Latin 2)", single, "iso-8859-2"},
    {10, u"Unicode (UTF-16)", utf16, nullptr},
    {11, u"Cyrillic (Windows)", windows, "windows-1251"},
    {12, u"Western (Windows Latin 1)", windows, "windows-1252"},
    {13, u"Greek (Windows)", windows, "windows-1253"},
    {14, u"Turkish (Windows Latin 5)", windows, "windows-1254"},
    {15, u"Central European (Windows Latin 2)", windows, "windows-1250"},
    {21, u"Japanese (ISO 2022-JP)", multi, "iso-2022-jp"},
    {30, u"Western (Mac OS Roman)", single, "macintosh"},
    {0x80000006, u"Greek (Mac OS)", single, "x-mac-greek"},
    {0x80000007, u"Cyrillic (Mac OS)", single, "x-mac-cyrillic"},
    {0x8000001D, u"Central European (Mac OS)", single, "x-mac-centraleurroman"},
    {0x80000023, u"Turkish (Mac OS)", single, "x-mac-turkish"},
    {0x80000203, u"Western (ISO Latin 3)", single, "iso-8859-3"},
    {0x80000204, u"Central European (ISO Latin 4)", single, "iso-8859-4"},
    {0x80000205, u"Cyrillic (ISO 8859-5)", single, "iso-8859-5"},
    {0x80000206, u"Arabic (ISO 8859-6)", single, "iso-8859-6"},
    {0x80000207, u"Greek (ISO 8859-7)", single, "iso-8859-7"},
    {0x80000208, u"Hebrew (ISO 8859-8)", single, "iso-8859-8"},
    {0x80000209, u"Turkish (ISO Latin 5)", single, "iso-8859-9"},
    {0x8000020A, u"Nordic (ISO Latin 6)", single, "iso-8859-10"},
    {0x8000020B, u"Thai (ISO 8859-11)", single, "iso-8859-11"},
    {0x8000020D, u"Baltic (ISO Latin 7)", single, "iso-8859-13"},
    {0x8000020E, u"Celtic (ISO Latin 8)", single, "iso-8859-14"},
    {0x8000020F, u"Western (ISO Latin 9)", single, "iso-8859-15"},
    {0x80000210, u"Romanian (ISO Latin 10)", own, nullptr},
    {0x80000400, u"Latin-US (DOS)", single, "ibm-437"},
    {0x80000405, u"Greek (DOS)", single, "ibm-737"},
    {0x80000406, u"Baltic (DOS)", single, "ibm-775"},
    {0x80000410, u"Western (DOS Latin 1)", single, "ibm-850"},
    {0x80000411, u"Greek (DOS Greek 1)", single, "ibm-851"},
    {0x80000412, u"Central European (DOS Latin 2)", single, "ibm-852"},
    {0x80000413, u"Cyrillic (DOS)", single, "ibm-855"},
    {0x80000414, u"Turkish (DOS)", single, "ibm-857"},
    {0x80000415, u"Portuguese (DOS)", single, "ibm-860"},
    {0x80000416, u"Icelandic (DOS)", single, "ibm-861"},
    {0x80000417, u"Hebrew (DOS)", single, "ibm-862"},
    {0x80000418, u"Canadian French (DOS)", single, "ibm-863"},
    {0x80000419, u"Arabic (DOS)", single, "ibm-864"},
    {0x8000041A, u"Nordic (DOS)", single, "ibm-865"},
    {0x8000041B, u"Russian (DOS)", single, "ibm-866"},
    {0x8000041C, u"Greek (DOS Greek 2)", single, "ibm-869"},
    {0x8000041D, u"Thai (Windows, DOS)", windows, "windows-874"},
    {0x80000421, u"Simplified Chinese (Windows, DOS)", pairs, "windows-936"},
    {0x80000422, u"Korean (Windows, DOS)", pairs, "windows-949"},
    {0x80000423, u"Traditional Chinese (Windows, DOS)", pairs, "windows-950"},
    {0x80000505, u"Hebrew (Windows)", windows, "windows-1255"},
    {0x80000506, u"Arabic (Windows)", windows, "windows-1256"},
    {0x80000507, u"Baltic (Windows)", windows, "windows-1257"},
    {0x80000508, u"Vietnamese (Windows)", windows, "windows-1258"},
    {0x80000510, u"Korean (Windows Johab)", system, "JOHAB"},
    {0x80000628, u"Japanese (Shift JIS X0213)", system, "SHIFT_JISX0213"},
    {0x80000631, u"Chinese (GBK)", pairs, "windows-936"},
    {0x80000632, u"Chinese (GB 18030)", pairs, "gb18030"},
    {0x80000821, u"Japanese (ISO 2022-JP-2)", multi, "ISO_2022,locale=ja,version=2"},
    {0x80000822, u"Japanese (ISO 2022-JP-1)", multi, "ISO_2022,locale=ja,version=1"},
    {0x80000830, u"Chinese (ISO 2022-CN)", multi, "ISO_2022,locale=zh,version=0"},
    {0x80000840, u"Korean (ISO 2022-KR)", multi, "ISO_2022,locale=ko,version=0"},
    {0x80000930, u"Simplified Chinese (GB 2312)", pairs, "windows-936"},
    {0x80000931, u"Traditional Chinese (EUC)", multi, "euc-tw"},
    {0x80000940, u"Korean (EUC)", pairs, "windows-949"},
    {0x80000A01, u"Japanese (Shift JIS)", pairs, "windows-932"},
    {0x80000A02, u"Cyrillic (KOI8-R)", single, "koi8-r"},
    {0x80000A03, u"Traditional Chinese (Big 5)", pairs, "windows-950"},
    {0x80000A05, u"Simplified Chinese (HZ GB 2312)", multi, "HZ"},
    {0x80000A06, u"Traditional Chinese (Big 5 HKSCS)", multi, "big5-hkscs"},
    {0x80000A08, u"Ukrainian (KOI8-U)", single, "koi8-u"},
    {0x80000C02, u"Western (EBCDIC Latin 1)", ebcdic, "ibm-37"},
    {0x84000100, u"Unicode (UTF-7)", multi, "utf-7"},
    {0x8C000100, u"Unicode (UTF-32)", utf32, nullptr},
    {0x90000100, u"Unicode (UTF-16BE)", utf16BE, nullptr},
    {0x94000100, u"Unicode (UTF-16LE)", utf16LE, nullptr},
    {0x98000100, u"Unicode (UTF-32BE)", utf32BE, nullptr},
    {0x9C000100, u"Unicode (UTF-32LE)", utf32LE, nullptr},
};
static_assert(std::ranges::is_sorted(kRows, {}, &EncodingRow::number), "binary search");
static_assert(std::ranges::adjacent_find(kRows, {}, &EncodingRow::number) == std::end(kRows),
              "each number once");

}  // namespace

std::span<const EncodingRow> allEncodings() { return kRows; }

const EncodingRow* encodingRow(NSStringEncoding number) {
  const auto* row = std::ranges::lower_bound(kRows, number, {}, &EncodingRow::number);
  return row != std::end(kRows) && row->number == number ? row : nullptr;
}

}  // namespace kelspar

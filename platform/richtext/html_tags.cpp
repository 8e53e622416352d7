#include "platform/richtext/html_tags.h"

#include <array>
#include <iterator>

namespace kelspar::html {

namespace {

struct Row {
  std::u16string_view name;
  uint32_t traits;
};

// In the order of the enumeration.
// clang-format off
constexpr Row kRows[] = {
    {u"",               0},
    {u"a",              kFormatting},
    {u"abbr",           0},
    {u"address",        kSpecial | kBlock | kClosesP},
    {u"annotation-xml", kSpecial | kScope | kHidden},
    {u"applet",         kSpecial | kScope | kMarker},
    {u"area",           kVoid | kSpecial | kHidden},
    {u"article",        kSpecial | kBlock | kClosesP},
    {u"aside",          kSpecial | kBlock | kClosesP},
    {u"audio",          kHidden},
    {u"b",              kFormatting | kBreakout},
    {u"base",           kVoid | kSpecial | kHidden},
    {u"basefont",       kVoid | kSpecial | kHidden},
    {u"bdi",            0},
    {u"bdo",            0},
    {u"bgsound",        kVoid | kSpecial},
    {u"big",            kFormatting | kBreakout},
    {u"blockquote",     kSpecial | kBlock | kClosesP | kBreakout},
    {u"body",           kSpecial | kBlock | kBreakout},
    {u"br",             kVoid | kSpecial | kBreakout},
    {u"button",         kSpecial},
    {u"canvas",         kHidden},
    {u"caption",        kSpecial | kScope | kBlock | kMarker},
    {u"center",         kSpecial | kBlock | kClosesP | kBreakout},
    {u"cite",           0},
    {u"code",           kFormatting | kBreakout},
    {u"col",            kVoid | kSpecial | kHidden},
    {u"colgroup",       kSpecial | kHidden | kTablePart},
    {u"data",           0},
    {u"datalist",       kHidden},
    {u"dd",             kSpecial | kBlock | kClosesP | kBreakout | kImplied},
    {u"del",            0},
    {u"desc",           kSpecial | kScope | kHidden},
    {u"details",        kSpecial | kBlock | kClosesP},
    {u"dfn",            0},
    {u"dialog",         kBlock | kHidden | kClosesP},
    {u"dir",            kSpecial | kBlock | kClosesP},
    {u"div",            kSpecial | kBlock | kClosesP | kBreakout},
    {u"dl",             kSpecial | kBlock | kClosesP | kBreakout},
    {u"dt",             kSpecial | kBlock | kClosesP | kBreakout | kImplied},
    {u"em",             kFormatting | kBreakout},
    {u"embed",          kVoid | kSpecial | kHidden | kBreakout},
    {u"fieldset",       kSpecial | kBlock | kClosesP},
    {u"figcaption",     kSpecial | kBlock | kClosesP},
    {u"figure",         kSpecial | kBlock | kClosesP},
    {u"font",           kFormatting},
    {u"footer",         kSpecial | kBlock | kClosesP},
    {u"foreignobject",  kSpecial | kScope},
    {u"form",           kSpecial | kBlock | kClosesP},
    {u"frame",          kVoid | kSpecial | kHidden},
    {u"frameset",       kSpecial | kBlock | kHidden},
    {u"h1",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"h2",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"h3",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"h4",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"h5",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"h6",             kSpecial | kBlock | kClosesP | kHeading | kBreakout},
    {u"head",           kSpecial | kHidden | kBreakout},
    {u"header",         kSpecial | kBlock | kClosesP},
    {u"hgroup",         kSpecial | kBlock | kClosesP},
    {u"hr",             kVoid | kSpecial | kBlock | kClosesP | kBreakout},
    {u"html",           kSpecial | kScope | kBlock},
    {u"i",              kFormatting | kBreakout},
    {u"iframe",         kSpecial | kHidden | kRawText},
    {u"image",          kVoid},
    {u"img",            kVoid | kSpecial | kBreakout},
    {u"input",          kVoid | kSpecial},
    {u"ins",            0},
    {u"kbd",            0},
    {u"keygen",         kVoid | kSpecial},
    {u"label",          0},
    {u"legend",         kBlock},
    {u"li",             kSpecial | kBlock | kClosesP | kBreakout | kImplied},
    {u"link",           kVoid | kSpecial | kHidden},
    {u"listing",        kSpecial | kBlock | kClosesP | kBreakout},
    {u"main",           kSpecial | kBlock | kClosesP},
    {u"map",            0},
    {u"mark",           0},
    {u"marquee",        kSpecial | kScope | kMarker},
    {u"math",           0},
    {u"menu",           kSpecial | kBlock | kClosesP | kBreakout},
    {u"meta",           kVoid | kSpecial | kHidden | kBreakout},
    {u"metadata",       kHidden},
    {u"mi",             kSpecial | kScope},
    {u"mn",             kSpecial | kScope},
    {u"mo",             kSpecial | kScope},
    {u"ms",             kSpecial | kScope},
    {u"mtext",          kSpecial | kScope},
    {u"nav",            kSpecial | kBlock | kClosesP},
    {u"nobr",           kFormatting | kBreakout},
    {u"noembed",        kSpecial | kHidden | kRawText},
    {u"noframes",       kSpecial | kHidden | kRawText},
    {u"noscript",       kSpecial},
    {u"object",         kSpecial | kScope | kMarker},
    {u"o:p",            0},
    {u"ol",             kSpecial | kBlock | kClosesP | kBreakout},
    {u"optgroup",       kBlock | kImplied},
    {u"option",         kBlock | kImplied},
    {u"output",         0},
    {u"p",              kSpecial | kBlock | kClosesP | kBreakout | kImplied},
    {u"param",          kVoid | kSpecial | kHidden},
    {u"picture",        0},
    {u"plaintext",      kSpecial | kBlock | kClosesP},
    {u"pre",            kSpecial | kBlock | kClosesP | kBreakout},
    {u"progress",       kHidden},
    {u"q",              0},
    {u"rb",             kImplied},
    {u"rp",             kHidden | kImplied},
    {u"rt",             kImplied},
    {u"rtc",            kImplied},
    {u"ruby",           kBreakout},
    {u"s",              kFormatting | kBreakout},
    {u"samp",           0},
    {u"script",         kSpecial | kHidden | kRawText},
    {u"search",         kSpecial | kBlock | kClosesP},
    {u"section",        kSpecial | kBlock | kClosesP},
    {u"select",         kSpecial | kBlock},
    {u"slot",           0},
    {u"small",          kFormatting | kBreakout},
    {u"source",         kVoid | kSpecial | kHidden},
    {u"span",           kBreakout},
    {u"strike",         kFormatting | kBreakout},
    {u"strong",         kFormatting | kBreakout},
    {u"style",          kSpecial | kHidden | kRawText},
    {u"sub",            kBreakout},
    {u"summary",        kSpecial | kBlock | kClosesP},
    {u"sup",            kBreakout},
    {u"svg",            0},
    {u"table",          kSpecial | kScope | kBlock | kClosesP | kTablePart | kBreakout},
    {u"tbody",          kSpecial | kTablePart},
    {u"td",             kSpecial | kScope | kMarker},
    {u"template",       kSpecial | kScope | kHidden | kMarker},
    {u"textarea",       kSpecial | kBlock | kEscapableText},
    {u"tfoot",          kSpecial | kTablePart},
    {u"th",             kSpecial | kScope | kMarker},
    {u"thead",          kSpecial | kTablePart},
    {u"time",           0},
    {u"title",          kSpecial | kHidden | kEscapableText},
    {u"tr",             kSpecial | kTablePart},
    {u"track",          kVoid | kSpecial | kHidden},
    {u"tt",             kFormatting | kBreakout},
    {u"u",              kFormatting | kBreakout},
    {u"ul",             kSpecial | kBlock | kClosesP | kBreakout},
    {u"var",            kBreakout},
    {u"video",          kHidden},
    {u"wbr",            kVoid | kSpecial},
    {u"xmp",            kSpecial | kBlock | kClosesP | kRawText},
    {u"defs",           kHidden},
    {u"",               0},  // count and unknown
};
// clang-format on
static_assert(std::size(kRows) == static_cast<size_t>(Tag::count) + 1);

constexpr size_t kSlots = 1024;
constexpr size_t kLongestName = 16;

constexpr char16_t lower(char16_t c) { return c >= u'A' && c <= u'Z' ? c + 0x20 : c; }

constexpr size_t slotOf(std::u16string_view name) {
  uint32_t hash = static_cast<uint32_t>(name.size());
  for (const char16_t c : name) hash = hash * 31 + lower(c);
  return (hash ^ (hash >> 10)) % kSlots;
}

constexpr std::array<uint8_t, kSlots> slots() {
  std::array<uint8_t, kSlots> table{};
  for (size_t i = 1; i < static_cast<size_t>(Tag::count); ++i) {
    size_t slot = slotOf(kRows[i].name);
    while (table[slot] != 0) slot = (slot + 1) % kSlots;
    table[slot] = static_cast<uint8_t>(i);
  }
  return table;
}
constexpr auto kTable = slots();
static_assert(static_cast<size_t>(Tag::count) < 256);

}  // namespace

Tag tagNamed(std::u16string_view name) {
  if (name.size() > kLongestName) return Tag::unknown;
  for (size_t slot = slotOf(name); kTable[slot] != 0; slot = (slot + 1) % kSlots) {
    if (equalsIgnoringCase(name, kRows[kTable[slot]].name)) return static_cast<Tag>(kTable[slot]);
  }
  return Tag::unknown;
}

std::u16string_view nameOf(Tag tag) { return kRows[static_cast<size_t>(tag)].name; }

constexpr std::array<uint32_t, std::size(kRows)> kTraitsOfTags = [] {
  std::array<uint32_t, std::size(kRows)> traits{};
  for (size_t i = 0; i < std::size(kRows); ++i) traits[i] = kRows[i].traits;
  return traits;
}();

}  // namespace kelspar::html

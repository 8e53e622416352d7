#include "platform/richtext/html_colors.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/foundation/hex.h"
#include "platform/richtext/html_tags.h"

namespace kelspar::html {

namespace {

struct Named {
  std::u16string_view name;
  uint32_t rgb;
};

// CSS Color 4, 6.1; "windowtext" is what word processors write for black. Sorted by name.
// clang-format off
constexpr Named kNamed[] = {
    {u"aliceblue", 0xF0F8FF}, {u"antiquewhite", 0xFAEBD7}, {u"aqua", 0x00FFFF},
    {u"aquamarine", 0x7FFFD4}, {u"azure", 0xF0FFFF}, {u"beige", 0xF5F5DC},
    {u"bisque", 0xFFE4C4}, {u"black", 0x000000}, {u"blanchedalmond", 0xFFEBCD},
    {u"blue", 0x0000FF}, {u"blueviolet", 0x8A2BE2}, {u"brown", 0xA52A2A},
    {u"burlywood", 0xDEB887}, {u"cadetblue", 0x5F9EA0}, {u"chartreuse", 0x7FFF00},
    {u"chocolate", 0xD2691E}, {u"coral", 0xFF7F50}, {u"cornflowerblue", 0x6495ED},
    {u"cornsilk", 0xFFF8DC}, {u"crimson", 0xDC143C}, {u"cyan", 0x00FFFF},
    {u"darkblue", 0x00008B}, {u"darkcyan", 0x008B8B}, {u"darkgoldenrod", 0xB8860B},
    {u"darkgray", 0xA9A9A9}, {u"darkgreen", 0x006400}, {u"darkgrey", 0xA9A9A9},
    {u"darkkhaki", 0xBDB76B}, {u"darkmagenta", 0x8B008B}, {u"darkolivegreen", 0x556B2F},
    {u"darkorange", 0xFF8C00}, {u"darkorchid", 0x9932CC}, {u"darkred", 0x8B0000},
    {u"darksalmon", 0xE9967A}, {u"darkseagreen", 0x8FBC8F}, {u"darkslateblue", 0x483D8B},
    {u"darkslategray", 0x2F4F4F}, {u"darkslategrey", 0x2F4F4F}, {u"darkturquoise", 0x00CED1},
    {u"darkviolet", 0x9400D3}, {u"deeppink", 0xFF1493}, {u"deepskyblue", 0x00BFFF},
    {u"dimgray", 0x696969}, {u"dimgrey", 0x696969}, {u"dodgerblue", 0x1E90FF},
    {u"firebrick", 0xB22222}, {u"floralwhite", 0xFFFAF0}, {u"forestgreen", 0x228B22},
    {u"fuchsia", 0xFF00FF}, {u"gainsboro", 0xDCDCDC}, {u"ghostwhite", 0xF8F8FF},
    {u"gold", 0xFFD700}, {u"goldenrod", 0xDAA520}, {u"gray", 0x808080},
    {u"green", 0x008000}, {u"greenyellow", 0xADFF2F}, {u"grey", 0x808080},
    {u"honeydew", 0xF0FFF0}, {u"hotpink", 0xFF69B4}, {u"indianred", 0xCD5C5C},
    {u"indigo", 0x4B0082}, {u"ivory", 0xFFFFF0}, {u"khaki", 0xF0E68C},
    {u"lavender", 0xE6E6FA}, {u"lavenderblush", 0xFFF0F5}, {u"lawngreen", 0x7CFC00},
    {u"lemonchiffon", 0xFFFACD}, {u"lightblue", 0xADD8E6}, {u"lightcoral", 0xF08080},
    {u"lightcyan", 0xE0FFFF}, {u"lightgoldenrodyellow", 0xFAFAD2}, {u"lightgray", 0xD3D3D3},
    {u"lightgreen", 0x90EE90}, {u"lightgrey", 0xD3D3D3}, {u"lightpink", 0xFFB6C1},
    {u"lightsalmon", 0xFFA07A}, {u"lightseagreen", 0x20B2AA}, {u"lightskyblue", 0x87CEFA},
    {u"lightslategray", 0x778899}, {u"lightslategrey", 0x778899}, {u"lightsteelblue", 0xB0C4DE},
    {u"lightyellow", 0xFFFFE0}, {u"lime", 0x00FF00}, {u"limegreen", 0x32CD32},
    {u"linen", 0xFAF0E6}, {u"magenta", 0xFF00FF}, {u"maroon", 0x800000},
    {u"mediumaquamarine", 0x66CDAA}, {u"mediumblue", 0x0000CD}, {u"mediumorchid", 0xBA55D3},
    {u"mediumpurple", 0x9370DB}, {u"mediumseagreen", 0x3CB371}, {u"mediumslateblue", 0x7B68EE},
    {u"mediumspringgreen", 0x00FA9A}, {u"mediumturquoise", 0x48D1CC}, {u"mediumvioletred", 0xC71585},
    {u"midnightblue", 0x191970}, {u"mintcream", 0xF5FFFA}, {u"mistyrose", 0xFFE4E1},
    {u"moccasin", 0xFFE4B5}, {u"navajowhite", 0xFFDEAD}, {u"navy", 0x000080},
    {u"oldlace", 0xFDF5E6}, {u"olive", 0x808000}, {u"olivedrab", 0x6B8E23},
    {u"orange", 0xFFA500}, {u"orangered", 0xFF4500}, {u"orchid", 0xDA70D6},
    {u"palegoldenrod", 0xEEE8AA}, {u"palegreen", 0x98FB98}, {u"paleturquoise", 0xAFEEEE},
    {u"palevioletred", 0xDB7093}, {u"papayawhip", 0xFFEFD5}, {u"peachpuff", 0xFFDAB9},
    {u"peru", 0xCD853F}, {u"pink", 0xFFC0CB}, {u"plum", 0xDDA0DD},
    {u"powderblue", 0xB0E0E6}, {u"purple", 0x800080}, {u"rebeccapurple", 0x663399},
    {u"red", 0xFF0000}, {u"rosybrown", 0xBC8F8F}, {u"royalblue", 0x4169E1},
    {u"saddlebrown", 0x8B4513}, {u"salmon", 0xFA8072}, {u"sandybrown", 0xF4A460},
    {u"seagreen", 0x2E8B57}, {u"seashell", 0xFFF5EE}, {u"sienna", 0xA0522D},
    {u"silver", 0xC0C0C0}, {u"skyblue", 0x87CEEB}, {u"slateblue", 0x6A5ACD},
    {u"slategray", 0x708090}, {u"slategrey", 0x708090}, {u"snow", 0xFFFAFA},
    {u"springgreen", 0x00FF7F}, {u"steelblue", 0x4682B4}, {u"tan", 0xD2B48C},
    {u"teal", 0x008080}, {u"thistle", 0xD8BFD8}, {u"tomato", 0xFF6347},
    {u"turquoise", 0x40E0D0}, {u"violet", 0xEE82EE}, {u"wheat", 0xF5DEB3},
    {u"white", 0xFFFFFF}, {u"whitesmoke", 0xF5F5F5}, {u"windowtext", 0x000000},
    {u"yellow", 0xFFFF00}, {u"yellowgreen", 0x9ACD32},
};
// clang-format on
static_assert(std::ranges::adjacent_find(kNamed, std::ranges::greater_equal{}, &Named::name) ==
              std::ranges::end(kNamed));
constexpr size_t kLongestName = 20;

NSColor fromRGB(uint32_t rgb) {
  return {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8),
          static_cast<uint8_t>(rgb)};
}

// 3, 4, 6 or 8 digits; the fourth or last pair is the alpha.
std::optional<NSColor> fromHex(std::u16string_view digits) {
  if (digits.size() != 3 && digits.size() != 4 && digits.size() != 6 && digits.size() != 8) {
    return {};
  }
  const bool isShort = digits.size() <= 4;
  std::array<int, 4> parts{0, 0, 0, 255};
  for (size_t i = 0; i < digits.size(); ++i) {
    const int digit = hexValue(digits[i]);
    if (digit < 0) return {};
    if (isShort) {
      parts[i] = digit * 17;
    } else {
      parts[i / 2] = i % 2 == 0 ? digit : parts[i / 2] * 16 + digit;
    }
  }
  if (parts[3] == 0) return {};
  return NSColor{static_cast<uint8_t>(parts[0]), static_cast<uint8_t>(parts[1]),
                 static_cast<uint8_t>(parts[2])};
}

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The numbers inside "rgb(...)": three, or four with an alpha, percentages allowed.
std::optional<NSColor> fromFunction(std::u16string_view inside) {
  std::array<double, 4> parts{0, 0, 0, 1};
  size_t count = 0;
  for (size_t at = 0; at < inside.size() && count < 4;) {
    if (!isDigit(inside[at]) && inside[at] != u'.') {
      ++at;
      continue;
    }
    double value = 0, place = 1;
    bool behindPoint = false;
    for (; at < inside.size() && (isDigit(inside[at]) || inside[at] == u'.'); ++at) {
      if (inside[at] == u'.') {
        behindPoint = true;
      } else if (behindPoint) {
        value += (inside[at] - u'0') * (place /= 10);
      } else {
        value = std::min(value * 10 + (inside[at] - u'0'), 1e6);
      }
    }
    if (at < inside.size() && inside[at] == u'%') value *= count < 3 ? 2.55 : 0.01;
    parts[count++] = value;
  }
  if (count < 3 || parts[3] == 0) return {};
  const auto part = [&](size_t i) { return static_cast<uint8_t>(std::min(parts[i] + 0.5, 255.0)); };
  return NSColor{part(0), part(1), part(2)};
}

std::u16string_view trimmed(std::u16string_view text) {
  while (!text.empty() && text.front() <= u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() <= u' ') text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<NSColor> colorNamed(std::u16string_view text) {
  text = trimmed(text);
  if (text.starts_with(u'#')) return fromHex(text.substr(1));
  for (const std::u16string_view function : {u"rgb(", u"rgba("}) {
    if (equalsIgnoringCase(text.substr(0, function.size()), function)) {
      return fromFunction(text.substr(function.size()));
    }
  }
  if (text.size() > kLongestName) return {};
  std::u16string name(text);
  for (char16_t& c : name) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
  const auto* found = std::ranges::lower_bound(kNamed, name, {}, &Named::name);
  if (found == std::end(kNamed) || found->name != name) return {};
  return fromRGB(found->rgb);
}

std::optional<NSColor> legacyColor(std::u16string_view text) {
  const auto color = colorNamed(text);
  return color ? color : fromHex(trimmed(text));
}

}  // namespace kelspar::html

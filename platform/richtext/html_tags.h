// The elements of HTML by name, and what the rules want to know of each. Internal to the library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelspar::html {

// What an element is to the tokenizer, to the tree rules and to layout.
enum TagTrait : uint32_t {
  kVoid = 1u << 0,           // has no content and no end tag
  kFormatting = 1u << 1,     // comes back behind a block that it was left open in
  kSpecial = 1u << 2,        // stops the search for an inline element's start (13.2.4.2)
  kScope = 1u << 3,          // ends the scope of what is open outside it
  kBlock = 1u << 4,          // stands on lines of its own
  kHidden = 1u << 5,         // "display: none" by nature
  kClosesP = 1u << 6,        // its start ends an open paragraph
  kTablePart = 1u << 7,      // table, tbody, thead, tfoot, tr: text in it stands before the table
  kRawText = 1u << 8,        // tags in it are text
  kEscapableText = 1u << 9,  // tags in it are text, references are not
  kHeading = 1u << 10,
  kMarker = 1u << 11,    // formatting opened outside does not come back inside
  kBreakout = 1u << 12,  // ends SVG and MathML (13.2.6.5)
  kImplied = 1u << 13,   // its end is implied by an end further out
};

enum class Tag : uint16_t {
  // clang-format off
  none,
  a, abbr, address, annotationXml, applet, area, article, aside, audio, b, base, basefont, bdi, bdo,
  bgsound, big, blockquote, body, br, button, canvas, caption, center, cite, code, col, colgroup,
  data, datalist, dd, del, desc, details, dfn, dialog, dir, div, dl, dt, em, embed, fieldset,
  figcaption, figure, font, footer, foreignObject, form, frame, frameset, h1, h2, h3, h4, h5, h6,
  head, header, hgroup, hr, html, i, iframe, image, img, input, ins, kbd, keygen, label, legend, li,
  link, listing, main, map, mark, marquee, math, menu, meta, metadata, mi, mn, mo, ms, mtext, nav,
  nobr, noembed, noframes, noscript, object, oP, ol, optgroup, option, output, p, param, picture,
  plaintext, pre, progress, q, rb, rp, rt, rtc, ruby, s, samp, script, search, section, select,
  slot, small, source, span, strike, strong, style, sub, summary, sup, svg, table, tbody, td,
  template_, textarea, tfoot, th, thead, time, title, tr, track, tt, u, ul, var, video, wbr, xmp,
  defs,
  count,
  unknown = count
  // clang-format on
};

// The element of that name, letters in either case; Tag::unknown for a name that is none.
[[nodiscard]] Tag tagNamed(std::u16string_view name);
// Lower case; empty for none and unknown.
[[nodiscard]] std::u16string_view nameOf(Tag tag);
extern const std::array<uint32_t, static_cast<size_t>(Tag::count) + 1> kTraitsOfTags;
[[nodiscard]] inline uint32_t traitsOf(Tag tag) { return kTraitsOfTags[static_cast<size_t>(tag)]; }

inline bool has(Tag tag, uint32_t traits) { return (traitsOf(tag) & traits) != 0; }

// ASCII letters of either case are equal; `lower` is in lower case.
[[nodiscard]] inline bool equalsIgnoringCase(std::u16string_view text, std::u16string_view lower) {
  if (text.size() != lower.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if ((c >= u'A' && c <= u'Z' ? c + 0x20 : c) != lower[i]) return false;
  }
  return true;
}

}  // namespace kelspar::html

// Safe HTML, read into tokens again: elements, attributes and addresses are on lists kept here
// apart from the writer's, style sheets call for nothing, every element is closed, the text that
// was shown is there, and what is safe stays as it is.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "MailKelspar/MailKelspar.h"
#include "platform/richtext/html_tokenizer.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

std::u16string lowerCase(std::u16string_view text) {
  std::u16string lower(text);
  for (char16_t& c : lower) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
  return lower;
}

bool holds(std::u16string_view text, std::u16string_view part) {
  return text.find(part) != text.npos;
}

// Elements that run, fetch, send, frame, or change how what is behind them is read.
constexpr std::u16string_view kUnsafeElements[] = {
    u"script", u"iframe", u"frame",    u"frameset",  u"object", u"embed",    u"applet",   u"form",
    u"input",  u"button", u"textarea", u"select",    u"option", u"link",     u"meta",     u"base",
    u"svg",    u"math",   u"template", u"noscript",  u"xmp",    u"noembed",  u"noframes", u"audio",
    u"video",  u"source", u"track",    u"plaintext", u"title",  u"listing",  u"picture",  u"portal",
    u"dialog", u"html",   u"head",     u"body",      u"area",   u"isindex",  u"keygen",   u"image",
    u"slot",   u"canvas", u"marquee",  u"bgsound",   u"layer",  u"multicol", u"param",    u"map",
};

// Declarations, or a style sheet of which only rules without "@" are left.
void checkStyle(std::u16string_view css) {
  check(css.find_first_of(u"@\\<&") == css.npos && !holds(css, u"/*"));
  const std::u16string lower = lowerCase(css);
  for (const char16_t* call : {u"url(", u"expression(", u"image(", u"image-set(", u"element(",
                               u"src(", u"var(", u"attr(", u"env("}) {
    check(!holds(lower, call));
  }
  for (const char16_t* property : {u"position:", u"behavior:", u"-moz-binding:", u"content:",
                                   u"background:", u"background-image:", u"cursor:", u"filter:"}) {
    check(!lower.starts_with(property));
    check(!holds(lower, std::u16string(u"{ ") + property));
    check(!holds(lower, std::u16string(u"; ") + property));
  }
}

void checkAddress(std::u16string_view name, std::u16string_view value) {
  const auto schemes = name == u"src"
                           ? std::array<std::u16string_view, 6>{u"cid:", u"data:image/"}
                           : std::array<std::u16string_view, 6>{u"http:", u"https:", u"mailto:",
                                                                u"tel:",  u"ftp:",   u"cid:"};
  const std::u16string lower = lowerCase(value);
  check(std::ranges::any_of(schemes, [&](std::u16string_view scheme) {
    return !scheme.empty() && std::u16string_view(lower).starts_with(scheme);
  }));
  check(!lower.starts_with(u"data:image/svg"));
}

void checkAttribute(html::Tag tag, const html::Attribute& attribute) {
  const std::u16string_view name = attribute.name;
  check(std::ranges::all_of(name, [](char16_t c) { return c >= u'a' && c <= u'z'; }));
  check(!name.starts_with(u"on") && name != u"srcdoc" && name != u"srcset" && name != u"id" &&
        name != u"background" && name != u"action" && name != u"formaction" && name != u"ping");
  check(!holds(attribute.raw, u"<") && !holds(attribute.raw, u">"));
  if (name == u"style") checkStyle(attribute.value());
  if (name != u"href" && name != u"src") return;
  check(tag == (name == u"href" ? html::Tag::a : html::Tag::img));
  checkAddress(name, attribute.value());
}

void checkTokens(std::u16string_view html) {
  using Kind = html::Token::Kind;
  html::Tokenizer tokens(html);
  std::array<int64_t, static_cast<size_t>(html::Tag::count)> open{};
  bool inStyle = false;
  for (;;) {
    const html::Token& token = tokens.next();
    if (token.kind == Kind::end) break;
    if (token.kind == Kind::text) {
      if (inStyle) checkStyle(token.text);
      continue;
    }
    check(token.kind == Kind::startTag || token.kind == Kind::endTag);
    check(token.tag < html::Tag::count);
    const std::u16string_view name = token.text;
    check(std::ranges::find(kUnsafeElements, name) == std::end(kUnsafeElements));
    if (token.tag == html::Tag::style) inStyle = token.kind == Kind::startTag;
    int64_t& count = open[static_cast<size_t>(token.tag)];
    if (token.kind == Kind::endTag) check(--count >= 0);
    if (token.kind != Kind::startTag) continue;
    if (!html::has(token.tag, html::kVoid)) ++count;
    for (const html::Attribute& each : tokens.attributes()) checkAttribute(token.tag, each);
  }
  check(std::ranges::all_of(open, [](int64_t count) { return count == 0; }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString html(std::string_view(reinterpret_cast<const char*>(bytes), size));
  const NSDictionary safe = MailKelspar::safeHTML(html);
  const NSString once = safe.objectForKey<NSString>(u"html");
  check(static_cast<bool>(once));
  check(safe.objectForKey<NSNumber>(u"removed").intValue() >= 0);
  checkTokens(once.view());
  const NSDictionary twice = MailKelspar::safeHTML(once);
  check(twice.objectForKey<NSString>(u"html") == once);
  check(twice.objectForKey<NSNumber>(u"removed").intValue() == 0);
  return 0;
}

// The stated steps of the decoders, word for word: what the tests and the fuzz targets hold the
// fast forms to. Not part of the library.
#pragma once

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSPredicate.h"
#include "platform/unicode/NSRegularExpression.h"
#include "platform/unicode/NSScanner.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {

inline NSString literalQuotedPrintable(const NSString& receiver, NSStringEncoding encoding) {
  NSMutableString text(receiver.view());
  text.replaceOccurrences(u"=\r\n", u"");
  text.replaceOccurrences(u"=\n", u"");
  text.replaceOccurrences(u"%", u"%25");
  text.replaceOccurrences(u"=", u"%");
  text.replaceOccurrences(u"%C2%A0", u" ");
  const NSString escaped = text.copy();
  using StringKelsparNSStringAdditions::decodedStringFromPercentEscapesUsingEncoding;
  const NSString decoded = decodedStringFromPercentEscapesUsingEncoding(escaped, encoding);
  return decoded ? decoded : forceQuotedPrintableDecode(escaped);
}

inline NSString literallyCreatedQuotedPrintable(const NSString& receiver) {
  std::string out;
  for (const char byte : receiver.utf8()) {
    if (byte == 0) break;
    const auto value = static_cast<uint8_t>(byte);
    char text[8];
    std::snprintf(text, sizeof text, value == 10 || (value >= 32 && value <= 126) ? "%c" : "=%X%X",
                  value == 10 || (value >= 32 && value <= 126) ? value : value >> 4, value & 15);
    out += text;
  }
  return stringByTrimming(NSString(out), NSCharacterSet::whitespaceAndNewline());
}

inline NSString literalHeader(const NSString& receiver) {
  static const auto pattern = NSRegularExpression::withPattern(
      u"=\\?(.*?)\\?=(?!\\S)", NSRegularExpression::caseInsensitive);
  const std::u16string_view text = receiver.view();
  std::u16string out;
  size_t previous = 0;
  const auto matches = pattern.matches(text);
  for (const auto& match : matches) {
    out += text.substr(previous, match[0].location - previous);
    previous = match[0].location + match[0].length;
    std::vector<NSString> pieces{u""_ns};
    for (const char16_t unit : text.substr(match[1].location, match[1].length)) {
      if (unit == u'?')
        pieces.push_back(u""_ns);
      else
        pieces.back() = NSString(std::u16string(pieces.back().view()) + unit);
    }
    if (pieces.size() != 3) continue;
    const NSStringEncoding encoding = getCharacterEncodingFromMime(pieces[0]);
    const NSString letter = uppercaseString(pieces[1]);
    if (letter == u"B"_ns) out += base64DecodeWithEncoding(pieces[2], encoding).view();
    if (letter == u"Q"_ns) out += quotedPrintableDecodeWithEncoding(pieces[2], encoding).view();
  }
  if (matches.empty()) return receiver;
  out += text.substr(previous);
  return NSString(out);
}

inline NSString literalFormattingTags(const NSString& text) {
  static const auto pattern =
      NSRegularExpression::withPattern(u"&amp;(.*?);", NSRegularExpression::caseInsensitive);
  NSString result = text;
  for (const auto& match : pattern.matches(text)) {
    NSMutableString body(text.view().substr(match[1].location, match[1].length));
    body.replaceOccurrences(u"#", u"");
    NSScanner scanner(body.copy());
    int64_t value = 0;
    if (!scanner.scanInteger(&value) || scanner.scanLocation() != body.length() || value < 1)
      continue;
    const auto unit = static_cast<char16_t>(value);
    result = stringByReplacingCaseInsensitive(
        result, text.view().substr(match[0].location, match[0].length), {&unit, 1});
  }
  return result;
}

// The patterns in their order, compiled once.
struct StrippingStep {
  NSRegularExpression pattern;
  std::u16string_view replacement;
};
inline const std::vector<StrippingStep>& strippingSteps() {
  static const std::vector<StrippingStep> steps = [] {
    constexpr auto kAnyCase = NSRegularExpression::caseInsensitive;
    std::vector<StrippingStep> made{
        {NSRegularExpression::withPattern(u"<!--[\\s\\S]*?-->"), u""},
        {NSRegularExpression::withPattern(u"<(style|script)[^>]*?>[\\s\\S]*?</\\1>", kAnyCase),
         u""}};
    for (const char16_t* tag : {u"p", u"div", u"br", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6",
                                u"li", u"ul", u"ol", u"blockquote", u"pre"}) {
      const std::u16string pattern = u"</?" + std::u16string(tag) + u"[^>]*>";
      made.push_back({NSRegularExpression::withPattern(NSString(pattern), kAnyCase), u"\n"});
    }
    made.push_back({NSRegularExpression::withPattern(u"<[^>]+>"), u""});
    return made;
  }();
  return steps;
}

inline NSString literalStripping(NSString text) {
  for (const StrippingStep& step : strippingSteps()) {
    text = step.pattern.stringByReplacingMatches(text, step.replacement);
  }
  constexpr std::pair<const char16_t*, const char16_t*> kEntities[] = {
      {u"&amp;", u"&"},        {u"&apos;", u"'"},        {u"&copy;", u"\u00A9"},
      {u"&gt;", u">"},         {u"&hellip;", u"\u2026"}, {u"&ldquo;", u"\u201C"},
      {u"&lsquo;", u"\u2018"}, {u"&lt;", u"<"},          {u"&mdash;", u"\u2014"},
      {u"&nbsp;", u" "},       {u"&ndash;", u"\u2013"},  {u"&quot;", u"\""},
      {u"&rdquo;", u"\u201D"}, {u"&reg;", u"\u00AE"},    {u"&rsquo;", u"\u2019"},
      {u"&trade;", u"\u2122"}};
  for (const auto& [entity, by] : kEntities) {
    text = stringByReplacingCaseInsensitive(text, entity, by);
  }
  return text;
}

// The quoted part takes U+0020 as well.
inline constexpr const char16_t* kAddressPattern =
    uR"((?:[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+(?:\.[a-z0-9!#$%\&'*+/=?\^_`{|}~-]+)*|"(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x20\x21\x23-\x5b\x5d-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])*")@(?:(?:[a-z0-9](?:[a-z0-9-]*[a-z0-9])?\.)+[a-z0-9](?:[a-z0-9-]*[a-z0-9])?|\[(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?|[a-z0-9-]*[a-z0-9]:(?:[\x01-\x08\x0b\x0c\x0e-\x1f\x21-\x5a\x53-\x7f]|\\[\x01-\x09\x0b\x0c\x0e-\x7f])+)\]))";

inline bool literallyValid(const NSString& text) {
  static const auto pattern = NSPredicate::matches(kAddressPattern, NSPredicate::caseInsensitive);
  return pattern.evaluate(text);
}

}  // namespace kelspar::WebKelsparNSStringAdditions

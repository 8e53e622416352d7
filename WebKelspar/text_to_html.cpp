// Plain text as an HTML fragment.
#include "WebKelspar/WebKelsparNSStringAdditions.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

// What a unit is escaped as; empty for most.
constexpr std::u16string_view escapeOf(char16_t unit) {
  switch (unit) {
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'"':
      return u"&quot;";
    case u'\'':
      return u"&#39;";
    default:
      return {};
  }
}

void appendEscaped(char16_t unit, std::u16string& out) {
  const std::u16string_view escape = escapeOf(unit);
  if (escape.empty()) {
    out.push_back(unit);
  } else {
    out.append(escape);
  }
}

std::u16string flowing(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size() + text.size() / 4);
  for (size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    const char16_t next = at + 1 < text.size() ? text[at + 1] : u'\0';
    if (unit == u'\r' || unit == u'\n') {
      out.append(u"<br>");
      if (unit == u'\r' && next == u'\n') ++at;
    } else if (unit == u'\t') {
      out.append(u"&nbsp;&nbsp;&nbsp;&nbsp;");
    } else if (unit == u' ' && next == u' ') {
      out.append(u" &nbsp;");
      ++at;
    } else {
      appendEscaped(unit, out);
    }
  }
  return out;
}

std::u16string digits(int64_t number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

}  // namespace

NSString stringByConvertingToHTML(const NSString& receiver) {
  return stringByConvertingToHTMLWithWrapAtColumn(receiver, 0);
}

NSString stringByConvertingToHTMLWithWrapAtColumn(const NSString& receiver, int64_t column) {
  if (receiver.isEmpty()) return u""_ns;
  std::u16string html = flowing(receiver.view());
  if (column < 1) return NSString(std::move(html));
  return NSString(u"<div style=\"max-width: " + digits(column) +
                  u"ch; word-wrap: break-word; overflow-wrap: break-word; "
                  u"white-space: pre-wrap;\">" +
                  html + u"</div>");
}

NSString stringByConvertingToHTMLWithPreTag(const NSString& receiver) {
  return stringByConvertingToHTMLWithPreTagAndWrapAtColumn(receiver, 0);
}

NSString stringByConvertingToHTMLWithPreTagAndWrapAtColumn(const NSString& receiver,
                                                           int64_t column) {
  if (receiver.isEmpty()) return u"<pre></pre>"_ns;
  std::u16string html = u"<pre>";
  if (column >= 1) {
    html = u"<pre style=\"max-width: " + digits(column) +
           u"ch; white-space: pre-wrap; word-wrap: break-word; overflow-wrap: break-word;\">";
  }
  html.reserve(html.size() + receiver.length() + receiver.length() / 4);
  for (const char16_t unit : receiver.view()) appendEscaped(unit, html);
  html.append(u"</pre>");
  return NSString(std::move(html));
}

}  // namespace kelspar::WebKelsparNSStringAdditions

// Text out of bodies, and HTML files told from other ones.
#include "host/body_text.h"

#include "MailKelspar/MailKelspar.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"

namespace kelspar::host {

namespace {

bool hasNameOfHTML(std::string name) {
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  return name.ends_with(".html") || name.ends_with(".htm");
}

// Cc of Unicode: what terminals obey.
bool isControl(char16_t c) { return c < u' ' || (c >= 0x7F && c < 0xA0); }

// A tag, a document type or a comment: parts of pages have no more to tell them by.
bool startsWithTag(std::string_view bytes) {
  if (bytes.size() < 2 || bytes[0] != '<') return false;
  return bytes[1] == '!' || ((bytes[1] | 0x20) >= 'a' && (bytes[1] | 0x20) <= 'z');
}

}  // namespace

std::string oneLine(const NSString& text) {
  std::u16string plain(text.view());
  for (char16_t& c : plain) {
    if (isControl(c)) c = u' ';
  }
  return NSString(std::move(plain)).utf8();
}

std::string plainLines(const NSString& text) {
  std::u16string plain;
  const std::u16string_view units = text.view();
  for (size_t i = 0; i < units.size(); ++i) {
    const char16_t c = units[i];
    if (c == u'\r') {
      if (i + 1 == units.size() || units[i + 1] != u'\n') plain += u'\n';
    } else if (c == u'\v' || c == u'\u0085' || c == u'\u2028' || c == u'\u2029') {
      plain += u'\n';
    } else if (c == u'\t' || c == u'\n' || c == u'\f' || !isControl(c)) {
      plain += c;
    }
  }
  while (!plain.empty() && plain.back() == u'\n') plain.pop_back();
  std::string utf8 = NSString(std::move(plain)).utf8();
  if (!utf8.empty()) utf8 += '\n';
  return utf8;
}

std::string linesOfHTML(const NSString& html) {
  namespace Web = WebKelsparNSStringAdditions;
  NSString text = Web::stringByStrippingHTML(html);
  if (text.isEmpty() && !html.isEmpty()) text = Web::stringByStrippingHTML(NSString(html.utf8()));
  return plainLines(text);
}

bool isHTMLInput(const NSData& input, const std::string& name) {
  if (hasNameOfHTML(name)) return true;
  constexpr std::string_view kBigEndian("\xFE\xFF\0<", 4);
  const std::string_view bytes = input.chars();
  if (bytes.starts_with("\xFF\xFE<") || bytes.starts_with(kBigEndian)) return true;
  const size_t start = bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  if (start == bytes.npos) return false;
  return startsWithTag(bytes.substr(start)) ||
         StringKelsparNSStringAdditions::isHTML(htmlOfInput(input, ""));
}

NSString htmlOfInput(const NSData& input, const std::string& charset) {
  return MailKelspar::textFromData(
      input, charset.empty() ? MailKelspar::charsetDeclaredByHTML(input) : NSString(charset));
}

}  // namespace kelspar::host

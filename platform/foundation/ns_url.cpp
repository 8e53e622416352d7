// NSURL: the checks of RFC 3986 on a URL's text, and the paths of "file:" URLs.
#include "platform/foundation/NSURL.h"
#include "platform/foundation/hex.h"

#include <algorithm>
#include <string>

namespace kelspar {

const NSKind NSURL::kKind{"NSURL"};

namespace {

constexpr std::u16string_view kSubDelims = u"!$&'()*+,;=";

bool isAlpha(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isHex(char16_t c) { return hexValue(c) >= 0; }
bool isUnreserved(char16_t c) {
  return c < 0x80 && (isAlpha(c) || isDigit(c) || c == u'-' || c == u'.' || c == u'_' || c == u'~');
}

// Letters of `text` are pchar (RFC 3986, 3.3), escapes whole, or of `more`.
bool allowed(std::u16string_view text, std::u16string_view more) {
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'%') {
      if (i + 2 >= text.size() || !isHex(text[i + 1]) || !isHex(text[i + 2])) return false;
      i += 2;
    } else if (!isUnreserved(c) && kSubDelims.find(c) == kSubDelims.npos && c != u':' &&
               c != u'@' && more.find(c) == more.npos) {
      return false;
    }
  }
  return true;
}

bool isScheme(std::u16string_view text) {
  return !text.empty() && text[0] < 0x80 && isAlpha(text[0]) &&
         std::ranges::all_of(text, [](char16_t c) {
           return c < 0x80 && (isAlpha(c) || isDigit(c) || c == u'+' || c == u'-' || c == u'.');
         });
}

// userinfo "@" host ":" port; brackets only around a host literal.
bool isAuthority(std::u16string_view text) {
  const size_t at = text.rfind(u'@');
  if (at != text.npos) {
    if (!allowed(text.substr(0, at), u"")) return false;
    text.remove_prefix(at + 1);
  }
  if (!text.starts_with(u'[')) return allowed(text, u"");
  const size_t close = text.find(u']');
  if (close == text.npos || !allowed(text.substr(1, close - 1), u"")) return false;
  const auto port = text.substr(close + 1);
  return port.empty() || (port[0] == u':' && std::ranges::all_of(port.substr(1), isDigit));
}

bool isURL(std::u16string_view text) {
  const size_t hash = text.find(u'#');
  if (hash != text.npos) {
    if (!allowed(text.substr(hash + 1), u"/?")) return false;
    text = text.substr(0, hash);
  }
  const size_t question = text.find(u'?');
  if (question != text.npos) {
    if (!allowed(text.substr(question + 1), u"/?")) return false;
    text = text.substr(0, question);
  }
  const size_t colon = text.find(u':');
  if (colon != text.npos && colon < text.find(u'/')) {
    if (!isScheme(text.substr(0, colon))) return false;
    text.remove_prefix(colon + 1);
  }
  if (text.starts_with(u"//")) {
    const size_t slash = std::min(text.find(u'/', 2), text.size());
    if (!isAuthority(text.substr(2, slash - 2))) return false;
    text.remove_prefix(slash);
  }
  return allowed(text, u"/");
}

class URLContents final : public NSObject {
 public:
  explicit URLContents(NSString text) : text_(std::move(text)) {}
  const NSKind& kind() const override { return NSURL::kKind; }
  bool isEqual(const NSObject& other) const override {
    return &other.kind() == &NSURL::kKind && static_cast<const URLContents&>(other).text_ == text_;
  }
  NSString description() const override { return text_; }

 private:
  NSString text_;
};

}  // namespace

NSURL NSURL::URLWithString(const NSString& text) {
  if (text.isEmpty() || !isURL(text)) return nil;
  return NSURL(new URLContents(text));
}

NSURL NSURL::fileURLWithPath(const std::string& path) {
  std::string text = "file://";
  for (const char c : path) {
    const auto byte = static_cast<uint8_t>(c);
    if (isUnreserved(byte) || c == '/') {
      text += c;
    } else {
      constexpr char kHex[] = "0123456789ABCDEF";
      text += '%';
      text += kHex[byte >> 4];
      text += kHex[byte & 15];
    }
  }
  return URLWithString(NSString(text));
}

NSString NSURL::absoluteString() const { return *this ? description() : NSString(); }

std::string NSURL::scheme() const {
  const NSString text = absoluteString();
  const auto units = text.view();
  const size_t colon = units.find(u':');
  if (colon == units.npos || !isScheme(units.substr(0, colon))) return {};
  std::string scheme(units.begin(), units.begin() + static_cast<ptrdiff_t>(colon));
  for (char& c : scheme) c = static_cast<char>(c | (isAlpha(c) ? 0x20 : 0));
  return scheme;
}

std::string NSURL::fileSystemPath() const {
  if (scheme() != "file") return {};
  std::string text = absoluteString().utf8().substr(5);
  text = text.substr(0, text.find_first_of("?#"));
  if (text.starts_with("//")) text.erase(0, std::min(text.find('/', 2), text.size()));
  std::string path;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      path += text[i];
      continue;
    }
    path += static_cast<char>(hexValue(text[i + 1]) << 4 | hexValue(text[i + 2]));
    i += 2;
  }
  return path;
}

}  // namespace kelspar

// The HTML writer over what the RTF reader makes of any bytes: elements that nest, text that is
// escaped, links of the few schemes; and it reads back to the same characters and attributes.
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/richtext/html_round_trip.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

bool isVoid(std::u16string_view name) {
  return name == u"br" || name == u"img" || name == u"meta" || name == u"!DOCTYPE";
}

// The value of an attribute, with its quotation marks checked.
void checkAttributes(std::u16string_view tag) {
  size_t marks = 0;
  for (const char16_t c : tag) marks += c == u'"';
  check(marks % 2 == 0);
  for (const std::u16string_view name : {u" href=\"", u" src=\""}) {
    const size_t at = tag.find(name);
    if (at == tag.npos) continue;
    const std::u16string_view value = tag.substr(at + name.size());
    check(isSafeLink(value) || value.starts_with(u"data:image/"));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSAttributedString text = NSAttributedString::initWithRTF(NSData(bytes, size));
  const NSString html = htmlFromAttributedString(text);
  check(html.isNil() == text.isNil());
  std::u16string_view left = html.view();
  std::vector<std::u16string_view> open;
  for (size_t at = left.find(u'<'); at != left.npos; at = left.find(u'<')) {
    check(left.substr(0, at).find(u'>') == left.npos);
    const size_t end = left.find(u'>', at);
    check(end != left.npos);
    const std::u16string_view tag = left.substr(at + 1, end - at - 1);
    left.remove_prefix(end + 1);
    if (tag.starts_with(u'/')) {
      check(!open.empty() && open.back() == tag.substr(1));
      open.pop_back();
      continue;
    }
    checkAttributes(tag);
    const std::u16string_view name = tag.substr(0, tag.find(u' '));
    if (!isVoid(name)) open.push_back(name);
  }
  check(open.empty());
  check(!html || NSString(html.view()).strictUTF8());
  if (const std::string what = html::roundTripDifference(text); !what.empty()) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
  }
  return 0;
}

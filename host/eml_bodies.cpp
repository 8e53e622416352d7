// Which parts are one body, and what stands between them.
#include "host/eml_bodies.h"

namespace kelspar::host {

namespace {

void appendPreformatted(std::u16string_view text, std::u16string* html) {
  html->append(u"<pre>");
  for (const char16_t c : text) {
    if (c == u'<') {
      html->append(u"&lt;");
    } else if (c == u'&') {
      html->append(u"&amp;");
    } else {
      *html += c;
    }
  }
  html->append(u"</pre>");
}

}  // namespace

bool EMLBodies::addText(const NSString& text, bool alternative) {
  if (!text_ && (!html_ || alternative)) {
    text_ = text.view();
    return true;
  }
  if (alternative) return false;
  if (text_) text_->append(u"\n").append(text.view());
  if (html_) appendPreformatted(text.view(), &html_->append(u"\n"));
  return false;
}

bool EMLBodies::addHTML(const NSString& html, bool alternative) {
  if (html_) {
    if (!alternative) html_->append(u"\n<hr>\n").append(html.view());
    return false;
  }
  html_.emplace();
  // Text that stood before it, and is no other form of it, is its beginning.
  if (!alternative && text_ && !hasAlternative_) {
    appendPreformatted(*text_, &*html_);
    *html_ += u'\n';
  }
  html_->append(html.view());
  hasAlternative_ = hasAlternative_ || alternative;
  return true;
}

void EMLBodies::offer(const NSString& text, const NSString& html) {
  if (!html_ && html) html_ = html.view();
  if (!text_ && text) text_ = text.view();
}

}  // namespace kelspar::host

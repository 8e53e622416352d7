// The text and the HTML of a message with several body parts, put together as its parts come.
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/NSString.h"

namespace kelspar::host {

// Parts of a multipart/alternative are forms of one text: of each kind the first counts. Any other
// further body (a list's footer, text around pictures) is read on behind what is there. Linear.
class EMLBodies {
 public:
  // Each says whether the part is the first of its kind, whose charset is the body's.
  bool addText(const NSString& text, bool alternative);
  bool addHTML(const NSString& html, bool alternative);
  // A body from elsewhere (winmail.dat), for a kind that there is none of; nil changes nothing.
  void offer(const NSString& text, const NSString& html);

  // nil: there is none.
  [[nodiscard]] NSString takeText() { return taken(text_); }
  [[nodiscard]] NSString takeHTML() { return taken(html_); }

 private:
  static NSString taken(std::optional<std::u16string>& body) {
    return body ? NSString(*std::move(body)) : NSString();
  }

  std::optional<std::u16string> text_, html_;
  bool hasAlternative_ = false;
};

}  // namespace kelspar::host

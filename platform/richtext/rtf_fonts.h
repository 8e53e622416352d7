// The font table's part in decoding: which code page the bytes of a font are in. Internal.
#pragma once

#include <unordered_map>

#include "platform/unicode/code_pages.h"

namespace kelspar {

// The code page that a \fcharset number stands for; 0 when it says nothing (1, "default").
[[nodiscard]] int codePageOfCharset(int charset);

class RTFFontTable {
 public:
  // \fcharset and \cpg of a font; \cpg tells what a charset of 1 leaves open.
  void setCharset(int font, int charset);
  void setCodePage(int font, int page);

  // The page of a font, or null when the table does not tell: the document's page counts then.
  [[nodiscard]] const CodePage* pageOf(int font) const;

 private:
  std::unordered_map<int, const CodePage*> byCharset_, byPage_;
};

}  // namespace kelspar

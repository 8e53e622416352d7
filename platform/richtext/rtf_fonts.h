// The font table: the code page that the bytes of a font are in, its name, whether it is one of
// symbols. Internal.
#pragma once

#include <unordered_map>
#include <vector>

#include "platform/foundation/NSString.h"
#include "platform/richtext/rtf_symbols.h"
#include "platform/unicode/code_pages.h"

namespace kelspar {

// The code page that a \fcharset number stands for; 0 when it says nothing (1, "default").
[[nodiscard]] int codePageOfCharset(int charset);

class RTFFontTable {
 public:
  // \fcharset and \cpg of a font; \cpg tells what a charset of 1 leaves open.
  void setCharset(int font, int charset);
  void setCodePage(int font, int page);
  void setName(int font, std::u16string_view name);

  // The page of a font, or null when the table does not tell: the document's page counts then.
  [[nodiscard]] const CodePage* pageOf(int font) const;
  [[nodiscard]] RTFSymbolFont symbolFontOf(int font) const;
  // nil when the font is not known.
  [[nodiscard]] NSString nameOf(int font) const;

 private:
  struct Font {
    const CodePage* byCharset = nullptr;
    const CodePage* byPage = nullptr;
    bool hasSymbols = false;
    RTFSymbolFont symbolFont = RTFSymbolFont::none;
    NSString name;
  };
  Font& font(int number);
  [[nodiscard]] const Font* find(int number) const;

  std::vector<Font> low_;  // by number
  std::unordered_map<int, Font> high_;
};

}  // namespace kelspar

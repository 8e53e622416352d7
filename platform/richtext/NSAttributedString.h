// Text with attributes: UTF-16 units and, over them, runs of one look each.
//
// NSAttributedString is immutable and cheap to copy; NSMutableAttributedString is edited. Positions
// and lengths count code units. Neighbouring runs of the same look are one run.
#pragma once

#include <span>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"

namespace kelspar {

struct NSTextRun {
  size_t length = 0;
  std::shared_ptr<const NSTextAttributes> attributes;  // never null in what the runs() below give
};

class NSAttributedString : public id {
 public:
  static const NSKind kKind;

  NSAttributedString() noexcept = default;  // nil
  NSAttributedString(std::nullptr_t) noexcept {}
  // Text of one look; nil for nil.
  explicit NSAttributedString(const NSString& text, const NSTextAttributes& attributes = {});
  // The runs' lengths add up to the text's; raises NSInvalidArgumentException otherwise. A run
  // without attributes has the default ones. nil for a nil text.
  NSAttributedString(const NSString& text, std::vector<NSTextRun> runs);
  [[nodiscard]] static NSAttributedString empty();

  // The RTF reader (RTF 1.9.1): nil for nil and for bytes that begin no RTF document.
  [[nodiscard]] static NSAttributedString initWithRTF(const NSData& rtf);
  // The HTML importer (WHATWG HTML): any bytes are HTML; they are UTF-8, or UTF-16 behind its mark,
  // or else in the charset that the page declares.
  // Nothing is fetched: images come with their bytes from data: URLs only. nil for nil.
  [[nodiscard]] static NSAttributedString initWithHTML(const NSData& html);

  // nil, 0 and nothing for nil.
  [[nodiscard]] NSString string() const;
  [[nodiscard]] size_t length() const;
  [[nodiscard]] std::span<const NSTextRun> runs() const;
  // The look of the unit at `index`, and in `*effective` the run around it. Logarithmic. Raises
  // NSRangeException behind the end.
  [[nodiscard]] const NSTextAttributes& attributesAtIndex(size_t index,
                                                          NSRange* effective = nullptr) const;
  // Raises NSRangeException when the range leaves the text. The whole text is the same contents.
  [[nodiscard]] NSAttributedString attributedSubstring(NSRange range) const;

  // The same units and looks. Nil is equal to nil.
  friend bool operator==(const NSAttributedString& a, const NSAttributedString& b) {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }
};

// Attributed text that is edited. Copies are deep; it is never nil. Insertions and deletions
// anywhere in a long text cost a few thousand units' moves, however long it is. To be used by one
// thread at a time; one that was moved from may only be assigned to or destroyed.
class NSMutableAttributedString {
 public:
  NSMutableAttributedString();
  explicit NSMutableAttributedString(const NSAttributedString& text);
  NSMutableAttributedString(const NSMutableAttributedString& other);
  NSMutableAttributedString(NSMutableAttributedString&& other) noexcept;
  NSMutableAttributedString& operator=(NSMutableAttributedString other) noexcept;
  ~NSMutableAttributedString();

  [[nodiscard]] size_t length() const;
  void append(const NSAttributedString& text);
  void append(std::u16string_view text, const NSTextAttributes& attributes);
  // Positions and ranges outside the text raise NSRangeException.
  void insert(const NSAttributedString& text, size_t index);
  void deleteCharacters(NSRange range);
  void replaceCharacters(NSRange range, const NSAttributedString& text);
  // The new units take the look of the first one replaced, or of the one before an empty range
  // (at the text's start: of the first one).
  void replaceCharacters(NSRange range, std::u16string_view text);
  void setAttributes(NSRange range, const NSTextAttributes& attributes);

  [[nodiscard]] NSAttributedString copy() const;

 private:
  class Storage;
  std::unique_ptr<Storage> storage_;
};

}  // namespace kelspar

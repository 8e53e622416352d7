// A text field of a host's user interface, as the library sees it.
#pragma once

#include "platform/foundation/NSString.h"

namespace kelspar {

// What a host implements, on any toolkit. Every call comes on the main queue; the object is
// released by whichever thread lets go of it last.
class NSTextFieldView : public NSObject {
 public:
  [[nodiscard]] const NSKind& kind() const final;
  // The text to show.
  virtual void setStringValue(const NSString& value) = 0;
  // Draw now what has not been drawn yet.
  virtual void displayIfNeeded() = 0;
  // Marks the view around the field as to be drawn again.
  virtual void setNeedsDisplay(bool needsDisplay) = 0;
};

// A handle to it. Messages to nil do nothing.
class NSTextField : public id {
 public:
  static const NSKind kKind;

  NSTextField() noexcept = default;  // nil
  NSTextField(std::nullptr_t) noexcept {}
  explicit NSTextField(NSTextFieldView* view) noexcept : id(view) {}

  void setStringValue(const NSString& value) const {
    if (*this) view().setStringValue(value);
  }
  void displayIfNeeded() const {
    if (*this) view().displayIfNeeded();
  }
  void setNeedsDisplay(bool needsDisplay) const {
    if (*this) view().setNeedsDisplay(needsDisplay);
  }

 private:
  // Handles share contents that do not change; a view is the one that does, on one thread.
  [[nodiscard]] NSTextFieldView& view() const {
    return const_cast<NSTextFieldView&>(static_cast<const NSTextFieldView&>(*contents()));
  }
};

}  // namespace kelspar

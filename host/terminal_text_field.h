// A text field on a line of the terminal, and `kelspar transition`, which shows one.
#pragma once

#include <functional>
#include <string>

#include "platform/dispatch/NSTextField.h"

namespace kelspar::host {

// Draws over its own line of a terminal; on a pipe or in a file each drawing is a line of its own.
// What a terminal would obey is drawn as "?".
//
// As in a window, a value is drawn at once when the field is told to display, and on a later turn
// of the main queue otherwise. Used on the main queue alone.
class TerminalTextField final : public NSTextFieldView {
 public:
  // Writes to `descriptor`, which stays open and the caller's. `drawnLate`, if any, runs on the
  // main queue after each drawing that nobody asked for: a transition ends with one.
  explicit TerminalTextField(int descriptor, std::function<void()> drawnLate = nullptr);

  void setStringValue(const NSString& value) override;
  void displayIfNeeded() override;
  void setNeedsDisplay(bool needsDisplay) override;

  // Whether what was drawn could be written.
  [[nodiscard]] bool isIntact() const { return isIntact_; }

 private:
  void draw();
  void write(std::string_view bytes);

  const int descriptor_;
  const bool isTerminal_;
  const std::function<void()> drawnLate_;
  std::string value_, drawn_;
  bool isStale_ = false, isIntact_ = true;
};

// The text with "?" for each unit that a terminal obeys: controls and changes of direction.
[[nodiscard]] std::u16string terminalText(std::u16string_view text);

struct TransitionOptions {
  std::string text;
  std::string style = "count";  // "count", "spin" (from 0) or "spinner" (from its elements)
  uint64_t duration = 30;       // tenths of a second
  float interval = 1;           // tenths of a second, between the spinner's turns
};

// Animates the text on standard output and returns when it stands there: never, when a spinning
// text does not end in a digit. Throws Failure (kCannotWrite).
void transition(const TransitionOptions& options);

}  // namespace kelspar::host

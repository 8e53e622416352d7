// Drawing a field with what every terminal knows: back to the line's start, text, clear to its end.
#include "host/terminal_text_field.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "StringKelspar/StringKelspar.h"
#include "host/files.h"
#include "platform/dispatch/dispatch.h"

namespace kelspar::host {

namespace {

int32_t styleNumber(const std::string& name) {
  if (name == "spin") return 1;
  return name == "spinner" ? 2 : 0;
}

}  // namespace

std::u16string terminalText(std::u16string_view text) {
  std::u16string shown(text);
  for (char16_t& unit : shown) {
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    const bool turnsAround =
        (unit >= 0x200E && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    if (isControl || turnsAround) unit = u'?';
  }
  return shown;
}

TerminalTextField::TerminalTextField(int descriptor, std::function<void()> drawnLate)
    : descriptor_(descriptor),
      isTerminal_(::isatty(descriptor) == 1),
      drawnLate_(std::move(drawnLate)) {}

void TerminalTextField::setStringValue(const NSString& value) {
  value_ = NSString(terminalText(value)).utf8();
  if (std::exchange(isStale_, true)) return;
  dispatch::asyncMain([this, alive = NSTextField(this)] {
    if (!isStale_) return;
    draw();
    if (drawnLate_) drawnLate_();
  });
}

void TerminalTextField::displayIfNeeded() {
  if (isStale_) draw();
}

// The line around the field holds nothing else that could need it.
void TerminalTextField::setNeedsDisplay(bool) {}

void TerminalTextField::draw() {
  isStale_ = false;
  if (value_ == drawn_) return;
  drawn_ = value_;
  write(isTerminal_ ? "\r" + value_ + "\x1b[K" : value_ + "\n");
}

void TerminalTextField::write(std::string_view bytes) {
  isIntact_ = isIntact_ && writeAll(descriptor_, bytes);
}

void transition(const TransitionOptions& options) {
  bool ended = false;
  auto* const view = new TerminalTextField(STDOUT_FILENO, [&ended] { ended = true; });
  const NSTextField field(view);
  StringKelspar::transitionText(NSString(options.text), styleNumber(options.style),
                                options.duration, options.interval, field);
  while (!ended && view->isIntact()) dispatch::drainMain(1000);
  if (!view->isIntact()) throw Failure(kCannotWrite, "standard output: cannot be written");
  if (::isatty(STDOUT_FILENO) == 1) writeOutput("", "\n");
}

}  // namespace kelspar::host

// The worker of a transition. It keeps a text of its own and sends copies to the main queue.
#include "StringKelspar/text_transition.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include "StringKelspar/StringKelspar.h"
#include "platform/dispatch/dispatch.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {

namespace {

class TextTransitionJob {
 public:
  TextTransitionJob(const NSString& target, int32_t style, uint64_t duration, float interval,
                    const NSTextField& field, const Rest& rest)
      : target_(target),
        style_(style),
        duration_(duration),
        interval_(interval),
        field_(field),
        rest_(rest) {
    const auto text = target_.view();
    for (size_t i = 0; i < text.size(); ++i) {
      const int digit = decimalDigitValue(text[i]);
      digitSum_ += std::max(digit, 0);
      current_.push_back(digit < 0 ? text[i] : style == 2 ? kSpinner[i % 4] : u'0');
    }
  }

  void run() {
    while (!pass()) {
    }
  }

 private:
  static constexpr std::u16string_view kSpinner = u"/-\\|";

  [[nodiscard]] bool spins() const { return style_ == 1 || style_ == 2; }

  // Whether it was the last one.
  bool pass() {
    bool done = true;
    float delay = 0;
    for (size_t i = 0; i < current_.size(); ++i) {
      delay = spins() ? spin(i, &done) : count(i, &done);
      if (!spins() && delay > 0) send();
      pause(delay);
    }
    if (spins() && delay > 0) {
      send();
      ++passes_;
    }
    return done;
  }

  // One step toward the target's digit. Digits are compared by value: those of other scripts than
  // ASCII's would be counted past without end.
  float count(size_t i, bool* done) {
    const int now = decimalDigitValue(current_[i]);
    const int wanted = decimalDigitValue(target_.view()[i]);
    if (now < 0 || now == wanted) return 0;
    current_[i] = static_cast<char16_t>(u'0' + now + 1);
    if (now + 1 != wanted) *done = false;
    return static_cast<float>(duration_) / static_cast<float>(digitSum_);
  }

  float spin(size_t i, bool* done) {
    const bool isDigit = decimalDigitValue(target_.view()[i]) >= 0;
    // What is no element of the spinner is followed by its first.
    if (isDigit) current_[i] = kSpinner[(kSpinner.find(current_[i]) + 1) % kSpinner.size()];
    // Deliberate: passes are counted only when the last position has a delay, so that a target
    // that ends in no digit spins for ever.
    const float spent = interval_ * static_cast<float>(passes_);
    if (static_cast<float>(duration_) > spent) *done = false;
    return isDigit ? interval_ : 0;
  }

  void pause(float delay) const {
    if (!(delay >= 1)) return;              // the fraction is dropped
    constexpr float kLongest = 36'000'000;  // a thousand hours
    rest_(static_cast<uint64_t>(std::min(delay, kLongest)));
  }

  void send() const {
    dispatch::asyncMain([field = field_, text = NSString(current_)] {
      field.setStringValue(text);
      field.displayIfNeeded();
      field.setNeedsDisplay(true);
    });
  }

  const NSString target_;
  const int32_t style_;
  const uint64_t duration_;
  const float interval_;
  const NSTextField field_;
  const Rest rest_;
  std::u16string current_;
  int64_t digitSum_ = 0;
  uint64_t passes_ = 0;
};

void sleepTenths(uint64_t tenths) {
  std::this_thread::sleep_for(std::chrono::milliseconds(100 * tenths));
}

}  // namespace

void startTransition(const NSString& target, int32_t style, uint64_t duration, float interval,
                     const NSTextField& field, std::function<void()> finished, const Rest& rest) {
  const auto work = [job = TextTransitionJob(target, style, duration, interval, field,
                                             rest ? rest : Rest(&sleepTenths)),
                     target, field, finished = std::move(finished)]() mutable {
    job.run();
    dispatch::asyncMain([target, field, finished] {
      field.setStringValue(target);
      if (finished) finished();
    });
  };
  dispatch::async(dispatch::Priority::standard, work);
}

void StringKelspar::transitionText(const NSString& target, int32_t style, uint64_t duration,
                                   float interval, const NSTextField& field) {
  startTransition(target, style, duration, interval, field, nullptr);
}

}  // namespace kelspar

// NSDate: seconds in a box, and its text in UTC.
#include "platform/foundation/NSDate.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "platform/foundation/NSString.h"

namespace kelspar {

const NSKind NSDate::kKind{"NSDate"};

namespace {

constexpr double kReferenceDate = 978307200;  // 2001-01-01 00:00:00 UTC

class DateContents final : public NSObject {
 public:
  explicit DateContents(double seconds) : seconds_(seconds) {}
  const NSKind& kind() const override { return NSDate::kKind; }
  bool isEqual(const NSObject& other) const override {
    return &other.kind() == &NSDate::kKind &&
           static_cast<const DateContents&>(other).seconds_ == seconds_;
  }
  NSString description() const override;
  double seconds() const { return seconds_; }

 private:
  double seconds_;
};

NSString DateContents::description() const {
  char text[64];
  std::tm parts{};
  const bool inRange = std::fabs(seconds_) < 1e15;
  const std::time_t whole = inRange ? static_cast<std::time_t>(std::floor(seconds_)) : 0;
  if (!inRange || !gmtime_r(&whole, &parts)) {
    std::snprintf(text, sizeof text, "%g s since 1970", seconds_);
    return std::string_view(text);
  }
  const size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &parts);
  return std::string_view(text, length);
}

}  // namespace

NSDate NSDate::now() {
  using Seconds = std::chrono::duration<double>;
  const auto elapsed = std::chrono::system_clock::now().time_since_epoch();
  return since1970(std::chrono::duration_cast<Seconds>(elapsed).count());
}

NSDate NSDate::since1970(double seconds) { return NSDate(new DateContents(seconds)); }

NSDate NSDate::sinceReferenceDate(double seconds) { return since1970(seconds + kReferenceDate); }

double NSDate::secondsSince1970() const noexcept {
  return contents() ? static_cast<const DateContents*>(contents())->seconds() : 0;
}

}  // namespace kelspar

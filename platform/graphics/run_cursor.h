// Finds the look of a unit; going on from one unit to the next costs nothing. Internal to the
// library.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

class RunCursor {
 public:
  explicit RunCursor(const NSAttributedString& text) : runs_(text.runs()) {
    size_t start = 0;
    for (const NSTextRun& run : runs_) {
      starts_.push_back(start);
      start += run.length;
    }
    starts_.push_back(start);
  }

  // Behind the end: the last unit's. The text must not be empty.
  const NSTextAttributes& lookAt(size_t unit) {
    if (unit < starts_[run_] || unit >= starts_[run_ + 1]) {
      const bool isNext =
          run_ + 2 < starts_.size() && unit >= starts_[run_ + 1] && unit < starts_[run_ + 2];
      if (isNext) {
        ++run_;
      } else {
        const auto after = std::upper_bound(starts_.begin(), starts_.end(), unit);
        run_ = std::min<size_t>(static_cast<size_t>(after - starts_.begin()), runs_.size()) - 1;
      }
    }
    return *runs_[run_].attributes;
  }

  // Where the run that was found last ends.
  [[nodiscard]] size_t runEnd() const { return starts_[run_ + 1]; }

 private:
  std::span<const NSTextRun> runs_;
  std::vector<size_t> starts_;
  size_t run_ = 0;
};

}  // namespace kelspar

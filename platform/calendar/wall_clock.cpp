// Offsets of the process's time zone, remembered from one change to the next.
#include "platform/calendar/wall_clock.h"

#include <unicode/basictz.h>
#include <unicode/tztrans.h>

#include <limits>

#include "platform/calendar/zones.h"

namespace kelspar::calendar {

namespace {

constexpr int64_t kDay = 86400;

// A stretch of time in which the zone keeps one offset, in seconds.
struct Stretch {
  int64_t from = 0, to = 0;  // empty at first
  int64_t offset = 0;
};

int64_t secondsOf(const icu::TimeZoneTransition& transition) {
  return static_cast<int64_t>(transition.getTime() / 1000);
}

Stretch stretchAround(int64_t seconds) {
  const auto* rules = dynamic_cast<const icu::BasicTimeZone*>(&processZone<icu::TimeZone>());
  if (!rules) return {};
  const auto base = static_cast<UDate>(seconds) * 1000;
  Stretch stretch{std::numeric_limits<int64_t>::min() / 2, std::numeric_limits<int64_t>::max() / 2,
                  0};
  icu::TimeZoneTransition transition;
  if (rules->getPreviousTransition(base, true, transition)) stretch.from = secondsOf(transition);
  if (rules->getNextTransition(base, false, transition)) stretch.to = secondsOf(transition);
  int32_t raw = 0, saving = 0;
  UErrorCode error = U_ZERO_ERROR;
  rules->getOffset(base, false, raw, saving, error);
  if (U_FAILURE(error) || (raw + saving) % 1000 != 0) return {};
  stretch.offset = (raw + saving) / 1000;
  return stretch;
}

}  // namespace

std::optional<int64_t> utcFromWallClock(int64_t wallSeconds) {
  thread_local Stretch latest;
  if (wallSeconds - kDay < latest.from || wallSeconds + kDay >= latest.to) {
    latest = stretchAround(wallSeconds);
    if (wallSeconds - kDay < latest.from || wallSeconds + kDay >= latest.to) return std::nullopt;
  }
  return wallSeconds - latest.offset;
}

}  // namespace kelspar::calendar

// Time values to dates and back. Integers are added up unsigned, so that what leaves 64 bits wraps.
#include <cmath>

#include "TimeKelspar/TimeKelspar.h"

namespace kelspar {

namespace {

constexpr uint64_t kTicksASecond = 10000000;    // of 100 ns
constexpr int64_t kWindowsEpoch = 11644473600;  // seconds before 1970, as all below
constexpr uint64_t kVMSEpoch = 3506716800;
constexpr double kOLEEpoch = 2209161600;
constexpr int64_t kHFSEpoch = 2082844800;
constexpr double kSecondsADay = 86400;

// Toward zero; what 64 bits cannot hold becomes the nearest that they can, NaN 0.
int64_t truncated(double seconds) { return NSNumber(seconds).longValue(); }

}  // namespace

uint64_t TimeKelspar::getVMSTimeFromUnixTime(int64_t seconds) {
  return kVMSEpoch * kTicksASecond + static_cast<uint64_t>(seconds) * kTicksASecond;
}

int64_t TimeKelspar::getUnixTimeFromVMSTime(uint64_t time) {
  return static_cast<int64_t>((time - kVMSEpoch * kTicksASecond) / kTicksASecond);
}

int64_t TimeKelspar::getWindowsTimeFromUnixTime(int64_t seconds) {
  const uint64_t epoch = static_cast<uint64_t>(kWindowsEpoch) * kTicksASecond;
  return static_cast<int64_t>(epoch + static_cast<uint64_t>(seconds) * kTicksASecond);
}

int64_t TimeKelspar::getUnixTimeFromWindowsTime(int64_t time) {
  return time / static_cast<int64_t>(kTicksASecond) - kWindowsEpoch;
}

NSDate TimeKelspar::dateFromMAPITime(uint64_t time) {
  if (time == 0) return nil;
  return NSDate::since1970(
      static_cast<double>(static_cast<int64_t>(time / kTicksASecond) - kWindowsEpoch));
}

int64_t TimeKelspar::mapiTimeFromDate(const NSDate& date) {
  return date ? getWindowsTimeFromUnixTime(truncated(date.secondsSince1970())) : 0;
}

NSDate TimeKelspar::dateFromOLEDate(double days) {
  if (!std::isfinite(days)) return nil;
  return NSDate::since1970(days * kSecondsADay - kOLEEpoch);
}

double TimeKelspar::oleDateFromDate(const NSDate& date) {
  return date ? (date.secondsSince1970() + kOLEEpoch) / kSecondsADay : 0;
}

NSDate TimeKelspar::dateFromHFSDate(uint32_t seconds) {
  return NSDate::since1970(static_cast<double>(int64_t{seconds} - kHFSEpoch));
}

int64_t TimeKelspar::hfsDateFromDate(const NSDate& date) {
  return date ? truncated(date.secondsSince1970() + static_cast<double>(kHFSEpoch)) : 0;
}

NSDate TimeKelspar::dateFromCFAbsoluteTime(double seconds) {
  return NSDate::sinceReferenceDate(seconds);
}

}  // namespace kelspar

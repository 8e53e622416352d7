// Date texts and clock texts: the scanner of plain shapes never differs from the formatters.
#include <cstdlib>

#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDataAdditions.h"
#include "TimeKelspar/TimeKelsparNSStringAdditions.h"
#include "TimeKelspar/date_shapes.h"
#include "TimeKelspar/date_texts.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes), size));
  if (const NSDate date = dates::readHeaderShape(text)) {
    check(date == dates::readByHeaderFormats(text));
    check(TimeKelspar::dateFromMIMEString(text) == date);
  }
  if (const NSDate date = dates::readGeneralShape(text)) {
    check(date == dates::readByGeneralFormats(text));
  }
  // The formatters take their time.
  if (size <= 512) {
    (void)TimeKelspar::dateFromMIMEString(text);
    (void)TimeKelspar::compare24HourTime(text, u"10:00");
    try {
      (void)TimeKelsparNSDataAdditions::formatDataAsDate(NSData(bytes, size));
    } catch (const NSRangeException&) {
      // stated for short records
    }
  }
  const NSString as24 = TimeKelsparNSStringAdditions::create24HourStringFrom12HourString(text);
  check(!as24 || as24.length() == 5);
  const NSString as12 = TimeKelsparNSStringAdditions::create12HourStringFrom24HourString(text);
  check(!as12 || (as12.length() >= 6 && as12.length() <= 7));
  const int64_t offset = TimeKelspar::timezoneOffsetFromDateString(text);
  check(offset >= -99 * 3660 && offset <= 99 * 3660);
  return 0;
}

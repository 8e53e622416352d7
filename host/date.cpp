// Dates from and to their representations.
#include "host/date.h"

#include <charconv>
#include <iostream>

#include "MailKelspar/MailKelspar.h"
#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDateAdditions.h"
#include "host/files.h"
#include "host/terminal.h"

namespace kelspar::host {

namespace {

// A whole word as a number; false for anything else.
template <class Number>
bool parse(const std::string& word, Number* number) {
  const char* const end = word.data() + word.size();
  const auto result = std::from_chars(word.data(), end, *number);
  return result.ec == std::errc() && result.ptr == end && !word.empty();
}

template <class Number, class Convert>
NSDate fromNumber(const std::string& word, Convert convert) {
  Number number{};
  return parse(word, &number) ? convert(number) : NSDate();
}

// What the exact operation reads means what it says; comments, obsolete zones and the like come
// after it.
NSDate readText(const std::string& text, bool exact) {
  const NSDate date = TimeKelspar::dateFromMIMEString(text);
  return date || exact ? date : MailKelspar::dateFromHeader(NSString(text));
}

NSDate read(const std::string& word, const DateOptions& options) {
  const std::string& from = options.from;
  if (from == "mapi") return fromNumber<uint64_t>(word, TimeKelspar::dateFromMAPITime);
  if (from == "ole") return fromNumber<double>(word, TimeKelspar::dateFromOLEDate);
  if (from == "hfs") return fromNumber<uint32_t>(word, TimeKelspar::dateFromHFSDate);
  if (from == "cf") return fromNumber<double>(word, TimeKelspar::dateFromCFAbsoluteTime);
  if (from == "unix") return fromNumber<double>(word, NSDate::since1970);
  if (from == "vms") {
    return fromNumber<uint64_t>(word, [](uint64_t time) {
      return NSDate::since1970(static_cast<double>(TimeKelspar::getUnixTimeFromVMSTime(time)));
    });
  }
  return readText(word, options.exact);
}

// False, and a line on standard error, for an input that is no date.
bool convertOne(const std::string& word, const DateOptions& options) {
  const NSDate date = read(word, options);
  if (!date) {
    tell(word + ": is no date" + (options.from == "text" ? "" : " of the kind " + options.from));
    return false;
  }
  writeOutput("", dateAs(date, options.to) + "\n");
  return true;
}

}  // namespace

std::string dateAs(const NSDate& date, const std::string& form) {
  const auto seconds = NSNumber(date.secondsSince1970()).longValue();
  if (form == "mapi") return std::to_string(TimeKelspar::mapiTimeFromDate(date));
  if (form == "ole") return NSNumber(TimeKelspar::oleDateFromDate(date)).description().utf8();
  if (form == "hfs") return std::to_string(TimeKelspar::hfsDateFromDate(date));
  if (form == "vms") return std::to_string(TimeKelspar::getVMSTimeFromUnixTime(seconds));
  if (form == "unix") return std::to_string(seconds);
  if (form == "cf") {
    return NSNumber(date.secondsSince1970() - NSDate::sinceReferenceDate(0).secondsSince1970())
        .description()
        .utf8();
  }
  if (form == "mime") return TimeKelspar::mimeStringFromDate(date).utf8();
  return TimeKelsparNSDateAdditions::convertDateToStringWithFormat(
             date, u"yyyy-MM-dd'T'HH:mm:ssXXX", u"en_US_POSIX")
      .utf8();
}

void date(const DateOptions& options) {
  size_t failed = 0;
  for (const std::string& word : options.inputs) failed += !convertOne(word, options);
  if (options.inputs.empty()) {
    for (std::string line; std::getline(std::cin, line);) failed += !convertOne(line, options);
  }
  if (failed > 0) throw Failure(kInputFailed, std::to_string(failed) + " could not be read");
}

}  // namespace kelspar::host

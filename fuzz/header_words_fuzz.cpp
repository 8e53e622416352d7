// Header values, dates and HTML of strangers: one line comes out of a header, safe HTML stays as it
// is when it is made safe again.
#include <cstdlib>

#include "MailKelspar/MailKelspar.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData value(bytes, size);
  const NSString text = MailKelspar::decodeHeader(value);
  check(static_cast<bool>(text));
  check(text.view().find_first_of(u"\r\n") == std::u16string_view::npos);
  check(MailKelspar::parametersOfHeader(value).objectForKey(u"").is<NSString>());
  check(MailKelspar::addressesFromHeader(value).count() <= size);
  const NSDate date = MailKelspar::dateFromHeader(text);
  check(!date || (date.secondsSince1970() > -1e11 && date.secondsSince1970() < 1e18));
  check(MailKelspar::decodeTransfer(value, u"base64").length() <= size);
  check(MailKelspar::decodeTransfer(value, u"quoted-printable").length() <= size);

  const NSString once =
      MailKelspar::safeHTML(NSString(value.chars())).objectForKey<NSString>(u"html");
  check(once.rangeOfString(u"<script").length == 0);
  const NSDictionary twice = MailKelspar::safeHTML(once);
  check(twice.objectForKey<NSString>(u"html") == once);
  check(twice.objectForKey<NSNumber>(u"removed").intValue() == 0);
  return 0;
}

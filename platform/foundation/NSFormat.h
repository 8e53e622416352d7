// The platform's format syntax over boxed arguments.
//
// Directives: %@ (any value's description), %d %i %u %x %X %o (with hh h l ll q z t j: the width
// that the number is read in), %f %F %e %E %g %G %a %A, %c (one unit, its low byte), %C (one unit),
// %s (text or bytes), %S (text), %p, %%; flags - + blank 0 #, width and precision as numbers or
// "*", positions as in "%2$@". A directive without its argument prints nothing; an unknown one
// stands as it is.
//
//   NSString::stringWithFormat(u"%@ costs %5.2f", u"tea"_ns, 1.5)   // "tea costs  1.50"
#pragma once

#include <array>
#include <span>

#include "platform/foundation/NSNumber.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/NSString.h"

namespace kelspar {

[[nodiscard]] NSString formatString(std::u16string_view format, std::span<const id> arguments);

// The value that an argument of the format is boxed in.
inline id boxed(const id& value) { return value; }
inline id boxed(bool value) { return NSNumber(value); }
inline id boxed(double value) { return NSNumber(value); }
inline id boxed(float value) { return NSNumber(static_cast<double>(value)); }
inline id boxed(const char* utf8) { return NSString(utf8); }
inline id boxed(const char16_t* units) { return NSString(units); }
inline id boxed(std::u16string_view units) { return NSString(units); }
inline id boxed(std::string_view utf8) { return NSString(utf8); }
inline id boxed(const std::string& utf8) { return NSString(utf8); }
inline id boxed(const NSMutableString& text) { return text.copy(); }
template <std::integral T>
id boxed(T value) {
  return NSNumber(value);
}

template <class... Arguments>
NSString NSString::stringWithFormat(const NSString& format, const Arguments&... arguments) {
  const std::array<id, sizeof...(Arguments)> values{boxed(arguments)...};
  return formatString(format, values);
}

}  // namespace kelspar

// The catalogue of encodings by display name.
#include <unordered_set>

#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/encoding_catalogue.h"

namespace kelspar {

NSDictionary buildEncodingCatalogue(std::span<const NSStringEncoding> encodings,
                                    const std::function<NSString(NSStringEncoding)>& nameOf) {
  if (encodings.empty()) {
    NSLog(u"Warning: availableStringEncodings returned NULL");
    return NSDictionary(NSMutableDictionary());
  }
  NSMutableDictionary catalogue;
  std::unordered_set<NSStringEncoding> seen;
  for (const NSStringEncoding encoding : encodings) {
    if (!seen.insert(encoding).second) {
      NSLog(u"Warning: Duplicate encoding encountered: %lu", encoding);
      continue;
    }
    NSString name;
    try {
      name = nameOf(encoding);
    } catch (const NSException& exception) {
      NSLog(u"Warning: Exception getting localized name for encoding %lu: %@", encoding,
            exception.reason());
    }
    if (name.isEmpty()) name = NSString::stringWithFormat(u"Unknown Encoding (%lu)", encoding);
    if (const id stored = catalogue.objectForKey(name)) {
      NSLog(u"Warning: Duplicate localized name '%@' for encodings %@ and %lu", name, stored,
            encoding);
      name = NSString::stringWithFormat(u"%@ (%lu)", name, encoding);
    }
    catalogue.setObject(NSNumber(encoding), name);
  }
  return NSDictionary(std::move(catalogue));
}

NSMutableDictionary StringKelspar::getStringEncodingsForText() {
  static const NSDictionary catalogue =
      buildEncodingCatalogue(availableStringEncodings(), &localizedNameOfStringEncoding);
  return catalogue.mutableCopy();
}

}  // namespace kelspar

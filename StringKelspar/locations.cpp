// Where a text occurs in another.
#include "StringKelspar/StringKelspar.h"
#include "platform/unicode/text_search.h"

namespace kelspar {

NSArray StringKelspar::getLocationsOfString(const NSString& needle, const NSString& haystack) {
  std::vector<id> locations;
  TextSearch search(needle, haystack, TextSearch::overlapping);
  for (uint64_t at; (at = search.next()) != TextSearch::npos;) {
    locations.push_back(NSNumber(at + 1));  // deliberate: positions count from 1
  }
  return NSArray(std::move(locations));
}

}  // namespace kelspar

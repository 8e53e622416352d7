// A list fetched as JSON: loading and parsing are platform/loading's.
#include "WebKelspar/WebKelspar.h"
#include "platform/loading/json_reader.h"
#include "platform/loading/url_loader.h"

namespace kelspar {

NSArray WebKelspar::getJSONArrayFromURL(const NSString& url) {
  const NSData content = dataWithContentsOfURL(NSURL::URLWithString(url));
  if (!content) return nil;
  const NSArray elements = parseJSON(content.chars(), nullptr).as<NSArray>();
  return elements ? elements : NSArray::empty();
}

}  // namespace kelspar

// The unit's operations, as hosts call them.
#include "WebKelspar/WebKelspar.h"
#include "platform/runtime/regex_value.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(WebKelspar) {
  using Class = WebKelspar;
  auto web = registry.forClass("WebKelspar");
  web.add("imageLocationsFromRTF:", &Class::imageLocationsFromRTF);
  web.add("htmlFromRTFData:", &Class::htmlFromRTFData);
  web.add("getCharset:forHTML:withSize:andPattern:", &Class::getCharset).sized(1, 3);
  web.add("getJSONArrayFromURL:", &Class::getJSONArrayFromURL);
}

}  // namespace kelspar

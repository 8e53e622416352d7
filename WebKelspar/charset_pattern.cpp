// A charset found in HTML by the caller's own pattern.
#include <algorithm>
#include <cstring>

#include "WebKelspar/WebKelspar.h"

namespace kelspar {

void WebKelspar::getCharset(char* charset, char* html, uint64_t size, regex_t pattern) {
  if (!charset || !html || size == 0) return;
  regmatch_t matches[2] = {{-1, -1}, {-1, -1}};  // as they stay under REG_NOSUB
  if (regexec(&pattern, html, 2, matches, 0) != 0) return;
  const regmatch_t& group = matches[1];
  if (pattern.re_nsub < 1 || group.rm_so < 0) return;
  const size_t length =
      std::min<uint64_t>(static_cast<size_t>(group.rm_eo - group.rm_so), size - 1);
  std::memcpy(charset, html + group.rm_so, length);
  charset[length] = '\0';
}

}  // namespace kelspar

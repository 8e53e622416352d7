// The RTF tokenizer.
#include "platform/richtext/rtf_tokenizer.h"

#include <algorithm>

#include "platform/foundation/scan.h"

namespace kelspar {

void RTFTokenizer::skipGroup() {
  for (uint64_t depth = 0;;) {
    at_ = scan::findAny(bytes_, at_, '\\', '{', '}');
    if (at_ == bytes_.size()) return;
    if (bytes_[at_] == '{') {
      ++depth;
      ++at_;
    } else if (bytes_[at_] == '}') {
      if (depth == 0) return;
      --depth;
      ++at_;
    } else {
      RTFToken passed;
      control(&passed);  // braces may be escaped, or be binary data
    }
  }
}

void RTFTokenizer::binary(int64_t length, RTFToken* token) {
  const size_t left = bytes_.size() - at_;
  const size_t size = length < 0 ? 0 : std::min(static_cast<size_t>(length), left);
  *token = RTFToken();
  token->kind = RTFToken::Kind::binary;
  token->bytes = bytes_.substr(at_, size);
  at_ += size;
}

size_t findRTFStart(std::string_view bytes) {
  size_t at = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  constexpr std::string_view kSkipped("\0 \t\r\n\f\v", 7);
  while (at < bytes.size() && kSkipped.find(bytes[at]) != kSkipped.npos) ++at;
  return bytes.substr(at).starts_with("{\\rtf") ? at : std::string_view::npos;
}

}  // namespace kelspar

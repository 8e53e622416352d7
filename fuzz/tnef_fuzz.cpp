// The TNEF reader over any bytes: a message exactly when the signature is there, and no attachment
// that is larger than what came in.
#include "host/tnef_reader.h"

#include <cstdlib>

#include "host/message_text.h"

using namespace kelspar;
using namespace kelspar::host;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData stream(bytes, size);
  const auto message = readTNEF(stream, {});
  check(static_cast<bool>(message) == isTNEF(stream));
  if (!message) return 0;
  for (const Attachment& attachment : message->attachments)
    check(attachment.bytes.length() <= size);
  check(static_cast<bool>(NSString::fromUTF8(jsonOf(*message))));
  check(!infoOf(*message).empty());
  return 0;
}

// The reader of .msg files over any bytes: a message, or none; only a compound file gives one.
#include "host/msg_reader.h"

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
  const NSData file(bytes, size);
  const auto message = readMSG(file, {});
  if (!message) return 0;
  check(isCompoundFile(file));
  for (const Attachment& attachment : message->attachments)
    check(attachment.bytes.length() <= size);
  check(static_cast<bool>(NSString::fromUTF8(jsonOf(*message))));
  check(!infoOf(*message).empty());
  return 0;
}

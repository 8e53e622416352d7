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

// The reader of compound files loses a directory entry of some malformed files. It is built without
// frame pointers, so its name stands in a stack (and tools/leaks.supp can tell it) only when the
// stack is unwound the slow way.
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

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

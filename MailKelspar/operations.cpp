// The unit's operations, as hosts call them.
#include "MailKelspar/MailKelspar.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(MailKelspar) {
  auto mail = registry.forClass("MailKelspar");
  mail.add("htmlFromEncapsulatedRTF:", &MailKelspar::htmlFromEncapsulatedRTF);
  mail.add("htmlDeclaringUTF8:", &MailKelspar::htmlDeclaringUTF8);
  mail.add("rtfFromStoredBody:", &MailKelspar::rtfFromStoredBody);
}

}  // namespace kelspar

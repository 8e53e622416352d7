// The unit's operations, as hosts call them.
#include "MailKelspar/MailKelspar.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(MailKelspar) {
  auto mail = registry.forClass("MailKelspar");
  mail.add("htmlFromEncapsulatedRTF:", &MailKelspar::htmlFromEncapsulatedRTF);
  mail.add("htmlDeclaringUTF8:", &MailKelspar::htmlDeclaringUTF8);
  mail.add("rtfFromStoredBody:", &MailKelspar::rtfFromStoredBody);
  mail.add("placePictures:inRTF:", &MailKelspar::placePictures);
  mail.add("putText:aboveRTF:", &MailKelspar::putText);
  mail.add("rtfFromText:", &MailKelspar::rtfFromText);
  mail.add("decodeHeader:", &MailKelspar::decodeHeader);
  mail.add("parametersOfHeader:", &MailKelspar::parametersOfHeader);
  mail.add("addressesFromHeader:", &MailKelspar::addressesFromHeader);
  mail.add("dateFromHeader:", &MailKelspar::dateFromHeader);
  mail.add("bareContentIdentifier:", &MailKelspar::bareContentIdentifier);
  mail.add("encodingOfCharsetLabel:", &MailKelspar::encodingOfCharsetLabel);
  mail.add("textFromData:charset:", &MailKelspar::textFromData);
  mail.add("charsetDeclaredByHTML:", &MailKelspar::charsetDeclaredByHTML);
  mail.add("decodeTransfer:encoding:", &MailKelspar::decodeTransfer);
  mail.add("textFromHTML:", &MailKelspar::textFromHTML);
  mail.add("safeHTML:", &MailKelspar::safeHTML);
  mail.add("bestBody:html:rtf:", &MailKelspar::bestBody);
  mail.add("createPdfDataFromAttributedString:onPaper:",
           static_cast<NSData (*)(const NSAttributedString&, const NSString&)>(
               &MailKelspar::createPdfDataFromAttributedString));
  mail.add("createPdfDataFromAttributedString:onPaper:withMargin:",
           static_cast<NSData (*)(const NSAttributedString&, const NSString&, double)>(
               &MailKelspar::createPdfDataFromAttributedString));
}

}  // namespace kelspar

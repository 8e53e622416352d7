// The unit's operations, as hosts call them.
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(RTFKelspar) {
  using Class = RTFKelspar;
  auto rtf = registry.forClass("RTFKelspar");
  rtf.add("typeIsRTF:", &Class::typeIsRTF);
  rtf.add("getRTFFromBuffer:withSize:returnSize:returnData:", &Class::getRTFFromBuffer)
      .counted(1, 2)
      .slotSize(4, 3);
  rtf.add("decodeRTFSource:withCompressedSize:withUncompressedSize:", &Class::decodeRTFSource)
      .counted(1, 2)
      .resultSize(3);
  rtf.add("convertToLongLong:", &Class::convertToLongLong);
  rtf.add("initializeArrayWithEntryCount:ofSize:", &Class::initializeArrayWithEntryCount)
      .resultSize(1, 2);
  rtf.add("isEncapsulatedHTML:", &Class::isEncapsulatedHTML);
  rtf.add("extractHTMLFromEncapsulatedRTF:", &Class::extractHTMLFromEncapsulatedRTF);
  rtf.add("extractHTMLIfEncapsulated:", &Class::extractHTMLIfEncapsulated);

  namespace Data = RTFKelsparNSDataAdditions;
  auto data = registry.forCategory("RTFKelsparNSDataAdditions", "NSData");
  data.add("getRTFForData", &Data::getRTFForData);
  data.add("rtfStringFromData", &Data::rtfStringFromData);
  data.add("stringFromRTFData", &Data::stringFromRTFData);
  data.add("rtfAsPlainText", &Data::rtfAsPlainText);
}

}  // namespace kelspar

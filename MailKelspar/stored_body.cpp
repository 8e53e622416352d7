// Stored bodies of both types that the compression format knows (MS-OXRTFCP 2.1.3.1).
#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"

namespace kelspar {

NSData MailKelspar::rtfFromStoredBody(const NSData& blob) {
  constexpr size_t kHeaderSize = 16, kRawSizeAt = 4, kTypeAt = 8;
  constexpr int64_t kUncompressed = 0x414C454D;  // "MELA"
  if (blob.length() < kHeaderSize) return nil;
  if (RTFKelspar::convertToLongLong(blob.bytes() + kTypeAt) != kUncompressed) {
    // Eight references of two bytes and their flags give at most 8 x 17 bytes: behind eight times
    // the input there is nothing, whatever raw size it claims.
    const NSData rtf = RTFKelsparNSDataAdditions::getRTFForData(blob);
    const size_t most = 8 * blob.length();
    return rtf.length() > most ? rtf.subdata(0, most) : rtf;
  }
  // Raw sizes that count the header, too, or more, exist: what is there counts.
  const int64_t rawSize = RTFKelspar::convertToLongLong(blob.bytes() + kRawSizeAt);
  return blob.subdata(kHeaderSize, static_cast<size_t>(rawSize));
}

}  // namespace kelspar

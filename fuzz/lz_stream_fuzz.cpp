// The LZ decoder against the textbook one; and blobs with their headers, whatever they claim.
#include <cstdlib>
#include <cstring>

#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/lz_textbook.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static const bool quiet = (setLogSink([](std::string_view) {}), true);
  check(quiet);
  // The sanitizer's allocator takes its time over gigabytes; a test of its own claims four.
  constexpr uint32_t kMostClaimed = 1 << 26;
  uint32_t rawSize = 0;
  if (size >= 8) std::memcpy(&rawSize, bytes + 4, 4);
  if (rawSize > kMostClaimed) return 0;
  const NSData blob(bytes, size);
  const NSData rtf = RTFKelsparNSDataAdditions::getRTFForData(blob);
  if (size < 16) {
    check(!rtf);
    return 0;
  }
  const bool isCompressed = std::memcmp(bytes + 8, "LZFu", 4) == 0;
  if (!isCompressed) check(!rtf);
  if (rtf) check(rtf.length() == rawSize);

  // The same stream with a size that a test can afford.
  rawSize %= 1 << 16;
  const std::span stream(bytes + 16, size - 16);
  std::vector<uint8_t> output(rawSize);
  lz::decode(stream, output);
  check(output == lz::decodeByTheBook(stream, rawSize));
  return 0;
}

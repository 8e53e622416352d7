// Random texts from the kernel's generator.
#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {

namespace {

void fillRandom(uint8_t* bytes, size_t count) {
  while (count > 0) {
    const ssize_t got = ::getrandom(bytes, count, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw std::system_error(errno, std::generic_category(), "getrandom");
    bytes += got;
    count -= static_cast<size_t>(got);
  }
}

}  // namespace

NSString StringKelspar::randomStringWithLength(uint64_t length) {
  constexpr std::u16string_view kAlphabet =
      u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  static_assert(kAlphabet.size() == 62);
  if (length > UINT64_C(1) << 30) throw std::bad_alloc();
  return NSString::build(length, [length, kAlphabet](char16_t* out) {
    char16_t* const end = out + length;
    uint8_t bytes[4096];
    while (out < end) {
      const size_t wanted = std::min<size_t>(sizeof bytes, static_cast<size_t>(end - out) + 16);
      fillRandom(bytes, wanted);
      for (size_t i = 0; i < wanted && out < end; ++i) {
        // Four alphabets fit into a byte; what is left over would favour the first letters.
        if (bytes[i] < 4 * kAlphabet.size()) *out++ = kAlphabet[bytes[i] % kAlphabet.size()];
      }
    }
  });
}

NSString StringKelspar::generateUUIDString() {
  uint8_t bytes[16];
  fillRandom(bytes, sizeof bytes);
  bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x40);  // RFC 4122, 4.4: version 4
  bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);  // and its variant
  constexpr char16_t kHex[] = u"0123456789ABCDEF";
  std::u16string text;
  for (size_t i = 0; i < sizeof bytes; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back(u'-');
    text.push_back(kHex[bytes[i] >> 4]);
    text.push_back(kHex[bytes[i] & 15]);
  }
  return NSString(std::move(text));
}

}  // namespace kelspar

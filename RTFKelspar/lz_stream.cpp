// The LZ decoder. Its dictionary is the output itself.
//
// The format describes a ring of 4096 bytes into which every decoded byte is written as well. The
// ring's write position is 207 + (bytes decoded), modulo 4096, so a reference to ring position P
// means the byte `(W - P) mod 4096` back from the end of the output: no second copy has to be kept.
// What lies before the output is the seed, and before that zeros.
#include "RTFKelspar/lz_stream.h"

#include <algorithm>
#include <cstring>

namespace kelspar::lz {

namespace {

constexpr uint32_t kRingMask = 0xFFF;
constexpr size_t kLongest = 17;  // bytes in a reference
constexpr size_t kTokens = 8;    // tokens behind a control byte

constexpr char kSeed[] =
    "{\\rtf1\\ansi\\mac\\deff0\\deftab720{\\fonttbl;}{\\f0\\fnil \\froman \\fswiss \\fmodern "
    "\\fscript \\fdecor MS Sans SerifSymbolArialTimes New RomanCourier{\\colortbl\\red0\\green0"
    "\\blue0\r\n\\par \\pard\\plain\\f0\\fs20\\b\\i\\u\\tab\\tx";
static_assert(sizeof kSeed - 1 == kSeedSize);

struct Reference {
  uint32_t distance;  // back from the end of the output; 0 is the end mark
  uint32_t length;
};

Reference readReference(const uint8_t* token, size_t written) {
  const uint32_t bits = static_cast<uint32_t>(token[0]) << 8 | token[1];
  const uint32_t position = bits >> 4;
  return {(static_cast<uint32_t>(written + kSeedSize) - position) & kRingMask, (bits & 15) + 2};
}

class Decoder {
 public:
  Decoder(std::span<const uint8_t> stream, std::span<uint8_t> output)
      : in_(stream.data()), end_(in_ + stream.size()), out_(output.data()), size_(output.size()) {}

  void run() {
    while (in_ < end_ && written_ < size_) {
      if (hasRoomForAGroup()) {
        fastGroup();
      } else {
        carefulGroup();
      }
    }
    // The fast groups write up to 17 bytes beyond what they decode.
    std::fill_n(out_ + written_, std::min(kLongest, size_ - written_), uint8_t{0});
  }

 private:
  [[nodiscard]] bool hasRoomForAGroup() const {
    return static_cast<size_t>(end_ - in_) >= 1 + 2 * kTokens + kLongest &&
           size_ - written_ >= (kTokens + 1) * kLongest && written_ >= kLongest;
  }

  // Eight tokens with no bounds in reach: each copies 17 bytes from wherever it is told to, and
  // then counts only those that were meant. Whether a token is a literal or a reference is as good
  // as random, so it selects values and not a branch.
  void fastGroup() {
    const uint8_t* in = in_;
    uint32_t control = *in++;
    size_t written = written_;
    for (size_t token = 0; token < kTokens; ++token, control >>= 1) {
      const uint32_t isReference = control & 1;
      const Reference reference = readReference(in, written);
      uint8_t* const to = out_ + written;
      // Distances under 16 repeat what is being written; those beyond the output reach the seed.
      const bool isFar = size_t{reference.distance} - 16 <= written - 16;
      if (isReference && !isFar) {
        in += 2;
        if (reference.distance == 0) break;
        copyNear(to, written, reference);
        written += reference.length;
        continue;
      }
      const uintptr_t mask = -static_cast<uintptr_t>(isReference);
      const auto literal = reinterpret_cast<uintptr_t>(in);
      const auto back = reinterpret_cast<uintptr_t>(to) - reference.distance;
      const auto* from = reinterpret_cast<const uint8_t*>(literal ^ ((literal ^ back) & mask));
      std::memcpy(to, from, 16);
      to[16] = from[16];
      written += 1 + ((reference.length - 1) & static_cast<uint32_t>(mask));
      in += 1 + isReference;
    }
    in_ = in;
    written_ = written;
  }

  static void copyNear(uint8_t* to, size_t written, Reference reference) {
    for (uint32_t i = 0; i < reference.length; ++i) {
      const size_t decoded = written + i;
      if (reference.distance <= decoded) {
        to[i] = to[static_cast<ptrdiff_t>(i) - reference.distance];
      } else {
        const size_t before = reference.distance - decoded;  // 1 is the seed's last byte
        to[i] = before <= kSeedSize ? static_cast<uint8_t>(kSeed[kSeedSize - before]) : 0;
      }
    }
  }

  // The same at the edges. Where a token does not fit, the group ends there, and what is left of it
  // is read as the next control byte.
  void carefulGroup() {
    uint32_t control = *in_++;
    for (size_t token = 0; token < kTokens; ++token, control >>= 1) {
      if (control & 1) {
        if (end_ - in_ < 2) return;
        const Reference reference = readReference(in_, written_);
        in_ += 2;
        // Deliberate: the end mark ends the group only; bytes behind it are decoded as well. A
        // reference that does not fit is dropped whole.
        if (reference.distance == 0 || reference.length > size_ - written_) return;
        copyNear(out_ + written_, written_, reference);
        written_ += reference.length;
      } else {
        if (in_ == end_ || written_ == size_) return;
        out_[written_++] = *in_++;
      }
    }
  }

  const uint8_t* in_;
  const uint8_t* const end_;
  uint8_t* const out_;
  const size_t size_;
  size_t written_ = 0;
};

}  // namespace

std::span<const uint8_t, kSeedSize> seed() {
  return std::span<const uint8_t, kSeedSize>(reinterpret_cast<const uint8_t*>(kSeed), kSeedSize);
}

void decode(std::span<const uint8_t> stream, std::span<uint8_t> output) {
  Decoder(stream, output).run();
}

}  // namespace kelspar::lz

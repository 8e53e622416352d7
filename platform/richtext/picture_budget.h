// Pictures that stand in many places of a document that is written. Internal to the library.
#pragma once

#include <unordered_set>

#include "platform/foundation/NSData.h"

namespace kelspar {

// Each picture's bytes are written at its first place. What is written again is no more than a
// budget for the document: a small message must not become a large page.
class PictureBudget {
 public:
  static constexpr size_t kRepeatedBytes = size_t{16} << 20;

  // Whether the bytes may be written here.
  [[nodiscard]] bool takes(const NSData& picture) {
    if (written_.insert(picture.bytes()).second) return true;
    if (picture.length() > left_) return false;
    left_ -= picture.length();
    return true;
  }

 private:
  std::unordered_set<const uint8_t*> written_;
  size_t left_ = kRepeatedBytes;
};

}  // namespace kelspar

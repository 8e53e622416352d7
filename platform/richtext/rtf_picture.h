// A picture in RTF: its bytes, its kind, the size it is shown at. Internal.
#pragma once

#include <string>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/rtf_keywords.h"

namespace kelspar {

class RTFPicture {
 public:
  // One of the picture words; false for any other.
  bool word(int32_t word, int32_t parameter);
  // Digits of the hexadecimal form; anything else between them does not count.
  void hex(std::string_view digits);
  void binary(std::string_view bytes) { bytes_.append(bytes); }

  // PNG and JPEG as they are, a device-independent bitmap as a BMP file, a metafile as what it
  // draws. Other kinds have no contents, only a size. Null when there is nothing to show.
  [[nodiscard]] std::shared_ptr<const NSTextAttachment> attachment() &&;

 private:
  enum class Kind : uint8_t { unknown, png, jpeg, bitmap, metafile, enhancedMetafile };
  [[nodiscard]] Kind kindByBytes() const;
  void takeMetafile(bool isOld, NSTextAttachment* attachment) const;

  Kind kind_ = Kind::unknown;
  int32_t width_ = 0, height_ = 0;              // pixels, or hundredths of a millimetre
  int32_t wantedWidth_ = 0, wantedHeight_ = 0;  // twips
  int32_t scaleX_ = 100, scaleY_ = 100;         // per cent
  std::string bytes_;
  int high_ = -1;  // the first digit of a byte whose second one is to come
};

}  // namespace kelspar

// An image as its file's bytes: its size is read at once, its pixels when it is drawn.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// Formats: PNG, JPEG, GIF, BMP, TIFF, ICO; WebP and SVG where GDK-PixBuf has loaders for them. SVG
// that could keep a renderer busy is none (docs/pdf.md).
// Immutable; any thread may use it.
class NSImage {
 public:
  // Invalid (false) for bytes that are none of these formats, for nil and for images of more than
  // 100 million pixels. Only as much is read as it takes to learn the size.
  [[nodiscard]] static NSImage initWithData(const NSData& data);

  explicit operator bool() const { return static_cast<bool>(data_); }
  [[nodiscard]] const NSData& data() const { return data_; }
  [[nodiscard]] const NSString& type() const { return type_; }  // "image/png"
  // In points, upright as EXIF says, by the resolution that the file states (72 pixels an inch
  // where it states none, or one below 18 or above 4,800). 0 for an invalid image.
  [[nodiscard]] double width() const { return width_; }
  [[nodiscard]] double height() const { return height_; }

  // One character U+FFFC with the image as its attachment; nil for an invalid image.
  [[nodiscard]] NSAttributedString createAttributedString() const;

 private:
  NSData data_;
  NSString type_;
  double width_ = 0, height_ = 0;
};

}  // namespace kelspar

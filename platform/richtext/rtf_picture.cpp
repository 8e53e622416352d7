// Pictures: hexadecimal digits to a file that image readers know.
#include "platform/richtext/rtf_picture.h"

#include "platform/foundation/hex.h"
#include "platform/richtext/device_bitmap.h"
#include "platform/richtext/image_type.h"
#include "platform/richtext/metafile.h"

namespace kelspar {

namespace {

// In points. A metafile's own size is in hundredths of a millimetre, a bitmap's in pixels.
double points(int32_t wanted, int32_t size, int32_t scale, bool metafile) {
  double points = wanted > 0 ? wanted / 20.0 : size * (metafile ? 72 / 2540.0 : 0.75);
  if (scale > 0) points *= scale / 100.0;
  constexpr double kLargest = 14400;  // two hundred inches
  return points > 0 && points <= kLargest ? points : 0;
}

}  // namespace

bool RTFPicture::word(int32_t word, int32_t parameter) {
  switch (word) {
    case kPNG:
      kind_ = Kind::png;
      return true;
    case kJPEG:
      kind_ = Kind::jpeg;
      return true;
    case kMetafile:
      kind_ = Kind::metafile;
      return true;
    case kEnhancedMetafile:
      kind_ = Kind::enhancedMetafile;
      return true;
    case kBitmap:
      kind_ = Kind::bitmap;
      return true;
    case kDeviceBitmap:
      kind_ = Kind::unknown;
      return true;
    case kPictureWidth:
      width_ = parameter;
      return true;
    case kPictureHeight:
      height_ = parameter;
      return true;
    case kWantedWidth:
      wantedWidth_ = parameter;
      return true;
    case kWantedHeight:
      wantedHeight_ = parameter;
      return true;
    case kScaleX:
      scaleX_ = parameter;
      return true;
    case kScaleY:
      scaleY_ = parameter;
      return true;
    default:
      return false;
  }
}

void RTFPicture::hex(std::string_view digits) {
  for (const char c : digits) {
    const int digit = hexValue(c);
    if (digit < 0) continue;
    if (high_ < 0) {
      high_ = digit;
    } else {
      bytes_ += static_cast<char>(high_ << 4 | digit);
      high_ = -1;
    }
  }
}

// Some writers name one kind and store another.
RTFPicture::Kind RTFPicture::kindByBytes() const {
  const std::string_view type = imageTypeOf(bytes_);
  if (type == "image/png") return Kind::png;
  if (type == "image/jpeg") return Kind::jpeg;
  return kind_ == Kind::png || kind_ == Kind::jpeg ? Kind::unknown : kind_;
}

// What cannot be shown keeps its kind and its place.
void RTFPicture::takeMetafile(bool isOld, NSTextAttachment* attachment) const {
  const MetafileSize size{attachment->width, attachment->height};
  const MetafilePicture picture = isOld ? pictureOfWMF(bytes_, size) : pictureOfEMF(bytes_, size);
  attachment->type = isOld ? u"image/x-wmf"_ns : u"image/x-emf"_ns;
  if (picture.file.empty()) return;
  attachment->type = NSString(picture.type);
  attachment->contents = NSData(picture.file);
  attachment->width = picture.size.width;
  attachment->height = picture.size.height;
}

std::shared_ptr<const NSTextAttachment> RTFPicture::attachment() && {
  const Kind kind = kindByBytes();
  const bool isMetafile = kind == Kind::metafile || kind == Kind::enhancedMetafile;
  auto attachment = std::make_shared<NSTextAttachment>();
  attachment->width = points(wantedWidth_, width_, scaleX_, isMetafile);
  attachment->height = points(wantedHeight_, height_, scaleY_, isMetafile);
  switch (kind) {
    case Kind::png:
      attachment->type = u"image/png"_ns;
      attachment->contents = NSData(std::move(bytes_));
      break;
    case Kind::jpeg:
      attachment->type = u"image/jpeg"_ns;
      attachment->contents = NSData(std::move(bytes_));
      break;
    case Kind::bitmap:
      attachment->type = u"image/bmp"_ns;
      if (std::string file = bitmapFile(bytes_); !file.empty()) {
        attachment->contents = NSData(std::move(file));
      }
      break;
    case Kind::metafile:
    case Kind::enhancedMetafile:
      takeMetafile(kind == Kind::metafile, attachment.get());
      break;
    case Kind::unknown:
      break;
  }
  const bool hasSize = attachment->width > 0 && attachment->height > 0;
  if (!attachment->contents && (bytes_.empty() || !hasSize)) return nullptr;
  return attachment;
}

}  // namespace kelspar

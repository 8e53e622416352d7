// What stands in the frame of a picture that cannot be shown: a remote one, a format without a
// loader. Internal to the library.
#pragma once

#include <string>

#include "platform/richtext/NSTextAttributes.h"

typedef struct _cairo cairo_t;
typedef struct _PangoLayout PangoLayout;

namespace kelspar {

// Its alternative text, its name, or where it would come from ("banner.png (example.com)"); UTF-8,
// 200 units at most. Empty when nothing is known.
[[nodiscard]] std::string pictureLabel(const NSTextAttachment& picture);

// Letters of the labels, small and grey, as outlines: they are no part of the text.
class LabelWriter {
 public:
  LabelWriter() = default;
  LabelWriter(const LabelWriter&) = delete;
  ~LabelWriter();

  // As much of it as has room in the box.
  void draw(cairo_t* page, const std::string& label, double x, double y, double width,
            double height);

 private:
  PangoLayout* layout_ = nullptr;  // made with the first label
};

}  // namespace kelspar

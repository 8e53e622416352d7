// A stretch of attributed text as Pango takes it: UTF-8, attributes by byte. Internal to the
// library.
#pragma once

#include <string>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"

typedef struct _PangoAttrList PangoAttrList;
typedef struct _PangoAttribute PangoAttribute;
typedef struct _PangoLayout PangoLayout;

namespace kelspar {

// Only what decides on glyphs and their places becomes an attribute of Pango's; colours and lines
// are looked up when glyphs are taken.
class PangoText {
 public:
  PangoText() = default;
  ~PangoText();
  PangoText(const PangoText&) = delete;

  // `base`: the look that needs no attributes. Pictures are scaled down to `widest` points.
  void begin(const NSTextAttributes& base, double widest);
  void append(std::u16string_view units, const NSTextAttributes& look);
  void applyTo(PangoLayout* layout);

  [[nodiscard]] const std::string& utf8() const { return text_; }
  // The look of the character that starts at `byte`, and in `*end` where another one begins.
  [[nodiscard]] const NSTextAttributes& lookAt(size_t byte, size_t* end) const;
  // How high the picture is whose character starts at `byte`; 0 without one.
  [[nodiscard]] double pictureHeight(size_t byte) const;
  [[nodiscard]] bool hasPictures(size_t startByte, size_t endByte) const;
  // How many UTF-16 units the first `bytes` bytes stand for.
  [[nodiscard]] size_t unitsBefore(size_t bytes) const;

 private:
  struct Span {
    size_t start;
    const NSTextAttributes* look;
  };

  void insert(PangoAttribute* attribute, size_t start, size_t end);
  void insertShapes(const NSTextAttributes& look, size_t start);

  std::string text_;
  std::vector<Span> spans_;
  std::vector<std::pair<size_t, double>> pictures_;  // byte and height, in order
  const NSTextAttributes* base_ = nullptr;
  double widest_ = 0;
  PangoAttrList* attributes_ = nullptr;
};

}  // namespace kelspar

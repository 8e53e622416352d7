// What measuring and drawing share. Internal to the library.
#pragma once

#include <cstddef>

#include "platform/richtext/NSTextAttributes.h"

typedef struct _PangoContext PangoContext;
typedef struct _PangoFontDescription PangoFontDescription;

namespace kelspar {

// How many units one layout takes at a time: Pango's widths overflow at 2^21 points.
inline constexpr size_t kLongestPiece = 20'000;
// Points between tab stops that nobody set.
inline constexpr double kTabDistance = 28;

// Of an object of Pango's.
struct Release {
  void operator()(void* object) const;
};

// A context on a font map of its own, in which a unit is a point. To be released by the caller.
[[nodiscard]] PangoContext* newPointContext();

[[nodiscard]] bool isAnyFontInstalled();

// To be freed by the caller.
[[nodiscard]] PangoFontDescription* fontDescription(const NSTextAttributes& look);

}  // namespace kelspar

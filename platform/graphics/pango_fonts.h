// What measuring and drawing share. Internal to the library.
#pragma once

#include "platform/richtext/NSTextAttributes.h"

typedef struct _PangoContext PangoContext;
typedef struct _PangoFontDescription PangoFontDescription;

namespace kelspar {

// A context on a font map of its own, in which a unit is a point. To be released by the caller.
[[nodiscard]] PangoContext* newPointContext();

[[nodiscard]] bool isAnyFontInstalled();

// To be freed by the caller.
[[nodiscard]] PangoFontDescription* fontDescription(const NSTextAttributes& look);

}  // namespace kelspar

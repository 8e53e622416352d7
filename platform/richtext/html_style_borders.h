// The border properties of style declarations. Internal to the style parser.
#pragma once

#include <string_view>

#include "platform/richtext/html_style.h"

namespace kelspar::html {

// "1px solid #ccc", in any order. Without a style there is no line; without a width it is a medium
// one, without a colour black. Never fails.
bool parseBorder(std::u16string_view value, Declarations* to);  // all four sides
bool parseBorderTop(std::u16string_view value, Declarations* to);
bool parseBorderRight(std::u16string_view value, Declarations* to);
bool parseBorderBottom(std::u16string_view value, Declarations* to);
bool parseBorderLeft(std::u16string_view value, Declarations* to);

}  // namespace kelspar::html

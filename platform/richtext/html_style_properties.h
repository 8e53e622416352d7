// The properties that count, by name, and what reads their values. Internal to the style parser.
#pragma once

#include <string_view>

#include "platform/richtext/html_style.h"

namespace kelspar::html {

struct PropertyRow {
  std::u16string_view name;
  Property property;  // count: the parser says itself which ones it sets
  // False for a value that it does not know.
  bool (*parse)(std::u16string_view value, Declarations* to);
  bool isLayout;
};

// Null for a name that is none; letters in either case.
[[nodiscard]] const PropertyRow* findProperty(std::u16string_view name);

}  // namespace kelspar::html

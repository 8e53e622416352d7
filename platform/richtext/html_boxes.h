// The boxes that paragraphs stand in, out of declarations: cells, and blocks with lines or a ground
// of their own. Internal to the importer.
#pragma once

#include <optional>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/html_style.h"

namespace kelspar::html {

// The box takes over what is declared of its lines, ground, width and padding. Padding that is
// declared for some sides leaves the others as they are.
void applyToBox(const Declarations& declared, double fontSize, NSTextTableCell* box);

// Whether a block with these declarations is to be told from what is around it, whose ground is
// `ground`; none is the paper's white.
[[nodiscard]] bool isBox(const Declarations& declared, const std::optional<NSColor>& ground);

// The colour behind a paragraph.
[[nodiscard]] std::optional<NSColor> groundOf(const NSParagraphStyle& paragraph);

}  // namespace kelspar::html

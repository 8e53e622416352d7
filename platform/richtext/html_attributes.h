// What tags say in attributes of their own: links, images, sizes, alignments. Internal to the
// importer.
#pragma once

#include <functional>
#include <memory>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_tokenizer.h"

namespace kelspar::html {

// An integer; `otherwise` when there is none. At most a thousand million either way.
[[nodiscard]] int32_t numberOf(const Attribute* attribute, int32_t otherwise);
// A length in pixels, as points; 0 for none and for a percentage.
[[nodiscard]] double pointsOf(const Tokenizer& tag, std::u16string_view name);
// <font size>: 1 to 7, or a step up or down; points, 0 for none.
[[nodiscard]] double fontSizeOf(const Tokenizer& tag);
[[nodiscard]] NSTextAlignment alignmentNamed(std::u16string_view name, NSTextAlignment otherwise);
// Where an <a> leads; nil for nothing, and for scripts and documents inside the link.
[[nodiscard]] NSString linkOf(const Tokenizer& tag);
// What an <img> refers to; null when nothing would be shown (an empty source, no source and no
// alternative, a pixel that counts readers).
[[nodiscard]] std::shared_ptr<NSTextAttachment> attachmentOf(const Tokenizer& tag,
                                                             const HTMLImportOptions& options);

}  // namespace kelspar::html

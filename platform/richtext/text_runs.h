// Lists of runs: appending with neighbours of one look merged, and cutting. Internal to the room.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar::richtext {

using SharedAttributes = std::shared_ptr<const NSTextAttributes>;

[[nodiscard]] bool sameLook(const SharedAttributes& a, const SharedAttributes& b);

// Nothing for length 0; the last run grows when it looks the same.
void appendRun(std::vector<NSTextRun>* runs, size_t length, const SharedAttributes& attributes);

// The part `[start, start + length)` of `from`, cut to its end.
void appendRuns(std::vector<NSTextRun>* runs, std::span<const NSTextRun> from, size_t start,
                size_t length);

// The look of text that says nothing about it.
[[nodiscard]] const SharedAttributes& plainAttributes();

}  // namespace kelspar::richtext

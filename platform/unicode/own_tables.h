// The tables of encodings that ICU does not have; U+FFFD where a byte is undefined. Internal.
#pragma once

namespace kelspar {

extern const char16_t kNextStepUnits[128];
extern const char16_t kLatin10Units[96];
extern const char16_t kSymbolUnits[224];

}  // namespace kelspar

// The lookup behind localizedStringFor:inTable:. Internal to the unit.
#pragma once

#include <string>

#include "platform/foundation/NSString.h"

namespace kelspar {

// The same with the folder of the main bundle's catalogues; empty when there is no main bundle.
[[nodiscard]] NSString localizedString(const NSString& key, const NSString& table,
                                       const std::string& catalogues);

}  // namespace kelspar

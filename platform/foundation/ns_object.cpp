// What every value has: a kind and a description.
#include "platform/foundation/NSObject.h"

#include "platform/foundation/NSString.h"

namespace kelspar {

NSString NSObject::description() const { return NSString::stringWithFormat(u"<%s>", kind().name); }

NSString id::description() const { return contents_ ? contents_->description() : u"(null)"_ns; }

}  // namespace kelspar

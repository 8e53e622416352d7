// The kind of text fields.
#include "platform/dispatch/NSTextField.h"

namespace kelspar {

const NSKind NSTextField::kKind{"NSTextField"};

const NSKind& NSTextFieldView::kind() const { return NSTextField::kKind; }

}  // namespace kelspar

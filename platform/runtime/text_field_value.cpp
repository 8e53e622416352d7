// Recording text fields.
#include "platform/runtime/text_field_value.h"

#include <mutex>

namespace kelspar::runtime {

namespace {

class RecordingTextField final : public NSTextFieldView {
 public:
  void setStringValue(const NSString& value) override { record({u"setStringValue:"_ns, value}); }
  void displayIfNeeded() override { record({u"displayIfNeeded"_ns}); }
  void setNeedsDisplay(bool needsDisplay) override {
    record({u"setNeedsDisplay:"_ns, NSNumber(needsDisplay)});
  }
  NSArray sent() const {
    const std::lock_guard guard(lock_);
    return sent_.copy();
  }

 private:
  void record(NSArray message) {
    const std::lock_guard guard(lock_);
    sent_.addObject(std::move(message));
  }

  mutable std::mutex lock_;
  NSMutableArray sent_;
};

}  // namespace

id readTextField(const id& content) {
  const auto flag = content.as<NSNumber>();
  const bool isTrue = flag.type() == NSNumber::Type::boolean && flag.boolValue();
  return isTrue ? NSTextField(new RecordingTextField) : NSTextField();
}

NSArray sentToTextField(const NSTextField& field) {
  const auto* recording = dynamic_cast<const RecordingTextField*>(field.contents());
  return recording ? recording->sent() : NSArray();
}

}  // namespace kelspar::runtime

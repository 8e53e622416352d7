// The unit's operation, as hosts call it.
#include "EmailUtilities/EmailUtilities.h"
#include "platform/runtime/registry.h"

namespace kelspar {

namespace {

// With a completion the answer is what the completion was given, sent once it has run.
class BuildContent final : public Operation {
 public:
  BuildContent() : Operation("buildRTFMessageContent:attachments:completion:", false) {}
  std::string receiverType() const override { return ""; }
  std::vector<std::string> argumentTypes() const override {
    return {"NSData", "NSArray", "completion (true, or null for none)"};
  }
  std::string resultType() const override { return "NSAttributedString"; }
  void call(const Call& call, Reply reply) const override {
    runtime::Argument<NSData> rtf;
    runtime::Argument<NSArray> attachments;
    CompletionSlot completion;
    runtime::loadArguments(call, {&rtf, &attachments, &completion}, argumentTypes());
    if (completion.isNull()) {
      EmailUtilities::buildRTFMessageContent(rtf.pass(), attachments.pass(), nullptr);
      return reply(Answer());
    }
    EmailUtilities::buildRTFMessageContent(rtf.pass(), attachments.pass(),
                                           [reply = std::move(reply)](NSAttributedString content) {
                                             Answer answer;
                                             answer.value = std::move(content);
                                             reply(std::move(answer));
                                           });
  }

 private:
  class CompletionSlot final : public runtime::ArgumentSlot {
   public:
    bool load(const id& value) override {
      isNull_ = runtime::isNilValue(value);
      const auto given = value.as<NSNumber>();
      return isNull_ || (given && given.type() == NSNumber::Type::boolean && given.boolValue());
    }
    bool isNull() const override { return isNull_; }

   private:
    bool isNull_ = true;
  };
};

}  // namespace

KELSPAR_OPERATIONS(EmailUtilities) {
  registry.forClass("EmailUtilities").add(std::make_unique<BuildContent>());
}

}  // namespace kelspar

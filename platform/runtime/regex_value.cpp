// POSIX regular expressions as values.
#include "platform/runtime/regex_value.h"

namespace kelspar::runtime {

const NSKind RegexValue::kKind{"regex_t"};

namespace {

class RegexContents final : public NSObject {
 public:
  explicit RegexContents(const regex_t& compiled) : compiled_(compiled) {}
  ~RegexContents() override { regfree(&compiled_); }
  const NSKind& kind() const override { return RegexValue::kKind; }
  const regex_t& compiled() const { return compiled_; }

 private:
  regex_t compiled_;
};

int flagNamed(const NSString& name) {
  if (name == u"REG_EXTENDED") return REG_EXTENDED;
  if (name == u"REG_ICASE") return REG_ICASE;
  if (name == u"REG_NEWLINE") return REG_NEWLINE;
  return name == u"REG_NOSUB" ? REG_NOSUB : -1;
}

}  // namespace

RegexValue RegexValue::compile(const std::string& pattern, int flags) {
  regex_t compiled;
  if (regcomp(&compiled, pattern.c_str(), flags) != 0) return {};
  return RegexValue(new RegexContents(compiled));
}

const regex_t& RegexValue::get() const {
  return static_cast<const RegexContents*>(contents())->compiled();
}

id readRegex(const id& content) {
  const auto form = content.as<NSDictionary>();
  const auto pattern = form.objectForKey<NSString>(u"pattern");
  if (!pattern) return nil;
  int flags = 0;
  for (const id& name : form.objectForKey<NSArray>(u"flags")) {
    const int flag = flagNamed(name.as<NSString>());
    if (flag < 0) return nil;
    flags |= flag;
  }
  return RegexValue::compile(pattern.utf8(), flags);
}

}  // namespace kelspar::runtime

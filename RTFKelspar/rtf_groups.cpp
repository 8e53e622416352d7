// Groups of RTF as texts: taken out and replaced.
#include "RTFKelspar/rtf_groups.h"

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::RTFKelsparNSStringAdditions {

namespace {

RTFGroup groupOf(const NSString& text, const NSString& tag) {
  const NSString opening = NSString::stringWithFormat(u"{\\%@"_ns, tag);
  return findGroup(text.view(), opening.view());
}

// The name as `getContentOfRTFTag` looks for it; nil when nothing is to be looked for.
NSString cleanTag(const NSString& tag) {
  const NSString name = stringByTrimming(tag, NSCharacterSet::whitespace());
  return name.isEmpty() ? nil : name;
}

}  // namespace

NSString extractRTFTagContent(const NSString& receiver, const NSString& tag) {
  const RTFGroup group = groupOf(receiver, tag);
  return group.isFound() ? receiver.substring(group.from, group.to - group.from) : nil;
}

NSString getContentOfRTFTag(const NSString& receiver, const NSString& tag) {
  const NSString name = cleanTag(tag);
  return name ? extractRTFTagContent(receiver, name) : nil;
}

NSString stringByReplacingContentOfTag(const NSString& receiver, const NSString& tag,
                                       const NSString& replacement) {
  const NSString name = cleanTag(tag);
  if (!name) return receiver;
  const RTFGroup group = groupOf(receiver, name);
  if (!group.isFound()) return receiver;
  std::u16string text(receiver.view());
  replaceGroup(text, group, replacement.view());
  return NSString(std::move(text));
}

}  // namespace kelspar::RTFKelsparNSStringAdditions

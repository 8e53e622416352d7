// Attributed text that does not change: one text, its runs, and where each run ends.
#include "platform/richtext/NSAttributedString.h"

#include <algorithm>

#include "platform/richtext/text_runs.h"

namespace kelspar {

const NSKind NSAttributedString::kKind{"NSAttributedString"};

namespace {

template <class T>
bool sameContents(const std::shared_ptr<const T>& a, const std::shared_ptr<const T>& b) {
  return a == b || (a && b && *a == *b);
}

// No style is the default one.
bool sameParagraph(const NSTextAttributes& a, const NSTextAttributes& b) {
  if (a.paragraph == b.paragraph) return true;
  static const NSParagraphStyle plain;
  return (a.paragraph ? *a.paragraph : plain) == (b.paragraph ? *b.paragraph : plain);
}

class AttributedContents final : public NSObject {
 public:
  AttributedContents(NSString text, std::vector<NSTextRun> runs)
      : text_(std::move(text)), runs_(std::move(runs)) {
    ends_.reserve(runs_.size());
    size_t end = 0;
    for (const NSTextRun& run : runs_) ends_.push_back(end += run.length);
  }

  const NSKind& kind() const override { return NSAttributedString::kKind; }
  NSString description() const override { return text_; }

  bool isEqual(const NSObject& other) const override {
    if (&other.kind() != &NSAttributedString::kKind) return false;
    const auto& that = static_cast<const AttributedContents&>(other);
    return text_ == that.text_ &&
           std::ranges::equal(runs_, that.runs_, [](const NSTextRun& a, const NSTextRun& b) {
             return a.length == b.length && richtext::sameLook(a.attributes, b.attributes);
           });
  }

  const NSString& text() const { return text_; }
  std::span<const NSTextRun> runs() const { return runs_; }
  // The run that holds the unit at `index`, and where it begins.
  size_t runAt(size_t index) const {
    return static_cast<size_t>(std::ranges::upper_bound(ends_, index) - ends_.begin());
  }
  size_t startOf(size_t run) const { return run ? ends_[run - 1] : 0; }

 private:
  NSString text_;
  std::vector<NSTextRun> runs_;
  std::vector<size_t> ends_;
};

const AttributedContents* contentsOf(const NSAttributedString& text) {
  return static_cast<const AttributedContents*>(text.contents());
}

}  // namespace

bool operator==(const NSTextAttributes& a, const NSTextAttributes& b) {
  return a.font == b.font && a.foreground == b.foreground && a.background == b.background &&
         a.underline == b.underline && a.strikethrough == b.strikethrough &&
         a.superscript == b.superscript && a.baselineOffset == b.baselineOffset &&
         a.link == b.link && sameParagraph(a, b) && sameContents(a.attachment, b.attachment);
}

namespace richtext {

bool sameLook(const SharedAttributes& a, const SharedAttributes& b) { return a == b || *a == *b; }

void appendRun(std::vector<NSTextRun>* runs, size_t length, const SharedAttributes& attributes) {
  if (length == 0) return;
  if (!runs->empty() && sameLook(runs->back().attributes, attributes)) {
    runs->back().length += length;
  } else {
    runs->push_back({length, attributes});
  }
}

void appendRuns(std::vector<NSTextRun>* runs, std::span<const NSTextRun> from, size_t start,
                size_t length) {
  for (const NSTextRun& run : from) {
    if (length == 0) break;
    if (start >= run.length) {
      start -= run.length;
      continue;
    }
    const size_t taken = std::min(run.length - start, length);
    appendRun(runs, taken, run.attributes);
    start = 0;
    length -= taken;
  }
}

const SharedAttributes& plainAttributes() {
  static const SharedAttributes plain = std::make_shared<NSTextAttributes>();
  return plain;
}

}  // namespace richtext

NSAttributedString::NSAttributedString(const NSString& text, const NSTextAttributes& attributes) {
  if (!text) return;
  std::vector<NSTextRun> runs;
  richtext::appendRun(&runs, text.length(), std::make_shared<NSTextAttributes>(attributes));
  static_cast<id&>(*this) = id(new AttributedContents(text, std::move(runs)));
}

NSAttributedString::NSAttributedString(const NSString& text, std::vector<NSTextRun> runs) {
  if (!text) return;
  size_t length = 0;
  std::vector<NSTextRun> merged;
  merged.reserve(runs.size());
  for (const NSTextRun& run : runs) {
    length += run.length;
    richtext::appendRun(&merged, run.length,
                        run.attributes ? run.attributes : richtext::plainAttributes());
  }
  if (length != text.length()) {
    throw NSInvalidArgumentException("the runs' lengths do not add up to the text's");
  }
  static_cast<id&>(*this) = id(new AttributedContents(text, std::move(merged)));
}

NSAttributedString NSAttributedString::empty() {
  static const NSAttributedString empty(u""_ns);
  return empty;
}

NSString NSAttributedString::string() const { return *this ? contentsOf(*this)->text() : nil; }

size_t NSAttributedString::length() const { return *this ? contentsOf(*this)->text().length() : 0; }

std::span<const NSTextRun> NSAttributedString::runs() const {
  return *this ? contentsOf(*this)->runs() : std::span<const NSTextRun>();
}

const NSTextAttributes& NSAttributedString::attributesAtIndex(size_t index,
                                                              NSRange* effective) const {
  if (index >= length()) throw NSRangeException("the index is behind the text's end");
  const AttributedContents& contents = *contentsOf(*this);
  const size_t run = contents.runAt(index);
  const NSTextRun& found = contents.runs()[run];
  if (effective) *effective = {contents.startOf(run), found.length};
  return *found.attributes;
}

NSAttributedString NSAttributedString::attributedSubstring(NSRange range) const {
  const size_t size = length();
  if (range.location > size || range.length > size - range.location) {
    throw NSRangeException("the range leaves the text");
  }
  if (range.length == size) return *this;
  if (range.length == 0) return empty();
  const AttributedContents& contents = *contentsOf(*this);
  const size_t first = contents.runAt(range.location);
  std::vector<NSTextRun> runs;
  richtext::appendRuns(&runs, contents.runs().subspan(first),
                       range.location - contents.startOf(first), range.length);
  NSAttributedString part;
  static_cast<id&>(part) = id(new AttributedContents(
      contents.text().substring(range.location, range.length), std::move(runs)));
  return part;
}

}  // namespace kelspar

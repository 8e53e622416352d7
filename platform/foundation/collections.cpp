// Arrays and dictionaries of any values.
#include <algorithm>

#include "platform/foundation/NSArray.h"
#include "platform/foundation/NSDictionary.h"
#include "platform/foundation/NSException.h"
#include "platform/foundation/NSNumber.h"

namespace kelspar {

const NSKind NSArray::kKind{"NSArray"};
const NSKind NSDictionary::kKind{"NSDictionary"};

namespace {

id stored(id value) { return value ? std::move(value) : NSNull::null(); }

// Nested descriptions are indented; what nests deeper than this is not shown.
constexpr int kShownDepth = 32;
thread_local int describing = 0;

NSString describeLines(char16_t open, char16_t close, std::span<const std::u16string> lines) {
  std::u16string text(1, open);
  for (size_t i = 0; i < lines.size(); ++i) {
    text += i == 0 ? u"\n    " : u",\n    ";
    text += lines[i];
  }
  text += u"\n";
  return NSString(std::move(text += close));
}

struct OneDeeper {
  OneDeeper() { ++describing; }
  ~OneDeeper() { --describing; }
  OneDeeper(const OneDeeper&) = delete;
  OneDeeper& operator=(const OneDeeper&) = delete;
};

std::u16string describeElement(const id& element) {
  if (describing >= kShownDepth) return u"...";
  const OneDeeper level;
  const NSString text = element.description();
  std::u16string_view rest = text.view();
  std::u16string indented;
  for (size_t end; (end = rest.find(u'\n')) != rest.npos; rest.remove_prefix(end + 1)) {
    indented.append(rest.substr(0, end + 1)).append(u"    ");
  }
  return indented.append(rest);
}

class ArrayContents final : public NSObject {
 public:
  explicit ArrayContents(std::vector<id>&& elements) : elements_(std::move(elements)) {
    for (id& element : elements_) element = stored(std::move(element));
  }
  const NSKind& kind() const override { return NSArray::kKind; }
  bool isEqual(const NSObject& other) const override {
    return &other.kind() == &NSArray::kKind &&
           std::ranges::equal(elements_, static_cast<const ArrayContents&>(other).elements_,
                              [](const id& a, const id& b) { return a.isEqual(b); });
  }
  NSString description() const override {
    std::vector<std::u16string> lines;
    for (const id& element : elements_) lines.push_back(describeElement(element));
    return describeLines(u'(', u')', lines);
  }
  std::span<const id> elements() const { return elements_; }

 private:
  std::vector<id> elements_;
};

class DictionaryContents final : public NSObject {
 public:
  explicit DictionaryContents(NSMutableDictionary&& entries) : entries_(std::move(entries)) {}
  const NSKind& kind() const override { return NSDictionary::kKind; }
  bool isEqual(const NSObject& other) const override {
    if (&other.kind() != &NSDictionary::kKind) return false;
    const auto& that = static_cast<const DictionaryContents&>(other).entries_;
    return that.count() == entries_.count() &&
           std::ranges::all_of(entries_.entries(), [&](const auto& entry) {
             return entry.second.isEqual(that.objectForKey(entry.first));
           });
  }
  NSString description() const override {
    std::vector<std::u16string> lines;
    for (const auto& [key, value] : entries_.entries()) {
      lines.push_back(std::u16string(key.view()) + u" = " + describeElement(value));
    }
    return describeLines(u'{', u'}', lines);
  }
  const NSMutableDictionary& entries() const { return entries_; }

 private:
  NSMutableDictionary entries_;
};

const NSMutableDictionary& of(const NSDictionary& dictionary) {
  static const NSMutableDictionary none;
  if (!dictionary) return none;
  return static_cast<const DictionaryContents*>(dictionary.contents())->entries();
}

const id& checked(std::span<const id> elements, size_t index) {
  if (index >= elements.size()) throw NSRangeException("array index out of bounds");
  return elements[index];
}

}  // namespace

NSArray::NSArray(std::initializer_list<id> elements) : NSArray(std::vector<id>(elements)) {}
NSArray::NSArray(std::vector<id>&& elements) : id(new ArrayContents(std::move(elements))) {}

std::span<const id> NSArray::elements() const noexcept {
  return contents() ? static_cast<const ArrayContents*>(contents())->elements()
                    : std::span<const id>();
}

const id& NSArray::objectAtIndex(size_t index) const { return checked(elements(), index); }

const id& NSMutableArray::objectAtIndex(size_t index) const { return checked(elements_, index); }
void NSMutableArray::addObject(id element) { elements_.push_back(stored(std::move(element))); }
void NSMutableArray::replaceObjectAtIndex(size_t index, id element) {
  if (index >= elements_.size()) throw NSRangeException("array index out of bounds");
  elements_[index] = stored(std::move(element));
}

NSMutableDictionary::NSMutableDictionary(std::initializer_list<Entry> entries) {
  for (const auto& [key, value] : entries) setObject(value, key);
}

size_t NSMutableDictionary::find(std::u16string_view key) const {
  if (!index_.empty()) {
    const auto found = index_.find(key);
    return found == index_.end() ? entries_.size() : found->second;
  }
  return std::ranges::find_if(entries_, [&](const Entry& e) { return e.first.view() == key; }) -
         entries_.begin();
}

id NSMutableDictionary::objectForKey(std::u16string_view key) const {
  const size_t at = find(key);
  return at < entries_.size() ? entries_[at].second : id();
}

void NSMutableDictionary::setObject(id value, const NSString& key) {
  constexpr size_t kScanned = 8;  // up to here a scan beats the index
  if (!key) throw NSInvalidArgumentException("a dictionary's key is nil");
  const size_t at = find(key);
  if (at < entries_.size()) {
    entries_[at].second = stored(std::move(value));
    return;
  }
  entries_.emplace_back(key, stored(std::move(value)));
  if (!index_.empty()) {
    index_.emplace(key.view(), at);
  } else if (entries_.size() > kScanned) {
    for (size_t i = 0; i < entries_.size(); ++i) index_.emplace(entries_[i].first.view(), i);
  }
}

NSDictionary::NSDictionary(std::initializer_list<Entry> entries)
    : NSDictionary(NSMutableDictionary(entries)) {}
NSDictionary::NSDictionary(NSMutableDictionary&& entries)
    : id(new DictionaryContents(std::move(entries))) {}

std::span<const NSDictionary::Entry> NSDictionary::entries() const noexcept {
  return of(*this).entries();
}
id NSDictionary::objectForKey(std::u16string_view key) const { return of(*this).objectForKey(key); }
NSMutableDictionary NSDictionary::mutableCopy() const { return of(*this); }

}  // namespace kelspar

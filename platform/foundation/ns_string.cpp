// NSString's contents in their three homes: inside one allocation, a buffer taken over, a literal.
#include "platform/foundation/NSString.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>

#include "platform/foundation/NSException.h"
#include "platform/foundation/utf8.h"

namespace kelspar {

const NSKind NSString::kKind{"NSString"};

namespace {

using detail::StringContents;

// The units stand right behind the object.
class InlineContents final : public StringContents {
 public:
  static InlineContents* make(size_t length) {
    if (length > (SIZE_MAX - sizeof(InlineContents)) / sizeof(char16_t)) throw std::bad_alloc();
    void* memory = ::operator new(sizeof(InlineContents) + length * sizeof(char16_t));
    return new (memory) InlineContents(length);
  }
  char16_t* storage() { return reinterpret_cast<char16_t*>(this + 1); }
  static void operator delete(void* memory) { ::operator delete(memory); }

 private:
  explicit InlineContents(size_t length) : StringContents({}) { units_ = {storage(), length}; }
};

class AdoptedContents final : public StringContents {
 public:
  explicit AdoptedContents(std::u16string&& buffer)
      : StringContents({}), buffer_(std::move(buffer)) {
    units_ = buffer_;
  }

 private:
  std::u16string buffer_;
};

// A buffer of the C library's, so that it can be cut where it lies.
class MallocContents final : public StringContents {
 public:
  MallocContents(char16_t* units, size_t length) : StringContents({units, length}) {}
  ~MallocContents() override { std::free(const_cast<char16_t*>(units_.data())); }
};

const NSString& emptyText() {
  static const NSString empty = NSString::fromStatic(u"");
  return empty;
}

}  // namespace

const NSKind& detail::StringContents::kind() const { return NSString::kKind; }

bool detail::StringContents::isEqual(const NSObject& other) const {
  return &other.kind() == &NSString::kKind &&
         static_cast<const StringContents&>(other).units_ == units_;
}

NSString detail::StringContents::description() const { return id(this).as<NSString>(); }

NSString NSString::uninitialized(size_t length, char16_t** units) {
  if (length == 0) return emptyText();
  auto* contents = InlineContents::make(length);
  *units = contents->storage();
  return NSString(contents);
}

detail::UnitBuffer::UnitBuffer(size_t most) : most_(most) {
  if (most > SIZE_MAX / sizeof(char16_t)) throw std::bad_alloc();
  units_ = static_cast<char16_t*>(std::malloc(std::max<size_t>(most, 1) * sizeof(char16_t)));
  if (!units_) throw std::bad_alloc();
}

detail::UnitBuffer::~UnitBuffer() { std::free(units_); }

NSString detail::UnitBuffer::text(size_t length) && {
  constexpr size_t kShort = 128;  // two blocks of memory for few units do not pay
  if (length <= kShort) return NSString(std::u16string_view(units_, length));
  if (length < most_) {
    void* const cut = std::realloc(units_, length * sizeof(char16_t));
    if (cut) units_ = static_cast<char16_t*>(cut);
  }
  auto* const contents = new MallocContents(units_, length);
  units_ = nullptr;
  return NSString(contents);
}

NSString::NSString(std::u16string_view units)
    : NSString(build(units.size(), [&](char16_t* out) {
        std::memcpy(out, units.data(), units.size() * sizeof(char16_t));
      })) {}

// Small buffers live inside the std::u16string and gain nothing from being taken over; large ones
// that were reserved far too generously are not worth keeping.
NSString::NSString(std::u16string&& units) {
  const bool worthKeeping = units.size() > 32 && units.capacity() / 2 <= units.size();
  *this = worthKeeping ? NSString(new AdoptedContents(std::move(units)))
                       : NSString(std::u16string_view(units));
}

NSString::NSString(std::string_view utf8) {
  *this = fromUTF8(utf8);
  if (!*this) *this = NSString(utf8::decodeReplacing(utf8));
}

NSString NSString::fromUTF8(std::string_view bytes) {
  const size_t ascii = utf8::asciiPrefix(bytes);
  if (ascii == bytes.size()) {
    return build(ascii, [&](char16_t* out) { utf8::widen(bytes, out); });
  }
  const size_t count = utf8::unitCount(bytes);
  size_t valid = 0;
  NSString text = build(count, [&](char16_t* out) { utf8::decode(bytes, {out, count}, &valid); });
  return valid == bytes.size() ? text : nil;
}

NSString NSString::fromStatic(std::u16string_view units) {
  return NSString(new StringContents(units));
}

char16_t NSString::characterAtIndex(size_t index) const {
  if (index >= length()) throw NSRangeException("character index out of bounds");
  return view()[index];
}

NSString NSString::substring(size_t from, size_t length) const {
  const auto units = view();
  if (from > units.size()) throw NSRangeException("substring begins behind the end");
  if (from == 0 && length >= units.size()) return *this;
  return units.substr(from, length);
}

std::string NSString::utf8() const {
  std::string result;
  utf8::append(view(), &result);
  return result;
}

std::optional<std::string> NSString::strictUTF8() const {
  std::string result;
  if (!utf8::append(view(), &result)) return std::nullopt;
  return result;
}

NSRange NSString::rangeOfString(std::u16string_view needle, size_t from) const {
  if (needle.empty()) return {NSNotFound, 0};
  const size_t at = view().find(needle, from);
  return at == std::u16string_view::npos ? NSRange{NSNotFound, 0} : NSRange{at, needle.size()};
}

std::ostream& operator<<(std::ostream& stream, const NSString& text) {
  return text ? stream << '"' << text.utf8() << '"' : stream << "nil";
}

size_t NSMutableString::replaceOccurrences(std::u16string_view target,
                                           std::u16string_view replacement) {
  if (target.empty()) return 0;
  const std::u16string_view text = units_;
  size_t found = text.find(target);
  if (found == std::u16string_view::npos) return 0;
  std::u16string result;
  result.reserve(text.size());
  size_t from = 0, count = 0;
  for (; found != std::u16string_view::npos; found = text.find(target, from), ++count) {
    result.append(text.substr(from, found - from)).append(replacement);
    from = found + target.size();
  }
  result.append(text.substr(from));
  units_ = std::move(result);
  return count;
}

}  // namespace kelspar

#include "platform/richtext/html_open_elements.h"

namespace kelspar::html {

namespace {

constexpr size_t kMostNames = 4096;  // of elements that are none; further ones share a number
constexpr size_t kLongestName = 64;

}  // namespace

OpenElements::OpenElements() : last_(static_cast<size_t>(Tag::count) + 1) {}

uint16_t OpenElements::number(Tag tag, std::u16string_view name) {
  if (tag != Tag::unknown) return static_cast<uint16_t>(tag);
  std::u16string lower(name.substr(0, kLongestName));
  for (char16_t& c : lower) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
  const auto known = names_.find(lower);
  if (known != names_.end()) return known->second;
  if (names_.size() >= kMostNames) return static_cast<uint16_t>(Tag::unknown);
  last_.push_back(0);
  const auto number = static_cast<uint16_t>(last_.size() - 1);
  names_.emplace(std::move(lower), number);
  return number;
}

void OpenElements::push(OpenElement element) {
  const uint32_t position = size() + 1;
  const uint32_t traits = traitsOf(element.tag());
  element.previousSame = last_[element.name];
  element.previousScope = scope_;
  element.previousSpecial = special_;
  element.previousItem = item_;
  last_[element.name] = position;
  if (traits & kScope) scope_ = position;
  if (traits & kSpecial) {
    special_ = position;
    const Tag tag = element.tag();
    if (tag != Tag::address && tag != Tag::div && tag != Tag::p) item_ = position;
  }
  stack_.push_back(element);
}

void OpenElements::pop() {
  const OpenElement& element = stack_.back();
  if (last_[element.name] == size()) last_[element.name] = element.previousSame;
  scope_ = element.previousScope;
  special_ = element.previousSpecial;
  item_ = element.previousItem;
  stack_.pop_back();
}

void OpenElements::forget(uint32_t position) {
  const OpenElement& element = at(position);
  if (last_[element.name] == position) {
    last_[element.name] = element.previousSame;
    return;
  }
  for (uint32_t above = last_[element.name]; above != 0; above = at(above).previousSame) {
    if (at(above).previousSame != position) continue;
    at(above).previousSame = element.previousSame;
    return;
  }
}

}  // namespace kelspar::html

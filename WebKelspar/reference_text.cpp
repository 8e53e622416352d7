// The chain of tokens, and its hashes: polynomials modulo 2^61 - 1, of which two are joined at the
// cost of a power.
#include "WebKelspar/reference_text.h"

#include <algorithm>
#include <utility>

namespace kelspar {

namespace {

constexpr uint64_t kPrime = (uint64_t{1} << 61) - 1;
constexpr uint64_t kBase = 0x1B873593CC9E2D51 % kPrime;

uint64_t product(uint64_t a, uint64_t b) {
  const auto whole = static_cast<unsigned __int128>(a) * b;
  const uint64_t sum = static_cast<uint64_t>(whole & kPrime) + static_cast<uint64_t>(whole >> 61);
  return sum >= kPrime ? sum - kPrime : sum;
}

uint64_t sum(uint64_t a, uint64_t b) {
  const uint64_t both = a + b;
  return both >= kPrime ? both - kPrime : both;
}

uint64_t power(uint32_t exponent) {
  uint64_t result = 1;
  for (uint64_t square = kBase; exponent > 0; exponent >>= 1, square = product(square, square)) {
    if (exponent & 1) result = product(result, square);
  }
  return result;
}

char16_t lower(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

uint64_t hashOf(std::u16string_view units) {
  uint64_t hash = 0;
  for (const char16_t unit : units) hash = sum(product(hash, kBase), lower(unit) + uint64_t{1});
  return hash;
}

}  // namespace

ReferenceText::ReferenceText(std::u16string_view text,
                             const std::vector<std::u16string_view>& bodies)
    : units_(text) {
  for (const auto body : bodies) places_.try_emplace(hashOf(body));
  Index last = kNone;
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find_first_of(u"&;", at), text.size());
    if (end > at) {
      last = addWord(static_cast<uint32_t>(at), static_cast<uint32_t>(end - at), last, kNone);
    } else {
      last = addToken(text[at] == u'&' ? Kind::ampersand : Kind::semicolon, last, kNone);
    }
    at = std::max(end, at + 1);
  }
  for (Index token = 0; token < tokens_.size(); ++token) note(token);
}

ReferenceText::Index ReferenceText::addToken(Kind kind, Index previous, Index next) {
  const auto token = static_cast<Index>(tokens_.size());
  tokens_.push_back({.previous = previous, .next = next, .kind = kind});
  (previous == kNone ? first_ : tokens_[previous].next) = token;
  if (next != kNone) tokens_[next].previous = token;
  return token;
}

ReferenceText::Index ReferenceText::addWord(uint32_t offset, uint32_t length, Index previous,
                                            Index next) {
  const Index word = addToken(Kind::word, previous, next);
  const auto piece = static_cast<Index>(pieces_.size());
  pieces_.push_back({offset, length, kNone});
  Token& token = tokens_[word];
  token.firstPiece = token.lastPiece = piece;
  token.length = length;
  token.hash = hashOf(std::u16string_view(units_).substr(offset, length));
  return word;
}

void ReferenceText::joinWithNext(Index word) {
  Token& left = tokens_[word];
  Token& right = tokens_[left.next];
  left.hash = sum(product(left.hash, power(right.length)), right.hash);
  left.length += right.length;
  pieces_[left.lastPiece].next = right.firstPiece;
  left.lastPiece = right.lastPiece;
  right.kind = Kind::gone;
  left.next = right.next;
  if (left.next != kNone) tokens_[left.next].previous = word;
}

bool ReferenceText::holds(Index word, std::u16string_view lowerCase) const {
  if (!is(word, Kind::word) || tokens_[word].length != lowerCase.size()) return false;
  for (Index at = tokens_[word].firstPiece; at != kNone; at = pieces_[at].next) {
    const auto units = std::u16string_view(units_).substr(pieces_[at].offset, pieces_[at].length);
    if (!std::ranges::equal(units, lowerCase.substr(0, units.size()), {}, lower)) return false;
    lowerCase.remove_prefix(units.size());
  }
  return true;
}

ReferenceText::Index ReferenceText::bodyAt(Index ampersand) const {
  if (!is(ampersand, Kind::ampersand)) return kNone;
  const Index name = tokens_[ampersand].next;
  if (!holds(name, u"amp") || !is(tokens_[name].next, Kind::semicolon)) return kNone;
  const Index body = tokens_[tokens_[name].next].next;
  return is(body, Kind::word) && is(tokens_[body].next, Kind::semicolon) ? body : kNone;
}

void ReferenceText::note(Index token) {
  const Index body = bodyAt(token);
  if (body == kNone) return;
  const auto places = places_.find(tokens_[body].hash);
  if (places != places_.end()) places->second.push_back(token);
}

void ReferenceText::replace(std::u16string_view body, char16_t unit) {
  // What this makes is not replaced now, even where it was noted before.
  std::vector<Index> places = std::exchange(places_.at(hashOf(body)), {});
  std::erase_if(places, [&](Index token) {
    const Index there = bodyAt(token);
    return there == kNone || !holds(there, body);
  });
  for (const Index token : places) {
    if (is(token, Kind::ampersand)) replaceAt(token, unit);  // it may be noted twice
  }
}

void ReferenceText::replaceAt(Index ampersand, char16_t unit) {
  constexpr int kTokens = 5;
  const Index previous = tokens_[ampersand].previous;
  Index next = ampersand;
  for (int i = 0; i < kTokens; ++i) {
    tokens_[next].kind = Kind::gone;
    next = tokens_[next].next;
  }
  Index token;
  if (unit == u'&' || unit == u';') {
    token = addToken(unit == u'&' ? Kind::ampersand : Kind::semicolon, previous, next);
  } else {
    units_ += unit;
    token = addWord(static_cast<uint32_t>(units_.size() - 1), 1, previous, next);
    if (is(next, Kind::word)) joinWithNext(token);
    if (is(previous, Kind::word)) joinWithNext(token = previous);
  }
  for (int i = 0; i < kTokens && token != kNone; ++i) {
    note(token);
    token = tokens_[token].previous;
  }
}

std::u16string ReferenceText::text() const {
  std::u16string text;
  for (Index token = first_; token != kNone; token = tokens_[token].next) {
    if (is(token, Kind::ampersand)) text += u'&';
    if (is(token, Kind::semicolon)) text += u';';
    for (Index at = tokens_[token].firstPiece; at != kNone; at = pieces_[at].next) {
      text.append(units_, pieces_[at].offset, pieces_[at].length);
    }
  }
  return text;
}

}  // namespace kelspar

// A text in which escaped references are replaced one kind after the other, each seeing what the
// ones before it made. Internal to WebKelspar.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelspar {

// A chain of tokens: "&", ";", and words, the units between these. A reference is five of them,
// "&", "amp", ";", its body, ";". What is put in joins the words beside it and can complete only a
// reference that begins at most four tokens before, so a replacement costs what it takes away and
// not the text's length. Words are known by hashes that are joined when they are; what has the hash
// of a reference is compared with it before it counts.
class ReferenceText {
 public:
  // `bodies`: all that will be replaced. `text` has less than 2^31 units.
  ReferenceText(std::u16string_view text, const std::vector<std::u16string_view>& bodies);

  // Puts `unit` for each "&amp;" + `body` + ";" that there is now, in any case.
  void replace(std::u16string_view body, char16_t unit);
  [[nodiscard]] std::u16string text() const;

 private:
  using Index = uint32_t;
  static constexpr Index kNone = UINT32_MAX;

  enum class Kind : uint8_t { ampersand, semicolon, word, gone };
  // Of words joined, each stands in `units_`.
  struct Piece {
    uint32_t offset, length;
    Index next;
  };
  struct Token {
    Index previous, next;
    Index firstPiece = kNone, lastPiece = kNone;
    uint64_t hash = 0;  // of a word, in lower case
    uint32_t length = 0;
    Kind kind;
  };

  Index addToken(Kind kind, Index previous, Index next);
  Index addWord(uint32_t offset, uint32_t length, Index previous, Index next);
  void joinWithNext(Index word);
  [[nodiscard]] bool is(Index token, Kind kind) const {
    return token != kNone && tokens_[token].kind == kind;
  }
  [[nodiscard]] bool holds(Index word, std::u16string_view lowerCase) const;
  // The body of the reference that begins at the token; kNone: none does.
  [[nodiscard]] Index bodyAt(Index ampersand) const;
  void note(Index token);
  void replaceAt(Index ampersand, char16_t unit);

  std::u16string units_;  // the text's, behind them what was put in
  std::vector<Piece> pieces_;
  std::vector<Token> tokens_;
  Index first_ = kNone;
  // Where references with a body of this hash began when they were noted.
  std::unordered_map<uint64_t, std::vector<Index>> places_;
};

}  // namespace kelspar

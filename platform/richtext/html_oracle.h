// What another HTML5 parser makes of a document, for the tests to compare with: the pieces of the
// source that are in its tree, and the errors that it finds.
#pragma once

#include <gumbo.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelspar::oracle {

// A piece of the source: a tag, a run of text, a comment.
struct Piece {
  enum class Kind { startTag, endTag, text, comment };
  Kind kind;
  size_t from, to;   // bytes of the source
  std::string text;  // startTag, endTag: the name in lower case; text, comment: the characters
  std::vector<std::pair<std::string, std::string>> attributes;  // names in lower case
};

class Document {
 public:
  // The bytes are UTF-8.
  explicit Document(std::string html);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // Implied tags are no pieces, nor is what the tree rules drop.
  [[nodiscard]] std::vector<Piece> pieces() const;
  // How many parse errors there are.
  [[nodiscard]] size_t errors() const { return output_->errors.length; }
  [[nodiscard]] const GumboNode* root() const { return output_->root; }
  [[nodiscard]] const GumboNode* document() const { return output_->document; }
  [[nodiscard]] const std::string& source() const { return html_; }

 private:
  std::string html_;
  GumboOutput* output_;
};

// The children of an element or document; null for other nodes.
[[nodiscard]] const GumboVector* childrenOf(const GumboNode& node);
// In lower case.
[[nodiscard]] std::string nameOf(const GumboNode& element);

}  // namespace kelspar::oracle

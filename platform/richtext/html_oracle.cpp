#include "platform/richtext/html_oracle.h"

#include <algorithm>

namespace kelspar::oracle {

namespace {

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
  return result;
}

std::string_view view(const GumboStringPiece& piece) { return {piece.data, piece.length}; }

// The name in a tag as it stands: "<A HREF=x>" gives "A".
std::string_view nameInTag(std::string_view tag) {
  tag.remove_prefix(tag.substr(0, 2) == "</" ? 2 : 1);
  return tag.substr(0, tag.find_first_of(" \t\r\n\f/>"));
}

class Collector {
 public:
  explicit Collector(const std::string& source) : source_(source) {}

  // Depth is the document's, so the walk keeps its own stack.
  std::vector<Piece> collect(const GumboNode& document) && {
    std::vector<const GumboNode*> open{&document};
    while (!open.empty()) {
      const GumboNode& node = *open.back();
      open.pop_back();
      enter(node);
      const GumboVector* const children = childrenOf(node);
      for (unsigned i = children ? children->length : 0; i-- > 0;) {
        open.push_back(static_cast<const GumboNode*>(children->data[i]));
      }
    }
    return std::move(pieces_);
  }

 private:
  void enter(const GumboNode& node) {
    switch (node.type) {
      case GUMBO_NODE_ELEMENT:
      case GUMBO_NODE_TEMPLATE:
        return element(node.v.element);
      case GUMBO_NODE_TEXT:
      case GUMBO_NODE_WHITESPACE:
      case GUMBO_NODE_CDATA:
        return add(Piece::Kind::text, node.v.text.original_text, node.v.text.text);
      case GUMBO_NODE_COMMENT:
        return add(Piece::Kind::comment, node.v.text.original_text, node.v.text.text);
      default:
        return;
    }
  }

  void element(const GumboElement& element) {
    const std::string_view start = view(element.original_tag);
    if (!start.empty()) {
      add(Piece::Kind::startTag, element.original_tag, lower(nameInTag(start)));
      for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto* attribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
        pieces_.back().attributes.emplace_back(lower(view(attribute->original_name)),
                                               attribute->value);
      }
    }
    const std::string_view end = view(element.original_end_tag);
    if (!end.empty()) {
      add(Piece::Kind::endTag, element.original_end_tag, lower(nameInTag(end)));
    }
  }

  void add(Piece::Kind kind, const GumboStringPiece& original, std::string text) {
    const auto from = static_cast<size_t>(original.data - source_.data());
    pieces_.push_back({kind, from, from + original.length, std::move(text), {}});
  }

  const std::string& source_;
  std::vector<Piece> pieces_;
};

}  // namespace

const GumboVector* childrenOf(const GumboNode& node) {
  switch (node.type) {
    case GUMBO_NODE_ELEMENT:
    case GUMBO_NODE_TEMPLATE:
      return &node.v.element.children;
    case GUMBO_NODE_DOCUMENT:
      return &node.v.document.children;
    default:
      return nullptr;
  }
}

std::string nameOf(const GumboNode& element) {
  const GumboElement& it = element.v.element;
  if (it.tag != GUMBO_TAG_UNKNOWN) return gumbo_normalized_tagname(it.tag);
  return lower(nameInTag(view(it.original_tag)));
}

Document::Document(std::string html) : html_(std::move(html)) {
  output_ = gumbo_parse_with_options(&kGumboDefaultOptions, html_.data(), html_.size());
}

Document::~Document() { gumbo_destroy_output(&kGumboDefaultOptions, output_); }

std::vector<Piece> Document::pieces() const { return Collector(html_).collect(*document()); }

}  // namespace kelspar::oracle

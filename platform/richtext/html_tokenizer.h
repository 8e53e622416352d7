// HTML split into tokens after the WHATWG algorithm (HTML, 13.2.5): text, start and end tags with
// their attributes, comments, document types. Internal to the library.
//
// Any units are HTML to it. The tokens cover the input without a gap and without overlap, names and
// raw values are views into it, and nothing is copied. Linear; no state survives but a few words.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/richtext/html_references.h"
#include "platform/richtext/html_tags.h"

namespace kelspar::html {

struct Attribute {
  std::u16string_view name;  // as it stands: compare with equalsIgnoringCase
  std::u16string_view raw;   // its value, references not replaced

  [[nodiscard]] std::u16string value() const { return decodeAttributeValue(raw); }
};

struct Token {
  enum class Kind : uint8_t {
    end,
    text,      // a run as it stands (CR included), or a reference's characters
    null,      // a NUL, which is nothing in text; in raw text it is U+FFFD, as text
    startTag,  //
    endTag,
    comment,  // also what is read as one: "<?xml ...>", "</ >", "<![endif]>"
    doctype,
    nothing,  // "</>", and a tag that the input ends in
  };

  Kind kind = Kind::end;
  size_t from = 0, to = 0;  // the units that it covers
  // text: the characters. startTag, endTag: the name as it stands. comment: what is inside.
  std::u16string_view text;
  Tag tag = Tag::none;       // startTag, endTag
  bool selfClosing = false;  // startTag: ends in "/>"
  bool isReference = false;  // text: stands for a character reference
};

class Tokenizer {
 public:
  explicit Tokenizer(std::u16string_view input) : input_(input) {}

  // The next token; Kind::end at the end, again and again. Views into the token are valid until the
  // next call.
  const Token& next();

  // The attributes of the tag that `next` gave last, in order. Of equal names the first counts. At
  // most kMostAttributes of a tag are kept.
  [[nodiscard]] std::span<const Attribute> attributes() const { return attributes_; }
  // The first attribute of that name (lower case), or null.
  [[nodiscard]] const Attribute* attribute(std::u16string_view name) const;

  // In SVG and MathML content there is no raw text, and CDATA sections are text.
  void setForeignContent(bool foreign) { foreign_ = foreign; }
  // The tag that was read last starts no raw text after all.
  void stayInText() { model_ = Model::data; }

  static constexpr size_t kMostAttributes = 512;

 private:
  enum class Model : uint8_t { data, escapableText, rawText, plainText };

  void readData();
  void readMarkup();
  void readTag(bool isEnd);
  bool readAttributes();
  void readAttribute();
  void readDeclaration();
  void readComment();
  void readBogusComment(size_t contentAt);
  void readCData();
  void readRawText();
  void readText(size_t from, size_t end);
  void readReferenceOr(size_t end);
  [[nodiscard]] bool isEndTagAt(size_t at, std::u16string_view name) const;
  [[nodiscard]] size_t endOfScript(size_t from) const;
  void finish(Token::Kind kind, size_t to, std::u16string_view text = {});
  void chooseModel();

  std::u16string_view input_;
  size_t at_ = 0;
  Token token_;
  Reference reference_;
  std::vector<Attribute> attributes_;
  Model model_ = Model::data;
  bool foreign_ = false;
  size_t rawEnd_ = 0;  // where the raw text element's end tag stands
};

}  // namespace kelspar::html

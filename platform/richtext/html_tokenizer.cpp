// The states of the algorithm are functions here: a run that needs no decision is one search.
#include "platform/richtext/html_tokenizer.h"

#include <algorithm>

#include "platform/foundation/scan.h"

namespace kelspar::html {

namespace {

bool isSpace(char16_t c) {
  return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}
bool isLetter(char16_t c) { return c < 0x80 && (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }
bool endsTagName(char16_t c) { return isSpace(c) || c == u'/' || c == u'>'; }

}  // namespace

const Attribute* Tokenizer::attribute(std::u16string_view name) const {
  for (const Attribute& each : attributes_) {
    if (equalsIgnoringCase(each.name, name)) return &each;
  }
  return nullptr;
}

const Token& Tokenizer::next() {
  token_.from = at_;
  token_.isReference = false;
  if (at_ >= input_.size()) {
    finish(Token::Kind::end, input_.size());
  } else if (model_ == Model::data) {
    readData();
  } else {
    readRawText();
  }
  return token_;
}

void Tokenizer::finish(Token::Kind kind, size_t to, std::u16string_view text) {
  token_.kind = kind;
  token_.text = text;
  token_.to = to;
  at_ = to;
}

// 13.2.5.1
void Tokenizer::readData() {
  const char16_t c = input_[at_];
  if (c == u'<') return readMarkup();
  if (c == u'&') return readReferenceOr(input_.size());
  if (c == u'\0') return finish(Token::Kind::null, at_ + 1);
  readText(at_, input_.size());
}

// Text from here to what needs a decision behind `from`.
void Tokenizer::readText(size_t from, size_t end) {
  const size_t to = scan::findAny(input_.substr(0, end), from, u'<', u'&', u'\0');
  finish(Token::Kind::text, to, input_.substr(at_, to - at_));
}

void Tokenizer::readReferenceOr(size_t end) {
  reference_ = readReference(input_.substr(0, end), at_, false);
  if (!reference_.length) return readText(at_ + 1, end);
  token_.isReference = true;
  finish(Token::Kind::text, at_ + reference_.length, reference_.text());
}

// 13.2.5.6 and 13.2.5.7
void Tokenizer::readMarkup() {
  const size_t second = at_ + 1;
  if (second >= input_.size()) return readText(second, input_.size());
  const char16_t c = input_[second];
  if (isLetter(c)) return readTag(false);
  if (c == u'!') return readDeclaration();
  if (c == u'?') return readBogusComment(second);
  if (c != u'/') return readText(second, input_.size());

  const size_t third = at_ + 2;
  if (third >= input_.size()) return finish(Token::Kind::text, third, input_.substr(at_));
  if (isLetter(input_[third])) return readTag(true);
  if (input_[third] == u'>') return finish(Token::Kind::nothing, third + 1);
  readBogusComment(third);
}

// 13.2.5.8
void Tokenizer::readTag(bool isEnd) {
  const size_t nameAt = at_ + (isEnd ? 2 : 1);
  size_t end = nameAt;
  while (end < input_.size() && !endsTagName(input_[end])) ++end;
  const auto name = input_.substr(nameAt, end - nameAt);
  attributes_.clear();
  token_.selfClosing = false;
  at_ = end;
  if (!readAttributes()) return finish(Token::Kind::nothing, input_.size());
  token_.tag = tagNamed(name);
  finish(isEnd ? Token::Kind::endTag : Token::Kind::startTag, at_, name);
  if (!isEnd && !foreign_) chooseModel();
}

// 13.2.5.32: moves behind the tag's ">"; false when the input ends before.
bool Tokenizer::readAttributes() {
  while (at_ < input_.size()) {
    const char16_t c = input_[at_];
    if (isSpace(c)) {
      ++at_;
    } else if (c == u'>') {
      ++at_;
      return true;
    } else if (c != u'/') {
      readAttribute();
    } else if (at_ + 1 < input_.size() && input_[at_ + 1] == u'>') {
      token_.selfClosing = true;
      at_ += 2;
      return true;
    } else {
      ++at_;
    }
  }
  return false;
}

// 13.2.5.33 to 13.2.5.38
void Tokenizer::readAttribute() {
  const size_t size = input_.size();
  const size_t nameAt = at_++;  // a leading "=" belongs to the name
  while (at_ < size && !endsTagName(input_[at_]) && input_[at_] != u'=') ++at_;
  Attribute attribute{input_.substr(nameAt, at_ - nameAt), {}};
  while (at_ < size && isSpace(input_[at_])) ++at_;
  if (at_ < size && input_[at_] == u'=') {
    ++at_;
    while (at_ < size && isSpace(input_[at_])) ++at_;
    const char16_t first = at_ < size ? input_[at_] : u'>';
    if (first == u'"' || first == u'\'') {
      const size_t end = scan::findAny(input_, at_ + 1, first);
      attribute.raw = input_.substr(at_ + 1, end - at_ - 1);
      at_ = std::min(end + 1, size);
      if (end == size) return;  // the tag is lost with it
    } else if (first != u'>') {
      const size_t from = at_;
      while (at_ < size && !isSpace(input_[at_]) && input_[at_] != u'>') ++at_;
      attribute.raw = input_.substr(from, at_ - from);
    }
  }
  if (attributes_.size() < kMostAttributes) attributes_.push_back(attribute);
}

// 13.2.5.42
void Tokenizer::readDeclaration() {
  const auto rest = input_.substr(at_ + 2);
  if (rest.starts_with(u"--")) return readComment();
  if (equalsIgnoringCase(rest.substr(0, 7), u"doctype")) {
    const size_t close = scan::findAny(input_, at_, u'>');
    return finish(Token::Kind::doctype, std::min(close + 1, input_.size()),
                  input_.substr(at_ + 2, close - at_ - 2));
  }
  if (foreign_ && rest.starts_with(u"[CDATA[")) return readCData();
  readBogusComment(at_ + 2);
}

void Tokenizer::readCData() {
  const size_t from = at_ + 9;
  const size_t close = std::min(input_.find(u"]]>", from), input_.size());
  finish(Token::Kind::text, std::min(close + 3, input_.size()), input_.substr(from, close - from));
}

// 13.2.5.43 to 13.2.5.52: a comment ends in "-->" or "--!>", and "<!-->" and "<!--->" are empty.
void Tokenizer::readComment() {
  const size_t from = at_ + 4;
  for (size_t at = from; (at = scan::findAny(input_, at, u'>')) < input_.size(); ++at) {
    const auto inside = input_.substr(from, at - from);
    if (inside.empty() || inside == u"-") return finish(Token::Kind::comment, at + 1);
    for (const std::u16string_view close : {u"--", u"--!"}) {
      if (!inside.ends_with(close)) continue;
      return finish(Token::Kind::comment, at + 1, inside.substr(0, inside.size() - close.size()));
    }
  }
  auto inside = input_.substr(from);
  for (const std::u16string_view close : {u"--!", u"--", u"-"}) {  // the input ends in the end
    if (!inside.ends_with(close)) continue;
    inside.remove_suffix(close.size());
    break;
  }
  finish(Token::Kind::comment, input_.size(), inside);
}

// 13.2.5.41
void Tokenizer::readBogusComment(size_t contentAt) {
  const size_t close = scan::findAny(input_, contentAt, u'>');
  finish(Token::Kind::comment, std::min(close + 1, input_.size()),
         input_.substr(contentAt, close - contentAt));
}

// What the tag just read makes of the text behind it (13.2.6).
void Tokenizer::chooseModel() {
  const Tag tag = token_.tag;
  if (!has(tag, kRawText | kEscapableText) && tag != Tag::plaintext) return;
  if (tag == Tag::plaintext) {
    model_ = Model::plainText;
    rawEnd_ = input_.size();
    return;
  }
  model_ = has(tag, kEscapableText) ? Model::escapableText : Model::rawText;
  if (tag == Tag::script) {
    rawEnd_ = endOfScript(at_);
    return;
  }
  rawEnd_ = at_;
  while ((rawEnd_ = scan::findAny(input_, rawEnd_, u'<')) < input_.size() &&
         !isEndTagAt(rawEnd_, nameOf(tag))) {
    ++rawEnd_;
  }
}

// 13.2.5.2 to 13.2.5.5
void Tokenizer::readRawText() {
  if (at_ >= rawEnd_) {
    model_ = Model::data;
    return readTag(true);
  }
  const char16_t c = input_[at_];
  if (c == u'\0') return finish(Token::Kind::text, at_ + 1, u"\uFFFD");
  if (model_ == Model::escapableText) {
    if (c == u'&') return readReferenceOr(rawEnd_);
    return readText(c == u'<' ? at_ + 1 : at_, rawEnd_);
  }
  const size_t to = scan::findAny(input_.substr(0, rawEnd_), at_, u'\0');
  finish(Token::Kind::text, to, input_.substr(at_, to - at_));
}

bool Tokenizer::isEndTagAt(size_t at, std::u16string_view name) const {
  const auto rest = input_.substr(at);
  return rest.size() > name.size() + 2 && rest[1] == u'/' &&
         equalsIgnoringCase(rest.substr(2, name.size()), name) &&
         endsTagName(rest[name.size() + 2]);
}

// 13.2.5.15 to 13.2.5.31: "<!--" in a script, and "<script" in that, hide "</script>".
size_t Tokenizer::endOfScript(size_t from) const {
  enum class State : uint8_t { plain, escaped, doubleEscaped };
  constexpr std::u16string_view kName = u"script";
  State state = State::plain;
  size_t dashes = 0;  // where the first dash may stand that closes the escape
  size_t at = from;
  while ((at = scan::findAny(input_, at, u'<', u'>')) < input_.size()) {
    const auto rest = input_.substr(at);
    if (rest[0] == u'>') {
      if (state != State::plain && at >= dashes + 2 && input_.substr(at - 2, 2) == u"--") {
        state = State::plain;
      }
      ++at;
    } else if (isEndTagAt(at, kName)) {
      if (state != State::doubleEscaped) return at;
      state = State::escaped;
      at += kName.size() + 2;
    } else if (state == State::plain && rest.starts_with(u"<!--")) {
      state = State::escaped;
      dashes = at + 2;
      at += 4;
    } else if (state == State::escaped && rest.size() > kName.size() + 1 &&
               equalsIgnoringCase(rest.substr(1, kName.size()), kName) &&
               endsTagName(rest[kName.size() + 1])) {
      state = State::doubleEscaped;
      at += kName.size() + 1;
    } else {
      ++at;
    }
  }
  return input_.size();
}

}  // namespace kelspar::html

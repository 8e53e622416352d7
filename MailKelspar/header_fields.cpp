// Structured header values: parameters (RFC 2045, 5.1 and RFC 2231) and mailboxes (RFC 5322, 3.4).
#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "MailKelspar/MailKelspar.h"
#include "MailKelspar/header_words.h"
#include "platform/foundation/ascii.h"
#include "platform/foundation/hex.h"

namespace kelspar {

namespace {

constexpr int kMostPieces = 1000;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view trimmed(std::string_view text) { return ascii::trimmed(text, isBlank); }

// The place behind the quoted string that begins at `at`; what is inside, unescaped, to `*content`.
size_t readQuoted(std::string_view text, size_t at, std::string* content) {
  for (++at; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    if (text[at] != '\r' && text[at] != '\n') *content += text[at];
  }
  return std::min(at + 1, text.size());
}

// The same for a comment, comments inside it included.
size_t readComment(std::string_view text, size_t at, std::string* content) {
  int depth = 0;
  for (; at < text.size(); ++at) {
    if (text[at] == '(' && ++depth == 1) continue;
    if (text[at] == ')' && --depth == 0) return at + 1;
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    *content += text[at];
  }
  return at;
}

// One "name=value" as it stands, comments dropped; `at` moves to the ";" behind it or the end.
struct Parameter {
  std::string name, value;
};

bool isAllBlank(std::string_view text) { return std::ranges::all_of(text, isBlank); }

// Costs what it takes off, and a move when that is at the front.
void trim(std::string* text) {
  while (!text->empty() && isBlank(text->back())) text->pop_back();
  if (!text->empty() && isBlank(text->front())) *text = trimmed(*text);
}

Parameter readParameter(std::string_view text, size_t* at) {
  Parameter parameter;
  std::string* part = &parameter.name;
  std::string ignored;
  bool quoted = false, onlyBlanks = true;  // onlyBlanks: *part so far
  while (*at < text.size() && text[*at] != ';') {
    const char c = text[*at];
    if (c == '"') {
      trim(part);
      const size_t before = part->size();
      *at = readQuoted(text, *at, part);
      quoted = part == &parameter.value;
      onlyBlanks &= isAllBlank(std::string_view(*part).substr(before));
    } else if (c == '(' && onlyBlanks) {
      *at = readComment(text, *at, &ignored);
    } else {
      ++*at;
      if (c == '=' && part == &parameter.name) {
        part = &parameter.value;
        onlyBlanks = true;
      } else if (!quoted || !isBlank(c)) {
        *part += c;
        onlyBlanks &= isBlank(c);
      }
    }
  }
  parameter.name = ascii::lowerCase(trimmed(parameter.name));
  if (!quoted) parameter.value = trimmed(parameter.value);
  return parameter;
}

// A parameter in pieces (RFC 2231, 3), some of them with percent escapes (4).
struct Pieces {
  std::map<int, std::pair<std::string, bool>> pieces;  // value, and whether it has escapes
};

std::string unescaped(std::string_view value) {
  std::string bytes;
  for (size_t i = 0; i < value.size(); ++i) {
    const bool isEscape = value[i] == '%' && i + 2 < value.size() && hexValue(value[i + 1]) >= 0 &&
                          hexValue(value[i + 2]) >= 0;
    bytes += isEscape ? static_cast<char>(hexValue(value[i + 1]) << 4 | hexValue(value[i + 2]))
                      : value[i];
    if (isEscape) i += 2;
  }
  return bytes;
}

NSString assembled(const Pieces& parameter) {
  std::string bytes, charset;
  bool hasEscapes = false;
  for (const auto& [number, piece] : parameter.pieces) {
    std::string_view value = piece.first;
    if (piece.second && !hasEscapes) {
      const size_t first = value.find('\'');
      const size_t second = first == value.npos ? value.npos : value.find('\'', first + 1);
      if (second != value.npos) {
        charset = value.substr(0, first);
        value.remove_prefix(second + 1);
      }
    }
    hasEscapes = hasEscapes || piece.second;
    bytes += piece.second ? unescaped(value) : std::string(value);
  }
  if (hasEscapes) {
    const NSString text = MailKelspar::textFromData(NSData(bytes), NSString(charset));
    return NSString(headers::onOneLine(std::u16string(text.view())));
  }
  return NSString(headers::decodedText(bytes));
}

// "name*2*": the name, the number, whether it has escapes. Number -1: the name is whole.
struct PieceName {
  std::string name;
  int number = -1;
  bool hasEscapes = false;
};

PieceName pieceName(std::string_view name) {
  PieceName piece;
  piece.hasEscapes = name.ends_with('*');
  if (piece.hasEscapes) name.remove_suffix(1);
  const size_t star = name.find('*');
  piece.name = name.substr(0, star);
  if (star == name.npos) return piece;
  int number = 0;
  for (const char c : name.substr(star + 1)) {
    if (c < '0' || c > '9' || number >= kMostPieces) return piece;
    number = 10 * number + (c - '0');
  }
  piece.number = number;
  return piece;
}

// The mailbox that is being read.
struct Pending {
  std::string display, comment, address;
  bool hasAngle = false;

  // Whether the colon that comes next ends a group's name: no address stands before it.
  bool isGroupName() {
    const std::string_view rest = std::string_view(display).substr(lookedAt_);
    hasAt_ |= rest.find('@') != rest.npos;
    lookedAt_ = display.size();
    return !hasAt_;
  }

  void flush(std::vector<id>* list) {
    std::string_view words = trimmed(display);
    std::string name, mailbox;
    if (hasAngle) {
      name = words.empty() ? std::string(trimmed(comment)) : std::string(words);
      mailbox = trimmed(address);
    } else if (words.find('@') != words.npos || words.find(' ') == words.npos) {
      name = trimmed(comment);
      mailbox = words;
    } else {
      name = words;
    }
    const NSString shown(headers::decodedText(name)), place(headers::decodedText(mailbox));
    if (!shown.isEmpty() || !place.isEmpty()) {
      list->push_back(NSDictionary{{u"name", shown}, {u"address", place}});
    }
    *this = Pending();
  }

 private:
  size_t lookedAt_ = 0;
  bool hasAt_ = false;
};

size_t readAngle(std::string_view text, size_t at, std::string* address) {
  for (++at; at < text.size() && text[at] != '>'; ++at) {
    if (text[at] == '"') {  // a quoted local part keeps its quotation marks
      std::string inside;
      const size_t end = readQuoted(text, at, &inside);
      address->append("\"").append(inside).append("\"");
      at = end - 1;
    } else if (!isBlank(text[at])) {
      *address += text[at];
    }
  }
  return std::min(at + 1, text.size());
}

}  // namespace

NSDictionary MailKelspar::parametersOfHeader(const NSData& header) {
  if (!header) return nil;
  const std::string_view text = header.chars();
  size_t at = 0;
  NSMutableDictionary result;
  std::map<std::string, Pieces> split;
  std::vector<std::string> order;
  Parameter first = readParameter(text, &at);
  // The value itself may hold a "=" ("=?utf-8?...").
  std::string value = first.name;
  if (!first.value.empty()) value += "=" + first.value;
  result.setObject(NSString(headers::decodedText(value)), u"");
  while (at < text.size()) {
    ++at;
    const Parameter parameter = readParameter(text, &at);
    const PieceName piece = pieceName(parameter.name);
    if (piece.name.empty()) continue;
    auto [place, isNew] = split.try_emplace(piece.name);
    if (isNew) order.push_back(piece.name);
    // A whole value in RFC 2231's form goes before a plain one, which is for older readers.
    const int number = piece.number >= 0 ? piece.number : piece.hasEscapes ? -2 : -1;
    place->second.pieces.try_emplace(number, parameter.value, piece.hasEscapes);
  }
  for (const std::string& name : order) {
    Pieces& parameter = split[name];
    auto& pieces = parameter.pieces;
    if (const auto whole = pieces.find(-2); whole != pieces.end()) {
      pieces = {{0, whole->second}};
    } else if (pieces.contains(0)) {
      pieces.erase(-1);
    }
    result.setObject(assembled(parameter), NSString(name));
  }
  return NSDictionary(std::move(result));
}

NSArray MailKelspar::addressesFromHeader(const NSData& header) {
  if (!header) return nil;
  const std::string_view text = header.chars();
  headers::EncodedWords words(text);
  std::vector<id> list;
  Pending pending;
  for (size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == '"') {
      at = readQuoted(text, at, &pending.display);
    } else if (c == '(') {
      at = readComment(text, at, &pending.comment);
    } else if (c == '<') {
      pending.address.clear();
      at = readAngle(text, at, &pending.address);
      pending.hasAngle = true;
    } else if (c == ',' || c == ';') {
      pending.flush(&list);
      ++at;
    } else if (c == ':' && pending.isGroupName()) {
      pending = Pending();  // it was a group's name
      ++at;
    } else if (const auto word = words.at(at); word.length > 0) {
      pending.display.append(text.substr(at, word.length));
      at += word.length;
    } else {
      if (c != '\r' && c != '\n') pending.display += c;
      ++at;
    }
  }
  pending.flush(&list);
  return NSArray(std::move(list));
}

NSString MailKelspar::bareContentIdentifier(const NSString& value) {
  if (!value) return nil;
  std::string text = value.utf8();
  while (!text.empty() && text.back() == '\0') text.pop_back();
  std::string_view bare = trimmed(text);
  if (ascii::lowerCase(bare.substr(0, 4)) == "cid:") bare.remove_prefix(4);
  if (bare.starts_with('<')) bare.remove_prefix(1);
  if (bare.ends_with('>')) bare.remove_suffix(1);
  const NSString identifier(unescaped(trimmed(bare)));
  return NSString(headers::onOneLine(std::u16string(identifier.view())));
}

}  // namespace kelspar

// What is put into an RTF document: pictures at the marks of attachments, text above its own.
#include <string>

#include "MailKelspar/MailKelspar.h"
#include "platform/richtext/rtf_escape.h"
#include "platform/richtext/rtf_reader.h"
#include "platform/richtext/rtf_tokenizer.h"

namespace kelspar {

namespace {

using Kind = RTFToken::Kind;

// False: there is nothing to put there.
bool appendItem(const id& item, std::string* rtf) {
  if (const auto text = item.as<NSString>()) {
    *rtf += "{\\uc1 ";
    rtf::appendText(text.view(), rtf);
    *rtf += '}';
    return true;
  }
  const auto picture = item.as<NSData>();
  return rtf::appendPicture(picture.chars(), {}, rtf);
}

// Groups that a document's header consists of (RTF 1.9.1, "Header"), and the information group.
bool isHeaderGroup(uint64_t key) {
  for (const char* word : {"fonttbl", "filetbl", "colortbl", "stylesheet", "listtables", "revtbl",
                           "rsidtbl", "info", "generator"}) {
    if (key == rtf::keyOf(word)) return true;
  }
  return false;
}

bool isHTMLTag(uint64_t key) {
  return key == rtf::keyOf("htmltag") || key == rtf::keyOf("mhtmltag");
}

// Whether the group that has just begun is part of the header; then it is read over.
bool skipHeaderGroup(RTFTokenizer* tokens) {
  RTFToken token = tokens->next();
  const bool isIgnorable = token.kind == Kind::symbol && token.byte == '*';
  if (isIgnorable) token = tokens->next();
  if (token.kind != Kind::word) return false;
  if (isHTMLTag(token.key) || !(isIgnorable || isHeaderGroup(token.key))) return false;
  tokens->skipGroup();
  (void)tokens->next();  // its brace
  return true;
}

bool beginsBody(const RTFToken& token) {
  switch (token.kind) {
    case Kind::word:
      for (const char* word :
           {"pard", "plain", "par", "sectd", "trowd", "htmlrtf", "tab", "line"}) {
        if (token.key == rtf::keyOf(word)) return true;
      }
      return false;
    case Kind::text:
      return token.bytes.find_first_not_of(' ') != token.bytes.npos;
    case Kind::symbol:
      return token.byte != '*';
    default:
      return true;
  }
}

// Where the document's header ends and its text begins.
size_t startOfBody(std::string_view bytes) {
  RTFTokenizer tokens(bytes);
  while (tokens.next().kind == Kind::text) continue;  // blanks or a mark before the first brace
  for (;;) {
    const size_t at = tokens.position();
    const RTFToken token = tokens.next();
    if (token.kind == Kind::groupStart ? !skipHeaderGroup(&tokens) : beginsBody(token)) return at;
  }
}

}  // namespace

NSData MailKelspar::placePictures(const NSArray& pictures, const NSData& rtf) {
  const std::string_view bytes = rtf.chars();
  RTFTokenizer tokens(bytes);
  std::string placed;
  size_t copied = 0, used = 0;
  while (used < pictures.count()) {
    const size_t at = tokens.position();
    const RTFToken token = tokens.next();
    if (token.kind == Kind::end) break;
    if (token.kind != Kind::word || token.key != rtf::keyOf("objattph")) continue;
    // The tokenizer may have passed over line ends before the word.
    const size_t word = bytes.find('\\', at);
    placed.append(bytes.substr(copied, word - copied));
    copied = word;
    if (appendItem(pictures.objectAtIndex(used++), &placed)) copied = tokens.position();
  }
  if (placed.empty()) return rtf;
  return NSData(placed.append(bytes.substr(copied)));
}

NSData MailKelspar::putText(const NSString& text, const NSData& rtf) {
  if (text.isEmpty() || !plainTextFromRTF(rtf)) return rtf;
  const std::string_view bytes = rtf.chars();
  const size_t at = startOfBody(bytes);
  std::string document(bytes.substr(0, at));
  // What encapsulates HTML hides from it what is meant for readers of RTF alone.
  const bool hides = static_cast<bool>(encapsulatedHTMLFromRTF(rtf));
  document += hides ? "{\\htmlrtf\\pard\\plain\\uc1 " : "{\\pard\\plain\\uc1 ";
  rtf::appendText(text.view(), &document);
  document += hides ? "\\par\\htmlrtf0}\n" : "\\par}\n";
  return NSData(document.append(bytes.substr(at)));
}

NSData MailKelspar::rtfFromText(const NSString& text) {
  if (!text) return nil;
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\\pard\\f0\\fs20 ";
  rtf::appendText(text.view(), &rtf);
  return NSData(rtf + "}\n");
}

}  // namespace kelspar

// What kind of material an input is, by its content, and the operations that convert it.
#include "host/convert.h"

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "host/files.h"

namespace kelspar::host {

namespace {

namespace RTFData = RTFKelsparNSDataAdditions;

bool isCompressedRTF(const NSData& input) {
  return input.length() >= 12 && RTFKelspar::typeIsRTF(input.bytes());
}

bool looksLikeRTF(const NSData& bytes) {
  return static_cast<bool>(RTFData::stringFromRTFData(bytes));
}

// Lines inside paragraphs are lines in a text file as well.
std::string plainLines(const NSString& text) {
  NSMutableString lines{text.view()};
  lines.replaceOccurrences(u"\u2028", u"\n");
  std::string utf8 = std::move(lines).copy().utf8();
  if (!utf8.empty() && utf8.back() != '\n') utf8 += '\n';
  return utf8;
}

std::string converted(const NSData& rtf, const ConvertOptions& options, const std::string& name) {
  if (options.colours) {
    return std::string(RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(rtf).chars());
  }
  if (options.to == "rtf") return std::string(rtf.chars());
  if (options.to == "text") return plainLines(RTFData::stringFromRTFData(rtf));
  const NSString html = MailKelspar::htmlFromEncapsulatedRTF(rtf);
  if (!html) throw Failure(kInputFailed, name + ": its RTF encapsulates no HTML");
  return MailKelspar::htmlDeclaringUTF8(html).utf8();
}

}  // namespace

NSData rtfOf(const NSData& input, const std::string& name) {
  if (input.isEmpty()) throw Failure(kInputFailed, name + ": is empty");
  if (!isCompressedRTF(input)) {
    if (looksLikeRTF(input)) return input;
    throw Failure(kInputFailed, name + ": is neither compressed RTF nor RTF");
  }
  const NSData rtf = MailKelspar::rtfFromStoredBody(input);
  if (!rtf) throw Failure(kInputFailed, name + ": is too short for compressed RTF");
  if (!looksLikeRTF(rtf)) {
    throw Failure(kInputFailed, name + ": is damaged: its compressed content is no RTF");
  }
  return rtf;
}

void convert(const ConvertOptions& options) {
  if (options.colours && options.to != "rtf") {
    throw Failure(kUsage, "--colours needs --to rtf");
  }
  const std::string name = inputName(options.input);
  const NSData rtf = rtfOf(readInput(options.input), name);
  writeOutput(options.output, converted(rtf, options, name));
}

}  // namespace kelspar::host

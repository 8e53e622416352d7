// What the command line does about pages: attachments by name, assembly, the document.
#include "host/pdf_output.h"

#include <atomic>
#include <memory>

#include "EmailUtilities/EmailUtilities.h"
#include "host/files.h"
#include "host/terminal.h"
#include "platform/dispatch/dispatch.h"
#include "platform/graphics/NSImage.h"
#include "platform/graphics/pdf_pages.h"

namespace kelspar::host {

namespace {

Attachment givenAttachment(const std::string& argument) {
  const size_t equals = argument.find('=');
  if (equals == 0 || equals == argument.npos || equals + 1 == argument.size()) {
    throw Failure(kUsage, "--attachment takes CID=FILE, not \"" + argument + "\"");
  }
  const std::string path = argument.substr(equals + 1);
  Attachment attachment;
  attachment.contentIdentifier = NSString(argument.substr(0, equals));
  attachment.name = NSString(path.substr(path.rfind('/') + 1));
  attachment.bytes = readInput(path);
  attachment.isInline = true;
  attachment.isGiven = true;
  const NSImage image = NSImage::initWithData(attachment.bytes);
  if (!image) throw Failure(kInputFailed, path + ": is no image that can be shown");
  attachment.mediaType = image.type();
  return attachment;
}

}  // namespace

std::vector<Attachment> givenAttachments(const std::vector<std::string>& arguments) {
  std::vector<Attachment> attachments;
  for (const std::string& argument : arguments) attachments.push_back(givenAttachment(argument));
  return attachments;
}

NSAttributedString assembledText(const NSData& rtf, const std::vector<Attachment>& attachments) {
  std::vector<id> records;
  for (const Attachment& attachment : attachments) {
    records.push_back(NSDictionary{{u"AttachContentID"_ns, attachment.contentIdentifier},
                                   {u"data"_ns, attachment.bytes}});
  }
  struct Outcome {
    NSAttributedString text;
    std::atomic<bool> isThere = false;
  };
  const auto outcome = std::make_shared<Outcome>();
  EmailUtilities::buildRTFMessageContent(rtf, NSArray(std::move(records)),
                                         [outcome](NSAttributedString text) {
                                           outcome->text = std::move(text);
                                           outcome->isThere = true;
                                         });
  // No main loop runs in this program: whoever waits turns the main queue.
  while (!outcome->isThere) {
    dispatch::syncMain([] { dispatch::drainMain(1); });
  }
  return outcome->text;
}

std::optional<PDFPaper> paperOf(const PDFOutputOptions& options) {
  constexpr double kPointsInMillimetre = 72 / 25.4;
  const NSString name(options.pageSize);
  const std::optional<PDFPaper> paper = name.isEmpty() ? PDFPaper() : PDFPaper::named(name);
  if (!paper || !options.margin) return paper;
  return paper->withMargin(*options.margin * kPointsInMillimetre);
}

std::string pdfOf(const NSAttributedString& text, const NSString& title,
                  const PDFOutputOptions& options, const std::string& name) {
  if (text.length() == 0) throw Failure(kInputFailed, name + ": has no text for a page");
  std::string document;
  const PDFPaper paper = paperOf(options).value_or(PDFPaper());
  const PDFReport report =
      writePDF(text, {.keepsLinesWhole = !options.cutPages, .paper = paper, .title = title},
               [&document](std::string_view piece) {
                 document.append(piece);
                 return true;
               });
  if (report.hasNoFonts) throw Failure(kInputFailed, name + ": needs fonts, and none is installed");
  if (const NSString complaint = report.complaint()) tell(name + ": " + complaint.utf8());
  return document;
}

}  // namespace kelspar::host

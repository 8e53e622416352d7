// Pages from bodies, with images that the command line brings along.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/message.h"
#include "platform/graphics/pdf_paper.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar::host {

struct PDFOutputOptions {
  bool cutPages = false;                // cut lines at page ends, as the library's operation does
  std::string pageSize;                 // as PDFPaper's names; empty: no paper
  std::optional<double> margin;         // millimetres; nothing: the paper's own
  std::vector<Attachment> attachments;  // given on the command line
};

// The attachments that arguments "CID=FILE" name. Throws Failure for an argument of another form,
// for a file that cannot be read and for one that is no image.
[[nodiscard]] std::vector<Attachment> givenAttachments(const std::vector<std::string>& arguments);

// The body as `buildRTFMessageContent:attachments:completion:` gives it.
[[nodiscard]] NSAttributedString assembledText(const NSData& rtf,
                                               const std::vector<Attachment>& attachments);

// The page that the options ask for; nothing when there is no such paper or no room on it.
[[nodiscard]] std::optional<PDFPaper> paperOf(const PDFOutputOptions& options);

// The document. A nil `title` is the text's first line. Throws Failure, which begins with `name`,
// for a text that is empty.
[[nodiscard]] std::string pdfOf(const NSAttributedString& text, const NSString& title,
                                const PDFOutputOptions& options, const std::string& name);

}  // namespace kelspar::host

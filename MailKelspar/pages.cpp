// Pages that people print: whole lines, paper, margins.
#include "MailKelspar/MailKelspar.h"
#include "platform/graphics/pdf_pages.h"

namespace kelspar {

namespace {

std::optional<PDFPaper> paperNamed(const NSString& name) {
  return name.isEmpty() ? PDFPaper() : PDFPaper::named(name);
}

NSData pages(const NSAttributedString& text, const std::optional<PDFPaper>& paper) {
  if (text.length() == 0 || !paper) return nil;
  std::string document;
  writePDF(text, {.keepsLinesWhole = true, .paper = *paper, .title = nil},
           [&document](std::string_view piece) {
             document.append(piece);
             return true;
           })
      .log();
  return NSData(std::move(document));
}

}  // namespace

NSData MailKelspar::createPdfDataFromAttributedString(const NSAttributedString& text,
                                                      const NSString& paper) {
  return pages(text, paperNamed(paper));
}

NSData MailKelspar::createPdfDataFromAttributedString(const NSAttributedString& text,
                                                      const NSString& paper, double margin) {
  const std::optional<PDFPaper> named = paperNamed(paper);
  return pages(text, named ? named->withMargin(margin) : named);
}

}  // namespace kelspar

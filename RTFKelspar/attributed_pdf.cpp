// Where the document goes, and the way to the main thread.
#include <cstdio>
#include <memory>

#include "RTFKelspar/RTFKelsparNSAttributedStringAdditions.h"
#include "platform/dispatch/dispatch.h"
#include "platform/graphics/pdf_pages.h"

namespace kelspar::RTFKelsparNSAttributedStringAdditions {

NSData createPdfDataFromAttributedString(const NSAttributedString& receiver) {
  if (receiver.length() == 0) return nil;
  std::string document;
  dispatch::syncMain([&] {
    writePDF(receiver, {}, [&](std::string_view piece) {
      document.append(piece);
      return true;
    }).log();
  });
  return NSData(std::move(document));
}

bool saveRtfAsPdfWithFilepath(const NSAttributedString& receiver, const NSURL& filepath) {
  if (receiver.length() == 0) return false;
  dispatch::syncMain([&] {
    const std::string path = filepath.fileSystemPath();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"),
                                                               &std::fclose);
    if (!file) return;
    writePDF(receiver, {}, [&](std::string_view piece) {
      return std::fwrite(piece.data(), 1, piece.size(), file.get()) == piece.size();
    }).log();
  });
  return true;
}

}  // namespace kelspar::RTFKelsparNSAttributedStringAdditions

// `kelspar convert`: stored material in, something to read out.
#pragma once

#include <string>
#include <vector>

#include "host/pdf_output.h"
#include "platform/foundation/NSData.h"

namespace kelspar::host {

struct ConvertOptions {
  std::vector<std::string> inputs;
  std::string to = "text";  // "rtf", "html", "text", "json" or "pdf"
  std::string output;       // empty: standard output
  std::string outputFolder;
  std::string attachmentFolder;
  std::string charset;   // overrides labels
  bool colours = false;  // RTF with the colours of its spans
  bool noHeader = false;
  bool force = false;
  PDFOutputOptions pdf;
  size_t jobs = 0;  // 0: as many as there are processors
};

// The RTF of an input, decoded where it is compressed; `name` is what messages call it. Throws
// Failure when it is none.
[[nodiscard]] NSData rtfOf(const NSData& input, const std::string& name);

// What one input becomes.
struct Converted {
  std::string output;
  uint64_t removedContents = 0;  // remote ones that the output goes without
};

// Messages are opened; anything else must be a body. Throws Failure.
[[nodiscard]] Converted convertedInput(const NSData& input, const std::string& name,
                                       const ConvertOptions& options);

// The place of an input's output under a folder: relative paths are kept, no path leaves it.
[[nodiscard]] std::string pathUnder(const std::string& folder, const std::string& input,
                                    const std::string& to);

// Converts all inputs; an error in one is told on standard error and does not stop the others.
// Returns the exit status. Throws Failure for options that do not go together.
[[nodiscard]] int convert(const ConvertOptions& options);

}  // namespace kelspar::host

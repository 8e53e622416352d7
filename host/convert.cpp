// What kind of material an input is, by its content, and the operations that convert it.
#include "host/convert.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "WebKelspar/WebKelspar.h"
#include "host/attachment_files.h"
#include "host/body_text.h"
#include "host/files.h"
#include "host/jobs.h"
#include "host/json_text.h"
#include "host/message_html.h"
#include "host/open_message.h"
#include "host/terminal.h"
#include "platform/richtext/rtf_writer.h"

namespace kelspar::host {

namespace {

namespace RTFData = RTFKelsparNSDataAdditions;

bool isCompressedRTF(const NSData& input) {
  return input.length() >= 12 && RTFKelspar::typeIsRTF(input.bytes());
}

bool looksLikeRTF(const NSData& bytes) {
  return static_cast<bool>(RTFData::stringFromRTFData(bytes));
}

// A body with the attachments of the command line in place.
std::string assembled(const NSData& rtf, const ConvertOptions& options, const std::string& name) {
  if (options.to == "html") {
    const NSString html = MailKelspar::htmlFromEncapsulatedRTF(rtf);
    Message message;
    message.html = html ? html : WebKelspar::htmlFromRTFData(rtf);
    message.attachments = options.pdf.attachments;
    return htmlOf(message, {.header = false});
  }
  const NSAttributedString text = assembledText(rtf, options.pdf.attachments);
  if (options.to == "pdf") return pdfOf(text, nil, options.pdf, name);
  if (options.to == "rtf") return std::string(rtfFromAttributedString(text).chars());
  NSMutableString characters{text.string().view()};
  characters.replaceOccurrences(u"\uFFFC", u"");
  return plainLines(std::move(characters).copy());
}

std::string converted(const NSData& rtf, const ConvertOptions& options, const std::string& name) {
  if (options.colours) {
    return std::string(RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(rtf).chars());
  }
  if (!options.pdf.attachments.empty()) return assembled(rtf, options, name);
  if (options.to == "rtf") return std::string(rtf.chars());
  if (options.to == "text") return plainLines(RTFData::stringFromRTFData(rtf));
  if (options.to == "pdf") {
    return pdfOf(NSAttributedString::initWithRTF(rtf), nil, options.pdf, name);
  }
  const NSString html = MailKelspar::htmlFromEncapsulatedRTF(rtf);
  return html ? MailKelspar::htmlDeclaringUTF8(html).utf8()
              : WebKelspar::htmlFromRTFData(rtf).utf8();
}

Converted shown(const Messages& messages, const ConvertOptions& options, const std::string& name) {
  Converted result;
  const ShowOptions show{.header = !options.noHeader, .removed = &result.removedContents};
  if (options.to == "json") {
    const std::string list = jsonArray(
        messages, [&show](const auto& message) { return jsonOf(*message, show.removed); });
    result.output = (messages.size() == 1 ? list.substr(1, list.size() - 2) : list) + "\n";
  } else if (options.to == "text") {
    result.output = textOf(messages, show);
  } else if (options.to == "html") {
    result.output = htmlOf(messages, show);
  } else if (options.to == "rtf") {
    result.output = rtfOf(messages, show);
  } else {
    result.output = pdfOf(NSAttributedString::initWithHTML(NSData(htmlOf(messages, show))),
                          messages.front()->subject, options.pdf, name);
  }
  return result;
}

// HTML of its own is the body of a message without a header. Where it is not HTML that comes out
// and no picture is given, it need not be made safe, and keeps all that it says.
Converted convertedHTML(const NSString& html, ConvertOptions options, const std::string& name) {
  if (options.pdf.attachments.empty() && (options.to == "pdf" || options.to == "rtf")) {
    const NSAttributedString text = NSAttributedString::initWithHTML(NSData(html.utf8()));
    if (options.to == "pdf") return {pdfOf(text, nil, options.pdf, name)};
    return {std::string(rtfFromAttributedString(text).chars())};
  }
  const auto message = std::make_shared<Message>();
  message->html = html;
  message->attachments = options.pdf.attachments;
  options.noHeader = true;
  return shown({message}, options, name);
}

Converted convertedBody(const NSData& input, const std::string& name,
                        const ConvertOptions& options) {
  if (options.to == "json") throw Failure(kInputFailed, name + ": is no message");
  const bool isRTF = options.colours || isCompressedRTF(input) || looksLikeRTF(input);
  if (isRTF || !isHTMLInput(input, name)) return {converted(rtfOf(input, name), options, name)};
  return convertedHTML(htmlOfInput(input, options.charset), options, name);
}

struct Result {
  std::string input, output, text;
  uint64_t removedContents = 0;
  int status = 0;
  std::string error;
};

// All inputs of one command.
class Run {
 public:
  explicit Run(const ConvertOptions& options) : options_(options) {}

  int run() {
    size_t at = 0;
    const auto next = [&]() -> std::optional<std::string> {
      if (at == options_.inputs.size()) return {};
      return options_.inputs[at++];
    };
    const size_t jobs = std::min(options_.inputs.size(), jobsFor(options_.jobs));
    inOrder<std::string, Result>(
        jobs, next, [this](const std::string& input) { return work(input); },
        [this](Result result) { take(std::move(result)); });
    if (options_.inputs.size() > 1) finish();
    return status();
  }

 private:
  Result work(const std::string& input) const {
    Result result;
    result.input = input;
    try {
      const std::string name = inputName(input);
      if (!options_.outputFolder.empty()) {
        result.output = pathUnder(options_.outputFolder, input, options_.to);
        if (!options_.force) expectNoFile(result.output);
      }
      Converted converted = convertedInput(readInput(input), name, options_);
      result.text = std::move(converted.output);
      result.removedContents = converted.removedContents;
      if (!result.output.empty()) {
        makeFolderOf(result.output);
        (options_.force ? writeOutput : writeNewFile)(result.output, result.text);
        result.text.clear();
      }
    } catch (const Failure& failure) {
      result.status = failure.status();
      result.error = failure.what();
    } catch (const std::exception& error) {
      result.status = kInputFailed;
      result.error = inputName(input) + ": " + error.what();
    }
    return result;
  }

  static void makeFolderOf(const std::string& path) {
    std::error_code error;
    const auto folder = std::filesystem::path(path).parent_path();
    std::filesystem::create_directories(folder, error);
    if (error) {
      throw Failure(kCannotWrite, folder.string() + ": cannot be made: " + error.message());
    }
  }

  void take(Result result) {
    if (result.status == 0 && result.output.empty()) {
      try {
        writeOutput(options_.output, result.text);
      } catch (const Failure& failure) {
        result.status = failure.status();
        result.error = failure.what();
      }
    }
    ++done_;
    if (result.status != 0) {
      clearProgress();
      tell(result.error);
      ++(result.status == kCannotWrite ? notWritten_ : notRead_);
    } else if (!showsProgress_ && !result.output.empty()) {
      tellBare(result.input + " -> " + result.output);
    }
    if (result.status == 0 && result.removedContents > 0) {
      clearProgress();
      tell(inputName(result.input) + ": " + remoteContents(result.removedContents) + " removed");
    }
    showProgress();
  }

  void showProgress() const {
    if (!showsProgress_) return;
    constexpr size_t kWidth = 30;
    const size_t filled = kWidth * done_ / options_.inputs.size();
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
              << done_ << "/" << options_.inputs.size() << std::flush;
  }

  void clearProgress() const {
    if (showsProgress_) std::cerr << "\r\x1B[K";
  }

  void finish() const {
    clearProgress();
    const size_t failed = notRead_ + notWritten_;
    tell(std::to_string(done_ - failed) + " of " + std::to_string(done_) + " converted" +
         (failed > 0 ? ", " + std::to_string(failed) + " failed" : ""));
  }

  [[nodiscard]] int status() const {
    if (notWritten_ > 0) return kCannotWrite;
    if (notRead_ == 0) return 0;
    // One input at fault is that; of several, it matters whether any could be read.
    return notRead_ == done_ && done_ > 1 ? kNothingRead : kInputFailed;
  }

  const ConvertOptions& options_;
  const bool showsProgress_ =
      options_.inputs.size() > 1 && !options_.outputFolder.empty() && ::isatty(STDERR_FILENO) == 1;
  size_t done_ = 0, notRead_ = 0, notWritten_ = 0;
};

}  // namespace

NSData rtfOf(const NSData& input, const std::string& name) {
  if (input.isEmpty()) throw Failure(kInputFailed, name + ": is empty");
  if (!isCompressedRTF(input)) {
    if (looksLikeRTF(input)) return input;
    throw Failure(kInputFailed, name + ": is neither a message, HTML, RTF nor compressed RTF");
  }
  const NSData rtf = MailKelspar::rtfFromStoredBody(input);
  if (!rtf) throw Failure(kInputFailed, name + ": is too short for compressed RTF");
  if (!looksLikeRTF(rtf)) {
    throw Failure(kInputFailed, name + ": is damaged: its compressed content is no RTF");
  }
  return rtf;
}

Converted convertedInput(const NSData& input, const std::string& name,
                         const ConvertOptions& options) {
  if (options.colours || !promisesMessages(input, name)) return convertedBody(input, name, options);
  const auto messages = openMessages(input, name, {.charset = options.charset});
  if (messages.empty()) {
    throw Failure(kInputFailed, name + ": is damaged: no message can be read from it");
  }
  if (!options.attachmentFolder.empty()) {
    for (const auto& message : messages) extractAttachments(*message, options.attachmentFolder);
  }
  for (const auto& message : messages) {
    const auto& given = options.pdf.attachments;
    message->attachments.insert(message->attachments.begin(), given.begin(), given.end());
  }
  return shown(messages, options, name);
}

std::string pathUnder(const std::string& folder, const std::string& input, const std::string& to) {
  std::filesystem::path path(folder);
  for (const auto& part : std::filesystem::path(input).lexically_normal()) {
    if (part != ".." && part != "/" && part != "." && !part.empty()) path /= part;
  }
  if (input == "-") path = std::filesystem::path(folder) / "standard-input";
  return path.string() + (to == "text" ? ".txt" : "." + to);
}

int convert(const ConvertOptions& options) {
  if (options.colours && options.to != "rtf") throw Failure(kUsage, "--colours needs --to rtf");
  if (!options.pdf.attachments.empty() && options.to == "json") {
    throw Failure(kUsage, "--attachment needs --to pdf, html, rtf or text");
  }
  if (!options.pdf.pageSize.empty() && options.to != "pdf") {
    throw Failure(kUsage, "--page-size needs --to pdf");
  }
  if (options.pdf.margin && options.to != "pdf") throw Failure(kUsage, "--margin needs --to pdf");
  if (!paperOf(options.pdf)) throw Failure(kUsage, "--margin leaves no room on the page");
  if (options.pdf.cutPages && options.to != "pdf") {
    throw Failure(kUsage, "--cut-pages needs --to pdf");
  }
  if (!options.output.empty() && !options.outputFolder.empty()) {
    throw Failure(kUsage, "-o and --output-dir exclude each other");
  }
  if (!options.output.empty() && options.inputs.size() > 1) {
    throw Failure(kUsage, "-o takes one input; --output-dir takes many");
  }
  if (!options.charset.empty() && !MailKelspar::encodingOfCharsetLabel(NSString(options.charset))) {
    throw Failure(kUsage, options.charset + ": is no charset");
  }
  return Run(options).run();
}

}  // namespace kelspar::host

// Looks at documents with qpdf and poppler's tools. For tests.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "platform/graphics/pdf_pages.h"

namespace kelspar::testtools {

inline std::string documentOf(const NSAttributedString& text, const PDFOptions& options = {}) {
  std::string document;
  writePDF(text, options, [&document](std::string_view piece) {
    document.append(piece);
    return true;
  });
  return document;
}

// A document in a file of its own.
class PDFFile {
 public:
  explicit PDFFile(std::string_view document)
      : path_(std::filesystem::temp_directory_path() / ("kelspar-" + std::to_string(::getpid()) +
                                                        "-" + std::to_string(count()++) + ".pdf")) {
    std::ofstream(path_, std::ios::binary)
        .write(document.data(), static_cast<std::streamsize>(document.size()));
  }
  explicit PDFFile(const NSAttributedString& text, const PDFOptions& options = {})
      : PDFFile(documentOf(text, options)) {}
  PDFFile(const PDFFile&) = delete;
  ~PDFFile() { std::filesystem::remove(path_); }

  // The output of a command line in which "%" stands for the file.
  [[nodiscard]] std::string output(std::string command) const {
    command.replace(command.find('%'), 1, path_.string());
    std::string output;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        ::popen((command + " 2>&1").c_str(), "r"), &::pclose);
    char piece[4096];
    for (size_t count = 0; (count = std::fread(piece, 1, sizeof piece, pipe.get())) > 0;)
      output.append(piece, count);
    return output;
  }

  [[nodiscard]] bool isSound() const {
    return output("qpdf --check % && echo sound").ends_with("sound\n");
  }
  [[nodiscard]] int pages() const {
    return std::stoi(found(output("pdfinfo %"), "Pages: +([0-9]+)", "0"));
  }
  [[nodiscard]] std::string text() const { return output("pdftotext -raw % -"); }
  // The text without white space.
  [[nodiscard]] std::string letters() const {
    return std::regex_replace(text(), std::regex("[\\s\\f]+"), "");
  }

  struct Word {
    int page;
    double left, top, right, bottom;
    std::string text;
  };
  [[nodiscard]] std::vector<Word> words() const {
    std::vector<Word> words;
    int page = 0;
    const std::string lines = output("pdftotext -bbox % -");
    const std::regex word("<page |<word xMin=\"([^\"]*)\" yMin=\"([^\"]*)\" xMax=\"([^\"]*)\" "
                          "yMax=\"([^\"]*)\">([^<]*)<");
    for (std::sregex_iterator at(lines.begin(), lines.end(), word), end; at != end; ++at) {
      if ((*at)[0] == "<page ") {
        ++page;
      } else {
        words.push_back({page, std::stod((*at)[1]), std::stod((*at)[2]), std::stod((*at)[3]),
                         std::stod((*at)[4]), (*at)[5]});
      }
    }
    return words;
  }
  // The first word with that text; of page 0 without one.
  [[nodiscard]] Word word(const std::string& text) const {
    for (const Word& word : words()) {
      if (word.text == text) return word;
    }
    return {};
  }

  static std::string found(const std::string& in, const char* pattern, const char* otherwise) {
    std::smatch match;
    return std::regex_search(in, match, std::regex(pattern)) ? match[1].str() : otherwise;
  }

 private:
  static int& count() {
    static int files = 0;
    return files;
  }

  std::filesystem::path path_;
};

}  // namespace kelspar::testtools

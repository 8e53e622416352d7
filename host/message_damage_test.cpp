// Messages that were cut or changed on their way: a result, or one clear line; never a crash, a
// hang, or a file outside the folder for files.
//
// KELSPAR_DAMAGE_VARIANTS says how many cuts and how many changed copies there are of each message;
// 100 is the whole test, a few are what every run can afford.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "host/convert.h"
#include "host/files.h"
#include "host/message_text.h"
#include "host/open_message.h"

namespace kelspar::host {
namespace {

using namespace std::string_view_literals;

// Ends the program with the case's name when a case takes too long.
class Deadline {
 public:
  explicit Deadline(const std::string& name) {
    constexpr unsigned kSeconds = 10;
    snprintf(name_, sizeof name_, "\nlonger than 10 s: %s\n", name.c_str());
    std::signal(SIGALRM, [](int) {
      const ssize_t written = ::write(STDERR_FILENO, name_, std::strlen(name_));
      ::_exit(written > 0 ? 1 : 2);
    });
    ::alarm(kSeconds);
  }
  Deadline(const Deadline&) = delete;
  ~Deadline() { ::alarm(0); }

 private:
  static inline char name_[1000];
};

void expectClearLine(const std::string& line, const std::string& name) {
  EXPECT_TRUE(line.starts_with(name + ": ")) << line;
  EXPECT_EQ(line.find('\n'), line.npos) << line;
}

// What `kelspar convert` does with it, short of writing the result. False: it failed.
bool convertsTo(const char* form, const NSData& bytes, const std::string& name,
                const std::string& attachmentFolder = "") {
  ConvertOptions options;
  options.to = form;
  options.attachmentFolder = attachmentFolder;
  try {
    const std::string output = convertedInput(bytes, name, options).output;
    if (options.to == "pdf") {
      EXPECT_TRUE(output.starts_with("%PDF-") && output.ends_with("%%EOF\n"));
    } else {
      EXPECT_TRUE(options.to == "rtf" || NSString::fromUTF8(output)) << form;
    }
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), kInputFailed);
    expectClearLine(failure.what(), name);
    return false;
  }
  return true;
}

void show(const std::string& bytes, const std::string& name) {
  const NSData data(std::string_view{bytes});
  const Deadline deadline(name);
  const bool isShown = convertsTo("text", data, name);
  for (const char* form : {"html", "rtf"}) EXPECT_EQ(convertsTo(form, data, name), isShown);
  convertsTo("json", data, name);
  for (const auto& message : openMessages(data, name, {})) EXPECT_FALSE(infoOf(*message).empty());
}

TEST(DamagedMessages, OfAFewBytes) {
  for (const std::string_view start :
       {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "\x78\x9F\x3E\x22"sv, "From "sv, "A:"sv, ""sv}) {
    for (const char filler : {'\0', '\xFF', '\n', 'x'}) {
      for (const size_t length : {0, 1, 2, 7, 60, 511, 512, 513, 1600}) {
        show(std::string(start) + std::string(length, filler), "x.eml");
      }
    }
  }
}

#ifdef KELSPAR_CORPUS

namespace fs = std::filesystem;

size_t variants() {
  constexpr size_t kInEveryRun = 2;
  const char* wanted = std::getenv("KELSPAR_DAMAGE_VARIANTS");
  return wanted ? std::strtoul(wanted, nullptr, 10) : kInEveryRun;
}

// A folder for files inside a folder of its own, which must not get any.
class Folder {
 public:
  Folder() {
    std::string name = fs::temp_directory_path() / "kelspar-damage-XXXXXX";
    outer_ = ::mkdtemp(name.data());
  }
  Folder(const Folder&) = delete;
  ~Folder() { fs::remove_all(outer_); }

  [[nodiscard]] std::string path() const { return outer_ / "in" / "files"; }

  void expectNothingOutside() const {
    for (const auto& entry : fs::recursive_directory_iterator(outer_)) {
      const bool isFolder = entry.path() == outer_ / "in" || entry.path() == path();
      EXPECT_TRUE(isFolder || (entry.is_regular_file() && entry.path().parent_path() == path()))
          << entry.path();
    }
  }
  void clear() const { fs::remove_all(outer_ / "in"); }

 private:
  fs::path outer_;
};

std::vector<std::string> messages() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(fs::path(KELSPAR_CORPUS) / "messages")) {
    if (entry.file_size() > 0) names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

class DamagedMessage : public testing::TestWithParam<std::string> {
 protected:
  // The name is the seed: a failure comes again, whichever other messages there are.
  DamagedMessage() {
    std::seed_seq seed(GetParam().begin(), GetParam().end());
    random_.seed(seed);
    std::ifstream file(fs::path(KELSPAR_CORPUS) / "messages" / GetParam(), std::ios::binary);
    whole_.assign(std::istreambuf_iterator<char>(file), {});
  }

  [[nodiscard]] std::string cut() { return whole_.substr(0, random_() % whole_.size()); }

  [[nodiscard]] std::string changed(size_t changes) {
    std::string copy = whole_;
    while (changes-- > 0) copy[random_() % copy.size()] = static_cast<char>(random_());
    return copy;
  }

  [[nodiscard]] std::string nameOf(const char* what, size_t i) const {
    return GetParam() + "." + what + std::to_string(i) + ".eml";
  }

 private:
  std::mt19937 random_;
  std::string whole_;
};

TEST_P(DamagedMessage, GivesAResultOrALine) {
  const size_t count = variants();
  for (size_t i = 0; i < count; ++i) {
    show(cut(), nameOf("cut", i));
    // One changed byte finds other paths than a hundred do.
    show(changed(1 + 99 * i / std::max<size_t>(1, count - 1)), nameOf("changed", i));
  }
}

TEST_P(DamagedMessage, LeavesNoFileOutsideTheFolder) {
  const Folder folder;
  const size_t count = std::max<size_t>(1, variants() / 10);
  for (size_t i = 0; i < count; ++i) {
    const std::string name = nameOf("files", i);
    const Deadline deadline(name);
    convertsTo("text", NSData(i % 2 == 0 ? changed(100) : cut()), name, folder.path());
    folder.expectNothingOutside();
    folder.clear();
  }
}

// Laying out costs what all other forms do together: a part of the messages.
class DamagedPages : public DamagedMessage {};

TEST_P(DamagedPages, GiveADocumentOrALine) {
  const size_t count = std::max<size_t>(1, variants() / 10);
  for (size_t i = 0; i < count; ++i) {
    const std::string name = nameOf("pages", i);
    const Deadline deadline(name);
    convertsTo("pdf", NSData(i % 2 == 0 ? changed(1 + i) : cut()), name);
  }
}

std::vector<std::string> everySixth(const std::vector<std::string>& names) {
  std::vector<std::string> some;
  for (size_t i = 0; i < names.size(); i += 6) some.push_back(names[i]);
  return some;
}

std::string testName(const testing::TestParamInfo<std::string>& row) {
  std::string name = row.param;
  std::ranges::replace_if(
      name, [](char c) { return !std::isalnum(c); }, '_');
  return name + "_" + std::to_string(row.index);
}

INSTANTIATE_TEST_SUITE_P(Corpus, DamagedMessage, testing::ValuesIn(messages()), testName);
INSTANTIATE_TEST_SUITE_P(Corpus, DamagedPages, testing::ValuesIn(everySixth(messages())), testName);

#endif

}  // namespace
}  // namespace kelspar::host

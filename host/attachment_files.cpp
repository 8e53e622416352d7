// File names that cannot leave their folder, and files that replace none.
#include "host/attachment_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "host/files.h"

namespace kelspar::host {

namespace {

constexpr size_t kLongestName = 200;
constexpr int kMostTries = 10000;

bool isUnsafe(char16_t c) {
  return c < u' ' || c == 0x7F ||
         std::u16string_view(u"/\\:*?\"<>|").find(c) != std::u16string_view::npos ||
         (c >= 0x80 && c < 0xA0) || (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

bool isDeviceName(std::string_view name) {
  std::string stem(name.substr(0, name.find('.')));
  for (char& c : stem) c = c >= 'a' && c <= 'z' ? static_cast<char>(c & ~0x20) : c;
  if (stem == "CON" || stem == "PRN" || stem == "AUX" || stem == "NUL") return true;
  return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
         stem[3] >= '0' && stem[3] <= '9';
}

// At most `most` bytes, cut between characters.
std::string_view cut(std::string_view text, size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (text[most] & 0xC0) == 0x80) --most;
  return text.substr(0, most);
}

struct NameParts {
  std::string stem, extension;
};

NameParts partsOf(const std::string& name) {
  const size_t dot = name.rfind('.');
  if (dot == name.npos || dot == 0 || name.size() - dot > 20) return {name, ""};
  return {name.substr(0, dot), name.substr(dot)};
}

// False: the name is taken.
bool writeNew(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (file < 0 && errno == EEXIST) return false;
  const auto fail = [&] {
    return Failure(kCannotWrite, path + ": cannot be written: " + std::strerror(errno));
  };
  if (file < 0) throw fail();
  if (!writeAll(file, bytes)) {
    const Failure failure = fail();
    ::close(file);
    ::unlink(path.c_str());
    throw failure;
  }
  if (::close(file) != 0) {
    const Failure failure = fail();
    ::unlink(path.c_str());
    throw failure;
  }
  return true;
}

std::string writeUnderFreeName(const std::string& folder, const std::string& name,
                               std::string_view bytes) {
  const NameParts parts = partsOf(name);
  for (int number = 1; number <= kMostTries; ++number) {
    const std::string suffix = number == 1 ? "" : "-" + std::to_string(number);
    std::string path = folder + "/" + parts.stem + suffix + parts.extension;
    if (writeNew(path, bytes)) return path;
  }
  throw Failure(kCannotWrite, folder + "/" + name + ": there are too many files of that name");
}

void extract(const Message& message, const std::string& folder, size_t* number,
             std::vector<std::string>* paths) {
  for (const Attachment& attachment : message.attachments) {
    ++*number;
    if (attachment.bytes) {
      const std::string name = safeFileName(attachment.name, *number);
      paths->push_back(writeUnderFreeName(folder, name, attachment.bytes.chars()));
    }
    if (attachment.message) extract(*attachment.message, folder, number, paths);
  }
}

}  // namespace

std::string safeFileName(const NSString& name, size_t number) {
  std::u16string safe;
  for (const char16_t c : name.view()) safe += isUnsafe(c) ? u'_' : c;
  std::string text = NSString(std::move(safe)).utf8();
  text.erase(0, std::min(text.find_first_not_of(". "), text.size()));
  NameParts parts = partsOf(text);
  parts.stem = cut(parts.stem, kLongestName - parts.extension.size());
  text = parts.stem + parts.extension;
  // Some systems drop dots and blanks at the end.
  while (!text.empty() && (text.back() == '.' || text.back() == ' ')) text.pop_back();
  if (text.find_first_not_of('_') == text.npos) return "attachment-" + std::to_string(number);
  return isDeviceName(text) || text.front() == '-' ? "_" + text : text;
}

std::vector<std::string> extractAttachments(const Message& message, const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw Failure(kCannotWrite, folder + ": cannot be made: " + error.message());
  std::vector<std::string> paths;
  size_t number = 0;
  extract(message, folder, &number, &paths);
  return paths;
}

}  // namespace kelspar::host

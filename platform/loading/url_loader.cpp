#include "platform/loading/url_loader.h"

// The checks that curl.h makes of options' types call curl_easy_setopt by its name, which is not
// linked here.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>
#include <dlfcn.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace kelspar {

namespace {

// libcurl, loaded when something is fetched for the first time. It brings some thirty libraries
// with it, whose start would cost every program more time than a small message does.
struct TransferLibrary {
  decltype(&curl_easy_init) init;
  decltype(&curl_easy_setopt) setopt;
  decltype(&curl_easy_perform) perform;
  decltype(&curl_easy_cleanup) cleanup;
};

// Debian's build on GnuTLS, then the one that other systems have. The number stands for libcurl's
// binary interface, unchanged since 2006.
constexpr const char* libraryNames[] = {"libcurl-gnutls.so.4", "libcurl.so.4"};

template <typename Function>
bool find(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(dlsym(library, name));
  return function != nullptr;
}

std::optional<TransferLibrary> load(const char* name) {
  void* const library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
  if (!library) return std::nullopt;
  TransferLibrary found{};
  decltype(&curl_global_init) start = nullptr;
  const bool whole = find(library, "curl_global_init", start) &&
                     find(library, "curl_easy_init", found.init) &&
                     find(library, "curl_easy_setopt", found.setopt) &&
                     find(library, "curl_easy_perform", found.perform) &&
                     find(library, "curl_easy_cleanup", found.cleanup);
  if (!whole || start(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
  return found;
}

// nullptr where none is installed. Loaded once, kept until the process ends; any thread.
const TransferLibrary* transferLibrary() {
  static const std::optional<TransferLibrary> loaded = [] {
    std::optional<TransferLibrary> found;
    for (const char* const name : libraryNames)
      if (!found) found = load(name);
    return found;
  }();
  return loaded ? &*loaded : nullptr;
}

struct Content {
  std::string bytes;
  size_t limit;
};

// A size that a server announces is no promise: what arrives is counted.
size_t receive(char* bytes, size_t size, size_t count, void* target) {
  auto* const content = static_cast<Content*>(target);
  const size_t length = size * count;
  if (length > content->limit - content->bytes.size()) return 0;
  content->bytes.append(bytes, length);
  return length;
}

// Reading a pipe or a device could take for ever.
bool isLoadable(const NSURL& url) {
  const std::string scheme = url.scheme();
  if (scheme == "http" || scheme == "https") return true;
  std::error_code error;
  return scheme == "file" && std::filesystem::is_regular_file(url.fileSystemPath(), error);
}

}  // namespace

NSData dataWithContentsOfURL(const NSURL& url, const LoadLimits& limits) {
  if (!url || !isLoadable(url)) return nil;
  const TransferLibrary* const library = transferLibrary();
  if (!library) return nil;
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(library->init(),
                                                                   library->cleanup);
  if (!handle) return nil;

  // A limit that the installed library does not know (protocols by name: before 7.85) is one that
  // would not hold: then nothing is fetched.
  const auto set = [&](CURLoption option, auto value) {
    return library->setopt(handle.get(), option, value) == CURLE_OK;
  };
  const std::string address = url.absoluteString().utf8();
  Content content{{}, limits.bytes};
  const bool isLimited = set(CURLOPT_PROTOCOLS_STR, "http,https,file") &&
                         set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https") &&
                         set(CURLOPT_FOLLOWLOCATION, 1L) && set(CURLOPT_MAXREDIRS, 10L) &&
                         set(CURLOPT_CONNECTTIMEOUT, limits.connectSeconds) &&
                         set(CURLOPT_TIMEOUT, limits.totalSeconds) && set(CURLOPT_NOSIGNAL, 1L) &&
                         set(CURLOPT_FAILONERROR, 1L) && set(CURLOPT_ACCEPT_ENCODING, "") &&
                         set(CURLOPT_WRITEFUNCTION, &receive) && set(CURLOPT_WRITEDATA, &content) &&
                         set(CURLOPT_URL, address.c_str());
  if (!isLimited || library->perform(handle.get()) != CURLE_OK) return nil;
  return NSData(std::move(content.bytes));
}

}  // namespace kelspar

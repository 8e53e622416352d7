#include "platform/loading/url_loader.h"

#include <curl/curl.h>

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace kelspar {

namespace {

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
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(),
                                                                   &curl_easy_cleanup);
  if (!handle) return nil;

  CURL* const curl = handle.get();
  Content content{{}, limits.bytes};
  curl_easy_setopt(curl, CURLOPT_URL, url.absoluteString().utf8().c_str());
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https,file");
  curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl, CURLOPT_MAXREDIRS, 10L);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, limits.connectSeconds);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT, limits.totalSeconds);
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(curl, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &receive);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &content);
  if (curl_easy_perform(curl) != CURLE_OK) return nil;
  return NSData(std::move(content.bytes));
}

}  // namespace kelspar

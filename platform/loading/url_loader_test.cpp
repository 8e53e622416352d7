// Against a server of the test's own, on a port of this machine: no network is needed.
#include "platform/loading/url_loader.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <map>
#include <string>
#include <thread>

namespace kelspar {
namespace {

// Answers each request by its path with the bytes that are set for it.
class Server {
 public:
  explicit Server(std::map<std::string, std::string> answers) : answers_(std::move(answers)) {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool listens = bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         listen(listener_, 16) == 0;
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = listens ? ntohs(address.sin_port) : 0;
    thread_ = std::thread([this] { serve(); });
  }
  ~Server() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }
  NSURL url(const std::string& path) const {
    return NSURL::URLWithString(NSString("http://127.0.0.1:" + std::to_string(port_) + path));
  }

 private:
  void serve() {
    for (int client; (client = accept(listener_, nullptr, nullptr)) >= 0; close(client)) {
      std::string request;
      char buffer[4096];
      while (request.find("\r\n\r\n") == request.npos) {
        const ssize_t count = read(client, buffer, sizeof buffer);
        if (count <= 0) break;
        request.append(buffer, static_cast<size_t>(count));
      }
      const size_t from = request.find(' ') + 1;
      const std::string answer = answers_[request.substr(from, request.find(' ', from) - from)];
      if (answer.empty()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));  // too slow
        continue;
      }
      for (size_t sent = 0; sent < answer.size();) {
        const ssize_t count =
            send(client, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) break;
        sent += static_cast<size_t>(count);
      }
    }
  }

  std::map<std::string, std::string> answers_;
  int listener_ = -1;
  uint16_t port_ = 0;
  std::thread thread_;
};

// "gzip me" as gzip has it.
const std::string kGzip(
    "\x1F\x8B\x08\x00\x00\x00\x00\x00\x02\x03\x4B\xAF\xCA\x2C\x50\xC8\x4D\x05\x00\xCF\xF0\x1F\x53"
    "\x07\x00\x00\x00",
    27);

std::string ok(const std::string& body, const std::string& header = "") {
  return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + header + "\r\n" + body;
}
std::string redirect(const std::string& to) {
  return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " + to +
         "\r\n\r\n";
}

class URLLoader : public testing::Test {
 protected:
  Server server_{{{"/plain", ok("hello")},
                  {"/empty", ok("")},
                  {"/gzip", ok(kGzip, "Content-Encoding: gzip\r\n")},
                  {"/large", ok(std::string(5000, 'x'))},
                  {"/missing", "HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\nno"},
                  {"/once", redirect("/plain")},
                  {"/for-ever", redirect("/for-ever")},
                  {"/to-file", redirect("file:///etc/hostname")},
                  {"/to-ftp", redirect("ftp://127.0.0.1/a")}}};
};

TEST_F(URLLoader, ContentComesBack) {
  EXPECT_EQ(dataWithContentsOfURL(server_.url("/plain")), NSData(std::string_view("hello")));
  EXPECT_EQ(dataWithContentsOfURL(server_.url("/empty")), NSData(std::string_view()));
}

TEST_F(URLLoader, GzipIsUndone) {
  EXPECT_EQ(dataWithContentsOfURL(server_.url("/gzip")), NSData(std::string_view("gzip me")));
}

TEST_F(URLLoader, RedirectsStayOnTheWeb) {
  EXPECT_EQ(dataWithContentsOfURL(server_.url("/once")), NSData(std::string_view("hello")));
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/for-ever")));
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/to-file")));
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/to-ftp")));
}

TEST_F(URLLoader, ErrorsAreNil) { EXPECT_FALSE(dataWithContentsOfURL(server_.url("/missing"))); }

TEST_F(URLLoader, SizesAreCounted) {
  LoadLimits limits;
  limits.bytes = 5000;
  EXPECT_EQ(dataWithContentsOfURL(server_.url("/large"), limits).length(), 5000u);
  limits.bytes = 4999;
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/large"), limits));
}

TEST_F(URLLoader, NothingIsFetchedWhereALimitCannotBeSet) {
  LoadLimits limits;
  limits.totalSeconds = -1;  // refused by the library
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/plain"), limits));
}

TEST_F(URLLoader, TimeIsLimited) {
  LoadLimits limits;
  limits.totalSeconds = 1;
  EXPECT_FALSE(dataWithContentsOfURL(server_.url("/slow"), limits));
}

}  // namespace
}  // namespace kelspar

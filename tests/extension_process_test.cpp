// Drives kelspar-extension as another process over pipes, as a host does.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <string>
#include <thread>

#include "platform/loading/json_reader.h"

extern char** environ;

namespace kelspar {
namespace {

class Extension {
 public:
  // With O_NONBLOCK the program's input never waits, as some hosts' sockets do.
  explicit Extension(int inputFlags = 0) {
    int in[2], out[2];
    EXPECT_EQ(::pipe2(in, O_CLOEXEC) | ::pipe2(out, O_CLOEXEC), 0);
    EXPECT_EQ(::fcntl(in[0], F_SETFL, inputFlags), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::string program = KELSPAR_EXTENSION;
    char* arguments[] = {program.data(), nullptr};
    EXPECT_EQ(::posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(in[0]), ::close(out[1]);
    to_ = in[1], from_ = out[0];
  }

  // Sends all and reads all answers, at once, as neither side may wait for the other.
  std::string exchange(const std::string& input) {
    std::string output;
    std::thread reader([&] {
      char chunk[65536];
      for (ssize_t count; (count = ::read(from_, chunk, sizeof chunk)) > 0;) {
        output.append(chunk, static_cast<size_t>(count));
      }
    });
    for (size_t at = 0; at < input.size();) {
      const ssize_t written = ::write(to_, input.data() + at, input.size() - at);
      if (written <= 0) break;
      at += static_cast<size_t>(written);
    }
    closeInput();
    reader.join();
    return output;
  }

  void closeInput() { ::close(std::exchange(to_, -1)); }
  void closeOutput() { ::close(std::exchange(from_, -1)); }
  [[nodiscard]] int input() const { return to_; }

  int exitStatus() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  pid_t process_ = -1;
  int to_ = -1, from_ = -1;
};

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t at = 0, end; (end = text.find('\n', at)) != text.npos; at = end + 1) {
    lines.push_back(text.substr(at, end - at));
  }
  return lines;
}

TEST(ExtensionProcess, EndsWithStatus0AtTheEndOfInput) {
  Extension extension;
  EXPECT_EQ(extension.exchange(""), "");
  EXPECT_EQ(extension.exitStatus(), 0);
}

TEST(ExtensionProcess, AnswersTheLastLineWithoutItsLineFeed) {
  Extension extension;
  EXPECT_EQ(
      extension.exchange(
          R"({"jsonrpc":"2.0","id":1,"method":"rtfStringFromData","params":{"receiver":null}})"),
      "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{\"value\":null}}\n");
  EXPECT_EQ(extension.exitStatus(), 0);
}

TEST(ExtensionProcess, WaitsForInputThatIsNotThereYet) {
  Extension extension(O_NONBLOCK);
  ::usleep(200'000);  // until it has looked for the first time
  const std::string line = R"({"jsonrpc":"2.0","id":1,"method":"rtfStringFromData",)"
                           R"("params":{"receiver":null}})";
  EXPECT_EQ(linesOf(extension.exchange(line + "\n" + line)).size(), 2u);
  EXPECT_EQ(extension.exitStatus(), 0);
}

// The answer is what the completion was given; without one it is empty.
TEST(ExtensionProcess, AnswersWithWhatACompletionIsGiven) {
  const std::string rtf =  // {\\rtf1 a\\par b{\\*\\htmltag64 <img src="cid:x"></p>}}
      R"({"$data":"e1xydGYxIGFccGFyIGJ7XCpcaHRtbHRhZzY0IDxpbWcgc3JjPSJjaWQ6eCI+PC9wPn19"})";
  const std::string dot = R"({"$data":"R0lGODlhAQABAIAAAAAAAP///ywAAAAAAQABAAACAkQBADs="})";
  const std::string image = R"({"AttachContentID":"X","data":)" + dot + "}";
  const auto request = [&](int number, const char* completion) {
    return R"({"jsonrpc":"2.0","id":)" + std::to_string(number) +
           R"(,"method":"buildRTFMessageContent:attachments:completion:","params":{"class":"EmailUtilities","arguments":[)" +
           rtf + ",[" + image + "]," + completion + "]}}\n";
  };
  Extension extension;
  const std::vector<std::string> lines =
      linesOf(extension.exchange(request(1, "true") + request(2, "null") + request(3, "7")));
  EXPECT_EQ(extension.exitStatus(), 0);
  ASSERT_EQ(lines.size(), 3u);
  for (const std::string& line : lines) {
    const bool isWithImage = line.find("\"image/gif\"") != line.npos;
    EXPECT_EQ(isWithImage, line.find("\"id\":1,") != line.npos) << line;
    EXPECT_EQ(line.find("-32602") != line.npos, line.find("\"id\":3,") != line.npos) << line;
  }
}

TEST(ExtensionProcess, LosesNoAnswerAmongGoodAndBadLines) {
  constexpr int kLines = 20000;
  std::mt19937 random(31);
  std::string input;
  std::map<int64_t, bool> expected;  // id -> a result, not an error
  int nameless = 0;                  // errors that have no id to go by
  for (int i = 0; i < kLines; ++i) {
    const std::string head = R"({"jsonrpc":"2.0","id":)" + std::to_string(i);
    switch (random() % 6) {
      case 0:
        input += "this is no JSON\n", ++nameless;
        break;
      case 1:
        input += head + R"(,"method":"noSuchThing:","params":{}})"
                        "\n";
        expected[i] = false;
        break;
      case 2:
        input += R"({"jsonrpc":"2.0","method":"rtfStringFromData","params":{"receiver":null}})"
                 "\n";
        break;
      case 3:
        input += head +
                 R"(,"method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":[null]}})"
                 "\n";
        expected[i] = true;
        break;
      case 4:
        input +=
            "[" + head +
            R"(,"method":"isEncapsulatedHTML:","params":{"class":"RTFKelspar","arguments":[null]}},7])"
            "\n";
        expected[i] = true;
        ++nameless;
        break;
      default:
        input +=
            head +
            R"(,"method":"stringFromRTFData","params":{"receiver":{"$data":"e1xydGYxIGhpfQ=="}}})"
            "\n";
        expected[i] = true;
        break;
    }
  }
  Extension extension;
  const std::string output = extension.exchange(input);
  EXPECT_EQ(extension.exitStatus(), 0);
  int namelessAnswers = 0;
  const auto count = [&](const NSDictionary& answer) {
    const auto number = answer.objectForKey<NSNumber>(u"id");
    if (!number) {
      EXPECT_TRUE(answer.objectForKey(u"error"));
      ++namelessAnswers;
      return;
    }
    const auto found = expected.find(number.longValue());
    ASSERT_NE(found, expected.end()) << "answered twice, or never asked";
    EXPECT_EQ(static_cast<bool>(answer.objectForKey(u"result")), found->second);
    expected.erase(found);
  };
  for (const std::string& line : linesOf(output)) {
    const id json = parseJSON(line, nullptr);
    ASSERT_TRUE(json) << line;
    if (const auto batch = json.as<NSArray>()) {
      for (const id& answer : batch) count(answer.as<NSDictionary>());
    } else {
      count(json.as<NSDictionary>());
    }
  }
  EXPECT_TRUE(expected.empty()) << expected.size() << " lines were not answered";
  EXPECT_EQ(namelessAnswers, nameless);
}

TEST(ExtensionProcess, LongLinesPass) {
  const std::string data(8 << 20, 'A');
  Extension extension;
  const std::string output = extension.exchange(
      R"({"jsonrpc":"2.0","id":1,"method":"rtfStringFromData","params":{"receiver":{"$data":")" +
      data + "\"}}}\n");
  EXPECT_EQ(extension.exitStatus(), 0);
  // Each zero byte comes back as a six-byte escape.
  EXPECT_GT(output.size(), data.size() / 4 * 3 * 6);
  EXPECT_TRUE(parseJSON(output, nullptr));
}

TEST(ExtensionProcess, EndsWhenNobodyListens) {
  std::signal(SIGPIPE, SIG_IGN);
  Extension extension;
  extension.closeOutput();
  const std::string line = R"({"jsonrpc":"2.0","id":1,"method":"rpc.discover"})"
                           "\n";
  for (int i = 0; i < 100; ++i) {
    if (::write(extension.input(), line.data(), line.size()) <= 0) break;
  }
  extension.closeInput();
  EXPECT_EQ(extension.exitStatus(), 1);
}

// 22 bytes that claim a gibibyte, as the stated result has it: zeroed pages that nothing touches,
// but far more than a line can hold.
TEST(ExtensionProcess, DataThatNoLineCanHoldIsAnError) {
  Extension extension;
  const std::string output = extension.exchange(
      R"({"jsonrpc":"2.0","id":1,"method":"getRTFForData","params":{"receiver":{"$data":"AAAAAAEAAEBMWkZ1AAAAAABhYmNkZQ=="}}})");
  EXPECT_EQ(extension.exitStatus(), 0);
  EXPECT_EQ(output,
            "{\"jsonrpc\":\"2.0\",\"id\":1,\"error\":{\"code\":-32000,"
            "\"message\":\"the data is too large to be sent\"}}\n");
}

TEST(ExtensionProcess, HostileSizesAreErrors) {
  Extension extension;
  const std::string head = R"({"jsonrpc":"2.0","id":1,"method":)";
  const std::string output = extension.exchange(
      head +
      R"("initializeArrayWithEntryCount:ofSize:","params":{"class":"RTFKelspar","arguments":[18446744073709551615,18446744073709551615]}})"
      "\n" +
      head +
      R"("initializeArrayWithEntryCount:ofSize:","params":{"class":"RTFKelspar","arguments":[4294967296,1]}})"
      "\n" +
      head +
      R"("decodeRTFSource:withCompressedSize:withUncompressedSize:","params":{"class":"RTFKelspar","arguments":[{"$data":"AA=="},99999,5]}})"
      "\n");
  EXPECT_EQ(extension.exitStatus(), 0);
  EXPECT_EQ(linesOf(output).size(), 3u);
}

}  // namespace
}  // namespace kelspar

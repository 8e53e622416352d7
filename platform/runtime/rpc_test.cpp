#include "platform/runtime/rpc.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

std::string answerTo(const std::string& line) {
  std::string result = "(not answered)";
  runtime::answerLine(line, [&](const std::string& answer) { result = answer; });
  return result;
}

std::string error(const char* id, int code, const std::string& message) {
  return R"({"jsonrpc":"2.0","id":)" + std::string(id) + R"(,"error":{"code":)" +
         std::to_string(code) + R"(,"message":")" + message + "\"}}";
}

struct Row {
  const char* name;
  std::string line, answer;
};
class RPC : public testing::TestWithParam<Row> {};
TEST_P(RPC, Answers) { EXPECT_EQ(answerTo(GetParam().line), GetParam().answer); }

std::string request(const std::string& rest) { return R"({"jsonrpc":"2.0",)" + rest + "}"; }

const std::string kGood = R"("method":"rtfStringFromData","params":{"receiver":{"$data":"aGk="}})";
const std::string kGoodAnswer = R"({"jsonrpc":"2.0","id":1,"result":{"value":"hi"}})";

const Row kRows[] = {
    {"Category", request(R"("id":1,)" + kGood), kGoodAnswer},
    {"ClassFits",
     request(
         R"("id":1,"method":"rtfStringFromData","params":{"class":"RTFKelsparNSDataAdditions","receiver":{"$data":"aGk="},"arguments":[]})"),
     kGoodAnswer},
    {"ExtendedTypeFits",
     request(
         R"("id":1,"method":"rtfStringFromData","params":{"class":"NSData","receiver":{"$data":"aGk="}})"),
     kGoodAnswer},
    {"ClassDoesNotFit",
     request(
         R"("id":1,"method":"rtfStringFromData","params":{"class":"RTFKelspar","receiver":null})"),
     error("1", -32601, "no operation rtfStringFromData in RTFKelspar")},
    {"MissingReceiverIsNil",
     request(R"("id":1,"method":"rtfStringFromData","params":{"receiver":null})"),
     R"({"jsonrpc":"2.0","id":1,"result":{"value":null}})"},
    {"ReceiverLeftOut", request(R"("id":1,"method":"rtfStringFromData","params":{})"),
     error("1", -32602, "receiver is missing")},
    {"ClassOperation",
     request(
         R"("id":"x","method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":[{"$data":"AAAAAAAAAABMWkZ1"}]})"),
     R"({"jsonrpc":"2.0","id":"x","result":{"value":true}})"},
    {"ClassLeftOut", request(R"("id":1,"method":"typeIsRTF:","params":{"arguments":[null]})"),
     error("1", -32602, "class is missing: typeIsRTF: belongs to a class")},
    {"Out",
     request(
         R"("id":2,"method":"getRTFFromBuffer:withSize:returnSize:returnData:","params":{"class":"RTFKelspar","arguments":[{"$data":"AAAAAAMAAABMWkZ1AAAAAABhYmM="},20,0,null]})"),
     R"({"jsonrpc":"2.0","id":2,"result":{"value":null,"out":[null,null,3,{"$data":"YWJj"}]}})"},
    {"NotJSON", "{", error("null", -32700, "not JSON at byte 2")},
    {"EmptyLine", "", error("null", -32700, "not JSON at byte 1")},
    {"InvalidUTF8", "\"\xFF\"", error("null", -32700, "not JSON at byte 2")},
    {"Number", "1", error("null", -32600, "not a request")},
    {"NoVersion", R"({"id":1,"method":"x"})", error("1", -32600, "not a request")},
    {"WrongVersion", R"({"jsonrpc":"1.0","id":1,"method":"x"})",
     error("1", -32600, "not a request")},
    {"NoMethod", request(R"("id":1)"), error("1", -32600, "not a request")},
    {"MethodIsNoString", request(R"("id":1,"method":7)"), error("1", -32600, "not a request")},
    {"IdIsNoId", request(R"("id":[1],"method":"x")"), error("null", -32600, "not a request")},
    {"ParamsAreNoStructure", request(R"("id":1,"method":"x","params":7)"),
     error("1", -32600, "not a request")},
    {"NoSuchOperation", request(R"("id":1,"method":"nope","params":{})"),
     error("1", -32601, "no operation nope")},
    {"ArgumentsAreNoArray",
     request(R"("id":1,"method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":{}})"),
     error("1", -32602, "arguments should be an array")},
    {"ArgumentDoesNotFit",
     request(R"("id":1,"method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":["x"]})"),
     error("1", -32602, "argument 1 should be pointer to bytes")},
    {"ArgumentOfNoForm",
     request(
         R"("id":1,"method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":[{"$data":"?"}]})"),
     error("1", -32602, "argument 1: the value of $data is not of its form")},
    {"NullId", request(R"("id":null,)" + kGood),
     R"({"jsonrpc":"2.0","id":null,"result":{"value":"hi"}})"},
    {"LargeId", request(R"("id":18446744073709551615,)" + kGood),
     R"({"jsonrpc":"2.0","id":18446744073709551615,"result":{"value":"hi"}})"},
    {"Notification", request(kGood), ""},
    {"BadNotification", request(R"("method":"nope")"), ""},
    {"EmptyBatch", "[]", error("null", -32600, "an empty batch")},
    {"BatchOfNonsense", "[1,2]",
     "[" + error("null", -32600, "not a request") + "," + error("null", -32600, "not a request") +
         "]"},
    {"Batch", "[" + request(R"("id":1,)" + kGood) + "," + request(kGood) + "]",
     "[" + kGoodAnswer + "]"},
    {"BatchOfNotifications", "[" + request(kGood) + "]", ""},
    {"EscapesOfEveryKind",
     request(
         R"("id":1,"method":"stringByStrippingHTML","params":{"receiver":"\ud800 \udbff\udffdzzzz"})"),
     R"({"jsonrpc":"2.0","id":1,"result":{"value":""}})"},
    {"TheOtherFormOfStrings",  // stringByStrippingHTML, WebKelsparNSStringAdditions
     request(
         R"("id":1,"method":{"$utf16":"dAB5AHAAZQBJAHMAUgBUAEYAOgA="},"params":{"class":{"$utf16":"UgBUAEYASwBlAGwAcwBwAGEAcgA="},"arguments":[null]})"),
     R"({"jsonrpc":"2.0","id":1,"result":{"value":false}})"},
    {"NoClassFitsAnEmptyName",
     request(R"("id":1,"method":"stringByStrippingHTML","params":{"class":"","receiver":"a"})"),
     error("1", -32601, "no operation stringByStrippingHTML")},
    {"BelowTheSignedRange",
     request(
         R"("id":1,"method":"getWindowsTimeFromUnixTime:","params":{"class":"TimeKelspar","arguments":[-9223372036854775809]})"),
     error("1", -32602, "argument 1 should be signed 64-bit integer")},
    {"LoneSurrogateComesBack", request(R"("id":"\ud800",)" + kGood),
     R"({"jsonrpc":"2.0","id":"\ud800","result":{"value":"hi"}})"},
};
INSTANTIATE_TEST_SUITE_P(Lines, RPC, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RPC, DiscoversTheOperations) {
  const std::string answer = answerTo(request(R"("id":1,"method":"rpc.discover")"));
  EXPECT_NE(answer.find(R"("name":"RTFKelsparNSDataAdditions")"), std::string::npos);
  EXPECT_NE(answer.find(R"("extends":"NSData")"), std::string::npos);
  EXPECT_NE(
      answer.find(
          R"({"name":"typeIsRTF:","kind":"class","arguments":["pointer to bytes"],"result":"boolean"})"),
      std::string::npos);
}

TEST(RPC, DeepLinesAreBadLines) {
  EXPECT_EQ(answerTo(std::string(100'000, '[')), error("null", -32700, "nested too deep"));
}

}  // namespace
}  // namespace kelspar

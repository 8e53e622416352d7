// The protocol's lines: each is answered once, by JSON or, for notifications, by nothing.
#include <cstdlib>

#include "platform/loading/json_reader.h"
#include "platform/runtime/rpc.h"

using namespace kelspar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static const bool quiet = (setLogSink([](std::string_view) {}), true);
  const std::string_view line(reinterpret_cast<const char*>(bytes), size);
  // Operations that wait, sleep, allocate by request, write to files or fetch are no parser's
  // business.
  for (const char* name :
       {"transitionText", "saveRtfAsPdf", "getJSONArray", "buildRTFMessage", "initializeArray",
        "createPdf", "printLog", "randomString", "decodeRTFSource"}) {
    if (line.find(name) != line.npos || line.find("\\u") != line.npos) return quiet ? 0 : 1;
  }
  int answers = 0;
  runtime::answerLine(line, [&](const std::string& answer) {
    ++answers;
    if (answer.find('\n') != answer.npos) std::abort();
    if (!answer.empty() && !parseJSON(answer, nullptr)) std::abort();
  });
  if (answers != 1) std::abort();
  return 0;
}

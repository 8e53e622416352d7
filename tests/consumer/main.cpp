#include <RTFKelspar/RTFKelsparNSDataAdditions.h>
#include <platform/runtime/Operations.h>

#include <cstdio>

int main() {
  const kelspar::NSData rtf(std::string_view("{\\rtf1 Hello\\par}"));
  const auto text = kelspar::RTFKelsparNSDataAdditions::stringFromRTFData(rtf);
  const auto* operation = kelspar::Operations::shared().find("NSData", "stringFromRTFData");
  const bool same = operation && operation->call({rtf, {}}).value.isEqual(text);
  return std::fputs(text.utf8().c_str(), stdout) >= 0 && same ? 0 : 1;
}

// The per-thread store of ICU converters.
#include "platform/unicode/icu_converter.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <map>
#include <memory>

namespace kelspar {

namespace {

struct Close {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, Close>;

// ICU's own substitution writes U+001A for single bytes of some pages.
void writeReplacement(const void*, UConverterToUnicodeArgs* arguments, const char*, int32_t,
                      UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;  // resets and the like
  constexpr UChar kReplacement = 0xFFFD;
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &kReplacement, 1, 0, error);
}

// ICU substitutes silently unless each handle is told to stop.
Converter open(const char* name, Malformed malformed) {
  UErrorCode error = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &error));
  if (U_FAILURE(error)) return nullptr;
  if (malformed == Malformed::stop) {
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
  } else {
    ucnv_setToUCallBack(converter.get(), writeReplacement, nullptr, nullptr, nullptr, &error);
  }
  return U_FAILURE(error) ? nullptr : std::move(converter);
}

UConverter* converterFor(const char* name, Malformed malformed) {
  thread_local std::map<std::pair<std::string, Malformed>, Converter> store;
  auto [place, isNew] = store.try_emplace({name, malformed});
  if (isNew) place->second = open(name, malformed);
  return place->second.get();
}

}  // namespace

bool convertWithICU(const char* name, std::string_view bytes, Malformed malformed,
                    std::u16string* out) {
  UConverter* converter = converterFor(name, malformed);
  if (!converter) return false;
  ucnv_resetToUnicode(converter);
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  size_t written = out->size();
  UErrorCode error = U_ZERO_ERROR;
  do {
    out->resize(written + static_cast<size_t>(end - source) + 16);
    char16_t* target = out->data() + written;
    error = U_ZERO_ERROR;
    ucnv_toUnicode(converter, &target, out->data() + out->size(), &source, end, nullptr, true,
                   &error);
    written = static_cast<size_t>(target - out->data());
  } while (error == U_BUFFER_OVERFLOW_ERROR);
  out->resize(written);
  return U_SUCCESS(error);
}

void unitsByICU(const char* name, std::string_view sequences, size_t length, char16_t* out) {
  UConverter* converter = converterFor(name, Malformed::stop);
  for (size_t at = 0; at + length <= sequences.size(); at += length) {
    char16_t units[4];
    char16_t* target = units;
    const char* source = sequences.data() + at;
    UErrorCode error = converter ? U_ZERO_ERROR : U_FILE_ACCESS_ERROR;
    if (converter) {
      ucnv_resetToUnicode(converter);
      ucnv_toUnicode(converter, &target, std::end(units), &source, source + length, nullptr, true,
                     &error);
    }
    *out++ = U_SUCCESS(error) && target == units + 1 ? units[0] : u'\xFFFD';
  }
}

bool encodeWithICU(const char* name, std::u16string_view text, std::string* out) {
  UConverter* converter = converterFor(name, Malformed::stop);
  if (!converter) return false;
  ucnv_resetFromUnicode(converter);
  const char16_t* source = text.data();
  const char16_t* const end = source + text.size();
  size_t written = out->size();
  UErrorCode error = U_ZERO_ERROR;
  do {
    out->resize(written + 2 * static_cast<size_t>(end - source) + 32);
    char* target = out->data() + written;
    error = U_ZERO_ERROR;
    ucnv_fromUnicode(converter, &target, out->data() + out->size(), &source, end, nullptr, true,
                     &error);
    written = static_cast<size_t>(target - out->data());
  } while (error == U_BUFFER_OVERFLOW_ERROR);
  out->resize(written);
  return U_SUCCESS(error);
}

bool knownToICU(const char* name) { return converterFor(name, Malformed::stop) != nullptr; }

}  // namespace kelspar

// Checksums, varints and GUID text, with the definitions as references.
#include <benchmark/benchmark.h>

#include <random>

#include "BitKelspar/BitKelspar.h"
#include "BitKelspar/checksums.h"
#include "BitKelspar/crc16_by_the_book.h"

namespace kelspar {
namespace {

NSData randomData(size_t size) {
  std::mt19937 random(1);
  std::string bytes(size, ' ');
  for (char& c : bytes) c = static_cast<char>(random());
  return NSData(std::move(bytes));
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_CRC16_Reference(benchmark::State& state) {
  const NSData data = randomData(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(crc16::byTheBook(0xFFFF, data.span()));
  countBytes(state);
}
// One table look-up a byte: what most programs do.
void BM_CRC16_TableLoop(benchmark::State& state) {
  uint16_t table[256];
  for (int byte = 0; byte < 256; ++byte) {
    const auto one = static_cast<uint8_t>(byte);
    table[byte] = crc16::byTheBook(0, {&one, 1});
  }
  const NSData data = randomData(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    uint16_t crc = 0xFFFF;
    for (const uint8_t byte : data.span())
      crc = static_cast<uint16_t>(crc << 8 ^ table[crc >> 8 ^ byte]);
    benchmark::DoNotOptimize(crc);
  }
  countBytes(state);
}
void BM_CRC16_Sliced(benchmark::State& state) {
  const NSData data = randomData(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(crc16::sliced(0xFFFF, data.bytes(), data.length()));
  countBytes(state);
}
void BM_CRC16(benchmark::State& state) {
  const NSData data = randomData(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(BitKelspar::crc16OfData(data));
  countBytes(state);
}
void BM_XOR(benchmark::State& state) {
  const NSData data = randomData(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(BitKelspar::xorChecksumOfData(data));
  countBytes(state);
}

void BM_Varint(benchmark::State& state) {
  std::mt19937 random(2);
  std::string bytes;
  while (bytes.size() < 1 << 16) {
    const int length = state.range(0) == 1 ? 1 : 1 + static_cast<int>(random() % 5);
    for (int i = 1; i < length; ++i) bytes += static_cast<char>(random() | 0x80);
    bytes += static_cast<char>(random() & 0x7F);
  }
  const NSData data(std::move(bytes));
  int64_t count = 0;
  for (auto _ : state) {
    for (uint64_t at = 0; at < data.length(); ++count) {
      benchmark::DoNotOptimize(BitKelspar::readVarintFromData(data, &at));
    }
  }
  state.SetItemsProcessed(count);
}

void BM_GUIDText(benchmark::State& state) {
  const NSData data = randomData(16);
  for (auto _ : state) benchmark::DoNotOptimize(BitKelspar::formatGUIDFromData(data));
  state.SetItemsProcessed(state.iterations());
}
void BM_GUIDFromText(benchmark::State& state) {
  const NSString text = BitKelspar::formatGUIDFromData(randomData(16));
  for (auto _ : state) benchmark::DoNotOptimize(BitKelspar::dataFromGUIDString(text));
  state.SetItemsProcessed(state.iterations());
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int64_t size : {64, 4 << 10, 1 << 20, 10 << 20}) benchmark->Arg(size);
}
BENCHMARK(BM_CRC16_Reference)->Apply(sizes);
BENCHMARK(BM_CRC16_TableLoop)->Apply(sizes);
BENCHMARK(BM_CRC16_Sliced)->Apply(sizes);
BENCHMARK(BM_CRC16)->Apply(sizes);
BENCHMARK(BM_XOR)->Apply(sizes);
BENCHMARK(BM_Varint)->Arg(1)->Arg(5);
BENCHMARK(BM_GUIDText);
BENCHMARK(BM_GUIDFromText);

}  // namespace
}  // namespace kelspar

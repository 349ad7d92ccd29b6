// Objects per second of whole drawings between memory and database in DWG, and the time of our own DXF for the same
// drawing beside it. GC_BENCH_ENTITIES sets the size of the drawing (100,000 by default).
// Peers: LibreDWG's library decodes 0.3 to 0.5 and encodes 0.5 to 0.8 million objects a second; Debian 12 has it not.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "host/db/core/store.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dxf/dxf_file.h"
#include "tools/bigdxf/big_drawing.h"

namespace {

const std::string& bigDxf() {
  static std::string file;
  if (file.empty()) {
    const char* wanted = std::getenv("GC_BENCH_ENTITIES");
    gc::dxf::StringSink sink;
    gc::dxf::TagWriter writer(sink, gc::dxf::FileForm::Ascii);
    gc::writeBigDrawing(writer, wanted != nullptr ? std::atol(wanted) : 100'000);
    static_cast<void>(writer.finish());
    file = std::move(sink.text());
  }
  return file;
}

GcDbDatabase& bigDatabase() {
  static const std::unique_ptr<GcDbDatabase> database = [] {
    auto made = std::make_unique<GcDbDatabase>(false);
    static_cast<void>(gc::dxf::read(*made, bigDxf()));
    return made;
  }();
  return *database;
}

const std::vector<uint8_t>& bigDwg(int version) {
  static std::vector<uint8_t> files[GcDb::kDHL_AC1032 + 1];
  std::vector<uint8_t>& file = files[version];
  std::string message;
  if (file.empty()) static_cast<void>(gc::dwg::writeBytes(bigDatabase(), version, file, message));
  return file;
}

void setObjects(benchmark::State& state, size_t bytes) {
  const auto objects = static_cast<double>(bigDatabase().store().size()) * static_cast<double>(state.iterations());
  state.counters["objects"] = benchmark::Counter(objects, benchmark::Counter::kIsRate);
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
}

void decode(benchmark::State& state, int version) {
  const std::vector<uint8_t>& file = bigDwg(version);
  for (auto _ : state) {
    auto database = std::make_unique<GcDbDatabase>(false);
    if (gc::dwg::read(*database, {reinterpret_cast<const char*>(file.data()), file.size()}) != Gcad::eOk)
      state.SkipWithError("not read");
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
  setObjects(state, file.size());
}

void encode(benchmark::State& state, int version) {
  size_t size = 0;
  for (auto _ : state) {
    std::vector<uint8_t> bytes;
    std::string message;
    if (gc::dwg::writeBytes(bigDatabase(), version, bytes, message) != Gcad::eOk) state.SkipWithError("not written");
    size = bytes.size();
  }
  setObjects(state, size);
}

void dxfRead(benchmark::State& state) {
  for (auto _ : state) {
    auto database = std::make_unique<GcDbDatabase>(false);
    if (gc::dxf::read(*database, bigDxf()) != Gcad::eOk) state.SkipWithError("not read");
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
  setObjects(state, bigDxf().size());
}

void dxfWrite(benchmark::State& state) {
  size_t size = 0;
  for (auto _ : state) {
    gc::dxf::StringSink sink;
    gc::dxf::WriteOptions options;
    options.version = GcDb::kDHL_AC1015;
    if (gc::dxf::write(bigDatabase(), sink, options) != Gcad::eOk) state.SkipWithError("not written");
    size = sink.text().size();
  }
  setObjects(state, size);
}

BENCHMARK_CAPTURE(decode, R2000, GcDb::kDHL_AC1015)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, R2018, GcDb::kDHL_AC1032)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, R2000, GcDb::kDHL_AC1015)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, R2018, GcDb::kDHL_AC1032)->Unit(benchmark::kMillisecond);
BENCHMARK(dxfRead)->Unit(benchmark::kMillisecond);
BENCHMARK(dxfWrite)->Unit(benchmark::kMillisecond);

}  // namespace

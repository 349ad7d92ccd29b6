// Megabytes per second of whole drawings between memory and database, and the memory a loaded drawing takes.
// GC_BENCH_ENTITIES sets the size of the drawing (100,000 by default; a million is 300 MB).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "host/dxf/dxf_file.h"
#include "tools/bigdxf/big_drawing.h"

namespace {

using namespace gc::dxf;

class CountingSink final : public ByteSink {
 public:
  bool write(const char* bytes, std::size_t count) override {
    benchmark::DoNotOptimize(bytes);
    m_count += count;
    return true;
  }
  std::size_t m_count = 0;
};

const std::string& bigFile(FileForm form) {
  static std::string ascii, binary;
  std::string& file = form == FileForm::Ascii ? ascii : binary;
  if (file.empty()) {
    const char* wanted = std::getenv("GC_BENCH_ENTITIES");
    StringSink sink;
    TagWriter writer(sink, form);
    gc::writeBigDrawing(writer, wanted ? std::atol(wanted) : 100'000);
    (void)writer.finish();
    file = std::move(sink.text());
  }
  return file;
}

void readFile(benchmark::State& state, FileForm form) {
  const std::string& file = bigFile(form);
  for (auto _ : state) {
    auto database = std::make_unique<GcDbDatabase>(false);
    if (read(*database, file) != Gcad::eOk) state.SkipWithError("not read");
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(file.size() * state.iterations()));
}

void writeFile(benchmark::State& state, bool binary) {
  GcDbDatabase database(false);
  if (read(database, bigFile(FileForm::Ascii)) != Gcad::eOk) state.SkipWithError("not read");
  WriteOptions options;
  options.version = GcDb::kDHL_AC1015;
  options.binary = binary;
  CountingSink sink;
  for (auto _ : state) {
    if (write(database, sink, options) != Gcad::eOk) state.SkipWithError("not written");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(sink.m_count));
}

BENCHMARK_CAPTURE(readFile, ascii, FileForm::Ascii)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, binary, FileForm::Binary16)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, ascii, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFile, binary, true)->Unit(benchmark::kMillisecond);

}  // namespace

// Megabytes per second of the tag layer alone: scanning, scanning with numbers, formatting.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "host/dxf/tags/tag_reader.h"
#include "host/dxf/tags/tag_writer.h"

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

struct Segment {
  double x1, y1, x2, y2;
};

// Lines as programs write them: full precision, or coordinates of three decimals.
std::vector<Segment> segments(std::size_t count, bool full) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<> place(0.0, 1e4);
  const auto coordinate = [&] { return full ? place(random) : static_cast<double>(random() % 10'000'000) / 1000.0; };
  std::vector<Segment> all(count);
  for (Segment& segment : all) segment = {coordinate(), coordinate(), coordinate(), coordinate()};
  return all;
}

void writeLines(TagWriter& writer, const std::vector<Segment>& lines) {
  std::uint64_t handle = 0x100;
  for (const Segment& line : lines) {
    writer.writeString(0, "LINE");
    writer.writeHandle(5, handle++);
    writer.writeHandle(330, 0x1F);
    writer.writeString(100, "AcDbEntity");
    writer.writeString(8, "WALLS");
    writer.writeInt(62, 3);
    writer.writeString(100, "AcDbLine");
    writer.writePoint(10, line.x1, line.y1, 0.0);
    writer.writePoint(11, line.x2, line.y2, 0.0);
  }
}

std::string linesFile(FileForm form, bool full) {
  StringSink sink;
  TagWriter writer(sink, form);
  writer.writeString(0, "SECTION");
  writeLines(writer, segments(100'000, full));
  (void)writer.finish();
  return std::move(sink.text());
}

void scan(benchmark::State& state, FileForm form, bool numbers) {
  const std::string file = linesFile(form, true);
  for (auto _ : state) {
    TagReader reader(file);
    Tag tag;
    std::size_t count = 0;
    double sum = 0.0;
    while (reader.next(tag) == ReadStatus::Tag) {
      ++count;
      double value;
      if (numbers && tag.kind == ValueKind::Real && tag.real(value)) sum += value;
    }
    benchmark::DoNotOptimize(count);
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(file.size() * state.iterations()));
}

void format(benchmark::State& state, FileForm form, bool full) {
  const auto lines = segments(100'000, full);
  CountingSink sink;
  for (auto _ : state) {
    TagWriter writer(sink, form);
    writeLines(writer, lines);
    (void)writer.finish();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(sink.m_count));
}

BENCHMARK_CAPTURE(scan, ascii, FileForm::Ascii, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, ascii_numbers, FileForm::Ascii, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, binary, FileForm::Binary16, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, binary_numbers, FileForm::Binary16, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(format, ascii_full_precision, FileForm::Ascii, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(format, ascii_three_decimals, FileForm::Ascii, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(format, binary, FileForm::Binary16, true)->Unit(benchmark::kMillisecond);

}  // namespace

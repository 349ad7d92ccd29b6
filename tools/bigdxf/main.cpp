// make_big_dxf FILE [COUNT] [--binary]: a drawing of COUNT mixed entities (a million by default, about 300 MB) of the
// version R2000, for benchmarks. The same arguments always make the same file.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/bigdxf/big_drawing.h"

namespace {

class FileSink final : public gc::dxf::ByteSink {
 public:
  explicit FileSink(const char* path) : m_file(std::fopen(path, "wb")) {}
  ~FileSink() override {
    if (m_file) std::fclose(m_file);
  }
  bool write(const char* bytes, std::size_t count) override {
    return m_file && std::fwrite(bytes, 1, count, m_file) == count;
  }

 private:
  std::FILE* m_file;
};

}  // namespace

int main(int argc, char** argv) {
  const bool binary = argc > 1 && std::strcmp(argv[argc - 1], "--binary") == 0;
  const int given = argc - (binary ? 1 : 0);
  if (given < 2 || argv[1][0] == '-') {
    std::fputs("usage: make_big_dxf FILE [COUNT] [--binary]\n", stderr);
    return 2;
  }
  const long count = given > 2 ? std::strtol(argv[2], nullptr, 10) : 1'000'000;
  FileSink sink(argv[1]);
  gc::dxf::TagWriter out(sink, binary ? gc::dxf::FileForm::Binary16 : gc::dxf::FileForm::Ascii);
  gc::writeBigDrawing(out, count);
  if (!out.finish()) {
    std::fprintf(stderr, "cannot write %s\n", argv[1]);
    return 1;
  }
  std::printf("%ld entities, %.1f MB\n", count, static_cast<double>(out.bytesWritten()) / 1e6);
  return 0;
}

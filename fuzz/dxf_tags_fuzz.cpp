// Any bytes: the tag reader ends, stays within them, and what it reads is written and read again as the same tags.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/dxf/tags/tag_reader.h"
#include "host/dxf/tags/tag_writer.h"
#include "host/rx/text/drawing_text.h"

namespace {

using namespace gc::dxf;

void require(bool holds) {
  if (!holds) std::abort();
}

// Reads on over damage, as a whole-file reader would; writes what it reads in the same form.
// `clean` turns false when a value of an ASCII file holds a stray line end, which no file of the other line end can hold.
std::string rewrite(std::string_view file, bool& clean) {
  StringSink sink;
  TagReader reader(file);
  TagWriter writer(sink, reader.form());
  Tag tag;
  std::size_t last = 0;
  for (;;) {
    const ReadStatus status = reader.next(tag);
    if (status == ReadStatus::BadCode && reader.skipToRecord()) continue;
    if (status != ReadStatus::Tag) break;
    require(tag.offset >= last && tag.offset < file.size());
    last = tag.offset;
    if (!tag.isBinaryFile && tag.raw.find_first_of("\r\n") != std::string_view::npos) clean = false;
    double real;
    std::int64_t whole;
    std::uint64_t handle;
    std::string bytes;
    int readable = tag.real(real);
    readable += tag.integer(whole);
    readable += tag.handle(handle);
    readable += tag.bytes(bytes);
    const bool written = writer.writeTag(tag);
    require(written || tag.isBinaryFile || readable == 0);
  }
  require(writer.finish());
  return std::move(sink.text());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(data), size);
  bool clean = true;
  const std::string once = rewrite(file, clean);
  require(!clean || rewrite(once, clean) == once);
  GcText text, again;
  std::string bytes;
  for (const bool utf8 : {false, true}) {
    const gc::DrawingText codec(static_cast<gc::CodePage>(size % 2 ? 1250 : 932), utf8);
    codec.decode(file, text);
    bytes.clear();
    codec.encode(text, bytes);
    codec.decode(bytes, again);
    require(again == text.substr(0, text.find(GCHAR(0))));
  }
  return 0;
}

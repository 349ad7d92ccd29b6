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
std::string rewrite(std::string_view file) {
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
    double real;
    std::int64_t whole;
    std::uint64_t handle;
    std::string bytes;
    const bool any = tag.real(real) | tag.integer(whole) | tag.handle(handle) | tag.bytes(bytes);
    const bool written = writer.writeTag(tag);
    require(any || written || tag.isBinaryFile);
  }
  require(writer.finish());
  return std::move(sink.text());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(data), size);
  const std::string once = rewrite(file);
  require(rewrite(once) == once);
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

#include "host/dxf/tags/tag_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 18;  // stays in the second-level cache
constexpr std::size_t kTagRoom = 64;                       // more than any code, number and line ends take

// Codes as text, in three places or more; eight bytes each, so that one store writes a code.
struct CodeText {
  char text[7];
  std::uint8_t size;
};

constexpr std::array<CodeText, kLastGroupCode + 1> makeCodeTexts() {
  std::array<CodeText, kLastGroupCode + 1> texts{};
  for (int code = 0; code <= kLastGroupCode; ++code) {
    char digits[4]{};
    int count = 0;
    for (int rest = code; rest > 0 || count == 0; rest /= 10) digits[count++] = static_cast<char>('0' + rest % 10);
    CodeText& text = texts[code];
    for (int pad = count; pad < 3; ++pad) text.text[text.size++] = ' ';
    while (count > 0) text.text[text.size++] = digits[--count];
  }
  return texts;
}

constexpr std::array<CodeText, kLastGroupCode + 1> kCodeTexts = makeCodeTexts();

char* putHexByte(unsigned char byte, char* to) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  *to++ = kDigits[byte >> 4];
  *to++ = kDigits[byte & 15];
  return to;
}

int sizeOfInt(ValueKind kind) {
  switch (kind) {
    case ValueKind::Int16: return 2;
    case ValueKind::Int32: return 4;
    case ValueKind::Int64: return 8;
    case ValueKind::Bool: return 1;
    default: return 0;
  }
}

}  // namespace

TagWriter::TagWriter(ByteSink& sink, FileForm form, std::string_view lineEnd)
    : m_sink(sink),
      m_form(form),
      m_size(kBufferSize),
      m_buffer(new char[kBufferSize]),
      m_to(m_buffer.get()),
      m_limit(m_to + kBufferSize) {
  m_lineEndSize = lineEnd.size() == 2 ? 2 : 1;
  std::memcpy(m_lineEnd, lineEnd.size() == 2 ? "\r\n" : "\n", m_lineEndSize);
  if (form != FileForm::Ascii) {
    std::memcpy(m_to, kBinarySentinel, sizeof kBinarySentinel);
    m_to += sizeof kBinarySentinel;
  }
}

char* TagWriter::room(std::size_t count) {
  if (static_cast<std::size_t>(m_limit - m_to) >= count) return m_to;
  flush();
  if (count > m_size) {
    m_size = count;
    m_buffer.reset(new char[m_size]);
    m_to = m_buffer.get();
    m_limit = m_to + m_size;
  }
  return m_to;
}

void TagWriter::flush() {
  const auto count = static_cast<std::size_t>(m_to - m_buffer.get());
  if (count > 0 && !m_sinkFailed && !m_sink.write(m_buffer.get(), count)) m_sinkFailed = true;
  m_flushed += count;
  m_to = m_buffer.get();
}

bool TagWriter::finish() {
  flush();
  return !m_sinkFailed;
}

inline char* TagWriter::putLineEnd(char* to) const {
  to[0] = m_lineEnd[0];
  to[1] = m_lineEnd[1];
  return to + m_lineEndSize;
}

inline char* TagWriter::putCode(int code, char* to) {
  if (m_form == FileForm::Ascii) {
    if (code >= 0 && code <= kLastGroupCode) {
      const CodeText& text = kCodeTexts[code];
      std::memcpy(to, text.text, sizeof text.text);
      return putLineEnd(to + text.size);
    }
    return putLineEnd(formatInt(code, to));
  }
  if (m_form == FileForm::Binary8) {
    if (code < 255) {
      *to++ = static_cast<char>(code);
      return to;
    }
    *to++ = static_cast<char>(255);
  }
  *to++ = static_cast<char>(code & 0xFF);
  *to++ = static_cast<char>(code >> 8);
  return to;
}

// Whether a value of this kind may follow the code: only binary files cannot take every pair.
bool TagWriter::expect(int code, ValueKind kind) {
  if (m_form == FileForm::Ascii) return true;
  const ValueKind wanted = valueKind(code);
  const bool bothText = (wanted == ValueKind::String || wanted == ValueKind::Handle) &&
                        (kind == ValueKind::String || kind == ValueKind::Handle);
  const bool fits = code >= 0 && code <= kLastGroupCode && (wanted == kind || bothText);
  if (!fits) m_wellFormed = false;
  return fits;
}

void TagWriter::writeString(int code, std::string_view bytes) {
  if (!expect(code, ValueKind::String)) return;
  char* to = putCode(code, room(kTagRoom + bytes.size()));
  std::memcpy(to, bytes.data(), bytes.size());
  to += bytes.size();
  if (m_form == FileForm::Ascii) {
    m_to = putLineEnd(to);
  } else {
    *to = 0;
    m_to = to + 1;
  }
}

namespace {

// Numbers too large to have that many decimals stay as they are.
double rounded(double value, int decimals) {
  const double unit = std::pow(10.0, decimals);
  const double whole = std::round(value * unit);
  constexpr double kExact = 9007199254740992.0;  // 2^53
  return std::fabs(whole) < kExact ? whole / unit + 0.0 : value;
}

}  // namespace

void TagWriter::writeReal(int code, double value) {
  if (!expect(code, ValueKind::Real)) return;
  if (!std::isfinite(value)) {
    value = 0.0;
    m_wellFormed = false;
  }
  char* to = putCode(code, room(kTagRoom));
  if (m_form == FileForm::Ascii) {
    if (m_decimals < kAllDecimals) value = rounded(value, m_decimals);
    m_to = putLineEnd(formatReal(value, to));
  } else {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    for (int i = 0; i < 8; ++i) to[i] = static_cast<char>(bits >> 8 * i);
    m_to = to + 8;
  }
}

void TagWriter::writePoint(int code, double x, double y) {
  writeReal(code, x);
  writeReal(code + 10, y);
}

void TagWriter::writePoint(int code, double x, double y, double z) {
  writePoint(code, x, y);
  writeReal(code + 20, z);
}

void TagWriter::writeInt(int code, std::int64_t value) {
  if (m_form == FileForm::Ascii) {
    m_to = putLineEnd(formatInt(value, putCode(code, room(kTagRoom))));
    return;
  }
  const int size = sizeOfInt(valueKind(code));
  if (size == 0 || code < 0 || code > kLastGroupCode) {
    m_wellFormed = false;
    return;
  }
  char* to = putCode(code, room(kTagRoom));
  for (int i = 0; i < size; ++i) *to++ = static_cast<char>(static_cast<std::uint64_t>(value) >> 8 * i);
  m_to = to;
}

void TagWriter::writeHandle(int code, std::uint64_t handle) {
  if (!expect(code, ValueKind::Handle)) return;
  char* to = formatHex(handle, putCode(code, room(kTagRoom)));
  if (m_form == FileForm::Ascii) {
    m_to = putLineEnd(to);
  } else {
    *to = 0;
    m_to = to + 1;
  }
}

void TagWriter::writeBinary(int code, std::string_view bytes) {
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kMaxChunk))) {
    writeChunk(code, bytes.substr(0, kMaxChunk));
  }
}

void TagWriter::writeChunk(int code, std::string_view bytes) {
  if (!expect(code, ValueKind::Binary)) return;
  if (m_form == FileForm::Ascii) {
    char* to = putCode(code, room(kTagRoom + 2 * bytes.size()));
    for (const char byte : bytes) to = putHexByte(static_cast<unsigned char>(byte), to);
    m_to = putLineEnd(to);
    return;
  }
  if (bytes.size() > kMaxBinaryChunk) {
    m_wellFormed = false;
    return;
  }
  char* to = putCode(code, room(kTagRoom + bytes.size()));
  *to++ = static_cast<char>(bytes.size());
  std::memcpy(to, bytes.data(), bytes.size());
  m_to = to + bytes.size();
}

bool TagWriter::writeTag(const Tag& tag) {
  const bool sameForm = tag.isBinaryFile == (m_form != FileForm::Ascii);
  if (!tag.isBinaryFile && sameForm) {
    writeString(tag.code, tag.raw);
    return true;
  }
  double real = 0.0;
  std::int64_t whole = 0;
  std::string bytes;
  switch (tag.kind) {
    case ValueKind::String:
    case ValueKind::Handle: writeString(tag.code, tag.raw); return true;
    case ValueKind::Real:
      if (!tag.real(real)) return false;
      writeReal(tag.code, real);
      return true;
    case ValueKind::Binary:
      if (!tag.bytes(bytes)) return false;
      if (bytes.size() > kMaxBinaryChunk && m_form != FileForm::Ascii) {
        writeBinary(tag.code, bytes);
      } else {
        writeChunk(tag.code, bytes);
      }
      return true;
    default:
      if (!tag.integer(whole)) return false;
      writeInt(tag.code, whole);
      return true;
  }
}

}  // namespace gc::dxf

// Regions, solids and bodies.
#include <algorithm>
#include <cstdio>
#include <string>

#include "host/db/entities/modeler_text.h"
#include "host/dwg/packing/modelerpass.h"
#include "host/rx/text/number.h"

namespace gc::dwg::packing {

namespace {

std::string joined(const GcArray<GcDbModelerLine>& lines) {
  std::string text;
  for (const GcDbModelerLine& line : lines) {
    text += toUtf8(view(line.text));
    for (const GcString& more : line.more) text += toUtf8(view(more));
    text += '\n';
  }
  return text;
}

void split(const std::string& text, GcArray<GcDbModelerLine>& lines) {
  constexpr size_t kMostCharacters = 255;
  lines.clear();
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    GcText line = fromUtf8(text.substr(at, end - at));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    GcDbModelerLine element;
    element.text = GcString(line.c_str(), std::min(line.size(), kMostCharacters));
    for (size_t from = kMostCharacters; from < line.size(); from += kMostCharacters)
      element.more.append(GcString(line.c_str() + from, std::min(line.size() - from, kMostCharacters)));
    lines.append(std::move(element));
    at = end + 1;
  }
}

}  // namespace

void passModelerText(RecordIn& record, GcArray<GcDbModelerLine>& lines) {
  std::string text;
  while (!record.failed()) {
    const int size = record.count(record.bl(0), 8);
    if (size == 0) break;
    const size_t at = text.size();
    text.resize(at + static_cast<size_t>(size));
    record.data.bytes(reinterpret_cast<uint8_t*>(text.data() + at), static_cast<size_t>(size));
  }
  split(text, lines);
}

void passModelerText(RecordOut& record, const GcArray<GcDbModelerLine>& lines) {
  constexpr size_t kMostInBlock = 4096;
  const std::string text = joined(lines);
  for (size_t at = 0; at < text.size(); at += kMostInBlock) {
    const size_t size = std::min(text.size() - at, kMostInBlock);
    record.bl(static_cast<int32_t>(size));
    record.data.bytes({reinterpret_cast<const uint8_t*>(text.data()) + at, size});
  }
  record.bl(0);
}

void passModelerBytes(RecordIn& record, GcArray<uint8_t>& bytes) {
  BitReader ahead = record.data;
  std::string rest(ahead.remaining() / 8, '\0');
  ahead.bytes(reinterpret_cast<uint8_t*>(rest.data()), rest.size());
  const size_t size = gcmodeler::binarySize(rest);
  if (size == 0) return record.fail();
  record.data.skip(uint64_t{8} * size);
  bytes.setLogicalLength(static_cast<int>(size));
  std::copy_n(rest.begin(), size, bytes.begin());
}

void passModelerBytes(RecordOut& record, const GcArray<uint8_t>& bytes) {
  record.data.bytes({bytes.begin(), static_cast<size_t>(bytes.length())});
}

bool goesAsBytes(const GcDbModelerParts& body, int version) {
  const std::string_view bytes = gcmodeler::viewOf(body.bytes);
  if (gcmodeler::binarySize(bytes) != bytes.size() || bytes.empty()) return false;
  if (body.lines.isEmpty() || version >= kR2013) return true;
  constexpr int kOf2004 = 20800, kOf2007 = 21200, kOf2010 = 21500;
  const int known = version < kR2004 ? 0 : version < kR2007 ? kOf2004 : version < kR2010 ? kOf2007 : kOf2010;
  return gcmodeler::binaryVersion(bytes) <= known;
}

// ---- pictures --------------------------------------------------------------------------------------------

namespace {

class PictureCopy {
 public:
  PictureCopy(BitReader& from, PictureForm fromForm, BitWriter& to, PictureForm toForm)
      : m_from(from), m_to(to), m_fromForm(fromForm), m_toForm(toForm) {}

  bool run() {
    if (!b()) return !m_from.failed();
    if (b()) bd3();
    bl();  // isolines
    if (b()) {
      wires();
      silhouettes();
    } else if (m_fromForm.silhouettesAnyway || m_toForm.silhouettesAnyway) {
      const int32_t count = m_fromForm.silhouettesAnyway ? m_from.bl() : 0;
      if (count != 0) m_from.fail();
      if (m_toForm.silhouettesAnyway) m_to.bl(0);
    }
    return !m_from.failed();
  }

 private:
  bool b() {
    const bool value = m_from.b();
    m_to.b(value);
    return value;
  }
  int32_t bl() {
    const int32_t value = m_from.bl();
    m_to.bl(value);
    return value;
  }
  void bd3() { m_to.bd3(m_from.bd3()); }
  // A count of elements of at least so many bits.
  int count(unsigned leastBits) {
    const int32_t value = bl();
    if (value >= 0 && static_cast<uint64_t>(value) * leastBits <= m_from.remaining()) return value;
    m_from.fail();
    return 0;
  }

  void color() {
    constexpr int kMostShort = 0x7FFF;
    const int32_t value = m_fromForm.shortColors ? m_from.bs() : m_from.bl();
    if (!m_toForm.shortColors)
      m_to.bl(value);
    else
      m_to.bs(value >= 0 && value <= kMostShort ? value : 256);
  }

  void wires() {
    constexpr unsigned kLeastWire = 17, kLeastPoint = 6;
    for (int i = count(kLeastWire); i > 0 && !m_from.failed(); --i) {
      m_to.rc(m_from.rc());
      bl();  // what it is for selection
      color();
      bl();  // what it is for the modeller
      for (int p = count(kLeastPoint); p > 0; --p) bd3();
      if (!b()) continue;
      for (int axis = 0; axis < 4; ++axis) bd3();
      m_to.bd(m_from.bd());
      for (int flag = 0; flag < 3; ++flag) b();
    }
  }

  void silhouettes() {
    constexpr unsigned kLeastSilhouette = 22;
    for (int i = count(kLeastSilhouette); i > 0 && !m_from.failed(); --i) {
      bl();  // viewport
      for (int p = 0; p < 3; ++p) bd3();
      b();  // in perspective
      if (b()) wires();
    }
  }

  BitReader& m_from;
  BitWriter& m_to;
  PictureForm m_fromForm, m_toForm;
};

constexpr PictureForm kKept;

}  // namespace

bool copyPicture(BitReader& from, PictureForm fromForm, BitWriter& to, PictureForm toForm) {
  return PictureCopy(from, fromForm, to, toForm).run();
}

// A picture is kept as the bits of a record of today.
void passPicture(RecordIn& record, GcArray<uint8_t>& picture) {
  BitReader ahead = record.data;
  const bool has = ahead.b();
  BitWriter copy;
  if (!copyPicture(record.data, PictureForm::of(record.version()), copy, kKept)) return record.fail();
  picture.clear();
  if (!has) return;
  for (const uint8_t byte : copy.whole()) picture.append(byte);
}

void passPicture(RecordOut& record, const GcArray<uint8_t>& picture) {
  BitReader kept({picture.begin(), static_cast<size_t>(picture.length())});
  BitWriter copy;
  if (!picture.isEmpty() && copyPicture(kept, kKept, copy, PictureForm::of(record.version())))
    record.data.append(copy);
  else
    record.data.b(false);
}

// ---- revisions -------------------------------------------------------------------------------------------

RevisionNumber RevisionNumber::of(GcView text) {
  constexpr size_t kLetters = 38;
  RevisionNumber number;
  std::string digits;
  for (const GCHAR c : text)
    if (c != '{' && c != '-' && c != '}') digits += c < 128 ? static_cast<char>(c) : '?';
  uint64_t high = 0, low = 0;
  const bool isOne = text.size() == kLetters && digits.size() == 32 && parseHex(digits.substr(0, 16), high) &&
                     parseHex(digits.substr(16), low);
  if (!isOne) return number;
  number.first = static_cast<uint32_t>(high >> 32);
  number.second = static_cast<uint16_t>(high >> 16);
  number.third = static_cast<uint16_t>(high);
  for (int i = 0; i < 8; ++i) number.rest[i] = static_cast<uint8_t>(low >> (56 - 8 * i));
  return number;
}

GcString RevisionNumber::text() const {
  constexpr size_t kRoom = 40;
  char made[kRoom];
  std::snprintf(made, kRoom, "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}", first, second, third, rest[0],
                rest[1], rest[2], rest[3], rest[4], rest[5], rest[6], rest[7]);
  const bool isNone = first == 0 && second == 0 && third == 0 &&
                      std::all_of(std::begin(rest), std::end(rest), [](uint8_t byte) { return byte == 0; });
  return isNone ? GcString() : toGcString(fromUtf8(made));
}

}  // namespace gc::dwg::packing

template <>
struct GcDbRecordOf<GcDbRegion> {
  template <class Pass>
  static void pass(Pass& pass, GcDbRegion& region) {
    gc::dwg::packing::passBody(pass, GcDbModelerParts::of(region));
    if constexpr (!Pass::kWriting) measure(region);
  }

 private:
  // A region is measured by its text, which the bytes say as well.
  static void measure(GcDbRegion& region) {
    const GcDbModelerParts body = GcDbModelerParts::of(region);
    if (body.bytes.isEmpty()) return;
    const GcArray<uint8_t> bytes = body.bytes;
    ignore(region.setBytes(bytes));
  }
};

template <>
struct GcDbRecordOf<GcDbBody> {
  template <class Pass>
  static void pass(Pass& pass, GcDbBody& body) {
    gc::dwg::packing::passBody(pass, GcDbModelerParts::of(body));
  }
};

template <>
struct GcDbRecordOf<GcDb3dSolid> {
  template <class Pass>
  static void pass(Pass& pass, GcDb3dSolid& solid) {
    gc::dwg::packing::passBody(pass, GcDbModelerParts::of(solid));
    if (pass.version() >= gc::dwg::kR2007) pass.h(3, solid.m_history);
  }
};

namespace gc::dwg::packing {

void addModelers(std::vector<ClassPacking>& list) {
  list.push_back(Passed<GcDbRegion>::named("AcDbRegion"));
  list.push_back(Passed<GcDbBody>::named("AcDbBody"));
  list.push_back(Passed<GcDb3dSolid>::named("AcDb3dSolid"));
}

}  // namespace gc::dwg::packing

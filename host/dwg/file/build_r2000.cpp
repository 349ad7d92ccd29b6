// The flat file of AC1015: header with the places of the sections, settings, classes, records, object map, free space,
// measurement, second header, preview.
#include "host/db/core/dwgversion.h"
#include "host/dwg/bits/bitwriter.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytewriter.h"
#include "host/dwg/file/contents.h"
#include "host/dwg/file/sectionframe.h"

namespace gc::dwg {

namespace {

constexpr int kSectionCount = 6;
constexpr uint16_t kLocatorMask = 0x8461;  // for six sections
constexpr Sentinel kHeaderEnd = {0x95, 0xA0, 0x4E, 0x28, 0x99, 0x82, 0x1A, 0xE5,
                                 0x5E, 0x41, 0xE0, 0x5F, 0x9D, 0x3A, 0x4D, 0x00};

struct Place {
  uint32_t at = 0;
  uint32_t size = 0;
};

class Builder {
 public:
  Builder(RecordContext& context, const WritePlan& plan, FileContents& contents)
      : m_context(context), m_plan(plan), m_contents(contents) {}

  std::vector<uint8_t> run() {
    constexpr uint64_t kLocatorsSize = kSectionCount * 9 + 2 + 16;
    m_out.zeros(kFirstLocator + kLocatorsSize);
    m_places[5] = append(auxiliarySection(m_context, m_contents));
    m_previewAt = m_out.size();
    append(previewSection(m_context, m_previewAt));
    m_places[0] = append(m_contents.header);
    m_places[1] = append(m_contents.classes);
    const uint64_t objectsAt = m_out.size();
    appendRecords(m_context, m_plan, m_contents, m_out.bytes);
    m_places[2] = append(writeObjectMap(m_contents.map));
    m_places[3] = append(freeSpaceSection(m_context, m_contents, static_cast<uint32_t>(objectsAt)));
    m_places[4] = append(templateSection(m_context));
    append(secondHeader());
    writeHead();
    return std::move(m_out.bytes);
  }

 private:
  static constexpr uint64_t kFirstLocator = 25;

  Place append(const std::vector<uint8_t>& bytes) {
    const Place place{static_cast<uint32_t>(m_out.size()), static_cast<uint32_t>(bytes.size())};
    m_out.append(bytes);
    return place;
  }

  void putVersion(ByteWriter& head) const {
    for (const char c : {'A', 'C', '1', '0', '1', '5'}) head.u8(static_cast<unsigned char>(c));
    head.zeros(5);
    head.u8(0);
    head.u8(1);
  }

  void writeHead() {
    ByteWriter head;
    putVersion(head);
    head.u32(static_cast<uint32_t>(m_previewAt));
    head.u8(static_cast<unsigned>(gcdbDwgNumberOfVersion(kR2000)));
    head.u8(0);
    head.u16(static_cast<unsigned>(m_contents.codePageNumber));
    head.u32(kSectionCount);
    for (int i = 0; i < kSectionCount; ++i) {
      head.u8(static_cast<unsigned>(i));
      head.u32(m_places[i].at);
      head.u32(m_places[i].size);
    }
    head.u16(crc16(head.bytes, 0) ^ kLocatorMask);
    head.append(kHeaderEnd);
    std::copy(head.bytes.begin(), head.bytes.end(), m_out.bytes.begin());
  }

  // Repeats what the file cannot do without.
  std::vector<uint8_t> secondHeader() {
    BitWriter body;
    const auto address = static_cast<uint32_t>(m_out.size());
    body.rl(0);  // the size, known at the end
    body.bl(static_cast<int32_t>(address));
    ByteWriter version;
    putVersion(version);
    body.bytes(std::span<const uint8_t>(version.bytes).first(11));
    body.rc(0);  // maintenance release
    body.rc(1);
    body.bs(gcdbDwgNumberOfVersion(kR2000));
    body.rs(static_cast<unsigned>(m_contents.codePageNumber));
    body.bs(kSectionCount);
    for (int i = 0; i < kSectionCount; ++i) {
      body.rc(static_cast<unsigned>(i));
      body.bl(static_cast<int32_t>(m_places[i].at));
      body.bl(static_cast<int32_t>(m_places[i].size));
    }
    body.bs(static_cast<int>(m_contents.pointedOut.size()));
    for (size_t i = 0; i < m_contents.pointedOut.size(); ++i) putHandle(body, i, m_contents.pointedOut[i]);
    body.alignToByte();
    const uint64_t size = body.position() / 8 + 2;  // with the checksum
    constexpr uint64_t kBehind = 8;                 // what follows the checksum
    body.patchRl(0, static_cast<uint32_t>(size + kBehind));
    const std::vector<uint8_t> bytes = body.take();
    ByteWriter out;
    out.append(kSecondHeaderBegin);
    out.append(bytes);
    out.u16(crc16(bytes, kCrcSeed));
    out.zeros(kBehind);
    out.append(closing(kSecondHeaderBegin));
    return std::move(out.bytes);
  }

  static void putHandle(BitWriter& body, size_t index, uint64_t handle) {
    unsigned count = 0;
    while (count < 8 && handle >> (8 * count) != 0) ++count;
    body.rc(count);
    body.rc(static_cast<unsigned>(index));
    for (unsigned i = count; i > 0; --i) body.rc(static_cast<unsigned>(handle >> (8 * (i - 1))) & 0xFFu);
  }

  RecordContext& m_context;
  const WritePlan& m_plan;
  FileContents& m_contents;
  ByteWriter m_out;
  Place m_places[kSectionCount];
  uint64_t m_previewAt = 0;
};

}  // namespace

std::vector<uint8_t> buildR2000(RecordContext& context, const WritePlan& plan, FileContents& contents) {
  return Builder(context, plan, contents).run();
}

}  // namespace gc::dwg

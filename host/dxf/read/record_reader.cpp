#include "host/dxf/read/record_reader.h"

#include "host/db/core/fileparts.h"

namespace gc::dxf {

const Tag* RawRecord::findHead(int code) const {
  for (const Tag& tag : tags) {
    if (tag.code == code) return &tag;
    if (tag.code == 100 || tag.code == 1001) break;
  }
  return nullptr;
}

const Tag* RawRecord::find(int code) const {
  for (const Tag& tag : tags) {
    if (tag.code == code) return &tag;
  }
  return nullptr;
}

void RecordReader::keepComment(const Tag& tag) {
  GcText text;
  (void)m_context.text.decode(tag.raw, text);
  m_context.database.fileParts().comments.push_back(toGcString(text));
}

// Passes over what stands before a group 0.
bool RecordReader::findStart(RawRecord& record) {
  Tag tag;
  std::size_t strays = 0;
  for (;;) {
    const ReadStatus status = m_context.reader.next(tag);
    if (status == ReadStatus::End) return false;
    if (status == ReadStatus::Truncated) {
      m_context.report(GcDbLoadAction::Missing, m_context.reader.errorOffset(), 0, "the file ends within a group");
      return false;
    }
    if (status == ReadStatus::BadCode) {
      m_context.report(GcDbLoadAction::Skipped, m_context.reader.errorOffset(), 0,
                       "no group code where one should stand: everything up to the next record");
      if (!m_context.reader.skipToRecord()) return false;
      continue;
    }
    if (tag.code == 0) break;
    if (tag.code == kCommentCode) {
      keepComment(tag);
    } else if (strays++ == 0) {
      m_context.report(GcDbLoadAction::Skipped, tag.offset, 0, "groups that belong to no record");
    }
  }
  record.type = tag.word();
  record.offset = tag.offset;
  return true;
}

// A text with a line end in it leaves a line that is no group code. True when passing over that line leads back to
// groups: the next two are well-formed, or the record ends.
bool RecordReader::passLine() {
  const std::size_t damage = m_context.reader.offset();
  if (!m_context.reader.skipLine()) return false;
  const std::size_t behind = m_context.reader.offset();
  Tag tag;
  for (int i = 0; i < 2; ++i) {
    double number;
    const bool isTag = m_context.reader.next(tag) == ReadStatus::Tag && tag.code >= 0 && tag.code <= kLastGroupCode;
    if (!isTag || (tag.kind == ValueKind::Real && !tag.real(number))) {
      m_context.reader.moveTo(damage);
      return false;
    }
    if (tag.code == 0) break;
  }
  m_context.reader.moveTo(behind);
  m_context.report(GcDbLoadAction::Skipped, damage, 0, "a line that is no group code (a line end within a text?)");
  return true;
}

void RecordReader::readTags(RawRecord& record) {
  Tag tag;
  for (;;) {
    const ReadStatus status = m_context.reader.next(tag);
    if (status == ReadStatus::BadCode && passLine()) continue;
    if (status != ReadStatus::Tag) {
      record.isCut = true;  // told again, and reported, when the next record is looked for
      return;
    }
    if (tag.code == 0) {
      m_context.reader.pushBack();
      return;
    }
    record.tags.push_back(tag);
  }
}

bool RecordReader::next(RawRecord& record) {
  record.tags.clear();
  record.isCut = false;
  if (!findStart(record)) return false;
  if (record.type == "EOF") return true;
  readTags(record);
  if (record.type == "ENDSEC" || record.type == "ENDTAB") {
    record.isCut = false;
    for (const Tag& tag : record.tags) {
      if (tag.code == kCommentCode) keepComment(tag);
    }
  }
  return true;
}

}  // namespace gc::dxf

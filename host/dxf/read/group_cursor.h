// The tags of a record as the groups objects understand: points whole, text decoded, references as ids, angles (codes
// 50 to 58) in radians. Values that are damaged are reported and read as zero.
#pragma once

#include <span>

#include "host/db/describe/group.h"
#include "host/dxf/read/load_context.h"

namespace gc::dxf {

class GroupCursor {
 public:
  // The tags must outlive the cursor. `handle` is for reports.
  GroupCursor(const LoadContext& context, std::span<const Tag> tags) : m_context(context), m_tags(tags) {}

  // The text and the bytes of a group are valid until the next call.
  bool next(GcDbGroup& group);

  // What stands next; null at the end.
  [[nodiscard]] const Tag* peek() const { return m_at < m_tags.size() ? &m_tags[m_at] : nullptr; }

  // Index of the tag that comes next.
  [[nodiscard]] std::size_t position() const { return m_at; }
  void seek(std::size_t position) { m_at = position; }

  // The object's handle, for reports.
  void setHandle(std::uint64_t handle) { m_handle = handle; }

  // Dimension styles of old files have the name of a block where others have their handle.
  void setNameInGroup5() { m_nameInGroup5 = true; }

 private:
  void readText(const Tag& tag, GcDbGroup& group);
  // The value of a handle; a text that is none is kept as a text.
  std::uint64_t handleOf(const Tag& tag, GcDbGroup& group);
  void readPoint(const Tag& tag, GcDbGroup& group);
  double realOf(const Tag& tag) const;
  std::int64_t integerOf(const Tag& tag) const;
  void damaged(const Tag& tag, const char* what, GcDbLoadAction action = GcDbLoadAction::Repaired) const;

  const LoadContext& m_context;
  std::span<const Tag> m_tags;
  std::size_t m_at = 0;
  std::uint64_t m_handle = 0;
  bool m_nameInGroup5 = false;
  GcText m_text;
  std::string m_bytes;
};

}  // namespace gc::dxf

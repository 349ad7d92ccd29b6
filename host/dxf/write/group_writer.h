// Groups of objects as tags of a file: points taken apart, text encoded, references as handles, angles in degrees.
#pragma once

#include "host/db/describe/group.h"
#include "host/dxf/tags/tag_writer.h"
#include "host/rx/text/drawing_text.h"

namespace gc::dxf {

class GroupWriter final : public GcDbGroupSink {
 public:
  GroupWriter(TagWriter& tags, const DrawingText& text, int version) : m_tags(tags), m_text(text), m_version(version) {}

  void put(const GcDbGroup& group) override;
  void put(const GcDbGroupList& groups);
  void putText(int code, GcView text);
  void putHandle(int code, GcDbObjectId id);  // of an erased object: 0

  [[nodiscard]] TagWriter& tags() { return m_tags; }
  [[nodiscard]] int version() const { return m_version; }

 private:
  TagWriter& m_tags;
  DrawingText m_text;
  int m_version;
  std::string m_encoded;
};

}  // namespace gc::dxf

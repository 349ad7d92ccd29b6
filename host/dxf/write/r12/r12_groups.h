// The groups that records of R12 have, and the groups of an object passed through them: what R12 lacks stays behind,
// names are those of R12.
#pragma once

#include <string>
#include <string_view>

#include "host/db/core/extra.h"
#include "host/dxf/write/group_writer.h"
#include "host/dxf/write/r12/r12_names.h"

namespace gc::dxf {

// True for the entities R12 has ("LINE", "BLOCK", "VERTEX" ...).
[[nodiscard]] bool isR12Entity(std::string_view type);

class R12Groups final : public GcDbGroupSink {
 public:
  // `type`: of the record, an entity's or a table's. `keepsUnknown`: groups R12 is not known to have pass as well.
  R12Groups(GroupWriter& out, const R12Names& names, std::string_view type, bool keepsUnknown = false);

  void put(const GcDbGroup& group) override;
  void put(const GcDbGroupList& groups);

  // What stayed behind: "linetype scale (48), 91"; empty when nothing did.
  [[nodiscard]] const std::string& dropped() const { return m_dropped; }

 private:
  [[nodiscard]] bool isKnown(int code) const;

  GroupWriter& m_out;
  const R12Names& m_names;
  std::string_view m_type;
  bool m_keepsUnknown;
  bool m_inEmbedded = false;
  std::string m_dropped;
};

// Extended data with the names of R12.
void putR12XData(GroupWriter& out, const R12Names& names, const GcDbGroupList& xdata);

}  // namespace gc::dxf

// Proxies: how a DXF file carries objects that are known only by the bits of a DWG record. Their class is named by its
// number, which is 500 and its place among the file's classes, or the fixed type of the record.
#pragma once

#include <vector>

#include "host/db/core/fileparts.h"
#include "host/db/objects/zombiedata.h"
#include "host/dxf/write/group_writer.h"
#include "host/rx/view.h"

namespace gc::dxf {

inline constexpr GcView kProxyEntityType = GC_T("ACAD_PROXY_ENTITY");
inline constexpr GcView kProxyObjectType = GC_T("ACAD_PROXY_OBJECT");

// The number of the first of a file's classes.
inline constexpr int kFirstClassNumber = 500;

// Whether a zombie can be written as a proxy only.
[[nodiscard]] inline bool isProxied(const GcDbZombieData& data) { return data.version != 0; }

// The groups of the proxy's own subclass. `classNumber`: of the zombie's class, 0 when the file does not describe it.
void writeProxy(GroupWriter& out, const GcDbZombieData& data, bool isEntity, int classNumber);

// Makes of a proxy, read as a zombie with groups, what it stands for: a zombie of its own class with its bits, or, when
// the groups say too little (the data are those of a DXF file, the version or the class is not named, bits are
// missing), leaves it the proxy it is. `classes`: those of the file, in its order.
bool unwrapProxy(GcDbZombieData& data, const std::vector<GcDbClassRecord>& classes);

}  // namespace gc::dxf

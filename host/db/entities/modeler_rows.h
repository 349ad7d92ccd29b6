// What regions, solids and surfaces have in common in files: lines of a modeller's text, the bytes that stand for them,
// a picture of the edges, the number of the revision.
#pragma once

#include "db/region.h"
#include "host/db/describe/field.h"
#include "host/rx/view.h"

namespace gcmodeler {

inline constexpr GcDbField kLineFields[] = {
    field<&GcDbModelerLine::text>(1, "text", Is::Plain),
    list<&GcDbModelerLine::more, 3>(-1, "more"),
};

// Files from 2013 on name the revision of a body; most have none.
inline constexpr GcView kNoRevision = GC_T("{00000000-0000-0000-0000-000000000000}");
inline constexpr int kRevisionCode = 2;

// The name of a body's revision in files and back; `Member` is empty for none.
template <auto Member>
struct RevisionFiling {
  using Class = typename gcdescribe::MemberOf<decltype(Member)>::Class;
  static GcDbGroup get(const void* record) {
    const GcString& id = static_cast<const Class*>(record)->*Member;
    return GcDbGroup::ofText(kRevisionCode, id.isEmpty() ? kNoRevision : view(id));
  }
  static bool set(void* record, const GcDbGroup& group) {
    if (group.kind != GcDbGroupKind::Text) return false;
    static_cast<Class*>(record)->*Member = group.text == kNoRevision ? GcString() : toGcString(group.text);
    return true;
  }
};

// The text that lines in a file stand for, deciphered.
std::string textOf(const GcArray<GcDbModelerLine>& lines);
// The lines of a text that is not enciphered.
GcArray<GcDbModelerLine> linesOf(const std::vector<std::string>& text);

// Parts of a body that copies of the object in memory have and groups have not.
constexpr GcDbField notInGroups(GcDbField row) {
  row.write = Write::Never;
  return row;
}

}  // namespace gcmodeler

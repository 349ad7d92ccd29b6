// System variables and entries of the profile.
#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ap/profile.h"
#include "host/ed/editor.h"
#include "rx/gcheap.h"

namespace {

ed::Editor* editor() {
  const ap::Document* document = ap::currentDocument();
  return document == nullptr ? nullptr : &ed::editorOf(*document);
}

void putPoint(const ed::VariableValue& from, resbuf& to) {
  for (int i = 0; i < 3; ++i) to.resval.rpoint[i] = from.point[i];
}

bool toNode(const ed::VariableValue& from, resbuf& to) {
  to = resbuf{};
  switch (from.kind) {
    case ed::VariableKind::Integer: {
      const bool fits = from.integer >= INT16_MIN && from.integer <= INT16_MAX;
      to.restype = fits ? RTSHORT : RTLONG;
      if (fits)
        to.resval.rint = static_cast<short>(from.integer);
      else
        to.resval.rlong = from.integer;
      return true;
    }
    case ed::VariableKind::Real:
      to.restype = RTREAL;
      to.resval.rreal = from.real;
      return true;
    case ed::VariableKind::Text:
      to.restype = RTSTR;
      return gcutNewString(from.text.c_str(), to.resval.rstring) == Gcad::eOk;
    case ed::VariableKind::Point2d:
      to.restype = RTPOINT;
      putPoint(from, to);
      return true;
    case ed::VariableKind::Point3d:
      to.restype = RT3DPOINT;
      putPoint(from, to);
      return true;
  }
  return false;
}

bool fromNode(const resbuf& from, ed::VariableValue& to) {
  switch (from.restype) {
    case RTSHORT: to = ed::VariableValue::of(static_cast<int32_t>(from.resval.rint)); return true;
    case RTLONG: to = ed::VariableValue::of(from.resval.rlong); return true;
    case RTREAL:
    case RTANG: to = ed::VariableValue::of(from.resval.rreal); return true;
    case RTSTR: to = ed::VariableValue::of(view(from.resval.rstring)); return true;
    case RTPOINT:
    case RT3DPOINT:
      to = ed::VariableValue::ofPoint(from.resval.rpoint[0], from.resval.rpoint[1], from.resval.rpoint[2]);
      return true;
    default: return false;
  }
}

}  // namespace

int gcedGetVar(const GCHAR* name, resbuf* value) {
  ed::Editor* current = editor();
  ed::VariableValue found;
  if (current == nullptr || name == nullptr || value == nullptr) return RTERROR;
  return ed::getVariable(*current, name, found) && toNode(found, *value) ? RTNORM : RTERROR;
}

int gcedSetVar(const GCHAR* name, const resbuf* value) {
  ed::Editor* current = editor();
  ed::VariableValue wanted;
  if (current == nullptr || name == nullptr || value == nullptr || !fromNode(*value, wanted)) return RTERROR;
  return ed::setVariable(*current, name, wanted) == ed::VariableStatus::Done ? RTNORM : RTERROR;
}

int gcedGetEnv(const GCHAR* name, GcString& value) {
  GcText text;
  if (name == nullptr || !ap::profileEntry(name, text)) return RTERROR;
  value = toGcString(text);
  return RTNORM;
}

int gcedSetEnv(const GCHAR* name, const GCHAR* value) {
  if (name == nullptr || *name == 0 || value == nullptr) return RTERROR;
  ap::setProfileEntry(name, value);
  return RTNORM;
}

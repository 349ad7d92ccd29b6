#include "module/ldata/ldatatext.h"

#include <string>
#include <vector>

#include "module/app/rbchain.h"
#include "module/ldata/kelvl.h"

namespace {

using Text = std::basic_string<GCHAR>;

constexpr int kRealGroup = 40;
constexpr int kTextGroup = 300;

constexpr const GCHAR* kForeignClass = GC_T("vlo_VL");

void replaceAll(Text& text, const GcString& what, const GcString& by) {
  for (std::size_t at = 0; (at = text.find(what.c_str(), at, what.length())) != Text::npos; at += by.length())
    text.replace(at, what.length(), by.c_str(), by.length());
}

// Deliberate: reals are counted backwards, and only those before the text.
GcString foreignText(const GcDbObject& object) {
  gds_name name = {};
  if (gcdbGetGdsName(name, object.objectId()) != Gcad::eOk) return {};
  const RbChain groups(gcdbEntGet(name));
  std::vector<double> reals;
  const resbuf* rb = groups.head();
  for (; rb != nullptr && rb->restype != kTextGroup; rb = rb->rbnext)
    if (rb->restype == kRealGroup) reals.push_back(rb->resval.rreal);
  if (rb == nullptr || rb->resval.rstring == nullptr) return {};

  Text text(rb->resval.rstring);
  GcString reference;
  GcString number;
  for (std::size_t i = 0; i < reals.size(); ++i) {
    gcutFormat(reference, GC_T("(&VLO-R . %d)"), static_cast<int>(i));
    gcutFormat(number, GC_T("%f"), reals[reals.size() - 1 - i]);
    replaceAll(text, reference, number);
  }
  return {text.c_str(), text.size()};
}

}  // namespace

LDataKind ldataKind(const GcDbObject& object) {
  const GcRxClass* type = object.isA();
  if (type == nullptr) return LDataKind::Other;
  if (object.isKindOf(CKel_VL::desc())) return LDataKind::Own;
  return GcString(type->name()) == GcString(kForeignClass) ? LDataKind::Foreign : LDataKind::Other;
}

GcString ldataText(const GcDbObject& object) {
  switch (ldataKind(object)) {
    case LDataKind::Own: {
      const GCHAR* text = nullptr;
      ignore(CKel_VL::cast(&object)->getLData(text));
      return text;
    }
    case LDataKind::Foreign: return foreignText(object);
    case LDataKind::Other: break;
  }
  return {};
}

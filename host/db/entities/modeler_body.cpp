#include "host/db/entities/modeler_body.h"

#include <algorithm>

#include "host/db/entities/modeler_move.h"
#include "host/db/entities/modeler_rows.h"
#include "host/db/entities/modeler_text.h"

GcDbModelerParts GcDbModelerParts::of(GcDbRegion& region) {
  return {region.m_lines, region.m_bytes, region.m_picture, region.m_historyId, region.m_hasHistory, nullptr};
}

GcDbModelerParts GcDbModelerParts::of(GcDbModelerGeometry& body) {
  return {body.m_lines, body.m_bytes, body.m_picture, body.m_revisionId, body.m_hasRevision, &body.m_second};
}

namespace gcmodeler {

bool hasBody(const GcDbObject& object) {
  return GcDbRegion::cast(&object) != nullptr || GcDbModelerGeometry::cast(&object) != nullptr;
}

bool hasText(const GcDbObject& object) {
  if (const auto* region = GcDbRegion::cast(&object)) return region->hasText();
  const auto* body = GcDbModelerGeometry::cast(&object);
  return body != nullptr && body->hasText();
}

Gcad::ErrorStatus getBytes(const GcDbObject& object, GcArray<uint8_t>& bytes) {
  if (const auto* region = GcDbRegion::cast(&object)) return region->getBytes(bytes);
  const auto* body = GcDbModelerGeometry::cast(&object);
  if (body == nullptr || body->bytes().isEmpty()) return Gcad::eNotApplicable;
  bytes = body->bytes();
  return Gcad::eOk;
}

Gcad::ErrorStatus setBytes(GcDbObject& object, const GcArray<uint8_t>& bytes) {
  if (auto* region = GcDbRegion::cast(&object)) return region->setBytes(bytes);
  auto* body = GcDbModelerGeometry::cast(&object);
  if (body == nullptr) return Gcad::eNotApplicable;
  body->setBytes(bytes);
  return Gcad::eOk;
}

bool moveBytes(GcArray<uint8_t>& bytes, const GcGeMatrix3d& transform) {
  if (bytes.isEmpty()) return true;
  std::string moved(viewOf(bytes));
  if (!moveBinary(moved, transform)) return false;
  bytes.setLogicalLength(static_cast<int>(moved.size()));
  std::copy(moved.begin(), moved.end(), bytes.begin());
  return true;
}

bool moveBody(GcArray<GcDbModelerLine>& lines, GcArray<uint8_t>& bytes, const GcGeMatrix3d& transform) {
  if (!lines.isEmpty()) {
    std::vector<std::string> text;
    for (const GcDbModelerLine& line : lines) {
      std::string& plain = text.emplace_back(cipher(toUtf8(view(line.text))));
      for (const GcString& more : line.more) plain += cipher(toUtf8(view(more)));
    }
    if (!moveText(text, transform)) return false;
    lines = linesOf(text);
  }
  return moveBytes(bytes, transform);
}

}  // namespace gcmodeler

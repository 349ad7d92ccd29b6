#include "module/app/argreader.h"

GcDbObjectId node::objectId(const resbuf& rb) {
  GcDbObjectId id;
  if (gcdbGetObjectId(id, rb.resval.rlname) != Gcad::eOk) id.setNull();
  return id;
}

int ArgReader::fail(const GCHAR* message, int status) {
  if (m_failed) return m_status;
  m_failed = true;
  m_status = status;
  if (message != nullptr) gcdbFail(message);
  return status;
}

// The next argument of any type; null after a fault. The empty call was answered by the constructor, so a missing
// argument is never the first one.
const resbuf* ArgReader::take() {
  if (m_failed) return nullptr;
  if (m_at == nullptr) {
    fail(m_rules.missing, RTERROR);
    return nullptr;
  }
  m_first = m_taken == nullptr;
  m_taken = m_at;
  m_at = m_at->rbnext;
  return m_taken;
}

const resbuf* ArgReader::take(int type) {
  const resbuf* rb = take();
  if (rb == nullptr || rb->restype == type) return rb;
  failType();
  return nullptr;
}

const resbuf* ArgReader::any() { return take(); }

const resbuf* ArgReader::entityNode() { return take(RTENAME); }

GcDbObjectId ArgReader::entityName() {
  const resbuf* rb = take(RTENAME);
  return rb != nullptr ? node::objectId(*rb) : GcDbObjectId::kNull;
}

double ArgReader::real() {
  const resbuf* rb = take(RTREAL);
  return rb != nullptr ? rb->resval.rreal : 0.0;
}

double ArgReader::number() {
  const resbuf* rb = take();
  if (rb == nullptr) return 0.0;
  if (node::isNumber(*rb)) return node::number(*rb);
  failType();
  return 0.0;
}

int16_t ArgReader::integer() {
  const resbuf* rb = take(RTSHORT);
  return rb != nullptr ? rb->resval.rint : int16_t{0};
}

const GCHAR* ArgReader::string() {
  const resbuf* rb = take(RTSTR);
  return rb != nullptr ? node::text(*rb) : GC_T("");
}

GcGePoint3d ArgReader::point() {
  const resbuf* rb = take();
  if (rb == nullptr) return {};
  if (node::isPoint(*rb)) return node::point(*rb);
  failType();
  return {};
}

bool ArgReader::flag() {
  const resbuf* rb = take();
  if (rb == nullptr) return false;
  if (rb->restype != RTT && rb->restype != RTNIL) failType();
  return rb->restype == RTT;
}

bool ArgReader::optionalFlag(bool absent) { return atEnd() ? absent : flag(); }

GcGePoint3d ArgReader::anyPoint() {
  const resbuf* rb = take();
  if (rb == nullptr) return {};
  if (node::isPoint(*rb)) return node::point(*rb);
  return {rb->restype == RTREAL ? rb->resval.rreal : 0.0, 0.0, 0.0};
}

GcGePoint3d ArgReader::pointOrOrigin() {
  const resbuf* rb = take();
  return rb != nullptr && node::isPoint(*rb) ? node::point(*rb) : GcGePoint3d();
}

const GCHAR* ArgReader::anyText() {
  const resbuf* rb = take();
  return rb != nullptr && rb->restype == RTSTR ? node::text(*rb) : GC_T("");
}

GcDbObjectId ArgReader::anyEntity() {
  const resbuf* rb = take();
  return rb != nullptr && rb->restype == RTENAME ? node::objectId(*rb) : GcDbObjectId::kNull;
}

void ArgReader::expectSingle() {
  if (!atEnd() && m_at->rbnext != nullptr) fail(m_rules.missing, RTERROR);
}

const GCHAR* ArgReader::onlyString() {
  expectSingle();
  return string();
}

#include "rx/resbuf.h"

#include <cstdarg>
#include <cstring>

#include "host/rx/view.h"
#include "rx/gcheap.h"

namespace {

// Nodes are recycled: a LISP call makes and drops a handful, a million times a second. Main thread only.
constexpr int kMostKept = 256;
resbuf* g_free = nullptr;
int g_kept = 0;

struct KindRange {
  int first, last;
  GcRbKind kind;
};

// Group codes of the drawing format and of LISP values, by range.
constexpr KindRange kRanges[] = {
    {-6, -5, GcRbKind::Name},       {-4, -4, GcRbKind::String},     {-3, -3, GcRbKind::Nothing},
    {-2, -1, GcRbKind::Name},       {0, 4, GcRbKind::String},       {5, 5, GcRbKind::String},
    {6, 9, GcRbKind::String},       {10, 17, GcRbKind::Point},      {18, 37, GcRbKind::Real},
    {38, 59, GcRbKind::Real},       {60, 79, GcRbKind::Short},      {90, 99, GcRbKind::Long},
    {100, 102, GcRbKind::String},   {105, 105, GcRbKind::String},   {110, 119, GcRbKind::Point},
    {120, 149, GcRbKind::Real},     {160, 169, GcRbKind::Int64},    {170, 179, GcRbKind::Short},
    {210, 219, GcRbKind::Point},    {220, 239, GcRbKind::Real},     {270, 299, GcRbKind::Short},
    {300, 309, GcRbKind::String},   {310, 319, GcRbKind::Binary},   {320, 329, GcRbKind::String},
    {330, 369, GcRbKind::Name},     {370, 389, GcRbKind::Short},    {390, 399, GcRbKind::Name},
    {400, 409, GcRbKind::Short},    {410, 419, GcRbKind::String},   {420, 429, GcRbKind::Long},
    {430, 439, GcRbKind::String},   {440, 459, GcRbKind::Long},     {460, 469, GcRbKind::Real},
    {470, 479, GcRbKind::String},   {480, 481, GcRbKind::Name},     {999, 1003, GcRbKind::String},
    {1004, 1004, GcRbKind::Binary}, {1005, 1005, GcRbKind::String}, {1010, 1013, GcRbKind::Point},
    {1014, 1042, GcRbKind::Real},   {1070, 1070, GcRbKind::Short},  {1071, 1071, GcRbKind::Long},
};

GcRbKind kindOfValue(int type) {
  switch (type) {
    case RTREAL:
    case RTANG:
    case RTORINT: return GcRbKind::Real;
    case RTPOINT:
    case RT3DPOINT: return GcRbKind::Point;
    case RTSHORT: return GcRbKind::Short;
    case RTLONG: return GcRbKind::Long;
    case RTSTR: return GcRbKind::String;
    case RTENAME:
    case RTPICKS: return GcRbKind::Name;
    default: return GcRbKind::Nothing;
  }
}

bool knownBareType(int type) {
  return type == RTLB || type == RTLE || type == RTNIL || type == RTT || type == RTDOTE || type == RTVOID || type == -3;
}

// Takes the value of one node from the argument list; false for a type that has no rule.
bool takeValue(resbuf* node, va_list& args) {
  switch (gcutRbKind(node->restype)) {
    case GcRbKind::Real: node->resval.rreal = va_arg(args, double); return true;
    case GcRbKind::Point: std::memcpy(node->resval.rpoint, va_arg(args, const double*), sizeof(gds_point)); return true;
    case GcRbKind::Short: node->resval.rint = static_cast<short>(va_arg(args, int)); return true;
    case GcRbKind::Long: node->resval.rlong = va_arg(args, int); return true;
    case GcRbKind::Int64: node->resval.mnInt64 = va_arg(args, int64_t); return true;
    case GcRbKind::String:
    case GcRbKind::Handle: return gcutSetRbString(node, va_arg(args, const GCHAR*));
    case GcRbKind::Name: std::memcpy(node->resval.rlname, va_arg(args, const int64_t*), sizeof(gds_name)); return true;
    case GcRbKind::Binary: {
      const gds_binary* chunk = va_arg(args, const gds_binary*);
      auto* copy = static_cast<char*>(gcHeapAlloc(static_cast<size_t>(chunk->clen)));
      if (copy == nullptr) return false;
      std::memcpy(copy, chunk->buf, static_cast<size_t>(chunk->clen));
      node->resval.rbinary = {chunk->clen, copy};
      return true;
    }
    case GcRbKind::Nothing: return knownBareType(node->restype);
  }
  return false;
}

}  // namespace

GcRbKind gcutRbKind(int type) {
  if (type >= 5000) return kindOfValue(type);
  for (const KindRange& range : kRanges)
    if (type >= range.first && type <= range.last) return range.kind;
  return GcRbKind::Nothing;
}

resbuf* gcutNewRb(int type) {
  resbuf* node = g_free;
  if (node != nullptr) {
    g_free = node->rbnext;
    --g_kept;
  } else {
    node = static_cast<resbuf*>(gcHeapAlloc(sizeof(resbuf)));
    if (node == nullptr) return nullptr;
  }
  std::memset(static_cast<void*>(node), 0, sizeof(resbuf));
  node->restype = static_cast<short>(type);
  return node;
}

int gcutRelRb(resbuf* chain) {
  while (chain != nullptr) {
    resbuf* next = chain->rbnext;
    const GcRbKind kind = gcutRbKind(chain->restype);
    if (kind == GcRbKind::String || kind == GcRbKind::Handle) gcHeapFree(chain->resval.rstring);
    if (kind == GcRbKind::Binary) gcHeapFree(chain->resval.rbinary.buf);
    if (g_kept < kMostKept) {
      chain->rbnext = g_free;
      g_free = chain;
      ++g_kept;
    } else {
      gcHeapFree(chain);
    }
    chain = next;
  }
  return RTNORM;
}

bool gcutSetRbString(resbuf* node, const GCHAR* text) {
  GCHAR* copy = nullptr;
  if (gcutNewString(text, copy) != Gcad::eOk) return false;
  gcHeapFree(node->resval.rstring);
  node->resval.rstring = copy;
  return true;
}

resbuf* gcutBuildList(int type, ...) {
  va_list args;
  va_start(args, type);
  resbuf* head = nullptr;
  resbuf** tail = &head;
  bool good = true;
  bool first = true;
  for (int next = type; good && next != RTNONE && (next != 0 || first); next = va_arg(args, int)) {
    first = false;  // a leading 0 is a group code, a later one the end
    resbuf* node = gcutNewRb(next);
    good = node != nullptr && takeValue(node, args);
    if (node != nullptr) {
      *tail = node;
      tail = &node->rbnext;
    }
  }
  va_end(args);
  if (!good) {
    gcutRelRb(head);
    return nullptr;
  }
  return head;
}

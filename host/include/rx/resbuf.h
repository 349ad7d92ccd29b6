// Result buffers: the chains of typed values in which LISP, commands and extended data pass values
// across the edge. Nodes are zero-filled when made. A chain owns its strings and binary chunks.
#pragma once

#include <cstdint>

#include "rx/gcchar.h"
#include "rx/gcstatus.h"

using gds_real = double;
using gds_point = gds_real[3];
using gds_name = int64_t[2];  // an entity name; the host alone knows what the two words are

struct gds_binary {
  short clen;
  char* buf;
};

struct resbuf {
  resbuf* rbnext;
  short restype;
  union {
    gds_real rreal;
    gds_real rpoint[3];
    short rint;
    GCHAR* rstring;
    gds_name rlname;
    int32_t rlong;
    int64_t mnInt64;
    gds_binary rbinary;
    unsigned char ihandle[8];
  } resval;
};

// Type codes of values.
inline constexpr short RTNONE = 5000;
inline constexpr short RTREAL = 5001;
inline constexpr short RTPOINT = 5002;
inline constexpr short RTSHORT = 5003;
inline constexpr short RTANG = 5004;
inline constexpr short RTSTR = 5005;
inline constexpr short RTENAME = 5006;
inline constexpr short RTPICKS = 5007;
inline constexpr short RTORINT = 5008;
inline constexpr short RT3DPOINT = 5009;
inline constexpr short RTLONG = 5010;
inline constexpr short RTVOID = 5014;
inline constexpr short RTLB = 5016;
inline constexpr short RTLE = 5017;
inline constexpr short RTDOTE = 5018;
inline constexpr short RTNIL = 5019;
inline constexpr short RTDXF0 = 5020;
inline constexpr short RTT = 5021;
inline constexpr short RTRESBUF = 5023;
// A value that no function body accepts (a symbol, a function, a file …).
inline constexpr short RTOTHER = 5099;

// Statuses of the functions that work on result buffers.
inline constexpr int RTNORM = 5100;
inline constexpr int RTERROR = -5001;
inline constexpr int RTCAN = -5002;
inline constexpr int RTREJ = -5008;
inline constexpr int RTFAIL = -5003;
inline constexpr int RTKWORD = -5005;

// A zero-filled node of the type; null when memory is exhausted.
resbuf* gcutNewRb(int type);

// Releases a whole chain with the strings and binary chunks in it; null is fine. Returns RTNORM.
int gcutRelRb(resbuf* chain);

// A chain from types and values: RTREAL double, RTSHORT int, RTLONG int, RTSTR const GCHAR*,
// RTPOINT/RT3DPOINT const double*, RTENAME/RTPICKS const int64_t*, group codes by their range;
// RTLB RTLE RTNIL RTT RTDOTE alone. Ended by RTNONE or 0. Null for an unknown type.
resbuf* gcutBuildList(int type, ...);

// Gives a node the text (a copy; an earlier text is freed). False when memory is exhausted.
bool gcutSetRbString(resbuf* node, const GCHAR* text);

// What a restype holds: used by everything that walks chains.
enum class GcRbKind : uint8_t { Nothing, Real, Point, Short, Long, Int64, String, Name, Binary, Handle };
GcRbKind gcutRbKind(int type);

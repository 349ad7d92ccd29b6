// Reads the arguments of the LISP call in progress, in order, and reports the first fault.
//
// Reading order is checking order: the first failed read prints its one message, and every later read does nothing
// and gives an empty value, so a body asks failed() once, after its last read:
//
//   ArgReader args(rules::kEntityFirst);
//   const GcDbObjectId id = args.entityName();
//   const double dist = args.real();
//   if (args.failed()) return args.status();
//
// Arguments behind the last one read are ignored. Texts point into the call's own argument chain, which the host
// keeps until the function has answered.
// [main thread] [during an invoke message]
#pragma once

#include "module/app/host.h"
#include "module/app/messages.h"

// What a function prints for each kind of fault. A null text prints nothing.
struct ArgRules {
  const GCHAR* empty;      // called without arguments; null: the call quietly yields nil, status RTNORM
  const GCHAR* firstType;  // the first argument is of another type
  const GCHAR* missing;    // a further argument is missing
  const GCHAR* wrongType;  // a further argument is of another type
};

namespace rules {

// Functions whose first argument is an entity name: quiet without arguments.
inline constexpr ArgRules kEntityFirst{nullptr, msg::kWrongType, msg::kTooFew, msg::kWrongType};
// Functions whose first argument is a name: one text for "none" and for "not a string".
inline constexpr ArgRules kNameFirst{msg::kNoArguments, msg::kNoArguments, msg::kNoArguments, msg::kWrongType};
// Functions that begin with a name or a space but are quiet without arguments.
inline constexpr ArgRules kTextFirst{nullptr, msg::kNoArguments, msg::kTooFew, msg::kWrongType};

// Functions that report even the empty call, and a first argument of another type as such.
inline constexpr ArgRules kEntityReported{msg::kNoArguments, msg::kWrongType, msg::kNoArguments, msg::kWrongType};
// Functions that report the empty call as a wrong number of arguments.
inline constexpr ArgRules kCounted{msg::kTooFew, msg::kWrongType, msg::kTooFew, msg::kWrongType};

}  // namespace rules

class ArgReader {
 public:
  explicit ArgReader(const ArgRules& argRules) : m_rules(argRules), m_at(gcedGetArgs()) {
    if (m_at == nullptr) fail(m_rules.empty, m_rules.empty == nullptr ? RTNORM : RTERROR);
  }
  ArgReader(const ArgReader&) = delete;
  ArgReader& operator=(const ArgReader&) = delete;

  [[nodiscard]] bool failed() const { return m_failed; }
  [[nodiscard]] int status() const { return m_status; }

  // Required arguments.
  GcDbObjectId entityName();   // null id when the name leads to no object
  const resbuf* entityNode();  // the name as it came; null after a fault
  double real();               // an integer is a wrong type here
  double number();             // real, or integer converted
  int16_t integer();           // 16 bits, signed
  const GCHAR* string();
  GcGePoint3d point();                             // 2D or 3D, three coordinates as they stand
  GcGePoint2d point2d() { return flat(point()); }  // the same without its third coordinate
  bool flag();                                     // T or nil

  // Deliberate: these look at the value only, never at the type. An argument that is no point gives what a point
  // could take from it: a real is the first coordinate, anything else the origin. A text is empty unless a string.
  GcGePoint3d anyPoint();
  const GCHAR* anyText();
  GcDbObjectId anyEntity();  // null id unless an entity name
  // The coordinates when it is a point, else the origin, without a message.
  GcGePoint3d pointOrOrigin();
  // Required, of any type.
  const resbuf* any();

  // A string that must be the only argument: more arguments count as too few do.
  const GCHAR* onlyString();
  // Fails when there is more than one argument left.
  void expectSingle();

  // Optional arguments: absent gives the default, another type is a fault.
  bool optionalFlag(bool absent = false);

  // The unread rest of the chain; null when there is none or a read has failed.
  [[nodiscard]] const resbuf* rest() const { return m_failed ? nullptr : m_at; }
  [[nodiscard]] bool atEnd() const { return rest() == nullptr; }
  // The next argument's type, RTNONE at the end.
  [[nodiscard]] int nextType() const { return atEnd() ? RTNONE : m_at->restype; }

  // Faults found by the body itself: print the text and give RTERROR. Nothing is printed after an earlier fault.
  int wrongType() { return fail(m_rules.wrongType, RTERROR); }
  int refuse(const GCHAR* message) { return fail(message, RTERROR); }

 private:
  static GcGePoint2d flat(const GcGePoint3d& p) { return {p.x, p.y}; }
  const resbuf* take();
  const resbuf* take(int type);
  int fail(const GCHAR* message, int status);
  int failType() { return fail(m_first ? m_rules.firstType : m_rules.wrongType, RTERROR); }

  const ArgRules& m_rules;
  const resbuf* m_at;
  const resbuf* m_taken = nullptr;
  int m_status = RTNORM;
  bool m_failed = false;
  bool m_first = true;  // the argument being read is the first one
};

// Reads of single nodes, used where a body walks the chain itself.
namespace node {

inline bool isPoint(const resbuf& rb) { return rb.restype == RTPOINT || rb.restype == RT3DPOINT; }
inline bool isNumber(const resbuf& rb) { return rb.restype == RTREAL || rb.restype == RTSHORT; }
inline GcGePoint3d point(const resbuf& rb) { return {rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]}; }
inline GcGePoint2d point2d(const resbuf& rb) { return {rb.resval.rpoint[0], rb.resval.rpoint[1]}; }
inline double number(const resbuf& rb) { return rb.restype == RTSHORT ? rb.resval.rint : rb.resval.rreal; }
GcDbObjectId objectId(const resbuf& rb);
inline const GCHAR* text(const resbuf& rb) { return rb.resval.rstring != nullptr ? rb.resval.rstring : GC_T(""); }

}  // namespace node

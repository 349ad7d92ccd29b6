// Filters of selections: tests of an entity's groups, joined by AND, OR, NOT and XOR.
//
// A test compares one group of the entity with a value: texts as wild-card patterns without regard to case, numbers by
// an operator (= by default, "<" "<=" ">" ">=" "<>" "!=" "/=" "*" any, "&" any bit, "&=" all bits), points coordinate
// by coordinate ("*,*,<"). A group the entity has several times passes when one of them does. What entity lists leave
// out because it is by layer counts as 62 = 256, 6 = BYLAYER, 370 = -1, 48 = 1.0, 60 = 0.
#pragma once

#include <vector>

#include "db/objectid.h"
#include "ge/point.h"
#include "host/rx/view.h"

namespace ed {

enum class Relation : uint8_t { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Any, AnyBit, AllBits };

struct FilterTest {
  int code = 0;
  enum class Value : uint8_t { Text, Number, Point, Entity } kind = Value::Text;
  GcText text;
  double number = 0;
  GcGePoint3d point;
  int coordinates = 3;  // of the point: how many are compared
  GcDbObjectId entity;
  Relation relations[3] = {Relation::Equal, Relation::Equal, Relation::Equal};  // one, or one per coordinate
};

class SelectionFilter {
 public:
  enum class Join : uint8_t { And, Or, Not, Xor };

  // Building: tests in order, groups opened and closed. False when the brackets do not match.
  void add(const FilterTest& test);
  void addApplication(GcView pattern);  // extended data of an application, pattern
  void open(Join join);
  bool close(Join join);
  [[nodiscard]] bool isComplete() const { return m_open.empty(); }
  [[nodiscard]] bool isEmpty() const { return m_nodes.empty(); }

  [[nodiscard]] bool passes(GcDbObjectId entity) const;
  [[nodiscard]] std::vector<GcDbObjectId> passing(const std::vector<GcDbObjectId>& entities) const;

 private:
  struct Node {
    enum class Kind : uint8_t { Test, Application, Join } kind = Kind::Test;
    Join join = Join::And;
    FilterTest test;
    size_t end = 0;  // Join: index behind its last member
  };
  class Subject;
  [[nodiscard]] bool passes(size_t node, Subject& subject) const;
  [[nodiscard]] size_t behind(size_t node) const;

  std::vector<Node> m_nodes;   // in the order given; joins before their members
  std::vector<size_t> m_open;  // joins not yet closed
};

// "=", "<", "*,*,<>" …: one relation or one per coordinate. False for an unknown operator.
[[nodiscard]] bool parseRelations(GcView text, Relation relations[3]);

}  // namespace ed

// One piece of input of a command: what a program passes, or a token a person types.
#pragma once

#include <vector>

#include "db/objectid.h"
#include "ge/point.h"
#include "host/rx/view.h"

namespace ed {

struct InputItem {
  enum class Kind : uint8_t {
    Text,  // typed text; empty is Enter
    Integer,
    Real,
    Point,  // user coordinates
    Entity,
    EntityPoint,  // an entity and the point it was picked at
    Set,
    Pause,  // the person is asked
    Cancel  // Esc
  };
  Kind kind = Kind::Text;
  GcText text;
  double number = 0;
  GcGePoint3d point;
  bool point2d = false;  // came with two coordinates
  GcDbObjectId entity;
  std::vector<GcDbObjectId> set;

  static InputItem ofText(GcView text) {
    InputItem item;
    item.text = text;
    return item;
  }
  static InputItem of(Kind kind) {
    InputItem item;
    item.kind = kind;
    return item;
  }
  [[nodiscard]] bool isEnter() const { return kind == Kind::Text && text.empty(); }
};

}  // namespace ed

// The settings a drawing file keeps in its header, by name ("$LTSCALE"), each with its groups as they came.
// Settings that are references to records are kept by name or handle as the file gives them, but for the few
// the database itself holds (current layer and the like), which the readers and writers of files connect.
#pragma once

#include <unordered_map>
#include <vector>

#include "host/db/describe/group.h"

class GcDbUndo;

class GcDbHeader {
 public:
  struct Variable {
    GcText name;
    GcDbGroupList groups;
  };

  [[nodiscard]] const std::vector<Variable>& variables() const { return m_variables; }
  // The groups of a variable; null when the drawing does not have it.
  [[nodiscard]] const GcDbGroupList* find(GcView name) const;
  // Replaces the groups; a new variable goes to the end.
  void set(GcView name, const GcDbGroupList& groups);
  void remove(GcView name);
  void clear();
  // Puts a variable back to its former groups and place; without groups it is taken out.
  void restore(GcView name, const GcDbGroupList* groups, size_t place);
  [[nodiscard]] size_t placeOf(GcView name) const;  // variables().size() for one that is not there
  // Told of every variable before it changes.
  void setUndo(GcDbUndo* undo) { m_undo = undo; }

  [[nodiscard]] double real(GcView name, double otherwise = 0) const;
  [[nodiscard]] int64_t integer(GcView name, int64_t otherwise = 0) const;
  [[nodiscard]] GcText text(GcView name) const;
  [[nodiscard]] GcGePoint3d point(GcView name) const;
  // Setters keep the group code of a known variable (`code` for one that is new).
  void setReal(GcView name, double value, int code = 40);
  void setInteger(GcView name, int64_t value, int code = 70);
  void setText(GcView name, GcView value, int code = 1);
  void setPoint(GcView name, const GcGePoint3d& value, int code = 10);

  // Gives a new drawing the settings every drawing has, metric, as the version writes them.
  void setDefaults();

 private:
  [[nodiscard]] bool first(GcView name, GcDbGroup& group) const;
  void setOne(GcView name, GcDbGroup group);
  std::vector<Variable> m_variables;
  std::unordered_map<GcText, size_t> m_index;
  GcDbUndo* m_undo = nullptr;

  void indexAnew();
};

// What a writer tells of the things its version cannot say.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include "db/object.h"
#include "host/db/core/savereport.h"
#include "host/db/describe/fieldloss.h"
#include "host/rx/view.h"

namespace gc {

class SaveNotes {
 public:
  using TypeOf = GcView (*)(const GcDbObject&);  // the DXF name under which the object is told

  // `report` null: nothing is looked for.
  SaveNotes(GcDbSaveReport* report, int version, TypeOf typeOf);

  [[nodiscard]] bool isWanted() const { return m_report != nullptr; }

  void mapped(const GcDbObject& object, const std::string& text) { add(GcDbSaveAction::Mapped, object, text); }
  void leftOut(const GcDbObject& object, const std::string& text) { add(GcDbSaveAction::LeftOut, object, text); }
  // Of the drawing, not of one object.
  void ofDrawing(GcDbSaveAction action, const std::string& text);

  // Fields of the object that the version lacks, and a class that is younger than the version.
  void look(const GcDbObject& object);
  // The same of an object that is written as groups, and what groups cannot say of any version.
  void lookInGroups(const GcDbObject& object);
  // Of an entity that is replaced by others: the fields that all entities have.
  void lookAtCommon(const GcDbObject& entity);
  // Objects that come in dozens and say the same: told together by finish(), a line for each kind and text.
  void together(GcDbSaveAction action, const GcDbObject& object, const std::string& text);
  void finish();

 private:
  void add(GcDbSaveAction action, const GcDbObject& object, const std::string& text);
  void lookAtBody(const GcDbObject& object);
  void tellLost(const GcDbObject& object, const std::string& lost);

  GcDbSaveReport* m_report;
  int m_version;
  TypeOf m_typeOf;
  std::unordered_map<const GCHAR*, int> m_since;  // by where the name of a class lies: asked for every object
  std::unique_ptr<GcDbLossFinder> m_losses;
  struct Group {
    GcDbSaveAction action;
    std::string handles;
    std::uint64_t only = 0;  // the handle when there is one
    int count = 0;
  };
  std::map<std::pair<std::string, std::string>, Group> m_groups;  // by type and text
};

// "R12", "R2000" ... of a GcDb::GcDbDwgVersion.
[[nodiscard]] const char* releaseName(int version);

// The version that first has objects of the DXF name; the oldest for names nobody knows.
[[nodiscard]] int classSince(GcView dxfName);

}  // namespace gc

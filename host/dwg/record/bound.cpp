#include "host/dwg/record/bound.h"

#include <cstring>
#include <unordered_map>

#include "db/symboltable.h"
#include "host/dwg/packing/packings.h"
#include "host/rx/view.h"

namespace gc::dwg {

namespace {

// The fields among which codes are looked for: those of the current subclass section (a subclass may have several
// sections of the same name) and, when it lacks the code, all of the class. For records: the rows of an element.
struct Scope {
  std::vector<const GcDbField*> all;
  std::vector<const GcDbField*> current;

  bool enter(const char* subclass) {
    current.clear();
    bool inside = false;
    bool found = false;
    for (const GcDbField* row : all) {
      if (row->is == Is::Marker) {
        inside = std::strcmp(row->name, subclass) == 0;
        found = found || inside;
      } else if (inside) {
        current.push_back(row);
      }
    }
    return found;
  }
  [[nodiscard]] const GcDbField* find(int code, int nth, bool wantRecords) const {
    const GcDbField* near = findAmong(current, code, nth, wantRecords);
    return near != nullptr ? near : findAmong(all, code, nth, wantRecords);
  }

 private:
  static const GcDbField* findAmong(const std::vector<const GcDbField*>& rows, int code, int nth, bool wantRecords) {
    for (const GcDbField* row : rows) {
      const bool isRecords = row->kind == Kind::Records && row->is != Is::Count;
      if (row->is == Is::Marker || (wantRecords && !isRecords)) continue;
      const bool own = row->code == code;
      const bool opens = isRecords && row->rows != nullptr && row->rows[0].code == code;
      if ((own || opens) && nth-- == 0) return row;
    }
    return nullptr;
  }
};

struct Binder {
  const char* className;
  std::vector<std::string>& missing;

  void report(const char* section, int code) {
    missing.push_back(std::string(className) + " " + section + " " + std::to_string(code));
  }

  std::unique_ptr<BoundTable> bind(Scope scope, const PackRow* rows, int count, const char* section) {
    auto table = std::make_unique<BoundTable>();
    for (int i = 0; i < count; ++i) {
      const PackRow& pack = rows[i];
      if (pack.op == Op::Section) {
        section = pack.name;
        if (!scope.enter(section)) report(section, 100);
        continue;
      }
      BoundRow bound;
      bound.pack = &pack;
      bindArgs(*table, bound, scope);
      if (pack.code != 0) {
        bound.field = scope.find(pack.code, pack.nth, pack.op == Op::Records);
        if (bound.field == nullptr && !pack.optional) report(section, pack.code);
      }
      if (pack.op == Op::Records && bound.field != nullptr) bindElements(*table, bound, section);
      table->rows.push_back(bound);
    }
    return table;
  }

  static void bindArgs(BoundTable& table, BoundRow& bound, const Scope& scope) {
    const PackRow& pack = *bound.pack;
    if (pack.argCount == 0) return;
    auto args = std::make_unique<const GcDbField*[]>(pack.argCount);
    for (int a = 0; a < pack.argCount; ++a) {
      int nth = 0;  // the same code twice means the first and the second field of that code
      for (int earlier = 0; earlier < a; ++earlier) nth += pack.args[earlier] == pack.args[a] ? 1 : 0;
      // Negative: the array whose count or first field has the code, else the field that group files do not have.
      const int code = pack.args[a];
      const GcDbField* found = code < 0 ? scope.find(-code, nth, true) : nullptr;
      args[static_cast<size_t>(a)] = found != nullptr ? found : scope.find(code, nth, false);
    }
    bound.args = args.get();
    table.argLists.push_back(std::move(args));
  }

  void bindElements(BoundTable& table, BoundRow& bound, const char* section) {
    Scope inner;
    for (int i = 0; i < bound.field->rowCount; ++i) inner.all.push_back(&bound.field->rows[i]);
    table.nested.push_back(bind(inner, bound.pack->rows, bound.pack->rowCount, section));
    bound.elements = table.nested.back().get();
  }
};

struct AllBound {
  std::unordered_map<const GcRxClass*, std::unique_ptr<BoundTable>> tables;
  std::vector<std::string> missing;

  AllBound() {
    gcdbRegisterClasses();
    for (const ClassPacking& packing : allPackings()) {
      GcText name;
      for (const char* c = packing.className; *c != 0; ++c) name.push_back(static_cast<GCHAR>(*c));
      const GcRxClass* rxClass = gcrxFindGcRxClass(name.c_str());
      if (rxClass != nullptr) bindClass(packing, *rxClass);
    }
  }

  void bindClass(const ClassPacking& packing, const GcRxClass& rxClass) {
    Scope scope;
    if (const GcDbClassInfo* info = rxClass.info()) scope.all.assign(info->rows, info->rows + info->rowCount);
    if (&rxClass == GcDbBlockTableRecord::desc()) appendBlockRows(scope);
    const size_t before = missing.size();
    Binder binder{packing.className, missing};
    auto table = binder.bind(std::move(scope), packing.rows, packing.rowCount, "");
    table->isWhole = packing.isWhole;
    if (missing.size() == before) tables[&rxClass] = std::move(table);
  }

  // A block record packs what the block's begin entity tells in group files as well.
  static void appendBlockRows(Scope& scope) {
    static constexpr GcDbField kMarker = marker("AcDbBlockBegin");
    scope.all.push_back(&kMarker);
    for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i)
      scope.all.push_back(&GcDbBlockTableRecord::kBlockFields[i]);
  }
};

const AllBound& all() {
  static const AllBound* const bound = new AllBound;
  return *bound;
}

}  // namespace

const BoundTable* boundTableOf(const GcRxClass& rxClass) {
  const auto at = all().tables.find(&rxClass);
  return at == all().tables.end() ? nullptr : at->second.get();
}

std::vector<std::string> unboundFields() { return all().missing; }

const std::vector<ClassPacking>& allPackings() {
  static const auto* const packings = [] {
    auto* list = new std::vector<ClassPacking>;
    packing::addAll(*list);
    return list;
  }();
  return *packings;
}

}  // namespace gc::dwg

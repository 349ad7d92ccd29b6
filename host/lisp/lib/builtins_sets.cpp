// Selection sets.
#include "host/ed/selection.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("Selection sets")

namespace {

ed::SelectionSet& setArgument(lisp::Args& args) {
  lisp::SelectionSet& value = args.selectionSet();
  ed::SelectionSet* set = hostOf(args.vm()).editor().sets().find(value.handle);
  if (set == nullptr) lisp::fail("bad argument value: selection set");
  return *set;
}

GcDbObjectId entityArgument(lisp::Args& args) { return lisplib::idOfWord(args.entityName()); }

LispValue pointValue(lisp::Args& args, const GcGePoint3d& point) {
  const double xyz[] = {point.x, point.y, point.z};
  return args.newPoint(xyz, 3);
}

// (0 point): a point with a line of sight through it.
LispValue sightOf(lisp::Args& args, const GcGePoint3d& point) {
  return args.cons(LispValue::integer(0), args.cons(pointValue(args, point), LispValue::nil()));
}

// (method entity marker data...): 0 named, 1 picked at a point, 2 and 3 by the window or crossing region of the
// number, 4 crossed by a fence at the points.
LispValue memberEntry(lisp::Args& args, const ed::SelectionSet& set, size_t index) {
  using How = ed::SelectionOrigin::How;
  const ed::SelectionOrigin& origin = set.origins()[set.originAt(index)];
  lisp::ListBuilder entry(args.vm());
  entry.add(LispValue::integer(static_cast<int32_t>(origin.how)));
  entry.add(lisplib::makeName(args.vm(), set.ids()[index]));
  entry.add(LispValue::integer(0));
  if (origin.how == How::Named) entry.add(LispValue::integer(0));
  if (origin.how == How::Picked) entry.add(sightOf(args, origin.points[0]));
  if (origin.how == How::Window || origin.how == How::Crossing)
    entry.add(LispValue::integer(-static_cast<int32_t>(set.originAt(index))));
  if (origin.how == How::Fence)
    for (const GcGePoint3d& point : ed::crossings(hostOf(args.vm()).editor(), origin.points, set.ids()[index]))
      entry.add(sightOf(args, point));
  return entry.list();
}

// (-number (0 corner)...) of a region.
LispValue regionEntry(lisp::Args& args, const ed::SelectionSet& set, size_t origin) {
  lisp::ListBuilder entry(args.vm());
  entry.add(LispValue::integer(-static_cast<int32_t>(origin)));
  for (const GcGePoint3d& corner : set.origins()[origin].points) entry.add(sightOf(args, corner));
  return entry.list();
}

}  // namespace

LISP_BUILTIN("ssadd", "(ssadd [entity [set]]) -> set | nil",
             "A new empty set, a new set of one entity, or the set with the entity added to it in place.") {
  ed::SelectionSets& sets = hostOf(args.vm()).editor().sets();
  if (args.count() == 0) return lisplib::adoptSet(args.vm(), sets.make());
  const GcDbObjectId id = entityArgument(args);
  if (args.count() == 1) {
    const ed::SetNumber number = sets.make();
    sets.find(number)->add(id);
    return lisplib::adoptSet(args.vm(), number);
  }
  setArgument(args).add(id);
  return args[1];
}

LISP_BUILTIN("ssdel", "(ssdel entity set) -> set | nil",
             "The set without the entity, changed in place; nil when it was no member.") {
  const GcDbObjectId id = entityArgument(args);
  return setArgument(args).remove(id) ? args[1] : LispValue::nil();
}

LISP_BUILTIN("ssmemb", "(ssmemb entity set) -> entity | nil", "The entity when it is a member.") {
  const GcDbObjectId id = entityArgument(args);
  return setArgument(args).contains(id) ? args[0] : LispValue::nil();
}

LISP_BUILTIN("sslength", "(sslength set) -> integer", "Number of members.") {
  return LispValue::integer(static_cast<int32_t>(setArgument(args).size()));
}

LISP_BUILTIN("ssname", "(ssname set index) -> entity | nil", "A member by its number, the first being 0.") {
  const ed::SelectionSet& set = setArgument(args);
  const double index = args.real();
  if (!(index >= 0) || index >= static_cast<double>(set.size())) return LispValue::nil();
  return lisplib::makeName(args.vm(), set.ids()[static_cast<size_t>(index)]);
}

LISP_BUILTIN(
    "ssnamex", "(ssnamex set [index]) -> list | nil",
    "How members were selected: (0 entity 0 0) named, (1 entity 0 (0 point)) picked, (2 entity 0 -n) in a window, "
    "(3 entity 0 -n) by a crossing, (4 entity 0 (0 point)...) by a fence; then (-n (0 corner)...) for each "
    "region.") {
  const ed::SelectionSet& set = setArgument(args);
  const bool one = args.more();
  const int32_t index = one ? args.integer() : 0;
  lisp::ListBuilder list(args.vm());
  std::vector<bool> regions(set.origins().size());
  for (size_t i = 0; i < set.size(); ++i) {
    if (one && static_cast<int64_t>(i) != index) continue;
    list.add(memberEntry(args, set, i));
    const ed::SelectionOrigin::How how = set.origins()[set.originAt(i)].how;
    if (how == ed::SelectionOrigin::How::Window || how == ed::SelectionOrigin::How::Crossing)
      regions[set.originAt(i)] = true;
  }
  for (size_t i = 0; i < regions.size(); ++i)
    if (regions[i]) list.add(regionEntry(args, set, i));
  return list.list();
}

LISP_BUILTIN("sssetfirst", "(sssetfirst [grip [pick]]) -> (grip pick)",
             "Chooses objects before a command; nil for pick chooses none.") {
  const LispValue pick = args.count() > 1 ? args[1] : LispValue::nil();
  const auto* set = lisp::objectOf<lisp::SelectionSet>(pick, lisp::ObjectType::SelectionSet);
  if (pick && set == nullptr) lisp::failType(args.vm(), lisp::kLselsetp, pick);
  hostOf(args.vm()).editor().pickedSet().reset(set == nullptr ? 0 : set->handle);
  const LispValue grip = args.count() > 0 ? args[0] : LispValue::nil();
  return args.cons(grip, args.cons(pick, LispValue::nil()));
}

LISP_BUILTIN("ssgetfirst", "(ssgetfirst) -> (grip pick)", "The objects chosen before a command.") {
  const ed::SetNumber picked = hostOf(args.vm()).editor().pickedSet().number();
  return args.cons(LispValue::nil(), args.cons(lisplib::makeSet(args.vm(), picked), LispValue::nil()));
}

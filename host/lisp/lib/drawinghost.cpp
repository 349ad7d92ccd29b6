#include "host/lisp/lib/drawinghost.h"

#include <charconv>

#include "db/database.h"
#include "host/ap/dynamiclinker.h"
#include "host/ap/output.h"
#include "host/db/core/store.h"
#include "host/lisp/lib/names.h"
#include "host/lisp/lib/reactors.h"
#include "host/lisp/lib/unavailable.h"

namespace lisplib {

using lisp::LispValue;

namespace {
ExternalCall* g_call = nullptr;
}

ExternalCall* currentCall() { return g_call; }

GcDbEntityMaker& DrawingHost::entityMaker() {
  if (m_entityMaker == nullptr) m_entityMaker = std::make_unique<GcDbEntityMaker>(database());
  return *m_entityMaker;
}

int DrawingHost::addFunction(ap::PlugIn* plugIn, int code, lisp::TextView name) {
  for (size_t i = 0; i < m_functions.size(); ++i) {
    Function& known = m_functions[i];
    if (known.plugIn == plugIn && known.code == code && known.name == name) return static_cast<int>(i);
    if (known.plugIn != nullptr) continue;
    known = {plugIn, code, nullptr, lisp::Text(name)};
    return static_cast<int>(i);
  }
  m_functions.push_back({plugIn, code, nullptr, lisp::Text(name)});
  return static_cast<int>(m_functions.size() - 1);
}

void DrawingHost::write(lisp::TextView text) { ap::writeRaw(text); }

bool DrawingHost::readLine(lisp::Text&) { return false; }

LispValue DrawingHost::callExternal(int code, lisp::Args& args) {
  const Function& function = m_functions[static_cast<size_t>(code)];
  ap::PlugIn* const plugIn = function.plugIn;
  int (*const direct)() = function.direct;
  if (plugIn == nullptr) return LispValue::nil();
  const NodeStock::Mark mark = m_nodes.mark();
  ExternalCall call{g_call, args.vm(), buildArguments(args.values(), args.count(), m_nodes), function.code,
                    lisp::Root(args.vm())};
  const GcDbStore& store = database().store();
  const int openBefore = store.openCount();
  g_call = &call;
  if (direct != nullptr)
    static_cast<void>(direct());
  else
    static_cast<void>(plugIn->send(GcRx::kInvkSubrMsg));
  g_call = call.outer;
  m_nodes.release(mark);
  if (store.openCount() > openBefore) [[unlikely]]
    noteOpen(m_functions[static_cast<size_t>(code)]);
  return settled(args.vm(), call.result.value);
}

LispValue DrawingHost::settled(lisp::Vm& vm, LispValue value) {
  if (m_reactors == nullptr || !m_reactors->isDue()) return value;
  const lisp::Root kept(vm, value);
  m_reactors->settle();
  return value;
}

void DrawingHost::noteOpen(const Function& function) {
  OpenNote& note = m_openNotes.emplace_back();
  note.function = function.name;
  for (const GcDbObjectId id : database().store().openObjects()) note.objects.push_back(id);
}

// A number that looks like a place in memory but follows from the handle, so that runs can be compared.
void DrawingHost::formatEntityName(uint64_t id, lisp::Text& out) {
  const GcDbObjectId object = idOfWord(id);
  char digits[20];
  const uint64_t shown = object.isNull() ? 0 : uint64_t{0x7ff600000000} + object.handle() * 16;
  const char* end = std::to_chars(digits, digits + sizeof digits, shown, 16).ptr;
  lisp::appendAscii(out, std::string_view(digits, static_cast<size_t>(end - digits)));
}

void DrawingHost::releaseSelectionSet(uint64_t handle) { m_editor.sets().release(handle); }

const char* DrawingHost::reasonUnavailable(lisp::TextView name) { return lisplib::reasonUnavailable(name); }

void DrawingHost::alert(lisp::TextView text) { ap::print(lisp::Text(text) + GC_T("\n")); }

LispValue makeSet(lisp::Vm& vm, ed::SetNumber number) {
  if (number == 0) return LispValue::nil();
  hostOf(vm).editor().sets().retain(number);
  return adoptSet(vm, number);
}

LispValue adoptSet(lisp::Vm& vm, ed::SetNumber number) {
  auto* made = vm.heap().create<lisp::SelectionSet>(lisp::ObjectType::SelectionSet);
  made->handle = number;
  return LispValue::of(static_cast<lisp::Object*>(made));
}

}  // namespace lisplib

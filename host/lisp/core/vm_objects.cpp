// How objects print, and what their type is called.
#include <charconv>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/vm.h"

namespace lisp {

namespace {

void appendHex(Text& out, uint64_t value) {
  char buffer[20];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, 16).ptr;
  appendAscii(out, std::string_view(buffer, static_cast<size_t>(end - buffer)));
}

// #<KIND @address NAME>
void appendFunction(Text& out, const char* kind, const Object& object, const Symbol* name) {
  appendAscii(out, "#<");
  appendAscii(out, kind);
  appendAscii(out, " @");
  appendHex(out, reinterpret_cast<uintptr_t>(&object));
  out.push_back(GC_T(' '));
  name ? void(out.append(name->text())) : appendAscii(out, "-lambda-");
  out.push_back(GC_T('>'));
}

const char* objectTypeName(const Object& object) {
  switch (object.type) {
    case ObjectType::Subr: return "SUBR";
    case ObjectType::Function: return "USUBR";
    case ObjectType::External: return "EXRXSUBR";
    case ObjectType::EntityName: return "ENAME";
    case ObjectType::SelectionSet: return "PICKSET";
    case ObjectType::File: return "FILE";
    case ObjectType::CatchError: return "VL-CATCH-ALL-APPLY-ERROR";
    case ObjectType::Opaque: return static_cast<const Opaque&>(object).kind->typeName;
    case ObjectType::String: return "STR";
  }
  return "";
}

}  // namespace

void Vm::printObject(const Object& object, Text& out) {
  switch (object.type) {
    case ObjectType::Subr: return appendFunction(out, "SUBR", object, static_cast<const Subr&>(object).name);
    case ObjectType::Function: return appendFunction(out, "USUBR", object, static_cast<const Function&>(object).name);
    case ObjectType::External:
      return appendFunction(out, "EXRXSUBR", object, static_cast<const External&>(object).name);
    case ObjectType::EntityName:
      appendAscii(out, "<Entity name: ");
      m_host.formatEntityName(static_cast<const EntityName&>(object).id, out);
      return out.push_back(GC_T('>'));
    case ObjectType::SelectionSet:
      appendAscii(out, "<Selection set: ");
      appendInteger(out,
                    static_cast<int64_t>(m_host.selectionSetNumber(static_cast<const SelectionSet&>(object).handle)));
      return out.push_back(GC_T('>'));
    case ObjectType::File:
      appendAscii(out, "#<file \"");
      out.append(static_cast<const File&>(object).name);
      return appendAscii(out, "\">");
    case ObjectType::CatchError: return appendAscii(out, "#<%catch-all-apply-error%>");
    case ObjectType::Opaque: {
      const auto& opaque = static_cast<const Opaque&>(object);
      return opaque.kind->print(opaque.payload, out);
    }
    case ObjectType::String: return;
  }
}

LispValue Vm::typeOf(LispValue value) {
  const char* name = "SYM";
  if (value.isNil()) return value;
  if (value.isInteger())
    name = "INT";
  else if (value.isReal())
    name = "REAL";
  else if (value.isPair())
    name = "LIST";
  else if (value.isString())
    name = "STR";
  else if (value.isObject())
    name = objectTypeName(*value.asObject());
  return LispValue::of(m_symbols.intern(name));
}

}  // namespace lisp

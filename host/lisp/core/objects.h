// What lives on the heap beside list cells: strings, functions, entity names, selection sets, files, error objects.
// Every object is immutable for programs once made, which is what the collector builds on (see heap.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/lisp/core/text.h"
#include "host/lisp/core/value.h"

namespace lisp {

class Args;
class Native;
class FileHandle;
struct Builtin;
struct StepResult;

enum class ObjectType : uint8_t {
  String,
  Subr,      // builtin
  Function,  // made by defun or lambda, compiled
  External,  // defined by the host or a plug-in, called by its code
  EntityName,
  SelectionSet,
  File,
  CatchError,  // what vl-catch-all-apply returns for an error
  Opaque,      // any other thing of the host
};

struct Object {
  Object* next;  // all objects of a heap, for sweeping
  ObjectType type;
  uint8_t colour;  // equals the heap's current colour when marked
  uint16_t flags;
  uint32_t length;  // strings: units
};

// Zero-terminated, so that the units can be handed on without copying.
struct StringObject : Object {
  const GCHAR* data() const { return reinterpret_cast<const GCHAR*>(this + 1); }
  GCHAR* data() { return reinterpret_cast<GCHAR*>(this + 1); }
  TextView view() const { return {data(), length}; }
};

// A symbol has one cell for value and function alike. Symbols live as long as the interpreter.
struct Symbol {
  LispValue value;
  LispValue builtin;  // what the cell holds at the start: a builtin, or nil
  StringObject* name = nullptr;
  TextView text() const { return name->view(); }
};

using BuiltinBody = LispValue (*)(Args&);
using StepBody = StepResult (*)(Native&);

enum class SubrKind : uint16_t { Plain, Native, Macro, Special };

struct Subr : Object {
  SubrKind kind() const { return static_cast<SubrKind>(flags); }
  BuiltinBody body = nullptr;
  StepBody step = nullptr;
  uint32_t minArgs = 0;
  uint32_t maxArgs = 0;
  uint32_t extraSlots = 0;  // Native: stack slots beside the arguments
  uint32_t special = 0;     // Special: which form
  Symbol* name = nullptr;
  const Builtin* row = nullptr;
};

using Word = uint64_t;

// Where an instruction came from.
struct CodePosition {
  uint32_t offset;  // words from the start of the code
  uint32_t line;
  uint32_t column;
};

struct Function : Object {
  static constexpr uint32_t kAnyCount = UINT32_MAX;  // paramCount of a traced function, which takes what it gets
  static constexpr uint16_t kForm = 1;               // flags: made of a form, not of a lambda or defun

  bool isForm() const { return (flags & kForm) != 0; }

  const Word* code = nullptr;
  uint32_t paramCount = 0;
  uint32_t localCount = 0;
  Symbol** variables = nullptr;  // parameters, then locals, each once
  uint32_t maxStack = 0;
  Symbol* name = nullptr;  // null for lambda
  LispValue source;        // defun-q: ((arguments) body...); traced: the function proper
  std::vector<Word> words;
  std::vector<Symbol*> variableList;
  std::vector<LispValue> constants;
  std::vector<CodePosition> positions;
  std::shared_ptr<const Text> file;
};

struct External : Object {
  int code = 0;
  Symbol* name = nullptr;
};

struct EntityName : Object {
  uint64_t id = 0;
};

struct SelectionSet : Object {
  uint64_t handle = 0;
};

struct CatchError : Object {
  Text message;
};

struct File : Object {
  std::unique_ptr<FileHandle> handle;  // null once closed
  Text name;
  File();
  ~File();
};

// Describes one kind of foreign thing; must outlive every heap.
struct OpaqueType {
  const char* typeName;  // what (type x) gives
  void (*print)(uint64_t payload, Text& out);
  void (*release)(uint64_t payload);  // may be null
};

struct Opaque : Object {
  const OpaqueType* kind = nullptr;
  uint64_t payload = 0;
};

template <class T>
T* objectOf(LispValue v, ObjectType type) {
  if (!v.isObject() || v.asObject()->type != type) return nullptr;
  return static_cast<T*>(v.asObject());
}

}  // namespace lisp

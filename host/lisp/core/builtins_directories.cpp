// vl-directory-files, the environment, the registry and the blackboard.
#include <algorithm>

#include "host/lisp/core/builtin.h"
#include "host/lisp/core/file_handle.h"
#include "host/lisp/core/reader.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("The outside")

namespace lisp {

namespace {

// File patterns: * any run, ? one character; case aside.
bool matchesFilePattern(TextView name, TextView pattern) {
  if (pattern == GC_T("*.*")) return true;
  size_t n = 0, p = 0, star = TextView::npos, mark = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == GC_T('?') || toUpper(pattern[p]) == toUpper(name[n]))) {
      ++n, ++p;
    } else if (p < pattern.size() && pattern[p] == GC_T('*')) {
      star = p++;
      mark = n;
    } else if (star != TextView::npos) {
      p = star + 1;
      n = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == GC_T('*')) ++p;
  return p == pattern.size();
}

}  // namespace

LISP_BUILTIN("vl-directory-files", "(vl-directory-files [directory [pattern [which]]]) -> list",
             "Names in a directory that match the pattern: which is -1 directories, 0 both, 1 files.") {
  const Text directory = args.moreNotNil() ? Text(args.string()) : (args.skip(), Text());
  const Text pattern = args.moreNotNil() ? Text(args.string()) : (args.skip(), Text(GC_T("*.*")));
  const int which = args.moreNotNil() ? args.integer() : 0;
  auto names = files::list(directory, which <= 0, which >= 0);
  std::sort(names.begin(), names.end());
  ListBuilder out(args.vm());
  for (const Text& name : names)
    if (matchesFilePattern(name, pattern)) out.add(args.newString(TextView(name)));
  return out.list();
}

LISP_BUILTIN("getenv", "(getenv name) -> string | nil", "An entry of the environment.") {
  Text value;
  return args.vm().environment().getEntry(args.string(), value) ? args.newString(TextView(value)) : LispValue::nil();
}
LISP_BUILTIN("setenv", "(setenv name value) -> value", "Sets an entry of the environment.") {
  const TextView name = args.string();
  const LispValue value = args.stringValue();
  args.vm().environment().setEntry(name, value.asString()->view());
  return value;
}

// ---- the registry: kept in memory, as long as the process lives

namespace {

// Values are kept in readable form.
LispValue revive(Vm& vm, const Text& text) {
  Reader reader(text, vm.heap(), vm.symbols());
  LispValue value;
  reader.next(value);
  return value;
}

Text keyOf(TextView name) {
  Text key = upperCase(name);
  while (!key.empty() && key.back() == GC_T('\\')) key.pop_back();
  return key;
}

}  // namespace

LISP_BUILTIN("vl-registry-read", "(vl-registry-read key [name]) -> value | nil", "The value under a key and a name.") {
  const auto& registry = args.vm().shared().registry;
  const auto entry = registry.find(keyOf(args.string()));
  const Text name = args.moreNotNil() ? upperCase(args.string()) : Text();
  if (entry == registry.end()) return LispValue::nil();
  const auto value = entry->second.find(name);
  return value == entry->second.end() ? LispValue::nil() : revive(args.vm(), value->second);
}

LISP_BUILTIN("vl-registry-write", "(vl-registry-write key [name [value]]) -> value",
             "Sets the value under a key and a name; makes the key.") {
  auto& entry = args.vm().shared().registry[keyOf(args.string())];
  const Text name = args.moreNotNil() ? upperCase(args.string()) : (args.skip(), Text());
  if (!args.more()) return args.newString(TextView());
  const LispValue value = args.any();
  entry[name] = args.vm().print(value, PrintStyle::Quoted);
  return value;
}

LISP_BUILTIN("vl-registry-delete", "(vl-registry-delete key [name]) -> T | nil",
             "Deletes a value, or a key and all below it.") {
  auto& registry = args.vm().shared().registry;
  const Text key = keyOf(args.string());
  if (args.moreNotNil()) {
    const auto entry = registry.find(key);
    return LispValue::boolean(entry != registry.end() && entry->second.erase(upperCase(args.string())) > 0);
  }
  const Text below = key + GC_T("\\");
  const auto count =
      std::erase_if(registry, [&](const auto& e) { return e.first == key || e.first.starts_with(below); });
  return LispValue::boolean(count > 0);
}

LISP_BUILTIN("vl-registry-descendents", "(vl-registry-descendents key [names]) -> list",
             "The keys right below a key, or with names T the names of its values.") {
  auto& registry = args.vm().shared().registry;
  const Text key = keyOf(args.string());
  ListBuilder out(args.vm());
  if (args.moreNotNil()) {
    const auto entry = registry.find(key);
    if (entry != registry.end())
      for (const auto& value : entry->second) out.add(args.newString(TextView(value.first)));
    return out.list();
  }
  const Text below = key + GC_T("\\");
  Text previous;
  for (const auto& entry : registry) {
    if (!entry.first.starts_with(below)) continue;
    const Text child = entry.first.substr(below.size(), entry.first.find(GC_T('\\'), below.size()) - below.size());
    if (child != previous) out.add(args.newString(TextView(child)));
    previous = child;
  }
  return out.list();
}

// ---- the blackboard: values shared by all documents

LISP_BUILTIN("vl-bb-set", "(vl-bb-set symbol value) -> value",
             "Sets a variable of the blackboard, which all documents share.") {
  const Symbol* symbol = args.cellSymbol();
  const LispValue value = args.any();
  args.vm().shared().blackboard[Text(symbol->text())] = args.vm().transferable(value);
  return value;
}

LISP_BUILTIN("vl-bb-ref", "(vl-bb-ref symbol) -> value | nil", "The value of a variable of the blackboard.") {
  const auto& board = args.vm().shared().blackboard;
  const auto entry = board.find(Text(args.cellSymbol()->text()));
  return entry == board.end() ? LispValue::nil() : args.vm().transferred(entry->second);
}

LISP_BUILTIN("vl-propagate", "(vl-propagate symbol) -> nil", "Copies a variable's value into all documents.") {
  const Symbol* symbol = args.cellSymbol();
  const TransferValue value = args.vm().transferable(symbol->value);
  for (Vm* vm : args.vm().shared().members)
    if (vm != &args.vm()) vm->symbols().intern(symbol->text())->value = vm->transferred(value);
  return LispValue::nil();
}

LISP_BUILTIN("vl-doc-set", "(vl-doc-set symbol value) -> value", "Sets a variable of the document.") {
  Symbol* symbol = args.cellSymbol();
  return symbol->value = args.any();
}
LISP_BUILTIN("vl-doc-ref", "(vl-doc-ref symbol) -> value", "The value of a variable of the document.") {
  return args.cellSymbol()->value;
}
LISP_BUILTIN("vl-doc-export", "(vl-doc-export symbol) -> nil",
             "Makes a function known to the document; it always is.") {
  args.symbol();
  return LispValue::nil();
}
LISP_BUILTIN("vl-doc-import", "(vl-doc-import [x]...) -> nil",
             "Makes a document's function known here; it always is.") {
  return LispValue::nil();
}
LISP_BUILTIN("vl-acad-defun", "(vl-acad-defun symbol) -> symbol",
             "Makes a function callable from plug-ins; it always is.") {
  return args.symbol();
}
LISP_BUILTIN("vl-acad-undefun", "(vl-acad-undefun symbol) -> T | nil", "Takes vl-acad-defun back.") {
  return LispValue::boolean(args.symbol().isCellSymbol());
}

}  // namespace lisp

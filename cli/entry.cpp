#include "cli/entry.h"

#include <algorithm>

#include "cli/functions.h"
#include "cli/script.h"
#include "host/lisp/core/builtin.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

std::string lowered(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return text;
}

}  // namespace

int openParentheses(GcView text) {
  int depth = 0;
  bool inText = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const GCHAR unit = text[i];
    if (inText) {
      if (unit == GC_T('\\')) ++i;
      inText = unit != GC_T('"');
    } else if (unit == GC_T(';') && i + 1 < text.size() && text[i + 1] == GC_T('|')) {
      const size_t end = text.find(GC_T("|;"), i + 2);
      if (end == GcView::npos) return std::max(depth, 1);
      i = end + 1;
    } else if (unit == GC_T(';')) {
      i = std::min(text.find(GC_T('\n'), i), text.size());
    } else {
      inText = unit == GC_T('"');
      depth += unit == GC_T('(') ? 1 : unit == GC_T(')') ? -1 : 0;
    }
  }
  return inText ? std::max(depth, 1) : depth;
}

EntryResult carryOut(Session& session, GcText entry) {
  EntryResult result;
  const bool variable = !entry.empty() && entry[0] == GC_T('!');
  if (variable) entry.erase(0, 1);
  if (!entry.empty() && entry[0] == GC_T('?')) {
    const std::string text = functionReference(gc::toUtf8(GcView(entry).substr(1)));
    ap::print(gc::fromUtf8(text.empty() ? "No function has this name.\n" : text));
    return result;
  }
  BetweenForms between(session);
  if (!variable && (session.commandLine().isBusy() || entry.empty() || entry[0] != GC_T('('))) {
    session.commandLine().type(entry + GC_T("\n"));
    return result;
  }
  const lisp::EvalResult value = session.lisp().evalFormsFrom(entry, GC_T("typed"), &between);
  result.ended = value.status == lisp::EvalStatus::Exit;
  result.code = value.exitCode;
  if (value.status == lisp::EvalStatus::Done)
    ap::print(session.lisp().print(value.value) + GC_T("\n"));
  else if (!result.ended)
    result.trace = describeTrace(value);
  return result;
}

std::vector<std::string> namesBeginningWith(Session& session, const std::string& typed) {
  std::vector<std::string> found;
  const std::string start = lowered(typed);
  session.lisp().vm().symbols().forEach([&](lisp::Symbol& symbol) {
    if (!symbol.value) return;
    const std::string name = lowered(gc::toUtf8(symbol.text()));
    if (name.compare(0, start.size(), start) == 0) found.push_back(name);
  });
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace cli

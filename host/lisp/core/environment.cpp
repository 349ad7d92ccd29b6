#include "host/lisp/core/environment.h"

#include <string_view>

#include "host/lisp/core/calendar.h"
#include "host/lisp/core/file_handle.h"
#include "host/lisp/core/units.h"
#include "host/rx/environment.h"

namespace lisp {

Environment::Environment() = default;
Environment::~Environment() = default;

int Environment::unitVariable(const char* name) const {
  const std::string_view variable = name;
  if (variable == "LUNITS") return 2;
  if (variable == "LUPREC") return 4;
  return 0;
}

double Environment::angleBase() const { return 0.0; }

Text Environment::findFile(TextView name) const {
  if (name.empty()) return {};
  if (files::exists(name)) return files::absolute(name);
  for (const Text& folder : m_supportPath) {
    const Text candidate = folder + GC_T("/") + Text(name);
    if (files::exists(candidate)) return files::absolute(candidate);
  }
  return {};
}

bool Environment::variableText(TextView name, Text& value) const {
  if (!equalIgnoringCase(name, GC_T("DATE"))) return false;
  value = fixedDigits(julianDate(localNow()), 8);
  return true;
}

bool Environment::getEntry(TextView name, Text& value) const {
  const auto known = m_entries.find(upperCase(name));
  if (known != m_entries.end()) {
    value = known->second;
    return true;
  }
  return gc::environmentVariable(name, value);
}

void Environment::setEntry(TextView name, TextView value) { m_entries[upperCase(name)] = Text(value); }

Text Environment::temporaryDirectory() const { return files::temporaryDirectory(); }

Text Environment::decodeLegacy(std::string_view bytes) const { return fromWindows1252(bytes); }

Text Environment::version() const { return Text(GC_T("LISP 1.0")); }

}  // namespace lisp

// What the language's own builtins want to know of the surrounding program: the drawing's unit variables, the support
// path, environment entries, the code page of old files. The base class is a working default without a drawing.
#pragma once

#include <map>
#include <vector>

#include "host/lisp/core/text.h"

namespace lisp {

class Environment {
 public:
  Environment();
  virtual ~Environment();

  // LUNITS, LUPREC, AUNITS, AUPREC, DIMZIN, ANGDIR as integers; ANGBASE in radians.
  virtual int unitVariable(const char* name) const;
  virtual double angleBase() const;
  // The full name of a file: as given if it exists, else found along the support path; empty when absent.
  virtual Text findFile(TextView name) const;
  // A system variable as macros show it; false when there is none. The default knows DATE.
  virtual bool variableText(TextView name, Text& value) const;
  // Entries of the host's profile and of the process. get returns false when there is none.
  virtual bool getEntry(TextView name, Text& value) const;
  virtual void setEntry(TextView name, TextView value);
  // Where vl-filename-mktemp puts its files.
  virtual Text temporaryDirectory() const;
  // Bytes of a text file that is no UTF-8.
  virtual Text decodeLegacy(std::string_view bytes) const;
  // What (ver) returns.
  virtual Text version() const;

  std::vector<Text>& supportPath() { return m_supportPath; }

 private:
  std::vector<Text> m_supportPath;
  std::map<Text, Text> m_entries;
};

}  // namespace lisp

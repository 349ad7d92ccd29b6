// What LISP's own builtins want to know of the program: units, support path, entries, the drawing's code page.
#pragma once

#include "host/ed/editor.h"
#include "host/lisp/core/environment.h"

namespace lisplib {

class DrawingEnvironment : public lisp::Environment {
 public:
  explicit DrawingEnvironment(ed::Editor& editor) : m_editor(editor) {}
  int unitVariable(const char* name) const override;
  double angleBase() const override;
  bool variableText(lisp::TextView name, lisp::Text& value) const override;
  lisp::Text decodeLegacy(std::string_view bytes) const override;
  lisp::Text findFile(lisp::TextView name) const override;
  bool getEntry(lisp::TextView name, lisp::Text& value) const override;
  void setEntry(lisp::TextView name, lisp::TextView value) override;

 private:
  ed::Editor& m_editor;
};

}  // namespace lisplib

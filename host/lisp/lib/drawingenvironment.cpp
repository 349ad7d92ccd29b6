#include "host/lisp/lib/drawingenvironment.h"

#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/ed/variables/variables.h"
#include "host/rx/text/code_page.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace lisplib {

int DrawingEnvironment::unitVariable(const char* name) const { return ed::integerVariable(m_editor, name); }

double DrawingEnvironment::angleBase() const { return ed::realVariable(m_editor, "ANGBASE"); }

bool DrawingEnvironment::variableText(lisp::TextView name, lisp::Text& text) const {
  ed::VariableValue value;
  if (!ed::getVariable(m_editor, name, value)) return false;
  text.clear();
  const int parts = value.kind == ed::VariableKind::Point3d ? 3 : 2;
  switch (value.kind) {
    case ed::VariableKind::Integer: lisp::appendInteger(text, value.integer); break;
    case ed::VariableKind::Real: text = gc::fromUtf8(gc::realText(value.real)); break;
    case ed::VariableKind::Text: text = value.text; break;
    case ed::VariableKind::Point2d:
    case ed::VariableKind::Point3d:
      for (int i = 0; i < parts; ++i)
        text += (i == 0 ? GC_T("") : GC_T(",")) + gc::fromUtf8(gc::realText(value.point[i]));
      break;
  }
  return true;
}

lisp::Text DrawingEnvironment::decodeLegacy(std::string_view bytes) const {
  const gc::CodePage page = gc::codePageByName(GcView(ed::textVariable(m_editor, "DWGCODEPAGE")));
  if (page == gc::CodePage::None) return lisp::Environment::decodeLegacy(bytes);
  lisp::Text text;
  static_cast<void>(gc::appendDecoded(page, bytes, text));
  return text;
}

lisp::Text DrawingEnvironment::findFile(lisp::TextView name) const {
  return ap::findSupportFile(name, ap::directoryOf(m_editor.document().fileName()));
}

bool DrawingEnvironment::getEntry(lisp::TextView name, lisp::Text& value) const {
  return ap::profileEntry(name, value);
}

void DrawingEnvironment::setEntry(lisp::TextView name, lisp::TextView value) { ap::setProfileEntry(name, value); }

}  // namespace lisplib

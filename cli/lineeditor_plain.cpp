#ifndef GC_HAVE_LIBEDIT

#include "cli/lineeditor.h"
#include "cli/terminal.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

class PlainEditor final : public LineEditor {
 public:
  void setPrompt(const std::string& prompt) override { m_prompt = prompt; }
  bool readLine(GcText& line) override {
    complain(m_prompt);
    std::string bytes;
    if (!readInputLine(bytes)) return false;
    line = gc::fromUtf8(bytes);
    return true;
  }

 private:
  std::string m_prompt;
};

}  // namespace

std::unique_ptr<LineEditor> LineEditor::make(Completer*) { return std::make_unique<PlainEditor>(); }

}  // namespace cli

#endif

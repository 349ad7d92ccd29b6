#include "host/ap/output.h"

#include "host/ap/docmanager.h"

namespace ap {

namespace {
Output* g_output = nullptr;
}

Output* setOutput(Output* output) {
  Output* former = g_output;
  g_output = output;
  return former;
}

void writeRaw(GcView text) {
  if (g_output != nullptr && !text.empty()) g_output->write(text);
}

void print(GcView text) {
  if (Document* document = currentDocument(); document != nullptr && document->lisp() != nullptr)
    document->lisp()->flush();
  writeRaw(text);
}

void print(const char* ascii) {
  const std::string_view text(ascii);
  print(GcText(text.begin(), text.end()));
}

}  // namespace ap

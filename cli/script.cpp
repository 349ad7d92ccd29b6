#include "cli/script.h"

#include "cli/console.h"
#include "cli/exitcode.h"
#include "host/ed/commandline.h"
#include "host/rx/file/file_view.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

std::string readStandardInput() {
  std::string bytes;
  for (std::string line; readInputLine(line);) bytes += line + "\n";
  return bytes;
}

int exitCodeOf(const lisp::EvalResult& result, bool& ended) {
  ended = result.status == lisp::EvalStatus::Exit;
  switch (result.status) {
    case lisp::EvalStatus::Done: return kDone;
    case lisp::EvalStatus::Exit: return result.exitCode;
    case lisp::EvalStatus::Cancelled: return kInterrupted;
    case lisp::EvalStatus::TimeLimit: return kTimeLimit;
    case lisp::EvalStatus::MemoryLimit: return kMemoryLimit;
    case lisp::EvalStatus::Error: return kLispError;
  }
  return kLispError;
}

lisp::EvalResult evaluate(Session& session, const Source& source, std::string_view bytes) {
  BetweenForms between(session);
  if (source.kind == Source::Kind::Expression)
    return session.lisp().evalFormsFrom(gc::fromUtf8(bytes), GC_T("-e"), &between);
  return session.lisp().evalFile(bytes, gc::fromUtf8(source.text), &between);
}

}  // namespace

BetweenForms::BetweenForms(Session& session)
    : m_session(session),
      m_document(session.document()),
      m_use(std::in_place, m_document),
      m_line(session.commandLine()),
      m_lisp(session.lisp()) {
  m_line.beginGroup();
}

BetweenForms::~BetweenForms() {
  m_line.endGroup();
  m_use.reset();
  m_session.documents().settle();
}

bool BetweenForms::formDone(lisp::LispValue) {
  m_line.endGroup();
  m_session.runQueued();
  if (ap::DocumentManager& documents = m_session.documents(); documents.current() != &m_document) {
    if (!documents.hasNext()) documents.setCurrentLater(*documents.current());
    documents.setCurrent(&m_document);
  }
  m_line.beginGroup();
  m_lisp.flush();
  m_session.terminal().flush();
  return true;
}

std::vector<std::string> traceLines(const lisp::EvalResult& result) {
  std::vector<std::string> lines;
  for (const lisp::TraceLine& line : result.trace) {
    const std::string place = line.file.empty() ? "" : gc::toUtf8(line.file) + ":" + std::to_string(line.line) + ": ";
    lines.push_back(place + (line.function.empty() ? std::string("(top level)") : gc::toUtf8(line.function)));
  }
  return lines;
}

std::string describeTrace(const lisp::EvalResult& result) {
  std::string text = "error: " + gc::toUtf8(result.message) + "\n";
  for (const std::string& line : traceLines(result)) text += "  " + line + "\n";
  return text;
}

int runSource(Session& session, const Source& source, bool& ended) {
  gc::FileView file;
  std::string typed;
  std::string_view bytes = source.text;
  if (source.kind == Source::Kind::Script && source.text == "-") {
    typed = readStandardInput();
    bytes = typed;
  } else if (source.kind == Source::Kind::Script) {
    if (const gc::FileStatus status = file.open(source.text); !status.ok()) {
      complain("gcad: " + status.message() + "\n");
      return kCannotRead;
    }
    bytes = file.bytes();
  }
  const lisp::EvalResult result = evaluate(session, source, bytes);
  session.lisp().flush();
  session.terminal().flush();
  if (result.status != lisp::EvalStatus::Done && result.status != lisp::EvalStatus::Exit)
    complain(describeTrace(result));
  return exitCodeOf(result, ended);
}

}  // namespace cli

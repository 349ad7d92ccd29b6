#include "cli/server.h"

#include <deque>
#include <nlohmann/json.hpp>

#include "cli/exitcode.h"
#include "cli/script.h"
#include "host/ed/commandline.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

using Json = nlohmann::json;

// The typed lines that came with a request.
class ListSource final : public ed::InputSource {
 public:
  void set(std::deque<GcText> lines) { m_lines = std::move(lines); }
  bool readLine(GcText& line) override {
    if (m_lines.empty()) return false;
    line = std::move(m_lines.front());
    m_lines.pop_front();
    return true;
  }

 private:
  std::deque<GcText> m_lines;
};

const char* statusName(lisp::EvalStatus status) {
  switch (status) {
    case lisp::EvalStatus::Done: return "done";
    case lisp::EvalStatus::Error: return "error";
    case lisp::EvalStatus::Exit: return "exit";
    case lisp::EvalStatus::Cancelled: return "cancelled";
    case lisp::EvalStatus::TimeLimit: return "time limit";
    case lisp::EvalStatus::MemoryLimit: return "memory limit";
  }
  return "error";
}

Json openNotes(Session& session) {
  Json notes = Json::array();
  for (const lisplib::OpenNote& note : session.host().takeOpenNotes()) {
    Json objects = Json::array();
    for (const GcDbObjectId id : note.objects) objects.push_back(gc::hexText(id.handle()));
    notes.push_back({{"function", gc::toUtf8(note.function)}, {"objects", objects}});
  }
  return notes;
}

Json answer(Session& session, ListSource& source, const Json& request) {
  std::deque<GcText> typed;
  for (const Json& line : request.value("input", Json::array())) typed.push_back(gc::fromUtf8(line.get<std::string>()));
  source.set(std::move(typed));
  std::string printed;
  session.capture(&printed);
  BetweenForms between(session);
  const lisp::EvalResult result =
      session.lisp().evalFormsFrom(gc::fromUtf8(request.at("eval").get<std::string>()), GC_T("request"), &between);
  const bool done = result.status == lisp::EvalStatus::Done;
  Json reply = {{"status", statusName(result.status)}, {"exit", result.exitCode}};
  if (done) reply["value"] = gc::toUtf8(session.lisp().print(result.value));
  session.lisp().flush();
  session.capture(nullptr);
  reply["printed"] = printed;
  if (!done) {
    reply["message"] = gc::toUtf8(result.message);
    reply["trace"] = traceLines(result);
  }
  reply["open"] = openNotes(session);
  return reply;
}

}  // namespace

int serve(Session& session) {
  ListSource source;
  ed::editorOf(session.document()).commandLine().setSource(&source);
  for (std::string line; readInputLine(line);) {
    if (line.empty()) continue;
    const Json request = Json::parse(line, nullptr, false);
    if (request.is_discarded() || !request.is_object() || !request.contains("eval") || !request["eval"].is_string()) {
      complain("gcad: a request is a JSON object with the text \"eval\"\n");
      return kUsage;
    }
    const Json reply = answer(session, source, request);
    session.terminal().write(reply.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
    session.terminal().flush();
  }
  return kDone;
}

}  // namespace cli

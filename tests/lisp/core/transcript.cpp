#include "tests/lisp/core/transcript.h"

#include <filesystem>

#include "host/lisp/core/file_handle.h"

namespace lisp::testing {

namespace {

std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text.find('\n', at);
    lines.push_back(text.substr(at, end == std::string::npos ? end : end - at));
    at = end == std::string::npos ? text.size() : end + 1;
  }
  return lines;
}

std::string marked(char mark, const std::string& text) {
  return text.empty() ? std::string(1, mark) : std::string(1, mark) + " " + text;
}

}  // namespace

std::vector<Exchange> readTranscript(const std::string& path) {
  std::string bytes;
  std::vector<Exchange> exchanges;
  if (!files::readWhole(fromUtf8(path), bytes)) return exchanges;
  int number = 0;
  bool inForm = false;
  for (std::string line : splitLines(bytes)) {
    ++number;
    if (line.empty() || line[0] == '#') {
      inForm = false;
      continue;
    }
    if (line[0] == '>') {
      if (!inForm) exchanges.push_back({number, "", {}});
      exchanges.back().form += (inForm ? "\n" : "") + line.substr(line.size() > 1 ? 2 : 1);
      inForm = true;
    } else {
      inForm = false;
      if (!exchanges.empty()) exchanges.back().expected.push_back(line);
    }
  }
  return exchanges;
}

ScratchEnvironment::ScratchEnvironment() {
  static int count = 0;
  do {
    m_folder = files::temporaryDirectory();
    appendAscii(m_folder, "/lisp-test-" + std::to_string(++count));
  } while (!files::makeDirectory(m_folder));
}

ScratchEnvironment::~ScratchEnvironment() {
  std::error_code ignored;
  std::filesystem::remove_all(std::filesystem::path(toUtf8(m_folder)), ignored);
}

bool RecordingHost::readLine(Text& line) {
  if (typed.empty()) return false;
  line = fromUtf8(typed.front());
  typed.erase(typed.begin());
  return true;
}

std::vector<std::string> perform(Interpreter& interpreter, RecordingHost& host, const std::string& form) {
  host.printed.clear();
  const bool fresh = interpreter.vm().atLineStart();
  const EvalResult result = interpreter.evalFormsFrom(fromUtf8(form), GC_T("transcript"));
  const std::string message = toUtf8(result.message);
  const std::string notice = "; error: " + message + "\n";
  const bool failed = result.status != EvalStatus::Done;
  // The notice of an error is what the ! line stands for, with the newline that ends an earlier form's line.
  if (failed && host.printed.ends_with(notice)) {
    host.printed.resize(host.printed.size() - notice.size());
    if (!fresh && host.printed == "\n") host.printed.clear();
  }
  std::vector<std::string> lines;
  for (const std::string& line : splitLines(host.printed)) lines.push_back(marked('|', line));
  lines.push_back(failed ? marked('!', message) : marked('=', toUtf8(interpreter.print(result.value))));
  return lines;
}

}  // namespace lisp::testing

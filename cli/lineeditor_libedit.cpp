#ifdef GC_HAVE_LIBEDIT

#include <histedit.h>

#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/lineeditor.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

constexpr int kHistorySize = 1000;

// The library calls back with its own handle only, and there is one terminal.
class Libedit;
Libedit* g_editor = nullptr;
sigjmp_buf g_wayOut;
volatile std::sig_atomic_t g_reading = 0;

class Libedit final : public LineEditor {
 public:
  explicit Libedit(Completer* completer) : m_completer(completer) {
    g_editor = this;
    m_edit = el_init("gcad", stdin, stderr, stderr);
    m_history = history_init();
    HistEvent event;
    history(m_history, &event, H_SETSIZE, kHistorySize);
    history(m_history, &event, H_SETUNIQUE, 1);
    if (const char* home = std::getenv("HOME")) m_file = std::string(home) + "/.gcad_history";
    if (!m_file.empty()) history(m_history, &event, H_LOAD, m_file.c_str());
    el_set(m_edit, EL_PROMPT, &Libedit::promptOf);
    el_set(m_edit, EL_EDITOR, "emacs");
    el_set(m_edit, EL_HIST, history, m_history);
    el_set(m_edit, EL_ADDFN, "gcad-complete", "complete the word", &Libedit::completeWord);
    el_set(m_edit, EL_BIND, "^I", "gcad-complete", nullptr);
    el_set(m_edit, EL_SIGNAL, 1);
    el_source(m_edit, nullptr);
  }
  ~Libedit() override {
    HistEvent event;
    if (!m_file.empty()) history(m_history, &event, H_SAVE, m_file.c_str());
    history_end(m_history);
    el_end(m_edit);
    g_editor = nullptr;
  }
  Libedit(const Libedit&) = delete;
  Libedit& operator=(const Libedit&) = delete;

  void setPrompt(const std::string& prompt) override { m_prompt = prompt; }
  [[nodiscard]] bool interrupted() const override { return m_interrupted; }
  bool readLine(GcText& line) override {
    int count = 0;
    const char* bytes = readBytes(count);
    if (bytes == nullptr || count <= 0) return false;
    HistEvent event;
    if (bytes[0] != '\n') history(m_history, &event, H_ENTER, bytes);
    std::string_view text(bytes, static_cast<size_t>(count));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
    line = gc::fromUtf8(text);
    return true;
  }

 private:
  // The library starts reading anew after a signal; the way out of it is a jump. Between here and there lies nothing
  // but the library's C code, and this function has no objects of its own. Null at the end and after an interrupt.
  const char* readBytes(int& count) {
    m_interrupted = false;
    if (sigsetjmp(g_wayOut, 1) != 0) {
      g_reading = 0;
      sigaction(SIGINT, &m_former, nullptr);
      if (m_former.sa_handler != SIG_DFL && m_former.sa_handler != SIG_IGN) m_former.sa_handler(SIGINT);
      m_interrupted = true;
      el_reset(m_edit);
      std::fputs("^C\n", stderr);
      return nullptr;
    }
    struct sigaction jump = {};
    jump.sa_handler = [](int) {
      if (g_reading != 0) siglongjmp(g_wayOut, 1);
    };
    sigemptyset(&jump.sa_mask);
    sigaction(SIGINT, &jump, &m_former);
    g_reading = 1;
    const char* bytes = el_gets(m_edit, &count);
    g_reading = 0;
    sigaction(SIGINT, &m_former, nullptr);
    return bytes;
  }

  static char* promptOf(EditLine*) { return g_editor->m_prompt.data(); }

  // Completes as far as all candidates agree; shows them when they agree no further.
  static unsigned char completeWord(EditLine* edit, int) {
    const LineInfo* info = el_line(edit);
    const char* start = info->cursor;
    while (start > info->buffer && std::strchr(" \t()'\"", start[-1]) == nullptr) --start;
    const std::string word(start, info->cursor);
    if (g_editor->m_completer == nullptr || word.empty()) return CC_ERROR;
    const std::vector<std::string> found = g_editor->m_completer->complete(word);
    if (found.empty()) return CC_ERROR;
    std::string common = found[0];
    for (const std::string& each : found)
      while (each.compare(0, common.size(), common) != 0) common.pop_back();
    if (common.size() > word.size()) {
      el_insertstr(edit, common.c_str() + word.size());
      return CC_REFRESH;
    }
    std::fputc('\n', stderr);
    for (const std::string& each : found) std::fprintf(stderr, "%s  ", each.c_str());
    std::fputc('\n', stderr);
    return CC_REDISPLAY;
  }

  Completer* m_completer;
  EditLine* m_edit;
  History* m_history;
  std::string m_prompt;
  std::string m_file;
  struct sigaction m_former = {};
  bool m_interrupted = false;
};

}  // namespace

std::unique_ptr<LineEditor> LineEditor::make(Completer* completer) { return std::make_unique<Libedit>(completer); }

}  // namespace cli

#endif

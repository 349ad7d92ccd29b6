#include "cli/view.h"

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/exitcode.h"
#include "cli/page/desk.h"
#include "cli/page/inbox.h"
#include "cli/page/pageserver.h"
#include "cli/page/pagestate.h"
#include "cli/session.h"

namespace cli {

namespace {

constexpr int kMostPixels = 1 << 15;
constexpr int kMostTimesAsked = 3;

// The network's side: hands on what pages say, and gives them what they lack.
class Network final : public page::PageServer::Client {
 public:
  Network(page::PageState& state, page::Inbox& inbox) : m_state(state), m_inbox(inbox) {}

  // What Stop stops; null for nothing. From the document's thread.
  void setRunning(lisp::Interpreter* interpreter) {
    const std::lock_guard lock(m_mutex);
    m_running = interpreter;
  }

 private:
  void pageOpened(page::PageId page) override {
    m_state.open(page);
    m_inbox.pageOpened();
  }
  void pageClosed(page::PageId page) override {
    m_state.close(page);
    m_inbox.pageClosed();
  }
  bool messageCame(page::PageId page, std::string_view text) override {
    page::PageView view;
    if (readView(text, view)) {
      m_state.look(page, view);
      return true;
    }
    page::PageEvent event;
    if (!page::parseEvent(text, event)) return false;
    event.page = page;
    if (event.kind == page::PageEvent::Kind::Stop) stop();
    if (!m_inbox.push(std::move(event)))
      m_state.answer(page, R"({"t":"notice","text":"Too much is waiting to be done; this was dropped."})");
    return true;
  }
  bool nextMessage(page::PageId page, page::PageMessage& message) override { return m_state.next(page, message); }
  // What does not end when it is asked (builtins are not interrupted) is ended.
  void endAsked() override {
    if (++m_timesAsked >= kMostTimesAsked) std::_Exit(kInterrupted);
    stop();
    m_inbox.end();
  }

  void stop() {
    const std::lock_guard lock(m_mutex);
    if (m_running != nullptr) m_running->interrupt();
  }

  static bool readView(std::string_view text, page::PageView& view) {
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object() || json.value("t", nlohmann::json()) != "view") return false;
    double numbers[5];
    constexpr const char* kNames[] = {"x", "y", "u", "w", "h"};
    for (int i = 0; i < 5; ++i) {
      const auto at = json.find(kNames[i]);
      if (at == json.end() || !at->is_number()) return false;
      numbers[i] = at->get<double>();
      if (!std::isfinite(numbers[i])) return false;
    }
    if (!(numbers[2] > 0) || numbers[3] < 1 || numbers[4] < 1 || numbers[3] > kMostPixels || numbers[4] > kMostPixels)
      return false;
    view = {numbers[0], numbers[1], numbers[2], static_cast<int>(numbers[3]), static_cast<int>(numbers[4])};
    return true;
  }

  page::PageState& m_state;
  page::Inbox& m_inbox;
  int m_timesAsked = 0;
  std::mutex m_mutex;
  lisp::Interpreter* m_running = nullptr;
};

}  // namespace

int view(Terminal& terminal, const RunOptions& run, const ViewOptions& options) {
  Session session(terminal, run);
  if (const int code = session.loadPlugIn(); code != kDone) return code;
  if (const int code = session.openDrawing(); code != kDone) return code;
  if (const int code = session.openScreenLog(); code != kDone) return code;

  page::PageState state;
  page::Inbox inbox;
  Network network(state, inbox);
  std::string reason;
  const auto server = page::PageServer::start(static_cast<uint16_t>(options.port), network, reason);
  if (server == nullptr) {
    complain("gcad: " + reason + "\n");
    return kUsage;
  }
  terminal.write(server->address() + "\n");
  terminal.flush();
  complain("gcad: the page is at the address above, for this machine only; Ctrl-C ends\n");
  page::Desk desk(session, state, inbox,
                  {[&] { server->wake(); }, [&](lisp::Interpreter* running) { network.setRunning(running); }});
  const int code = desk.run(run.sources);
  return code != kDone ? code : session.checkScreenLog();
}

}  // namespace cli

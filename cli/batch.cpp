#include "cli/batch.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/batchinputs.h"
#include "cli/childprocess.h"
#include "cli/exitcode.h"
#include "host/rx/file/folder.h"

namespace cli {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

volatile std::sig_atomic_t interrupted = 0;
void noteInterrupt(int) { interrupted = 1; }

const char* meaningOf(int exitCode) {
  switch (exitCode) {
    case kDone: return "done";
    case kLispError: return "LISP error";
    case kUsage: return "usage";
    case kCannotRead: return "cannot be read";
    case kCannotWrite: return "result cannot be written";
    case kTimeLimit: return "time limit";
    case kMemoryLimit: return "memory limit";
    case kInterrupted: return "interrupted";
    default: return exitCode > 128 ? "crashed" : "failed";
  }
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class Batch {
 public:
  Batch(Terminal& terminal, const BatchOptions& options, std::vector<BatchItem> items)
      : m_terminal(terminal), m_options(options), m_items(std::move(items)) {
    m_folder = fs::temp_directory_path() / ("gcad-batch-" + std::to_string(processId()));
    fs::create_directories(m_folder);
  }
  ~Batch() { gc::removeTree(m_folder); }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  int run() {
    const auto begin = Clock::now();
    const size_t jobs = jobCount();
    size_t next = 0;
    bool stopped = false;
    while (next < m_items.size() || m_children.running() > 0) {
      if (interrupted != 0 && !stopped) {
        stopped = true;
        m_children.interruptAll();
      }
      while (!stopped && next < m_items.size() && m_children.running() < jobs) startItem(next++);
      if (stopped) next = m_items.size();
      if (m_children.running() > 0) takeEnded();
    }
    summary(std::chrono::duration<double>(Clock::now() - begin).count());
    if (interrupted != 0) return kInterrupted;
    return m_failed > 0 ? kSomeFailed : kDone;
  }

 private:
  struct Running {
    int64_t id = 0;
    size_t item = 0;
    Clock::time_point begin;
  };

  [[nodiscard]] size_t jobCount() const {
    constexpr size_t kMost = 60;  // what one wait of Windows can watch
    const size_t wanted =
        m_options.jobs > 0 ? static_cast<size_t>(m_options.jobs) : std::max(1U, std::thread::hardware_concurrency());
    return std::min(wanted, kMost);
  }

  [[nodiscard]] std::string file(size_t item, const char* what) const {
    return (m_folder / (std::to_string(item) + what)).string();
  }

  [[nodiscard]] std::vector<std::string> wordsFor(const BatchItem& item) const {
    std::vector<std::string> words = {programPath(), "run", m_options.script, "-d", item.input};
    if (!item.output.empty()) words.insert(words.end(), {"-s", item.output});
    if (!item.output.empty() && !m_options.as.empty()) words.insert(words.end(), {"--as", m_options.as});
    words.insert(words.end(), m_options.passedOn.begin(), m_options.passedOn.end());
    if (!m_options.arguments.empty()) words.emplace_back("--");
    words.insert(words.end(), m_options.arguments.begin(), m_options.arguments.end());
    return words;
  }

  void startItem(size_t index) {
    const BatchItem& item = m_items[index];
    if (m_options.resume && isUpToDate(item, m_options.script)) {
      ++m_skipped;
      return;
    }
    std::string reason;
    if (!item.output.empty()) gc::makeFolders(gc::pathOfUtf8(item.output).parent_path());
    const int64_t id = m_children.start(wordsFor(item), file(index, ".out"), file(index, ".err"), reason);
    if (id == 0) {
      report(item, kLispError, 0, "", "gcad: the program cannot be started: " + reason + "\n");
      return;
    }
    m_running.push_back({id, index, Clock::now()});
  }

  void takeEnded() {
    const ChildProcesses::Ended ended = m_children.waitAny();
    if (!ended.any) return;
    const auto at =
        std::find_if(m_running.begin(), m_running.end(), [&](const Running& r) { return r.id == ended.id; });
    if (at == m_running.end()) return;
    const Running was = *at;
    m_running.erase(at);
    const double seconds = std::chrono::duration<double>(Clock::now() - was.begin).count();
    report(m_items[was.item], ended.exitCode, seconds, contentOf(file(was.item, ".out")),
           contentOf(file(was.item, ".err")));
    std::error_code ignored;
    fs::remove(file(was.item, ".out"), ignored);
    fs::remove(file(was.item, ".err"), ignored);
  }

  void report(const BatchItem& item, int exitCode, double seconds, const std::string& out, const std::string& error) {
    ++(exitCode == kDone ? m_done : m_failed);
    char figures[64];
    std::snprintf(figures, sizeof figures, "%.2f s", seconds);
    const std::string place =
        "[" + std::to_string(m_done + m_failed + m_skipped) + "/" + std::to_string(m_items.size()) + "] ";
    if (m_options.json) {
      nlohmann::ordered_json line{{"drawing", item.input}, {"exitCode", exitCode}, {"meaning", meaningOf(exitCode)},
                                  {"seconds", seconds},    {"stdout", out},        {"stderr", error}};
      if (!item.output.empty()) line["output"] = item.output;
      m_terminal.write(line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    } else if (!out.empty()) {
      m_terminal.write("== " + item.input + "\n" + out + (out.back() == '\n' ? "" : "\n"));
    }
    m_terminal.flush();
    std::string told = place + item.input + ": " + meaningOf(exitCode);
    if (exitCode != kDone) told += " (exit code " + std::to_string(exitCode) + ")";
    complain(told + ", " + figures + "\n" + (m_options.json ? "" : error));
  }

  void summary(double seconds) const {
    char figures[64];
    std::snprintf(figures, sizeof figures, "%.1f s", seconds);
    std::string told = std::to_string(m_items.size()) + " drawings: " + std::to_string(m_done) + " done, " +
                       std::to_string(m_failed) + " failed";
    if (m_skipped > 0) told += ", " + std::to_string(m_skipped) + " up to date";
    const size_t left = m_items.size() - m_done - m_failed - m_skipped;
    if (left > 0) told += ", " + std::to_string(left) + " not begun";
    complain(told + ", " + figures + "\n");
  }

  Terminal& m_terminal;
  const BatchOptions& m_options;
  std::vector<BatchItem> m_items;
  fs::path m_folder;
  ChildProcesses m_children;
  std::vector<Running> m_running;
  size_t m_done = 0, m_failed = 0, m_skipped = 0;
};

}  // namespace

int batch(Terminal& terminal, const BatchOptions& options) {
  std::vector<BatchItem> items;
  std::string message;
  int exitCode = kUsage;
  if (!collectBatch(options, items, message, exitCode)) {
    complain(message);
    return exitCode;
  }
  std::signal(SIGINT, noteInterrupt);
  return Batch(terminal, options, std::move(items)).run();
}

}  // namespace cli

#include "cli/interrupts.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>

#include "cli/exitcode.h"
#include "cli/memoryuse.h"
#include "cli/terminal.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace cli {

namespace {

// A signal handler reaches only what is static.
std::atomic<lisp::Interpreter*> g_interpreter{nullptr};
std::atomic<int> g_presses{0};
constexpr int kMostPresses = 3;

void pressed() {
  if (lisp::Interpreter* interpreter = g_interpreter.load()) interpreter->interrupt();
  if (g_presses.fetch_add(1) + 1 >= kMostPresses) std::_Exit(kInterrupted);
}

#ifdef _WIN32
BOOL WINAPI onConsole(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  pressed();
  return TRUE;
}
void setHandler(bool on) { SetConsoleCtrlHandler(onConsole, on ? TRUE : FALSE); }
#else
struct sigaction g_former;

void onSignal(int) { pressed(); }

// Reads that wait for input are broken off, not taken up again.
void setHandler(bool on) {
  struct sigaction action = {};
  action.sa_handler = onSignal;
  sigemptyset(&action.sa_mask);
  if (on)
    sigaction(SIGINT, &action, &g_former);
  else
    sigaction(SIGINT, &g_former, nullptr);
}
#endif

constexpr double kGraceS = 5;
constexpr std::chrono::milliseconds kLookEvery(50);

}  // namespace

Interrupts::Interrupts(lisp::Interpreter& interpreter) {
  forget();
  g_interpreter = &interpreter;
  setHandler(true);
}

Interrupts::~Interrupts() {
  setHandler(false);
  g_interpreter = nullptr;
}

void Interrupts::forget() { g_presses = 0; }

TimeLimit::TimeLimit(double seconds) : m_seconds(seconds) {
  if (seconds <= 0) return;
  m_thread = std::thread([this] {
    std::unique_lock lock(m_mutex);
    const auto end = m_start + std::chrono::duration<double>(m_seconds + kGraceS);
    if (m_wake.wait_until(lock, end, [this] { return m_over; })) return;
    complain("gcad: time limit\n");
    std::_Exit(kTimeLimit);
  });
}

TimeLimit::~TimeLimit() {
  if (!m_thread.joinable()) return;
  {
    const std::lock_guard lock(m_mutex);
    m_over = true;
  }
  m_wake.notify_one();
  m_thread.join();
}

double TimeLimit::secondsLeft() const {
  return m_seconds - std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

void TimeLimit::watch(lisp::Interpreter& interpreter) {
  if (m_seconds > 0) m_watchdog = std::make_unique<lisp::Watchdog>(interpreter, std::max(0.0, secondsLeft()));
}

MemoryLimit::MemoryLimit(lisp::Interpreter& interpreter, double megabytes)
    : m_interpreter(interpreter), m_limit(static_cast<size_t>(megabytes * (1 << 20))), m_before(residentBytes()) {
  if (m_limit == 0 || m_before == 0) return;
  m_thread = std::thread([this] {
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, kLookEvery, [this] { return m_over; })) look();
  });
}

MemoryLimit::~MemoryLimit() {
  if (!m_thread.joinable()) return;
  {
    const std::lock_guard lock(m_mutex);
    m_over = true;
  }
  m_wake.notify_one();
  m_thread.join();
}

void MemoryLimit::look() {
  const size_t now = residentBytes();
  const size_t taken = now > m_before ? now - m_before : 0;
  if (taken <= m_limit) return;
  m_interpreter.memoryLimit();
  const auto time = std::chrono::steady_clock::now();
  m_reached = std::min(m_reached, time);
  if (taken < 2 * m_limit && std::chrono::duration<double>(time - m_reached).count() < kGraceS) return;
  complain("gcad: memory limit\n");
  std::_Exit(kMemoryLimit);
}

}  // namespace cli

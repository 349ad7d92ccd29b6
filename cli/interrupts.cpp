#include "cli/interrupts.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>

#include "cli/exitcode.h"
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

}  // namespace cli

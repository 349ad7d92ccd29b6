#include "host/lisp/core/watchdog.h"

#include <chrono>

namespace lisp {

namespace {

// The request is repeated, since a program that just ended may have taken the first one with it.
constexpr std::chrono::milliseconds kRepeat(20);

}  // namespace

Watchdog::Watchdog(Interpreter& interpreter, double seconds)
    : m_interpreter(interpreter), m_thread([this, seconds] {
        std::unique_lock lock(m_mutex);
        auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
        while (!m_over) {
          if (m_wake.wait_until(lock, until, [this] { return m_over; })) break;
          m_interpreter.timeLimit();
          until = std::chrono::steady_clock::now() + kRepeat;
        }
      }) {}

Watchdog::~Watchdog() {
  {
    const std::lock_guard lock(m_mutex);
    m_over = true;
  }
  m_wake.notify_one();
  m_thread.join();
  m_interpreter.vm().clearInterrupts();
}

}  // namespace lisp

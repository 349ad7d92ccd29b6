// Commands are coroutines: they read like one straight run of questions and deeds, and stop at a question until an
// item of input comes. A command that is cancelled is destroyed where it stands; what its frames hold is released.
#pragma once

#include <coroutine>
#include <cstdlib>
#include <utility>

namespace ed {

namespace detail {

// When a task ends, the one that awaited it goes on.
struct FinalAwaiter {
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <class Promise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
    const std::coroutine_handle<> next = ended.promise().continuation;
    return next ? next : std::noop_coroutine();
  }
  void await_resume() const noexcept {}
};

struct PromiseBase {
  std::coroutine_handle<> continuation;
  [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
  [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
  [[noreturn]] void unhandled_exception() const noexcept { std::abort(); }  // nothing in a command throws
};

template <class T>
struct Promise : PromiseBase {
  T value{};
  void return_value(T result) { value = std::move(result); }
};

template <>
struct Promise<void> : PromiseBase {
  void return_void() const noexcept {}
};

}  // namespace detail

// Owns its coroutine, which starts when it is awaited (or run() is called).
template <class T = void>
class [[nodiscard]] Task {
 public:
  struct promise_type : detail::Promise<T> {
    Task get_return_object() { return Task(std::coroutine_handle<promise_type>::from_promise(*this)); }
  };

  Task() = default;
  Task(Task&& other) noexcept : m_coroutine(std::exchange(other.m_coroutine, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(m_coroutine, other.m_coroutine);
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() {
    if (m_coroutine) m_coroutine.destroy();
  }

  void run() { m_coroutine.resume(); }
  [[nodiscard]] bool done() const { return !m_coroutine || m_coroutine.done(); }
  [[nodiscard]] const T& result() const requires(!std::is_void_v<T>) { return m_coroutine.promise().value; }

  // Awaiting.
  [[nodiscard]] bool await_ready() const noexcept { return done(); }
  std::coroutine_handle<> await_suspend(std::coroutine_handle<> waiting) noexcept {
    m_coroutine.promise().continuation = waiting;
    return m_coroutine;
  }
  T await_resume() {
    if constexpr (!std::is_void_v<T>) return std::move(m_coroutine.promise().value);
  }

 private:
  explicit Task(std::coroutine_handle<promise_type> coroutine) : m_coroutine(coroutine) {}
  std::coroutine_handle<promise_type> m_coroutine;
};

}  // namespace ed

#include "cli/page/inbox.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace cli::page {

namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;
using Kind = PageEvent::Kind;

constexpr size_t kMostWaiting = 1000;
// A page that is loaded anew is away for a moment.
constexpr auto kGrace = 2500ms;

bool readNumber(const Json& json, const char* name, double& number) {
  const auto at = json.find(name);
  if (at == json.end() || !at->is_number()) return false;
  number = at->get<double>();
  return std::isfinite(number);
}

bool readText(const Json& json, const char* name, std::string& text) {
  const auto at = json.find(name);
  if (at == json.end() || !at->is_string()) return false;
  text = at->get<std::string>();
  return true;
}

bool isOn(const Json& json) {
  const auto at = json.find("on");
  return at != json.end() && at->is_boolean() && at->get<bool>();
}

bool readNumberOf(const Json& json, int& number) {
  double read = 0;
  if (!readNumber(json, "n", read) || std::fabs(read) > 1e9) return false;
  number = static_cast<int>(read);
  return true;
}

struct Form {
  const char* name;
  Kind kind;
  bool text, number, place, corner;
};
constexpr Form kForms[] = {
    {"line", Kind::Line, true, false, false, false},       {"esc", Kind::Escape, false, false, false, false},
    {"stop", Kind::Stop, false, false, false, false},      {"move", Kind::Move, false, false, true, false},
    {"pick", Kind::Pick, false, false, true, false},       {"box", Kind::Window, false, false, true, true},
    {"layer", Kind::Layer, true, true, false, false},      {"layout", Kind::Layout, true, false, false, false},
    {"complete", Kind::Complete, true, true, false, false}};

}  // namespace

bool parseEvent(std::string_view text, PageEvent& event) {
  const Json json = Json::parse(text, nullptr, false);
  std::string type;
  if (!json.is_object() || !readText(json, "t", type)) return false;
  for (const Form& form : kForms) {
    if (type != form.name) continue;
    event.kind = form.kind;
    event.on = isOn(json);
    static_cast<void>(readNumber(json, "reach", event.reach));
    return (!form.text || readText(json, "text", event.text)) && (!form.number || readNumberOf(json, event.number)) &&
           (!form.place || (readNumber(json, "x", event.x) && readNumber(json, "y", event.y))) &&
           (!form.corner || (readNumber(json, "x2", event.x2) && readNumber(json, "y2", event.y2)));
  }
  return false;
}

bool Inbox::push(PageEvent event) {
  {
    const std::lock_guard lock(m_mutex);
    if (event.kind == Kind::Move && !m_events.empty() && m_events.back().kind == Kind::Move)
      m_events.back() = std::move(event);
    else if (m_events.size() >= kMostWaiting)
      return false;
    else
      m_events.push_back(std::move(event));
  }
  m_wake.notify_one();
  return true;
}

void Inbox::pageOpened() {
  const std::lock_guard lock(m_mutex);
  ++m_pages;
  m_hadPage = true;
}

void Inbox::pageClosed() {
  {
    const std::lock_guard lock(m_mutex);
    --m_pages;
    m_leftAt = std::chrono::steady_clock::now();
  }
  m_wake.notify_one();
}

void Inbox::end() {
  {
    const std::lock_guard lock(m_mutex);
    m_over = true;
  }
  m_wake.notify_one();
}

bool Inbox::isOver() {
  const std::lock_guard lock(m_mutex);
  return m_over;
}

Inbox::Taken Inbox::take(PageEvent& event, std::chrono::milliseconds patience, bool tellAlone) {
  std::unique_lock lock(m_mutex);
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    if (m_over) return Taken::Over;
    if (!m_events.empty()) {
      event = std::move(m_events.front());
      m_events.pop_front();
      return Taken::Event;
    }
    const auto now = std::chrono::steady_clock::now();
    const bool alone = tellAlone && m_hadPage && m_pages == 0;
    if (alone && now >= m_leftAt + kGrace) return Taken::Alone;
    if (now >= end) return Taken::Idle;
    m_wake.wait_until(lock, alone ? std::min(end, m_leftAt + kGrace) : end);
  }
}

void Inbox::dropClicks() {
  const std::lock_guard lock(m_mutex);
  std::erase_if(m_events, [](const PageEvent& event) {
    return event.kind == Kind::Move || event.kind == Kind::Pick || event.kind == Kind::Window;
  });
}

}  // namespace cli::page

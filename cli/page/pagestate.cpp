#include "cli/page/pagestate.h"

#include <algorithm>

#include "cli/page/bytes.h"
#include "host/rx/text/number.h"

namespace cli::page {

namespace {

constexpr size_t kMostLog = 256 << 10;        // bytes of what the command line showed
constexpr size_t kMostTextAtOnce = 32 << 10;  // bytes
constexpr size_t kMostAnswers = 64;
constexpr size_t kChunk = 192 << 10;  // bytes of shapes in a message
constexpr double kMargin = 0.35;      // of the screen, sent around it
// Kinds of binary messages.
constexpr uint32_t kShapes = 1, kDragSet = 2;
constexpr uint32_t kLast = 1;  // flag: the page now has what it looks at

std::string quoted(std::string_view utf8) {
  std::string json = "\"";
  for (const char c : utf8) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      json.push_back('\\');
      json.push_back(c);
    } else if (code < 0x20) {
      constexpr const char* kDigits = "0123456789abcdef";
      json += "\\u00";
      json.push_back(kDigits[code >> 4]);
      json.push_back(kDigits[code & 15]);
    } else {
      json.push_back(c);
    }
  }
  return json + "\"";
}

void putShape(std::string& bytes, ShapeId id, const Shape& shape, Detail detail) {
  putU32(bytes, id);
  putU32(bytes, static_cast<uint32_t>(detail) | shape.window << 8);
  putU32(bytes, shape.order);
  putU32(bytes, shape.rgb);
  putF64(bytes, shape.originX);
  putF64(bytes, shape.originY);
  putF32(bytes, shape.bounds.minX - shape.originX);
  putF32(bytes, shape.bounds.minY - shape.originY);
  putF32(bytes, shape.bounds.maxX - shape.originX);
  putF32(bytes, shape.bounds.maxY - shape.originY);
  const bool full = detail == Detail::Full;
  putU32(bytes, full ? shape.partCount : 0);
  putU32(bytes, full ? static_cast<uint32_t>(shape.parts.size()) : 0);
  if (full) bytes += shape.parts;
}

size_t cutAtCharacter(std::string_view text, size_t most) {
  if (text.size() <= most) return text.size();
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  return most;
}

}  // namespace

void PageState::set(Part part, std::string json) {
  const std::lock_guard lock(m_mutex);
  if (m_parts[part].json == json && part != kView) return;
  m_parts[part].json = std::move(json);
  ++m_parts[part].number;
}

void PageState::addText(std::string_view utf8) {
  const std::lock_guard lock(m_mutex);
  m_log += utf8;
  if (m_log.size() <= 2 * kMostLog) return;
  // The older part goes, up to the end of a line where there is one.
  const size_t least = m_log.size() - kMostLog;
  const size_t line = m_log.find('\n', least);
  const size_t cut = line == std::string::npos ? m_log.size() - cutAtCharacter(m_log, kMostLog) : line + 1;
  m_log.erase(0, cut);
  m_logBegin += cut;
}

void PageState::changeScene(SceneChange change) {
  const std::lock_guard lock(m_mutex);
  if (change.anew) {
    m_scene.clear();
    ++m_epoch;
    m_dragging = false;
  }
  for (const ShapeId id : change.gone) m_scene.remove(id);
  for (auto& [id, page] : m_pages) {
    if (change.anew) continue;
    const auto forget = [&](ShapeId shape) {
      if (shape >= page.has.size() || page.has[shape] == Detail::None) return;
      page.has[shape] = Detail::None;
      page.gone.push_back(shape);
    };
    for (const ShapeId shape : change.gone) forget(shape);
    for (const auto& [shape, content] : change.put) forget(shape);
    page.mustLook = true;
  }
  for (auto& [id, shape] : change.put) m_scene.put(id, std::move(shape));
}

void PageState::dragTo(const std::vector<ShapeId>& shapes, const std::array<double, 6>& matrix) {
  const std::lock_guard lock(m_mutex);
  if (!m_dragging || shapes != m_dragged) {
    m_dragged = shapes;
    ++m_dragSet;
    for (auto& [id, page] : m_pages) page.mustLook = true;
  }
  m_dragging = true;
  m_dragMatrix = matrix;
  ++m_drag;
}

void PageState::endDrag() {
  const std::lock_guard lock(m_mutex);
  if (!m_dragging) return;
  m_dragging = false;
  m_dragged.clear();
  ++m_dragSet;
  ++m_drag;
}

void PageState::answer(PageId page, std::string json) {
  const std::lock_guard lock(m_mutex);
  const auto at = m_pages.find(page);
  if (at == m_pages.end()) return;
  at->second.answers.push_back(std::move(json));
  if (at->second.answers.size() > kMostAnswers) at->second.answers.pop_front();
}

std::optional<PageView> PageState::viewOf(PageId page) const {
  const std::lock_guard lock(m_mutex);
  const auto at = m_pages.find(page);
  return at == m_pages.end() ? std::nullopt : at->second.view;
}

std::vector<ShapeId> PageState::within(const Box& region) const {
  const std::lock_guard lock(m_mutex);
  return m_scene.within(region);
}

Shape PageState::shape(ShapeId id) const {
  const std::lock_guard lock(m_mutex);
  const Shape* found = m_scene.find(id);
  return found == nullptr ? Shape() : *found;
}

Box PageState::extents() const {
  const std::lock_guard lock(m_mutex);
  return m_scene.extents();
}

void PageState::open(PageId page) {
  const std::lock_guard lock(m_mutex);
  m_pages[page].textSeen = m_logBegin;
}

void PageState::close(PageId page) {
  const std::lock_guard lock(m_mutex);
  m_pages.erase(page);
}

void PageState::look(PageId page, const PageView& view) {
  const std::lock_guard lock(m_mutex);
  const auto at = m_pages.find(page);
  if (at == m_pages.end()) return;
  at->second.view = view;
  at->second.mustLook = true;
}

bool PageState::next(PageId id, PageMessage& message) {
  const std::lock_guard lock(m_mutex);
  const auto at = m_pages.find(id);
  if (at == m_pages.end()) return false;
  Page& page = at->second;
  message = PageMessage();
  if (nextDrag(page, message) || nextText(page, message)) return true;
  for (int part = 0; part < kPartCount; ++part) {
    if (page.seen[part] == m_parts[part].number) continue;
    page.seen[part] = m_parts[part].number;
    message.bytes = m_parts[part].json;
    return true;
  }
  if (!page.answers.empty()) {
    message.bytes = std::move(page.answers.front());
    page.answers.pop_front();
    return true;
  }
  return nextScene(page, message);
}

bool PageState::nextText(Page& page, PageMessage& message) {
  const uint64_t end = m_logBegin + m_log.size();
  if (page.textSeen >= end) return false;
  const bool skipped = page.textSeen < m_logBegin;
  if (skipped) page.textSeen = m_logBegin;
  const std::string_view rest = std::string_view(m_log).substr(page.textSeen - m_logBegin);
  const size_t count = cutAtCharacter(rest, kMostTextAtOnce);
  message.bytes = std::string(R"({"t":"text","skipped":)") + (skipped ? "true" : "false") +
                  ",\"text\":" + quoted(rest.substr(0, count)) + "}";
  page.textSeen += count;
  return true;
}

bool PageState::nextDrag(Page& page, PageMessage& message) {
  if (page.dragSetSeen != m_dragSet && m_dragging) {
    page.dragSetSeen = m_dragSet;
    putU32(message.bytes, kDragSet);
    putU32(message.bytes, static_cast<uint32_t>(m_epoch));
    putU32(message.bytes, static_cast<uint32_t>(m_dragged.size()));
    for (const ShapeId id : m_dragged) putU32(message.bytes, id);
    message.binary = true;
    return true;
  }
  if (page.dragSeen == m_drag) return false;
  page.dragSeen = m_drag;
  if (!m_dragging) {
    message.bytes = R"({"t":"dragged"})";
    return true;
  }
  message.bytes = R"({"t":"drag","m":[)";
  for (size_t i = 0; i < m_dragMatrix.size(); ++i) message.bytes += (i == 0 ? "" : ",") + gc::realText(m_dragMatrix[i]);
  message.bytes += "]}";
  return true;
}

// What the page lacks of what it looks at, and of what is dragged.
void PageState::lookAgain(Page& page) {
  page.mustLook = false;
  page.completed = false;
  page.sent = 0;
  const PageView& view = *page.view;
  const double halfWidth = view.unitsPerPixel * view.width * (0.5 + kMargin);
  const double halfHeight = view.unitsPerPixel * view.height * (0.5 + kMargin);
  page.waiting = m_scene.look({view.x - halfWidth, view.y - halfHeight, view.x + halfWidth, view.y + halfHeight},
                              view.unitsPerPixel);
  for (const ShapeId id : m_dragged)
    if (m_scene.find(id) != nullptr) page.waiting.push_back({id, Detail::Full});
  std::erase_if(page.waiting,
                [&](const Seen& seen) { return seen.id < page.has.size() && page.has[seen.id] >= seen.detail; });
}

bool PageState::nextScene(Page& page, PageMessage& message) {
  if (!page.view) return false;
  if (page.epoch != m_epoch) {
    page.epoch = m_epoch;
    page.has.clear();
    page.gone.clear();
    page.mustLook = true;
  }
  if (page.mustLook) lookAgain(page);
  if (page.completed && page.gone.empty()) return false;
  std::string shapes;
  uint32_t count = 0;
  while (page.sent < page.waiting.size() && shapes.size() < kChunk) {
    const Seen seen = page.waiting[page.sent++];
    const Shape* shape = m_scene.find(seen.id);
    if (shape == nullptr) continue;
    if (seen.id >= page.has.size()) page.has.resize(static_cast<size_t>(seen.id) + 1, Detail::None);
    if (page.has[seen.id] >= seen.detail) continue;
    page.has[seen.id] = seen.detail;
    putShape(shapes, seen.id, *shape, seen.detail);
    ++count;
  }
  page.completed = page.sent == page.waiting.size();
  message.binary = true;
  for (const uint32_t number : {kShapes, static_cast<uint32_t>(m_epoch), page.completed ? kLast : 0,
                                static_cast<uint32_t>(page.gone.size()), count})
    putU32(message.bytes, number);
  for (const ShapeId id : page.gone) putU32(message.bytes, id);
  page.gone.clear();
  message.bytes += shapes;
  return true;
}

}  // namespace cli::page

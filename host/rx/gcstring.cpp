#include "rx/gcstring.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host/rx/view.h"
#include "rx/gcassert.h"
#include "rx/gcheap.h"

void* gcHeapAlloc(std::size_t size) noexcept { return std::malloc(size == 0 ? 1 : size); }
void* gcHeapResize(void* memory, std::size_t size) noexcept { return std::realloc(memory, size == 0 ? 1 : size); }
void gcHeapFree(void* memory) noexcept { std::free(memory); }

Gcad::ErrorStatus gcutNewString(const GCHAR* input, GCHAR*& output) {
  if (input == nullptr) {
    output = nullptr;
    return Gcad::eOk;
  }
  const std::size_t bytes = (GcView(input).size() + 1) * sizeof(GCHAR);
  auto* copy = static_cast<GCHAR*>(gcHeapAlloc(bytes));
  if (copy == nullptr) return Gcad::eOutOfMemory;
  std::memcpy(copy, input, bytes);
  output = copy;
  return Gcad::eOk;
}

void gcutDelBuffer(GCHAR*& buffer) {
  gcHeapFree(buffer);
  buffer = nullptr;
}

struct GcString::Rep {
  uint32_t length;
  uint32_t capacity;
  [[nodiscard]] GCHAR* text() { return reinterpret_cast<GCHAR*>(this + 1); }
};

namespace {
constexpr GCHAR kEmpty[1] = {0};
}

GcString::GcString(const GCHAR* text) {
  if (text != nullptr) assign(text, GcView(text).size());
}

GcString::GcString(const GCHAR* text, std::size_t length) { assign(text, length); }

GcString::GcString(const GcString& other) {
  if (other.m_rep != nullptr) assign(other.m_rep->text(), other.m_rep->length);
}

GcString& GcString::operator=(const GcString& other) {
  if (this != &other) assign(other.c_str(), other.length());
  return *this;
}

GcString& GcString::operator=(GcString&& other) noexcept {
  std::swap(m_rep, other.m_rep);
  return *this;
}

GcString& GcString::operator=(const GCHAR* text) {
  assign(text, text == nullptr ? 0 : GcView(text).size());
  return *this;
}

GcString GcString::fromUtf8(const char* text, std::size_t length) { return toGcString(::fromUtf8({text, length})); }

GcString GcString::fromAscii(const char* text) {
  GcText wide(text, text + std::strlen(text));
  return toGcString(wide);
}

const GCHAR* GcString::c_str() const noexcept { return m_rep == nullptr ? kEmpty : m_rep->text(); }

std::size_t GcString::length() const noexcept { return m_rep == nullptr ? 0 : m_rep->length; }

void GcString::assign(const GCHAR* text, std::size_t length) {
  if (length == 0) {
    release();
    return;
  }
  auto* rep = static_cast<Rep*>(gcHeapAlloc(sizeof(Rep) + (length + 1) * sizeof(GCHAR)));
  GC_ASSERT(rep != nullptr && length < 0x7FFFFFFF, "out of memory");
  rep->length = static_cast<uint32_t>(length);
  rep->capacity = rep->length;
  std::memcpy(rep->text(), text, length * sizeof(GCHAR));
  rep->text()[length] = 0;
  release();
  m_rep = rep;
}

void GcString::append(const GCHAR* text, std::size_t length) {
  if (length == 0) return;
  const std::size_t total = this->length() + length;
  if (m_rep == nullptr || m_rep->capacity < total) {
    const std::size_t capacity = std::max(total, this->length() * 2);
    auto* rep = static_cast<Rep*>(gcHeapAlloc(sizeof(Rep) + (capacity + 1) * sizeof(GCHAR)));
    GC_ASSERT(rep != nullptr && capacity < 0x7FFFFFFF, "out of memory");
    rep->length = static_cast<uint32_t>(this->length());
    rep->capacity = static_cast<uint32_t>(capacity);
    std::memcpy(rep->text(), c_str(), rep->length * sizeof(GCHAR));
    std::memcpy(rep->text() + rep->length, text, length * sizeof(GCHAR));  // before the release: text may be ours
    release();
    m_rep = rep;
  } else {
    std::memmove(m_rep->text() + m_rep->length, text, length * sizeof(GCHAR));
  }
  m_rep->length = static_cast<uint32_t>(total);
  m_rep->text()[total] = 0;
}

GcString& GcString::operator+=(const GcString& other) {
  append(other.c_str(), other.length());
  return *this;
}

GcString& GcString::operator+=(GCHAR unit) {
  append(&unit, 1);
  return *this;
}

GcString GcString::upper() const {
  GcString copy(*this);
  for (std::size_t i = 0; i < copy.length(); ++i) copy.m_rep->text()[i] = gcUpper(copy.m_rep->text()[i]);
  return copy;
}

int GcString::compare(const GcString& other) const noexcept { return view(*this).compare(view(other)); }

bool GcString::equalsNoCase(const GcString& other) const noexcept { return equalNoCase(view(*this), view(other)); }

std::size_t GcString::heapBytes() const noexcept {
  return m_rep == nullptr ? 0 : sizeof(Rep) + (m_rep->capacity + 1) * sizeof(GCHAR);
}

void GcString::release() noexcept {
  gcHeapFree(m_rep);
  m_rep = nullptr;
}

// The host's growable array: a plain pointer and two counts (16 bytes), memory from gcbase, so that
// two compilers' libraries may meet at the edge. Elements may be moved bytewise only when they are
// trivially copyable; others are moved one by one.
#pragma once

#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

#include "rx/gcassert.h"
#include "rx/gcheap.h"

template <class T>
class GcArray {
 public:
  GcArray() noexcept = default;
  // The second number is the least step by which the array grows.
  explicit GcArray(int physicalLength, int growLength = 8) {
    const int wanted = physicalLength > 0 ? physicalLength : growLength;
    if (wanted > 0) reserve(wanted);
  }
  GcArray(const GcArray& other) { append(other); }
  GcArray(GcArray&& other) noexcept { swap(other); }
  ~GcArray() {
    clear();
    gcHeapFree(m_data);
  }
  GcArray& operator=(const GcArray& other) {
    if (this != &other) {
      clear();
      append(other);
    }
    return *this;
  }
  GcArray& operator=(GcArray&& other) noexcept {
    swap(other);
    return *this;
  }

  [[nodiscard]] int length() const noexcept { return static_cast<int>(m_length); }
  [[nodiscard]] bool isEmpty() const noexcept { return m_length == 0; }
  [[nodiscard]] int physicalLength() const noexcept { return static_cast<int>(m_physical); }
  T& operator[](int index) { return m_data[index]; }
  const T& operator[](int index) const { return m_data[index]; }
  T* begin() noexcept { return m_data; }
  T* end() noexcept { return m_data + m_length; }
  const T* begin() const noexcept { return m_data; }
  const T* end() const noexcept { return m_data + m_length; }
  T& first() { return m_data[0]; }
  T& last() { return m_data[m_length - 1]; }
  [[nodiscard]] const T& last() const { return m_data[m_length - 1]; }

  int append(const T& value) {
    T copy(value);  // the value may live in this very array
    return append(std::move(copy));
  }
  int append(T&& value) {
    if (m_length == m_physical) reserve(grown());
    new (m_data + m_length) T(std::move(value));
    return static_cast<int>(m_length++);
  }
  void append(const GcArray& other) {
    reserve(static_cast<int>(m_length + other.m_length));
    for (const T& value : other) new (m_data + m_length++) T(value);
  }
  void insertAt(int index, const T& value) {
    GC_ASSERT(index >= 0 && static_cast<uint32_t>(index) <= m_length, "array index");
    append(value);
    for (int i = static_cast<int>(m_length) - 1; i > index; --i) std::swap(m_data[i], m_data[i - 1]);
  }
  void removeAt(int index) {
    GC_ASSERT(index >= 0 && static_cast<uint32_t>(index) < m_length, "array index");
    for (uint32_t i = static_cast<uint32_t>(index); i + 1 < m_length; ++i) m_data[i] = std::move(m_data[i + 1]);
    m_data[--m_length].~T();
  }
  void removeLast() { m_data[--m_length].~T(); }
  [[nodiscard]] int find(const T& value) const {
    for (uint32_t i = 0; i < m_length; ++i)
      if (m_data[i] == value) return static_cast<int>(i);
    return -1;
  }
  [[nodiscard]] bool contains(const T& value) const { return find(value) >= 0; }
  void setLogicalLength(int length) {
    while (m_length > static_cast<uint32_t>(length)) removeLast();
    reserve(length);
    while (m_length < static_cast<uint32_t>(length)) new (m_data + m_length++) T();
  }
  void clear() noexcept {
    while (m_length > 0) m_data[--m_length].~T();
  }
  void reserve(int physical) {
    if (static_cast<uint32_t>(physical) <= m_physical) return;
    const std::size_t bytes = static_cast<std::size_t>(physical) * sizeof(T);
    if constexpr (std::is_trivially_copyable_v<T>) {
      // Large blocks move by pages: a long array is never there twice.
      m_data = static_cast<T*>(gcHeapResize(m_data, bytes));
      GC_ASSERT(m_data != nullptr, "out of memory");
    } else {
      T* fresh = static_cast<T*>(gcHeapAlloc(bytes));
      GC_ASSERT(fresh != nullptr, "out of memory");
      for (uint32_t i = 0; i < m_length; ++i) {
        new (fresh + i) T(std::move(m_data[i]));
        m_data[i].~T();
      }
      gcHeapFree(m_data);
      m_data = fresh;
    }
    m_physical = static_cast<uint32_t>(physical);
  }
  void swap(GcArray& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_physical, other.m_physical);
  }
  friend bool operator==(const GcArray& a, const GcArray& b) {
    if (a.m_length != b.m_length) return false;
    for (uint32_t i = 0; i < a.m_length; ++i)
      if (!(a.m_data[i] == b.m_data[i])) return false;
    return true;
  }

 private:
  [[nodiscard]] int grown() const {
    return static_cast<int>(m_physical < 8 ? (m_physical == 0 ? 4 : 8) : m_physical + m_physical / 2);
  }

  T* m_data = nullptr;
  uint32_t m_length = 0;
  uint32_t m_physical = 0;
};

// The host's string: owned, zero-terminated UTF-16, one pointer in size (null when empty), so that
// database objects full of empty names stay small. Its memory comes from gcbase on both sides of the edge.
#pragma once

#include <cstddef>
#include <cstdint>

#include "rx/gcchar.h"

class GcString {
 public:
  GcString() noexcept = default;
  GcString(const GCHAR* text);  // implicit on purpose: literals are strings; null is the empty string
  GcString(const GCHAR* text, std::size_t length);
  GcString(const GcString& other);
  GcString(GcString&& other) noexcept : m_rep(other.m_rep) { other.m_rep = nullptr; }
  ~GcString() { release(); }

  GcString& operator=(const GcString& other);
  GcString& operator=(GcString&& other) noexcept;
  GcString& operator=(const GCHAR* text);

  static GcString fromUtf8(const char* text, std::size_t length);
  static GcString fromAscii(const char* text);

  [[nodiscard]] const GCHAR* c_str() const noexcept;
  [[nodiscard]] std::size_t length() const noexcept;  // in UTF-16 code units
  [[nodiscard]] bool isEmpty() const noexcept { return m_rep == nullptr; }
  [[nodiscard]] GCHAR operator[](std::size_t index) const noexcept { return c_str()[index]; }

  void assign(const GCHAR* text, std::size_t length);
  void append(const GCHAR* text, std::size_t length);
  void clear() { release(); }
  GcString& operator+=(const GcString& other);
  GcString& operator+=(GCHAR unit);

  // Upper-cased by the simple case mapping of the scripts drawings use (Latin, Greek, Cyrillic).
  [[nodiscard]] GcString upper() const;

  // Less, equal, greater as negative, zero, positive; code unit order.
  [[nodiscard]] int compare(const GcString& other) const noexcept;
  [[nodiscard]] bool equalsNoCase(const GcString& other) const noexcept;

  // Bytes of heap behind this string.
  [[nodiscard]] std::size_t heapBytes() const noexcept;

 private:
  struct Rep;
  void release() noexcept;

  Rep* m_rep = nullptr;
};

inline bool operator==(const GcString& a, const GcString& b) noexcept { return a.compare(b) == 0; }
inline bool operator!=(const GcString& a, const GcString& b) noexcept { return a.compare(b) != 0; }
inline bool operator<(const GcString& a, const GcString& b) noexcept { return a.compare(b) < 0; }
inline GcString operator+(GcString a, const GcString& b) {
  a += b;
  return a;
}

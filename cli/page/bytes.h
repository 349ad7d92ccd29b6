// Numbers in messages: little-endian, as all machines are that this program runs on.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace cli::page {

static_assert(std::endian::native == std::endian::little);

template <class T>
void putNumber(std::string& bytes, T value) {
  char raw[sizeof(T)];
  std::memcpy(raw, &value, sizeof(T));
  bytes.append(raw, sizeof(T));
}

inline void putU32(std::string& bytes, uint32_t value) { putNumber(bytes, value); }
inline void putF32(std::string& bytes, double value) { putNumber(bytes, static_cast<float>(value)); }
inline void putF64(std::string& bytes, double value) { putNumber(bytes, value); }

template <class T>
T numberAt(const std::string& bytes, size_t at) {
  T value;
  std::memcpy(&value, bytes.data() + at, sizeof(T));
  return value;
}

}  // namespace cli::page

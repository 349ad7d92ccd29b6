// ASCII between bytes and UTF-16, sixteen characters at a time where the processor can.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "rx/gcchar.h"

namespace gc {

// `to` has room for `count` units; the bytes are ASCII (or Latin-1: the value is kept).
inline void widen(const char* from, std::size_t count, GCHAR* to) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; i + 16 <= count; i += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i + 8), _mm_unpackhi_epi8(bytes, zero));
  }
#endif
  for (; i < count; ++i) to[i] = static_cast<GCHAR>(static_cast<unsigned char>(from[i]));
}

// `to` has room for `count` bytes; every unit is below 0x100.
inline void narrow(const GCHAR* from, std::size_t count, char* to) {
  std::size_t i = 0;
#if defined(__SSE2__)
  for (; i + 16 <= count; i += 16) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_packus_epi16(low, high));
  }
#endif
  for (; i < count; ++i) to[i] = static_cast<char>(from[i]);
}

inline void appendWidened(std::string_view bytes, std::basic_string<GCHAR>& out) {
  const std::size_t before = out.size();
  out.resize(before + bytes.size());
  widen(bytes.data(), bytes.size(), out.data() + before);
}

inline void appendNarrowed(std::basic_string_view<GCHAR> text, std::string& out) {
  const std::size_t before = out.size();
  out.resize(before + text.size());
  narrow(text.data(), text.size(), out.data() + before);
}

}  // namespace gc

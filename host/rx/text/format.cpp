#include "host/rx/text/format.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "host/rx/text/utf.h"

namespace {

enum class Length : uint8_t { Char, Short, Int, Long, LongLong, Size };

struct Conversion {
  bool left = false, plus = false, blank = false, alternate = false, zero = false;
  int width = 0;
  int precision = -1;
  Length length = Length::Int;
  GCHAR type = 0;
};

// va_list may be an array type, which cannot be passed on by reference.
struct Arguments {
  va_list list;
};

int readNumber(const GCHAR*& at, Arguments& arguments) {
  if (*at == GC_T('*')) {
    ++at;
    return va_arg(arguments.list, int);
  }
  int number = 0;
  for (; *at >= GC_T('0') && *at <= GC_T('9'); ++at)
    if (number < 100000) number = number * 10 + (*at - GC_T('0'));
  return number;
}

void readFlags(const GCHAR*& at, Conversion& c) {
  for (;; ++at) {
    switch (*at) {
      case GC_T('-'): c.left = true; break;
      case GC_T('+'): c.plus = true; break;
      case GC_T(' '): c.blank = true; break;
      case GC_T('#'): c.alternate = true; break;
      case GC_T('0'): c.zero = true; break;
      default: return;
    }
  }
}

void readLength(const GCHAR*& at, Conversion& c) {
  for (;; ++at) {
    switch (*at) {
      case GC_T('h'): c.length = c.length == Length::Short ? Length::Char : Length::Short; break;
      case GC_T('l'): c.length = c.length == Length::Long ? Length::LongLong : Length::Long; break;
      case GC_T('z'):
      case GC_T('t'):
      case GC_T('j'): c.length = Length::Size; break;
      default: return;
    }
  }
}

Conversion readConversion(const GCHAR*& at, Arguments& arguments) {
  Conversion c;
  readFlags(at, c);
  c.width = readNumber(at, arguments);
  if (c.width < 0) {
    c.left = true;
    c.width = -c.width;
  }
  if (*at == GC_T('.')) {
    ++at;
    c.precision = readNumber(at, arguments);
  }
  readLength(at, c);
  c.type = *at;
  if (*at != 0) ++at;
  return c;
}

int64_t takeSigned(const Conversion& c, Arguments& arguments) {
  switch (c.length) {
    case Length::Char: return static_cast<signed char>(va_arg(arguments.list, int));
    case Length::Short: return static_cast<short>(va_arg(arguments.list, int));
    case Length::Int: return va_arg(arguments.list, int);
    case Length::Long: return va_arg(arguments.list, long);
    case Length::LongLong: return va_arg(arguments.list, long long);
    case Length::Size: return va_arg(arguments.list, ptrdiff_t);
  }
  return 0;
}

uint64_t takeUnsigned(const Conversion& c, Arguments& arguments) {
  switch (c.length) {
    case Length::Char: return static_cast<unsigned char>(va_arg(arguments.list, unsigned));
    case Length::Short: return static_cast<unsigned short>(va_arg(arguments.list, unsigned));
    case Length::Int: return va_arg(arguments.list, unsigned);
    case Length::Long: return va_arg(arguments.list, unsigned long);
    case Length::LongLong: return va_arg(arguments.list, unsigned long long);
    case Length::Size: return va_arg(arguments.list, size_t);
  }
  return 0;
}

// Sign or prefix, then the body, padded to the width: zeros go between the two.
void put(GcText& out, const Conversion& c, std::string_view prefix, GcView body, bool zeroPads) {
  const size_t length = prefix.size() + body.size();
  const size_t padding = static_cast<size_t>(c.width) > length ? static_cast<size_t>(c.width) - length : 0;
  const bool zeros = zeroPads && c.zero && !c.left;
  if (!c.left && !zeros) out.append(padding, GC_T(' '));
  for (const char unit : prefix) out.push_back(static_cast<GCHAR>(unit));
  if (zeros) out.append(padding, GC_T('0'));
  out.append(body);
  if (c.left) out.append(padding, GC_T(' '));
}

void putAscii(GcText& out, const Conversion& c, std::string_view prefix, std::string_view body, bool zeroPads) {
  put(out, c, prefix, GcText(body.begin(), body.end()), zeroPads);
}

std::string_view signOf(const Conversion& c, bool negative) {
  if (negative) return "-";
  return c.plus ? "+" : c.blank ? " " : "";
}

void putInteger(GcText& out, const Conversion& c, uint64_t magnitude, int base, std::string_view prefix) {
  char digits[24];
  char* end = std::to_chars(digits, digits + sizeof digits, magnitude, base).ptr;
  if (c.type == GC_T('X'))
    for (char* d = digits; d < end; ++d)
      if (*d >= 'a') *d = static_cast<char>(*d - 'a' + 'A');
  std::string body(digits, end);
  if (c.precision == 0 && magnitude == 0) body.clear();
  if (c.precision > static_cast<int>(body.size())) body.insert(0, static_cast<size_t>(c.precision) - body.size(), '0');
  putAscii(out, c, prefix, body, c.precision < 0);
}

// Fixes what to_chars leaves out of the conversion's rules: upper case and the point that # asks for.
std::string realText(const Conversion& c, double magnitude) {
  if (!std::isfinite(magnitude)) return std::isnan(magnitude) ? "nan" : "inf";
  const bool upper = c.type == GC_T('E') || c.type == GC_T('G');
  const GCHAR type = upper ? static_cast<GCHAR>(c.type - GC_T('A') + GC_T('a')) : c.type;
  const std::chars_format format = type == GC_T('f')   ? std::chars_format::fixed
                                   : type == GC_T('e') ? std::chars_format::scientific
                                                       : std::chars_format::general;
  const int precision = c.precision < 0 ? 6 : c.precision > 400 ? 400 : c.precision;
  std::string text(800, '\0');
  const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude, format, precision);
  text.resize(static_cast<size_t>(result.ptr - text.data()));
  if (c.alternate && text.find('.') == std::string::npos) text.insert(std::min(text.find('e'), text.size()), 1, '.');
  if (upper)
    for (char& unit : text)
      if (unit == 'e') unit = 'E';
  return text;
}

void putReal(GcText& out, const Conversion& c, double value) {
  const bool finite = std::isfinite(value);
  putAscii(out, c, signOf(c, std::signbit(value) && !std::isnan(value)), realText(c, std::fabs(value)), finite);
}

void putText(GcText& out, const Conversion& c, GcView text) {
  if (c.precision >= 0 && static_cast<size_t>(c.precision) < text.size())
    text = text.substr(0, static_cast<size_t>(c.precision));
  put(out, c, {}, text, false);
}

void putString(GcText& out, const Conversion& c, Arguments& arguments) {
  if (c.type == GC_T('S') || c.length == Length::Short) {
    const char* text = va_arg(arguments.list, const char*);
    putText(out, c, text == nullptr ? GcText(GC_T("(null)")) : gc::fromUtf8(text));
  } else {
    const GCHAR* text = va_arg(arguments.list, const GCHAR*);
    putText(out, c, text == nullptr ? GcView(GC_T("(null)")) : GcView(text));
  }
}

// False for a conversion that does not exist.
bool putConversion(GcText& out, const Conversion& c, Arguments& arguments) {
  switch (c.type) {
    case GC_T('%'): out.push_back(GC_T('%')); return true;
    case GC_T('d'):
    case GC_T('i'): {
      const int64_t value = takeSigned(c, arguments);
      const uint64_t magnitude = value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
      putInteger(out, c, magnitude, 10, signOf(c, value < 0));
      return true;
    }
    case GC_T('u'): putInteger(out, c, takeUnsigned(c, arguments), 10, ""); return true;
    case GC_T('o'): putInteger(out, c, takeUnsigned(c, arguments), 8, c.alternate ? "0" : ""); return true;
    case GC_T('x'):
    case GC_T('X'): {
      const uint64_t value = takeUnsigned(c, arguments);
      putInteger(out, c, value, 16, !c.alternate || value == 0 ? "" : c.type == GC_T('x') ? "0x" : "0X");
      return true;
    }
    case GC_T('p'):
      putInteger(out, c, reinterpret_cast<uintptr_t>(va_arg(arguments.list, void*)), 16, "0x");
      return true;
    case GC_T('c'): {
      const GCHAR unit = static_cast<GCHAR>(va_arg(arguments.list, int));
      put(out, c, {}, GcView(&unit, 1), false);
      return true;
    }
    case GC_T('s'):
    case GC_T('S'): putString(out, c, arguments); return true;
    case GC_T('f'):
    case GC_T('e'):
    case GC_T('E'):
    case GC_T('g'):
    case GC_T('G'): putReal(out, c, va_arg(arguments.list, double)); return true;
    default: return false;
  }
}

}  // namespace

namespace gc {

void appendFormatted(GcText& out, const GCHAR* format, va_list arguments) {
  Arguments taken;
  va_copy(taken.list, arguments);
  for (const GCHAR* at = format; *at != 0;) {
    if (*at != GC_T('%')) {
      const GCHAR* plain = at;
      while (*at != 0 && *at != GC_T('%')) ++at;
      out.append(plain, static_cast<size_t>(at - plain));
      continue;
    }
    const GCHAR* start = at++;
    const Conversion c = readConversion(at, taken);
    if (!putConversion(out, c, taken)) out.append(start, static_cast<size_t>(at - start));
  }
  va_end(taken.list);
}

}  // namespace gc

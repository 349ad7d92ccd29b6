#include "host/dxf/read/in_filer.h"

#include <cstdarg>

#include "host/db/core/xdata.h"

namespace gc::dxf {
namespace {

constexpr int kFirstXDataCode = 1000;

// A message as printf makes it, of the conversions messages use: %s (text), %d, %u, %x, %%.
std::string formatted(const GCHAR* format, std::va_list arguments) {
  GcText out;
  for (; *format; ++format) {
    if (*format != '%' || !format[1]) {
      out.push_back(*format);
      continue;
    }
    switch (*++format) {
      case 's': out += view(va_arg(arguments, const GCHAR*)); break;
      case 'd': out += fromUtf8(std::to_string(va_arg(arguments, int))); break;
      case 'u': out += fromUtf8(std::to_string(va_arg(arguments, unsigned))); break;
      default: out.push_back(*format);
    }
  }
  return toUtf8(GcView(out));
}

}  // namespace

Gcad::ErrorStatus InFiler::setError(Gcad::ErrorStatus status, const GCHAR* format, ...) {
  m_status = status;
  if (format) {
    std::va_list arguments;
    va_start(arguments, format);
    const Tag* tag = m_cursor.peek();
    m_context.report(GcDbLoadAction::Noted, tag ? tag->offset : 0, m_handle, formatted(format, arguments));
    va_end(arguments);
  }
  return status;
}

Gcad::ErrorStatus InFiler::readResBuf(resbuf* item) {
  if (!item) return Gcad::eInvalidInput;
  const Tag* next = m_cursor.peek();
  if (!next || next->code >= kFirstXDataCode) return Gcad::eEndOfFile;  // no failure: the status stays
  m_before = m_cursor.position();
  m_hasRead = true;
  GcDbGroup group;
  m_cursor.next(group);
  resbuf* node = gcdbGroupToRb(group);
  if (!node) return m_status = Gcad::eInvalidResBuf;
  item->restype = node->restype;
  item->resval = node->resval;  // the strings go with the value
  node->restype = RTNIL;
  node->resval = {};
  gcutRelRb(node);
  return Gcad::eOk;
}

Gcad::ErrorStatus InFiler::pushBackItem() {
  if (!m_hasRead) return Gcad::eFilerError;
  m_cursor.seek(m_before);
  m_hasRead = false;
  return Gcad::eOk;
}

bool InFiler::atSubclassData(const GCHAR* subclassName) {
  const Tag* next = m_cursor.peek();
  if (!next || next->code != 100 || fromUtf8(next->word()) != view(subclassName)) return false;
  m_cursor.seek(m_cursor.position() + 1);
  return true;
}

}  // namespace gc::dxf

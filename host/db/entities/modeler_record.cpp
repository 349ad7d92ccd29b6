#include "host/db/entities/modeler_record.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

#include "host/db/entities/modeler_tags.h"
#include "host/rx/text/number.h"

static_assert(std::endian::native == std::endian::little, "bodies are written as memory has them");

namespace gcmodeler {

Record::Record(Form form, std::string kind) : m_form(form) {
  if (!isBinary()) {
    m_out = std::move(kind);
    return;
  }
  for (size_t at = 0; at <= kind.size();) {
    const size_t end = std::min(kind.find('-', at), kind.size());
    tag(end == kind.size() ? tags::kKind : tags::kSubKind);
    m_out += static_cast<char>(end - at);
    m_out += kind.substr(at, end - at);
    at = end + 1;
  }
}

Record& Record::append(const std::string& word) {
  m_out += ' ';
  m_out += word;
  return *this;
}

Record& Record::tag(int tag) {
  m_out += static_cast<char>(tag);
  return *this;
}

void Record::bytes(const void* value, size_t size) { m_out.append(static_cast<const char*>(value), size); }

Record& Record::number(int tag, int value) {
  this->tag(tag);
  bytes(&value, sizeof value);
  return *this;
}

void Record::triple(int tag, double x, double y, double z) {
  const double values[] = {x + 0.0, y + 0.0, z + 0.0};  // no negative zeros
  if (isBinary()) {
    this->tag(tag);
    bytes(values, sizeof values);
  } else {
    for (const double value : values) append(gc::realText(value));
  }
}

Record& Record::ref(int index) {
  return isBinary() ? number(tags::kReference, index) : append("$" + std::to_string(index));
}

Record& Record::integer(int value) {
  return isBinary() ? number(tags::kInteger, value) : append(std::to_string(value));
}

Record& Record::real(double value) {
  value += 0.0;
  if (!isBinary()) return append(gc::realText(value));
  tag(tags::kReal);
  bytes(&value, sizeof value);
  return *this;
}

Record& Record::place(const GcGePoint3d& point) {
  triple(tags::kPlace, point.x, point.y, point.z);
  return *this;
}

Record& Record::vector(const GcGeVector3d& vector) {
  triple(tags::kVector, vector.x, vector.y, vector.z);
  return *this;
}

Record& Record::flag(bool value, const char* word) {
  return isBinary() ? tag(value ? tags::kTrue : tags::kFalse) : append(word);
}

Record& Record::choice(int value, const char* word) { return isBinary() ? number(tags::kChoice, value) : append(word); }

Record& Record::word(const char* word) {
  if (!isBinary()) return append(word);
  const std::string_view letters(word);
  tag(tags::kKind);
  m_out += static_cast<char>(letters.size());
  m_out += letters;
  return *this;
}

Record& Record::text(const char* text) {
  const std::string_view letters(text);
  if (!isBinary()) return append("@" + std::to_string(letters.size())).append(text);
  tag(tags::kText8);
  m_out += static_cast<char>(letters.size());
  m_out += letters;
  return *this;
}

Record& Record::open() { return isBinary() ? tag(tags::kOpen) : append("{"); }
Record& Record::close() { return isBinary() ? tag(tags::kClose) : append("}"); }

std::string Record::end() const { return isBinary() ? m_out + static_cast<char>(tags::kEnd) : m_out + " #"; }

}  // namespace gcmodeler

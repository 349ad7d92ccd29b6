#include "host/dwg/record/dwgfiler.h"

#include "host/rx/view.h"
#include "rx/resbuf.h"

namespace gc::dwg {

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::readString(GcString& text) {
  return pass([&] {
    const auto read = m_record.t({});
    text = toGcString(read);
  });
}

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::readString(GCHAR** text) {
  GcString read;
  const Gcad::ErrorStatus status = readString(read);
  return status == Gcad::eOk ? gcutNewString(read.c_str(), *text) : status;
}

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::writeString(const GcString& text) {
  return pass([&] { m_record.t(view(text)); });
}

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::writeString(const GCHAR* text) {
  return pass([&] { m_record.t(view(text)); });
}

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::readBytes(void* bytes, uint64_t count) {
  if constexpr (!Record::kWriting) m_record.data.bytes(static_cast<uint8_t*>(bytes), count);
  return filerStatus();
}

template <class Record>
Gcad::ErrorStatus RecordFiler<Record>::writeBytes(const void* bytes, uint64_t count) {
  if constexpr (Record::kWriting) m_record.data.bytes({static_cast<const uint8_t*>(bytes), count});
  return filerStatus();
}

template class RecordFiler<RecordIn>;
template class RecordFiler<RecordOut>;

}  // namespace gc::dwg

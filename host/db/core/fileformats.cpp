#include "host/db/core/fileformats.h"

#include <vector>

#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/rx/file/file_view.h"
#include "host/rx/view.h"

namespace {

std::vector<const GcDbFileFormat*>& formats() {
  static auto* const all = new std::vector<const GcDbFileFormat*>;
  return *all;
}

Gcad::ErrorStatus statusOf(gc::FileError error) {
  switch (error) {
    case gc::FileError::None: return Gcad::eOk;
    case gc::FileError::NotFound: return Gcad::eFileNotFound;
    default: return Gcad::eFileAccessErr;
  }
}

}  // namespace

GcDbFileFormatEntry::GcDbFileFormatEntry(const GcDbFileFormat& format) { formats().push_back(&format); }

const GcDbFileFormat* gcdbFormatOfContent(std::string_view bytes) {
  for (const GcDbFileFormat* format : formats())
    if (format->isMine(bytes)) return format;
  return nullptr;
}

const GcDbFileFormat* gcdbFormatOfName(std::string_view path) {
  const size_t dot = path.rfind('.');
  std::string extension(dot == std::string_view::npos ? std::string_view() : path.substr(dot + 1));
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  if (extension == "dwt" || extension == "dws") extension = "dwg";  // templates and standards
  for (const GcDbFileFormat* format : formats())
    if (extension == format->extension) return format;
  return nullptr;
}

GcDb::GcDbDwgVersion gcdbVersionToWrite(const GcDbFileFormat& format, GcDb::GcDbDwgVersion own) {
  for (int version = own; version < GcDb::kDHL_Current; ++version)
    if (format.writes(static_cast<GcDb::GcDbDwgVersion>(version))) return static_cast<GcDb::GcDbDwgVersion>(version);
  return GcDb::kDHL_Current;
}

Gcad::ErrorStatus gcdbReadDrawing(GcDbDatabase& database, const std::string& path, std::string& message) {
  gc::FileView file;
  const gc::FileStatus opened = file.open(path);
  message = opened.message();
  if (!opened.ok()) return statusOf(opened.error());
  const GcDbFileFormat* format = gcdbFormatOfContent(file.bytes());
  const Gcad::ErrorStatus status = format == nullptr ? Gcad::eBadDwgFile : format->read(database, file.bytes());
  if (status != Gcad::eOk) {
    message = "cannot read " + path + ": " +
              (status == Gcad::eUnsupportedVersion ? "the version is not supported" : "it is no drawing file");
    return status;
  }
  database.setFilename(toGcString(fromUtf8(path)).c_str());
  return Gcad::eOk;
}

Gcad::ErrorStatus gcdbSaveDrawing(GcDbDatabase& database, const std::string& path, const GcDbSaveOptions& options,
                                  std::string& message) {
  const GcDbFileFormat* format = gcdbFormatOfName(path);
  if (format == nullptr || format->write == nullptr) {
    message = "cannot save " + path + ": no drawing format has its extension";
    return Gcad::eInvalidInput;
  }
  const GcDbUndo::Pause pause(database.undo());
  return format->write(database, path, options, message);
}

Gcad::ErrorStatus GcDbDatabase::readDwgFile(const GCHAR* fileName, int, bool, const GCHAR*) {
  if (fileName == nullptr) return Gcad::eInvalidInput;
  if (m_store->size() != 0) return Gcad::eNotApplicable;  // only into a database without contents
  GcString found;
  if (gcdbHostApplicationServices()->findFile(found, fileName, this) != Gcad::eOk) found = fileName;
  std::string message;
  return gcdbReadDrawing(*this, toUtf8(view(found)), message);
}

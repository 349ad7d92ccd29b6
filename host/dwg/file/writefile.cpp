#include <optional>

#include "host/db/core/fileparts.h"
#include "host/dwg/file/beside.h"
#include "host/dwg/file/contents.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/prepare.h"
#include "host/dwg/file/savenotes.h"
#include "host/rx/file/atomic_file.h"

namespace gc::dwg {

bool isWritable(int version) {
  return version == kR2000 || version == kR2004 || version == kR2010 || version == kR2013 || version == kR2018;
}

namespace {

void setCodePage(RecordContext& context) {
  CodePage page = codePageByName(view(context.database.fileParts().codePage));
  if (dwgNumberOf(page) == 0) page = CodePage::Ansi1252;
  context.text = DrawingText(page, false, Carets::Plain);
  context.codePageNumber = dwgNumberOf(page);
}

WritePlan planIn(std::optional<RecordContext>& context, GcDbDatabase& database, int version) {
  context.emplace(database);
  context->version = version;
  setCodePage(*context);
  context->byLayer = database.byLayerLinetype();
  context->byBlock = database.byBlockLinetype();
  context->continuous = database.continuousLinetype();
  context->modelSpace = database.modelSpaceId();
  context->paperSpace = database.paperSpaceId();
  return planFile(*context);
}

}  // namespace

Gcad::ErrorStatus writeBytes(GcDbDatabase& database, int version, std::vector<uint8_t>& bytes, std::string& message,
                             GcDbSaveReport* report) {
  if (!isWritable(version)) {
    message = "DWG of this version is not written";
    return Gcad::eUnsupportedVersion;
  }
  prepareToWrite(database, version);
  std::optional<RecordContext> context;
  WritePlan plan = planIn(context, database, version);
  // The record of what goes beside the others is one of them.
  SaveNotes notes(report, version, typeName);
  const GcDbRoundTrip::Stored stored(collectBeside(*context, plan, notes), database);
  notes.finish();
  if (stored.isNew()) plan = planIn(context, database, version);
  if (report != nullptr) tellSaved(plan, version, *report);
  FileContents contents = makeContents(*context);
  bytes = version < kR2004 ? buildR2000(*context, plan, contents) : buildR2004(*context, plan, contents);
  if (plan.leftOut > 0)
    message = std::to_string(plan.leftOut) + " objects have no form in this version and were left out";
  return Gcad::eOk;
}

Gcad::ErrorStatus writeFile(GcDbDatabase& database, const std::string& path, const WriteOptions& options,
                            std::string& message) {
  std::vector<uint8_t> bytes;
  const Gcad::ErrorStatus status = writeBytes(database, options.version, bytes, message, options.report);
  if (status != Gcad::eOk) {
    message = "cannot save " + path + ": " + message;
    return status;
  }
  const FileStatus written = writeFileAtomically(path, reinterpret_cast<const char*>(bytes.data()), bytes.size(),
                                                 options.backup ? Backup::Keep : Backup::None);
  if (written.ok()) return Gcad::eOk;
  message = written.message();
  return written.error() == FileError::Denied || written.error() == FileError::NotFound ? Gcad::eFileAccessErr
                                                                                        : Gcad::eFileWriteError;
}

}  // namespace gc::dwg

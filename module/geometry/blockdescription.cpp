// The description of a block in a drawing file, told with a status of its own: the call always answers three items.
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/rbchain.h"
#include "module/geometry/filename.h"
#include "module/geometry/sidedatabase.h"

namespace {

enum Found : int16_t { kFound = 0, kNoDrawing = -3, kNoName = -7, kNoBlock = -8 };

constexpr const GCHAR* kFirstWrong = GC_T("\nBłędny typ pierwszego argumentu");
constexpr const GCHAR* kSecondWrong = GC_T("\nBłędny typ drugiego argumentu");
// Deliberate: spelt with a plain letter.
constexpr const GCHAR* kMissing = GC_T("\nBłedna liczba argumentów");

const GCHAR* textOr(const resbuf* rb, const GCHAR* complaint) {
  if (rb->restype == RTSTR && rb->resval.rstring != nullptr) return rb->resval.rstring;
  gcdbFail(complaint);
  return GC_T("");
}

// The file as the host finds it along its search path, else as it was named.
GcString located(const GcString& path) {
  GcString found;
  if (path.isEmpty()) return path;
  return gcdbHostApplicationServices()->findFile(found, path.c_str()) == Gcad::eOk ? found : path;
}

Found findDescription(const GcString& path, const GcString& block, GcString& description) {
  if (block.isEmpty()) return kNoName;
  SideDatabase drawing;
  if (drawing.read(path.c_str()) != Gcad::eOk) return kNoDrawing;
  const GcDbReadPtr<GcDbBlockTable> blocks(drawing->blockTableId());
  GcDbObjectId id;
  if (!blocks || blocks->getAt(block.c_str(), id) != Gcad::eOk) return kNoBlock;
  const GcDbReadPtr<GcDbBlockTableRecord> record(id);
  if (!record) return kNoBlock;
  ignore(record->comments(description));
  return kFound;
}

GcString onOneLine(const GcString& text) {
  GcString line;
  for (std::size_t i = 0; i < text.length(); ++i) {
    const bool isControl = (text[i] >= 8 && text[i] <= 10) || text[i] == 12 || text[i] == 13;
    line += isControl ? GC_T(' ') : text[i];
  }
  return line;
}

}  // namespace

// Faults in the arguments are reported and read as empty texts; the call goes on.
int getBlockDescription() {
  const resbuf* first = gcedGetArgs();
  const resbuf* second = first != nullptr ? first->rbnext : nullptr;
  const GCHAR* pathGiven = first != nullptr ? textOr(first, kFirstWrong) : GC_T("");
  const GCHAR* blockGiven = GC_T("");
  if (second != nullptr)
    blockGiven = textOr(second, kSecondWrong);
  else
    gcdbFail(kMissing);

  GcString description;
  const GcString path = located(trimmed(pathGiven));
  const Found status = findDescription(path, trimmed(blockGiven), description);
  RbChain list;
  list.appendShort(status);
  list.appendString(description.c_str());
  list.appendString(onOneLine(description).c_str());
  return ret::list(list);
}

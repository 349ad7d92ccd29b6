// Names of statuses, and the end of the process when a promise of our own is broken.
#include <cstdio>
#include <cstdlib>

#include "rx/gcassert.h"
#include "rx/gcstatus.h"

const char* gcadErrorStatusName(Gcad::ErrorStatus status) {
#define GC_STATUS(name) \
  case Gcad::name: return #name
  switch (status) {
    GC_STATUS(eOk);
    GC_STATUS(eNotApplicable);
    GC_STATUS(eInvalidInput);
    GC_STATUS(eAmbiguousInput);
    GC_STATUS(eAmbiguousOutput);
    GC_STATUS(eOutOfMemory);
    GC_STATUS(eBufferTooSmall);
    GC_STATUS(eInvalidOpenState);
    GC_STATUS(eHandleExists);
    GC_STATUS(eNullHandle);
    GC_STATUS(eUnknownHandle);
    GC_STATUS(eHandleInUse);
    GC_STATUS(eNullObjectPointer);
    GC_STATUS(eNullObjectId);
    GC_STATUS(eKeyNotFound);
    GC_STATUS(eDuplicateKey);
    GC_STATUS(eInvalidIndex);
    GC_STATUS(eCannotBeErasedByCaller);
    GC_STATUS(eDuplicateRecordName);
    GC_STATUS(eNotInDatabase);
    GC_STATUS(eNoDatabase);
    GC_STATUS(eWasOpenForRead);
    GC_STATUS(eWasOpenForWrite);
    GC_STATUS(eWasOpenForNotify);
    GC_STATUS(eNotOpenForRead);
    GC_STATUS(eNotOpenForWrite);
    GC_STATUS(eWasErased);
    GC_STATUS(eAlreadyInDb);
    GC_STATUS(eNotNewlyCreated);
    GC_STATUS(eNotThatKindOfClass);
    GC_STATUS(eIllegalReplacement);
    GC_STATUS(eOnLockedLayer);
    GC_STATUS(eEndOfFile);
    GC_STATUS(eWrongDatabase);
    GC_STATUS(eDegenerateGeometry);
    GC_STATUS(eInvalidExtents);
    GC_STATUS(eNullExtents);
    GC_STATUS(eNonPlanarEntity);
    GC_STATUS(eCannotScaleNonUniformly);
    GC_STATUS(eNotClosed);
    GC_STATUS(eDwgObjectImproperlyRead);
    GC_STATUS(eInvalidDxfCode);
    GC_STATUS(eInvalidResBuf);
    GC_STATUS(eInvalidKey);
    GC_STATUS(eNullEntityPointer);
    GC_STATUS(eNoActiveTransactions);
    GC_STATUS(eUserBreak);
    GC_STATUS(eXRefDependent);
    GC_STATUS(eRegappIdNotFound);
    GC_STATUS(eBadDxfSequence);
    GC_STATUS(eFilerError);
    GC_STATUS(eFileNotFound);
    GC_STATUS(eFileAccessErr);
    GC_STATUS(eFileInternalErr);
    GC_STATUS(eBadDxfFile);
    GC_STATUS(eBadDwgFile);
    GC_STATUS(eUnsupportedVersion);
    GC_STATUS(eFileWriteError);
    GC_STATUS(eLockViolation);
    GC_STATUS(eInvalidBlockName);
    GC_STATUS(eInvalidSymbolTableName);
    GC_STATUS(eDeletionOfCurrentLayer);
    GC_STATUS(eRecordInUse);
    GC_STATUS(eStringTooLong);
    GC_STATUS(eUndoOperationNotAvailable);
    GC_STATUS(eSelfReference);
    GC_STATUS(eNotAPlugIn);
    GC_STATUS(eNoInputFiler);
    GC_STATUS(eInvalidLayout);
    GC_STATUS(eMakeMeProxy);
  }
#undef GC_STATUS
  return "unknown status";
}

void gcAssertFailed(const char* condition, const char* message, const char* file, int line) {
  std::fprintf(stderr, "gcad: internal error: %s (%s) at %s:%d\n", message, condition, file, line);
  std::fflush(stderr);
  std::abort();
}

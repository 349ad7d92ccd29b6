// Statuses: how every call of the interface that the world may refuse says what happened.
// The numbers of the first rows are part of the interface and never change.
#pragma once

namespace Gcad {

enum ErrorStatus : int {
  eOk = 0,
  eNotApplicable = 2,
  eInvalidInput = 3,
  eAmbiguousInput = 4,
  eAmbiguousOutput = 5,
  eOutOfMemory = 6,
  eBufferTooSmall = 7,
  eInvalidOpenState = 8,
  eHandleExists = 10,
  eNullHandle = 11,
  eUnknownHandle = 13,
  eHandleInUse = 14,
  eNullObjectPointer = 15,
  eNullObjectId = 16,
  eKeyNotFound = 22,
  eDuplicateKey = 23,
  eInvalidIndex = 24,
  eCannotBeErasedByCaller = 26,
  eDuplicateRecordName = 27,
  eNotInDatabase = 28,
  eNoDatabase = 29,
  eWasOpenForRead = 30,
  eWasOpenForWrite = 31,
  eWasOpenForNotify = 32,
  eNotOpenForRead = 33,
  eNotOpenForWrite = 34,
  eWasErased = 35,
  eAlreadyInDb = 36,
  eNotNewlyCreated = 37,
  eNotThatKindOfClass = 38,
  eIllegalReplacement = 39,
  eOnLockedLayer = 40,
  eEndOfFile = 41,
  eWrongDatabase = 42,
  eDegenerateGeometry = 43,
  eInvalidExtents = 44,
  eNullExtents = 45,
  eNonPlanarEntity = 46,
  eCannotScaleNonUniformly = 47,
  eNotClosed = 48,
  eDwgObjectImproperlyRead = 49,
  eInvalidDxfCode = 50,
  eInvalidResBuf = 51,
  eInvalidKey = 52,
  eNullEntityPointer = 53,
  eNoActiveTransactions = 54,
  eUserBreak = 55,
  eXRefDependent = 56,
  eRegappIdNotFound = 57,
  eBadDxfSequence = 58,
  eFilerError = 59,
  eFileNotFound = 60,
  eFileAccessErr = 61,
  eFileInternalErr = 62,
  eBadDxfFile = 63,
  eBadDwgFile = 64,
  eUnsupportedVersion = 65,
  eFileWriteError = 66,
  eLockViolation = 67,
  eInvalidBlockName = 68,
  eInvalidSymbolTableName = 69,
  eDeletionOfCurrentLayer = 70,
  eRecordInUse = 71,
  eStringTooLong = 72,
  eUndoOperationNotAvailable = 73,
  eSelfReference = 74,
  eNotAPlugIn = 75,
  eNoInputFiler = 76,
  eInvalidLayout = 77,
  eMakeMeProxy = 301
};

}  // namespace Gcad

// The status's name ("eKeyNotFound"), for logs and messages; "unknown status" for a foreign number.
const char* gcadErrorStatusName(Gcad::ErrorStatus status);

// Says that a status is dropped on purpose.
inline void ignore(Gcad::ErrorStatus) {}

// Objects of other programs in a drawing, in a frame. Their bytes are theirs: kept as they came.
#pragma once

#include "db/entity.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"

// Of R13 and before.
class GcDbOleFrame : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbOleFrame);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbOleFrame() = default;

 protected:
  // Where it stands is in its bytes. Errors: eNotApplicable.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  friend struct GcDbRecordOf<GcDbOleFrame>;
  friend struct GcDbOleFiling;

  int16_t m_version = 1;
  int16_t m_mode = 0;
  GcArray<uint8_t> m_bytes;
};

class GcDbOle2Frame : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbOle2Frame);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbOle2Frame() = default;
  // The bytes with the corners they begin with set to those of the object.
  [[nodiscard]] GcArray<uint8_t> bytesInRecords() const;
  // Takes the corners from the bytes, where they say them.
  void setBytes(const GcArray<uint8_t>& bytes);
  [[nodiscard]] bool bytesHaveCorners() const;
  // The frame.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  // Errors: eNotApplicable for a turn of bytes that do not say their corners.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  friend struct GcDbRecordOf<GcDbOle2Frame>;
  friend struct GcDbOleFiling;
  static constexpr int kCorners = 4;  // from the upper left one to the right
  void corners(GcGePoint3d (&points)[kCorners]) const;
  void putCorners(GcArray<uint8_t>& bytes, const GcGePoint3d (&points)[kCorners]) const;

  int16_t m_version = 2;
  GcString m_description{GC_T("OLE")};  // of the program it came from; DWG files have none
  GcGePoint3d m_upperLeft;
  GcGePoint3d m_lowerRight;
  int16_t m_type = 2;  // 1 linked, 2 embedded, 3 static
  int16_t m_mode = 1;  // 1 model space, 0 a layout
  int16_t m_lockAspect = 1;
  GcArray<uint8_t> m_bytes;
};

// Values of described fields by their kind, for the packing of records.
#pragma once

#include "host/db/describe/field.h"

namespace gc::dwg {

// Integers of every width, and reals that hold one. Files' own form where a row says how (get, set).
[[nodiscard]] int64_t intOf(const GcDbField& row, const void* record);
void setInt(const GcDbField& row, void* record, int64_t value);
[[nodiscard]] double realOf(const GcDbField& row, const void* record);
void setReal(const GcDbField& row, void* record, double value);
// Points and vectors of two and three coordinates alike; a missing z reads as zero.
[[nodiscard]] GcGePoint3d pointOf(const GcDbField& row, const void* record);
void setPoint(const GcDbField& row, void* record, const GcGePoint3d& value);
[[nodiscard]] GcView textOf(const GcDbField& row, const void* record);
void setText(const GcDbField& row, void* record, GcView value);
[[nodiscard]] GcDbObjectId idOf(const GcDbField& row, const void* record);
void setId(const GcDbField& row, void* record, GcDbObjectId value);
[[nodiscard]] GcCmEntityColor colorOf(const GcDbField& row, const void* record);
void setColor(const GcDbField& row, void* record, GcCmEntityColor value);

// The kind of reference as records code it: 2 soft owner, 3 hard owner, 4 soft pointer, 5 hard pointer.
[[nodiscard]] unsigned handleCodeOf(Is meaning);

}  // namespace gc::dwg

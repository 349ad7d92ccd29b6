#include "host/db/objects/datavalue.h"

void GcDbDataValue::setReal(double value) {
  *this = GcDbDataValue();
  flags = 0;
  kind = kDouble;
  real = value;
}

void GcDbDataValue::setInteger(int32_t value) {
  *this = GcDbDataValue();
  flags = 0;
  kind = kLong;
  integer = value;
}

void GcDbDataValue::setString(const GcString& value) {
  *this = GcDbDataValue();
  flags = 0;
  kind = kString;
  string = value;
}

void GcDbDataValue::setPoint(const GcGePoint3d& value) {
  *this = GcDbDataValue();
  flags = 0;
  kind = kPoint3d;
  point = value;
}

// Objects of any described class with generated values, for laws that must hold for all of them.
#pragma once

#include <random>

#include "db/database.h"
#include "host/db/describe/classinfo.h"

// Fills every field of a record, arrays with up to three elements, with values that files can carry.
class ObjectGenerator {
 public:
  ObjectGenerator(GcDbDatabase& database, unsigned seed) : m_database(database), m_random(seed) {}
  void fill(GcDbObject& object);

 private:
  void fillRow(const GcDbField& row, void* record);
  double real();
  int integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
  GcString text();
  GcDbObjectId recordFor(Is is);

  GcDbDatabase& m_database;
  std::mt19937 m_random;
};

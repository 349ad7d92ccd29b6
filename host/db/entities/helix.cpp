#include "host/db/entities/helix.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbHelix, "AcDbHelix")

const GcDbField GcDbHelix::kFields[] = {
    marker("AcDbHelix"),
    field<&GcDbHelix::m_majorVersion>(90, "majorVersion", Is::Plain),
    field<&GcDbHelix::m_maintenanceVersion>(91, "maintenanceVersion", Is::Plain),
    field<&GcDbHelix::m_axisBase>(10, "axisBase", Is::WcsPoint),
    field<&GcDbHelix::m_start>(11, "start", Is::WcsPoint),
    field<&GcDbHelix::m_axis>(12, "axis", Is::Direction),
    field<&GcDbHelix::m_radius>(40, "radius", Is::Length),
    field<&GcDbHelix::m_turns>(41, "turns", Is::Plain),
    field<&GcDbHelix::m_turnHeight>(42, "turnHeight", Is::Length),
    field<&GcDbHelix::m_isCounterClockwise>(290, "isCounterClockwise", Is::Plain),
    field<&GcDbHelix::m_constraint>(280, "constraint", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbHelix);

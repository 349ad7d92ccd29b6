// Whole drawings as R12 has them. What R12 cannot say is replaced (an ellipse by a polyline, a hatch by a block of its
// lines) or left out, and told object by object.
#pragma once

#include "host/dxf/tags/tag_writer.h"
#include "host/rx/text/drawing_text.h"

class GcDbDatabase;
class GcDbSaveReport;

namespace gc::dxf {

// `report` may be null.
void writeR12(GcDbDatabase& database, TagWriter& tags, const DrawingText& text, GcDbSaveReport* report);

}  // namespace gc::dxf

// What a drawing has before anything is drawn into it, and what a drawing read from a file must have.
#pragma once

class GcDbDatabase;

// Tables with their standard records, model and paper spaces, root dictionary, header defaults.
void gcdbBuildNewDrawing(GcDbDatabase& database);

// How DWG records have a class whose fields do not simply follow each other: a specialization per class, in
// host/dwg/packing, that passes the members in the order of the record. Classes name it as their friend.
#pragma once

template <class Class>
struct GcDbRecordOf;  // static void pass(Pass& pass, Class& object), the same text for reading and writing

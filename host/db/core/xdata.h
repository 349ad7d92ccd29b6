// Extended data between the packed form objects keep and chains of result buffers.
#pragma once

#include "host/db/describe/group.h"

class GcDbDxfFiler;

// The chain of one application (empty name: of all); null when there is none. The caller releases it.
resbuf* gcdbXDataChain(const GcDbGroupList& xdata, GcView applicationName);

// `former` with the applications of `chain` replaced; an application without values is removed.
// Errors: eInvalidResBuf (a code outside 1000..1071, values before the first application, braces that do not
// match), eRegappIdNotFound (an application the database has not registered), eInvalidInput (over 16383 bytes).
Gcad::ErrorStatus gcdbMergeXData(const GcDbGroupList& former, const resbuf* chain, GcDbDatabase* database,
                                 GcDbGroupList& merged);

// One group as a result buffer node (strings copied); null for a kind no chain carries.
resbuf* gcdbGroupToRb(const GcDbGroup& group);

// One node as a group; texts point into the node. False for a code no object keeps.
bool gcdbRbToGroup(const resbuf& node, GcDbGroup& group);

// One group through a DXF filer's writing calls.
Gcad::ErrorStatus gcdbWriteGroup(GcDbDxfFiler& filer, const GcDbGroup& group);

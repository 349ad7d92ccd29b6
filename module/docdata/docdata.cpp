#include "module/docdata/docdata.h"

GcApDataManager<CDocData> docDataManager;

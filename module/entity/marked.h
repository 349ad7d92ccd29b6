// Marked entities: those with extended data of the surrounding application.
#pragma once

#include "module/app/host.h"

// True when an application name begins with ST_ or ZB_ in any case.
bool isMarkName(const GCHAR* applicationName);
bool isMarked(const GcDbEntity& entity);

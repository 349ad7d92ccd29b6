// Texts around file names.
#pragma once

#include "module/app/host.h"

// Without blanks, tabs and line ends at both ends.
GcString trimmed(const GCHAR* text);

// The name a drawing file gives to its block: the path's last name without its extension, in upper case.
GcString blockNameOfFile(const GCHAR* path);

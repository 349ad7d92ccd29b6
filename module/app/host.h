// The host's interface, as the whole module sees it. Another provider of the same interface is put in by changing
// this file alone.
#pragma once

#include "ap/docman.h"
#include "db/curve.h"
#include "db/database.h"
#include "db/dictionary.h"
#include "db/entity.h"
#include "db/filer.h"
#include "db/idmapping.h"
#include "db/line.h"
#include "db/object.h"
#include "db/symboltable.h"
#include "ed/cmdstack.h"
#include "ed/gced.h"
#include "ge/line3d.h"
#include "ge/matrix3d.h"
#include "rx/gcarray.h"
#include "rx/gcheap.h"
#include "rx/gcstring.h"
#include "rx/resbuf.h"
#include "rx/rxapp.h"
#include "rx/rxclass.h"

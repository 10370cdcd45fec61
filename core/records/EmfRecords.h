#pragma once

// The records of enhanced metafiles, laid out as GdiStructures.h says. The records of a family
// have one structure and a name for each record.

#include "core/records/EmfDrawingRecords.h"
#include "core/records/EmfObjectRecords.h"

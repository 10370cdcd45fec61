#pragma once

#include "cli/Exact.h"

/// What the module of the exact path lets out, by this name.
extern "C" const svgtool::ExactPath metafile2svgExactPath;

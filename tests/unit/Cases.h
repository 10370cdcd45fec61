#pragma once

#include "support/Conversion.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>

namespace svgtool::test {

/// A file of the records that @p records lists, parted by ";" or line feeds, as docs/output.md and
/// tests/golden/README.md tell. A line that makes no sense fails the test.
EmfBuilder emf(const QString &records, EmfBuilder file = {});

/// A WMF of 100 by 50 whose coordinates map to themselves.
inline WmfBuilder plainWmf()
{
    return WmfBuilder().placeable(0, 0, 100, 50, 96).record(0x020B, { 0, 0 });
}

/// As emf().
WmfBuilder wmf(const QString &records, WmfBuilder file = plainWmf());

} // namespace svgtool::test

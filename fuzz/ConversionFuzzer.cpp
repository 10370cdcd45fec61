// A whole metafile. Where a format is linked in, fuzz/RecordMutator.cpp keeps its sizes and counts
// plausible, so that most of the bytes that change are ones that handlers read; else any bytes.

#include "fuzz/Harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace svgtool::fuzz;
    convertAndCheck(bytesOf(data, size));
    return 0;
}

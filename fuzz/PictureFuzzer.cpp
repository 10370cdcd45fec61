// The picture of a whole metafile, and its report. Where a format is linked in,
// fuzz/RecordMutator.cpp keeps sizes and counts plausible; else the bytes are any.

#include "fuzz/Harness.h"
#include "fuzz/PictureChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    svgtool::PictureOptions options;
    options.scale = size % 3 == 0 ? 0.25 : 1;
    svgtool::fuzz::drawAndCheck(std::as_bytes(std::span(data, size)), options);
    return 0;
}

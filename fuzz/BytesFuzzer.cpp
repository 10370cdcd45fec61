// Any bytes at all, with the text metrics of the installed fonts.

#include "fuzz/Harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace svgtool::fuzz;
    convertAndCheck(bytesOf(data, size));
    return 0;
}

#pragma once

#include "core/records/MetafileFacts.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

namespace svgtool::test {

/// A copy of a metafile that is damaged behind its header: cut where @p number is even, with up to
/// eight bytes changed where it is odd. The same for the same number, on every machine.
inline std::string mutantOf(std::string file, uint32_t number)
{
    const MetafileFacts facts = inspectMetafile({ file.data(), int64_t(file.size()) });
    const auto header = size_t(std::clamp<int64_t>(facts.firstRecord, 0, int64_t(file.size())));
    if (header == file.size())
        return file;
    std::mt19937 random(number);
    const auto below = [&](size_t limit) { return random() % limit; };
    if (number % 2 == 0) {
        file.resize(header + below(file.size() - header));
        return file;
    }
    for (size_t changes = 1 + below(8); changes > 0; --changes)
        file[header + below(file.size() - header)] = char(below(256));
    return file;
}

} // namespace svgtool::test

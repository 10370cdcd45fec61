#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace svgtool::fuzz {

/// Ends the run as a finding unless @p holds; also in builds without assert().
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

/// Converts @p metafile and requires of what comes back what svgtool/SVGTool.h and docs/limits.md
/// promise whatever the bytes are. Gives the document; empty when there is none.
QByteArray convertAndCheck(const QByteArray &metafile);

} // namespace svgtool::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

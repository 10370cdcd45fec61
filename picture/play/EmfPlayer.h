#pragma once

#include "core/base/Bytes.h"
#include "core/records/MetafileFacts.h"
#include "picture/gdi/DeviceContext.h"

#include <cstdint>

namespace svgtool::picture {

/// Plays the records of an enhanced metafile ([MS-EMF]) in a device context.
///
/// A player reads and calls. It keeps no state of drawing and knows no SVG.
class EmfPlayer
{
public:
    /// What a header says of the picture.
    struct Picture
    {
        Device device;
        double width = 0, height = 0; ///< CSS pixels
        const char *guess = ""; ///< why the size is one; empty where the header tells it
    };
    static Picture pictureOf(const MetafileFacts &facts);

    explicit EmfPlayer(DeviceContext &context) : m_context(context) { }

    /// Plays one record, its head included. Nothing of the record is trusted.
    Played play(uint32_t type, ByteView record);
    /// Plays all records of a file up to the end record.
    /// @param firstRecord  where the one behind the header lies
    /// @param tally        what became of each record is counted there, if not null
    void playAll(ByteView file, int64_t firstRecord, RecordTally *tally);

private:
    Played comment(ByteView record);

    DeviceContext &m_context;
    bool m_isEmfPlusOnly = false; ///< the file has no EMF records of what its EMF+ ones draw
};

} // namespace svgtool::picture

#pragma once

#include "core/base/Bytes.h"
#include "core/records/MetafileFacts.h"
#include "core/records/WmfEscapes.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/play/Shown.h"

#include <cstdint>

namespace svgtool::picture {

/// Plays the records of a 16-bit Windows metafile ([MS-WMF]) in a device context, as an EmfPlayer
/// those of an enhanced one.
class WmfPlayer
{
public:
    /// What headers, or the first window, say of the picture.
    struct Picture : Shown
    {
        PointL viewport; ///< extent that a player sets
        PointL windowOrigin, windowExtent; ///< until the file sets its own
        bool showsAll = false; ///< nothing tells the size

        /// Makes the size that of what was drawn, as far as anything was.
        void show(const RectD &drawn);
    };
    static Picture pictureOf(ByteView file, const MetafileFacts &facts);

    /// Makes what is shown the viewport of the context, as who plays a metafile does.
    /// @param escapes  of the same file; they outlive the player
    WmfPlayer(DeviceContext &context, const Picture &picture, const WmfEscapes &escapes);

    /// Plays one record, its head included. Nothing of the record is trusted.
    Played play(uint32_t type, ByteView record);
    /// Plays all records of a file up to the end record.
    /// @param tally  what became of each record is counted there, if not null
    void playAll(ByteView file, const MetafileFacts &facts, RecordTally *tally);

private:
    Played escape(ByteView record) const;

    DeviceContext &m_context;
    const WmfEscapes &m_escapes;
};

} // namespace svgtool::picture

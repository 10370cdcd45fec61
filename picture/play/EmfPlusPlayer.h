#pragma once

#include "core/records/RecordTally.h"
#include "picture/play/EmfPlusCalls.h"

namespace svgtool::picture {

/// Plays the EMF+ records that comments of an enhanced metafile hold ([MS-EMFPLUS]).
class EmfPlusPlayer
{
public:
    /// @param context  plays the other records; what it paints in is painted in
    /// @param playing  of the document; lives longer
    EmfPlusPlayer(DeviceContext &context, Playing &playing);

    /// Plays the records of a comment, as far as they make sense.
    /// @param offset  of @p records in the file
    /// @param number  of the comment among the file's records
    /// @param tally   what became of each record is counted there, if not null
    void playAll(ByteView records, int64_t offset, uint32_t number, RecordTally *tally);

    /// The records of the other kind that follow are part of the picture.
    bool isLeftToGdi() const { return m_isLeftToGdi; }
    /// Records were met that nothing could be made of.
    bool isDamaged() const { return m_isDamaged; }

private:
    Played playOne(uint32_t type, const emfplus::PlusRecord &record);

    emfplus::Play m_play;
    bool m_isLeftToGdi = false;
    bool m_isDamaged = false;
};

} // namespace svgtool::picture

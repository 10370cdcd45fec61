#pragma once

#include "core/base/Bytes.h"
#include "core/records/MetafileFacts.h"
#include "core/records/RecordIterator.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/play/EmfPlusPlayer.h"
#include "picture/play/Shown.h"

#include <cstdint>
#include <memory>

namespace svgtool::picture {

/// Plays the records of an enhanced metafile ([MS-EMF]) in a device context.
///
/// A player reads and calls. It keeps no state of drawing and knows no SVG.
class EmfPlayer
{
public:
    /// What a header says of the picture.
    static Shown shownOf(const MetafileFacts &facts);

    /// What is done with EMF+ records where a file holds its picture in those of both kinds.
    enum class Dual : uint8_t {
        EmfPlus, ///< they are played
        Emf, ///< those of the other kind are
        Damaged, ///< the same, since they make no sense
    };
    /// Slots of the table of objects that a file asks for.
    static size_t handlesOf(ByteView file);
    /// Plays a whole file in a scene: by its EMF records where its EMF+ ones turn out to be
    /// damaged, as far as it holds its picture in both.
    /// @param clip   of the scene, which all is cut to
    /// @param tally  as of playAll
    static void playFile(ByteView file, const MetafileFacts &facts, const Device &device,
                         SceneBuilder &builder, Index clip, Playing &playing, RecordTally *tally);

    /// @param playing  of the document; lives longer
    EmfPlayer(DeviceContext &context, Playing &playing, Dual dual)
        : m_context(context), m_playing(playing), m_dual(dual),
          m_nodesBefore(context.builder().mark().nodes),
          m_groupsBefore(context.builder().groupDepth())
    {
    }

    /// Plays all records of a file up to the end record. Nothing of them is trusted.
    /// @param tally  what became of each record is counted there, if not null
    void playAll(ByteView file, const MetafileFacts &facts, RecordTally *tally);
    /// It played EMF+ records that are damaged, of a file that holds its picture in EMF ones, too.
    bool hasBetterEmf() const { return m_isDual && m_plus && m_plus->isDamaged(); }

private:
    Played play(const Record &record, uint32_t number, RecordTally *tally);
    Played comment(const Record &record, uint32_t number, RecordTally *tally);
    void group(ByteView comment);

    DeviceContext &m_context;
    Playing &m_playing;
    Dual m_dual;
    size_t m_nodesBefore; ///< of the scene
    size_t m_groupsBefore; ///< around this metafile
    bool m_isDual = false;
    bool m_isAdded = false; ///< EMF+ records go on with what others have begun
    std::unique_ptr<EmfPlusPlayer> m_plus; ///< once EMF+ records are played
};

} // namespace svgtool::picture

#include "exact/emf/Emf2SVG.h"

#include "core/records/EmfRecordNames.h"
#include "exact/logging/TraceScope.h"

#include <QtEndian>

#include <optional>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// Whether a comment holds drawing of the extended format, which is not read.
static bool holdsDrawing(quint32 type, ByteView record)
{
    constexpr quint32 kComment = 70; // EMR_GDICOMMENT
    constexpr quint32 kExtended = 0x2B464D45; // "EMF+", behind the head and the data's length
    const auto identifier = slice(record, 12, 4);
    return type == kComment && identifier
            && qFromLittleEndian(readPadded<quint32>(*identifier)) == kExtended;
}

qint32 Emf2SvgConverter::handleAndNote(Handler handler, char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::handleAndNote");
    const ByteView all{ record, size };
    const auto type = qFromLittleEndian(readPadded<EMR>(all).iType);
    const bool isDrawing = holdsDrawing(type, all);
    const qint32 result = handler != nullptr ? (this->*handler)(record, size) : RecordHandled;

    const bool doesNothing = handler == nullptr || handler == &Emf2SvgConverter::OnAcceptAndIgnore
            || handler == &Emf2SvgConverter::OnDoNothing;
    RecordOutcome outcome =
            recordOutcome(type, doesNothing ? std::nullopt : std::optional(result), kEmfOutcomes);
    if (isDrawing)
        outcome = RecordOutcome::Skipped;
    m_tally->note(type, outcome, size);
    return result;
}

} // namespace svgtool

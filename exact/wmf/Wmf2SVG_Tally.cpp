#include "exact/wmf/Wmf2SVG.h"

#include "core/records/WmfRecordTypes.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/RecordOutcomes.h"

#include <QtEndian>

#include <algorithm>
#include <optional>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

// The types that are not carried out as GDI does, each with the reason.
// clang-format off
static constexpr TypeOutcome kExceptions[] = {
    { Meta::ExtTextOut, RecordOutcome::Approximated }, // no distances, no background
};
// clang-format on

// Whether a record sends the printer something else than a comment, which may be drawing.
static bool holdsDrawing(quint16 function, ByteView record)
{
    constexpr quint16 kComment = 15; // MFCOMMENT, behind the head
    const auto escape = slice(record, sizeof(WMR), 2);
    return function == Meta::Escape && escape
            && qFromLittleEndian(readPadded<quint16>(*escape)) != kComment;
}

void WMF2SVGConverter::handleAndNote(Handler handler, char *record, quint32 size, quint16 function)
{
    SVGTOOL_TRACE("WMF2SVGConverter::handleAndNote");
    const bool isDrawing = holdsDrawing(function, { record, size });
    const qint32 result = handler != nullptr ? (this->*handler)(record, size) : RecordHandled;

    const bool doesNothing = handler == nullptr || handler == &WMF2SVGConverter::OnDoNothing;
    RecordOutcome outcome = recordOutcome(kWmfRecordTypes, kExceptions, function,
                                          doesNothing ? std::nullopt : std::optional(result));
    if (isDrawing)
        outcome = RecordOutcome::Skipped;
    m_tally->note(function, outcome, size);
}

} // namespace svgtool

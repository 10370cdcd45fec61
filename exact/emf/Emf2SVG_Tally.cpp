#include "exact/emf/Emf2SVG.h"

#include "core/records/EmfRecordTypes.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/RecordOutcomes.h"

#include <QtEndian>

#include <algorithm>
#include <optional>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// The types that are not carried out as GDI does, each with the reason.
// clang-format off
static constexpr TypeOutcome kExceptions[] = {
    { Emr::Polygon, RecordOutcome::Approximated }, // neither mapped nor styled
    { Emr::Polyline, RecordOutcome::Approximated }, // the same
    { Emr::PolyBezierTo, RecordOutcome::Approximated }, // not mapped
    { Emr::PolylineTo, RecordOutcome::Approximated }, // neither mapped nor styled
    { Emr::PolyPolyline, RecordOutcome::Approximated }, // the same
    { Emr::PolyPolygon, RecordOutcome::Approximated }, // the same
    { Emr::SetWindowExtEx, RecordOutcome::Approximated }, // makes no new scale by itself
    { Emr::SetWindowOrgEx, RecordOutcome::Approximated }, // unsigned, and taken off after scaling
    { Emr::SetViewportExtEx, RecordOutcome::Approximated }, // unsigned; one of the modes only
    { Emr::SetViewportOrgEx, RecordOutcome::Skipped }, // kept and not used
    { Emr::Arc, RecordOutcome::Approximated }, // the arc direction is not known
    { Emr::Chord, RecordOutcome::Approximated }, // the same
    { Emr::Pie, RecordOutcome::Approximated }, // the same, and the large-arc test
    { Emr::ArcTo, RecordOutcome::Approximated }, // the arc direction is not known
    { Emr::CloseFigure, RecordOutcome::Approximated }, // ends at x = 0
    { Emr::StrokePath, RecordOutcome::Approximated }, // polylines are closed
    { Emr::SelectClipPath, RecordOutcome::Approximated }, // replaces; clips rectangles only
    { Emr::ExtSelectClipRgn, RecordOutcome::Approximated }, // clips rectangles only
    { Emr::ExtTextOutW, RecordOutcome::Approximated }, // without the distances of characters
    { Emr::PolyPolygon16, RecordOutcome::Approximated }, // polygon by polygon, without holes
    { Emr::SmallTextOut, RecordOutcome::Approximated }, // without a rectangle
};
// clang-format on
static_assert(std::ranges::is_sorted(kExceptions, {}, &TypeOutcome::type));

// Whether a comment holds drawing of the extended format, which is not read.
static bool holdsDrawing(quint32 type, ByteView record)
{
    constexpr quint32 kExtended = 0x2B464D45; // "EMF+", behind the head and the data's length
    const auto identifier = slice(record, 12, 4);
    return type == Emr::GdiComment && identifier
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
    RecordOutcome outcome = recordOutcome(kEmfRecordTypes, kExceptions, type,
                                          doesNothing ? std::nullopt : std::optional(result));
    if (isDrawing)
        outcome = RecordOutcome::Skipped;
    m_tally->note(type, outcome, size);
    return result;
}

} // namespace svgtool

#pragma once

#include "core/base/Bytes.h"
#include "core/records/RecordTally.h"
#include "core/records/RecordType.h"
#include "core/records/WmfRecords.h"
#include "exact/records/RecordDump.h"
#include "exact/svg/SVGWriter.h"

#include <QString>

#include <set>
#include <span>
#include <vector>

namespace svgtool {

/// Converts one 16-bit Windows metafile ([MS-WMF]) into an SVG document.
///
/// Walks the records, maps their coordinates and has the writer it owns print one figure a
/// record. A record that fails draws nothing and does not end the conversion.
/// @note One converter serves one conversion on one thread.
class WMF2SVGConverter
{
public:
    WMF2SVGConverter();

    /// Sets the picture's size and resolution; called before the conversion.
    /// @param isPlaceable  whether @p header is there; without it a unit is 1/1440 inch
    /// @return non-zero when the placeable header counts
    qint32 InitializeCoordinates(bool isPlaceable, const METAPLACEABLEHEADER &header);
    /// Converts the records.
    /// @param records         from the first record after the headers to the end of the data
    /// @param totalBytes      length of the metafile by its header; the record that reaches it is
    ///                        not handled
    /// @param maxRecordWords  a record larger than this ends the conversion
    /// @param dump            lists the records; may be null
    /// @return 2 on success, 0 without records or memory, -1 on a caught exception
    qint32 ConvertWMFToSVG(ByteView records, qint64 totalBytes, quint32 maxRecordWords,
                           RecordDump *dump);
    /// Counts into @p tally what becomes of the records; null, as it is at first, counts nothing.
    /// It must know already where the records begin, and it outlives the conversion.
    void setTally(RecordTally *tally) { m_tally = tally; }
    /// Hands over the document written so far, in UTF-8.
    QByteArray takeDocument() { return m_writer.takeDocument(); }

private:
    /// Handles the private copy of one record, its head included: non-zero for success.
    using Handler = qint32 (WMF2SVGConverter::*)(char *record, quint32 size);

    struct HandlerEntry
    {
        quint32 function;
        Handler handler;
    };

    // Wmf2SVG.cpp: the frame
    void InitWMFText();
    void InitWMFRecHandlers();
    void openDocument();
    bool walkRecords(ByteView records, qint64 totalBytes, quint32 maxRecordWords, RecordDump *dump);
    void HandleWMFRecordData(char *record, quint32 size, RecordDump *dump);
    void handle(quint16 function, char *record, quint32 size, RecordDump *dump);
    bool endAt(StopReason reason);
    qint16 scaleX(qint16 length) const;
    qint16 scaleY(qint16 length) const;
    qint16 positionX(qint16 x) const;
    qint16 positionY(qint16 y) const;
    qint16 MapX(qint16 x) const;
    qint16 MapY(qint16 y) const;
    POINTL mapPoint(qint16 x, qint16 y) const;
    std::vector<POINTL> mapPoints(ByteView points) const;
    qint32 OnMetaSetWinOrg(char *record, quint32 size);
    qint32 OnMetaSetWinExt(char *record, quint32 size);
    qint32 OnMetaSetBkMode(char *record, quint32 size);
    qint32 OnDoNothing(char *record, quint32 size);

    // Wmf2SVG_Tally.cpp
    void handleAndNote(Handler handler, char *record, quint32 size, quint16 function);

    // Wmf2SVG_Objects.cpp
    quint16 allocateIndex();
    void freeIndex(quint16 index);
    qint32 scaledPenWidth(qint16 width) const;
    qint32 OnMetaSelectObject(char *record, quint32 size);
    qint32 OnMetaDeleteObject(char *record, quint32 size);
    qint32 OnCreatePenIndirect(char *record, quint32 size);
    qint32 OnMetaCreateFontIndirect(char *record, quint32 size);
    qint32 OnMetaCreateBrushIndirect(char *record, quint32 size);

    // Wmf2SVG_Figures.cpp
    POINTL readPoint(const char *record, quint32 size) const;
    RECTL readBox(const char *record, quint32 size) const;
    qint32 drawPoints(char *record, quint32 size, bool isPolygon);
    qint32 OnMetaLineTo(char *record, quint32 size);
    qint32 OnMetaMove(char *record, quint32 size);
    qint32 OnMetaPolygon(char *record, quint32 size);
    qint32 OnMetaPolyLine(char *record, quint32 size);
    qint32 OnMetaEllipse(char *record, quint32 size);
    qint32 OnMetaRectangle(char *record, quint32 size);
    qint32 OnMetaPolyPolygon(char *record, quint32 size);

    // Wmf2SVG_Text.cpp
    qint32 textAscent() const;
    qint32 OnMetaExtTextOut(char *record, quint32 size);

    // Wmf2SVG_Raster.cpp: bitmaps
    RECTL mapCorners(const TransferTarget &to) const;
    template<class Record>
    BitmapTransfer transferOf(const Record &blt) const;
    qint32 paintWithoutBitmap(const TransferTarget &moved, ByteView behind,
                              RasterOperation operation);
    qint32 drawBitmap(BitmapTransfer transfer, ByteView bytes, quint32 usage,
                      bool isDeviceDependent);
    qint32 OnMetaPatBlt(char *record, quint32 size);
    qint32 OnDIBBitBlt(char *record, quint32 size);
    qint32 OnStretchDIB(char *record, quint32 size);
    qint32 OnDIBStretchBlt(char *record, quint32 size);

    CMySVGWriter m_writer;
    RecordTally *m_tally = nullptr; ///< somebody else's
    std::span<const HandlerEntry> m_handlers; ///< by function number
    std::span<const RecordType> m_recordTypes; ///< for the dump
    quint32 m_indexCount = 0; ///< object indices given out, from 0 on
    std::set<quint16> m_freeIndices; ///< those of deleted objects; the lowest is used again first
    qint16 m_winOrgX = 0;
    qint16 m_winOrgY = 0;
    qint16 m_winExtX = 0;
    qint16 m_winExtY = 0;
    qint16 m_width = 0; ///< of the picture, in metafile units
    qint16 m_height = 0;
    quint16 m_unitsPerInch = 0;
    quint16 m_screenDpi = 96;
    float m_unitsPerPixel = 1.0F;
    float m_factorX = 1.0F;
    float m_factorY = 1.0F;
    bool m_hasPlaceableHeader = false;
};

} // namespace svgtool

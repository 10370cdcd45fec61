#pragma once

#include "core/base/Bytes.h"
#include "exact/records/BEndTools.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace svgtool {

// What the readers are made of. A reader names the fields of its structure once; the overloads
// below know how a field of each type is swapped. Nested structures go through their own readers.

inline void swapField(quint16 &field)
{
    field = static_cast<quint16>(LE2BE_Word(field));
}
inline void swapField(qint16 &field)
{
    field = static_cast<qint16>(LE2BE_Word(static_cast<quint16>(field)));
}
inline void swapField(quint32 &field)
{
    field = LE2BE_DWord(field);
}
inline void swapField(qint32 &field)
{
    field = static_cast<qint32>(LE2BE_DWord(static_cast<quint32>(field)));
}
inline void swapField(float &field)
{
    field = std::bit_cast<float>(LE2BE_DWord(std::bit_cast<quint32>(field)));
}
inline void swapField(Unaligned32 &field)
{
    field = LE2BE_DWord(field);
}
template<std::size_t N>
void swapField(quint16 (&units)[N])
{
    for (quint16 &unit : units)
        swapField(unit);
}

// clang-format off
inline void swapField(EMR &field) { InitEMR(&field); }
inline void swapField(POINTL &field) { InitPOINTL(&field); }
inline void swapField(POINT &field) { InitPOINT(&field); }
inline void swapField(POINTS &field) { InitPOINTS(&field); }
inline void swapField(RECT &field) { InitRECT(&field); }
inline void swapField(RECTL &field) { InitRECTL(&field); }
inline void swapField(SIZEL &field) { InitSIZEL(&field); }
inline void swapField(XFORM &field) { InitXFORM(&field); }
inline void swapField(LOGBRUSH &field) { InitLOGBRUSH(&field); }
inline void swapField(LOGPEN &field) { InitEMRLOGPEN(&field); }
inline void swapField(EXTLOGPEN &field) { InitEXTLOGPEN(&field); }
inline void swapField(LOGFONTW &field) { InitLOGFONTW(&field); }
inline void swapField(EXTLOGFONTW &field) { InitEXTLOGFONTW(&field); }
inline void swapField(EMRTEXT &field) { InitEMRTEXT(&field); }
inline void swapField(RGNDATAHEADER &field) { Init_RGNDATAHEADER(&field); }
inline void swapField(BITMAPINFOHEADER &field) { InitBITMAPHEADER(&field); }
// clang-format on

/// Fills a field of a destination with the swapped one of the source.
template<class Field>
void copyField(Field &destination, const Field &source)
{
    destination = source;
    swapField(destination);
}
// clang-format off
inline void copyField(POINTS &destination, const POINTS &source) { InitWMRPOINTS(&destination, &source); }
inline void copyField(PointYX &destination, const PointYX &source) { InitWMRPOINTS(&destination, &source); }
inline void copyField(RECT16 &destination, const RECT16 &source) { InitRECT16(&destination, &source); }
inline void copyField(LOGPEN16 &destination, const LOGPEN16 &source) { InitLOGPEN16(&destination, &source); }
inline void copyField(LOGBRUSH16 &destination, const LOGBRUSH16 &source) { InitLOGBRUSH16(&destination, &source); }
inline void copyField(FONTSPEC &destination, const FONTSPEC &source) { InitFONTSPEC(&destination, &source); }
// clang-format on

/// Swaps the fields of @p record, or of parts that it is made of, whatever the host.
template<class Record, class... Part, class... Field>
void swapFields(Record *record, Field Part::*...fields)
{
    (swapField(record->*fields), ...);
}

/// An in-place reader.
template<class Record, class... Part, class... Field>
bool readInPlace(Record *record, Field Part::*...fields)
{
    if (IsBigEndian())
        swapFields(record, fields...);
    return true;
}

/// A copying reader.
template<class Record, class... Part, class... Field>
bool readCopy(Record *destination, const Record *source, Field Part::*...fields)
{
    if (!IsBigEndian())
        return false;
    (copyField(destination->*fields, source->*fields), ...);
    return true;
}

/// The bytes of the block that @p record starts.
inline char *bytesOf(void *record)
{
    return static_cast<char *>(record);
}
inline const char *bytesOf(const void *record)
{
    return static_cast<const char *>(record);
}

/// The bytes of that block behind the fixed part of @p record.
template<class Record>
auto *behind(Record *record)
{
    return bytesOf(record) + sizeof(Record);
}

/// Swaps @p count elements where they lie.
template<class Element>
void swapArray(char *bytes, qint64 count)
{
    for (qint64 i = 0; i < count; ++i, bytes += sizeof(Element)) {
        Element element;
        std::memcpy(&element, bytes, sizeof element);
        swapField(element);
        std::memcpy(bytes, &element, sizeof element);
    }
}

/// Fills @p count elements of a destination with the swapped ones of the source.
template<class Element>
void copyArray(char *destination, const char *source, qint64 count)
{
    for (qint64 i = 0; i < count; ++i) {
        Element from, to;
        std::memcpy(&from, source + i * qint64(sizeof from), sizeof from);
        copyField(to, from);
        std::memcpy(destination + i * qint64(sizeof to), &to, sizeof to);
    }
}

/// The sum of @p count counts, in the host's byte order.
template<class Count>
qint64 sumOfCounts(const char *counts, qint64 count)
{
    qint64 sum = 0;
    for (qint64 i = 0; i < count; ++i)
        sum += elementAt<Count>({ counts, count * qint64(sizeof(Count)) }, i);
    return sum;
}

} // namespace svgtool

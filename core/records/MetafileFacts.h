#pragma once

#include "core/base/Bytes.h"
#include "core/records/RecordTally.h"
#include "core/records/RecordType.h"

#include <cstdint>
#include <span>

namespace svgtool {

/// A rectangle as a header gives it.
struct HeaderBox
{
    int32_t left = 0, top = 0, right = 0, bottom = 0;
};

/// What can be told of a metafile without converting it. What its format lacks is 0.
struct MetafileFacts
{
    MetafileFormat format = MetafileFormat::Unknown;
    int64_t fileBytes = 0; ///< what there is
    int64_t headerBytes = 0; ///< the length by the header; of a WMF with its placeable header
    uint32_t headerRecords = 0; ///< EMF: the number of records by the header
    HeaderBox bounds; ///< EMF: device units; placeable WMF: logical units
    HeaderBox frame; ///< EMF: 0.01 mm
    int32_t devicePixels[2] = {}; ///< EMF: width and height of the reference device
    int32_t deviceMillimeters[2] = {};
    uint16_t unitsPerInch = 0; ///< placeable WMF
    int64_t headerLargestRecord = 0; ///< WMF: bytes of the largest record by the header
    int64_t largestRecord = 0; ///< of those there are, the end record left out

    int64_t namedFirstRecord = 0; ///< where the first record lies by the header
    int64_t firstRecord = 0; ///< where it lies: the same unless only another place makes sense
    bool isEndCut = false; ///< there is an end record, but not the whole of it
    RecordTally records; ///< all records from there on, as skipped, and where their chain ends

    /// What an end record leaves unread although it is well-formed records.
    struct Unread
    {
        uint64_t records = 0; ///< without further end records
        int64_t offset = 0; ///< of the first of them; the rest of the file counts as unread
    };
    Unread unread;
};

/// Reads the headers of @p file and the heads of its records.
/// @note Takes time in proportion to the file. May throw std::bad_alloc.
MetafileFacts inspectMetafile(ByteView file);

/// Whether the header does not go with the records: that of an EMF names another size of the file,
/// another place of the first record or fewer records than there are; that of a WMF a length at
/// which the records go on, or a largest record that is not the largest.
bool hasWrongHeader(const MetafileFacts &facts);

/// Whether all records are there that there should be: up to an end record with none behind it, or,
/// as some programs leave it out, up to the file's very end or the number that an EMF header names.
bool hasAllRecords(const MetafileFacts &facts);

/// Changes the header of a metafile so that it does not end the conversion early: it names the
/// place of the first record and the size that the file has, and no limit for the number or the
/// size of the records.
/// @param file   a copy of the whole file
/// @param facts  what inspectMetafile says of it
void repairHeader(std::span<char> file, const MetafileFacts &facts);

} // namespace svgtool

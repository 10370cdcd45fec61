#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace svgtool {

/// Why there is no picture.
enum class PictureError {
    None, ///< there is one
    NotAMetafile, ///< the bytes begin like no format that is drawn
    BadOptions, ///< a size or a prefix that makes no sense
    OutOfMemory,
};

/// How a picture is asked for.
struct PictureOptions
{
    /// Of the picture in CSS pixels, 96 an inch; 0 keeps its natural size, or, where the other one
    /// is given, its shape.
    double width = 0, height = 0;
    double scale = 1; ///< of the natural size, where neither width nor height is given
    /// What the document's ids begin with, a letter and then letters, digits, "-" and "_"; made of
    /// the metafile's bytes where it is empty, so that documents can share a page.
    std::string idPrefix;
};

/// What became of records of one type.
enum class RecordFate { Drawn, Approximated, NotDone, Neutral };

/// One line of a report.
struct RecordLine
{
    uint32_t type = 0; ///< number of the record type
    std::string name; ///< as the format's description writes it; empty for an unknown type
    RecordFate fate = RecordFate::Drawn;
    uint64_t count = 0;
    int64_t firstOffset = 0; ///< in the file, of the first of them
    std::string reason; ///< of Approximated and NotDone, for the first of them
};

struct PictureReport
{
    std::vector<RecordLine> records; ///< by type, then by fate
    bool isWhole = false; ///< the records end with an end record, and nothing is left behind it
};

/// A document, and what is known of it.
struct Picture
{
    PictureError error = PictureError::None;
    std::string document; ///< SVG 1.1 in UTF-8; empty if there is an error
    double width = 0, height = 0; ///< CSS pixels
    PictureReport report;
};

/// Draws an enhanced metafile (EMF) as GDI would and writes the picture as an SVG 1.1 document.
///
/// Equal bytes and options give equal documents on every machine that has the same fonts.
/// @param metafile  the whole file; nothing about it is trusted
/// @note May be called on any number of threads at once.
Picture drawMetafile(std::span<const std::byte> metafile,
                     const PictureOptions &options = {}) noexcept;

} // namespace svgtool

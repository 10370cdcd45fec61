#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The whole public interface of the picture library: a metafile in memory in, an SVG document and
// a report of what became of its records out. It needs C++20 and nothing else.

#if defined(SVGTOOL_STATIC)
#define SVGTOOL_PICTURE_EXPORT
#elif defined(_WIN32) && defined(SVGTOOL_BUILD)
#define SVGTOOL_PICTURE_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define SVGTOOL_PICTURE_EXPORT __declspec(dllimport)
#else
#define SVGTOOL_PICTURE_EXPORT __attribute__((visibility("default")))
#endif

namespace svgtool {

/// Why there is no picture.
enum class PictureError {
    None, ///< there is one
    NotAMetafile, ///< the bytes begin neither as an EMF nor as a WMF
    DamagedGzip, ///< the bytes begin as gzip's, and cannot be unpacked
    TooLarge, ///< what gzip has packed is more than 32 MiB and 32 times the bytes
    BadOptions, ///< a size, a limit or a prefix that PictureOptions does not allow
    OutOfMemory,
    Internal, ///< a fault of this library; it should not happen
};

/// An English sentence without its full stop: "there is not enough memory". For any value.
SVGTOOL_PICTURE_EXPORT const char *describe(PictureError error) noexcept;

/// What becomes of letters in a document.
enum class PictureText {
    Characters, ///< text, which a viewer shows in the fonts that it has
    /// Shapes, which look the same everywhere; a run of letters that the fonts installed have no
    /// outlines of stays text, and the report says so.
    Outlines,
};

/// Which of the pictures is drawn that a metafile holds of the same thing.
enum class PictureSource {
    /// An EMF within a WMF, if it is whole, rather than the WMF; the EMF+ records of an EMF, if
    /// they
    /// are sound, rather than its others.
    Best,
    Wmf, ///< the WMF's own records
    Emf, ///< the EMF records beside EMF+ ones
};

/// How a picture is asked for.
struct PictureOptions
{
    /// Width and height of the document in CSS pixels, 96 an inch, from 0.001 to 1,000,000; 0 for
    /// not given. With one of them the other follows by the picture's shape. With two of another
    /// shape the picture stands in the middle, whole, with room at two sides.
    double width = 0;
    double height = 0; ///< as width
    /// The document's size as a multiple of its natural one, from 0.000001 to 1,000,000; not used
    /// where width or height is given. What comes of it has sides of 1 to 16,384 pixels and no
    /// more than 16,777,216 (2^24) pixels in all, as has the natural size.
    double scale = 1;
    /// What the document's ids begin with: a letter of ASCII, and up to 63 letters, digits, "-" and
    /// "_". Where it is empty, the prefix is made of the metafile's bytes, so that documents of
    /// different metafiles may stand on one page.
    std::string idPrefix;
    PictureText text = PictureText::Characters; ///< what becomes of letters
    PictureSource source = PictureSource::Best; ///< which of several pictures
    /// What the document may have at most, in millions of bytes, from 0.01 to 1,000,000. What does
    /// not fit is not drawn, and the report says so. Usual documents have less than 1.
    double limit = 300;
};

/// What became of records of one type.
enum class RecordFate {
    Drawn, ///< it painted as GDI would, or its state is in force
    Approximated, ///< it was carried out in a way that may look different from GDI's
    NotDone, ///< nothing was done with it, and the picture may lack something
    Neutral, ///< nothing was done with it, and nothing can be missing: a comment or a hint
};

/// What a picture lacks where a record is not done.
enum class RecordLoss {
    Drawing, ///< what the record itself would have painted
    State, ///< records behind it may be painted in another way or place
    Hint, ///< nothing to be seen
};

/// The records of one type that had one fate.
struct RecordLine
{
    /// What types share that no line of their own has: a report names at most 256 types.
    static constexpr uint32_t kOtherTypes = 0xFFFFFFFF;

    uint32_t type = 0; ///< the number of the record type, or kOtherTypes
    std::string name; ///< as the format's description writes it; "EMR 200" where it has none
    RecordFate fate = RecordFate::Drawn; ///< what became of them
    RecordLoss loss = RecordLoss::Drawing; ///< of the type; counts where the fate is NotDone
    uint64_t count = 0; ///< how many they are, 1 or more
    int64_t firstOffset = 0; ///< in the metafile, of the first of them
    std::string reason; ///< why the first of them has this fate; empty for Drawn and Neutral
};

/// How much of what should be painted is in a picture, in records.
struct RecordTotals
{
    /// Those that paint. Of a metafile that holds its picture twice, those of the one that is
    /// drawn.
    uint64_t drawing = 0;
    uint64_t drawingLost = 0; ///< of them, those with which nothing was done
    uint64_t stateIgnored = 0; ///< records of state with which nothing was done
    uint64_t approximated = 0; ///< of both kinds
};

/// What became of a metafile, in one word; the worst that is true of it.
enum class PictureVerdict {
    Complete, ///< the picture is what GDI would paint, as far as is known
    Approximated, ///< all is there, and some of it may look different
    Lost, ///< it lacks something that a record should have painted
    Damaged, ///< the metafile is, and the picture shows what can be read of it
    Refused, ///< there is no picture
};

/// The word: "complete". For any value.
SVGTOOL_PICTURE_EXPORT const char *describe(PictureVerdict verdict) noexcept;

/// Why the records end where they do.
enum class RecordsEnd {
    EndRecord, ///< as it should be
    DataEnded, ///< the metafile ends without one
    RecordCut, ///< a record is longer than the rest of the metafile
    BadSize, ///< a record's size does not even hold its own head
};

/// Bytes of a metafile in which its records are damaged.
struct DamagedBytes
{
    int64_t offset = 0; ///< in the metafile
    int64_t count = 0;
};

/// What became of a metafile's records, and what is wrong with it.
struct PictureReport
{
    std::vector<RecordLine> records; ///< by type, then by fate
    RecordTotals totals; ///< of all of them

    RecordsEnd end = RecordsEnd::EndRecord; ///< why they end
    uint64_t endRecord = 0; ///< number of the record at which they end; an EMF header is number 1
    int64_t endOffset = 0; ///< in the metafile, of that record
    /// Well-formed records behind the end record. They are not played, as GDI does not, unless the
    /// header names an end that lies behind them.
    uint64_t unreadRecords = 0;
    /// Bytes behind which the records were found again: they were skipped, or belong to a record
    /// that was played although its size or type makes no sense. In the order of the metafile; what
    /// is beyond 64 places counts with the last one.
    std::vector<DamagedBytes> damaged;

    /// All records that there should be were read: up to an end record with none behind it, or, as
    /// some programs leave it out, up to the metafile's very end.
    bool isWhole = false;
    /// The header names another size, fewer records or another place of the first record than the
    /// metafile has; of a WMF, a size that records lie beyond. The records were read where they
    /// are, up to their end.
    bool isHeaderWrong = false;
    /// A WMF has an EMF of the same picture in its comments, and that was drawn: records, their
    /// offsets and their end are those of the EMF.
    bool isOfEmbeddedEmf = false;
    /// Why the picture's size is a guess: the header names none that makes sense, and it follows
    /// from what else is known. Empty where it is no guess.
    std::string sizeGuess;
};

/// A document, and what is known of it.
struct Picture
{
    PictureError error = PictureError::None; ///< why there is no document
    std::string document; ///< SVG 1.1 in UTF-8; empty if there is an error
    double width = 0; ///< of the document in CSS pixels, as height; 0 if there is an error
    double height = 0; ///< as width
    PictureReport report; ///< empty if there is an error
};

/// Draws a Windows metafile (EMF or WMF) as GDI would and writes the picture as an SVG 1.1
/// document.
///
/// What gzip has packed, as .emz and .wmz files are, is unpacked first; all below is about what
/// comes out. The bytes are taken as they come: a damaged metafile gives the picture of what can be
/// read of it, and the report says what cannot. The document holds no script, refers to nothing
/// outside, and has the title and the maker that the metafile's description names as its title and
/// desc. Equal bytes and options give equal documents on every machine that has the same fonts.
/// @param metafile  the whole file; nothing of it is kept
/// @param options   nothing of them is kept
/// @return a picture, or an error with nothing else set
/// @note Throws nothing. May be called on any number of threads at once. Time and memory are in
///       proportion to the metafile's size and that of the bitmaps in it. What gzip has
///       packed is no more than 32 MiB, or 32 times what came in if that is more, and 1 GiB.
SVGTOOL_PICTURE_EXPORT Picture drawMetafile(std::span<const std::byte> metafile,
                                            const PictureOptions &options = {}) noexcept;

/// What became of the metafile of which drawMetafile() made @p picture.
SVGTOOL_PICTURE_EXPORT PictureVerdict verdictOf(const Picture &picture) noexcept;

/// All that is known of a picture but its document, as one object of JSON in UTF-8, without line
/// feeds. docs/report.schema.json says what is in it. May throw std::bad_alloc.
SVGTOOL_PICTURE_EXPORT std::string reportJson(const Picture &picture);

} // namespace svgtool

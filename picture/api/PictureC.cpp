#include "picture/api/picture.h"
#include "picture/api/picture.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <new>

// The interface for C: a thin layer on the one for C++.

struct svgtool_picture
{
    svgtool::Picture picture;
    std::string report; // once it is asked for
};

namespace {

using svgtool::PictureError;
using svgtool::PictureOptions;
using svgtool::PictureSource;
using svgtool::PictureText;
using svgtool::PictureVerdict;

static_assert(int(PictureError::NotAMetafile) == SVGTOOL_ERROR_NOT_A_METAFILE
              && int(PictureError::DamagedGzip) == SVGTOOL_ERROR_DAMAGED_GZIP
              && int(PictureError::TooLarge) == SVGTOOL_ERROR_TOO_LARGE
              && int(PictureError::BadOptions) == SVGTOOL_ERROR_BAD_OPTIONS
              && int(PictureError::OutOfMemory) == SVGTOOL_ERROR_OUT_OF_MEMORY
              && int(PictureError::Internal) == SVGTOOL_ERROR_INTERNAL);
static_assert(int(PictureVerdict::Approximated) == SVGTOOL_VERDICT_APPROXIMATED
              && int(PictureVerdict::Lost) == SVGTOOL_VERDICT_LOST
              && int(PictureVerdict::Damaged) == SVGTOOL_VERDICT_DAMAGED
              && int(PictureVerdict::Refused) == SVGTOOL_VERDICT_REFUSED);
static_assert(int(PictureText::Outlines) == SVGTOOL_TEXT_OUTLINES
              && int(PictureSource::Wmf) == SVGTOOL_SOURCE_WMF
              && int(PictureSource::Emf) == SVGTOOL_SOURCE_EMF);

// Members that the caller's version lacks, one that is cut among them, have their usual values, and
// those that this version does not know must be zero. False for options that make no sense.
bool takeOptions(const svgtool_options *given, PictureOptions &options)
{
    if (given == nullptr)
        return true;
    constexpr size_t kMembers[] = {
        offsetof(svgtool_options, width), offsetof(svgtool_options, height),
        offsetof(svgtool_options, scale), offsetof(svgtool_options, id_prefix),
        offsetof(svgtool_options, text),  offsetof(svgtool_options, source),
        sizeof(svgtool_options)
    };
    svgtool_options known = SVGTOOL_OPTIONS_INIT;
    const auto *const bytes = reinterpret_cast<const unsigned char *>(given);
    if (given->size < sizeof given->size
        || std::any_of(bytes + std::min(sizeof known, given->size), bytes + given->size,
                       [](unsigned char byte) { return byte != 0; }))
        return false;
    std::memcpy(&known, given, *std::prev(std::ranges::upper_bound(kMembers, given->size)));
    if (known.text < SVGTOOL_TEXT_CHARACTERS || known.text > SVGTOOL_TEXT_OUTLINES
        || known.source < SVGTOOL_SOURCE_BEST || known.source > SVGTOOL_SOURCE_EMF)
        return false;
    options.width = known.width;
    options.height = known.height;
    options.scale = known.scale;
    if (known.id_prefix != nullptr)
        options.idPrefix = known.id_prefix;
    options.text = PictureText(known.text);
    options.source = PictureSource(known.source);
    options.limit = known.limit;
    return true;
}

const char *give(const std::string &text, size_t *length)
{
    if (length != nullptr)
        *length = text.size();
    return text.c_str();
}

const char *giveNothing(size_t *length)
{
    if (length != nullptr)
        *length = 0;
    return "";
}

} // namespace

const char *svgtool_version(void)
{
    return SVGTOOL_VERSION;
}

svgtool_picture *svgtool_draw(const void *bytes, size_t size, const svgtool_options *options)
try {
    auto *const result = new svgtool_picture;
    PictureOptions wanted;
    if (takeOptions(options, wanted))
        result->picture =
                svgtool::drawMetafile({ static_cast<const std::byte *>(bytes), size }, wanted);
    else
        result->picture.error = PictureError::BadOptions;
    return result;
} catch (const std::bad_alloc &) {
    return nullptr;
}

void svgtool_picture_free(svgtool_picture *picture)
{
    delete picture;
}

svgtool_error svgtool_picture_error(const svgtool_picture *picture)
{
    return picture == nullptr ? SVGTOOL_ERROR_OUT_OF_MEMORY : svgtool_error(picture->picture.error);
}

svgtool_verdict svgtool_picture_verdict(const svgtool_picture *picture)
{
    return picture == nullptr ? SVGTOOL_VERDICT_REFUSED
                              : svgtool_verdict(verdictOf(picture->picture));
}

const char *svgtool_picture_document(const svgtool_picture *picture, size_t *length)
{
    return picture == nullptr ? giveNothing(length) : give(picture->picture.document, length);
}

double svgtool_picture_width(const svgtool_picture *picture)
{
    return picture == nullptr ? 0 : picture->picture.width;
}

double svgtool_picture_height(const svgtool_picture *picture)
{
    return picture == nullptr ? 0 : picture->picture.height;
}

const char *svgtool_picture_report(svgtool_picture *picture, size_t *length)
try {
    if (picture == nullptr)
        return giveNothing(length);
    if (picture->report.empty())
        picture->report = reportJson(picture->picture);
    return give(picture->report, length);
} catch (const std::bad_alloc &) {
    return giveNothing(length);
}

const char *svgtool_error_text(svgtool_error error)
{
    return describe(PictureError(error));
}

const char *svgtool_verdict_text(svgtool_verdict verdict)
{
    return describe(PictureVerdict(verdict));
}

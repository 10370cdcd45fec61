#ifndef SVGTOOL_PICTURE_H
#define SVGTOOL_PICTURE_H

#include <stddef.h>
#include <stdint.h>

/**
 * @file
 * The picture library for C, and for whatever calls C: a metafile in memory in, an SVG document and
 * a report in JSON out. C++ programs may take svgtool/picture.hpp, which tells more of the same.
 *
 * Nothing here throws, prints, ends the process, or reads the clock or the locale. All functions
 * may be called on any number of threads at once, as long as no picture is freed while it is used,
 * and only one thread asks for its report for the first time. Those that take a picture take NULL
 * too: it stands for one for which there was no memory.
 */

#if defined(SVGTOOL_STATIC)
#define SVGTOOL_C_EXPORT
#elif defined(_WIN32) && defined(SVGTOOL_BUILD)
#define SVGTOOL_C_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define SVGTOOL_C_EXPORT __declspec(dllimport)
#else
#define SVGTOOL_C_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Why there is no document. */
typedef enum svgtool_error {
    SVGTOOL_ERROR_NONE = 0, /**< there is one */
    SVGTOOL_ERROR_NOT_A_METAFILE = 1, /**< the bytes begin neither as an EMF nor as a WMF */
    SVGTOOL_ERROR_DAMAGED_GZIP = 2, /**< they begin as gzip's, and cannot be unpacked */
    SVGTOOL_ERROR_TOO_LARGE = 3, /**< they unpack to over 32 MiB and 32 times their length */
    SVGTOOL_ERROR_BAD_OPTIONS = 4, /**< what svgtool_options does not allow */
    SVGTOOL_ERROR_OUT_OF_MEMORY = 5,
    SVGTOOL_ERROR_INTERNAL = 6 /**< a fault of this library; it should not happen */
} svgtool_error;

/** What became of a metafile; the worst that is true of it. */
typedef enum svgtool_verdict {
    SVGTOOL_VERDICT_COMPLETE = 0, /**< the picture is what GDI would paint, as far as is known */
    SVGTOOL_VERDICT_APPROXIMATED = 1, /**< all is there, and some of it may look different */
    SVGTOOL_VERDICT_LOST = 2, /**< it lacks something that a record should have painted */
    SVGTOOL_VERDICT_DAMAGED = 3, /**< the metafile is; the picture shows what can be read */
    SVGTOOL_VERDICT_REFUSED = 4 /**< there is no picture */
} svgtool_verdict;

/** What becomes of letters: text, or shapes that look the same everywhere. */
enum { SVGTOOL_TEXT_CHARACTERS = 0, SVGTOOL_TEXT_OUTLINES = 1 };

/**
 * Which picture is drawn of a metafile that holds several: the best one; the WMF although it holds
 * an EMF; the EMF records beside EMF+ ones.
 */
enum { SVGTOOL_SOURCE_BEST = 0, SVGTOOL_SOURCE_WMF = 1, SVGTOOL_SOURCE_EMF = 2 };

/** How a picture is asked for. Begin with SVGTOOL_OPTIONS_INIT: later versions may add members. */
typedef struct svgtool_options
{
    size_t size; /**< sizeof(svgtool_options) of the caller */
    /**
     * Of the document, in CSS pixels, from 0.001 to 1000000; 0 for not given. With one of them the
     * other follows; two of another shape leave room at two sides of the picture.
     */
    double width;
    double height; /**< as width */
    double scale; /**< of the natural size, from 0.000001 to 1000000; not used beside width, height
                   */
    /**
     * What ids begin with: a letter, and up to 63 letters, digits, "-" and "_". NULL or "" for a
     * prefix that is made of the metafile's bytes.
     */
    const char *id_prefix;
    int32_t text; /**< SVGTOOL_TEXT_... */
    int32_t source; /**< SVGTOOL_SOURCE_... */
    /**
     * What the document may have at most, in millions of bytes, from 0.01 to 1000000. What does not
     * fit is not drawn, and the report says so.
     */
    double limit;
} svgtool_options;

#define SVGTOOL_OPTIONS_INIT                                                                       \
    {                                                                                              \
        sizeof(svgtool_options), 0, 0, 1, NULL, 0, 0, 300                                          \
    }

/** A picture, or why there is none. */
typedef struct svgtool_picture svgtool_picture;

/** The version of the library that is called: "0.1.0". */
SVGTOOL_C_EXPORT const char *svgtool_version(void);

/**
 * Draws a Windows metafile, also one that gzip has packed, as GDI would.
 *
 * Equal bytes and options give equal documents on every machine that has the same fonts. Time and
 * memory are in proportion to the metafile's size and that of the bitmaps in it.
 * @param bytes    the whole file; nothing of it is kept. May be NULL if @p size is 0
 * @param size     of the file, in bytes
 * @param options  NULL for the usual ones; nothing of them is kept
 * @return what svgtool_picture_free() is to be called with; NULL if memory ran out
 */
SVGTOOL_C_EXPORT svgtool_picture *svgtool_draw(const void *bytes, size_t size,
                                               const svgtool_options *options);

/** Frees a picture and all that it gave. */
SVGTOOL_C_EXPORT void svgtool_picture_free(svgtool_picture *picture);

/** Why there is no document, or SVGTOOL_ERROR_NONE. */
SVGTOOL_C_EXPORT svgtool_error svgtool_picture_error(const svgtool_picture *picture);

/** What became of the metafile. */
SVGTOOL_C_EXPORT svgtool_verdict svgtool_picture_verdict(const svgtool_picture *picture);

/**
 * The document: SVG 1.1 in UTF-8, ended by a zero; "" if there is an error. It lives as long as the
 * picture.
 * @param[out] length  in bytes, without the zero; may be NULL
 */
SVGTOOL_C_EXPORT const char *svgtool_picture_document(const svgtool_picture *picture,
                                                      size_t *length);

/** The document's width in CSS pixels; 0 if there is an error. */
SVGTOOL_C_EXPORT double svgtool_picture_width(const svgtool_picture *picture);
/** The document's height in CSS pixels; 0 if there is an error. */
SVGTOOL_C_EXPORT double svgtool_picture_height(const svgtool_picture *picture);

/**
 * All else that is known: one object of JSON in UTF-8, ended by a zero, which
 * docs/report.schema.json describes. It is made when it is first asked for, and lives as long as
 * the picture.
 * @param[out] length  in bytes, without the zero; may be NULL
 * @return "" if memory ran out
 */
SVGTOOL_C_EXPORT const char *svgtool_picture_report(svgtool_picture *picture, size_t *length);

/** An English sentence without its full stop: "there is not enough memory". For any value. */
SVGTOOL_C_EXPORT const char *svgtool_error_text(svgtool_error error);
/** The verdict in a word: "complete". For any value. */
SVGTOOL_C_EXPORT const char *svgtool_verdict_text(svgtool_verdict verdict);

#ifdef __cplusplus
}
#endif

#endif

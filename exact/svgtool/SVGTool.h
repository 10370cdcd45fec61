#pragma once

#include <QByteArray>
#include <QString>

#if defined(SVGTOOL_STATIC)
#define SVGTOOL_EXPORT
#elif defined(_WIN32) && defined(SVGTOOL_BUILD)
#define SVGTOOL_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define SVGTOOL_EXPORT __declspec(dllimport)
#else
#define SVGTOOL_EXPORT __attribute__((visibility("default")))
#endif

/// Results of both conversion functions.
enum SvgToolResult : qint32 {
    SvgToolEmfConverted = 1, ///< an EMF was converted
    SvgToolWmfConverted = 2, ///< a WMF was converted
    SvgToolUnusableInput = 0, ///< no input, fewer than 18 bytes, out of memory, or no such file
    SvgToolException = -1, ///< an exception ended the conversion
    SvgToolInvalidEmf = -2, ///< the EMF header names another size than the data have
    SvgToolInvalidWmf = -3, ///< not a WMF header: HeaderSize is not 9 or NumberOfMembers not 0
};

extern "C" {

/// Converts a metafile in memory to an SVG 1.1 document.
///
/// Data whose first 88 bytes carry the EMF signature ([MS-EMF] 2.2.9) are converted as EMF, all
/// others as WMF, with or without the placeable header ([MS-WMF] 2.3.2.3).
/// @param metafileData  the whole file, little-endian, 18 bytes or more
/// @param[out] svgOut   UTF-8; replaced once the records have been walked, else untouched. When
///                      memory runs out or an exception comes while they are walked, it either is
///                      untouched or holds the text so far, which lacks its end.
/// @return an SvgToolResult
/// @note Never throws. Calls on different threads do not interfere. The library keeps nothing
///       of either argument after it returns.
SVGTOOL_EXPORT qint32 ConvertMetaFileToSVG(const QByteArray &metafileData, QByteArray &svgOut);

/// Reads a metafile from disk, EMF or WMF despite the name, and converts it.
/// @param filePath     path of the file
/// @param[out] svgOut  as for ConvertMetaFileToSVG
/// @return an SvgToolResult; SvgToolUnusableInput also when the file is missing or unreadable
/// @note Never throws. Calls on different threads do not interfere.
SVGTOOL_EXPORT qint32 WMFToSVG(const QString &filePath, QByteArray &svgOut);
}

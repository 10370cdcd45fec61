#pragma once

#include <QByteArray>

namespace svgtool {

/// How a document is to be shown.
struct DisplayOptions
{
    /// UTF-8, put as an XML comment behind the XML declaration; empty: none. "--" and characters
    /// that XML forbids are made harmless.
    QByteArray comment;
    /// Width of the root element in px; 0: the document's own, or by the aspect ratio when only
    /// the height is given.
    double width = 0;
    /// Height of the root element in px; 0: likewise.
    double height = 0;
    /// Factor on the document's own size, used when neither width nor height is given; what comes
    /// of it is at most 16384 px long.
    double scale = 1;
};

/// Makes a document that browsers show of the text that the conversion functions hand back.
///
/// That text is exact to the byte, as hosts rely on it, and not always well-formed: attributes
/// repeat or stand side by side, ids repeat, and the xlink prefix is not declared. The result
/// paints the same picture and is a well-formed SVG 1.1 document that is valid with namespaces:
/// - one of a repeated attribute, the last one written;
/// - unique ids, where a reference means the latest definition before it;
/// - a viewBox of the document's own size, so that another size scales the picture. A width and a
///   height of another aspect ratio leave room at the sides;
/// - a root element that viewers open: no side is longer than 16384 pixels unless the options say
///   so, and one that is not positive becomes 1. Letters are at most 32768 units high;
/// - a stroke of width 0 as the hairline that GDI draws: width 1, kept at any scale by the one
///   attribute here that SVG 1.1 does not know, vector-effect="non-scaling-stroke";
/// - characters that XML forbids replaced by U+FFFD;
/// - the end tags that a text that breaks off lacks. What has no place in the document stands in it
///   as a comment.
/// @param exact    UTF-8, as from ConvertMetaFileToSVG; any other bytes give a well-formed document
///                 too
/// @param options  sizes that are negative or not finite count as not given
/// @return UTF-8
/// @note Takes time in proportion to the text. Throws nothing but std::bad_alloc. Calls on
///       different threads do not interfere.
QByteArray displayableSvg(const QByteArray &exact, const DisplayOptions &options = {});

} // namespace svgtool

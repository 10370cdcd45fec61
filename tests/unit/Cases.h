#pragma once

#include "support/Conversion.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

// The style texts in force before a file selects anything, and the ends of a pen that names none.
#define DEFAULT_STYLE "stroke=\"black\" stroke-width=\"1\" fill=\"none\" "
#define FALLBACK_STYLE " stroke=\"black\" stroke-width=\"1\" fill=\"none\""
#define DEFAULT_PEN "stroke=\"none\" stroke-width=\"1\"  fill=\"none\" "
#define ROUND_ENDS "stroke-linecap = \"round\"stroke-linejoin = \"round\""

namespace svgtool::test {

/// The bytes of a file, whichever builder they come from.
struct Metafile
{
    Metafile(const EmfBuilder &emf) : bytes(emf.build()) { }
    Metafile(const WmfBuilder &wmf) : bytes(wmf.build()) { }

    QByteArray bytes;
};

/// A file of the records that @p records lists, parted by ";" or line feeds, as docs/output.md and
/// tests/golden/README.md tell. A line that makes no sense fails the test.
EmfBuilder emf(const QString &records, EmfBuilder file = {});

/// A WMF of 100 by 50 whose coordinates map to themselves.
inline WmfBuilder plainWmf()
{
    return WmfBuilder().placeable(0, 0, 100, 50, 96).record(0x020B, { 0, 0 });
}

/// As emf().
WmfBuilder wmf(const QString &records, WmfBuilder file = plainWmf());

/// An EMF whose coordinates come out less 10 and less 20.
inline EmfBuilder shifted(const char *records = "")
{
    return emf(records, EmfBuilder().bounds(10, 20, 110, 70).frame(1000, 2000, 11000, 7000));
}

template<class... Piece>
std::string joined(const Piece &...pieces)
{
    std::ostringstream text;
    (text << ... << pieces);
    return text.str();
}

// Elements as the writer writes them.

inline std::string rect(qint64 x, qint64 y, qint64 width, qint64 height,
                        const std::string &style = DEFAULT_STYLE)
{
    return joined("<rect x=\"", x, "\" y=\"", y, "\" width=\"", width, "\" height=\"", height,
                  "\" rx=\"0\" ry=\"0\" ", style, "/>\n");
}

inline std::string line(qint64 x1, qint64 y1, qint64 x2, qint64 y2,
                        const std::string &style = DEFAULT_STYLE)
{
    return joined("<line x1=\"", x1, "\" y1 = \"", y1, "\" x2 =\"", x2, "\" y2=\"", y2, "\" ",
                  style, "/>\n");
}

/// A path element with @p data as its only data, in the style of figures or of pens.
inline std::string path(const std::string &data, const std::string &style = DEFAULT_STYLE)
{
    return joined("<path d=\"", data, "\" ", style, "/>\n");
}

inline std::string polygon(const std::string &points, const std::string &style = DEFAULT_STYLE)
{
    return joined("<polygon points=\"", points, " \n\" ", style, "/>\n");
}

inline std::string polyline(const std::string &points)
{
    return joined("<polyline points=\"", points, " \n\" " DEFAULT_PEN "/>\n");
}

} // namespace svgtool::test

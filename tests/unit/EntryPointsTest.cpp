// What a conversion makes of headers, with few records or none behind them, through each way in.

#include "exact/svgtool/SVGTool.h"
#include "unit/Cases.h"

#include <QDir>
#include <QTemporaryFile>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(EntryPoints, MakeEmptyDocumentsOrKeepWhatTheCallerHad)
{
    const QByteArray cut = WmfBuilder{ .hasEnd = false }.placeable(0, 0, 9, 8, 96).build();
    const struct
    {
        const char *name;
        QByteArray bytes;
        qint32 result;
        int width = 0, height = 0;
    } cases[] = {
        { "one byte short", WmfBuilder().build().left(17), 0 },
        { "header size", WmfBuilder{ .headerSize = 10 }.build(), -3 },
        { "members", WmfBuilder{ .members = 1 }.build(), -3 },
        { "placeable alone", cut.left(22), -3 },
        { "EMF one byte longer", EmfBuilder().build() + '\0', -2 },
        { "EMF one byte shorter", EmfBuilder().build().chopped(1), -2 },
        // Without all 88 bytes of its header an EMF is not seen as one.
        { "EMF header cut", EmfBuilder().build().left(87), -3 },

        { "EMF", EmfBuilder().build(), 1, 100, 50 },
        { "WMF", WmfBuilder().build(), 2, 1024, 768 },
        { "no records", WmfBuilder{ .hasEnd = false }.build(), 2, 1024, 768 },
        { "placeable header without the last field", cut.left(30), 2, 9, 8 },
        { "placeable header", cut, 2, 9, 8 },
    };
    for (const auto &[name, bytes, result, width, height] : cases) {
        QByteArray svg("before");
        EXPECT_EQ(ConvertMetaFileToSVG(bytes, svg), result) << name;
        EXPECT_EQ(svg.toStdString(),
                  result > 0 ? documentHead(width, height) + "</svg>\n" : "before")
                << name;
    }
}

TEST(EntryPoints, ConvertFiles)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QByteArray svg("before");
    EXPECT_EQ(WMFToSVG(file.fileName() + QLatin1String(".missing"), svg), 0);
    EXPECT_EQ(WMFToSVG(QDir::tempPath(), svg), 0);
    EXPECT_EQ(WMFToSVG(file.fileName(), svg), 0);
    EXPECT_EQ(svg, QByteArray("before"));
    EXPECT_TRUE(file.write(EmfBuilder().build()) > 0 && file.flush());
    EXPECT_EQ(WMFToSVG(file.fileName(), svg), 1);
    EXPECT_EQ(svg.toStdString(), documentHead(100, 50) + "</svg>\n");
}

} // namespace

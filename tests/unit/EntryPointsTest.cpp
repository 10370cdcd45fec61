// What a conversion makes of headers, with few records or none behind them, through each way in.

#include "exact/svgtool/SVGTool.h"
#include "unit/Cases.h"

#include <QFile>
#include <QTemporaryDir>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(EntryPoints, MakeEmptyDocumentsOrKeepWhatTheCallerHad)
{
    const WmfBuilder placeable = WmfBuilder().placeable(0, 0, 9, 8, 96);
    const QByteArray cut = WmfBuilder(placeable).withoutEnd().build();
    const struct
    {
        const char *name;
        QByteArray bytes;
        qint32 result;
        int width = 0, height = 0;
    } cases[] = {
        { "empty", QByteArray(), 0 },
        { "one byte short", WmfBuilder().withoutEnd().build().left(17), 0 },
        { "zeros", QByteArray(18, '\0'), -3 },
        { "text", QByteArray("This is no metafile, only text."), -3 },
        { "header size", WmfBuilder().headerSize(10).build(), -3 },
        { "members", WmfBuilder().members(1).build(), -3 },
        { "placeable, header size", WmfBuilder(placeable).headerSize(8).build(), -3 },
        { "placeable alone", cut.left(22), -3 },
        { "EMF one byte longer", EmfBuilder().build() + '\0', -2 },
        { "EMF one byte shorter", EmfBuilder().build().chopped(1), -2 },
        // Without all 88 bytes of its header an EMF is not seen as one.
        { "EMF header cut", EmfBuilder().build().left(87), -3 },
        { "EMF without signature", EmfBuilder().build().replace(40, 1, "?"), -3 },

        { "EMF", EmfBuilder().build(), 1, 100, 50 },
        { "WMF", WmfBuilder().build(), 2, 1024, 768 },
        { "no records", WmfBuilder().withoutEnd().build(), 2, 1024, 768 },
        { "placeable header without the last field", cut.left(30), 2, 9, 8 },
        { "one byte short of a placeable header", cut.left(39), 2, 9, 8 },
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

TEST(EntryPoints, ConvertFilesOfBothKinds)
{
    const QTemporaryDir folder;
    const auto convertFile = [&folder](const QByteArray &bytes, QByteArray &svg) {
        QFile file(folder.filePath(QStringLiteral("file")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return WMFToSVG(file.fileName(), svg);
    };
    QByteArray svg("before");
    EXPECT_EQ(WMFToSVG(folder.filePath(QStringLiteral("missing.wmf")), svg), 0);
    EXPECT_EQ(WMFToSVG(folder.path(), svg), 0);
    EXPECT_EQ(convertFile({}, svg), 0);
    EXPECT_EQ(svg, QByteArray("before"));
    EXPECT_EQ(convertFile(WmfBuilder().build(), svg), 2);
    EXPECT_EQ(convertFile(EmfBuilder().build(), svg), 1);
    EXPECT_EQ(svg.toStdString(), documentHead(100, 50) + "</svg>\n");
}

} // namespace

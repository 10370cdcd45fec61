#include "support/Conversion.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"
#include "svgtool/SVGTool.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(EntryPoints, KeepWhatTheCallerHadOnRefusal)
{
    const WmfBuilder placeable = WmfBuilder().placeable(0, 0, 9, 9, 96);
    const struct
    {
        const char *name;
        QByteArray bytes;
        qint32 result;
    } cases[] = {
        { "empty", QByteArray(), 0 },
        { "one byte short", WmfBuilder().withoutEnd().build().left(17), 0 },
        { "zeros", QByteArray(18, '\0'), -3 },
        { "text", QByteArray("This is no metafile, only text."), -3 },
        { "header size", WmfBuilder().headerSize(10).build(), -3 },
        { "members", WmfBuilder().members(1).build(), -3 },
        { "placeable, header size", WmfBuilder(placeable).headerSize(8).build(), -3 },
        { "placeable alone", placeable.build().left(22), -3 },
        { "EMF one byte longer", EmfBuilder().build() + '\0', -2 },
        { "EMF one byte shorter", EmfBuilder().build().chopped(1), -2 },
        // Without all 88 bytes of its header an EMF is not seen as one.
        { "EMF header cut", EmfBuilder().build().left(87), -3 },
        { "EMF without signature", EmfBuilder().build().replace(40, 1, "?"), -3 },
    };
    for (const auto &[name, bytes, result] : cases) {
        QByteArray svg("before");
        EXPECT_EQ(ConvertMetaFileToSVG(bytes, svg), result) << name;
        EXPECT_EQ(svg, QByteArray("before")) << name;
    }
}

TEST(EntryPoints, ReplaceWhatTheCallerHad)
{
    QByteArray svg("before");
    EXPECT_EQ(ConvertMetaFileToSVG(EmfBuilder().build(), svg), 1);
    EXPECT_EQ(svg.toStdString(), documentHead(100, 50) + "</svg>\n");
    EXPECT_EQ(ConvertMetaFileToSVG(WmfBuilder().build(), svg), 2);
    EXPECT_EQ(svg.toStdString(), documentHead(1024, 768) + "</svg>\n");
}

TEST(EntryPoints, TakeHeadersWithoutRecords)
{
    EXPECT_EQ(convert(WmfBuilder().withoutEnd().build()).text,
              documentHead(1024, 768) + "</svg>\n");
    const QByteArray wmf = WmfBuilder().placeable(0, 0, 9, 8, 96).withoutEnd().build();
    for (const int size : { 30, 39, 40 })
        EXPECT_EQ(convert(wmf.left(size)).text, documentHead(9, 8) + "</svg>\n") << size;
}

TEST(EntryPoints, ConvertFilesOfBothKinds)
{
    QTemporaryDir folder;
    const auto write = [&folder](const char *name, const QByteArray &bytes) {
        QFile file(folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    QByteArray svg("before");
    EXPECT_EQ(WMFToSVG(folder.filePath(QStringLiteral("missing.wmf")), svg), 0);
    EXPECT_EQ(WMFToSVG(folder.path(), svg), 0);
    EXPECT_EQ(WMFToSVG(write("empty.wmf", {}), svg), 0);
    EXPECT_EQ(svg, QByteArray("before"));
    EXPECT_EQ(WMFToSVG(write("a.wmf", WmfBuilder().build()), svg), 2);
    EXPECT_EQ(WMFToSVG(write("b.wmf", EmfBuilder().build()), svg), 1);
}

} // namespace

// What a conversion makes of headers, with few records or none behind them, through each way in.

#include "emf/Emf2SVG.h"
#include "svgtool/SVGTool.h"
#include "unit/Cases.h"
#include "wmf/Wmf2SVG.h"

#include <QFile>
#include <QTemporaryDir>

using namespace svgtool;
using namespace svgtool::test;

namespace {

QByteArray sizedEmf(std::array<int, 4> frame, std::array<int, 4> device = { 1, 1, 1, 1 })
{
    return EmfBuilder()
            .frame(frame[0], frame[1], frame[2], frame[3])
            .device(device[0], device[1], device[2], device[3])
            .build();
}

TEST(EntryPoints, MakeEmptyDocumentsOrKeepWhatTheCallerHad)
{
    constexpr int kNone = std::numeric_limits<int>::min();
    const auto placed = [](int left, int top, int right, int bottom, int inch = 96) {
        return WmfBuilder().placeable(left, top, right, bottom, inch);
    };
    const QByteArray cut = placed(0, 0, 9, 8).withoutEnd().build();
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
        { "placeable, header size", placed(0, 0, 9, 9).headerSize(8).build(), -3 },
        { "placeable alone", cut.left(22), -3 },
        { "EMF one byte longer", EmfBuilder().build() + '\0', -2 },
        { "EMF one byte shorter", EmfBuilder().build().chopped(1), -2 },
        // Without all 88 bytes of its header an EMF is not seen as one.
        { "EMF header cut", EmfBuilder().build().left(87), -3 },
        { "EMF without signature", EmfBuilder().build().replace(40, 1, "?"), -3 },

        { "EMF", EmfBuilder().build(), 1, 100, 50 },
        { "half rounds up", sizedEmf({ 0, 0, 10050, 10049 }), 1, 101, 100 },
        { "negative half rounds up", sizedEmf({ 0, 0, -250, -251 }), 1, -2, -3 },
        // 4 pixels a millimetre across, 2 down, over 31.75 by 12.5 mm.
        { "resolution", sizedEmf({ 100, 200, 3275, 1450 }, { 1280, 480, 320, 240 }), 1, 127, 25 },
        { "no millimetres", sizedEmf({ 0, 0, 9, 9 }, { 1000, 0, 0, 0 }), 1, kNone, kNone },
        { "too large", sizedEmf({ 0, 0, 0x7FFFFFFF, 100 }, { 0x7FFFFFFF, 1, 1, 1 }), 1, kNone, 1 },

        { "WMF", WmfBuilder().build(), 2, 1024, 768 },
        { "no records", WmfBuilder().withoutEnd().build(), 2, 1024, 768 },
        { "placeable header without the last field", cut.left(30), 2, 9, 8 },
        { "one byte short of a placeable header", cut.left(39), 2, 9, 8 },
        { "placeable header", cut, 2, 9, 8 },
        { "truncated toward zero", placed(10, 5, 1009, 490, 1000).build(), 2, 95, 46 },
        { "upside down", placed(100, 50, 0, 0).build(), 2, -100, -50 },
        { "difference wraps", placed(-30000, 0, 30000, 1).build(), 2, -5536, 1 },
        { "no resolution", placed(0, 0, 5, 5, 0).build(), 2, kNone, kNone },
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

TEST(EntryPoints, EmptyBoundsAndFrameGiveNoNumbers)
{
    const EmfBuilder empty =
            EmfBuilder().bounds(0, 0, 0, 0).frame(0, 0, 0, 0).device(100, 50, 1, 1);
    EXPECT_EQ(convert(emf("mapMode 8; rect 1 1 2 2", empty).build())
                      .body(0, 0)
                      .rfind("<rect x=\"-2147483648\" y=\"-2147483648\" width=\"-2147483648\" "
                             "height=\"-2147483648\" ",
                             0),
              0U);
}

// What @p convert dumps of the records of @p file behind @p header bytes.
template<class Convert>
std::string dumpOf(const QByteArray &file, int header, qint32 result, Convert convert)
{
    const QTemporaryDir folder;
    RecordDump dump;
    dump.isOn = true;
    dump.file.setFileName(folder.filePath(QStringLiteral("dump")));
    EXPECT_TRUE(dump.file.open(QIODevice::ReadWrite));
    EXPECT_EQ(convert(ByteView{ nullptr, 0 }, nullptr), 0);
    EXPECT_EQ(convert(ByteView{ file.constData() + header, file.size() - header }, &dump), result);
    dump.file.seek(0);
    return dump.file.readAll().replace('\t', "").toStdString();
}

TEST(Dump, ListsSkippedRecordsOfAnEmf)
{
    // Types without a name or beyond all names add nothing; nor do those that have a handler.
    const QByteArray file = emf("33; 69; rect 1 2 11 12; 120; 123; 10000; 117; 121").build();
    Emf2SvgConverter converter;
    EXPECT_EQ(dumpOf(file, 0, 1,
                     [&](auto... arguments) { return converter.ConvertEMFToSVG(arguments...); }),
              "################# Start Of File ######################\n\n"
              "EMR_SAVEDC          \nEMR_RESERVED_120        \nEMR_COLORMATCHTOTARGETW \n"
              "\n ############### End of File ##############\n\n");
}

TEST(Dump, ListsHandledAndNamedRecordsOfAWmf)
{
    const QByteArray file = wmf("0x0999; arc; mapMode 8; ellipse 4 3 2 1", WmfBuilder()).build();
    WMF2SVGConverter converter;
    converter.InitializeCoordinates(false, {});
    const auto convertRecords = [&](ByteView records, RecordDump *dump) {
        return converter.ConvertWMFToSVG(records, 1000, 1000, dump);
    };
    EXPECT_EQ(dumpOf(file, 18, 2, convertRecords),
              "#Start Of File\n\nMETA_ARC\nMETA_SETMAPMODE\nMETA_ELLIPSE\n\nEnd of File\n\n");
}

// Brushes of other kinds under the same index leave the old definition alone.
TEST(Writer, PatternDefinitionsAreWrittenOnce)
{
    const QByteArray file =
            emf("brush 1 2 0 3; brush 1 0 0 0; brush 1 2 0 6; brush 1 2 0 3").build();
    const QByteArray body = QByteArray::fromStdString(convert(file).body());
    EXPECT_EQ(body.count("<defs>"), 2);
    EXPECT_EQ(body.count("<pattern id=\"BRUSH_2\""), 1);
    EXPECT_TRUE(body.endsWith("</defs>\n"));
}

} // namespace

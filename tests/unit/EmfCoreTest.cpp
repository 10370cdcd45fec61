#include "emf/Emf2SVG.h"
#include "unit/Cases.h"

#include <QTemporaryDir>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(EmfCore, DocumentSizeFollowsFrameAndDevice)
{
    constexpr int kOutOfRange = std::numeric_limits<int>::min();
    const struct
    {
        const char *name;
        std::array<int, 4> frame, device;
        int width, height;
    } cases[] = {
        { "half rounds up", { 0, 0, 10050, 10049 }, { 1, 1, 1, 1 }, 101, 100 },
        { "negative half rounds up", { 0, 0, -250, -251 }, { 1, 1, 1, 1 }, -2, -3 },
        // 4 pixels a millimetre across, 2 down, over 31.75 by 12.5 mm.
        { "resolution", { 100, 200, 3275, 1450 }, { 1280, 480, 320, 240 }, 127, 25 },
        { "no millimetres", { 0, 0, 9, 9 }, { 1000, 0, 0, 0 }, kOutOfRange, kOutOfRange },
        { "too large", { 0, 0, 0x7FFFFFFF, 100 }, { 0x7FFFFFFF, 1, 1, 1 }, kOutOfRange, 1 },
    };
    for (const auto &[name, frame, device, width, height] : cases) {
        const QByteArray file = EmfBuilder()
                                        .frame(frame[0], frame[1], frame[2], frame[3])
                                        .device(device[0], device[1], device[2], device[3])
                                        .build();
        EXPECT_EQ(convert(file).text, documentHead(width, height) + "</svg>\n") << name;
    }
}

TEST(EmfCore, EmptyBoundsAndFrameGiveNoNumbers)
{
    const EmfBuilder empty =
            EmfBuilder().bounds(0, 0, 0, 0).frame(0, 0, 0, 0).device(100, 50, 1, 1);
    constexpr qint64 kLowest = -2147483648;
    EXPECT_EQ(convert(emf("mapMode 8; rect 1 1 2 2", empty).build()).body(0, 0),
              rect(kLowest, kLowest, kLowest, kLowest));
}

TEST(EmfCore, NoDataGiveNothing)
{
    Emf2SvgConverter converter;
    EXPECT_EQ(converter.ConvertEMFToSVG({}, nullptr), 0);
    EXPECT_EQ(converter.takeDocument(), QByteArray());
}

TEST(EmfCore, DumpListsSkippedRecords)
{
    QTemporaryDir folder;
    RecordDump dump;
    dump.isOn = true;
    dump.file.setFileName(folder.filePath(QStringLiteral("dump")));
    ASSERT_TRUE(dump.file.open(QIODevice::ReadWrite));
    // Types without a name or beyond all names add nothing; nor do those that have a handler.
    const QByteArray file = emf("33; 69; rect 1 2 11 12; 120; 123; 10000; 117; 121").build();
    Emf2SvgConverter converter;
    EXPECT_EQ(converter.ConvertEMFToSVG({ file.constData(), file.size() }, &dump), 1);
    dump.file.seek(0);
    EXPECT_EQ(dump.file.readAll().toStdString(),
              "################# Start Of File ######################\n\n"
              "EMR_SAVEDC          \nEMR_RESERVED_120        \nEMR_COLORMATCHTOTARGETW \n"
              "\n ############### End of File ##############\n\n");
}

} // namespace

#include "emf/Emf2SVG.h"
#include "unit/Cases.h"

#include <QTemporaryDir>

using namespace svgtool;
using namespace svgtool::test;

namespace {

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

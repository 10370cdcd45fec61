#include "svg/SVGWriter.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(Writer, FallsBackToTheStyleOfTheStart)
{
    CMySVGWriter writer;
    writer.DrawRect(1, 2, 3, 4, QString(), 0, 0);
    writer.DrawEllipse(1, 2, 3, 5, QString());
    writer.DrawLine(1, -2147483647 - 1, 2147483647, 4, QStringLiteral("S"));
    EXPECT_EQ(writer.takeDocument().toStdString(),
              rect(1, 2, 3, 4, FALLBACK_STYLE)
                      + "<ellipse cx=\"1\" cy = \"2\" rx = \"3\" ry = \"5 \" " FALLBACK_STYLE "/>\n"
                      + line(1, -2147483648, 2147483647, 4, "S"));
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

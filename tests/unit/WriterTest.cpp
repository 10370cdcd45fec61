#include "support/Conversion.h"
#include "svg/SVGWriter.h"

#include <gtest/gtest.h>

#include <functional>

namespace svgtool::test {
namespace {

#define FALLBACK " stroke=\"black\" stroke-width=\"1\" fill=\"none\""

    struct ElementCase
    {
        const char *name;
        std::function<void(CMySVGWriter &)> write;
        const char *text;
    };

    void PrintTo(const ElementCase &element, std::ostream *out)
    {
        *out << element.name;
    }

    class Element : public testing::TestWithParam<ElementCase>
    {
    };

    TEST_P(Element, IsExact)
    {
        CMySVGWriter writer;
        GetParam().write(writer);
        EXPECT_EQ(writer.takeDocument().toStdString(), GetParam().text);
    }

    const QString kStyle = QStringLiteral("S");
    const QString kNone;

    const ElementCase kElements[] = {
        { "rectFallback", [](auto &w) { w.DrawRect(1, 2, 3, 4, kNone, 0, 0); },
          "<rect x=\"1\" y=\"2\" width=\"3\" height=\"4\" rx=\"0\" ry=\"0\" " FALLBACK "/>\n" },
        { "ellipseFallback", [](auto &w) { w.DrawEllipse(1, 2, 3, 5, kNone); },
          "<ellipse cx=\"1\" cy = \"2\" rx = \"3\" ry = \"5 \" " FALLBACK "/>\n" },
        { "line", [](auto &w) { w.DrawLine(1, -2147483647 - 1, 2147483647, 4, kStyle); },
          "<line x1=\"1\" y1 = \"-2147483648\" x2 =\"2147483647\" y2=\"4\" S/>\n" },
        { "linesFromTheCurrentPosition",
          [](auto &w) {
              w.DrawLineTo(1, 1, kStyle);
              w.MoveTo(0, 0);
              w.DrawLineTo(10, 0, kStyle);
              w.DrawLineTo(10, 10, kNone);
          },
          "<line x1=\"0\" y1 = \"0\" x2 =\"1\" y2=\"1\" S/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"10\" y2=\"0\" S/>\n"
          "<line x1=\"10\" y1 = \"0\" x2 =\"10\" y2=\"10\" " FALLBACK "/>\n" },
    };

    INSTANTIATE_TEST_SUITE_P(Writer, Element, testing::ValuesIn(kElements),
                             testing::PrintToStringParamName());

    TEST(Writer, PointsString)
    {
        const CMySVGWriter writer;
        const POINTL points[] = { { 0, -9 },      { 10, 99 },       { -100, 999 },
                                  { 1000, 9999 }, { -9999, 10000 }, { -10000, 123456 } };
        TextBuffer text;
        writer.GetPointsString(points, text);
        writer.GetPointsString({}, text);
        EXPECT_EQ(text.view(), "0,-9 10,99 -100,999 1000,9999 -9999,10000 -10000,123456 \n\n");
    }

    TEST(Writer, PatternDefinitionsAreWrittenOnce)
    {
        CMySVGWriter writer;
        const LOGBRUSH hatched{ 2, 0, 3 };
        writer.CreateBrushI(1, hatched);
        const QByteArray first = writer.takeDocument();
        EXPECT_TRUE(first.contains("<pattern id=\"BRUSH_1\""));
        EXPECT_TRUE(first.endsWith("</defs>\n"));
        // Brushes of other kinds under the same index leave the old definitions alone.
        writer.CreateBrushI(1, { 0, 0, 0 });
        writer.CreateBrushI(1, { 2, 0, 6 });
        EXPECT_EQ(writer.takeDocument(), QByteArray());
        writer.CreateBrushI(1, hatched);
        EXPECT_EQ(writer.takeDocument().count("<defs>"), 1);
    }

} // namespace
} // namespace svgtool::test

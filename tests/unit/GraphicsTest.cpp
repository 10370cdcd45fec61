// Calls of GDI+, and the documents that their scenes become.

#include "picture/gdiplus/Graphics.h"
#include "picture/scene/Passes.h"
#include "picture/svg/SvgWriter.h"

#include <gtest/gtest.h>

#include <utility>

namespace svgtool::picture {

using plus::CombineMode;
using plus::Unit;
using Order = Graphics::Order;

static const plus::Brush kRed = plus::SolidBrush{ 0xFFFF0000 };

static plus::Pen redPen(double width, Unit unit = Unit::World)
{
    plus::Pen pen;
    pen.width = width;
    pen.unit = unit;
    pen.brush = kRed;
    return pen;
}

// A picture of 100 by 100 pixels.
class GraphicsTest : public testing::Test
{
protected:
    GraphicsTest()
    {
        m_builder.scene().view = { 0, 0, 100, 100 };
        m_builder.scene().width = m_builder.scene().height = 100;
    }

    // What stands in the root element.
    std::string document()
    {
        Scene scene = m_builder.take();
        dropUnseen(scene);
        const std::string text = writeSvg(scene, "p");
        const size_t start = text.find(">\n") + 2;
        return text.substr(start, text.rfind("</svg>") - start);
    }
    void fillBox(double left, double top, double right, double bottom)
    {
        const RectD box{ left, top, right, bottom };
        graphics.fillRectangles(kRed, { &box, 1 });
    }
    void drawLine(const plus::Pen &pen, PointD from, PointD to)
    {
        const PointD points[] = { from, to };
        graphics.drawLines(pen, points, false);
    }

private:
    static Device device()
    {
        Device device;
        device.view = { 0, 0, 100, 100 };
        return device;
    }

    SceneBuilder m_builder;

protected:
    Graphics graphics{ device(), m_builder };
};

TEST_F(GraphicsTest, PlacesByPagesWorldsAndContainers)
{
    graphics.setResolution({ 72, 36 });
    graphics.save(5);
    graphics.setPageTransform(Unit::Inch, 0.5);
    fillBox(1, 1, 2, 2);
    EXPECT_TRUE(graphics.restore(5).isDone());
    EXPECT_FALSE(graphics.restore(5).isDone());
    graphics.translateWorldTransform({ 10, 0 }, Order::Append);
    graphics.scaleWorldTransform({ 2, 2 }, Order::Prepend);
    fillBox(0, 50, 5, 55);
    graphics.scaleWorldTransform({ 0.5, 0.5 }, Order::Append);
    fillBox(0, 50, 5, 55);
    // Within, the world begins anew, and no clip leaves that around.
    graphics.resetWorldTransform();
    graphics.setClipRectangle({ 60, 0, 100, 100 }, CombineMode::Replace);
    EXPECT_TRUE(
            graphics.beginContainer({ 50, 10, 70, 50 }, { 0, 0, 1, 1 }, Unit::Inch, 7).isDone());
    graphics.resetClip();
    fillBox(0, 0, 72, 36);
    graphics.endContainer(7);
    fillBox(0, 60, 100, 61);
    EXPECT_EQ(document(),
              "<defs>\n"
              "<clipPath id=\"p0\"><path d=\"M60 0h40v100H60z\"/></clipPath>\n"
              "</defs>\n"
              "<g fill=\"red\">\n"
              "<rect x=\"36\" y=\"18\" width=\"36\" height=\"18\"/>\n"
              "<rect x=\"10\" y=\"100\" width=\"10\" height=\"10\"/>\n"
              "<rect x=\"5\" y=\"50\" width=\"5\" height=\"5\"/>\n"
              "<g clip-path=\"url(#p0)\">\n"
              "<rect x=\"50\" y=\"10\" width=\"20\" height=\"40\"/>\n"
              "<rect y=\"60\" width=\"100\" height=\"1\"/>\n"
              "</g>\n"
              "</g>\n");
}

TEST_F(GraphicsTest, CombinesClips)
{
    static constexpr struct
    {
        CombineMode mode;
        const char *path;
    } kCases[] = {
        { CombineMode::Intersect, "M20 20h10v10H20z" },
        { CombineMode::Union, "M10 10v20h10v10h20V20H30V10z" },
        { CombineMode::Exclude, "M10 10v20h10V20h10V10z" },
        { CombineMode::Complement, "M30 20v10H20v10h20V20z" },
        { CombineMode::Xor, "M10 10v20h20V10zM20 20v20h20V20z" },
    };
    for (const auto &one : kCases) {
        SceneBuilder builder;
        Device device;
        device.view = builder.scene().view = { 0, 0, 100, 100 };
        Graphics all(device, builder);
        all.setClipRectangle({ 10, 10, 30, 30 }, CombineMode::Replace);
        all.setClipRectangle({ 20, 20, 40, 40 }, one.mode);
        const RectD box{ 0, 0, 100, 100 };
        all.fillRectangles(kRed, { &box, 1 });
        builder.scene().width = builder.scene().height = 100;
        const std::string text = writeSvg(builder.take(), "p");
        const size_t start = text.find(" d=\"") + 4;
        EXPECT_EQ(text.substr(start, text.find('"', start) - start), one.path);
    }
}

TEST_F(GraphicsTest, WidensAndEndsLines)
{
    graphics.scaleWorldTransform({ 2, 2 }, Order::Prepend);
    drawLine(redPen(3), { 5, 5 }, { 40, 5 });
    drawLine(redPen(3, Unit::Pixel), { 5, 10 }, { 40, 10 });
    drawLine(redPen(0), { 5, 15 }, { 40, 15 });
    graphics.resetWorldTransform();
    // The arrow is two widths long, and lies a twentieth of one over the line.
    plus::Pen arrow = redPen(6);
    arrow.endCap = plus::LineCap::ArrowAnchor;
    drawLine(arrow, { 10, 50 }, { 60, 50 });
    // Tips lie within the dashes; what is left of the first one is from 13 to 25.
    plus::Pen tips = redPen(6);
    tips.dashStyle = plus::DashStyle::Custom;
    tips.dashes = { 3, 20 };
    tips.dashCap = plus::DashCap::Triangle;
    tips.startCap = tips.endCap = plus::LineCap::Square;
    tips.brush = plus::SolidBrush{ 0x80FF0000 };
    drawLine(tips, { 10, 80 }, { 60, 80 });
    EXPECT_EQ(document(),
              "<g fill=\"none\" stroke=\"red\">\n"
              "<path d=\"M10 10h70\" stroke-width=\"6\"/>\n"
              "<path d=\"M10 20h70\" stroke-width=\"3\"/>\n"
              "<path d=\"M10 30h70\"/>\n"
              "<path d=\"M10 50h38.3\" stroke-width=\"6\"/>\n"
              "</g>\n"
              "<path d=\"m60 50-12 6.928V43.072z\" fill=\"red\"/>\n"
              "<path d=\"M10 80h15\" fill=\"none\" stroke=\"red\" stroke-opacity=\".502\" "
              "stroke-width=\"6\"/>\n"
              "<path d=\"M25 83v-6l3 3zM10 77v6H7v-6z\" fill=\"red\" fill-opacity=\".502\"/>\n");
}

TEST_F(GraphicsTest, PaintsGradients)
{
    plus::LinearGradientBrush linear;
    linear.box = { 0, 0, 50, 10 };
    linear.startColor = 0xFFFF0000;
    linear.endColor = 0x000000FF;
    linear.wrapMode = plus::WrapMode::FlipX;
    linear.transform = { 0, 1, -1, 0, 0, 0 }; // down
    linear.factors = { { 0, 0 }, { 0.25, 1 }, { 1, 0 } };
    const RectD box{ 0, 0, 10, 100 };
    graphics.fillRectangles(linear, { &box, 1 });
    // The centre of the path is the focus; half of the way has its colour.
    plus::PathGradientBrush path;
    path.boundary.outline.addEllipse({ 20, 0, 0, 20, 50, 50 });
    path.center = { 40, 50 };
    path.centerColor = 0xFFFFFFFF;
    path.surroundColors = { 0xFF0000FF };
    path.focusScales = { 0.5, 0.5 };
    path.wrapMode = plus::WrapMode::Clamp;
    graphics.fillEllipse(path, { 30, 30, 70, 70 });
    EXPECT_EQ(document(),
              "<defs>\n"
              "<linearGradient id=\"p0\" gradientUnits=\"userSpaceOnUse\" x2=\"0\" "
              "y2=\"50\" spreadMethod=\"reflect\"><stop offset=\"0\" stop-color=\"red\"/>"
              "<stop offset=\".25\" stop-color=\"#00f\" stop-opacity=\"0\"/>"
              "<stop offset=\"1\" stop-color=\"red\"/></linearGradient>\n"
              "<radialGradient id=\"p1\" gradientUnits=\"userSpaceOnUse\" cx=\"50\" cy=\"50\" "
              "r=\"20\" fx=\"40\" fy=\"50\"><stop offset=\".5\" stop-color=\"#fff\"/>"
              "<stop offset=\"1\" stop-color=\"#00f\"/></radialGradient>\n"
              "</defs>\n"
              "<rect width=\"10\" height=\"100\" fill=\"url(#p0)\"/>\n"
              "<path d=\"M70 50c0 11.046-8.954 20-20 20s-20-8.954-20-20 8.954-20 20-20 20 8.954 20 "
              "20z\" fill=\"url(#p1)\"/>\n");
}

// A short record may ask for a long object again and again.
TEST_F(GraphicsTest, EndsWhatIsUsedTooOften)
{
    plus::PathObject path;
    path.outline.moveTo({ 0, 0 });
    for (int i = 0; i < 100'000; ++i)
        path.outline.lineTo({ double(i % 7), double(i % 5) });
    int uses = 0;
    while (uses < 100 && graphics.fillPath(kRed, path).isDone())
        ++uses;
    EXPECT_EQ(uses, int(limits::kPointsUsedAgain / 100'001));
}

} // namespace svgtool::picture

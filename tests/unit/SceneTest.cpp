// Scenes made by hand, what the passes leave of them, and the documents they become.

#include "picture/scene/Passes.h"
#include "picture/scene/SceneBuilder.h"
#include "picture/svg/SvgWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace svgtool::picture {

static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A picture of 100 by 100 pixels.
class SceneTest : public testing::Test
{
protected:
    void setUnits(double unitsPerPixel)
    {
        m_builder.scene().view = { 0, 0, 100 * unitsPerPixel, 100 * unitsPerPixel };
    }
    Node filled(Color color)
    {
        Node node;
        node.fill = m_builder.paint({ Paint::Kind::Solid, color, kNone });
        return node;
    }
    Node stroked(Color color, double width = 1, Join join = Join::Miter)
    {
        Stroke stroke;
        stroke.paint.color = color;
        stroke.width = width;
        stroke.join = join;
        Node node;
        node.stroke = m_builder.stroke(stroke);
        return node;
    }
    void addLine(Node node, std::initializer_list<PointD> points)
    {
        Path path;
        for (const PointD &point : points)
            points.begin() == &point ? path.moveTo(point) : path.lineTo(point);
        m_builder.add(node, path);
    }
    Index clipOf(const RectD &box)
    {
        Clip clip;
        clip.path.addRect(box);
        return m_builder.clip(clip);
    }

    // What stands in the root element.
    std::string document()
    {
        Scene scene = std::exchange(m_builder, SceneBuilder()).take();
        scene.width = scene.height = 100;
        cutFar(scene);
        dropUnseen(scene);
        const std::string text = writeSvg(scene, "p");
        const size_t start = text.find(">\n") + 2;
        return text.substr(start, text.rfind("</svg>") - start);
    }
    std::string pathData(const Path &path)
    {
        m_builder.add(stroked({}), path);
        const std::string text = document();
        const size_t start = text.find(" d=\"") + 4;
        return text.substr(start, text.find('"', start) - start);
    }
    void SetUp() override { setUnits(1); }

    SceneBuilder m_builder;
};

TEST_F(SceneTest, NumbersKeepToAThousandthOfAPixel)
{
    addLine(stroked({}), { { 0.0004, -0.25 }, { 10.5006, 7.12345 } });
    EXPECT_EQ(document(), "<path d=\"M0-.25 10.501 7.123\" fill=\"none\" stroke=\"#000\"/>\n");
    setUnits(600);
    addLine(stroked({}), { { 12.4, 100.6 }, { 1000.2, 2000.7 } });
    EXPECT_EQ(document(), "<path d=\"m12 101 988 1900\" fill=\"none\" stroke=\"#000\"/>\n");
}

TEST_F(SceneTest, CommandsAreRelativeOrAbsoluteWhicheverIsShorter)
{
    Path path;
    path.moveTo({ 90, 90 });
    path.lineTo({ 91, 92 });
    path.lineTo({ 1, 2 });
    EXPECT_EQ(pathData(path), "m90 90 1 2L1 2");
}

TEST_F(SceneTest, LinesThatGoOnAreOneAndThoseThatGoBackAreNot)
{
    Path path;
    path.moveTo({ 10, 10 });
    path.lineTo({ 20, 10 });
    path.lineTo({ 20, 10 });
    path.lineTo({ 30, 10 });
    path.lineTo({ 25, 10 });
    path.moveTo({ 5, 5 }); // a dot
    path.lineTo({ 5, 5 });
    EXPECT_EQ(pathData(path), "M10 10h20-5M5 5h0");
}

TEST_F(SceneTest, ClosingDrawsTheLastLine)
{
    Path path;
    path.addRect({ 1, 2, 11, 22 });
    path.addRect({ 3, 4, 5, 6 });
    EXPECT_EQ(pathData(path), "M1 2h10v20H1zM3 4h2v2H3z");
}

TEST_F(SceneTest, CurvesThatMirrorTheOneBeforeSaySo)
{
    Path path;
    path.moveTo({ 10, 50 });
    path.curveTo({ 10, 40 }, { 20, 30 }, { 30, 30 });
    path.curveTo({ 40, 30 }, { 50, 40 }, { 50, 50 });
    path.curveTo({ 50, 61 }, { 40, 70 }, { 30, 70 });
    EXPECT_EQ(pathData(path), "M10 50c0-10 10-20 20-20s20 10 20 20c0 11-10 20-20 20");
}

TEST_F(SceneTest, ElementsThatShareStandInAGroup)
{
    addLine(stroked({ 255, 0, 0 }, 2), { { 0, 0 }, { 10, 5 }, { 20, 0 } });
    addLine(stroked({ 255, 0, 0 }, 2), { { 0, 9 }, { 10, 5 }, { 20, 9 } });
    addLine(stroked({ 0, 0, 255 }, 2), { { 0, 7 }, { 10, 5 }, { 20, 7 } });
    m_builder.add(filled({ 0, 0, 128 }), Rect{ { 0, 0, 9, 9 }, 0, 0 });
    EXPECT_EQ(document(),
              "<g fill=\"none\" stroke-width=\"2\" stroke-miterlimit=\"10\">\n"
              "<g stroke=\"red\">\n"
              "<path d=\"M0 0 10 5 20 0\"/>\n"
              "<path d=\"M0 9 10 5 20 9\"/>\n"
              "</g>\n"
              "<path d=\"M0 7 10 5 20 7\" stroke=\"#00f\"/>\n"
              "</g>\n"
              "<rect width=\"9\" height=\"9\" fill=\"navy\"/>\n");
}

TEST_F(SceneTest, ClipsStandOutsideOfTransforms)
{
    Node node = stroked({});
    node.clip = clipOf({ 0, 0, 50, 50 });
    node.transform = m_builder.transform(Affine::scale(2, 3));
    m_builder.add(node, Rect{ { 1, 1, 9, 9 }, 0, 0 });
    EXPECT_EQ(document(),
              "<defs>\n"
              "<clipPath id=\"p0\"><path d=\"M0 0h50v50H0z\"/></clipPath>\n"
              "</defs>\n"
              "<g clip-path=\"url(#p0)\">\n"
              "<rect x=\"1\" y=\"1\" width=\"8\" height=\"8\" transform=\"scale(2 3)\" "
              "fill=\"none\" stroke=\"#000\"/>\n"
              "</g>\n");
}

TEST_F(SceneTest, WhatIsMixedStandsInNoGroupOfAClip)
{
    const Index clip = clipOf({ 0, 0, 50, 50 });
    for (const Blend blend : { Blend::Normal, Blend::Multiply, Blend::Normal }) {
        Node node = filled({});
        node.clip = clip;
        node.blend = blend;
        m_builder.add(node, Rect{ { 1, 1, 9, 9 }, 0, 0 });
    }
    const std::string rect = "<rect x=\"1\" y=\"1\" width=\"8\" height=\"8\"";
    const std::string clipped = rect + " clip-path=\"url(#p0)\"/>\n";
    const std::string all = document();
    EXPECT_EQ(all.substr(all.find("</defs>\n") + 8),
              clipped + "<g clip-path=\"url(#p0)\" style=\"mix-blend-mode:multiply\">\n" + rect
                      + "/>\n</g>\n" + clipped);
}

TEST_F(SceneTest, FillRulesAreSaidWhereTheyMatter)
{
    // A star crosses itself; an arrow that is not convex does not.
    Path star, arrow;
    for (const PointD p : { PointD{ 50, 0 }, { 80, 90 }, { 0, 35 }, { 99, 35 }, { 20, 90 } })
        star.isEmpty() ? star.moveTo(p) : star.lineTo(p);
    for (const PointD p : { PointD{ 0, 0 }, { 50, 20 }, { 99, 0 }, { 90, 80 }, { 10, 80 } })
        arrow.isEmpty() ? arrow.moveTo(p) : arrow.lineTo(p);
    m_builder.add(filled({}), star);
    m_builder.add(filled({ 1, 2, 3 }), arrow);
    EXPECT_EQ(document(),
              "<path d=\"M50 0 80 90 0 35h99L20 90\" fill-rule=\"evenodd\"/>\n"
              "<path d=\"M0 0 50 20 99 0 90 80H10\" fill=\"#010203\"/>\n");
}

TEST_F(SceneTest, WhatIsFarOffIsCutAlongItsWay)
{
    addLine(stroked({}), { { -1e9, -1e9 }, { 1e9, 1e9 } });
    m_builder.add(filled({}), Rect{ { -1e12, 10, 1e12, 20 }, 0, 0 });
    EXPECT_EQ(document(),
              "<path d=\"M-100000-100000 100100 100100\" fill=\"none\" "
              "stroke=\"#000\"/>\n"
              "<rect x=\"-100000\" y=\"10\" width=\"200100\" height=\"10\"/>\n");
}

TEST_F(SceneTest, LongWaysAreCutNearer)
{
    std::vector<PointD> way(256, { 50, 50 });
    way[1] = { 50, 50'000 };
    Path path;
    for (size_t i = 0; i < way.size(); ++i)
        i == 0 ? path.moveTo(way[i]) : path.lineTo(way[i]);
    EXPECT_EQ(pathData(path), "M50 50v2060V50"); // the view, the limit, and room for corners
}

TEST_F(SceneTest, WhatLeavesNoMarkIsDropped)
{
    Node clipped = filled({});
    clipped.clip = clipOf({ 60, 60, 70, 70 });
    m_builder.add(clipped, Rect{ { 0, 0, 9, 9 }, 0, 0 }); // outside its clip
    clipped.clip = m_builder.clip({});
    m_builder.add(clipped, Rect{ { 0, 0, 9, 9 }, 0, 0 }); // an empty one
    m_builder.add(filled({}), Rect{ { 200, 0, 209, 9 }, 0, 0 }); // outside the view
    m_builder.add(filled({}), Rect{ { 5, 5, 5, 9 }, 0, 0 }); // without area
    m_builder.add(Node(), Rect{ { 0, 0, 9, 9 }, 0, 0 }); // neither fill nor stroke
    addLine(stroked({}), { { 0, 0 }, { kNaN, 1 } });
    EXPECT_EQ(document(), "");
}

TEST_F(SceneTest, SizesMakeSense)
{
    Scene scene;
    scene.width = kNaN;
    scene.view = { 5, 5, 5, 5 };
    ensureSize(scene);
    EXPECT_EQ(writeSvg(scene, "p"),
              "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" "
              "width=\"1\" height=\"1\" viewBox=\"0 0 1 1\">\n</svg>\n");
}

TEST_F(SceneTest, ForeignTextIsEscaped)
{
    m_builder.scene().title = u"A&amp;<b>\u0007\u00E9";
    m_builder.scene().description = u"\xD83D\xDE00\xD83D";
    EXPECT_EQ(document(),
              "<title>A&amp;amp;&lt;b&gt;\xC3\xA9</title>\n"
              "<desc>\xF0\x9F\x98\x80?</desc>\n");
}

} // namespace svgtool::picture

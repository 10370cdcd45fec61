#include "svg/SVGDisplay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

#define ROOT "<svg version=\"1.1\" xmlns=\"http://www.w3.org/2000/svg\">"

namespace svgtool::test {
namespace {

    const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

    std::string display(const std::string &exact, const DisplayOptions &options = {})
    {
        return displayableSvg(QByteArray::fromStdString(exact), options).toStdString();
    }

    struct Case
    {
        const char *name;
        const char *exact;
        const char *shown;
    };

    void PrintTo(const Case &row, std::ostream *out)
    {
        *out << row.name;
    }

    // What stands inside the root element.
    class DisplayBody : public testing::TestWithParam<Case>
    {
    };

    TEST_P(DisplayBody, IsExact)
    {
        const std::string exact = "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg width=\"100\" "
                                  "height=\" 50\" version=\"1.1\" "
                                  "xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" >\n";
        const std::string head = "<svg width=\"100\" height=\"50\" version=\"1.1\" "
                                 "xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" "
                                 "viewBox=\"0 0 100 50\"";
        const std::string shown = GetParam().shown;
        const bool usesXlink = shown.find(" xlink:") != shown.npos;
        EXPECT_EQ(display(exact + GetParam().exact + "</svg>\n"),
                  kDeclaration + head
                          + (usesXlink ? " xmlns:xlink=\"http://www.w3.org/1999/xlink\">\n" : ">\n")
                          + shown + "</svg>\n");
    }

    constexpr Case kBodies[] = {
        { "blanks", "<line x1=\"1\" y1 = \"2\"x2 =\"3\"\n y2= '4 '\tstroke=#00f/>",
          "<line x1=\"1\" y1=\"2\" x2=\"3\" y2=\"4\" stroke=\"#00f\"/>" },
        { "lastOfRepeated", "<rect fill=\"red\" x=\"1\"fill=\"none\" />",
          "<rect fill=\"none\" x=\"1\"/>" },
        { "hairline",
          "<path d=\"\" stroke=\"black\" stroke-width=\"0\" /><path stroke=\"none\" "
          "stroke-width=\"0\"/><path stroke-width=\"0\"/><path stroke=\"#010203\" "
          "stroke-width=\"0.5\"/>",
          "<path d=\"\" stroke=\"black\" stroke-width=\"1\" vector-effect=\"non-scaling-stroke\"/>"
          "<path stroke=\"none\" stroke-width=\"0\"/><path stroke-width=\"0\"/>"
          "<path stroke=\"#010203\" stroke-width=\"0.5\"/>" },
        { "repeatedIds",
          "<a fill=\"url(#A)\"/><g id=\"A\"/><use xlink:href=\"#A\"/><g id= \"A\"><b "
          "fill=\"url(#A) red\"/></g><use clip-path=\"url(#A)\"xlink:href=\"#A\"/><g id=\"A-2\"/>"
          "<a fill=\"url(#A-2)\" stroke=\"url(#B)\"/>",
          "<a fill=\"url(#A)\"/><g id=\"A\"/><use xlink:href=\"#A\"/><g id=\"A-2\"><b "
          "fill=\"url(#A-2) red\"/></g><use clip-path=\"url(#A-2)\" xlink:href=\"#A-2\"/>"
          "<g id=\"A-2-2\"/><a fill=\"url(#A-2-2)\" stroke=\"url(#B)\"/>" },
        { "image",
          "<image x=\"1\" preserveAspectRatio=\"none\" "
          "xlink:href=\"data:image/png;base64,iVBO+/==\" clip-path=\"url(#C)\"/>",
          "<image x=\"1\" preserveAspectRatio=\"none\" "
          "xlink:href=\"data:image/png;base64,iVBO+/==\" clip-path=\"url(#C)\"/>" },
        { "references", "<text a='\"&<>' b=\"&quot;&nbsp;\">&amp;&#x41;&#1;&;&\"'> < 5]]></text>",
          "<text a=\"&quot;&amp;&lt;&gt;\" b=\"&quot;&amp;nbsp;\">&amp;&#x41;&amp;#1;&amp;;&amp;"
          "\"'&gt; &lt; 5]]&gt;</text>" },
        { "forbidden", "<text a=\"\x01\">\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\r\n\xC3</text>",
          "<text a=\"\xEF\xBF\xBD\">\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\r\n\xEF\xBF\xBD"
          "</text>" },
        { "notShortestUtf8", "\xC0\xAF\xED\xA0\x80\xEF\xBF\xBE\xF4\x90\x80\x80",
          "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
          "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD" },
        { "notAttributes", "<rect 5 x/y=7 xml:id=\"a\" o:p=\"1\" id=\"a b\" xmlns=\"z\" z=\"1\"/>",
          "<!-- 5 x / xml:id=\"a\" o:p=\"1\" id=\"a b\" xmlns=\"z\" -->"
          "<rect y=\"7\" z=\"1\"/>" },
        { "notElements", "<!-- a --- b --><![CDATA[<&]]><?p?><!DOCTYPE a><o:p></o:p></g></ g>",
          "<!-- a - - - b -->&lt;&amp;<!-- <?p?> --><!-- <!DOCTYPE a> --><!-- <o:p> -->"
          "<!-- </o:p> --><!-- </g> --><!-- </ g> -->" },
        { "openElements", "<g><g><text></g ></g><g><text>",
          "<g><g><text></text></g></g><g><text>"
          "</text></g>" },
        { "brokenOffTags", "<path d=\"M1,2\n<rect x=\"1\" <circle r=\"2\"/>",
          "<!-- <path d=\"M1,2 --><!-- <rect x=\"1\" --><circle r=\"2\"/>" },
    };
    INSTANTIATE_TEST_SUITE_P(Cases, DisplayBody, testing::ValuesIn(kBodies),
                             testing::PrintToStringParamName());

    // Whole texts that are no whole documents.
    class DisplayRemains : public testing::TestWithParam<Case>
    {
    };

    TEST_P(DisplayRemains, IsExact)
    {
        EXPECT_EQ(display(GetParam().exact), kDeclaration + GetParam().shown);
    }

    constexpr Case kRemains[] = {
        { "nothing", "", ROOT "</svg>\n" },
        { "declarationBreaksOff", "<?xml version=\"1.", ROOT "</svg>\n" },
        { "rootBreaksOff", "<?xml version=\"1.0\"?> <svg width=\"1",
          "<!-- <svg width=\"1 -->" ROOT "</svg>\n" },
        { "noRoot", "--a<g id=\"a\"/>", "<!-- - -a -->" ROOT "<g id=\"a\"/></svg>\n" },
        { "behindTheRoot", "<svg/> \n<rect/>", ROOT "</svg><!-- <rect/> -->\n" },
        { "tagBreaksOff", "<svg><g><rect x=\"1\" y=\"2",
          ROOT "<g><!-- <rect x=\"1\" y=\"2 --></g></svg>\n" },
        { "unusableSize", "<svg width=\"0\" height=\"-5\" version=\"1.1\"/>",
          "<svg width=\"1\" height=\"1\" version=\"1.1\" viewBox=\"0 0 1 1\" "
          "xmlns=\"http://www.w3.org/2000/svg\"></svg>\n" },
        { "giantSize",
          "<svg width=\"65534\" height=\"2\" version=\"1.1\"><text font-size=\"32769\"/></svg>",
          "<svg width=\"16384\" height=\"1\" version=\"1.1\" viewBox=\"0 0 65534 2\" "
          "xmlns=\"http://www.w3.org/2000/svg\"><text font-size=\"32768\"/></svg>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Cases, DisplayRemains, testing::ValuesIn(kRemains),
                             testing::PrintToStringParamName());

    TEST(Display, SizeIsTheOneWanted)
    {
        const struct
        {
            DisplayOptions options;
            const char *size;
        } rows[] = {
            { { {}, 100, 0, 9 }, "width=\"100\" height=\"23.333\"" },
            { { {}, 0, 35 }, "width=\"150\" height=\"35\"" },
            { { {}, 10, 20 }, "width=\"10\" height=\"20\"" },
            { { {}, 0, 0, 0.5 }, "width=\"150\" height=\"35\"" },
            { { {}, -1, std::nan(""), 0 }, "width=\"300\" height=\"70\"" },
        };
        for (const auto &[options, size] : rows)
            EXPECT_EQ(display("<svg width=\"300\" height=\"70\"/>", options),
                      kDeclaration + "<svg " + size
                              + " viewBox=\"0 0 300 70\" version=\"1.1\" "
                                "xmlns=\"http://www.w3.org/2000/svg\"></svg>\n");
    }

    TEST(Display, CommentIsHarmless)
    {
        EXPECT_EQ(display("", { "a--->\x02 & <b>\xFF-", 0, 0, 1 }),
                  kDeclaration
                          + "<!-- a- - ->\xEF\xBF\xBD & <b>\xEF\xBF\xBD- -->\n" ROOT "</svg>\n");
    }

} // namespace
} // namespace svgtool::test

#include "exact/emf/Emf2SVG.h"
#include "exact/wmf/Wmf2SVG.h"
#include "unit/Cases.h"

#include <random>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(EmfConverter, NoDataGiveNothing)
{
    Emf2SvgConverter converter;
    EXPECT_EQ(converter.ConvertEMFToSVG({}, nullptr), 0);
    EXPECT_EQ(converter.takeDocument(), QByteArray());
}

TEST(WmfConverter, NoRecordsGiveNothing)
{
    WMF2SVGConverter converter;
    EXPECT_EQ(converter.ConvertWMFToSVG({}, 100, 100, nullptr), 0);
    EXPECT_EQ(converter.takeDocument(), QByteArray());
}

// Brushes come and go at random; each is told by its colour. A plain list of slots says which
// index every creation must take.
TEST(WmfObjects, LowestFreeIndexIsUsedAgain)
{
    std::mt19937 random(1);
    QString records;
    std::string expected;
    std::vector<bool> isUsed;
    for (int i = 0; i < 600; ++i) {
        if (random() % 3 != 0) {
            const auto free = std::find(isUsed.begin(), isUsed.end(), false);
            const auto index = free - isUsed.begin();
            if (free == isUsed.end())
                isUsed.push_back(true);
            isUsed[size_t(index)] = true;
            records += QStringLiteral("brush 0 %1 0 0; select %2; rect 0 0 0 0;").arg(i).arg(index);
            char element[128];
            snprintf(element, sizeof element,
                     "<rect x=\"0\" y=\"0\" width=\"0\" height=\"0\" rx=\"0\" ry=\"0\" "
                     "stroke=\"none\" stroke-width=\"1\"   fill=\"#%02x%02x00\"\n/>\n",
                     unsigned(i & 0xFF), unsigned(i >> 8));
            expected += element;
        } else {
            // Some of these were never given out, or are free already.
            const size_t index = random() % (isUsed.size() + 2);
            records += QStringLiteral("delete %1;").arg(index);
            if (index < isUsed.size())
                isUsed[index] = false;
        }
    }
    EXPECT_EQ(convert(wmf(records).build()).body(), expected);
}

} // namespace

#include "unit/Cases.h"

#include <QRegularExpression>

#include <random>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Brushes come and go at random; each is told by its colour. A plain list of slots says which
// index every creation must take.
TEST(WmfObjects, LowestFreeIndexIsUsedAgain)
{
    std::mt19937 random(1);
    QString records;
    QStringList expected;
    std::vector<bool> isUsed;
    for (int i = 0; i < 600; ++i) {
        if (random() % 3 != 0) {
            const auto index = size_t(std::ranges::find(isUsed, false) - isUsed.begin());
            isUsed.resize(std::max(isUsed.size(), index + 1));
            isUsed[index] = true;
            records += QStringLiteral("brush 0 %1 0 0; select %2; rect 0 0 0 0;").arg(i).arg(index);
            expected += QString::asprintf("#%02x%02x00", i & 0xFF, i >> 8);
        } else {
            // Some of these were never given out, or are free already.
            const size_t index = random() % (isUsed.size() + 2);
            records += QStringLiteral("delete %1;").arg(index);
            if (index < isUsed.size())
                isUsed[index] = false;
        }
    }
    QStringList colours;
    static const QRegularExpression colour(QStringLiteral("fill=\"(#\\w+)"));
    const QString text = QString::fromStdString(convert(wmf(records).build()).body());
    for (auto each = colour.globalMatch(text); each.hasNext();)
        colours += each.next().captured(1);
    EXPECT_EQ(colours, expected);
}

} // namespace

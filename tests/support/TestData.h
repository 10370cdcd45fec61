#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QString>

namespace svgtool::test {

/// The text of a file of tests/golden/.
inline QString testData(const char *name)
{
    QFile file(QStringLiteral(SVGTOOL_GOLDEN_DIR "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

} // namespace svgtool::test

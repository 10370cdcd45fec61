// The examples of golden/display/Display.md: exact text in, document for display out.

#include "exact/svg/SVGDisplay.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>

#include <map>
#include <ostream>

namespace svgtool::test {
namespace {

    struct Example
    {
        std::string name;
        QByteArray asked, exact = {}, shown = {};
    };

    void PrintTo(const Example &example, std::ostream *out)
    {
        *out << example.name;
    }

    QByteArray bytesOf(const QString &text)
    {
        return QByteArray::fromPercentEncoding(text.toUtf8(), '\\');
    }

    // A block "exact" holds a text and, behind an arrow or in a block "shown", its document.
    std::vector<Example> examples()
    {
        QFile file(QStringLiteral(SVGTOOL_GOLDEN_DIR "/display/Display.md"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        const QString fence = QStringLiteral("```");
        std::vector<Example> all;
        QByteArray Example::*part = nullptr;
        for (int i = 0; i < lines.size(); ++i) {
            const QString &line = lines[i];
            if (line.startsWith(fence + QLatin1String("exact"))) {
                part = &Example::exact;
                all.push_back({ "Line" + std::to_string(i + 1), line.mid(9).toLatin1() });
            } else if (line == QStringLiteral("⇒") || line == fence + QLatin1String("shown")) {
                part = &Example::shown;
            } else if (line == fence) {
                part = nullptr;
            } else if (part != nullptr && !all.empty()) {
                all.back().*part += bytesOf(line) + '\n';
            }
        }
        return all;
    }

    class DisplayGolden : public testing::TestWithParam<Example>
    {
    };

    TEST_P(DisplayGolden, IsExact)
    {
        const Example &example = GetParam();
        static const std::map<QByteArray, double DisplayOptions::*> kSizes{
            { "width", &DisplayOptions::width },
            { "height", &DisplayOptions::height },
            { "scale", &DisplayOptions::scale },
        };
        DisplayOptions options;
        for (const QByteArray &option : example.asked.split('&')) {
            const QByteArray name = option.left(option.indexOf('='));
            const QByteArray value = option.mid(name.size() + 1);
            if (name == "comment")
                options.comment = bytesOf(QString::fromLatin1(value));
            else if (!name.isEmpty())
                options.*kSizes.at(name) = value.toDouble();
        }
        const QByteArray head("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
        QByteArray exact = example.exact;
        exact.chop(1); // the last line feed
        EXPECT_EQ(displayableSvg(exact, options).toStdString(),
                  ((example.shown.startsWith("<?xml") ? QByteArray() : head) + example.shown)
                          .toStdString());
    }

    INSTANTIATE_TEST_SUITE_P(Examples, DisplayGolden, testing::ValuesIn(examples()),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test

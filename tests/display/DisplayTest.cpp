// The examples of golden/display/Display.md: exact text in, document for display out.

#include "exact/svg/SVGDisplay.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include <map>
#include <ostream>

namespace svgtool::test {
namespace {

    struct Example
    {
        std::string name;
        bool isWhole;
        QByteArray asked, exact, shown;
    };

    void PrintTo(const Example &example, std::ostream *out)
    {
        *out << example.name;
    }

    QByteArray bytesOf(const QString &text)
    {
        return QByteArray::fromPercentEncoding(text.toUtf8(), '\\');
    }

    // None, which fails, where a block stands outside the sections.
    std::vector<Example> examples()
    {
        QFile file(QStringLiteral(SVGTOOL_GOLDEN_DIR "/display/Display.md"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        static const QRegularExpression form(
                QStringLiteral("^(\\w+)\n\n```exact ?(\\S*)((?:\n.*)*)\n```\n\n"
                               "```shown\n((?:.*\n)+)```\n*$"));
        const QStringList sections =
                QString::fromUtf8(file.readAll()).split(QStringLiteral("\n## "));
        if (sections.first().contains(QLatin1String("```")))
            return {};
        std::vector<Example> all;
        for (const QString &section : sections.mid(1)) {
            const auto match = form.match(section);
            all.push_back({ section.section(QLatin1Char('\n'), 0, 0).toStdString(),
                            match.hasMatch(), match.captured(2).toLatin1(),
                            bytesOf(match.captured(3).mid(1)), bytesOf(match.captured(4)) });
        }
        return all;
    }

    class DisplayGolden : public testing::TestWithParam<Example>
    {
    };

    TEST_P(DisplayGolden, IsExact)
    {
        const Example &example = GetParam();
        ASSERT_TRUE(example.isWhole) << "the section is malformed";
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
        EXPECT_EQ(displayableSvg(example.exact, options).toStdString(),
                  example.shown.toStdString());
    }

    INSTANTIATE_TEST_SUITE_P(Examples, DisplayGolden, testing::ValuesIn(examples()),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test

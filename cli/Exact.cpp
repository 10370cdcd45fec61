#include "cli/ExactEntry.h"

#include <QLoggingCategory>

namespace svgtool {

static void showLog(const std::string &level)
{
    // What the library logs is for the curious; QT_LOGGING_RULES="svgtool=true" shows it too.
    QString rules;
    static constexpr struct
    {
        const char *level;
        const char *type;
    } kTypes[] = {
        { "trace", "debug" }, { "info", "info" }, { "warning", "warning" }, { "fatal", "critical" }
    };
    bool isOn = false;
    for (const auto &[name, type] : kTypes) {
        isOn = isOn || level == name;
        if (isOn)
            rules += QLatin1String("svgtool.") + QLatin1String(type) + QLatin1String("=true\n");
    }
    QLoggingCategory::setFilterRules(rules);
    if (level == "trace")
        setLogLevel(QByteArrayLiteral("TRACE"));
}

} // namespace svgtool

extern "C" const svgtool::ExactPath metafile2svgExactPath{
    svgtool::convertMetaFile, svgtool::showLog, svgtool::startRecordDump, svgtool::stopRecordDump
};

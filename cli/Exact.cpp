#include "cli/Exact.h"

#include <QLoggingCategory>

namespace svgtool {

qint32 convertExact(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally)
{
    return convertMetaFile(metafileData, svgOut, tally);
}

void showLog(const std::string &level)
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

bool startRecordList(int descriptor, QString *reason)
{
    return startRecordDump(descriptor, reason);
}

bool stopRecordList(QString *reason)
{
    return stopRecordDump(reason);
}

} // namespace svgtool

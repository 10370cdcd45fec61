#include "cli/Exact.h"
#include "cli/Files.h"

namespace svgtool {

static const QString kReason = QStringLiteral("the exact path is not in this build");

qint32 convertExact(const QByteArray &, QByteArray &, RecordTally *)
{
    throw Failure{ QString(), kReason };
}

void showLog(const std::string &) { }

bool startRecordList(int, QString *reason)
{
    *reason = kReason;
    return false;
}

bool stopRecordList(QString *)
{
    return true;
}

} // namespace svgtool

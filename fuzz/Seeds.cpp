// Writes first inputs for the fuzz targets of whole metafiles into FOLDER/<target>, to go with
// those of fuzz/corpus, which between them reach every handler.
// usage: fuzz_seeds FOLDER

#include "bench/Families.h"

#include <QDir>
#include <QFile>

static bool write(const QString &folder, const char *target, const QByteArray &metafile)
{
    static int number = 0;
    const QDir dir(folder + QLatin1Char('/') + QLatin1String(target));
    QFile file(dir.filePath(QString::number(++number)));
    return dir.mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly)
            && file.write(metafile) == metafile.size();
}

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    using namespace svgtool;
    const QString folder = QString::fromLocal8Bit(argv[1]);
    bool isWritten = true;
    for (const bench::Family &family : bench::families()) {
        const bool isEmf = QByteArray(family.name).startsWith("emf");
        isWritten = isWritten && write(folder, isEmf ? "emf" : "wmf", family.make(1));
    }
    return isWritten ? 0 : 1;
}

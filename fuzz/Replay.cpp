#include "fuzz/Harness.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

// Stands in for libFuzzer where the compiler has none: runs the target once on every file named,
// or found in a folder named.

static bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
    return LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()),
                                  size_t(bytes.size()))
            == 0;
}

int main(int argc, char *argv[])
{
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QString::fromLocal8Bit(argv[i]), QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            if (!replay(files.next()))
                return 1;
            ++replayed;
        }
    }
    std::printf("%d inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}

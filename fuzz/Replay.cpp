#include "fuzz/Harness.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

// Stands in for libFuzzer where the compiler has none: runs the target once on every file found in
// the folders named.
int main(int argc, char *argv[])
{
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QString::fromLocal8Bit(argv[i]), QDir::Files);
        for (; files.hasNext(); ++replayed) {
            QFile file(files.next());
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            svgtool::fuzz::require(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()),
                                   size_t(bytes.size()));
        }
    }
    std::printf("%d inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}

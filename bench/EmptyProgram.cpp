// What a program with Qt Core takes to start, beside which the tool's start is measured.

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}

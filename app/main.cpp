#include "hostprogram.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velora-host"));
    return HostProgram::run(app);
}

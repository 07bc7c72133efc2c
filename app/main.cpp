#include "firstpaintwatch.h"
#include "hostprogram.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    FirstPaintWatch::noteStart();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velora-host"));
    return HostProgram::run(app);
}

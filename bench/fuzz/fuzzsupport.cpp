#include "fuzzsupport.h"

#include <QApplication>

void FuzzSupport::ensureApplication()
{
    if (QCoreApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "velora-fuzz";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

QByteArray FuzzSupport::bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

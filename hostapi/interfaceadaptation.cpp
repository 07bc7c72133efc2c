#include "interfaceadaptation.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

double InterfaceAdaptation::getResolutionRatioH()
{
    if (!qGuiApp || QGuiApplication::platformName() == QLatin1String("offscreen"))
        return 1.0;
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1.0;
    const double dpi = screen->logicalDotsPerInchY();
    return dpi > 0 ? dpi / 96.0 : 1.0;
}

int InterfaceAdaptation::scaled(int pixels)
{
    return int(std::lround(pixels * getResolutionRatioH()));
}

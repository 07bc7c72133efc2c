#pragma once
#include <QString>

class HostContext;
class LtdInfo;
class TQdtjyjc;
class QWidget;

// The host's side of the unit-price cloud check: opens the wizard on the
// project's settings and applies what it reports.
class PriceCheckHost
{
public:
    // Runs the wizard modally on the project; returns when it has closed.
    static QWidget *open(HostContext &host);
    // The tour: the first page, the influence-factor dialog, the second page.
    static QWidget *tour(HostContext &host);
    // Builds `dialog`, gives it the project's time, place, altitude and
    // scope, and connects its signals to the host's reactions.
    static void prepare(TQdtjyjc &dialog, HostContext &host);
    // Writes time and place into the project settings as one undo step.
    static void writeYxys(HostContext &host, const QString &sj, const QString &dd);
    // The wizard's result: opens the check browser on the current bill.
    static void startCheck(HostContext &host, LtdInfo *server, int matchNum);
};

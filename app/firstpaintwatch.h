#pragma once
#include <QObject>

class QWidget;

// Waits for a widget's first paint, then prints how long after the launch it
// came ("first paint 123 ms") and quits the application: the cold start of
// velora-host. The launcher gives its clock (the real-time clock in
// nanoseconds, as `date +%s%N` prints it) in VELORA_LAUNCH_NS; without it the
// time counts from the start of main().
class FirstPaintWatch : public QObject
{
    Q_OBJECT
public:
    explicit FirstPaintWatch(QWidget *widget);
    static double msSinceLaunch();
    // Notes the start of main(), for a launch without a clock.
    static void noteStart();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_seen = false;
};

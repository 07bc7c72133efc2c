#pragma once
#include <QObject>

class QWidget;

// Waits for a widget's first paint, then prints how long after the process
// started it came ("first paint 123 ms") and quits the application: the
// cold start of velora-host, measured from outside the program's own code.
class FirstPaintWatch : public QObject
{
    Q_OBJECT
public:
    explicit FirstPaintWatch(QWidget *widget);
    // Milliseconds since the kernel started this process (10 ms steps for
    // the start itself).
    static double msSinceProcessStart();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_seen = false;
};

#pragma once
#include <QString>
#include <QStringList>

#include <functional>

class HostContext;

class MainWindow;
class QWidget;

// The offscreen tour: grabs the main window and every registered dialog to
// one PNG each in a folder. Modal runs are grabbed and rejected, message
// boxes answered with 0, non-modal windows grabbed and closed.
class TourRunner
{
public:
    TourRunner(MainWindow *window, const QString &dir);
    // Writes the PNGs; returns their paths in order. `error` is set when the
    // folder cannot be made or an image cannot be written.
    QStringList run(QString *error = nullptr);

private:
    bool grab(QWidget *widget, const QString &name);
    void runEntry(int number, const QString &id);
    void runStep(int number, const QString &id, const std::function<QWidget *(HostContext &)> &step);

    MainWindow *m_window;
    QString m_dir;
    QStringList m_files;
    QStringList m_errors;
};

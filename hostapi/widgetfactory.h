#pragma once
#include <QIcon>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

// Labels and buttons as the dialogs make them: text, object name, parent and,
// where given, a fixed size passed through the resolution ratio
// (InterfaceAdaptation) and a style sheet.
class WidgetFactory
{
public:
    static QLabel *label(const QString &text, const QString &name, QWidget *parent);
    static QLabel *label(const QString &text, const QString &name, QWidget *parent, int width, int height);
    static QLabel *label(const QString &text, const QString &name, QWidget *parent, const QString &style);
    // A thin horizontal line: a label `width` × 1 filled with `color`.
    static QLabel *rule(const QString &name, QWidget *parent, int width, const QString &color);

    static QPushButton *button(const QString &text, const QString &name, QWidget *parent);
    static QPushButton *button(const QString &text, const QString &name, QWidget *parent, int width, int height);
    // A borderless 24 x 24 (scaled) button drawn by `icon`, `hover` under the mouse.
    static QPushButton *iconButton(const QString &name, const QString &icon, const QString &hover, QWidget *parent);

    // Icons from files, read once per process (GUI thread): an icon read
    // anew each time parses its file again and misses the rendered pixmaps.
    static QIcon icon(const QString &path);
    static QIcon icon(const QString &normal, const QString &disabled, const QString &active);

    // setFixedSize with both sizes scaled.
    static void setScaledFixedSize(QWidget *widget, int width, int height);
};

#pragma once
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

    // setFixedSize with both sizes scaled.
    static void setScaledFixedSize(QWidget *widget, int width, int height);
};

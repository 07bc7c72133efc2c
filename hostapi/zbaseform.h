#pragma once
#include <QColor>
#include <QWidget>

// The host's form base: a plain page or panel (wizard pages, embedded forms)
// that paints its style-sheet background and scales its fixed sizes.
class zBaseForm : public QWidget
{
    Q_OBJECT
public:
    explicit zBaseForm(QWidget *parent = nullptr);

    // Solid background (through the form's own style sheet rule).
    void setBackgroundColor(const QColor &color);
    QColor backgroundColor() const { return m_background; }
    // setFixedSize with both sizes passed through the resolution ratio.
    void setScaledFixedSize(int width, int height);

private:
    QColor m_background;
};

#pragma once
#include <QColor>
#include <QDialog>
#include <QPoint>

class QLabel;
class QPainter;
class QPushButton;
class QVBoxLayout;

// The host's titled modal dialog: frameless, rounded, with a caption bar (its
// widget is named "widgetTitleBar") that drags the window, and a client area
// below it for the dialog's own content.
//
//   class TFoo : public zTitleModal { ... };
//   TFoo dlg(parent);
//   dlg.SetCaption("Velora");
//   dlg.clientLayout()->addWidget(...);
//   dlg.ShowModal();          // runs through ModalRun::exec
class zTitleModal : public QDialog
{
    Q_OBJECT
public:
    enum TitleButton { CloseButton = 0x1, MinimizeButton = 0x2, MaximizeButton = 0x4 };

    explicit zTitleModal(QWidget *parent = nullptr);

    void SetCaption(const QString &caption);
    QString caption() const;
    // Icon at the left of the caption (a resource path); empty hides it.
    void SetHeaderIcon(const QString &path);

    // Which buttons the caption bar offers (TitleButton flags); the default
    // is minimise and close.
    void setTitleButtons(int buttons);
    int titleButtons() const { return m_buttons; }
    // The close-only caption bar.
    void OnlyClose() { setTitleButtons(CloseButton); }

    QWidget *titleBar() const { return m_titleBar; }
    QWidget *clientWidget() const { return m_client; }
    // Layout of the client area (no margins, no spacing of its own).
    QVBoxLayout *clientLayout() const { return m_clientLayout; }

    // Fill of the rounded body; the caption bar takes the same colour.
    void setBackgroundColor(const QColor &color);
    QColor backgroundColor() const { return m_background; }
    // setFixedSize with both sizes passed through the resolution ratio.
    void setScaledFixedSize(int width, int height);

    // Runs the dialog modally through ModalRun::exec and returns its result.
    virtual int ShowModal();

public slots:
    // The confirm action: closes the dialog as accepted.
    virtual void actOk();
    // Closes the dialog as rejected.
    virtual void actCancel();

protected:
    void paintEvent(QPaintEvent *event) override;
    void fillBody(QPainter &painter) const;
    void drawRim(QPainter &painter) const;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildTitleBar();
    void updateStyle();

    QWidget *m_titleBar = nullptr;
    QLabel *m_icon = nullptr;
    QLabel *m_caption = nullptr;
    QPushButton *m_btnMin = nullptr;
    QPushButton *m_btnMax = nullptr;
    QPushButton *m_btnClose = nullptr;
    QWidget *m_client = nullptr;
    QVBoxLayout *m_clientLayout = nullptr;
    QColor m_background = QColor(0xF5, 0xF7, 0xF9);
    int m_buttons = CloseButton | MinimizeButton;
    QPoint m_dragOffset;
    bool m_dragging = false;
};

#pragma once
#include <QLabel>

// A one-line label that shrinks with its container and elides its text
// instead of overlapping its neighbours; the full text is its tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget *parent = nullptr);
    void setFullText(const QString &text);
    QString fullText() const { return m_text; }
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();
    QString m_text;
};

#pragma once
#include <QHBoxLayout>
#include <QString>

class QDialog;
class QPushButton;
class QWidget;
class zTitleModal;

// A dialog's button row: leading widgets at the left (a count label, say),
// then a stretch, then the buttons right-aligned in the order added.
//
//     auto *row = new ButtonRow(this);
//     row->addLeading(m_lblCount);
//     row->addOkCancel(this);          // "确定" btnOk, "取消" btnCancel
//     body->addLayout(row);
//
// Buttons are children of the owner given to the constructor. The 确定/取消
// buttons call a zTitleModal's actOk/actCancel, a plain dialog's accept/reject.
class ButtonRow : public QHBoxLayout
{
public:
    explicit ButtonRow(QWidget *owner);

    void addLeading(QWidget *widget);
    // Scaled fixed size of every button added from now on.
    void setButtonSize(int width, int height);
    // Scaled space before the next button.
    void addGap(int pixels);
    QPushButton *addButton(const QString &text, const QString &name);

    QPushButton *addOk(QDialog *dialog, const QString &text = QStringLiteral("确定"),
                       const QString &name = QStringLiteral("btnOk"));
    QPushButton *addCancel(QDialog *dialog, const QString &text = QStringLiteral("取消"),
                           const QString &name = QStringLiteral("btnCancel"));
    // "确定", a scaled gap of `gap` pixels (none at 0), "取消".
    void addOkCancel(QDialog *dialog, int gap = 0);

    QPushButton *okButton() const { return m_ok; }
    QPushButton *cancelButton() const { return m_cancel; }

private:
    // A titled dialog's own action, else the plain dialog's slot.
    static void wire(QPushButton *button, QDialog *dialog, void (zTitleModal::*titled)(), void (QDialog::*plain)());

    QWidget *m_owner;
    int m_leading = 0;
    int m_width = 0;
    int m_height = 0;
    QPushButton *m_ok = nullptr;
    QPushButton *m_cancel = nullptr;
};

#pragma once
#include "ztitlemodal.h"

#include <QStringList>

class TextPathWidget;

// The host's path picker dialog: a TextPathWidget with "确定" and "取消".
// Run it through ModalRun::exec (or ShowModal): 1 = accepted, then read
// getSelectedPath(). Choosing an item that has no further level accepts at once.
class TextPathDlg : public zTitleModal
{
    Q_OBJECT
public:
    explicit TextPathDlg(QWidget *parent = nullptr);
    explicit TextPathDlg(const QString &title, QWidget *parent = nullptr);

    TextPathWidget *pathWidget() const { return m_widget; }

    // Forwarded to the widget.
    void addFirstTabData(const QString &title, const QStringList &items);
    void addTabData(const QString &title, const QStringList &items);
    QStringList getSelectedPath() const;

signals:
    // Re-emitted from the widget (direct), so owners may connect to either.
    void doRequestNextTab(int tab, const QString &item, TextPathWidget *widget, QStringList *nextItems);

private:
    void build();

    TextPathWidget *m_widget = nullptr;
};

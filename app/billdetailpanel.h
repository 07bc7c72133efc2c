#pragma once
#include <QStringList>
#include <QWidget>

class BaseDataItem;
class QLabel;
class QPlainTextEdit;
class QTreeWidget;

// The current bill in full: code, name and unit, its item features and work
// content as multi-line text (the tree shows only their first line), and its
// price composition when one was applied.
class BillDetailPanel : public QWidget
{
    Q_OBJECT
public:
    explicit BillDetailPanel(QWidget *parent = nullptr);
    void showBill(const BaseDataItem *bill);
    QString headerText() const;
    QString featuresText() const;
    QString workContentText() const;
    // One line per composition line: code, name, quantity, unit, price, total.
    QStringList compositionLines() const;

private:
    void showComposition(const QString &zjnr);
    QLabel *m_header = nullptr;
    QPlainTextEdit *m_features = nullptr;
    QPlainTextEdit *m_workContent = nullptr;
    QLabel *m_compositionCaption = nullptr;
    QTreeWidget *m_composition = nullptr;
};

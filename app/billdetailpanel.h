#pragma once
#include <QWidget>

class BaseDataItem;
class QLabel;
class QPlainTextEdit;

// The current bill in full: code, name and unit, its item features and work
// content as multi-line text (the tree shows only their first line).
class BillDetailPanel : public QWidget
{
    Q_OBJECT
public:
    explicit BillDetailPanel(QWidget *parent = nullptr);
    void showBill(const BaseDataItem *bill);
    QString headerText() const;
    QString featuresText() const;
    QString workContentText() const;

private:
    QLabel *m_header = nullptr;
    QPlainTextEdit *m_features = nullptr;
    QPlainTextEdit *m_workContent = nullptr;
};

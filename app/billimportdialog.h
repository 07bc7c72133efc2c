#pragma once
#include "billlistimport.h"

#include <hostapi/ztitlemodal.h>

class QComboBox;
class QSpinBox;
class QTableWidget;

// Shows the first rows of an imported sheet and lets the user confirm or
// correct which column holds each bill field and which row is the header.
class BillImportDialog : public zTitleModal
{
    Q_OBJECT
public:
    BillImportDialog(const QString &fileName, const QList<QStringList> &rows, QWidget *parent = nullptr);

    BillListImport::Mapping mapping() const;
    QComboBox *fieldCombo(int field) const { return m_combos.value(field); }
    QSpinBox *headerSpin() const { return m_header; }

private:
    void buildFields(QWidget *client);
    void fillPreview();
    static QString columnName(int column);

    QList<QStringList> m_rows;
    int m_columnCount = 0;
    QList<QComboBox *> m_combos;
    QSpinBox *m_header = nullptr;
    QTableWidget *m_preview = nullptr;
};

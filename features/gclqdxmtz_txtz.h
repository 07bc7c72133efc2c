#pragma once
#include <hostapi/ztitlemodal.h>

#include <QString>

class QPushButton;
class QTextEdit;

// The text window of the feature guide: edits one custom description line
// ("编辑自编特征描述"), or shows a standard feature text or a filling hint
// read-only.
class Gclqdxmtz_Txtz : public zTitleModal
{
    Q_OBJECT
public:
    explicit Gclqdxmtz_Txtz(QWidget *parent = nullptr);

    void isReadOnly(bool readOnly);
    // The text shown; kept to find the custom line it came from.
    void setEdtData(const QString &text);
    // Editable use: the custom table of the line; shows "确定".
    void setDataName(const QString &table);

    int fid() const { return FID; }
    QTextEdit *edit() const { return m_edit; }
    QPushButton *okButton() const { return m_btnQd; }

signals:
    void Updata();

public slots:
    void QdButton();
    void GbButton();

private:
    QTextEdit *m_edit = nullptr;
    QPushButton *m_btnQd = nullptr;
    QString m_table;
    QString m_initial;
    int FID = 0;
};

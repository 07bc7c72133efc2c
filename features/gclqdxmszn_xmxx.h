#pragma once
#include <hostapi/ztitlemodal.h>

#include <QList>

class QLabel;

// "项目信息": where a cloud feature result comes from.
class Gclqdxmszn_Xmxx : public zTitleModal
{
    Q_OBJECT
public:
    explicit Gclqdxmszn_Xmxx(QWidget *parent = nullptr);

    // Each non-empty value goes after its caption; an empty one leaves its
    // label as it was.
    void setData(QString &projectName, QString &billCode, QString &unitName, QString &sectionName,
                 QString &billName);
    QList<QLabel *> labels() const { return m_labels; }

public slots:
    void GbButton();

private:
    QList<QLabel *> m_labels;
};

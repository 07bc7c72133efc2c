#pragma once
#include <cloud/cloudserverowner.h>

#include <hostapi/cloudparams.h>
#include <hostapi/ztitlemodal.h>

#include <QMap>
#include <QPointer>
#include <QString>

class CloudServerCombox;
class LtdInfo;
class QLabel;
class QPushButton;
class TCloudCLDialog_Yxys;
class zTableView;

// Sets up a material price check: influence factors (time, place, tax
// basis), the cloud source and the price library; on confirm it closes and
// hands the choice to the host.
class TCjyjc : public zTitleModal, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TCjyjc(QWidget *parent = nullptr);
    void CreateUI();

    void setLblSjsz(const QString &date);
    void setLblDdsz(const QString &place);
    void setLblHbsz(const QString &taxMode);
    void setLblDqjjb(const QString &label);
    void setClCount(int count);

    QString timeText() const;
    QString placeText() const;
    QString priceText() const;
    zTableView *libraryView() const { return m_gdTable; }
    QPushButton *okButton() const { return m_btnQd; }

public slots:
    void Modify();
    void slotTimeAndPathChanged(const QString &time, const QString &place);
    void QdButton();
    void GbButton();
    void slotRequestJbData();

signals:
    void signalCheckData(LtdInfo *server, QString &libraryId, CloudParams &params, QString &libraryName);
    void signalYxysChanged(QString time, QString place);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLayout *factorRows();
    QString placeCode(const QString &place) const;

    QLabel *m_lblSjsz = nullptr;
    QLabel *m_lblDdsz = nullptr;
    QLabel *m_lblHbsz = nullptr;
    QLabel *m_lblYyfwz = nullptr;
    QPushButton *m_btnXg = nullptr;
    QPushButton *m_btnQd = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    zTableView *m_gdTable = nullptr;
    QMap<QString, QString> m_libraryIds;
    QString m_dqjjb;
    CloudParams m_params;
    QPointer<TCloudCLDialog_Yxys> m_yxys;
};

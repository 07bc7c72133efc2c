#pragma once
#include "influencefactorlayout.h"
#include "placedictionaryreader.h"

#include <hostapi/guardsite.h>
#include <hostapi/ztitlemodal.h>

#include <QList>
#include <QString>
#include <QStringList>

class QCheckBox;
class QLineEdit;
class QPushButton;

// The influence-factor dialog: shows the time and place that scope a cloud
// comparison, lets the user change both and reports them on confirm. The
// variants only pass their InfluenceFactorLayout.
class InfluenceFactorDialog : public zTitleModal
{
    Q_OBJECT
public:
    using Choosedata = PlaceRow;

    void CreateUI();
    void InitUI();

    void setComSjText(const QString &text);
    // State of "同步修改工程设置表相应内容", read by the owner after the run.
    bool getChecked() const;
    // Cleared by the clear button; the dialog sends it nowhere.
    QString placeIdText() const { return m_placeId; }
    void setPlaceIdText(const QString &id) { m_placeId = id; }
    // True when the dialog was closed by "确定".
    bool isConfirmed() const { return m_confirmed; }

    QStringList nextPageData(const QString &name, const QList<Choosedata> &list) const;

    // The behaviour behind the buttons; variants without slots of their own
    // leave the wiring of these to the owner.
    void pickTime();
    void pickPlace();
    void clearPlace();
    void confirm();

    QLineEdit *timeField() const { return m_comSj; }
    QLineEdit *placeField() const { return m_comDd; }
    QPushButton *timeButton() const { return m_btnSj; }
    QPushButton *placeButton() const { return m_btnDd; }
    QPushButton *clearButton() const { return m_btnClear; }
    QPushButton *confirmButton() const { return m_btnOk; }
    QPushButton *closeButton() const { return m_btnClose; }
    QCheckBox *syncBox() const { return m_chkSync; }
    const InfluenceFactorLayout &layoutConfig() const { return m_layout; }

signals:
    void signalTimeAndPath(const QString &time, const QString &place);

protected:
    InfluenceFactorDialog(const InfluenceFactorLayout &layout, QWidget *parent);

    void setComDdText(const QString &text);
    // Variants with slots of their own connect their buttons here.
    virtual void wireButtons() {}

private:
    InfluenceFactorLayout m_layout;
    // Reports under the variant's class: "TQdtjyjc_Yxys::pickPlace".
    GuardSite m_site;
    QString m_timeText;
    QString m_placeText = QStringLiteral("无");
    QString m_placeId;
    bool m_confirmed = false;
    QLineEdit *m_comSj = nullptr;
    QLineEdit *m_comDd = nullptr;
    QPushButton *m_btnSj = nullptr;
    QPushButton *m_btnDd = nullptr;
    QPushButton *m_btnClear = nullptr;
    QPushButton *m_btnOk = nullptr;
    QPushButton *m_btnClose = nullptr;
    QCheckBox *m_chkSync = nullptr;
};

#pragma once
#include <cloud/cloudserverowner.h>

#include <hostapi/zbaseform.h>

#include <QPointer>
#include <QString>

class CloudServerCombox;
class LtdInfo;
class QButtonGroup;
class QLabel;
class QRadioButton;
class TBzqdycc_Xjqdk;
class zBaseCombox;

// First page of the storage wizard: what to save, the server, and the bill
// library of that server (a new one can be made here).
class TBzqdycc : public zBaseForm, public CloudServerOwner
{
    Q_OBJECT
public:
    explicit TBzqdycc(QWidget *parent = nullptr);
    // Builds the page, then the server choice and the library list.
    void CreateUI();

    // 0 "清单及组价内容" (also when nothing is checked), 1 "清单及价格", 2 "仅清单".
    int getQdContent() const;
    int getQdCloud() const { return 1; }
    // The chosen library's id; empty on "新建清单库".
    QString GetXmk() const;
    CloudServerCombox *getcomQyy() const { return m_comServer; }
    zBaseCombox *libraryCombo() const { return m_comXmk; }

    // Write permission on the chosen library (type 1 / -1 entries): the
    // reply's code, 0 allowed.
    int CheckPowerByQyk(bool showMessage);
    // Tiered write permission of `server`.
    bool RequestQdEdit(LtdInfo *server);
    // The permission check the entry's type calls for.
    bool mayWrite();

    void initQdk();

public slots:
    void slotXjqdk(int index);

private:
    void buildLayout();
    QRadioButton *contentRadio(const QString &text, const QString &name, int id);
    QLabel *hint(const QString &text, const QString &name);
    void fillLibraries(const QJsonArray &libraries);
    void clearLibraries();
    void reconnect();

    QLabel *m_lblIcon = nullptr;
    QLabel *m_lblTitle = nullptr;
    QLabel *m_lblYcc = nullptr;
    QLabel *m_lblNote = nullptr;
    QLabel *m_lblBcnr = nullptr;
    QLabel *m_lblBcwz = nullptr;
    QLabel *m_lblXmk = nullptr;
    QLabel *m_lblBczj = nullptr;
    QLabel *m_lblDjxx = nullptr;
    QLabel *m_lblBcqdbm = nullptr;
    QRadioButton *m_radQdzj = nullptr;
    QRadioButton *m_radQdjg = nullptr;
    QRadioButton *m_radJqd = nullptr;
    QButtonGroup *m_content = nullptr;
    CloudServerCombox *m_comServer = nullptr;
    zBaseCombox *m_comXmk = nullptr;
    QPointer<TBzqdycc_Xjqdk> m_xjqdk;
    bool m_listMsgShown = false;
};

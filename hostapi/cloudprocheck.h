#pragma once
#include "ltdinfo.h"
#include "tqdnodeinfo.h"
#include "ztitlemodal.h"

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariant>

class QLabel;
class zFilterSearchBox;
class zTableModel;
class zTableView;

// The host's project filter (工程筛选): lists the accumulated projects of the
// current server with check boxes and a search box; "确定" hands the checked
// projects to the owner and closes.
//
//     CloudProCheck dlg(selected, server, sjkm, info, this);
//     dlg.setIscondNull(false);
//     connect(&dlg, &CloudProCheck::signalCheckGc, this, &TZnyzj::slotGCSXSured);
//     if (dlg.InitGcInfo())
//         dlg.ShowModal();
//
// `selected` and signalCheckGc use the text form of AccumulatedProjectQuery
// (one compact JSON object per project). Choices survive searches: a checked
// project stays chosen while a search hides it.
class CloudProCheck : public zTitleModal
{
    Q_OBJECT
public:
    CloudProCheck(const QStringList &selected, LtdInfo *server, const QString &sjkm, const TQDNodeInfo &info,
                  QWidget *parent = nullptr);

    // True: the request carries no conditions (all projects of the tier).
    // False (the module's choice): the project type and the keyword filter it.
    void setIscondNull(bool isNull) { m_condNull = isNull; }
    bool iscondNull() const { return m_condNull; }
    // Project type sent as "gcType" (0, the default, sends none).
    void setGcType(int gcType) { m_gcType = gcType; }

    // Loads the list (no keyword); false, after telling the user, when there
    // is no server or the request fails.
    bool InitGcInfo();

    QStringList checkedChoices() const;
    QString sjkm() const { return m_sjkm; }
    TQDNodeInfo nodeInfo() const { return m_info; }
    zTableModel *tableModel() const { return m_model; }
    zFilterSearchBox *searchBox() const { return m_search; }

public slots:
    void actOk() override;

signals:
    void signalCheckGc(QStringList choices);
    // The same choice as a list of maps with "tid", "xmmc", "dq", "sj", "gcType".
    void signalCheckGcMaps(QList<QMap<QString, QVariant>> choices);

private:
    void buildUi();
    bool loadProjects(const QString &keyword);
    void showProjects();
    void slotCheckBoxClicked(const QModelIndex &index, Qt::CheckState state);
    void updateCount();

    LtdInfo m_server;
    bool m_hasServer = false;
    QString m_sjkm;
    TQDNodeInfo m_info;
    bool m_condNull = true;
    int m_gcType = 0;
    QList<QJsonObject> m_projects;
    // tid -> choice text, in the order the user chose.
    QStringList m_choiceOrder;
    QMap<QString, QString> m_choices;
    zFilterSearchBox *m_search = nullptr;
    zTableModel *m_model = nullptr;
    zTableView *m_view = nullptr;
    QLabel *m_lblCount = nullptr;
};

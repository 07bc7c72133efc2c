#pragma once
#include <hostapi/guardsite.h>
#include "cloudprojectselection.h"
#include "cloudsourcesoptions.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

class CloudServerChoice;
class JJBTableBase;
class LtdInfo;
class QCheckBox;
class QLabel;
class QPushButton;
class QWidget;
class WorkBaseObject;

// The cloud sources block of the pricing and feature dialogs: the check boxes
// "标准清单" and "积累工程清单", the project filter link and the "已选工程："
// row. The dialog places the two rows in its layout and follows its server
// choice with it:
//
//   m_sources = new CloudSources(options, this);
//   m_sources->follow(m_servers);      // before m_servers->start()
//   row->addWidget(m_sources->sourcesRow());
//   body->addWidget(m_sources->selectionRow());
//   ... m_sources->mode(), m_sources->projectIds() on 确定
class CloudSources : public QObject
{
    Q_OBJECT
public:
    // Widgets are children of `dialog`, which also parents the message boxes
    // and the project filter. Stored check states are read at once.
    CloudSources(const CloudSourcesOptions &options, QWidget *dialog);

    // The current server comes from `servers`; the caption and the selection
    // are refreshed on each of its reloads and resets.
    void follow(CloudServerChoice *servers);

    // What the project filter is given.
    void setSjkm(const QString &sjkm) { m_sjkm = sjkm; }
    void setUnitWork(WorkBaseObject *unitWork) { m_unitWork = unitWork; }
    void setCurrJjb(JJBTableBase *table) { m_table = table; }

    // 0 none, 1 standard, 2 accumulated, 3 both.
    int mode() const;
    // The chosen project ids while the accumulated source is checked.
    QStringList projectIds() const;
    const CloudProjectSelection &selection() const { return m_selection; }
    // "请勾选清单方案来源" when no source is checked; false then.
    bool checkSource() const;

    QWidget *sourcesRow() const { return m_sourcesRow; }
    QWidget *selectionRow() const { return m_selectionRow; }
    QCheckBox *standardBox() const { return m_chkBzqd; }
    QCheckBox *accumulatedBox() const { return m_chkJlqd; }
    QPushButton *filterLink() const { return m_btnGcsx; }
    QLabel *namesLabel() const { return m_lblGcmc; }
    QPushButton *clearButton() const { return m_btnClear; }

public slots:
    // The two check states from the global settings (unless not stored).
    void readChecks();
    // Either check box changed: the rows follow, the states are stored.
    void gcTypeClicked();
    // New server (or a login): caption, then the selection of its key.
    void serverChanged();
    void readGcid();
    void setGcCheckedName();
    void slotGCSXClicked();
    void slotGCSXSured(const QList<QMap<QString, QVariant>> &projects);
    void slotClearClicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildSourcesRow(QWidget *dialog);
    void buildSelectionRow(QWidget *dialog);
    void applyChecks();
    // The names elided to the label's current width.
    void showNames();
    void writeChecks() const;
    void setMode(int mode);
    LtdInfo *currentServer() const;
    GuardSite site() const;

    CloudSourcesOptions m_options;
    QPointer<QWidget> m_dialog;
    QPointer<CloudServerChoice> m_servers;
    CloudProjectSelection m_selection;
    QString m_sjkm;
    WorkBaseObject *m_unitWork = nullptr;
    JJBTableBase *m_table = nullptr;
    QWidget *m_sourcesRow = nullptr;
    QWidget *m_selectionRow = nullptr;
    QCheckBox *m_chkBzqd = nullptr;
    QCheckBox *m_chkJlqd = nullptr;
    QPushButton *m_btnGcsx = nullptr;
    QLabel *m_lblGcmc = nullptr;
    QPushButton *m_btnClear = nullptr;
};

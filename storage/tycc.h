#pragma once
#include "chapterchoice.h"

#include <hostapi/zbaseform.h>

#include <QString>

class ChapterTreeModel;
class LtdInfo;
class QButtonGroup;
class QCheckBox;
class QDTreeDelegate;
class QDTreeItem;
class QLabel;
class QRadioButton;
class QTreeView;
class zBaseCombox;

// Second page of the storage wizard: where in the library's chapter tree the
// bills go, how existing content is treated, and how refused bills are marked.
class TYcc : public zBaseForm
{
    Q_OBJECT
public:
    explicit TYcc(QWidget *parent = nullptr);
    void CreateUI();

    // Requests the top chapters of `bzqdkid` on `server`.
    void loadTree(LtdInfo *server, const QString &bzqdkid);
    // The scope saved: "当前项目", or a block ("定义块") or single bill, whose
    // location is fixed to a chapter.
    void UpText(const QString &scope);

    bool GmlChecked() const;
    bool isGmlChecked() const { return GmlChecked(); }
    bool isReplaceSave() const;
    bool isChildZjBtj() const;
    bool radZjxxChecked() const;
    bool isFinalTree() const;
    bool isAddMRZj() const;
    QString getZjid() const;
    QString getMRId() const { return m_mrId; }
    int getZjLevel() const;
    ChapterChoice chapterChoice() const;

    bool GetIsQdChecked() const;
    QString GetQdColor() const;

    QTreeView *treeView() const { return m_tree; }
    ChapterTreeModel *treeModel() const { return m_model; }
    QDTreeDelegate *treeDelegate() const { return m_delegate; }

public slots:
    // The arrow of a chapter was pressed: load its children on first use,
    // then open or close it.
    void slotExpand(const QModelIndex &index);

private:
    void buildLayout();
    void buildTree();
    QRadioButton *radio(QButtonGroup *group, const QString &text, const QString &name);
    QLabel *note(const QString &text, const QString &name);
    void loadChildren(const QModelIndex &index);
    void updateChoices();
    void setBlockMode(bool block);
    QDTreeItem *chosenItem() const;

    LtdInfo *m_server = nullptr;
    QString m_bzqdkid;
    QString m_mrId;
    QLabel *m_lblFw = nullptr;
    QLabel *m_lblFwnr = nullptr;
    QLabel *m_lblWz = nullptr;
    QLabel *m_lblFg = nullptr;
    QLabel *m_lblZzj = nullptr;
    QLabel *m_lblWzsm = nullptr;
    QLabel *m_lblFgsm = nullptr;
    QLabel *m_lblZzjsm = nullptr;
    QLabel *m_lblGml = nullptr;
    QRadioButton *m_radGml = nullptr;
    QRadioButton *m_radZjxx = nullptr;
    QRadioButton *m_radZjcc = nullptr;
    QRadioButton *m_radThcc = nullptr;
    QRadioButton *m_radBtj = nullptr;
    QRadioButton *m_radZjtj = nullptr;
    QCheckBox *m_chkBj = nullptr;
    zBaseCombox *m_comBjs = nullptr;
    QTreeView *m_tree = nullptr;
    ChapterTreeModel *m_model = nullptr;
    QDTreeDelegate *m_delegate = nullptr;
    bool m_block = false;
};

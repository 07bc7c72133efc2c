#include "tycc.h"
#include "chaptertreemodel.h"
#include "qdtreedelegate.h"
#include "qdtreeitem.h"
#include "storagerequests.h"

#include <cloud/cloudexchange.h>

#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/markcolorhelp.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zbasecombox.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPixmap>
#include <QRadioButton>
#include <QTreeView>
#include <QUuid>
#include <QVBoxLayout>

namespace {
const char kSource[] = "TotalYcc";

int px(int pixels)
{
    return InterfaceAdaptation::scaled(pixels);
}

QIcon swatch(const QString &color)
{
    QPixmap pixmap(px(12), px(12));
    pixmap.fill(QColor(color));
    return QIcon(pixmap);
}
}

TYcc::TYcc(QWidget *parent)
    : zBaseForm(parent)
{
}

void TYcc::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_tree)
            return;
        m_lblFw = WidgetFactory::label(QStringLiteral("保存范围:"), QStringLiteral("lblFw"), this);
        m_lblFwnr = WidgetFactory::label(QStringLiteral("当前项目"), QStringLiteral("lblFwnr"), this);
        m_lblWz = WidgetFactory::label(QStringLiteral("请选择数据存储章节位置"), QStringLiteral("lblWz"), this);
        m_lblFg = WidgetFactory::label(QStringLiteral("请选择数据覆盖模式"), QStringLiteral("lblFg"), this);
        m_lblZzj = WidgetFactory::label(QStringLiteral("请选择子章节添加模式"), QStringLiteral("lblZzj"), this);
        auto *location = new QButtonGroup(this);
        m_radGml = radio(location, QStringLiteral("根目录"), QStringLiteral("radGml"));
        m_radZjxx = radio(location, QStringLiteral("从右侧章节选择"), QStringLiteral("radZjxx"));
        m_lblWzsm = note(QStringLiteral("单条或块内清单保存不可选"), QStringLiteral("lblWzsm"));
        auto *mode = new QButtonGroup(this);
        m_radZjcc = radio(mode, QStringLiteral("追加存储"), QStringLiteral("radZjcc"));
        m_radThcc = radio(mode, QStringLiteral("替换存储"), QStringLiteral("radThcc"));
        m_lblFgsm = note(QStringLiteral("(清除选中章节下所有内容)"), QStringLiteral("lblFgsm"));
        auto *child = new QButtonGroup(this);
        m_radBtj = radio(child, QStringLiteral("不添加"), QStringLiteral("radBtj"));
        m_radZjtj = radio(child, QStringLiteral("按工程结构逐级自动添加"), QStringLiteral("radZjtj"));
        m_lblZzjsm = note(QStringLiteral("(保存到根目录时不可选)"), QStringLiteral("lblZzjsm"));
        m_radZjxx->setChecked(true);
        m_radZjcc->setChecked(true);
        m_radBtj->setChecked(true);
        m_chkBj = new QCheckBox(QStringLiteral("标记上传不成功清单"), this);
        m_chkBj->setObjectName(QStringLiteral("chkBj"));
        m_chkBj->setChecked(true);
        m_comBjs = new zBaseCombox(this);
        m_comBjs->setObjectName(QStringLiteral("comBjs"));
        m_comBjs->setFixedSize(px(100), px(26));
        for (int i = 0; i < markColorHelp::ColorCount; ++i)
            m_comBjs->addItem(swatch(markColorHelp::GetColorPath(i)), markColorHelp::GetColorName(i),
                              markColorHelp::GetColorPath(i));
        buildTree();
        buildLayout();
        connect(m_radGml, &QRadioButton::toggled, this, &TYcc::updateChoices);
        connect(m_chkBj, &QCheckBox::toggled, m_comBjs, &QWidget::setEnabled);
        updateChoices();
    });
}

QRadioButton *TYcc::radio(QButtonGroup *group, const QString &text, const QString &name)
{
    auto *button = new QRadioButton(text, this);
    button->setObjectName(name);
    group->addButton(button);
    return button;
}

QLabel *TYcc::note(const QString &text, const QString &name)
{
    return WidgetFactory::label(text, name, this, QStringLiteral("color:#AEAEAE;"));
}

void TYcc::buildTree()
{
    m_lblGml = WidgetFactory::label(QStringLiteral("保存到根目录时不需要章节"), QStringLiteral("lblGml"), this,
                                    QStringLiteral("color:#909399;"));
    m_lblGml->setAlignment(Qt::AlignCenter);
    m_tree = new QTreeView(this);
    m_tree->setObjectName(QStringLiteral("XMTreeView"));
    m_model = new ChapterTreeModel(m_tree);
    m_delegate = new QDTreeDelegate(m_tree);
    m_delegate->setView(m_tree);
    m_tree->setModel(m_model);
    m_tree->setItemDelegate(m_delegate);
    m_tree->header()->hide();
    m_tree->setRootIsDecorated(false);
    // The delegate draws the arrow at the right; no branch arrows at the left.
    m_tree->setStyleSheet(QStringLiteral("QTreeView::branch{image:none;}"));
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setFixedWidth(px(260));
    connect(m_delegate, &QDTreeDelegate::expanded, this, &TYcc::slotExpand);
    connect(m_tree, &QTreeView::expanded, m_model, [this](const QModelIndex &i) { m_model->setExpanded(i, true); });
    connect(m_tree, &QTreeView::collapsed, m_model, [this](const QModelIndex &i) { m_model->setExpanded(i, false); });
}

void TYcc::buildLayout()
{
    auto group = [this](QLabel *prompt, QRadioButton *a, QRadioButton *b, QLabel *noteLabel, bool noteBesideB) {
        auto *box = new QVBoxLayout;
        box->setSpacing(px(6));
        box->addWidget(prompt);
        auto *first = new QHBoxLayout;
        first->addSpacing(px(12));
        first->addWidget(a);
        if (!noteBesideB)
            first->addWidget(noteLabel);
        first->addStretch();
        auto *second = new QHBoxLayout;
        second->addSpacing(px(12));
        second->addWidget(b);
        if (noteBesideB)
            second->addWidget(noteLabel);
        second->addStretch();
        box->addLayout(first);
        box->addLayout(second);
        return box;
    };
    auto *scope = new QHBoxLayout;
    scope->addWidget(m_lblFw);
    scope->addWidget(m_lblFwnr);
    scope->addStretch();
    auto *mark = new QHBoxLayout;
    mark->addWidget(m_chkBj);
    mark->addWidget(m_comBjs);
    mark->addStretch();
    auto *left = new QVBoxLayout;
    left->setSpacing(px(14));
    left->addLayout(scope);
    left->addLayout(group(m_lblWz, m_radGml, m_radZjxx, m_lblWzsm, true));
    left->addLayout(group(m_lblFg, m_radZjcc, m_radThcc, m_lblFgsm, true));
    left->addLayout(group(m_lblZzj, m_radBtj, m_radZjtj, m_lblZzjsm, false));
    left->addStretch();
    left->addLayout(mark);
    auto *right = new QVBoxLayout;
    right->setSpacing(px(4));
    right->addWidget(m_lblGml);
    right->addWidget(m_tree, 1);
    auto *page = new QHBoxLayout(this);
    page->setContentsMargins(px(24), px(12), px(24), px(6));
    page->setSpacing(px(16));
    page->addLayout(left, 1);
    page->addLayout(right);
}

void TYcc::updateChoices()
{
    const bool root = m_radGml->isChecked();
    if (root)
        m_radBtj->setChecked(true);
    for (QWidget *w : {static_cast<QWidget *>(m_radBtj), static_cast<QWidget *>(m_radZjtj)})
        w->setEnabled(!root);
    m_tree->setEnabled(!root);
    m_lblGml->setVisible(root);
    for (QWidget *w : {static_cast<QWidget *>(m_radGml), static_cast<QWidget *>(m_radZjxx)})
        w->setEnabled(!m_block);
}

void TYcc::setBlockMode(bool block)
{
    m_block = block;
    if (block)
        m_radZjxx->setChecked(true);
    updateChoices();
}

void TYcc::UpText(const QString &scope)
{
    if (!m_lblFwnr)
        return;
    m_lblFwnr->setText(scope);
    setBlockMode(scope != QLatin1String("当前项目"));
}

void TYcc::loadTree(LtdInfo *server, const QString &bzqdkid)
{
    GUARDED(kSource, [&] {
        m_server = server;
        m_bzqdkid = bzqdkid;
        m_mrId = QUuid::createUuid().toString();
        m_model->fill(nullptr, QJsonArray());
        CloudExchange cloud(GuardSite(kSource, this));
        if (server && !bzqdkid.isEmpty())
            if (const auto reply = cloud.call(StorageRequests::chapterTree(server, bzqdkid, QString())))
                m_model->fill(nullptr, reply->dataArray());
        if (m_model->rowCount() == 0) {
            QDTreeNode node;
            node.text = node.name = QStringLiteral("默认章节");
            node.id = m_mrId;
            m_model->appendNode(nullptr, node);
        }
    });
}

void TYcc::slotExpand(const QModelIndex &index)
{
    GUARDED(kSource, [&] {
        loadChildren(index);
        m_tree->setExpanded(index, !m_tree->isExpanded(index));
    });
}

void TYcc::loadChildren(const QModelIndex &index)
{
    QDTreeItem *item = m_model->itemForIndex(index);
    if (!ChapterTreeModel::waitsForChildren(item))
        return;
    CloudExchange cloud(GuardSite(kSource, this));
    if (const auto reply = cloud.call(StorageRequests::chapterTree(m_server, m_bzqdkid, item->data().id)))
        m_model->fill(item, reply->dataArray());
}

QDTreeItem *TYcc::chosenItem() const
{
    if (!m_tree)
        return nullptr;
    QDTreeItem *item = m_model->itemForIndex(m_tree->currentIndex());
    return ChapterTreeModel::isPlaceholder(item) ? nullptr : item;
}

bool TYcc::GmlChecked() const
{
    return m_radGml && m_radGml->isChecked();
}

bool TYcc::isReplaceSave() const
{
    return m_radThcc && m_radThcc->isChecked();
}

bool TYcc::isChildZjBtj() const
{
    return m_radZjtj && m_radZjtj->isChecked();
}

bool TYcc::radZjxxChecked() const
{
    return m_radZjxx && m_radZjxx->isChecked();
}

bool TYcc::isFinalTree() const
{
    const QDTreeItem *item = chosenItem();
    return item && item->childCount() == 0;
}

bool TYcc::isAddMRZj() const
{
    return GmlChecked() || (!m_mrId.isEmpty() && getZjid() == m_mrId);
}

QString TYcc::getZjid() const
{
    const QDTreeItem *item = chosenItem();
    return item && !item->data().id.isEmpty() ? item->data().id : QStringLiteral("null");
}

int TYcc::getZjLevel() const
{
    return ChapterTreeModel::level(chosenItem());
}

ChapterChoice TYcc::chapterChoice() const
{
    ChapterChoice choice;
    choice.gml = GmlChecked();
    choice.replace = isReplaceSave();
    choice.childZj = isChildZjBtj();
    choice.radZjxx = radZjxxChecked();
    choice.finalTree = isFinalTree();
    choice.zjid = getZjid();
    return choice;
}

bool TYcc::GetIsQdChecked() const
{
    return m_chkBj && m_chkBj->isChecked();
}

QString TYcc::GetQdColor() const
{
    return m_comBjs ? m_comBjs->currentData().toString() : QString();
}

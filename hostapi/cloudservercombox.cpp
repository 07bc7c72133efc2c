#include "cloudservercombox.h"
#include "interfaceadaptation.h"
#include "ltdinfo.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QListView>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QStylePainter>

namespace {
const QString kPlaceholder = QStringLiteral("请选择服务器");

// The logged-in mark: a filled green dot, or a hollow grey ring when the entry
// still needs a login.
QIcon loginMark(bool loggedIn)
{
    QPixmap pixmap(12, 12);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (loggedIn) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x34, 0xC7, 0x24));
    } else {
        painter.setPen(QPen(QColor(0xA0, 0xA4, 0xAA), 1.5));
        painter.setBrush(Qt::NoBrush);
    }
    painter.drawEllipse(QRectF(2, 2, 8, 8));
    return QIcon(pixmap);
}
}

CloudServerCombox::CloudServerCombox(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_combo = new QComboBox(this);
    m_combo->setObjectName(QStringLiteral("comServer"));
    m_combo->setView(new QListView(m_combo));
    m_combo->setPlaceholderText(kPlaceholder);
    m_combo->setMinimumHeight(InterfaceAdaptation::scaled(24));
    m_combo->setMinimumWidth(InterfaceAdaptation::scaled(140));
    layout->addWidget(m_combo);
    m_combo->installEventFilter(this);
    // activated() fires only for a choice made by the user, never for
    // setServerList or setCurrentIndex.
    connect(m_combo, QOverload<int>::of(&QComboBox::activated), this,
            &CloudServerCombox::signalCurrentItemChanged);
}

void CloudServerCombox::setServerList(QList<LtdInfo *> &list, int index, bool blockSignals)
{
    Q_UNUSED(blockSignals)
    const QSignalBlocker blocker(m_combo);
    m_list = list;
    m_combo->clear();
    for (LtdInfo *info : qAsConst(m_list)) {
        const bool loggedIn = info && info->getServerLogin();
        m_combo->addItem(loginMark(loggedIn), info ? info->getServerName() : QString());
        const int row = m_combo->count() - 1;
        m_combo->setItemData(row, loggedIn ? QStringLiteral("已登录") : QStringLiteral("未登录"), Qt::ToolTipRole);
        m_combo->setItemData(row, loggedIn, Qt::UserRole);
    }
    m_combo->setCurrentIndex(index >= 0 && index < m_list.size() ? index : -1);
}

int CloudServerCombox::currentIndex() const
{
    return m_combo->currentIndex();
}

QString CloudServerCombox::currentText() const
{
    return m_combo->currentIndex() < 0 ? kPlaceholder : m_combo->currentText();
}

QComboBox *CloudServerCombox::comboBox() const
{
    return m_combo;
}

bool CloudServerCombox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Paint || watched != m_combo || m_combo->currentIndex() >= 0)
        return QWidget::eventFilter(watched, event);
    QStylePainter painter(m_combo);
    QStyleOptionComboBox option;
    option.initFrom(m_combo);
    option.editable = false;
    option.frame = true;
    option.currentText = kPlaceholder;
    option.palette.setColor(QPalette::ButtonText, option.palette.color(QPalette::PlaceholderText));
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    return true;
}

#include "ztitlemodal.h"
#include "interfaceadaptation.h"
#include "modalrun.h"
#include "widgetfactory.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const int kRadius = 6;
const int kTitleHeight = 36;

QPushButton *titleButton(const QString &name, const QString &text, const QString &tip, QWidget *parent)
{
    QPushButton *button = WidgetFactory::button(text, name, parent, 28, 24);
    button->setToolTip(tip);
    button->setFlat(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}
}

zTitleModal::zTitleModal(QWidget *parent) : QDialog(parent)
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(1, 1, 1, 1);
    outer->setSpacing(0);
    buildTitleBar();
    outer->addWidget(m_titleBar);
    m_client = new QWidget(this);
    m_client->setObjectName(QStringLiteral("widgetClient"));
    m_clientLayout = new QVBoxLayout(m_client);
    m_clientLayout->setContentsMargins(0, 0, 0, 0);
    m_clientLayout->setSpacing(0);
    outer->addWidget(m_client, 1);
    setTitleButtons(m_buttons);
    updateStyle();
}

void zTitleModal::buildTitleBar()
{
    m_titleBar = new QWidget(this);
    m_titleBar->setObjectName(QStringLiteral("widgetTitleBar"));
    m_titleBar->setFixedHeight(InterfaceAdaptation::scaled(kTitleHeight));
    m_titleBar->installEventFilter(this);
    auto *row = new QHBoxLayout(m_titleBar);
    row->setContentsMargins(InterfaceAdaptation::scaled(12), 0, InterfaceAdaptation::scaled(6), 0);
    row->setSpacing(InterfaceAdaptation::scaled(6));
    m_icon = WidgetFactory::label(QString(), QStringLiteral("lblTitleIcon"), m_titleBar);
    m_icon->hide();
    m_caption = WidgetFactory::label(QString(), QStringLiteral("lblCaption"), m_titleBar);
    m_btnMin = titleButton(QStringLiteral("btnMin"), QStringLiteral("—"), QStringLiteral("最小化"), m_titleBar);
    m_btnMax = titleButton(QStringLiteral("btnMax"), QStringLiteral("□"), QStringLiteral("最大化"), m_titleBar);
    m_btnClose = titleButton(QStringLiteral("btnClose"), QStringLiteral("✕"), QStringLiteral("关闭"), m_titleBar);
    row->addWidget(m_icon);
    row->addWidget(m_caption, 1);
    row->addWidget(m_btnMin);
    row->addWidget(m_btnMax);
    row->addWidget(m_btnClose);
    connect(m_btnMin, &QPushButton::clicked, this, &QWidget::showMinimized);
    connect(m_btnMax, &QPushButton::clicked, this, [this] { isMaximized() ? showNormal() : showMaximized(); });
    connect(m_btnClose, &QPushButton::clicked, this, &zTitleModal::actCancel);
}

void zTitleModal::updateStyle()
{
    const QString bg = m_background.name();
    m_titleBar->setStyleSheet(QStringLiteral(
        "#widgetTitleBar{background:%1;border-bottom:1px solid #E3E5E8;}"
        "#lblCaption{color:#1F2329;font-size:14px;font-weight:bold;}"
        "QPushButton{border:none;color:#646A73;font-size:13px;background:transparent;}"
        "QPushButton:hover{background:#E3E5E8;border-radius:3px;}"
        "#btnClose:hover{background:#F54A45;color:white;}").arg(bg));
    update();
}

void zTitleModal::SetCaption(const QString &caption)
{
    m_caption->setText(caption);
    setWindowTitle(caption);
}

QString zTitleModal::caption() const
{
    return m_caption->text();
}

void zTitleModal::SetHeaderIcon(const QString &path)
{
    const int side = InterfaceAdaptation::scaled(18);
    m_icon->setPixmap(path.isEmpty() ? QPixmap() : WidgetFactory::icon(path).pixmap(side, side));
    m_icon->setVisible(!path.isEmpty());
}

void zTitleModal::setTitleButtons(int buttons)
{
    m_buttons = buttons | CloseButton;
    m_btnMin->setVisible(m_buttons & MinimizeButton);
    m_btnMax->setVisible(m_buttons & MaximizeButton);
    m_btnClose->setVisible(true);
}

void zTitleModal::setBackgroundColor(const QColor &color)
{
    m_background = color;
    updateStyle();
}

void zTitleModal::setScaledFixedSize(int width, int height)
{
    WidgetFactory::setScaledFixedSize(this, width, height);
}

int zTitleModal::ShowModal()
{
    return ModalRun::exec(this);
}

void zTitleModal::actOk()
{
    accept();
}

void zTitleModal::actCancel()
{
    reject();
}

void zTitleModal::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath body;
    body.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    painter.fillPath(body, m_background);
    painter.setPen(QColor(0xD0, 0xD3, 0xD6));
    painter.drawPath(body);
}

bool zTitleModal::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_titleBar)
        return QDialog::eventFilter(watched, event);
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease
        && type != QEvent::MouseButtonDblClick)
        return QDialog::eventFilter(watched, event);
    auto *mouse = static_cast<QMouseEvent *>(event);
    if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton && m_titleBar->isEnabled()) {
        m_dragging = true;
        m_dragOffset = mouse->globalPos() - frameGeometry().topLeft();
    } else if (type == QEvent::MouseMove && m_dragging && (mouse->buttons() & Qt::LeftButton) && !isMaximized()) {
        move(mouse->globalPos() - m_dragOffset);
    } else if (type == QEvent::MouseButtonRelease) {
        m_dragging = false;
    } else if (type == QEvent::MouseButtonDblClick && (m_buttons & MaximizeButton) && m_titleBar->isEnabled()) {
        isMaximized() ? showNormal() : showMaximized();
    }
    return QDialog::eventFilter(watched, event);
}

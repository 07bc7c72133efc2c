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
    fillBody(painter);
    drawRim(painter);
}

// The body as one antialiased path costs a scan of the whole window: only
// its corners are filled as a path, the rest as whole pixels (the outermost
// ones are the rim's).
void zTitleModal::fillBody(QPainter &painter) const
{
    QPainterPath body;
    body.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    const int w = width(), h = height(), c = kRadius + 2;
    if (w < 2 * c || h < 2 * c) {
        painter.fillPath(body, m_background);
        return;
    }
    painter.fillRect(QRect(1, c, w - 2, h - 2 * c), m_background);
    painter.fillRect(QRect(c, 1, w - 2 * c, c - 1), m_background);
    painter.fillRect(QRect(c, h - c, w - 2 * c, c - 1), m_background);
    for (const QRect &corner : {QRect(0, 0, c, c), QRect(w - c, 0, c, c), QRect(w - c, h - c, c, c),
                                QRect(0, h - c, c, c)}) {
        painter.setClipRect(corner);
        painter.fillPath(body, m_background);
    }
    painter.setClipping(false);
}

// The rim as one antialiased stroke costs a scan of the whole window; its
// straight runs are whole pixels, so only the corners are stroked.
void zTitleModal::drawRim(QPainter &painter) const
{
    const QColor rim(0xD0, 0xD3, 0xD6);
    const int w = width(), h = height(), c = kRadius + 2;
    if (w < 2 * c || h < 2 * c) {
        QPainterPath body;
        body.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
        painter.setPen(rim);
        painter.drawPath(body);
        return;
    }
    painter.fillRect(QRect(c, 0, w - 2 * c, 1), rim);
    painter.fillRect(QRect(c, h - 1, w - 2 * c, 1), rim);
    painter.fillRect(QRect(0, c, 1, h - 2 * c), rim);
    painter.fillRect(QRect(w - 1, c, 1, h - 2 * c), rim);
    // Each corner: its arc with a little of both edges, clipped to its square.
    const QRectF inner = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QRectF arc(0, 0, 2 * kRadius, 2 * kRadius);
    struct Corner { QPointF from; QRectF arc; qreal start; QPointF to; QRect square; };
    const qreal l = inner.left(), t = inner.top(), r = inner.right(), b = inner.bottom();
    const Corner corners[] = {
        {{l, t + c + 1}, arc.translated(l, t), 180, {l + c + 1, t}, QRect(0, 0, c, c)},
        {{r - c - 1, t}, arc.translated(r - 2 * kRadius, t), 90, {r, t + c + 1}, QRect(w - c, 0, c, c)},
        {{r, b - c - 1}, arc.translated(r - 2 * kRadius, b - 2 * kRadius), 0, {r - c - 1, b}, QRect(w - c, h - c, c, c)},
        {{l + c + 1, b}, arc.translated(l, b - 2 * kRadius), 270, {l, b - c - 1}, QRect(0, h - c, c, c)},
    };
    painter.setPen(rim);
    painter.setBrush(Qt::NoBrush);
    for (const Corner &corner : corners) {
        QPainterPath path(corner.from);
        path.arcTo(corner.arc, corner.start, -90);
        path.lineTo(corner.to);
        painter.setClipRect(corner.square);
        painter.drawPath(path);
    }
    painter.setClipping(false);
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

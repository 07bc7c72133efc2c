#include "xmgktime.h"
#include "buttonrow.h"
#include "interfaceadaptation.h"
#include "widgetfactory.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

XmgkTime::XmgkTime(QWidget *parent) : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("时间选择"));
    setBackgroundColor(Qt::white);
    setScaledFixedSize(300, 270);

    auto *body = new QVBoxLayout;
    body->setContentsMargins(InterfaceAdaptation::scaled(16), InterfaceAdaptation::scaled(10),
                             InterfaceAdaptation::scaled(16), InterfaceAdaptation::scaled(12));
    auto *yearRow = new QHBoxLayout;
    QPushButton *btnPrev = WidgetFactory::button(QStringLiteral("◀"), QStringLiteral("btnPrevYear"), this);
    QPushButton *btnNext = WidgetFactory::button(QStringLiteral("▶"), QStringLiteral("btnNextYear"), this);
    m_lblYear = WidgetFactory::label(QString(), QStringLiteral("lblYear"), this);
    m_lblYear->setAlignment(Qt::AlignCenter);
    yearRow->addWidget(btnPrev);
    yearRow->addWidget(m_lblYear, 1);
    yearRow->addWidget(btnNext);
    body->addLayout(yearRow);

    auto *grid = new QGridLayout;
    m_months = new QButtonGroup(this);
    m_months->setExclusive(true);
    for (int month = 1; month <= 12; ++month) {
        QPushButton *button =
            WidgetFactory::button(QStringLiteral("%1月").arg(month), QStringLiteral("btnMonth%1").arg(month), this);
        button->setCheckable(true);
        m_months->addButton(button, month);
        grid->addWidget(button, (month - 1) / 4, (month - 1) % 4);
    }
    body->addLayout(grid, 1);

    auto *buttons = new ButtonRow(this);
    buttons->addOkCancel(this);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);

    setStyleSheet(QStringLiteral("QPushButton:checked{background:#3370FF;color:white;border-radius:3px;}"));
    connect(btnPrev, &QPushButton::clicked, this, [this] { showYear(m_year - 1); });
    connect(btnNext, &QPushButton::clicked, this, [this] { showYear(m_year + 1); });
    connect(m_months, &QButtonGroup::idClicked, this, &XmgkTime::selectMonth);
    SetTimeData(QString());
}

QDate XmgkTime::parseMonth(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*(\\d{4})\\s*(?:年\\s*(\\d{1,2})\\s*月|[-/](\\d{1,2})(?:[-/]\\d{1,2})?)\\s*$"));
    const QRegularExpressionMatch m = form.match(text);
    if (!m.hasMatch())
        return QDate();
    const int month = (m.captured(2).isEmpty() ? m.captured(3) : m.captured(2)).toInt();
    return QDate(m.captured(1).toInt(), month, 1);
}

QString XmgkTime::formatMonth(const QDate &month)
{
    return month.toString(QStringLiteral("yyyy年MM月"));
}

void XmgkTime::SetTimeData(const QString &text)
{
    m_text = text;
    QDate date = parseMonth(text);
    if (!date.isValid())
        date = QDate::currentDate();
    showYear(date.year());
    selectMonth(date.month());
}

QString XmgkTime::GetTimeData() const
{
    return m_text;
}

void XmgkTime::chooseMonth(int year, int month)
{
    const QDate date(year, month, 1);
    if (!date.isValid())
        return;
    showYear(year);
    selectMonth(month);
    actOk();
}

void XmgkTime::actOk()
{
    m_text = formatMonth(QDate(m_year, m_month, 1));
    done(Chosen);
}

void XmgkTime::reject()
{
    done(Cancelled);
}

void XmgkTime::showYear(int year)
{
    m_year = qBound(1900, year, 2999);
    m_lblYear->setText(QStringLiteral("%1年").arg(m_year));
}

void XmgkTime::selectMonth(int month)
{
    m_month = qBound(1, month, 12);
    m_months->button(m_month)->setChecked(true);
}

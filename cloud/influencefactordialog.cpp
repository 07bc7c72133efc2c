#include "influencefactordialog.h"

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/textpathwidget.h>
#include <hostapi/xmgktime.h>

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

InfluenceFactorDialog::InfluenceFactorDialog(const InfluenceFactorLayout &layout, QWidget *parent)
    : zTitleModal(parent), m_layout(layout), m_site(layout.sourceName, this)
{
    SetCaption(QStringLiteral("影响因素"));
    OnlyClose();
    setScaledFixedSize(420, 210);
}

void InfluenceFactorDialog::CreateUI()
{
    GUARDED(m_site, [&] {
        if (m_comSj)
            return;
        m_comSj = new QLineEdit(clientWidget());
        m_comSj->setObjectName(QStringLiteral("comSj"));
        m_comSj->setReadOnly(true);
        m_comDd = new QLineEdit(clientWidget());
        m_comDd->setObjectName(QStringLiteral("comDd"));
        m_comDd->setReadOnly(true);
        QWidget *client = clientWidget();
        if (m_layout.timeButton)
            m_btnSj = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnSjXg"), client);
        if (m_layout.placeButton)
            m_btnDd = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnDdXg"), client);
        if (!m_layout.clearText.isEmpty())
            m_btnClear = WidgetFactory::button(m_layout.clearText, QStringLiteral("btnXg"), client);
        auto *buttons = new ButtonRow(client);
        m_btnOk = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
        m_btnClose = buttons->addButton(m_layout.closeText, QStringLiteral("btnGb"));
        m_chkSync = new QCheckBox(QStringLiteral("同步修改工程设置表相应内容"), clientWidget());
        m_chkSync->setObjectName(QStringLiteral("chkTb"));

        auto *grid = new QGridLayout;
        grid->setHorizontalSpacing(8);
        grid->addWidget(new QLabel(m_layout.timeCaption, clientWidget()), 0, 0);
        grid->addWidget(m_comSj, 0, 1);
        if (m_btnSj)
            grid->addWidget(m_btnSj, 0, 2);
        grid->addWidget(new QLabel(m_layout.placeCaption, clientWidget()), 1, 0);
        grid->addWidget(m_comDd, 1, 1);
        if (m_btnDd)
            grid->addWidget(m_btnDd, 1, 2);
        if (m_btnClear)
            grid->addWidget(m_btnClear, 1, 3);
        grid->addWidget(m_chkSync, 2, 1, 1, 3);

        auto *body = new QVBoxLayout;
        body->setContentsMargins(20, 16, 20, 12);
        body->addLayout(grid);
        body->addStretch();
        body->addLayout(buttons);
        clientLayout()->addLayout(body);

        connect(m_btnClose, &QPushButton::clicked, this, &InfluenceFactorDialog::actCancel);
        if (m_layout.ownSlots)
            wireButtons();
        InitUI();
    });
}

void InfluenceFactorDialog::InitUI()
{
    GUARDED(m_site, [&] {
        if (!m_comSj)
            return;
        m_comSj->setText(m_timeText);
        m_comDd->setText(m_placeText);
        m_chkSync->setChecked(true);
        if (m_layout.styledFields) {
            const QString text = palette().color(QPalette::WindowText).name();
            const QString background = palette().color(QPalette::Base).name();
            m_comSj->setStyleSheet(
                QStringLiteral("#comSj{color:%1;background:%2;border:1px solid %1;}").arg(text, background));
            m_comDd->setStyleSheet(
                QStringLiteral("#comDd{color:%1;background:%2;border:1px solid %1;}").arg(text, background));
        }
    });
}

void InfluenceFactorDialog::setComSjText(const QString &text)
{
    m_timeText = text;
    if (m_comSj)
        m_comSj->setText(text);
}

void InfluenceFactorDialog::setComDdText(const QString &text)
{
    m_placeText = text;
    if (m_comDd)
        m_comDd->setText(text);
}

bool InfluenceFactorDialog::getChecked() const
{
    return m_chkSync && m_chkSync->isChecked();
}

QStringList InfluenceFactorDialog::nextPageData(const QString &name, const QList<Choosedata> &list) const
{
    return PlaceDictionaryReader::nextPageData(name, list);
}

void InfluenceFactorDialog::pickTime()
{
    GUARDED(m_site, [&] {
        if (!m_comSj)
            return;
        auto *picker = new XmgkTime(this);
        picker->SetTimeData(m_comSj->text());
        ChildDialog::run(this, picker, [&](int result) {
            // The month picker returns 0 when a month was chosen.
            if (result == 0)
                m_comSj->setText(picker->GetTimeData());
        });
    });
}

void InfluenceFactorDialog::pickPlace()
{
    GUARDED(m_site, [&] {
        if (!m_comDd)
            return;
        const QList<Choosedata> list = PlaceDictionaryReader::read(m_layout.placeQuery);
        const QStringList top = PlaceDictionaryReader::topLevelNames(list);
        const QStringList second = nextPageData(top.value(0), list);
        if (second.isEmpty()) {
            showMessageBox(QStringLiteral("数据无效！"), this, 3);
            return;
        }
        auto *picker = new TextPathDlg(QStringLiteral("工程地点选择"), this);
        picker->addFirstTabData(top.value(0), top);
        picker->addTabData(QStringLiteral("类别1"), second);
        connect(picker, &TextPathDlg::doRequestNextTab, picker,
                [list](int, const QString &item, TextPathWidget *, QStringList *nextItems) {
                    if (nextItems)
                        *nextItems = PlaceDictionaryReader::nextPageData(item, list);
                });
        ChildDialog::run(this, picker, [&](int result) {
            if (result == 1)
                m_comDd->setText(PlaceDictionaryReader::joinPath(picker->getSelectedPath()));
        });
    });
}

void InfluenceFactorDialog::clearPlace()
{
    GUARDED(m_site, [&] {
        m_placeId.clear();
        if (m_comDd && m_comDd->text() != QStringLiteral("无"))
            m_comDd->setText(QStringLiteral("无"));
    });
}

void InfluenceFactorDialog::confirm()
{
    GUARDED(m_site, [&] {
        if (!m_comSj)
            return;
        m_confirmed = true;
        emit signalTimeAndPath(m_comSj->text(), m_comDd->text());
        actOk();
    });
}

#include "cloudcldialog.h"
#include "materialheading.h"

#include <cloud/tcloudcldialog_yxys.h>

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "CloudCLDialog";
int px(int v) { return InterfaceAdaptation::scaled(v); }
}

CloudCLDialog::CloudCLDialog(QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("Velora"));
        setScaledFixedSize(520, 300);
        QWidget *client = clientWidget();
        QPushButton *modify = WidgetFactory::button(QStringLiteral("修改"), QStringLiteral("btnXg"), client);
        modify->setStyleSheet(QStringLiteral("#btnXg{color:#2F7CF6;border:none;background:transparent;padding:0;}"));
        m_comSource = new QComboBox(client);
        m_comSource->setObjectName(QStringLiteral("comSource"));
        m_comSource->addItems({QStringLiteral("个人云"), QStringLiteral("企业云"), QStringLiteral("Korvane云(案例工程价)")});
        m_comSource->setFixedSize(px(220), px(28));
        auto *grid = new QGridLayout;
        grid->setHorizontalSpacing(px(16));
        grid->setVerticalSpacing(px(10));
        grid->addWidget(new QLabel(QStringLiteral("影响因素："), client), 0, 0);
        grid->addWidget(new QLabel(QStringLiteral("时间:2020年9月"), client), 0, 1);
        grid->addWidget(new QLabel(QStringLiteral("地点:成都市金牛区"), client), 0, 2);
        grid->addWidget(new QLabel(QStringLiteral("价格:不含税"), client), 0, 3);
        grid->addWidget(modify, 0, 4);
        grid->addWidget(new QLabel(QStringLiteral("应用范围:     当前材料(共1项)"), client), 1, 0, 1, 5);
        grid->addWidget(new QLabel(QStringLiteral("材价来源："), client), 2, 0);
        grid->addWidget(m_comSource, 2, 1, 1, 4, Qt::AlignLeft);
        grid->setColumnStretch(5, 1);
        auto *buttons = new ButtonRow(client);
        buttons->setButtonSize(72, 28);
        buttons->addOk(this);
        buttons->addGap(10);
        buttons->addCancel(this, QStringLiteral("关闭"), QStringLiteral("btnGb"));
        auto *body = new QVBoxLayout;
        body->setContentsMargins(px(20), px(12), px(20), px(14));
        body->setSpacing(px(12));
        body->addLayout(MaterialHeading::build(client, QStringLiteral(":/Image/Velostra/s_icon_cjycc.svg"),
                                               QStringLiteral("材价云检查")));
        body->addLayout(grid);
        body->addStretch();
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        connect(modify, &QPushButton::clicked, this, &CloudCLDialog::Modify);
    });
}

void CloudCLDialog::Modify()
{
    GUARDED(kSource, [&] {
        if (m_yxys)
            return;
        m_yxys = new TCloudCLDialog_Yxys(this);
        m_yxys->CreateUI();
        m_yxys->setComSjText(QStringLiteral("2020年09月"));
        m_yxys->placeField()->setText(QStringLiteral("四川省成都市金牛区"));
        TCloudCLDialog_Yxys *yxys = m_yxys;
        connect(yxys->clearButton(), &QPushButton::clicked, yxys, [yxys] { yxys->clearPlace(); });
        connect(yxys->confirmButton(), &QPushButton::clicked, yxys, [yxys] { yxys->confirm(); });
        ChildDialog::run(this, yxys);
    });
}

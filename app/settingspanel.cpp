#include "settingspanel.h"
#include "settingsedit.h"

#include <hostapi/projectsettinghelper.h>

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

SettingsPanel::SettingsPanel(QWidget *parent) : QWidget(parent)
{
    // The editors must not make the lower pane of the main window taller.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    auto *form = new QFormLayout(this);
    form->setContentsMargins(16, 12, 16, 12);
    form->setVerticalSpacing(8);
    const QStringList captions{QStringLiteral("价格基准时间："), QStringLiteral("工程地点："), QStringLiteral("海拔高度：")};
    for (int row = 0; row < captions.size(); ++row) {
        auto *edit = new QLineEdit(this);
        edit->setMaximumWidth(360);
        connect(edit, &QLineEdit::editingFinished, this, [this, edit, row] {
            if (!SettingsEdit::apply(row, edit->text()))
                refresh();
        });
        form->addRow(captions[row], edit);
        m_edits.append(edit);
    }
    m_tax = new QComboBox(this);
    m_tax->addItems({QStringLiteral("一般计税"), QStringLiteral("简易计税")});
    m_tax->setMaximumWidth(360);
    connect(m_tax, QOverload<int>::of(&QComboBox::activated), this,
            [this] { SettingsEdit::apply(SettingsEdit::TaxMode, m_tax->currentText()); });
    form->addRow(QStringLiteral("计税方式："), m_tax);
    m_scopeLabel = new QLabel(this);
    m_scopeLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(QStringLiteral("应用范围："), m_scopeLabel);
    connect(ProjectSettingHelper::instance(), &ProjectSettingHelper::settingsChanged, this, &SettingsPanel::refresh);
    refresh();
}

void SettingsPanel::refresh()
{
    const ProjectSettingsInfo s = ProjectSettingHelper::GetProjectSettingsInfo();
    const QString place = s.placeCode.isEmpty() ? s.place : QStringLiteral("%1（%2）").arg(s.place, s.placeCode);
    const QStringList values{s.time, place, s.altitude};
    for (int i = 0; i < m_edits.size(); ++i)
        m_edits[i]->setText(values.value(i));
    if (m_tax->findText(s.taxMode) < 0)
        m_tax->addItem(s.taxMode);
    m_tax->setCurrentText(s.taxMode);
    m_scopeLabel->setText(m_scope.isEmpty() ? s.scope : m_scope);
}

void SettingsPanel::setScope(const QString &scope)
{
    m_scope = scope;
    refresh();
}

QString SettingsPanel::valueText(int row) const
{
    if (row < m_edits.size())
        return row >= 0 ? m_edits[row]->text() : QString();
    return row == m_edits.size() ? m_tax->currentText() : row == m_edits.size() + 1 ? m_scopeLabel->text() : QString();
}

#include "wizardsteps.h"
#include "ztabcontent.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>

WizardSteps::WizardSteps(zTabContent *pages, QObject *parent) : QObject(parent), m_pages(pages) {}

int WizardSteps::addStep(PageFactory create, const QList<QPushButton *> &buttons, QPushButton *defaultButton)
{
    m_steps.append({std::move(create), buttons, defaultButton, nullptr});
    for (QPushButton *button : buttons) {
        if (!m_allButtons.contains(button))
            m_allButtons.append(button);
    }
    return m_steps.size() - 1;
}

QWidget *WizardSteps::page(int step) const
{
    return step >= 0 && step < m_steps.size() ? m_steps.at(step).page.data() : nullptr;
}

void WizardSteps::showStep(int step)
{
    if (step < 0 || step >= m_steps.size())
        return;
    showButtons(step);
    QWidget *page = ensurePage(step);
    if (page)
        m_pages->setCurrentPage(page);
    const bool changed = step != m_current;
    m_current = step;
    if (changed)
        emit stepChanged(step);
}

void WizardSteps::showButtons(int step)
{
    if (step < 0 || step >= m_steps.size())
        return;
    const Step &s = m_steps.at(step);
    for (QPushButton *button : qAsConst(m_allButtons))
        button->setVisible(s.buttons.contains(button));
    if (s.defaultButton)
        s.defaultButton->setDefault(true);
}

QWidget *WizardSteps::ensurePage(int step)
{
    Step &s = m_steps[step];
    if (s.page || !s.create)
        return s.page;
    QWidget *made = s.create();
    if (!made)
        return nullptr;
    m_steps[step].page = made;
    if (m_pages->indexOf(made) < 0)
        m_pages->addPage(made);
    emit pageCreated(step, made);
    return made;
}

void WizardSteps::closeOnEscape(QDialog *dialog)
{
    if (m_escapeDialog)
        m_escapeDialog->removeEventFilter(this);
    m_escapeDialog = dialog;
    if (dialog)
        dialog->installEventFilter(this);
}

bool WizardSteps::eventFilter(QObject *watched, QEvent *event)
{
    // Type first: during the dialog's destruction the pointer must not be read.
    if (event->type() != QEvent::KeyPress || watched != m_escapeDialog)
        return QObject::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_Escape || key->modifiers() != Qt::NoModifier)
        return QObject::eventFilter(watched, event);
    m_escapeDialog->close();
    return true;
}

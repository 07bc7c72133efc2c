#pragma once
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class QDialog;
class QPushButton;
class QWidget;
class zTabContent;

// A wizard's page switcher over a zTabContent: each step has a page, made
// by its factory the first time the step is shown (and again should the page
// have died), and a set of buttons: showing a step shows its buttons, hides
// the other buttons of the wizard and, where the step names one, makes its
// default button the dialog's default (the one that moves forward: "下一步"
// on page one, "确定" on the last).
//
//     m_steps = new WizardSteps(m_pages, this);
//     m_steps->addStep([this] { return makeFirstPage(); }, {m_btnNext}, m_btnNext);
//     m_steps->addStep([this] { return makeSecondPage(); }, {m_btnPrevious, m_btnOk}, m_btnOk);
//     m_steps->closeOnEscape(this);
//     m_steps->showStep(0);
class WizardSteps : public QObject
{
    Q_OBJECT
public:
    using PageFactory = std::function<QWidget *()>;

    explicit WizardSteps(zTabContent *pages, QObject *parent = nullptr);

    // Appends a step and returns its number. A null default button leaves the
    // dialog's default as it is.
    int addStep(PageFactory create, const QList<QPushButton *> &buttons, QPushButton *defaultButton = nullptr);
    int count() const { return m_steps.size(); }
    // -1 until a step was shown.
    int currentStep() const { return m_current; }
    // Null until the step was shown.
    QWidget *page(int step) const;

    // Ignored for a step outside the wizard.
    void showStep(int step);
    void next() { showStep(m_current + 1); }
    void previous() { showStep(m_current - 1); }
    // Shows the buttons of `step` without switching the page.
    void showButtons(int step);

    // Esc closes `dialog` through close(), so that its closeEvent runs.
    void closeOnEscape(QDialog *dialog);

signals:
    void pageCreated(int step, QWidget *page);
    void stepChanged(int step);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Step
    {
        PageFactory create;
        QList<QPushButton *> buttons;
        QPushButton *defaultButton = nullptr;
        QPointer<QWidget> page;
    };

    QWidget *ensurePage(int step);

    zTabContent *m_pages;
    QList<Step> m_steps;
    QList<QPushButton *> m_allButtons;
    QPointer<QDialog> m_escapeDialog;
    int m_current = -1;
};

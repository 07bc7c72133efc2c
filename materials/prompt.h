#pragma once
#include <hostapi/ztitlemodal.h>

#include <QStringList>

class QLabel;
class QPushButton;

// The outcome of a save of many materials, as the host reports it; the
// failed materials are one click away.
class Prompt : public zTitleModal
{
    Q_OBJECT
public:
    explicit Prompt(QWidget *parent = nullptr);

    void GljPrompt(const QString &total, const QString &saved, const QStringList &failedCodes,
                   const QStringList &failedNames);

    QLabel *textLabel() const { return m_lblText; }
    QPushButton *failedButton() const { return m_btnFailed; }

public slots:
    void showFailed();

private:
    QLabel *m_lblText = nullptr;
    QPushButton *m_btnFailed = nullptr;
    QStringList m_codes;
    QStringList m_names;
};

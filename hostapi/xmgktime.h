#pragma once
#include "ztitlemodal.h"

#include <QDate>

class QButtonGroup;
class QLabel;

// The host's month picker. Prime it with SetTimeData, run it modally
// (ShowModal or ModalRun::exec) and read GetTimeData.
//
// Result codes follow the host picker: Chosen (0) when the user picked a
// month, Cancelled (1) when the picker was closed without a choice. Closing
// never changes GetTimeData, so a caller that reads it after any result keeps
// the primed text.
class XmgkTime : public zTitleModal
{
    Q_OBJECT
public:
    enum Result { Chosen = 0, Cancelled = 1 };

    explicit XmgkTime(QWidget *parent = nullptr);

    // Accepts "yyyy年MM月" (also "yyyy年M月", "yyyy-MM", "yyyy-MM-dd",
    // "yyyy/MM"); text that is none of these shows the current month.
    void SetTimeData(const QString &text);
    // The chosen month as "yyyy年MM月"; until a choice, the primed text as given.
    QString GetTimeData() const;

    // The month shown as selected (not yet chosen).
    int shownYear() const { return m_year; }
    int shownMonth() const { return m_month; }
    // What a click on a month followed by "确定" does.
    void chooseMonth(int year, int month);

    // Parses the accepted forms; an invalid QDate when none fits.
    static QDate parseMonth(const QString &text);
    static QString formatMonth(const QDate &month);

public slots:
    void actOk() override;
    void reject() override;

private:
    void showYear(int year);
    void selectMonth(int month);

    QLabel *m_lblYear = nullptr;
    QButtonGroup *m_months = nullptr;
    QString m_text;
    int m_year = 0;
    int m_month = 1;
};

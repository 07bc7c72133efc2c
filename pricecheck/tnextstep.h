#pragma once
#include <hostapi/zbaseform.h>

class QRadioButton;
class QLabel;
class zBaseCombox;

// Second page of the unit-price check wizard: with how many similar cloud
// bills each bill is compared.
class TNextstep : public zBaseForm
{
    Q_OBJECT
public:
    explicit TNextstep(QWidget *parent = nullptr);
    void CreateUI();

    bool getradQdChecked() const;  // "最相似清单"
    bool getradChecked() const;    // "相似"
    // "1" for the most similar bill, else the chosen count ("3" or "5").
    QString getcomPjzChecked() const;

    QRadioButton *radQd() const { return m_radQd; }
    QRadioButton *radXs() const { return m_radXs; }
    zBaseCombox *comPjz() const { return m_comPjz; }

private:
    QRadioButton *m_radQd = nullptr;
    QRadioButton *m_radXs = nullptr;
    zBaseCombox *m_comPjz = nullptr;
    QLabel *m_lblPjz = nullptr;
};

#pragma once
#include <QString>

class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QLabel;
class QRadioButton;
class QWidget;

// The rows the feature and scheme storage dialogs share: what is saved (the
// bill count) and where ("个人云" / "企业云" with the enterprise box, which
// holds the fixed item "test" and starts hidden). No radio starts checked.
class StorageTargetLayout
{
public:
    struct Texts
    {
        QString objectCaption = QStringLiteral("保存对象:");
        QString placeCaption = QStringLiteral("保存位置:");
        QString countEnd = QStringLiteral(" 项）");
    };

    // Builds the widgets as children of `owner` and returns the rows' layout.
    QBoxLayout *build(QWidget *owner, const Texts &texts);
    void setNum(int count);
    // 1 when "企业云" is checked, else 0.
    int target() const;

    QLabel *countLabel() const { return m_lblNum; }
    QButtonGroup *group() const { return m_group; }
    QRadioButton *personal() const { return m_radGry; }
    QRadioButton *enterprise() const { return m_radQyy; }
    QComboBox *enterpriseCombo() const { return m_comQy; }

private:
    QLabel *m_lblNum = nullptr;
    QButtonGroup *m_group = nullptr;
    QRadioButton *m_radGry = nullptr;
    QRadioButton *m_radQyy = nullptr;
    QComboBox *m_comQy = nullptr;
};

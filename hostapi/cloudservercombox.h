#pragma once
#include <QList>
#include <QWidget>

class LtdInfo;
class QComboBox;

// The host's server combo box: one row per server entry with its login state;
// "请选择服务器" is shown while nothing is chosen (index -1).
class CloudServerCombox : public QWidget
{
    Q_OBJECT
public:
    explicit CloudServerCombox(QWidget *parent = nullptr);
    // Shows `list` with `index` current, without emitting
    // signalCurrentItemChanged; `blockSignals` is kept for the host contract.
    void setServerList(QList<LtdInfo *> &list, int index, bool blockSignals);
    int currentIndex() const;
    QString currentText() const;
    QComboBox *comboBox() const;

protected:
    // Paints the placeholder while nothing is chosen (the style alone leaves
    // the box blank for a non-editable combo box).
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    // The user picked entry `index` of the list.
    void signalCurrentItemChanged(int index);

private:
    QComboBox *m_combo = nullptr;
    QList<LtdInfo *> m_list;
};

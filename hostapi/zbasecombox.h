#pragma once
#include <QComboBox>
#include <QVariant>

// The host's base combo box: a QComboBox with a list-view popup (so item style
// rules apply) and helpers for items that carry a value in Qt::UserRole.
class zBaseCombox : public QComboBox
{
    Q_OBJECT
public:
    explicit zBaseCombox(QWidget *parent = nullptr);

    // Replaces all items; no currentIndexChanged is emitted while filling.
    void setItems(const QStringList &texts);
    // Index of the first item whose Qt::UserRole value equals `value`, or -1.
    int indexOfValue(const QVariant &value) const;
    // The Qt::UserRole value of the current item (invalid when none).
    QVariant currentValue() const;
    // Makes the item with `value` current; false (and unchanged) when absent.
    bool setCurrentValue(const QVariant &value);
};

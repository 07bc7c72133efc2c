#include "zbasecombox.h"
#include "interfaceadaptation.h"

#include <QListView>
#include <QSignalBlocker>

zBaseCombox::zBaseCombox(QWidget *parent) : QComboBox(parent)
{
    setView(new QListView(this));
    setMinimumHeight(InterfaceAdaptation::scaled(24));
}

void zBaseCombox::setItems(const QStringList &texts)
{
    const QSignalBlocker blocker(this);
    clear();
    addItems(texts);
}

int zBaseCombox::indexOfValue(const QVariant &value) const
{
    for (int i = 0; i < count(); ++i)
        if (itemData(i, Qt::UserRole) == value)
            return i;
    return -1;
}

QVariant zBaseCombox::currentValue() const
{
    return currentIndex() < 0 ? QVariant() : itemData(currentIndex(), Qt::UserRole);
}

bool zBaseCombox::setCurrentValue(const QVariant &value)
{
    const int index = indexOfValue(value);
    if (index < 0)
        return false;
    setCurrentIndex(index);
    return true;
}

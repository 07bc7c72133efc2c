#pragma once
#include <QString>

class QLayout;
class QWidget;

// The heading of the material dialogs: icon, title in "Microsoft YaHei"
// and, where given, a description line.
class MaterialHeading
{
public:
    static QLayout *build(QWidget *parent, const QString &icon, const QString &title,
                          const QString &description = QString());
};

#pragma once
#include <QString>

// One chapter of a cloud bill library as the chapter tree shows it.
struct QDTreeNode
{
    QString text;   // shown in the tree and as its tool tip
    QString text2;  // spare
    QString text3;  // spare
    int flag = 0;   // spare
    QString text4;  // spare
    QString text5;  // spare
    QString name;   // the chapter name as received
    QString id;     // the chapter's "_id"
};

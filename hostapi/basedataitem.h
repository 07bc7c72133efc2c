#pragma once
#include <QHash>
#include <QList>
#include <QReadWriteLock>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

// One row of a pricing table: a section, a bill (kind 4), a quota line ...
// Values are read and written by item-data role. A tree node: it owns its
// children. Changes made through setData while an undo record is open
// (RURecordControl) become part of that record. Values may be read from
// worker threads (cloud requests) while the GUI thread writes them; the tree
// itself is built once and not changed while workers run.
class BaseDataItem
{
public:
    // Item-data roles.
    enum Role {
        NameRole = 4,
        UnitRole = 5,
        WorkContentRole = 28,
        FeaturesRole = 30,
        CodeRole = 1003,
        QuantityRole = 1013,
        UnitPriceRole = 1021,
        // The library / kind identifier ("GB24", "ZJXQDA", ...); upper-cased by readers.
        KindRole = 1042,
        // The mark colour ("#RRGGBB") of a marked row; none when empty.
        MarkColorRole = 1100,
        // The text colour ("#RRGGBB") of a row, e.g. red for an applied cloud composition.
        FontColorRole = 1101,
        // The bill's price composition in the cloud's "zjnr" JSON text.
        CompositionRole = 1102,
    };
    // Node kinds (GetKind).
    enum Kind { ProjectKind = 1, SectionKind = 2, BillKind = 4, QuotaKind = 5 };

    explicit BaseDataItem(qint64 id = 0, int kind = BillKind);
    ~BaseDataItem();
    BaseDataItem(const BaseDataItem &) = delete;
    BaseDataItem &operator=(const BaseDataItem &) = delete;

    qint64 GetID() const { return m_id; }
    int GetKind() const { return m_kind; }
    bool isBill() const { return m_kind == BillKind; }

    QVariant data(int role) const;
    QString text(int role) const { return data(role).toString(); }
    void setData(int role, const QVariant &value);
    // The roles that hold a value, ascending.
    QList<int> roles() const;

    // Tree.
    BaseDataItem *parentItem() const { return m_parent; }
    int childCount() const { return static_cast<int>(m_children.size()); }
    BaseDataItem *child(int row) const;
    int row() const;
    QList<BaseDataItem *> children() const;
    BaseDataItem *appendChild(std::unique_ptr<BaseDataItem> child);
    // Every bill below this node, depth first.
    QList<BaseDataItem *> bills() const;

    // Host queries.
    bool IsReadOnly() const { return m_readOnly; }
    void setReadOnly(bool v) { m_readOnly = v; }
    // Marked for temporary removal (临时删除): kept but left out of pricing.
    bool IsTempDeleted() const { return m_tempDeleted; }
    void setTempDeleted(bool v) { m_tempDeleted = v; }
    // The per-item exclusion mark; in the measure table it marks the
    // organisation-measure part (组织措施), which the cloud functions skip.
    bool IsExclude() const { return m_exclude; }
    void setExclude(bool v) { m_exclude = v; }
    // The item or one of its ancestors answers IsExclude.
    bool IsExcludeInChain() const;
    // A bill written by the user (自编), not taken from a library.
    bool IsSelfMade() const { return m_selfMade; }
    void setSelfMade(bool v) { m_selfMade = v; }
    // The code a measure-item bill reports; its own code when none is set.
    QString GetCsQdbh() const;
    void setCsQdbh(const QString &code) { m_csQdbh = code; }

    // The root's observer sees every value change in its tree, including
    // those made by undo and redo.
    void setChangeObserver(std::function<void(BaseDataItem *, int role)> observer);

private:
    void applyData(int role, const QVariant &value);
    const BaseDataItem *root() const;

    qint64 m_id;
    int m_kind;
    mutable QReadWriteLock m_lock;
    QHash<int, QVariant> m_data;
    BaseDataItem *m_parent = nullptr;
    std::vector<std::unique_ptr<BaseDataItem>> m_children;
    std::function<void(BaseDataItem *, int)> m_observer;
    QString m_csQdbh;
    bool m_readOnly = false;
    bool m_tempDeleted = false;
    bool m_exclude = false;
    bool m_selfMade = false;
};

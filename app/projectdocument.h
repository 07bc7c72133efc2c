#pragma once
#include <hostapi/basedataitem.h>
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/projectsettingsinfo.h>
#include <hostapi/workbaseobject.h>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <memory>

// The open unit project of the host: its pricing tables, its materials and
// the project settings it was saved with. Changes go through the items' and
// tables' own setters, inside undo records.
class ProjectDocument
{
public:
    static QString samplePath() { return QStringLiteral(":/velora-host/sampleproject.json"); }

    ProjectDocument();
    ~ProjectDocument();
    ProjectDocument(ProjectDocument &&other);
    ProjectDocument &operator=(ProjectDocument &&other);

    // A new project: an empty bill table and measure table, no materials.
    static ProjectDocument blank(const QString &name);

    // Reads a project file (docs/project-file.md). On failure the document
    // is left as it was and `error` tells why.
    bool load(const QByteArray &json, QString *error);
    bool loadFile(const QString &path, QString *error);
    // Writes the project with the current project settings, atomically; on
    // failure the file on disk is left as it was.
    bool saveFile(const QString &path, QString *error);
    QByteArray toJson() const;
    // The file the project was opened from or last saved to; empty for a
    // new project and the sample.
    QString filePath() const { return m_filePath; }

    QString name() const { return m_name; }
    WorkBaseObject *unitWork() const { return m_work.get(); }
    JJBTableBase *billTable() const;
    JJBTableBase *measureTable() const;
    GeneralTableBase *materialTable() const;
    ProjectSettingsInfo savedSettings() const { return m_settings; }

    // Writes the saved settings into the project settings unless the
    // application folder already holds settings of its own.
    void seedProjectSettings() const;

    // Every bill of every pricing table, in table and tree order.
    QList<BaseDataItem *> allBills() const;
    BaseDataItem *billByCode(const QString &code) const;
    // The bill after (forward) or before `from` in allBills(); with
    // `skipPriced` bills with a unit price are passed over. Null at the end.
    BaseDataItem *neighbourBill(BaseDataItem *from, bool forward, bool skipPriced) const;
    JJBTableBase *tableOf(const BaseDataItem *item) const;

    // Applies a chosen cloud composition (one matched bill object of the
    // pricing reply) to `bill` inside one undo step: the unit price, and with
    // `replace` the item features (work content for a measure bill).
    void applyComposition(BaseDataItem *bill, const QJsonObject &matched, bool replace);
    // Writes a feature text chosen in the feature guide into `bill`: its item
    // features, or its work content for a measure bill. One undo step (or
    // part of the caller's open record).
    void applyFeatureText(BaseDataItem *bill, const QString &text);
    // Writes the cloud price (getYdj) of every checked result into the
    // project material with its key; results without a cloud price (-1000)
    // are passed over. One undo step (or part of the caller's open record).
    // Returns the number of materials changed.
    int applyMaterialPrices(const QList<CloudCjyjcBean> &results);
    // True for a measure-item bill kind (ZJXQDA / ZJXQDB).
    static bool isMeasureBill(const BaseDataItem *bill);

private:
    QString m_name;
    QString m_filePath;
    std::unique_ptr<WorkBaseObject> m_work;
    ProjectSettingsInfo m_settings;
};

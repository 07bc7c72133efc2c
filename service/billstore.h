#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

class ServiceDb;

// Bill libraries, their chapter trees, projects and stored bills. Writing
// methods expect to run inside ServiceDb::write.
class BillStore
{
public:
    enum Source { StandardSource = 1, AccumulatedSource = 2 };
    // Chapter levels a library may have; a project's structure made into
    // chapters below a chosen one needs far fewer.
    static constexpr int MaxChapterDepth = 32;

    struct Library {
        int id = 0;
        int tier = 0;
        int owner = 0;
        QString name;
    };
    struct Chapter {
        QString id;
        int libraryId = 0;
        QString parentId;
        QString name;
        bool hasChildren = false;
    };
    struct Project {
        int id = 0;
        int tier = 0;
        int owner = 0;
        QString xmmc, dxmc, dwmc, qdgf, jjde, jsfs, zhdjfs, hbgd, dd, jgjzsj, jsxs, zjsjlx;
        int uploaderId = 0;
        int gcType = 1;
    };
    struct Bill {
        qint64 id = 0;
        int tier = 0;
        int owner = 0;
        int source = StandardSource;
        int libraryId = 0;
        QString chapterId;
        int projectId = 0;
        QString taskId;
        QString qdbh, xmmc, jldw, xmtz, gznr;
        double zhdj = 0.0;
        QString zjnr;
        QString dxmc;
    };

    explicit BillStore(ServiceDb &db);

    int createLibrary(int tier, int owner, const QString &name);
    void renameLibrary(int id, const QString &name);
    void deleteLibrary(int id);
    Library library(int id);
    QList<Library> libraries(int tier, int owner);
    bool libraryNameTaken(int tier, int owner, const QString &name, int exceptId = 0);

    QString createChapter(int libraryId, const QString &parentId, const QString &name, const QString &id = QString());
    Chapter chapter(const QString &id);
    // The level of chapter `id` (1 at the top, 0 for an empty id), counted to
    // MaxChapterDepth + 1 at most.
    int chapterDepth(const QString &id);
    QList<Chapter> chapters(int libraryId, const QString &parentId);
    // The chapter `names` below `parentId`, made where missing; returns the
    // id of the deepest one.
    QString ensureChapterPath(int libraryId, const QString &parentId, const QStringList &names);
    // Removes the bills of a chapter and of all chapters below it; returns
    // the removed bill ids.
    QVector<qint64> clearChapter(const QString &chapterId);

    int createProject(const Project &project);
    Project project(int id);
    QList<Project> projects(int tier, int owner, int gcType, const QString &keyword);

    qint64 insertBill(const Bill &bill);
    Bill bill(qint64 id);
    QVector<Bill> allBills();

private:
    QStringList chapterSubtree(const QString &chapterId);
    ServiceDb &m_db;
};

#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

// Builds the price composition of a seeded bill in the "zjnr" form the
// pricing browsers read ({"zjnr": [...]} with "DE" quota lines, their fee
// templates under "ZhfMbMx" and material children under "ITEM"). Quantities
// and prices are derived from the quota codes, so every run gives the same.
class CompositionBuilder
{
public:
    struct Result {
        QString zjnr;       // the JSON text
        double zhdj = 0.0;  // composite unit price: the sum of the lines
    };

    static Result build(const QStringList &quotaIds, const QStringList &quotaNames, const QString &billUnit);
    // Deterministic 32-bit FNV-1a hash of a text (qHash is seeded per process).
    static quint32 stableHash(const QString &text);
    static double round2(double value);

private:
    static QJsonObject quotaLine(const QString &id, const QString &name, const QString &billUnit);
    static QJsonObject feeTemplate(double labour, double material, double machine);
};

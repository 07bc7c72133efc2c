#pragma once
#include <QString>
#include <QVector>

// Sizes written in bill text: nominal diameters (DN, conduit codes such as
// SC32), outer diameters (De, Φ, plastic "dn110"), conductor sections,
// rectangles (perimeter, half perimeter and area), thickness (δ), capacity
// (kVA), power (kW), current (A), cores, gangs and weight. The quota a bill
// takes often depends on nothing else.
class SizeParser
{
public:
    enum Kind { Nominal, Outer, Section, Perimeter, HalfSum, Area, Thickness, Capacity, Power, Current, Cores, Gang,
                Weight, KindCount };
    struct Size
    {
        Kind kind;
        double value;
        bool operator==(const Size &o) const { return kind == o.kind && value == o.value; }
    };

    // Sizes of raw bill text, in the order written.
    static QVector<Size> parse(const QString &text);
    // Outer diameter of a plastic pipe of nominal size `dn` and back; 0 when unknown.
    static double outerOf(double dn);
    static double nominalOf(double outer);
};

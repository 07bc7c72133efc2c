#pragma once
#include "materialdeviations.h"

#include <hostapi/ztitlemodal.h>

namespace QtCharts {
class QChart;
}

// Which materials cost most above their cloud price: the excess of the
// adjusted price over the last check's cloud price, times the quantity.
class MaterialDeviationChart : public zTitleModal
{
    Q_OBJECT
public:
    static constexpr int Limit = 10;

    MaterialDeviationChart(const QList<MaterialDeviations::Excess> &ranking, QWidget *parent = nullptr);
    QtCharts::QChart *chart() const { return m_chart; }

private:
    QtCharts::QChart *m_chart = nullptr;
};

#include "failed.h"
#include "failurelist.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/ztablemodel.h>

namespace {
const char kSource[] = "CloudCLSaveDialogm";
}

Failed::Failed(const QStringList &codes, const QStringList &names, QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        m_model = FailureList::build(this, QStringLiteral("clbh"));
        for (int i = 0; i < codes.size(); ++i) {
            m_model->addRow();
            m_model->appendCell(QStringLiteral("clbh"), codes.at(i));
            m_model->appendCell(QStringLiteral("clmc"), names.value(i));
            FailureList::appendReason(m_model);
        }
    });
}

#include "pricecheckreportwindow.h"
#include "hostfiledialogs.h"
#include "tableexport.h"
#include "hostcontext.h"
#include "pricecheckreport.h"
#include "pricecheckreportchart.h"
#include "pricecheckreportfilter.h"
#include "pricecheckreportmodel.h"
#include "pricecheckreportrun.h"
#include "projectdocument.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/tablegrid.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/zbasecombox.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QCloseEvent>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const char kSource[] = "velora-host";
}

PriceCheckReportWindow::PriceCheckReportWindow(HostContext &host, QWidget *parent)
    : QWidget(parent, Qt::Window), m_host(host)
{
    setObjectName(QStringLiteral("PriceCheckReportWindow"));
    setWindowTitle(QStringLiteral("工程单价检查报告"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_model = new PriceCheckReportModel(this);
    m_filter = new PriceCheckReportFilter(this);
    m_filter->setSourceModel(m_model);
    m_run = new PriceCheckReportRun(this);
    m_table = new QTableView(this);
    m_table->setObjectName(QStringLiteral("tableReport"));
    TableGrid::install(m_table);
    m_table->setModel(m_filter);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(PriceCheckReportModel::DeviationColumn, Qt::DescendingOrder);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->setDefaultSectionSize(24);
    m_table->verticalHeader()->hide();
    const int widths[] = {130, 220, 50, 90, 90, 80, 80};
    for (int c = 0; c < m_model->columnCount(); ++c)
        m_table->setColumnWidth(c, widths[c]);
    m_table->horizontalHeader()->setSectionResizeMode(PriceCheckReportModel::NameColumn, QHeaderView::Stretch);
    m_chart = new PriceCheckReportChart(this);
    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_table);
    splitter->addWidget(m_chart);
    m_chart->setMinimumHeight(340);
    splitter->setSizes({340, 360});
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(buildControls());
    layout->addWidget(splitter, 1);
    resize(1100, 760);

    connect(m_run, &PriceCheckReportRun::progress, this, &PriceCheckReportWindow::showProgress);
    connect(m_run, &PriceCheckReportRun::finished, this, &PriceCheckReportWindow::runFinished);
    connect(m_run, &PriceCheckReportRun::cancelled, this, &PriceCheckReportWindow::runCancelled);
    connect(m_btnStart, &QPushButton::clicked, this, &PriceCheckReportWindow::startCheck);
    connect(m_btnCancel, &QPushButton::clicked, this, &PriceCheckReportWindow::cancelCheck);
    connect(m_btnExport, &QPushButton::clicked, this, &PriceCheckReportWindow::chooseCsvFile);
    connect(m_limit, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &PriceCheckReportWindow::limitChanged);
    connect(m_search, &QLineEdit::textChanged, m_filter, &PriceCheckReportFilter::setText);
    connect(m_onlyBeyond, &QCheckBox::toggled, m_filter, &PriceCheckReportFilter::setOnlyBeyond);
    connect(m_table, &QTableView::doubleClicked, this, &PriceCheckReportWindow::goToBill);
    startServerChoice(m_comServer, GuardSite(kSource, this));
    setChecking(false);
}

void PriceCheckReportWindow::closeEvent(QCloseEvent *event)
{
    // The shading belongs to this report; a running check is dropped.
    m_closed = true;
    m_run->cancel();
    emit beyondBillsChanged({});
    QWidget::closeEvent(event);
}

QWidget *PriceCheckReportWindow::buildControls()
{
    auto *bar = new QWidget(this);
    m_comServer = new CloudServerCombox(bar);
    m_comServer->setObjectName(QStringLiteral("comServer"));
    m_comServer->setFixedSize(200, 30);
    m_comPpgs = new zBaseCombox(bar);
    m_comPpgs->setObjectName(QStringLiteral("comPpgs"));
    m_comPpgs->setItems({QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("5")});
    m_comPpgs->setCurrentIndex(1);
    m_limit = new QDoubleSpinBox(bar);
    m_limit->setObjectName(QStringLiteral("spinLimit"));
    m_limit->setRange(0, 1000);
    m_limit->setDecimals(2);
    m_limit->setValue(m_model->limit());
    m_limit->setSuffix(QStringLiteral("%"));
    m_btnStart = WidgetFactory::button(QStringLiteral("开始检查"), QStringLiteral("btnStart"), bar);
    m_btnCancel = WidgetFactory::button(QStringLiteral("取消"), QStringLiteral("btnCancel"), bar);
    m_progress = new QProgressBar(bar);
    m_progress->setObjectName(QStringLiteral("progressCheck"));
    m_status = WidgetFactory::label(QString(), QStringLiteral("lblStatus"), bar);
    m_search = new QLineEdit(bar);
    m_search->setObjectName(QStringLiteral("editSearch"));
    m_search->setPlaceholderText(QStringLiteral("按项目编码或名称筛选"));
    m_onlyBeyond = new QCheckBox(QStringLiteral("只看超出偏差的清单"), bar);
    m_btnExport = WidgetFactory::button(QStringLiteral("导出CSV"), QStringLiteral("btnExport"), bar);

    auto *first = new QHBoxLayout;
    first->addWidget(WidgetFactory::label(QStringLiteral("单价来源:"), QStringLiteral("lblDjly"), bar));
    first->addWidget(m_comServer);
    first->addWidget(WidgetFactory::label(QStringLiteral("匹配个数:"), QStringLiteral("lblPpgs"), bar));
    first->addWidget(m_comPpgs);
    first->addWidget(WidgetFactory::label(QStringLiteral("偏差率超出±"), QStringLiteral("lblLimit"), bar));
    first->addWidget(m_limit);
    first->addWidget(m_btnStart);
    first->addWidget(m_btnCancel);
    first->addWidget(m_progress, 1);
    first->addWidget(m_status);
    auto *second = new QHBoxLayout;
    second->addWidget(m_search, 1);
    second->addWidget(m_onlyBeyond);
    second->addStretch();
    second->addWidget(m_btnExport);
    auto *layout = new QVBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(first);
    layout->addLayout(second);
    return bar;
}

void PriceCheckReportWindow::startCheck()
{
    GUARDED(kSource, [&] {
        if (isChecking() || !serverChoice()->checkServer(this) || !m_host.project)
            return;
        const QList<PriceCheckReportRow> rows = PriceCheckReport::readBills(m_host.project->allBills());
        m_progress->setRange(0, std::max(1, int(rows.size())));
        m_progress->setValue(0);
        m_status->setText(QStringLiteral("正在检查 %1 条清单…").arg(rows.size()));
        setChecking(true);
        m_run->start(rows, *getCurrServer(), m_comPpgs->currentText().toInt());
    });
}

void PriceCheckReportWindow::cancelCheck()
{
    m_run->cancel();
}

bool PriceCheckReportWindow::isChecking() const
{
    return !m_btnStart->isEnabled();
}

void PriceCheckReportWindow::showProgress(int done, int total)
{
    m_progress->setMaximum(std::max(1, total));
    m_progress->setValue(done);
}

void PriceCheckReportWindow::runFinished()
{
    GUARDED(kSource, [&] {
        // Table, each chart and the bill tree's shading are painted one after
        // the other, so that no single paint of thousands of rows is long.
        const QList<PriceCheckReportRow> rows = m_run->takeRows();
        m_model->setRows(rows);
        if (!paintNow())
            return;
        m_chart->showDistribution(rows);
        if (!paintNow())
            return;
        m_chart->showWorst(rows);
        if (!paintNow())
            return;
        m_progress->setValue(m_progress->maximum());
        setChecking(false);
        limitChanged();
    });
}

// False when the window was closed meanwhile: the rest is not shown.
bool PriceCheckReportWindow::paintNow()
{
    QPointer<PriceCheckReportWindow> self(this);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return self && !m_closed;
}

void PriceCheckReportWindow::runCancelled()
{
    setChecking(false);
    m_progress->setValue(0);
    m_status->setText(QStringLiteral("已取消，报告未改变"));
}

void PriceCheckReportWindow::setChecking(bool checking)
{
    m_btnStart->setEnabled(!checking);
    m_btnCancel->setEnabled(checking);
    m_comPpgs->setEnabled(!checking);
    m_comServer->setEnabled(!checking);
}

void PriceCheckReportWindow::limitChanged()
{
    m_model->setLimit(m_limit->value());
    const QList<BaseDataItem *> beyond = m_model->beyondBills();
    if (!isChecking())
        m_status->setText(QStringLiteral("共 %1 条清单，%2 条超出偏差").arg(m_model->rowCount()).arg(beyond.size()));
    emit beyondBillsChanged(beyond);
}

bool PriceCheckReportWindow::exportCsv(const QString &path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // The byte-order mark lets spreadsheet programs read the Chinese text.
    file.write("\xEF\xBB\xBF");
    file.write(PriceCheckReport::csv(m_model->rows()).toUtf8());
    return file.commit();
}

void PriceCheckReportWindow::chooseCsvFile()
{
    GUARDED(kSource, [&] {
        const QString path = HostFileDialogs::saveFileName(this, QStringLiteral("导出CSV"),
                                                           QStringLiteral("CSV (*.csv);;Excel 工作簿 (*.xlsx)"),
                                                           QStringLiteral("单价检查报告.csv"));
        QString error;
        if (path.endsWith(QLatin1String(".xlsx"), Qt::CaseInsensitive)) {
            if (!TableExport::write(m_model, path, &error))
                showMessageBox(error, this, 3);
        } else if (!path.isEmpty() && !exportCsv(path)) {
            showMessageBox(QStringLiteral("无法写入文件：%1").arg(path), this, 3);
        }
    });
}

void PriceCheckReportWindow::goToBill(const QModelIndex &index)
{
    const QModelIndex source = m_filter->mapToSource(index);
    if (source.isValid())
        m_host.setCurrentBill(m_model->rowAt(source.row()).bill);
}

#include "qt/plot_host.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLibrary>
#include <QVBoxLayout>

#include <memory>

#include "forms/control.h"
#include "qt/plot_view.h"
#include "qt/shown_text.h"

namespace marlune::qt {

namespace {

struct ChartModule {
    // Kept, never deleted or unloaded: views made by it may live as long as the program, past the
    // static destructors.
    QLibrary* library = nullptr;
    MarluneCreatePlotViewFunction create = nullptr;
    QString error;
};

// Beside the program in the build tree, in the program's own library folder once installed.
QStringList ModuleFolders()
{
    const QString program = QCoreApplication::applicationDirPath();
    return {program, program + QStringLiteral("/../" MARLUNE_MODULE_DIR), QStringLiteral("/usr/" MARLUNE_MODULE_DIR),
            QStringLiteral(MARLUNE_CHART_MODULE_DIR)};
}

const ChartModule& LoadChartModule()
{
    static const ChartModule module = [] {
        ChartModule loaded;
        QStringList tried;
        for (const QString& folder : ModuleFolders()) {
            const QString file = QDir(folder).filePath(QStringLiteral("marlune-scope-view.so"));
            if (!QFileInfo::exists(file))
                continue;
            auto library = std::make_unique<QLibrary>(file);
            if (auto create =
                        reinterpret_cast<MarluneCreatePlotViewFunction>(library->resolve(kCreatePlotViewSymbol))) {
                loaded.library = library.release();
                loaded.create = create;
                return loaded;
            }
            tried << library->errorString();
        }
        loaded.error = tried.isEmpty() ? QStringLiteral("marlune-scope-view.so is not installed") : tried.join("; ");
        return loaded;
    }();
    return module;
}

QList<PlotLine> Lines(const forms::Plot& plot)
{
    QList<PlotLine> lines;
    lines.reserve(static_cast<qsizetype>(plot.series().size()));
    for (const forms::PlotSeries& series : plot.series()) {
        PlotLine line{ShownText(series.name), series.logic, {}};
        line.points.reserve(static_cast<qsizetype>(series.points.size()));
        for (const forms::PlotPoint& point : series.points)
            line.points.append(QPointF(point.x, point.y));
        lines.append(std::move(line));
    }
    return lines;
}

} // namespace

PlotHost::PlotHost(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

PlotHost::~PlotHost() = default;

QString PlotHost::moduleError() { return LoadChartModule().error; }

void PlotHost::attach(std::function<void(double, double)> zoomed, std::function<void(double)> panned)
{
    if (view_ || findChild<QLabel*>())
        return;
    const ChartModule& module = LoadChartModule();
    if (!module.create) {
        auto* message = new QLabel(QStringLiteral("The chart cannot be shown: %1.").arg(module.error), this);
        message->setWordWrap(true);
        message->setAlignment(Qt::AlignCenter);
        layout()->addWidget(message);
        return;
    }
    view_ = module.create(this);
    view_->zoomed = std::move(zoomed);
    view_->panned = std::move(panned);
    layout()->addWidget(view_->widget());
}

void PlotHost::showPlot(const forms::Plot& plot)
{
    if (!view_ || plot.revision() == drawnRevision_)
        return;
    drawnRevision_ = plot.revision();
    view_->setLines(plot.fromMs(), plot.toMs(), Lines(plot));
}

} // namespace marlune::qt

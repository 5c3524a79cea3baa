// The chart module, loaded at run time by the first chart that the program shows: a chart view
// of lines against time in seconds. Numbers are drawn on the left scale; logic lines are stacked
// as steps of their own in a band below them, each at its own height.
#include <QChart>
#include <QChartView>
#include <QLineSeries>
#include <QMouseEvent>
#include <QValueAxis>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <map>

#include "qt/plot_view.h"

namespace marlune::qt {

namespace {

// Each logic line takes this much of its band: 0 and 1 with a gap to the next line.
constexpr double kLogicPitch = 1.5;
// The share of the height that the band of logic lines takes at most.
constexpr double kMostLogicShare = 0.5;
constexpr double kLogicShareEach = 0.08;

class ScopeChartView final : public QChartView, public PlotView {
public:
    explicit ScopeChartView(QWidget* parent) : QChartView(parent)
    {
        setRenderHint(QPainter::Antialiasing, false);
        setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
        // The view comes with a chart of its own, and would not delete it if given another.
        QChart* chart = this->chart();
        chart->legend()->setAlignment(Qt::AlignRight);
        chart->setMargins(QMargins(4, 4, 4, 4));
        time_->setTitleText(QStringLiteral("Time (s)"));
        time_->setLabelFormat(QStringLiteral("%.1f"));
        logicScale_->setVisible(false);
        numbers_->setLabelFormat(QStringLiteral("%.0f"));
        chart->addAxis(time_, Qt::AlignBottom);
        chart->addAxis(numbers_, Qt::AlignLeft);
        chart->addAxis(logicScale_, Qt::AlignRight);
    }

    QWidget* widget() override { return this; }

    void setLines(double fromMs, double toMs, const QList<PlotLine>& lines) override
    {
        fromMs_ = fromMs;
        toMs_ = toMs;
        int logicLines = 0;
        for (const PlotLine& line : lines)
            logicLines += line.logic;
        int logicIndex = logicLines;
        double low = std::numeric_limits<double>::max();
        double high = std::numeric_limits<double>::lowest();
        QList<QList<QPointF>> shown;
        for (const PlotLine& line : lines) {
            QList<QPointF>& points = shown.emplace_back(line.points);
            // Seconds along; a logic line stands at its own height in the band, the first on top.
            const double base = line.logic ? --logicIndex * kLogicPitch : 0;
            for (QPointF& point : points) {
                point.setX(point.x() / 1000);
                point.setY(point.y() + base);
                if (!line.logic) {
                    low = std::min(low, point.y());
                    high = std::max(high, point.y());
                }
            }
        }
        std::map<QString, QLineSeries*> kept;
        for (const PlotLine& line : lines)
            kept[line.name] = takeSeries(line);
        for (const auto& [name, series] : series_) {
            chart()->removeSeries(series);
            delete series;
        }
        series_ = std::move(kept);
        // Every change of a scale lays out every line again: the old points go first, and the
        // new ones come once the scales are set.
        for (const auto& [name, series] : series_)
            series->clear();
        time_->setRange(fromMs / 1000, toMs / 1000);
        time_->setLabelFormat(toMs - fromMs < 10000 ? QStringLiteral("%.2f") : QStringLiteral("%.1f"));
        setScales(low, high, logicLines);
        for (qsizetype i = 0; i < lines.size(); ++i)
            series_[lines[i].name]->replace(shown[i]);
    }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        const QRectF area = chart()->plotArea();
        if (!zoomed || area.width() <= 0 || event->angleDelta().y() == 0)
            return;
        const double at = fromMs_ + (event->position().x() - area.left()) / area.width() * (toMs_ - fromMs_);
        zoomed(event->angleDelta().y() > 0 ? 0.8 : 1.25, std::clamp(at, fromMs_, toMs_));
        event->accept();
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        dragX_ = event->position().x();
        event->accept();
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        const QRectF area = chart()->plotArea();
        if (!(event->buttons() & Qt::LeftButton) || !panned || area.width() <= 0)
            return;
        const double dx = event->position().x() - dragX_;
        dragX_ = event->position().x();
        // Dragging to the right brings earlier times into view.
        panned(-dx / area.width() * (toMs_ - fromMs_));
        event->accept();
    }

private:
    QLineSeries* takeSeries(const PlotLine& line)
    {
        const auto it = series_.find(line.name);
        if (it != series_.end()) {
            QLineSeries* series = it->second;
            series_.erase(it);
            if (series->attachedAxes().contains(line.logic ? logicScale_ : numbers_))
                return series;
            chart()->removeSeries(series);
            delete series;
        }
        auto* series = new QLineSeries;
        series->setName(line.name);
        chart()->addSeries(series);
        series->attachAxis(time_);
        series->attachAxis(line.logic ? logicScale_ : numbers_);
        // A thin pen is drawn by the fast path of the painter, at a fraction of a wide one's cost.
        QPen pen = series->pen();
        pen.setWidth(1);
        series->setPen(pen);
        return series;
    }

    // The numbers take the top of the height, the logic band the bottom.
    void setScales(double low, double high, int logicLines)
    {
        const double share = logicLines == 0 ? 0 : std::min(kMostLogicShare, logicLines * kLogicShareEach);
        if (low > high) {
            low = 0;
            high = 1;
        }
        // At least two either side, so that the ticks of a flat line fall on whole numbers.
        const double margin = std::max((high - low) * 0.05, 2.0);
        low -= margin;
        high += margin;
        numbers_->setRange(low - (high - low) * share / (1 - share), high);
        numbers_->applyNiceNumbers();
        const double band = std::max(logicLines * kLogicPitch, kLogicPitch);
        logicScale_->setRange(-0.25, -0.25 + band / (share > 0 ? share : 1));
    }

    QValueAxis* time_ = new QValueAxis;
    QValueAxis* numbers_ = new QValueAxis;
    QValueAxis* logicScale_ = new QValueAxis;
    std::map<QString, QLineSeries*> series_;
    double fromMs_ = 0;
    double toMs_ = 0;
    double dragX_ = 0;
};

} // namespace

} // namespace marlune::qt

extern "C" Q_DECL_EXPORT marlune::qt::PlotView* MarluneCreatePlotView(QWidget* parent)
{
    return new marlune::qt::ScopeChartView(parent);
}

#pragma once

#include <QList>
#include <QPointF>
#include <QString>

#include <functional>

class QWidget;

namespace marlune::qt {

// One line of a chart as the chart module takes it: points in milliseconds against values.
struct PlotLine {
    QString name;
    bool logic = false;
    QList<QPointF> points;
};

// The chart that the chart module draws. The module is loaded at the first chart the program
// shows, so that a start without charts does not pay for them; it knows Qt alone, not the forms.
class PlotView {
public:
    virtual ~PlotView() = default;
    // The widget that draws the chart; the view goes with it.
    virtual QWidget* widget() = 0;
    virtual void setLines(double fromMs, double toMs, const QList<PlotLine>& lines) = 0;

    // The operator's wheel: the range shown grows by `factor` around `atMs`; a drag: it moves
    // by `deltaMs`, later for a positive delta.
    std::function<void(double factor, double atMs)> zoomed;
    std::function<void(double deltaMs)> panned;
};

} // namespace marlune::qt

// What the chart module exports: a new view whose widget is a child of `parent`.
extern "C" {
using MarluneCreatePlotViewFunction = marlune::qt::PlotView* (*)(QWidget* parent);
}
inline constexpr const char* kCreatePlotViewSymbol = "MarluneCreatePlotView";

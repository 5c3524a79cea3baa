#pragma once

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace marlune::forms {
class Plot;
}

namespace marlune::qt {

class PlotView;

// Where a form's layout puts a chart: it loads the chart module the first time a chart is
// bound and holds its view; where the module cannot be loaded it says so in the chart's place,
// and the rest of the window works on.
class PlotHost final : public QWidget {
    Q_OBJECT

public:
    explicit PlotHost(QWidget* parent = nullptr);
    ~PlotHost() override;

    // Creates the view; the operator's wheel and drag go to these.
    void attach(std::function<void(double factor, double atMs)> zoomed, std::function<void(double deltaMs)> panned);
    // Draws the plot's content when its revision is not the one drawn.
    void showPlot(const forms::Plot& plot);
    // Whether a view draws here, as opposed to the message that the module is missing.
    bool hasView() const { return view_ != nullptr; }
    // Why the chart module could not be loaded; empty when it could.
    static QString moduleError();

    QSize sizeHint() const override { return {640, 320}; }

private:
    // The view is a child widget of the host, which deletes it.
    PlotView* view_ = nullptr;
    std::uint64_t drawnRevision_ = 0;
};

} // namespace marlune::qt

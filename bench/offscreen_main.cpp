// The main of the benchmarks that show windows: a Qt application on the offscreen platform,
// unless QT_QPA_PLATFORM names another (xcb, to measure drawing on an X display).
#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

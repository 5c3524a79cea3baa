// The floor of a Qt program's start: an empty main window, shown at once. With the argument
// "text" it also has a menu bar and a status bar, so that it pays, as any program that shows a
// word does, for the desktop's fonts.
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("BareWindow"));
    if (argc > 1 && QByteArray(argv[1]) == "text") {
        for (const char* menu : {"&File", "&Edit", "&Tools", "&Window", "&Help"})
            window.menuBar()->addMenu(QString::fromLatin1(menu))->addAction(QStringLiteral("Exit"));
        window.statusBar()->showMessage(QStringLiteral("Ready"));
    }
    window.resize(960, 660);
    window.show();
    return QApplication::exec();
}

// The floor of a Qt program's start: an empty main window, shown at once.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("BareWindow"));
    window.resize(960, 660);
    window.show();
    return QApplication::exec();
}

#include <QApplication>

#include "forms/platform.h"
#include "link/controller_link.h"
#include "marlunecom/com_factory.h"
#include "qt/qt_platform.h"
#include "shell/program.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(marlune::forms::kApplicationTitle));
    QApplication::setOrganizationName(QStringLiteral("Marlune"));
    // The program ends when its frame unloads, not when some window happens to be the last.
    QApplication::setQuitOnLastWindowClosed(false);

    marlune::qt::QtPlatform platform;
    marlune::forms::SetPlatform(&platform);
    QObject::connect(&platform, &marlune::qt::QtPlatform::frameUnloaded, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);

    marlune::marlunecom::ComChoice com = marlune::marlunecom::ChooseMarluneCom({});
    marlune::link::SetCom(com.com.get());

    marlune::shell::Program program;
    program.Main();
    return QApplication::exec();
}

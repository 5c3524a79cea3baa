#include <QApplication>
#include <QStandardPaths>

#include "forms/platform.h"
#include "link/controller_link.h"
#include "marlunecom/com_factory.h"
#include "qt/help_browser.h"
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

    // The built-in simulated controller keeps its EEPROM in the per-user data folder, so that
    // what an operator stored is there after a restart, as on a controller.
    marlune::marlunecom::ComOptions options;
    if (const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation); !folder.isEmpty())
        options.simulatorEeprom = (folder + QStringLiteral("/simulated-controller.eeprom")).toStdString();
    marlune::marlunecom::ComChoice com = marlune::marlunecom::ChooseMarluneCom(options);
    marlune::link::SetCom(com.com.get());

    marlune::shell::Program program;
    program.servingLinks = com.description;
    program.makersLibrary = com.source == marlune::marlunecom::ComSource::VendorLibrary;
    // Help says so at once where the language manual is not installed.
    if (!marlune::qt::LocateManual())
        program.helpFile.clear();
    program.Main();
    if (!com.problem.empty())
        marlune::forms::MsgBox(com.problem, marlune::forms::MessageButtons::OK,
                               marlune::forms::MessageIcon::Exclamation);
    return QApplication::exec();
}

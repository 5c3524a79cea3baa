#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/platform.h"
#include "link/controller_link.h"
#include "marlunecom/com_factory.h"
#include "marlunecom/link_option.h"
#include "qt/app_icon.h"
#include "qt/desk_style.h"
#include "qt/help_browser.h"
#include "qt/qt_platform.h"
#include "shell/program.h"

namespace {

struct CommandLine {
    std::optional<marlune::link::LinkSettings> link;
    bool fromLauncher = false;
};

// Reads the options that the Qt application left; ends the process for --help, --version and
// an option it does not know, as command line programs do.
CommandLine ReadCommandLine(const QCoreApplication& app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Programming and control environment for Marlune KV motion controllers."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption link(QStringLiteral("link"),
                                  QStringLiteral("Uses LINK for this run only, without changing marlunecom.ini: sim, "
                                                 "tcp:HOST[:PORT] or serial:COMn."),
                                  QStringLiteral("LINK"));
    const QCommandLineOption launcher(QStringLiteral("from-launcher"),
                                      QStringLiteral("Works in the per-user folder ~/.local/share/marlune-desk, as "
                                                     "the desktop menu starts the program."));
    parser.addOption(link);
    parser.addOption(launcher);
    parser.process(app);
    CommandLine line;
    line.fromLauncher = parser.isSet(launcher);
    if (parser.isSet(link)) {
        const marlune::marlunecom::LinkOption chosen =
                marlune::marlunecom::ParseLinkOption(parser.value(link).toStdString());
        if (!chosen.settings) {
            std::fprintf(stderr, "marlune-desk: --link %s\n", chosen.error.c_str());
            std::exit(2);
        }
        line.link = chosen.settings;
    }
    return line;
}

// --help and --version answer without a desktop, as from a shell on a machine without one.
bool OnlyAsksForText(int argc, char* argv[])
{
    return std::any_of(argv + 1, argv + argc, [](const char* arg) {
        const std::string_view a(arg);
        return a == "--help" || a == "-h" || a == "--version" || a == "-v" || a == "--help-all";
    });
}

// The settings files of a run from the desktop menu go into the user's own data folder rather
// than the home folder; an empty text when the program works there, else why not.
std::string WorkInUserFolder()
{
    const QString folder =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/marlune-desk");
    if (!QDir().mkpath(folder) || !QDir::setCurrent(folder))
        return "The folder " + folder.toStdString()
               + " cannot be made or entered; the settings files stay in the current folder.";
    return {};
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName(QString::fromLatin1(marlune::forms::kApplicationTitle));
    QCoreApplication::setApplicationVersion(QStringLiteral(MARLUNE_VERSION));
    QCoreApplication::setOrganizationName(QStringLiteral("Marlune"));
    if (OnlyAsksForText(argc, argv)) {
        const QCoreApplication text(argc, argv);
        ReadCommandLine(text);
    }
    QApplication app(argc, argv);
    QApplication::setStyle(new marlune::qt::DeskStyle);
    const CommandLine commandLine = ReadCommandLine(app);
    QGuiApplication::setDesktopFileName(QStringLiteral("marlune-desk"));
    QApplication::setWindowIcon(marlune::qt::AppIcon());
    // The program ends when its frame unloads, not when some window happens to be the last.
    QApplication::setQuitOnLastWindowClosed(false);
    std::vector<std::string> startProblems;
    if (commandLine.fromLauncher) {
        if (std::string problem = WorkInUserFolder(); !problem.empty())
            startProblems.push_back(std::move(problem));
    }

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
    program.linkForRun = commandLine.link;
    program.makersLibrary = com.source == marlune::marlunecom::ComSource::VendorLibrary;
    // Help says so at once where the language manual is not installed.
    if (!marlune::qt::LocateManual())
        program.helpFile.clear();
    program.Main();
    if (!com.problem.empty())
        startProblems.push_back(com.problem);
    for (const std::string& problem : startProblems)
        marlune::forms::MsgBox(problem, marlune::forms::MessageButtons::OK, marlune::forms::MessageIcon::Exclamation);
    return QApplication::exec();
}

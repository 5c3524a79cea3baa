// Writes the program's icon as the scalable SVG and as PNG pictures of the sizes the desktop's
// icon theme asks for: marlune_icon OUT_DIR SIZE...
#include <QGuiApplication>
#include <QSaveFile>
#include <QString>

#include <cstdio>

#include "qt/app_icon.h"

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: marlune_icon OUT_DIR SIZE...\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    QSaveFile svg(dir + "/marlune-desk.svg");
    if (!svg.open(QIODevice::WriteOnly) || svg.write(marlune::qt::AppIconSvg().toUtf8()) < 0 || !svg.commit()) {
        std::fprintf(stderr, "marlune_icon: cannot write %s\n", qPrintable(svg.fileName()));
        return 1;
    }
    for (int i = 2; i < argc; ++i) {
        const int size = QString::fromLatin1(argv[i]).toInt();
        const QString name = dir + QStringLiteral("/marlune-desk-%1.png").arg(size);
        if (size <= 0 || !marlune::qt::AppIconImage(size).save(name)) {
            std::fprintf(stderr, "marlune_icon: cannot write %s\n", qPrintable(name));
            return 1;
        }
    }
    return 0;
}

// Prints the desktop clipboard's text: how the smoke test reads what an operator copied.
#include <QClipboard>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    const QByteArray text = QGuiApplication::clipboard()->text().toUtf8();
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    return 0;
}

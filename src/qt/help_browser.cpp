#include "qt/help_browser.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace marlune::qt {

namespace {

constexpr const char* kManualName = "controller-language.md";

} // namespace

HelpBrowser::HelpBrowser(QWidget* parent)
    : QWidget(parent, Qt::Window), browser_(new QTextBrowser(this)), search_(new QLineEdit(this))
{
    setObjectName(QStringLiteral("helpBrowser"));
    setWindowTitle(QStringLiteral("Marlune KV Language Manual"));
    resize(760, 640);
    browser_->setObjectName(QStringLiteral("manual"));
    browser_->setOpenExternalLinks(false);
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(QStringLiteral("Search for a word, then Enter"));
    search_->setClearButtonEnabled(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(search_);
    layout->addWidget(browser_);
    connect(search_, &QLineEdit::returnPressed, this, &HelpBrowser::find);
}

bool HelpBrowser::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    browser_->setSearchPaths({QFileInfo(path).absolutePath()});
    browser_->setMarkdown(QString::fromUtf8(file.readAll()));
    return true;
}

void HelpBrowser::showContents()
{
    browser_->moveCursor(QTextCursor::Start);
    browser_->setFocus(Qt::OtherFocusReason);
}

void HelpBrowser::showSearch()
{
    search_->setFocus(Qt::OtherFocusReason);
    search_->selectAll();
}

void HelpBrowser::find()
{
    const QString word = search_->text();
    if (word.isEmpty())
        return;
    // On from the last match, and round from the top once the end is reached.
    if (!browser_->find(word)) {
        browser_->moveCursor(QTextCursor::Start);
        browser_->find(word);
    }
}

std::optional<QString> LocateManual()
{
    const QDir binary(QCoreApplication::applicationDirPath());
    const QStringList candidates = {
            binary.filePath(QString::fromLatin1(kManualName)),
            binary.filePath(QStringLiteral("../share/doc/marlune-desk/") + QString::fromLatin1(kManualName)),
            QDir(QStringLiteral(MARLUNE_SOURCE_DOCS)).filePath(QString::fromLatin1(kManualName)),
    };
    for (const QString& candidate : candidates) {
        if (QFileInfo::exists(candidate))
            return QFileInfo(candidate).absoluteFilePath();
    }
    return std::nullopt;
}

} // namespace marlune::qt

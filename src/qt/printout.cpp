#include "qt/printout.h"

#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace marlune::qt {

std::unique_ptr<QTextDocument> Printout(const QString& heading, const QString& text)
{
    auto document = std::make_unique<QTextDocument>();
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    document->setDefaultFont(fixed);
    QTextCursor cursor(document.get());
    QTextCharFormat headingFormat;
    headingFormat.setFontFamilies(fixed.families());
    headingFormat.setFontWeight(QFont::Bold);
    headingFormat.setFontPointSize(fixed.pointSizeF() * 1.4);
    QTextBlockFormat headingBlock;
    headingBlock.setBottomMargin(fixed.pointSizeF());
    cursor.setBlockFormat(headingBlock);
    cursor.insertText(heading, headingFormat);
    cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    cursor.insertText(text);
    return document;
}

QString JobFileName(const QString& chosen, int job)
{
    if (job <= 1)
        return chosen;
    const QFileInfo file(chosen);
    const QString numbered = file.completeBaseName() + '-' + QString::number(job);
    return file.dir().filePath(file.suffix().isEmpty() ? numbered : numbered + '.' + file.suffix());
}

} // namespace marlune::qt

#include "qt/file_filter.h"

#include "qt/shown_text.h"

namespace marlune::qt {

QStringList QtNameFilters(std::string_view filter)
{
    const QStringList parts = ShownText(filter).split(QLatin1Char('|'), Qt::KeepEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        const QString patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts).join(QLatin1Char(' '));
        // Qt reads the patterns from the last parentheses: drop the description's own.
        if (description.endsWith(QLatin1Char(')'))) {
            const qsizetype open = description.lastIndexOf(QLatin1Char('('));
            if (open >= 0)
                description = description.left(open).trimmed();
        }
        filters << (description.isEmpty() ? patterns
                                          : description + QStringLiteral(" (") + patterns + QLatin1Char(')'));
    }
    // A lone description without patterns still names what is wanted: show everything.
    if (parts.size() % 2 == 1 && !parts.back().trimmed().isEmpty())
        filters << parts.back().trimmed() + QStringLiteral(" (*)");
    return filters;
}

} // namespace marlune::qt

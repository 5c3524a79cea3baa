#pragma once

#include <QString>

#include <memory>

class QTextDocument;

namespace marlune::qt {

// The paper form of a text: its heading in bold above it, and the text as it stands, line for line,
// in the fixed-pitch font, so that columns in a program line up on paper as on the screen.
std::unique_ptr<QTextDocument> Printout(const QString& heading, const QString& text);

} // namespace marlune::qt

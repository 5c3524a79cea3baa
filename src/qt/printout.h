#pragma once

#include <QString>

#include <memory>

class QTextDocument;

namespace marlune::qt {

// The paper form of a text: its heading in bold above it, and the text as it stands, line for line,
// in the fixed-pitch font, so that columns in a program line up on paper as on the screen.
std::unique_ptr<QTextDocument> Printout(const QString& heading, const QString& text);

// Where job `job` (from 1) of a print to a file goes: a job is a file of its own, as it is a stack
// of paper of its own on a printer. The first takes the chosen name, the others the name with
// "-2", "-3" and so on before its extension.
QString JobFileName(const QString& chosen, int job);

} // namespace marlune::qt

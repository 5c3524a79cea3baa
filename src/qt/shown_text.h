#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace marlune::qt {

// How the program's bytes (Windows-1252, lines ended by CR LF) appear on the desktop, and
// back: every caption, title and text goes through here. A multi-line widget has LF alone
// between lines; a CR that ends no line shows as nothing, as it does in the classic boxes.
// Positions are counted in characters on both sides, so that caret and selection can travel
// between them.
QString ShownText(std::string_view ansi, bool multiLine = false);
std::string ModelText(const QString& shown, bool multiLine = false);

// The first character of `shown` that the code page cannot hold, named for the operator by its
// number ("U+FF36"); nothing when ModelText would keep every character. Operator's text with
// such a character is refused rather than sent with a "?" in its place.
std::optional<std::string> UnwritableCharacter(const QString& shown);
// What the operator is told when text holds such a character.
std::string UnwritableMessage(const std::string& character);

// The widget position of the model's position `pos`, and the model position of a widget
// position (the first byte of the character there).
int ShownPosition(std::string_view ansi, int pos, bool multiLine);
int ModelPosition(std::string_view ansi, int shownPos, bool multiLine);

} // namespace marlune::qt

#pragma once

#include <QString>
#include <QWidget>

#include <optional>

class QLineEdit;
class QTextBrowser;

namespace marlune::qt {

// The help viewer: the controller language manual, a Markdown file, in a window of its own
// with a search line. It stays open beside the program until the operator closes it.
class HelpBrowser final : public QWidget {
    Q_OBJECT

public:
    explicit HelpBrowser(QWidget* parent = nullptr);

    // Loads the manual; false when it cannot be read.
    bool load(const QString& path);
    // The contents from the top, or the search line ready for a keyword.
    void showContents();
    void showSearch();

    const QTextBrowser& browser() const { return *browser_; }

private:
    void find();

    QTextBrowser* browser_;
    QLineEdit* search_;
};

// Where the manual is: beside the binary, in a share folder above it, or in the source tree.
std::optional<QString> LocateManual();

} // namespace marlune::qt

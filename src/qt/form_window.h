#pragma once

#include <QWidget>

#include <functional>

namespace marlune::qt {

// The window of a form that is not the frame: a separate (modal) form, or the content of a
// child of the frame. Its close box asks the form to unload instead of closing by itself; the
// window goes when the platform is told that the form has unloaded.
class FormWindow final : public QWidget {
    Q_OBJECT

public:
    explicit FormWindow(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    // Called for the close box; without it the window closes as any window does.
    std::function<void()> closeRequested;
    // Enter and Escape that no control took: the form's default and cancel buttons.
    std::function<bool(int key)> unhandledKey;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace marlune::qt

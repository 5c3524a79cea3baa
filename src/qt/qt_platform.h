#pragma once

#include <QObject>
#include <QPointer>

#include <map>
#include <memory>

#include "forms/platform.h"

class QEventLoop;
class QMdiSubWindow;
class QPrinter;
class QTimer;
class QWidget;

namespace marlune::qt {

class FormBinder;
class HelpBrowser;
class MdiFrame;

// The desktop of the forms, made of Qt widgets. Each showing of a form gets a fresh window
// from the form's layout, bound to the form until it unloads. A modal showing is a nested
// event loop over an application-modal window, as QDialog::exec has it.
class QtPlatform final : public QObject, public forms::Platform {
    Q_OBJECT

public:
    QtPlatform();
    ~QtPlatform() override;

    forms::MessageAnswer messageBox(const forms::MessageRequest& request) override;
    void runModal(forms::Form& form, forms::Form* owner) override;
    void showModeless(forms::Form& form, forms::Form* parentFrame) override;
    void showOwned(forms::Form& form, forms::Form& owner) override;
    void formUnloaded(forms::Form& form) override;
    void arrange(forms::Arrangement arrangement) override;
    forms::Form* activeChild() override;
    void activate(forms::Form& child) override;
    void timerChanged(forms::Timer& timer) override;
    forms::FileDialogResult fileDialog(const forms::FileDialogRequest& request) override;
    forms::PrintDialogResult printDialog(const std::string& title) override;
    bool printText(const std::string& heading, const std::string& text) override;
    std::optional<std::string> clipboardText() override;
    void setClipboardText(const std::string& text) override;
    std::optional<std::string> readSetting(const std::string& application, const std::string& section,
                                           const std::string& key) override;
    void saveSetting(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& value) override;
    std::optional<std::string> showHelp(const std::string& file, int command) override;
    std::optional<std::string> savePicture(const forms::Control& control, const std::string& path) override;

    // The window that shows a form now (for a child of the frame, its content), and its binder.
    QWidget* window(const forms::Form& form) const;
    FormBinder* binder(const forms::Form& form) const;
    MdiFrame* frame() const;
    HelpBrowser* helpBrowser() const;
    // The printer that the print dialog set up and that printText prints on.
    QPrinter& printer();

signals:
    // The frame has unloaded: the program is over.
    void frameUnloaded();

private:
    struct Showing {
        QPointer<QWidget> window;      // the form's window, or the content of a frame child
        QPointer<QMdiSubWindow> child; // set for a child of the frame
        QPointer<FormBinder> binder;
        QEventLoop* loop = nullptr; // set while the form is shown modally
    };

    Showing& show(forms::Form& form, QWidget* window);
    QWidget* createWindow(forms::Form& form, QWidget* parent, Qt::WindowFlags flags);
    void showFrame(forms::Form& form);
    void showChild(forms::Form& form);
    void closeFrame();
    QWidget* dialogParent() const;

    std::map<const forms::Form*, Showing> showings_;
    std::map<forms::Timer*, std::unique_ptr<QTimer>> timers_;
    forms::Form* frameForm_ = nullptr;
    QPointer<MdiFrame> frame_;
    std::unique_ptr<QPrinter> printer_;
    // The file that the print dialog chose, if it prints to one, and the jobs printed since.
    QString printFile_;
    int jobsPrinted_ = 0;
    QPointer<HelpBrowser> help_;
};

} // namespace marlune::qt

#include "qt/qt_platform.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QEventLoop>
#include <QFileDialog>
#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QTextDocument>
#include <QTimer>

#include <algorithm>
#include <memory>

#include "forms/control.h"
#include "forms/files.h"
#include "forms/form.h"
#include "panel/main_control.h"
#include "qt/file_filter.h"
#include "qt/form_binder.h"
#include "qt/form_layouts.h"
#include "qt/form_window.h"
#include "qt/help_browser.h"
#include "qt/mdi_frame.h"
#include "qt/menu_builder.h"
#include "qt/printout.h"
#include "qt/shown_text.h"
#include "qt/status_mark.h"

namespace marlune::qt {

namespace {

// A caption that wraps, such as a description the program fills in, may need more height than the
// window was drawn with; the window grows rather than squeezing its rows.
void GrowForWrappedText(QWidget& window)
{
    if (window.layout())
        window.layout()->activate();
    if (window.hasHeightForWidth())
        window.resize(window.width(), std::max(window.height(), window.heightForWidth(window.width())));
}

QMessageBox::Icon BoxIcon(forms::MessageIcon icon)
{
    switch (icon) {
    case forms::MessageIcon::None: return QMessageBox::NoIcon;
    case forms::MessageIcon::Question: return QMessageBox::Question;
    case forms::MessageIcon::Information: return QMessageBox::Information;
    case forms::MessageIcon::Exclamation: return QMessageBox::Warning;
    case forms::MessageIcon::Critical: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

// The help commands of the forms: 261 asks for a search by keyword; the rest show the contents.
constexpr int kHelpPartialKey = 261;

// Timers shorter than this are asked of the desktop to the millisecond.
constexpr int kPreciseBelowMs = 20;

// Dialogs live on the heap: the window they stand on may be unloaded, and deleted with its
// children, while they wait for the operator. Gives the dialog back when it outlived its run.
template <class Dialog>
std::unique_ptr<Dialog> Run(Dialog* dialog, int& code)
{
    const QPointer<Dialog> guard(dialog);
    code = dialog->exec();
    return std::unique_ptr<Dialog>(guard.data());
}

} // namespace

QtPlatform::QtPlatform() = default;

QtPlatform::~QtPlatform()
{
    for (auto& [form, showing] : showings_) {
        if (showing.binder)
            showing.binder->detach();
        delete showing.child.data();
        delete showing.window.data();
    }
    delete help_.data();
}

QWidget* QtPlatform::dialogParent() const
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    return frame_;
}

forms::MessageAnswer QtPlatform::messageBox(const forms::MessageRequest& request)
{
    const bool question = request.buttons == forms::MessageButtons::YesNo;
    auto* box = new QMessageBox(BoxIcon(request.icon), ShownText(request.title), ShownText(request.text),
                                question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, dialogParent());
    box->setTextFormat(Qt::PlainText);
    box->setObjectName(QStringLiteral("messageBox"));
    // The box's close box and Escape answer No to a question, OK otherwise; so does a box that
    // went with its window.
    box->setEscapeButton(question ? QMessageBox::No : QMessageBox::Ok);
    int code = 0;
    const std::unique_ptr<QMessageBox> answered = Run(box, code);
    QAbstractButton* clicked = answered ? answered->clickedButton() : nullptr;
    const QMessageBox::StandardButton answer = clicked ? answered->standardButton(clicked) : QMessageBox::NoButton;
    if (!question)
        return forms::MessageAnswer::OK;
    return answer == QMessageBox::Yes ? forms::MessageAnswer::Yes : forms::MessageAnswer::No;
}

QWidget* QtPlatform::createWindow(forms::Form& form, QWidget* parent, Qt::WindowFlags flags)
{
    auto* window = new FormWindow(parent, flags);
    const FormLayout* layout = FindFormLayout(form.name());
    if (layout && !layout->frame)
        layout->setUp(*window);
    else
        SetUpPlainLayout(form, *window);
    window->closeRequested = [&form] { form.unload(); };
    return window;
}

QtPlatform::Showing& QtPlatform::show(forms::Form& form, QWidget* window)
{
    Showing& showing = showings_[&form];
    showing.window = window;
    showing.binder = new FormBinder(form, *window);
    if (auto* panel = dynamic_cast<panel::MainControl*>(&form))
        new StatusMark(*panel, *window);
    if (auto* formWindow = qobject_cast<FormWindow*>(window)) {
        formWindow->unhandledKey = [binder = showing.binder](int key) {
            return binder && binder->pressStandardButton(key);
        };
    }
    return showing;
}

void QtPlatform::runModal(forms::Form& form, forms::Form* owner)
{
    if (showings_.count(&form)) {
        formUnloaded(form); // a stale window of an earlier showing goes first
    }
    QWidget* parent = owner && showings_.count(owner) ? showings_[owner].window->window() : nullptr;
    QWidget* window = createWindow(form, parent, Qt::Dialog);
    Showing& showing = show(form, window);
    showing.binder->watchWindow(*window);
    window->setWindowModality(Qt::ApplicationModal);
    GrowForWrappedText(*window);
    window->show();
    window->raise();
    window->activateWindow();
    QEventLoop loop;
    showing.loop = &loop;
    // A window deleted with the window it stands on takes its form along, or the loop would wait
    // for an unload that no window can give. (An unloaded form's window goes after its showing.)
    connect(window, &QObject::destroyed, &loop, [this, &form, window] {
        const auto it = showings_.find(&form);
        const bool stillShown = it != showings_.end() && (!it->second.window || it->second.window == window);
        if (stillShown && !form.unload())
            formUnloaded(form);
    });
    // The loop ends in formUnloaded, however the form comes to unload.
    if (form.loaded())
        loop.exec(QEventLoop::DialogExec);
}

void QtPlatform::showModeless(forms::Form& form, forms::Form* parentFrame)
{
    if (const auto it = showings_.find(&form); it != showings_.end()) {
        if (it->second.child)
            activate(form);
        else if (it->second.window)
            it->second.window->activateWindow();
        return;
    }
    if (!parentFrame)
        showFrame(form);
    else
        showChild(form);
}

void QtPlatform::showOwned(forms::Form& form, forms::Form& owner)
{
    if (const auto it = showings_.find(&form); it != showings_.end() && it->second.window) {
        it->second.window->raise();
        it->second.window->activateWindow();
        return;
    }
    // A window whose parent is the modal window is not blocked by it.
    const auto ownerShowing = showings_.find(&owner);
    QWidget* parent = ownerShowing != showings_.end() && ownerShowing->second.window
                              ? ownerShowing->second.window->window()
                              : frame_.data();
    QWidget* window = createWindow(form, parent, Qt::Window);
    Showing& showing = show(form, window);
    showing.binder->watchWindow(*window);
    window->show();
    window->raise();
    window->activateWindow();
}

void QtPlatform::showFrame(forms::Form& form)
{
    auto* frame = new MdiFrame;
    if (const FormLayout* layout = FindFormLayout(form.name()); layout && layout->frame)
        layout->setUp(*frame);
    frame->attachLayout();
    frameForm_ = &form;
    frame_ = frame;
    Showing& showing = show(form, frame);
    for (const forms::Control* control : form.controls()) {
        const auto* item = dynamic_cast<const forms::MenuItem*>(control);
        // The classic frame lists its children under the menu captioned Window.
        if (item && item->parent().empty() && PlainCaption(item->caption()) == "Window")
            frame->setWindowMenu(showing.binder->menu(item->name()));
    }
    frame->closeRequested = [this] { closeFrame(); };
    showing.binder->watchWindow(*frame);
    frame->show();
}

void QtPlatform::showChild(forms::Form& form)
{
    if (!frame_) {
        // No frame to live in: the form gets a window of its own.
        QWidget* window = createWindow(form, nullptr, Qt::Window);
        show(form, window).binder->watchWindow(*window);
        window->show();
        return;
    }
    QWidget* content = createWindow(form, nullptr, {});
    QMdiSubWindow* child = frame_->area().addSubWindow(content);
    Showing& showing = show(form, content);
    showing.child = child;
    showing.binder->watchWindow(*child);
    child->show();
    frame_->area().setActiveSubWindow(child);
}

void QtPlatform::closeFrame()
{
    // The children go first, oldest first, as they were opened: a window that owns later ones
    // (the project manager and its program windows) decides for them. One that refuses keeps
    // the frame open.
    std::vector<forms::Form*> children;
    for (const QMdiSubWindow* child : frame_->area().subWindowList(QMdiArea::CreationOrder)) {
        for (auto& [form, showing] : showings_) {
            if (showing.child == child)
                children.push_back(const_cast<forms::Form*>(form));
        }
    }
    for (forms::Form* child : children) {
        if (child->loaded() && !child->unload())
            return;
    }
    if (frameForm_)
        frameForm_->unload();
}

void QtPlatform::formUnloaded(forms::Form& form)
{
    const auto it = showings_.find(&form);
    if (it == showings_.end())
        return;
    Showing showing = it->second;
    showings_.erase(it);
    if (showing.binder)
        showing.binder->detach();
    if (showing.loop)
        showing.loop->quit();
    if (showing.child) {
        if (frame_)
            frame_->area().removeSubWindow(showing.child);
        showing.child->hide();
        showing.child->deleteLater();
    } else if (showing.window) {
        showing.window->hide();
        // Later: the unload may have come from a handler of this very window.
        showing.window->deleteLater();
    }
    if (&form == frameForm_) {
        frameForm_ = nullptr;
        frame_ = nullptr;
        emit frameUnloaded();
    }
}

void QtPlatform::arrange(forms::Arrangement arrangement)
{
    if (frame_)
        frame_->arrange(arrangement);
}

forms::Form* QtPlatform::activeChild()
{
    if (!frame_)
        return nullptr;
    // The child last worked in, also while a modal form has the focus.
    QMdiSubWindow* current = frame_->area().currentSubWindow();
    for (auto& [form, showing] : showings_) {
        if (current && showing.child == current)
            return const_cast<forms::Form*>(form);
    }
    return nullptr;
}

void QtPlatform::activate(forms::Form& child)
{
    const auto it = showings_.find(&child);
    if (frame_ && it != showings_.end() && it->second.child)
        frame_->area().setActiveSubWindow(it->second.child);
}

void QtPlatform::timerChanged(forms::Timer& timer)
{
    std::unique_ptr<QTimer>& qtimer = timers_[&timer];
    if (!qtimer) {
        qtimer = std::make_unique<QTimer>();
        connect(qtimer.get(), &QTimer::timeout, this, [&timer] { timer.tick(); });
    }
    if (!timer.running()) {
        qtimer->stop();
        return;
    }
    qtimer->setTimerType(timer.interval() < kPreciseBelowMs ? Qt::PreciseTimer : Qt::CoarseTimer);
    qtimer->start(timer.interval());
}

forms::FileDialogResult QtPlatform::fileDialog(const forms::FileDialogRequest& request)
{
    using Outcome = forms::FileDialogResult::Outcome;
    auto* dialog = new QFileDialog(dialogParent(), ShownText(request.title));
    dialog->setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite, !request.askToReplace);
    dialog->setDefaultSuffix(ShownText(request.extension));
    if (const QStringList filters = QtNameFilters(request.filter); !filters.isEmpty())
        dialog->setNameFilters(filters);
    if (!request.initialName.empty())
        dialog->selectFile(ShownText(request.initialName));
    int code = 0;
    const std::unique_ptr<QFileDialog> chosen = Run(dialog, code);
    if (!chosen || code != QDialog::Accepted)
        return {Outcome::Cancelled, {}, {}};
    const QStringList files = chosen->selectedFiles();
    if (files.isEmpty() || files.front().isEmpty())
        return {Outcome::Failed, {}, "No file was chosen."};
    const std::string name = ModelText(files.front());
    // The program keeps names in its own code page; a name that does not fit would name another file.
    if (ShownText(name) != files.front())
        return {Outcome::Failed,
                {},
                "The file name " + files.front().toStdString() + " has characters the program cannot hold."};
    return {Outcome::Chosen, name, {}};
}

QPrinter& QtPlatform::printer()
{
    if (!printer_)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer_;
}

forms::PrintDialogResult QtPlatform::printDialog(const std::string& title)
{
    using Outcome = forms::PrintDialogResult::Outcome;
    if (!printFile_.isEmpty())
        printer().setOutputFileName(printFile_);
    auto* dialog = new QPrintDialog(&printer(), dialogParent());
    dialog->setWindowTitle(ShownText(title));
    // Every job prints its whole text: there are no pages to pick.
    dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
    int code = 0;
    if (!Run(dialog, code) || code != QDialog::Accepted)
        return {Outcome::Cancelled, {}};
    if (!printer().isValid())
        return {Outcome::Failed, "No printer is available."};
    printFile_ = printer().outputFileName();
    jobsPrinted_ = 0;
    return {Outcome::Chosen, {}};
}

std::optional<std::string> QtPlatform::savePicture(const forms::Control& control, const std::string& path)
{
    const FormBinder* shown = binder(control.form());
    QWidget* widget = shown ? shown->widget(control.name()) : nullptr;
    if (!widget)
        return "the window of " + control.form().name() + " is not shown";
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!widget->grab().save(&buffer, "PNG"))
        return std::string("the picture could not be made");
    // Written as every file of the program is, whole or not at all.
    std::string error = forms::WriteFileAtomically(path, bytes.toStdString());
    if (error.empty())
        return std::nullopt;
    return error;
}

bool QtPlatform::printText(const std::string& heading, const std::string& text)
{
    ++jobsPrinted_;
    if (!printFile_.isEmpty())
        printer().setOutputFileName(JobFileName(printFile_, jobsPrinted_));
    Printout(ShownText(heading), ShownText(text, true))->print(&printer());
    return printer().printerState() != QPrinter::Error;
}

std::optional<std::string> QtPlatform::clipboardText()
{
    const QString text = QGuiApplication::clipboard()->text();
    if (const std::optional<std::string> character = UnwritableCharacter(text)) {
        forms::MsgBox(UnwritableMessage(*character));
        return std::nullopt;
    }
    // The desktop's text has LF between lines; the program's has CR LF.
    return ModelText(text, true);
}

void QtPlatform::setClipboardText(const std::string& text)
{
    QGuiApplication::clipboard()->setText(ShownText(text, true));
}

void QtPlatform::saveSetting(const std::string& application, const std::string& section, const std::string& key,
                             const std::string& value)
{
    // ~/.config/Marlune/<application>.conf on Linux, the registry on Windows.
    QSettings settings(QStringLiteral("Marlune"), ShownText(application));
    settings.setValue(ShownText(section) + '/' + ShownText(key), ShownText(value));
    settings.sync();
}

std::optional<std::string> QtPlatform::readSetting(const std::string& application, const std::string& section,
                                                   const std::string& key)
{
    const QVariant value = QSettings(QStringLiteral("Marlune"), ShownText(application))
                                   .value(ShownText(section) + '/' + ShownText(key));
    if (!value.isValid())
        return std::nullopt;
    return ModelText(value.toString());
}

std::optional<std::string> QtPlatform::showHelp(const std::string& file, int command)
{
    const std::optional<QString> manual = LocateManual();
    if (!manual)
        return "The help for " + file
               + " is not installed: controller-language.md was not found beside the program or in its docs folder.";
    if (!help_) {
        help_ = new HelpBrowser;
        help_->setAttribute(Qt::WA_DeleteOnClose);
    }
    if (!help_->load(*manual))
        return "The help file " + ModelText(*manual) + " cannot be read.";
    if (command == kHelpPartialKey)
        help_->showSearch();
    else
        help_->showContents();
    help_->show();
    help_->raise();
    help_->activateWindow();
    return std::nullopt;
}

QWidget* QtPlatform::window(const forms::Form& form) const
{
    const auto it = showings_.find(&form);
    return it == showings_.end() ? nullptr : it->second.window.data();
}

MdiFrame* QtPlatform::frame() const { return frame_; }

HelpBrowser* QtPlatform::helpBrowser() const { return help_; }

FormBinder* QtPlatform::binder(const forms::Form& form) const
{
    const auto it = showings_.find(&form);
    return it == showings_.end() ? nullptr : it->second.binder.data();
}

} // namespace marlune::qt

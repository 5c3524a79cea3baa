#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace marlune::forms {

class Control;
class Form;
class Timer;

inline constexpr const char* kApplicationTitle = "Marlune Desk";

enum class MessageButtons { OK, YesNo };
enum class MessageIcon { None, Question, Information, Exclamation, Critical };
enum class MessageAnswer { OK, Yes, No, Cancel };

struct MessageRequest {
    std::string text;
    std::string title;
    MessageButtons buttons = MessageButtons::OK;
    MessageIcon icon = MessageIcon::None;
};

struct FileDialogRequest {
    std::string title;
    std::string filter;       // "Marlune Program Files (*.dat)|*.dat"
    std::string initialName;  // preset in the name box
    bool save = true;         // the save dialog, else the open dialog
    bool askToReplace = true; // a save dialog asks before it names a file that is there
    std::string extension;    // added by a save dialog to a typed name without one; none when empty
};

// A file dialog either returns a name, or the operator cancelled, or it failed.
struct FileDialogResult {
    enum class Outcome { Chosen, Cancelled, Failed } outcome = Outcome::Cancelled;
    std::string fileName;
    std::string error;
};

struct PrintDialogResult {
    enum class Outcome { Chosen, Cancelled, Failed } outcome = Outcome::Cancelled;
    std::string error;
};

// The frame's four arrangements of its children.
enum class Arrangement { Cascade = 0, TileHorizontal = 1, TileVertical = 2, ArrangeIcons = 3 };

// Everything a desktop offers the forms. The Qt layer implements it with widgets; the headless
// layer with a virtual clock and scripted answers.
class Platform {
public:
    virtual ~Platform() = default;

    virtual MessageAnswer messageBox(const MessageRequest& request) = 0;

    // `form` is loaded. Shows it modally and returns when it has unloaded.
    virtual void runModal(Form& form, Form* owner) = 0;
    // Shows a loaded form without waiting: the frame itself, or a child of the frame.
    virtual void showModeless(Form& form, Form* parentFrame) = 0;
    // Shows a loaded form without waiting in a window of its own that `owner`'s window owns:
    // it stays usable beside a modal owner and stays above it. A form already shown comes to
    // the front. The owner unloads it when it unloads itself.
    virtual void showOwned(Form& form, Form& owner) = 0;
    // The form has unloaded: its window goes.
    virtual void formUnloaded(Form& form) = 0;

    // The multiple-document frame.
    virtual void arrange(Arrangement arrangement) = 0;
    virtual Form* activeChild() = 0;
    virtual void activate(Form& child) = 0;

    // A timer was started, stopped or given a new interval.
    virtual void timerChanged(Timer& timer) = 0;

    virtual FileDialogResult fileDialog(const FileDialogRequest& request) = 0;
    virtual PrintDialogResult printDialog(const std::string& title) = 0;
    // Prints a text as a job of its own on the printer chosen in the last print dialog, with
    // `heading` above it, so that a printed page says what it holds; false on failure.
    virtual bool printText(const std::string& heading, const std::string& text) = 0;

    // Nothing when the clipboard holds a character that the program's code page cannot hold;
    // the operator has then been told which.
    virtual std::optional<std::string> clipboardText() = 0;
    virtual void setClipboardText(const std::string& text) = 0;

    // The per-user settings store.
    virtual void saveSetting(const std::string& application, const std::string& section, const std::string& key,
                             const std::string& value) = 0;
    virtual std::optional<std::string> readSetting(const std::string& application, const std::string& section,
                                                   const std::string& key) = 0;

    // Shows the help viewer for a help file; returns an error description, or nothing.
    virtual std::optional<std::string> showHelp(const std::string& file, int command) = 0;

    // Saves the picture that `control` shows now as a PNG file, replacing `path` whole;
    // returns an error description for the operator, or nothing.
    virtual std::optional<std::string> savePicture(const Control& control, const std::string& path) = 0;

    // Milliseconds on the clock that the timers follow; only differences mean anything.
    virtual std::int64_t clockMs();
};

// The platform of this process, set once at start.
Platform& CurrentPlatform();
void SetPlatform(Platform* platform);
bool HasPlatform();

// What the file dialog's failures and the file operations behind it name as their source, after
// the description.
inline constexpr const char* kErrorSource = "MarluneDesk";

// Shows the file dialog: the chosen name, or nothing when the operator cancelled or the dialog
// failed; a failure is told in a message, its description followed by the error source.
std::optional<std::string> ChooseFile(const FileDialogRequest& request);

// Shows the print dialog: true when a printer was chosen; false when the operator cancelled or
// the dialog failed, a failure told as ChooseFile tells it.
bool ChoosePrinter(const std::string& title);

// A message box with the application title unless another is given.
MessageAnswer MsgBox(const std::string& text, MessageButtons buttons = MessageButtons::OK,
                     MessageIcon icon = MessageIcon::None, const std::string& title = {});

// Loads the form when it is not loaded, then shows it modally; returns when it has unloaded.
void ShowModal(Form& form, Form* owner);

} // namespace marlune::forms

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::forms {

class Form;

enum class ControlKind {
    TextBox,
    Label,
    Frame,
    Button,
    CheckBox,
    OptionButton,
    Picture,
    Timer,
    ProgressBar,
    ListBox,
    ToolBar,
    MenuItem,
    Plot,
};

std::string_view KindName(ControlKind kind);

// Key codes that the forms look at.
inline constexpr int kKeyBackspace = 8;
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyEnter = 13;
inline constexpr int kKeyEscape = 27;

// A named control of a form with one value and the events of a classic forms toolkit.
// Setting a value from code raises the same event as an operator's change; setting the value
// a control already has raises nothing. The view (the Qt binder) is told of every change.
class Control {
public:
    Control(Form& form, std::string name, ControlKind kind);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return name_; }
    ControlKind kind() const { return kind_; }
    Form& form() const { return form_; }

    bool enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    bool visible() const { return visible_; }
    void setVisible(bool visible);

    // Operator actions, as the Qt binder and the scenario runner deliver them.
    virtual void operatorClick();
    void operatorDoubleClick();
    void operatorMouseDown(int button);

    // Generic read access by property name ("text", "value", "caption", …), for the
    // scenario runner and the binder; nothing for a property the control does not have.
    virtual std::optional<std::string> property(std::string_view name) const;

    // The values of the control as designed: taken at the first load of its form and put back,
    // without any event, at every later load.
    void captureDesign();
    void restoreDesign();

    std::function<void()> onClick;
    std::function<void()> onDblClick;
    std::function<void(int button)> onMouseDown;
    std::function<void()> onGotFocus;

protected:
    void changed();
    static void raise(const std::function<void()>& handler)
    {
        if (handler)
            handler();
    }

    // Makes `value` one of the designed values of the control.
    template <class T>
    void designed(T& value)
    {
        design_.push_back(std::make_unique<DesignedValue<T>>(value, value, true));
    }
    // Makes `value` come back as `start` at every load, whatever it was at the first.
    template <class T>
    void designed(T& value, T start)
    {
        design_.push_back(std::make_unique<DesignedValue<T>>(value, std::move(start), false));
    }

private:
    class DesignSlot {
    public:
        virtual ~DesignSlot() = default;
        virtual void capture() = 0;
        // True when putting the designed value back changed the value.
        virtual bool restore() = 0;
    };

    template <class T>
    class DesignedValue final : public DesignSlot {
    public:
        DesignedValue(T& value, T design, bool fromFirstLoad)
            : value_(value), design_(std::move(design)), fromFirstLoad_(fromFirstLoad)
        {}
        void capture() override
        {
            if (fromFirstLoad_)
                design_ = value_;
        }
        bool restore() override
        {
            if (value_ == design_)
                return false;
            value_ = design_;
            return true;
        }

    private:
        T& value_;
        T design_;
        bool fromFirstLoad_;
    };

    Form& form_;
    std::string name_;
    ControlKind kind_;
    bool enabled_ = true;
    bool visible_ = true;
    std::vector<std::unique_ptr<DesignSlot>> design_;
};

// A control with a caption: label, frame, button.
class CaptionControl : public Control {
public:
    CaptionControl(Form& form, std::string name, ControlKind kind, std::string caption);
    const std::string& caption() const { return caption_; }
    void setCaption(const std::string& caption);
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::string caption_;
};

class Label final : public CaptionControl {
public:
    Label(Form& form, std::string name, std::string caption);
};

class Frame final : public CaptionControl {
public:
    Frame(Form& form, std::string name, std::string caption);
};

class Button final : public CaptionControl {
public:
    Button(Form& form, std::string name, std::string caption);
    bool isDefault = false; // Enter presses it
    bool isCancel = false;  // Escape presses it
    std::string toolTip;
};

class TextBox final : public Control {
public:
    TextBox(Form& form, std::string name, std::string text = {});

    const std::string& text() const { return text_; }
    // Raises Change when the text differs; the caret goes to the start, as on any new text.
    void setText(const std::string& text);
    int selStart() const { return selStart_; }
    int selLength() const { return selLength_; }
    void setSelStart(int start);
    void setSelLength(int length);
    std::string selText() const;
    // Replaces the selection, puts the caret behind the new text, raises Change when it changed.
    void setSelText(const std::string& text);

    bool locked = false;
    bool multiLine = false;
    std::string fontName;

    // Words that the view marks wherever they stand in the text; no event, only the view is told.
    const std::vector<std::string>& markedWords() const { return markedWords_; }
    void setMarkedWords(std::vector<std::string> words);

    // An operator's key: KeyDown, then KeyPress for a character key (the handler may swallow
    // it by setting the code to 0), then the text box's own editing of an unlocked box.
    void operatorKey(int keyCode);
    void operatorType(std::string_view text);
    // An operator's edit of the whole text (paste over everything, or the binder's sync).
    void operatorSetText(const std::string& text);

    std::optional<std::string> property(std::string_view name) const override;

    std::function<void()> onChange;
    std::function<void(int& keyCode)> onKeyDown;
    std::function<void(int& keyAscii)> onKeyPress;

private:
    // KeyDown with the key's code, then KeyPress and editing for a character (keyAscii above 0).
    void press(int keyCode, int keyAscii);
    void edit(int keyAscii);
    std::string text_;
    int selStart_ = 0;
    int selLength_ = 0;
    std::vector<std::string> markedWords_;
};

class CheckBox final : public Control {
public:
    CheckBox(Form& form, std::string name, std::string caption, int value = 0);
    int value() const { return value_; }
    // Raises Click when the value changes.
    void setValue(int value);
    const std::string& caption() const { return caption_; }
    void operatorClick() override;
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::string caption_;
    int value_ = 0;
};

// Option buttons with the same group are exclusive: selecting one clears the others.
class OptionButton final : public Control {
public:
    OptionButton(Form& form, std::string name, std::string group, std::string caption, bool value = false);
    bool value() const { return value_; }
    // true selects this button, clears its siblings and raises Click; false only clears it.
    void setValue(bool value);
    const std::string& group() const { return group_; }
    const std::string& caption() const { return caption_; }
    void operatorClick() override;
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::string group_;
    std::string caption_;
    bool value_ = false;
};

// A picture control shows one picture of the form's vocabulary, named ("OutputOn").
class Picture final : public Control {
public:
    Picture(Form& form, std::string name, std::string picture = {});
    const std::string& picture() const { return picture_; }
    void setPicture(const std::string& picture);
    std::string toolTip;
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::string picture_;
};

// Ticks only while its form is loaded and it is enabled. A tick never re-enters the handler of
// the same timer: a tick that falls due while the last one still runs (behind a message box)
// is dropped.
class Timer final : public Control {
public:
    Timer(Form& form, std::string name, int intervalMs, bool enabled = true);
    int interval() const { return interval_; }
    void setInterval(int intervalMs);
    bool timerEnabled() const { return timerEnabled_; }
    void setTimerEnabled(bool enabled);
    // Loaded form, enabled, interval above 0.
    bool running() const;
    // Called by the platform when the interval has passed.
    void tick();
    std::function<void()> onTick;
    std::optional<std::string> property(std::string_view name) const override;

private:
    void armingChanged();
    int interval_;
    bool timerEnabled_;
    bool ticking_ = false;
};

class ProgressBar final : public Control {
public:
    ProgressBar(Form& form, std::string name, int min, int max);
    int min() const { return min_; }
    int max() const { return max_; }
    int value() const { return value_; }
    void setValue(int value);
    std::optional<std::string> property(std::string_view name) const override;

private:
    int min_;
    int max_;
    int value_;
};

class ListBox final : public Control {
public:
    ListBox(Form& form, std::string name);
    const std::vector<std::string>& items() const { return items_; }
    void addItem(const std::string& item);
    void clear();
    int listIndex() const { return listIndex_; }
    void setListIndex(int index);
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::vector<std::string> items_;
    int listIndex_ = -1;
};

struct ToolButton {
    std::string key; // empty for a separator
    std::string toolTip;
    std::string image;
    bool enabled = true;
};

// A tool bar: buttons told apart by their key, compared exactly.
class ToolBar final : public Control {
public:
    ToolBar(Form& form, std::string name, std::vector<ToolButton> buttons);
    const std::vector<ToolButton>& buttons() const { return buttons_; }
    // Raises ButtonClick for the button with exactly this key; false when there is none.
    bool pressButton(std::string_view key);
    std::function<void(const std::string& key)> onButtonClick;

private:
    std::vector<ToolButton> buttons_;
};

// A menu entry of a form's menu tree. Entries stand in the order they were added; a top
// entry has no parent. A caption "-" is a separator.
class MenuItem final : public Control {
public:
    MenuItem(Form& form, std::string name, std::string parent, std::string caption, std::string shortcut = {});
    const std::string& parent() const { return parent_; }
    const std::string& caption() const { return caption_; }
    const std::string& shortcut() const { return shortcut_; }
    bool isSeparator() const { return caption_ == "-"; }
    void setCaption(const std::string& caption);
    std::optional<std::string> property(std::string_view name) const override;

private:
    std::string parent_;
    std::string caption_;
    std::string shortcut_;
};

struct PlotPoint {
    double x = 0; // milliseconds
    double y = 0;
    bool operator==(const PlotPoint&) const = default;
};

// One line of a plot. A logic series holds 0 and 1 only, which the view draws as a band of
// its own rather than on the scale of the numbers.
struct PlotSeries {
    std::string name;
    bool logic = false;
    std::vector<PlotPoint> points;
    bool operator==(const PlotSeries&) const = default;
};

// A chart of series against time: its value is what the view draws, set whole by the form.
// The revision grows with every new content, so that a view draws again only then. The
// operator's wheel and drag on the chart come back as Zoom and Pan for the form to handle.
class Plot final : public Control {
public:
    Plot(Form& form, std::string name);
    double fromMs() const { return fromMs_; }
    double toMs() const { return toMs_; }
    const std::vector<PlotSeries>& series() const { return series_; }
    std::uint64_t revision() const { return revision_; }
    // Replaces the range and the series; the view is told when anything differs.
    void setContent(double fromMs, double toMs, std::vector<PlotSeries> series);

    // The operator's wheel: the range shown grows by `factor` around `atMs`; a drag: it moves
    // by `deltaMs` (later for a positive delta).
    void operatorZoom(double factor, double atMs);
    void operatorPan(double deltaMs);
    std::function<void(double factor, double atMs)> onZoom;
    std::function<void(double deltaMs)> onPan;

    // "series": the names shown, comma separated; "range": from and to in whole milliseconds;
    // "min.NAME", "max.NAME", "last.NAME": the points of one series, rounded to whole numbers.
    std::optional<std::string> property(std::string_view name) const override;

private:
    const PlotSeries* findSeries(std::string_view name) const;
    double fromMs_ = 0;
    double toMs_ = 0;
    std::vector<PlotSeries> series_;
    std::uint64_t revision_ = 0;
};

// A tab typed into `box` goes into the text as typed; the next tick of `timer` turns it into
// two blanks. `replaceTab` is 1 while a typed tab waits for that tick.
void ReplaceTypedTabs(TextBox& box, Timer& timer, std::int16_t& replaceTab);

} // namespace marlune::forms

#include "forms/control.h"

#include <algorithm>
#include <cmath>

#include "forms/form.h"
#include "forms/platform.h"

namespace marlune::forms {

namespace {

std::string Bool(bool b) { return b ? "true" : "false"; }

} // namespace

std::string_view KindName(ControlKind kind)
{
    switch (kind) {
    case ControlKind::TextBox: return "text box";
    case ControlKind::Label: return "label";
    case ControlKind::Frame: return "frame";
    case ControlKind::Button: return "button";
    case ControlKind::CheckBox: return "check box";
    case ControlKind::OptionButton: return "option button";
    case ControlKind::Picture: return "picture";
    case ControlKind::Timer: return "timer";
    case ControlKind::ProgressBar: return "progress bar";
    case ControlKind::ListBox: return "list box";
    case ControlKind::ToolBar: return "tool bar";
    case ControlKind::MenuItem: return "menu item";
    case ControlKind::Plot: return "plot";
    }
    return "control";
}

// ---- Control

Control::Control(Form& form, std::string name, ControlKind kind) : form_(form), name_(std::move(name)), kind_(kind)
{
    designed(enabled_);
    designed(visible_);
}

Control::~Control() = default;

void Control::setEnabled(bool enabled)
{
    if (enabled_ == enabled)
        return;
    enabled_ = enabled;
    changed();
}

void Control::setVisible(bool visible)
{
    if (visible_ == visible)
        return;
    visible_ = visible;
    changed();
}

void Control::operatorClick() { raise(onClick); }

void Control::operatorDoubleClick() { raise(onDblClick); }

void Control::operatorMouseDown(int button)
{
    if (onMouseDown)
        onMouseDown(button);
}

std::optional<std::string> Control::property(std::string_view name) const
{
    if (name == "enabled")
        return Bool(enabled_);
    if (name == "visible")
        return Bool(visible_);
    return std::nullopt;
}

void Control::captureDesign()
{
    for (const auto& slot : design_)
        slot->capture();
}

void Control::restoreDesign()
{
    bool any = false;
    for (const auto& slot : design_)
        any = slot->restore() || any;
    if (any)
        changed();
}

void Control::changed() { form_.controlChanged(*this); }

// ---- Caption controls

CaptionControl::CaptionControl(Form& form, std::string name, ControlKind kind, std::string caption)
    : Control(form, std::move(name), kind), caption_(std::move(caption))
{
    designed(caption_);
}

void CaptionControl::setCaption(const std::string& caption)
{
    if (caption_ == caption)
        return;
    caption_ = caption;
    changed();
}

std::optional<std::string> CaptionControl::property(std::string_view name) const
{
    if (name == "caption" || name == "text")
        return caption_;
    return Control::property(name);
}

Label::Label(Form& form, std::string name, std::string caption)
    : CaptionControl(form, std::move(name), ControlKind::Label, std::move(caption))
{}

Frame::Frame(Form& form, std::string name, std::string caption)
    : CaptionControl(form, std::move(name), ControlKind::Frame, std::move(caption))
{}

Button::Button(Form& form, std::string name, std::string caption)
    : CaptionControl(form, std::move(name), ControlKind::Button, std::move(caption))
{}

// ---- TextBox

TextBox::TextBox(Form& form, std::string name, std::string text)
    : Control(form, std::move(name), ControlKind::TextBox), text_(std::move(text))
{
    // The designed text is no edit: it comes back without a Change, the caret at the start.
    designed(text_);
    designed(selStart_, 0);
    designed(selLength_, 0);
}

void TextBox::setText(const std::string& text)
{
    if (text_ == text)
        return;
    text_ = text;
    selStart_ = 0;
    selLength_ = 0;
    changed();
    if (onChange)
        onChange();
}

void TextBox::setMarkedWords(std::vector<std::string> words)
{
    if (markedWords_ == words)
        return;
    markedWords_ = std::move(words);
    changed();
}

void TextBox::setSelStart(int start)
{
    const int clamped = std::clamp(start, 0, static_cast<int>(text_.size()));
    if (clamped == selStart_ && selLength_ == 0)
        return;
    selStart_ = clamped;
    selLength_ = 0;
    changed();
}

void TextBox::setSelLength(int length)
{
    const int clamped = std::clamp(length, 0, static_cast<int>(text_.size()) - selStart_);
    if (clamped == selLength_)
        return;
    selLength_ = clamped;
    changed();
}

std::string TextBox::selText() const
{
    return text_.substr(static_cast<std::size_t>(selStart_), static_cast<std::size_t>(selLength_));
}

void TextBox::setSelText(const std::string& text)
{
    const std::string before = text_;
    text_.replace(static_cast<std::size_t>(selStart_), static_cast<std::size_t>(selLength_), text);
    selStart_ += static_cast<int>(text.size());
    selLength_ = 0;
    changed();
    if (text_ != before && onChange)
        onChange();
}

void TextBox::operatorKey(int keyCode)
{
    const bool character = keyCode == kKeyBackspace || keyCode == kKeyTab || keyCode == kKeyEnter
                           || keyCode == kKeyEscape || (keyCode >= 32 && keyCode <= 255);
    press(keyCode, character ? keyCode : 0);
}

void TextBox::operatorType(std::string_view text)
{
    for (char c : text) {
        const int ascii = static_cast<unsigned char>(c);
        // KeyDown carries the key's code: a letter's capital, a character's own code.
        press((ascii >= 'a' && ascii <= 'z') ? ascii - 'a' + 'A' : ascii, ascii);
    }
}

void TextBox::press(int keyCode, int keyAscii)
{
    int code = keyCode;
    if (onKeyDown)
        onKeyDown(code);
    if (code == 0 || keyAscii == 0)
        return;
    int ascii = keyAscii;
    if (onKeyPress)
        onKeyPress(ascii);
    if (ascii != 0)
        edit(ascii);
}

void TextBox::operatorSetText(const std::string& text)
{
    if (locked)
        return;
    setText(text);
    setSelStart(static_cast<int>(text_.size()));
}

void TextBox::edit(int keyAscii)
{
    if (locked || !enabled())
        return;
    switch (keyAscii) {
    case kKeyBackspace:
        if (selLength_ == 0 && selStart_ > 0) {
            selStart_ -= 1;
            selLength_ = 1;
        }
        setSelText({});
        return;
    case kKeyEnter:
        if (multiLine)
            setSelText("\r\n");
        return;
    case kKeyTab:
        if (multiLine)
            setSelText("\t");
        return;
    case kKeyEscape: return;
    default:
        if (keyAscii >= 32)
            setSelText(std::string(1, static_cast<char>(keyAscii)));
    }
}

std::optional<std::string> TextBox::property(std::string_view name) const
{
    if (name == "text")
        return text_;
    if (name == "selstart")
        return std::to_string(selStart_);
    if (name == "sellength")
        return std::to_string(selLength_);
    if (name == "locked")
        return Bool(locked);
    if (name == "markedwords") {
        std::string words;
        for (const std::string& word : markedWords_)
            words += (words.empty() ? "" : " ") + word;
        return words;
    }
    return Control::property(name);
}

// ---- CheckBox

CheckBox::CheckBox(Form& form, std::string name, std::string caption, int value)
    : Control(form, std::move(name), ControlKind::CheckBox), caption_(std::move(caption)), value_(value)
{
    designed(value_);
}

void CheckBox::setValue(int value)
{
    if (value_ == value)
        return;
    value_ = value;
    changed();
    raise(onClick);
}

void CheckBox::operatorClick() { setValue(value_ == 1 ? 0 : 1); }

std::optional<std::string> CheckBox::property(std::string_view name) const
{
    if (name == "value")
        return std::to_string(value_);
    if (name == "caption")
        return caption_;
    return Control::property(name);
}

// ---- OptionButton

OptionButton::OptionButton(Form& form, std::string name, std::string group, std::string caption, bool value)
    : Control(form, std::move(name), ControlKind::OptionButton), group_(std::move(group)), caption_(std::move(caption)),
      value_(value)
{
    designed(value_);
}

void OptionButton::setValue(bool value)
{
    if (value_ == value)
        return;
    value_ = value;
    changed();
    if (!value)
        return;
    for (Control* other : form().controls()) {
        auto* sibling = dynamic_cast<OptionButton*>(other);
        if (sibling && sibling != this && sibling->group_ == group_ && sibling->value_) {
            sibling->value_ = false;
            sibling->changed();
        }
    }
    raise(onClick);
}

void OptionButton::operatorClick() { setValue(true); }

std::optional<std::string> OptionButton::property(std::string_view name) const
{
    if (name == "value")
        return value_ ? "1" : "0";
    if (name == "caption")
        return caption_;
    return Control::property(name);
}

// ---- Picture

Picture::Picture(Form& form, std::string name, std::string picture)
    : Control(form, std::move(name), ControlKind::Picture), picture_(std::move(picture))
{
    designed(picture_);
}

void Picture::setPicture(const std::string& picture)
{
    if (picture_ == picture)
        return;
    picture_ = picture;
    changed();
}

std::optional<std::string> Picture::property(std::string_view name) const
{
    if (name == "picture")
        return picture_;
    return Control::property(name);
}

// ---- Timer

Timer::Timer(Form& form, std::string name, int intervalMs, bool enabled)
    : Control(form, std::move(name), ControlKind::Timer), interval_(intervalMs), timerEnabled_(enabled)
{
    setVisible(false);
    designed(interval_);
    designed(timerEnabled_);
}

void Timer::setInterval(int intervalMs)
{
    if (interval_ == intervalMs)
        return;
    interval_ = intervalMs;
    armingChanged();
}

void Timer::setTimerEnabled(bool enabled)
{
    if (timerEnabled_ == enabled)
        return;
    timerEnabled_ = enabled;
    armingChanged();
}

bool Timer::running() const { return form().loaded() && timerEnabled_ && interval_ > 0; }

void Timer::tick()
{
    if (!running() || ticking_)
        return;
    ticking_ = true;
    raise(onTick);
    ticking_ = false;
}

void Timer::armingChanged()
{
    changed();
    if (form().loaded())
        CurrentPlatform().timerChanged(*this);
}

std::optional<std::string> Timer::property(std::string_view name) const
{
    if (name == "interval")
        return std::to_string(interval_);
    if (name == "enabled")
        return Bool(timerEnabled_);
    return Control::property(name);
}

// ---- ProgressBar

ProgressBar::ProgressBar(Form& form, std::string name, int min, int max)
    : Control(form, std::move(name), ControlKind::ProgressBar), min_(min), max_(max), value_(min)
{
    designed(value_);
}

void ProgressBar::setValue(int value)
{
    const int clamped = std::clamp(value, min_, max_);
    if (clamped == value_)
        return;
    value_ = clamped;
    changed();
}

std::optional<std::string> ProgressBar::property(std::string_view name) const
{
    if (name == "value")
        return std::to_string(value_);
    return Control::property(name);
}

// ---- ListBox

ListBox::ListBox(Form& form, std::string name) : Control(form, std::move(name), ControlKind::ListBox)
{
    designed(items_);
    designed(listIndex_, -1);
}

void ListBox::addItem(const std::string& item)
{
    items_.push_back(item);
    changed();
}

void ListBox::clear()
{
    if (items_.empty() && listIndex_ == -1)
        return;
    items_.clear();
    listIndex_ = -1;
    changed();
}

void ListBox::setListIndex(int index)
{
    const int clamped = index < 0 || index >= static_cast<int>(items_.size()) ? -1 : index;
    if (clamped == listIndex_)
        return;
    listIndex_ = clamped;
    changed();
    raise(onClick);
}

std::optional<std::string> ListBox::property(std::string_view name) const
{
    if (name == "value")
        return std::to_string(listIndex_);
    if (name == "text")
        return listIndex_ >= 0 ? items_[static_cast<std::size_t>(listIndex_)] : std::string();
    return Control::property(name);
}

// ---- ToolBar

ToolBar::ToolBar(Form& form, std::string name, std::vector<ToolButton> buttons)
    : Control(form, std::move(name), ControlKind::ToolBar), buttons_(std::move(buttons))
{}

bool ToolBar::pressButton(std::string_view key)
{
    for (const ToolButton& button : buttons_) {
        if (!button.key.empty() && button.key == key) {
            if (!button.enabled || !enabled())
                return false;
            if (onButtonClick)
                onButtonClick(button.key);
            return true;
        }
    }
    return false;
}

// ---- MenuItem

MenuItem::MenuItem(Form& form, std::string name, std::string parent, std::string caption, std::string shortcut)
    : Control(form, std::move(name), ControlKind::MenuItem), parent_(std::move(parent)), caption_(std::move(caption)),
      shortcut_(std::move(shortcut))
{}

void MenuItem::setCaption(const std::string& caption)
{
    if (caption_ == caption)
        return;
    caption_ = caption;
    changed();
}

std::optional<std::string> MenuItem::property(std::string_view name) const
{
    if (name == "caption")
        return caption_;
    return Control::property(name);
}

// ---- Plot

Plot::Plot(Form& form, std::string name) : Control(form, std::move(name), ControlKind::Plot) {}

void Plot::setContent(double fromMs, double toMs, std::vector<PlotSeries> series)
{
    if (fromMs == fromMs_ && toMs == toMs_ && series == series_)
        return;
    fromMs_ = fromMs;
    toMs_ = toMs;
    series_ = std::move(series);
    ++revision_;
    changed();
}

void Plot::operatorZoom(double factor, double atMs)
{
    if (enabled() && onZoom && factor > 0)
        onZoom(factor, atMs);
}

void Plot::operatorPan(double deltaMs)
{
    if (enabled() && onPan)
        onPan(deltaMs);
}

const PlotSeries* Plot::findSeries(std::string_view name) const
{
    const auto it =
            std::find_if(series_.begin(), series_.end(), [name](const PlotSeries& s) { return s.name == name; });
    return it == series_.end() ? nullptr : &*it;
}

std::optional<std::string> Plot::property(std::string_view name) const
{
    const auto whole = [](double value) { return std::to_string(std::llround(value)); };
    if (name == "series") {
        std::string names;
        for (const PlotSeries& s : series_)
            names += (names.empty() ? "" : ",") + s.name;
        return names;
    }
    if (name == "range")
        return whole(fromMs_) + " " + whole(toMs_);
    const std::size_t dot = name.find('.');
    const PlotSeries* series = dot == std::string_view::npos ? nullptr : findSeries(name.substr(dot + 1));
    if (!series || series->points.empty())
        return Control::property(name);
    const auto byY = [](const PlotPoint& a, const PlotPoint& b) { return a.y < b.y; };
    const std::string_view what = name.substr(0, dot);
    if (what == "min")
        return whole(std::min_element(series->points.begin(), series->points.end(), byY)->y);
    if (what == "max")
        return whole(std::max_element(series->points.begin(), series->points.end(), byY)->y);
    if (what == "last")
        return whole(series->points.back().y);
    return Control::property(name);
}

void ReplaceTypedTabs(TextBox& box, Timer& timer, std::int16_t& replaceTab)
{
    box.onKeyPress = [&replaceTab](int& keyAscii) {
        if (keyAscii == kKeyTab)
            replaceTab = 1;
    };
    timer.onTick = [&box, &replaceTab] {
        if (replaceTab != 1)
            return;
        replaceTab = 0;
        // The one character before the caret is the tab just typed.
        box.setSelStart(box.selStart() - 1);
        box.setSelLength(1);
        box.setSelText("  ");
    };
}

} // namespace marlune::forms

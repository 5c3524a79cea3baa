#include "forms/form.h"

#include "forms/platform.h"

namespace marlune::forms {

Form::Form(std::string name, std::string caption) : name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form()
{
    // A form that goes while loaded takes its timers and its window with it.
    if (!loaded_ || !HasPlatform())
        return;
    loaded_ = false;
    for (Control* c : order_) {
        if (auto* timer = dynamic_cast<Timer*>(c))
            CurrentPlatform().timerChanged(*timer);
    }
    CurrentPlatform().formUnloaded(*this);
}

void Form::setCaption(const std::string& caption)
{
    if (caption_ == caption)
        return;
    caption_ = caption;
    if (view_)
        view_->captionChanged(*this);
}

void Form::setDocument(const std::string& name, bool modified)
{
    if (documentName_ == name && documentModified_ == modified)
        return;
    documentName_ = name;
    documentModified_ = modified;
    if (view_)
        view_->captionChanged(*this);
}

bool Form::load()
{
    if (loaded_)
        return true;
    if (!designCaptured_) {
        designCaption_ = caption_;
        for (Control* c : order_)
            c->captureDesign();
        designCaptured_ = true;
    } else {
        setCaption(designCaption_);
        for (Control* c : order_)
            c->restoreDesign();
    }
    focused_ = nullptr;
    loaded_ = true;
    formLoad();
    if (!loaded_)
        return false;
    for (Control* c : order_) {
        if (auto* timer = dynamic_cast<Timer*>(c); timer && timer->running())
            CurrentPlatform().timerChanged(*timer);
    }
    return true;
}

bool Form::unload()
{
    if (!loaded_)
        return true;
    if (unloading_)
        return false;
    unloading_ = true;
    const bool accepted = formUnload();
    unloading_ = false;
    if (!accepted || !loaded_)
        return !loaded_;
    loaded_ = false;
    for (Control* c : order_) {
        if (auto* timer = dynamic_cast<Timer*>(c))
            CurrentPlatform().timerChanged(*timer);
    }
    CurrentPlatform().formUnloaded(*this);
    return true;
}

Control* Form::control(std::string_view name) const
{
    for (Control* c : order_) {
        if (c->name() == name)
            return c;
    }
    return nullptr;
}

void Form::setFocus(Control& control)
{
    focused_ = &control;
    if (view_)
        view_->focusRequested(control);
    if (control.onGotFocus)
        control.onGotFocus();
}

void Form::controlChanged(Control& control)
{
    if (view_)
        view_->controlChanged(control);
}

void Form::adopt(std::unique_ptr<Control> control)
{
    order_.push_back(control.get());
    owned_.push_back(std::move(control));
}

} // namespace marlune::forms

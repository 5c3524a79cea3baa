#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"

namespace marlune::forms {

class Form;

// What the Qt binder implements to follow a form model. Every method is told only of real
// changes, so that a view touches its widgets only then.
class FormView {
public:
    virtual ~FormView() = default;
    virtual void controlChanged(Control& control) = 0;
    // The caption, or the document the window names beside it.
    virtual void captionChanged(Form& form) = 0;
    virtual void focusRequested(Control& control) = 0;
};

enum class WindowState { Normal, Minimized, Maximized };

// A form: named controls and operations that run on their events. It is loaded with its
// designed start values for each showing, and its Unload may be refused.
class Form {
public:
    Form(std::string name, std::string caption);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    const std::string& caption() const { return caption_; }
    void setCaption(const std::string& caption);

    // The document the window holds, which its view may name beside the caption, and whether it
    // has changes that are not saved; the caption itself stays as the form sets it.
    const std::string& documentName() const { return documentName_; }
    bool documentModified() const { return documentModified_; }
    void setDocument(const std::string& name, bool modified);

    bool loaded() const { return loaded_; }
    // Restores the designed values, marks the form loaded and runs its Load operation.
    // Returns whether it is still loaded afterwards (Load may unload it again).
    bool load();
    // Runs the form's Unload operation, which may refuse; stops its timers and tells the
    // platform. Returns whether the form is unloaded afterwards.
    bool unload();

    Control* control(std::string_view name) const;
    const std::vector<Control*>& controls() const { return order_; }
    template <class C>
    C* find(std::string_view name) const
    {
        return dynamic_cast<C*>(control(name));
    }

    void setFocus(Control& control);
    Control* focused() const { return focused_; }

    void setView(FormView* view) { view_ = view; }
    FormView* view() const { return view_; }

    // Window geometry as the platform reports it, in pixels.
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    WindowState windowState = WindowState::Normal;

    // Called by controls; tells the view.
    void controlChanged(Control& control);
    // Called by the platform when the form's window has changed its size.
    void resized() { formResize(); }

protected:
    // The form's own Load and Unload operations. formUnload returns false to refuse.
    virtual void formLoad() {}
    virtual bool formUnload() { return true; }
    virtual void formResize() {}

    template <class C, class... Args>
    C& add(Args&&... args)
    {
        auto control = std::make_unique<C>(*this, std::forward<Args>(args)...);
        C& ref = *control;
        adopt(std::move(control));
        return ref;
    }

private:
    void adopt(std::unique_ptr<Control> control);

    std::string name_;
    std::string caption_;
    std::string designCaption_;
    std::string documentName_;
    bool documentModified_ = false;
    bool designCaptured_ = false;
    bool loaded_ = false;
    bool unloading_ = false;
    std::vector<std::unique_ptr<Control>> owned_;
    std::vector<Control*> order_;
    Control* focused_ = nullptr;
    FormView* view_ = nullptr;
};

} // namespace marlune::forms

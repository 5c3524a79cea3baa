#include "qt/form_layouts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QToolBar>

#include "forms/form.h"
#include "qt/picture_widget.h"
#include "qt/plot_host.h"

#include "ui_ComSetup.h"
#include "ui_CommunicationLog.h"
#include "ui_DevSerListSel.h"
#include "ui_MainControl.h"
#include "ui_MonitorAI.h"
#include "ui_NewPos.h"
#include "ui_ProgramViewer.h"
#include "ui_Scope.h"
#include "ui_Setup.h"
#include "ui_SetupEncoderControl.h"
#include "ui_SetupJoystick.h"
#include "ui_Status.h"
#include "ui_Terminal.h"
#include "ui_frmAbout.h"
#include "ui_frmCompareMemory.h"
#include "ui_frmMain.h"
#include "ui_frmProjectManager.h"
#include "ui_frmProjectProgram.h"

namespace marlune::qt {

namespace {

// The generated classes only place widgets; nothing of them is kept but the widgets.
template <class Ui, class Window>
void SetUp(QWidget& window)
{
    Ui ui;
    ui.setupUi(static_cast<Window*>(&window));
}

QWidget* PlainWidget(const forms::Control& control, QWidget& parent)
{
    using forms::ControlKind;
    switch (control.kind()) {
    case ControlKind::TextBox:
        if (static_cast<const forms::TextBox&>(control).multiLine)
            return new QPlainTextEdit(&parent);
        return new QLineEdit(&parent);
    case ControlKind::Label: return new QLabel(&parent);
    case ControlKind::Frame: return new QGroupBox(&parent);
    case ControlKind::Button: return new QPushButton(&parent);
    case ControlKind::CheckBox: return new QCheckBox(&parent);
    case ControlKind::OptionButton: return new QRadioButton(&parent);
    case ControlKind::Picture: return new PictureWidget(&parent);
    case ControlKind::ProgressBar: return new QProgressBar(&parent);
    case ControlKind::ListBox: return new QListWidget(&parent);
    case ControlKind::ToolBar: return new QToolBar(&parent);
    case ControlKind::Plot: return new PlotHost(&parent);
    case ControlKind::Timer:
    case ControlKind::MenuItem: return nullptr;
    }
    return nullptr;
}

} // namespace

void SetUpPlainLayout(const forms::Form& form, QWidget& window)
{
    auto* layout = new QFormLayout(&window);
    for (const forms::Control* control : form.controls()) {
        if (QWidget* widget = PlainWidget(*control, window)) {
            const QString name = QString::fromStdString(control->name());
            widget->setObjectName(name);
            layout->addRow(name, widget);
        }
    }
}

const std::vector<FormLayout>& FormLayouts()
{
    static const std::vector<FormLayout> layouts = {
            {"frmMain", true, &SetUp<Ui::frmMain, QMainWindow>},
            {"Terminal", false, &SetUp<Ui::Terminal, QWidget>},
            {"MainControl", false, &SetUp<Ui::MainControl, QWidget>},
            {"NewPos", false, &SetUp<Ui::NewPos, QWidget>},
            {"MonitorAI", false, &SetUp<Ui::MonitorAI, QWidget>},
            {"Scope", false, &SetUp<Ui::Scope, QWidget>},
            {"Status", false, &SetUp<Ui::Status, QWidget>},
            {"ProgramViewer", false, &SetUp<Ui::ProgramViewer, QWidget>},
            {"frmCompareMemory", false, &SetUp<Ui::frmCompareMemory, QWidget>},
            {"frmProjectManager", false, &SetUp<Ui::frmProjectManager, QWidget>},
            {"frmProjectProgram", false, &SetUp<Ui::frmProjectProgram, QWidget>},
            {"Setup", false, &SetUp<Ui::Setup, QWidget>},
            {"SetupJoystick", false, &SetUp<Ui::SetupJoystick, QWidget>},
            {"SetupEncoderControl", false, &SetUp<Ui::SetupEncoderControl, QWidget>},
            {"ComSetup", false, &SetUp<Ui::ComSetup, QWidget>},
            {"DevSerListSel", false, &SetUp<Ui::DevSerListSel, QWidget>},
            {"frmAbout", false, &SetUp<Ui::frmAbout, QWidget>},
            {"CommunicationLog", false, &SetUp<Ui::CommunicationLog, QWidget>},
    };
    return layouts;
}

const FormLayout* FindFormLayout(std::string_view formName)
{
    for (const FormLayout& layout : FormLayouts()) {
        if (layout.formName == formName)
            return &layout;
    }
    return nullptr;
}

} // namespace marlune::qt

#include "tools/terminal.h"

#include "forms/platform.h"
#include "forms/text.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/open_link.h"

namespace marlune::tools {

Terminal::Terminal()
    : forms::Form("Terminal", "Marlune Terminal"), LogWindow(add<forms::TextBox>("LogWindow")),
      CommandLine(add<forms::TextBox>("CommandLine")), CloseTerminal(add<forms::Button>("CloseTerminal", "Close")),
      Test(add<forms::Button>("Test", "Test")), Timer1(add<forms::Timer>("Timer1", 100))
{
    LogWindow.multiLine = true;
    LogWindow.locked = true;
    LogWindow.fontName = "Courier";
    CommandLine.fontName = "Courier New";

    CommandLine.onKeyDown = [this](int& keyCode) { commandLineKeyDown(keyCode); };
    // The log is locked: a key there only sends the operator back to the command line.
    LogWindow.onKeyPress = [this](int&) { setFocus(CommandLine); };
    CloseTerminal.onClick = [this] { unload(); };
    Test.onClick = [] {
        std::string first = "EOX=1";
        std::string second = "EOX=0";
        std::string reply;
        link::SendCommandPair(first, second, reply);
    };
    Timer1.onTick = [this] {
        if (focusPending) {
            setFocus(CommandLine);
            focusPending = false;
        }
    };
}

void Terminal::formLoad()
{
    lineCount = 1;
    link::ControllerLink& link = link::Link();
    if (link::OpenLink()) {
        AppendLog("Marlune KVM Communication Ready:\r");
        link.connected = true;
    } else {
        AppendLog("* Error with Marlune Communication! *\r");
        link.connected = false;
    }
    CommandLine.setText({});
    focusPending = true;
}

bool Terminal::formUnload()
{
    if (link::Link().connected)
        link::CloseLink();
    return true;
}

void Terminal::AppendLog(const std::string& message)
{
    std::string text = LogWindow.text();
    ++lineCount;
    if (lineCount > kMaxLogEntries) {
        lineCount = kMaxLogEntries;
        // The oldest line goes: a multi-line reply counts as one entry but loses a line a trim.
        const std::size_t firstLineFeed = text.find('\n');
        text = firstLineFeed == std::string::npos ? std::string() : text.substr(firstLineFeed + 1);
    }
    LogWindow.setText(text + message + "\r\n");
    LogWindow.setSelStart(static_cast<int>(LogWindow.text().size()));
}

void Terminal::commandLineKeyDown(int keyCode)
{
    if (keyCode == forms::kKeyEnter)
        enterCommand();
}

void Terminal::enterCommand()
{
    std::string command = CommandLine.text();
    std::string reply;
    if (forms::ContainsUpper(command, "EXIT")) {
        unload();
        return;
    }
    if (forms::ContainsUpper(command, "STORE")) {
        const forms::MessageAnswer answer =
                forms::MsgBox("Store the Programs and Variables from Memory to EEPROM?", forms::MessageButtons::YesNo,
                              forms::MessageIcon::Question, "STORE MARLUNE DATA");
        if (answer == forms::MessageAnswer::Yes) {
            link::SendCommand(command, reply);
            // The controller is silent while it writes its EEPROM; the counter read tells when it is back.
            for (int attempt = 0; attempt < 11; ++attempt) {
                std::string counter = "I48";
                if (link::SendCommand(counter, reply))
                    break;
            }
        }
    } else {
        AppendLog("SEND :" + command);
        link::SendCommand(command, reply);
    }
    AppendLog("REPLY:" + reply);
    CommandLine.setText({});
    setFocus(CommandLine);
}

} // namespace marlune::tools

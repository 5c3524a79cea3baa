#include "config/com_setup.h"

#include "forms/platform.h"
#include "link/command_exchange.h"
#include "link/controller_link.h"
#include "link/link_settings.h"
#include "link/open_link.h"

namespace marlune::config {

namespace {

constexpr const char* kSearchTitle = "Search Virtual Comport";
constexpr int kSearchedPorts = 10;
constexpr std::int32_t kSerialKind = 3;

} // namespace

ComSetup::ComSetup(std::string servingLinks)
    : forms::Form("ComSetup", "Select Communication Port"), Frame1(add<forms::Frame>("Frame1", "Communication Port")),
      SelUSB(add<forms::OptionButton>("SelUSB", "Kind", "USB 1.1")),
      SelEthernet(add<forms::OptionButton>("SelEthernet", "Kind", "Ethernet")),
      SelSerial(add<forms::OptionButton>("SelSerial", "Kind", "USB 2.0 VCP")),
      IPAddress(add<forms::TextBox>("IPAddress")), SerialComNumber(add<forms::TextBox>("SerialComNumber")),
      SearchCom(add<forms::Button>("SearchCom", "Search")), ServingLinks(add<forms::Label>("ServingLinks", "")),
      Test(add<forms::Button>("Test", "Test")), OK(add<forms::Button>("OK", "OK")),
      Cancel(add<forms::Button>("Cancel", "Cancel")), servingLinks_(std::move(servingLinks))
{
    SerialComNumber.locked = true;
    SearchCom.onClick = [this] { searchCom(); };
    Test.onClick = [this] { test(); };
    OK.onClick = [this] { keep(); };
    Cancel.onClick = [this] { unload(); };
}

void ComSetup::formLoad()
{
    link::ControllerLink& link = link::Link();
    link::LoadLinkSettings(link.linkKind, link.ipAddress, link.comPort);
    IPAddress.setText(link.ipAddress);
    SerialComNumber.setText(link.comPort);
    if (link.linkKind == 1)
        SelUSB.setValue(true);
    else if (link.linkKind == 2)
        SelEthernet.setValue(true);
    else
        SelSerial.setValue(true);
    ServingLinks.setCaption(servingLinks_.empty() ? std::string() : "On this machine: " + servingLinks_);
}

std::int16_t ComSetup::chosenKind() const
{
    if (SelUSB.value())
        return 1;
    return SelEthernet.value() ? 2 : 3;
}

void ComSetup::keep()
{
    link::ControllerLink& link = link::Link();
    link.ipAddress = IPAddress.text();
    link.comPort = SerialComNumber.text();
    link.linkKind = chosenKind();
    link::SaveLinkSettings(link.linkKind, link.ipAddress, link.comPort);
    unload();
}

void ComSetup::searchCom()
{
    if (forms::MsgBox("Do you want to search for the Marlune KVM Virtual Com Port?", forms::MessageButtons::YesNo,
                      forms::MessageIcon::Question, kSearchTitle)
        != forms::MessageAnswer::Yes)
        return;
    if (forms::MsgBox("Power on the Marlune Controller and verify that the USB connection is made. Continue?",
                      forms::MessageButtons::YesNo, forms::MessageIcon::Information, kSearchTitle)
        != forms::MessageAnswer::Yes)
        return;
    link::ControllerLink& link = link::Link();
    for (int n = 1; n <= kSearchedPorts; ++n) {
        std::string name = "COM" + std::to_string(n);
        link.linkHandle = link::OpenWithAddress(kSerialKind, 0, name);
        if (link.linkHandle > 0) {
            link::Com().close(kSerialKind, link.linkHandle);
            SerialComNumber.setText(name);
            forms::MsgBox("Found Marlune Virtual Com Port: " + name);
            return;
        }
    }
    forms::MsgBox("Failed to find Marlune Com!");
}

// Opens a link with the settings on the screen, asks for the status and closes it again; the
// link record is put back as it was, so that nothing of the trial stays behind.
void ComSetup::test()
{
    link::ControllerLink& link = link::Link();
    const link::ControllerLink kept = link;
    link.linkKind = chosenKind();
    link.ipAddress = IPAddress.text();
    link.comPort = SerialComNumber.text();
    link.linkAddress = link::LinkAddressFor(link.linkKind, link.ipAddress, link.comPort);
    const forms::OptionButton& chosen = SelUSB.value() ? SelUSB : SelEthernet.value() ? SelEthernet : SelSerial;
    const std::string where = chosen.caption()
                              + (link.linkKind == 2   ? " at " + link.ipAddress
                                 : link.linkKind == 3 ? " on " + link.comPort
                                                      : std::string());
    std::string outcome;
    if (!link::OpenLink()) {
        outcome = "The link to the controller (" + where + ") did not open: the library gave the handle "
                  + std::to_string(link.linkHandle) + ".";
    } else {
        std::string command = "???";
        std::string reply;
        if (!link::SendCommand(command, reply))
            outcome = "The link (" + where + ") opened, but the controller did not answer the status request.";
        else if (reply.empty() || reply.front() != '@')
            outcome = "The link (" + where + ") opened, but the answer to the status request was \"" + reply
                      + "\", which is no status reply.";
        else
            outcome = "Controller answered.";
        link::CloseLink();
    }
    link = kept;
    forms::MsgBox(outcome);
}

DevSerListSel::DevSerListSel()
    : forms::Form("DevSerListSel", "Marlune LD - Serial Number Selection"),
      DevSerialList(add<forms::ListBox>("DevSerialList")),
      Label1(add<forms::Label>("Label1", "Select a controller to open communication from the list")),
      OK(add<forms::Button>("OK", "OK"))
{
    OK.onClick = [this] {
        selectedItem = static_cast<std::int16_t>(DevSerialList.listIndex());
        unload();
    };
}

void DevSerListSel::formLoad()
{
    for (int index = 0; index < DeviceCount(); ++index)
        DevSerialList.addItem(DeviceSerial(index));
    DevSerialList.setListIndex(0);
}

int DeviceCount() { return 1; }

std::string DeviceSerial(int) { return "00000"; }

} // namespace marlune::config

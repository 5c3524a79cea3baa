#pragma once

#include <cstdint>
#include <string>

#include "forms/form.h"

namespace marlune::config {

// How the program reaches the controller: the link kind, the Ethernet address and the COM port,
// kept in marlunecom.ini, which only OK writes. The search looks for the virtual COM port of a
// USB 2.0 connection; Test tries the settings on the screen without keeping them.
class ComSetup final : public forms::Form {
public:
    // `servingLinks` says which implementation serves each link kind on this machine.
    explicit ComSetup(std::string servingLinks = {});

    forms::Frame& Frame1;
    forms::OptionButton& SelUSB;
    forms::OptionButton& SelEthernet;
    forms::OptionButton& SelSerial;
    forms::TextBox& IPAddress;
    forms::TextBox& SerialComNumber;
    forms::Button& SearchCom;
    forms::Label& ServingLinks;
    forms::Button& Test;
    forms::Button& OK;
    forms::Button& Cancel;

protected:
    void formLoad() override;

private:
    std::int16_t chosenKind() const;
    void searchCom();
    void test();
    void keep();

    std::string servingLinks_;
};

// The list of controllers by serial number. Nothing in the program opens it: the controller
// library offers no way to list its devices.
class DevSerListSel final : public forms::Form {
public:
    DevSerListSel();

    forms::ListBox& DevSerialList;
    forms::Label& Label1;
    forms::Button& OK;

    std::int16_t selectedItem = 0;

protected:
    void formLoad() override;
};

// What the controller library would tell of its devices; fixed at one controller, "00000".
int DeviceCount();
std::string DeviceSerial(int index);

} // namespace marlune::config

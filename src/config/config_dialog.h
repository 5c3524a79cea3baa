#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "config/bit_boxes.h"
#include "forms/form.h"

namespace marlune::config {

inline constexpr const char* kOpenFailedText = "Communication Error with Marlune!";
inline constexpr const char* kNothingWrittenText =
        "Nothing was written: the parameters could not be read from the controller when this dialog opened.";

// A text box that the write turns into a 32-bit number, named for the operator by its caption.
struct NumberField {
    forms::TextBox* box;
    std::string caption;
};

// What the setup dialogs share. Each reads the controller at load and writes it on OK, each on a
// link opened for it and closed again on every way out. A dialog whose read failed writes
// nothing, so that the clear boxes and zeros it shows never reach the controller.
class ConfigDialog : public forms::Form {
public:
    // Whether the read at the last load failed: no link, or a read that failed.
    bool readFailed() const { return readFailed_; }

protected:
    ConfigDialog(std::string name, std::string caption);

    // Opens the link for `read`, runs it and closes the link; remembers whether all was read.
    void readController(const std::function<void()>& read);
    // A query whose reply goes unchanged into `box`; a failed exchange is a failed read.
    void readText(const std::string& command, forms::TextBox& box);

    enum class WriteEnd { Close, StayOpen };
    // The write: nothing after a failed read (a message, and the dialog closes); then every number
    // field is checked before the link opens; a link that does not open ends it as the dialog's
    // OK does. `readCarried` reads what the write carries over from the controller; when it
    // fails, nothing is written and the dialog stays open so that OK can be tried again.
    WriteEnd writeController(bool secondEthernetAttempt, const std::function<bool()>& readCarried,
                             const std::function<void()>& write);

    // Reads I2, whose bits the Setup and encoder dialogs share, before a write; false when it failed.
    static bool ReadSharedWord(std::int32_t& i2);

    // The value of a number field, once the write has checked it.
    static std::int32_t Number(const forms::TextBox& box);

    void addBits(const BitTable& table);
    // Labels and frames that only carry their captions.
    template <class C>
    void addCaptioned(const std::vector<std::pair<std::string, std::string>>& namesAndCaptions)
    {
        for (const auto& [name, caption] : namesAndCaptions)
            add<C>(name, caption);
    }
    forms::TextBox& addNumber(const std::string& name, const std::string& caption);

private:
    bool openLink(bool secondEthernetAttempt);
    bool numbersAreWhole();

    std::vector<NumberField> numberFields_;
    bool readFailed_ = false;
    bool textReadFailed_ = false;
};

} // namespace marlune::config

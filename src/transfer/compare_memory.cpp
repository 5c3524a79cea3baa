#include "transfer/compare_memory.h"

#include <map>

#include "forms/number.h"
#include "forms/platform.h"
#include "forms/text.h"
#include "link/command_exchange.h"
#include "transfer/data_file.h"

namespace marlune::transfer {

namespace {

// One row of the table: three columns, as wide as their headings.
std::string Row(const std::string& name, const std::string& inFile, const std::string& inController)
{
    const auto column = [](std::string text, std::size_t width) {
        text.resize(std::max(text.size(), width), ' ');
        return text;
    };
    return column(name, 10) + column(inFile, 14) + inController;
}

} // namespace

std::string ReadDataFileValues(const std::string& path, std::vector<VariableValue>& values)
{
    DataFileReader reader;
    if (std::string why = reader.open(path); !why.empty())
        return why;
    values.clear();
    while (const std::optional<std::string> line = reader.readLine()) {
        // The same clean-up as a playback gives each line.
        const std::string command = forms::UpperAscii(link::CleanCommand(*line));
        const std::size_t equals = command.find('=');
        if (equals == std::string::npos || equals < 2 || (command[0] != 'I' && command[0] != 'V'))
            continue;
        const std::string name = command.substr(0, equals);
        if (name.find_first_not_of("0123456789", 1) != std::string::npos)
            continue;
        if (const std::optional<std::int32_t> value = forms::ToInt32(command.substr(equals + 1)))
            values.push_back({name, *value});
    }
    return {};
}

std::vector<Difference> FindDifferences(const std::vector<VariableValue>& inFile,
                                        const std::vector<VariableValue>& inController)
{
    std::map<std::string, std::int32_t> last;
    for (const VariableValue& assignment : inFile)
        last[assignment.name] = assignment.value;
    std::vector<Difference> differences;
    for (const VariableValue& variable : inController) {
        const auto it = last.find(variable.name);
        if (it != last.end() && it->second != variable.value)
            differences.push_back({variable.name, it->second, variable.value});
    }
    return differences;
}

CompareMemory::CompareMemory()
    : forms::Form("frmCompareMemory", "Compare Memory with File"), Summary(add<forms::Label>("Summary", "")),
      Columns(add<forms::Label>("Columns", Row("Variable", "In file", "In controller"))),
      Differences(add<forms::ListBox>("Differences")), OK(add<forms::Button>("OK", "OK"))
{
    OK.isDefault = true;
    OK.isCancel = true;
    OK.onClick = [this] { unload(); };
}

void CompareMemory::showDifferences(const std::string& fileName, const std::vector<Difference>& differences)
{
    if (!load())
        return;
    const std::size_t count = differences.size();
    Summary.setCaption(std::to_string(count) + (count == 1 ? " variable differs" : " variables differ") + " from "
                       + fileName + ".");
    for (const Difference& d : differences)
        Differences.addItem(Row(d.name, std::to_string(d.inFile), std::to_string(d.inController)));
    Differences.setListIndex(0);
    forms::ShowModal(*this, nullptr);
}

} // namespace marlune::transfer

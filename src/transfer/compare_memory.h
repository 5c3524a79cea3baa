#pragma once

#include <string>
#include <vector>

#include "forms/form.h"
#include "transfer/transfer_machine.h"

namespace marlune::transfer {

// A variable whose value in the controller is not the one a data file would set.
struct Difference {
    std::string name;
    std::int32_t inFile = 0;
    std::int32_t inController = 0;
    bool operator==(const Difference&) const = default;
};

// The assignments of I and V variables in a data file, as a playback would send them. Other
// lines are no variables and are passed over. Returns an empty text, else why the file could
// not be read.
std::string ReadDataFileValues(const std::string& path, std::vector<VariableValue>& values);

// The controller's variables whose value differs from the last assignment of the file, in the
// controller's order.
std::vector<Difference> FindDifferences(const std::vector<VariableValue>& inFile,
                                        const std::vector<VariableValue>& inController);

// The table of differences between the controller's memory and a data file.
class CompareMemory final : public forms::Form {
public:
    CompareMemory();

    forms::Label& Summary;
    forms::Label& Columns;
    forms::ListBox& Differences;
    forms::Button& OK;

    // Fills the table and shows it modally.
    void showDifferences(const std::string& fileName, const std::vector<Difference>& differences);
};

} // namespace marlune::transfer

#pragma once

namespace marlune::transfer {

class Status;
class CompareMemory;

// The Tools menu's operations on the controller's memory. Each opens the link for itself and
// closes it at its end.

// All I and V variables into a data file, and a data file played back into the controller.
void StoreToFile(Status& status);
void LoadFromFile(Status& status);
// Reads all variables and shows those whose value differs from a chosen data file.
void CompareMemoryWithFile(Status& status, CompareMemory& compare);

// The controller copies its memory to its EEPROM, and back.
void Store();
void Load();

} // namespace marlune::transfer

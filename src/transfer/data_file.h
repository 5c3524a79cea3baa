#pragma once

#include <fstream>
#include <optional>
#include <string>

namespace marlune::transfer {

// A data file being written line by line. The lines go to a temporary file beside the target,
// which replaces the target only by `commit`, so an interrupted store never destroys the file
// of that name that was there before.
class DataFileWriter {
public:
    DataFileWriter() = default;
    ~DataFileWriter();
    DataFileWriter(const DataFileWriter&) = delete;
    DataFileWriter& operator=(const DataFileWriter&) = delete;

    // Each returns an empty text on success, else the reason for the operator.
    std::string open(const std::string& path);
    std::string writeLine(const std::string& line); // CR LF is added
    std::string commit();
    // Removes the temporary file; the target stays as it was.
    void abandon();

    bool isOpen() const { return stream_.is_open(); }

private:
    std::string path_;
    std::string temporary_;
    std::ofstream stream_;
};

// A data file read line by line. A line ends at CR LF, a CR or an LF alone, so files edited
// on any system play back line for line.
class DataFileReader {
public:
    std::string open(const std::string& path);
    // The next line without its end, or nothing at the end of the file.
    std::optional<std::string> readLine();
    void close();

private:
    std::ifstream stream_;
};

} // namespace marlune::transfer

#include "transfer/data_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace marlune::transfer {

namespace {

std::string LastError() { return errno != 0 ? std::strerror(errno) : "unknown error"; }

} // namespace

DataFileWriter::~DataFileWriter() { abandon(); }

std::string DataFileWriter::open(const std::string& path)
{
    abandon();
    path_ = path;
    temporary_ = path + ".part";
    errno = 0;
    stream_.open(temporary_, std::ios::binary | std::ios::trunc);
    if (!stream_.is_open()) {
        const std::string why = LastError();
        temporary_.clear();
        return why;
    }
    return {};
}

std::string DataFileWriter::writeLine(const std::string& line)
{
    errno = 0;
    stream_ << line << "\r\n";
    return stream_ ? std::string() : LastError();
}

std::string DataFileWriter::commit()
{
    errno = 0;
    stream_.close();
    if (stream_.fail()) {
        const std::string why = LastError();
        abandon();
        return why;
    }
    std::error_code error;
    std::filesystem::rename(temporary_, path_, error);
    if (error) {
        abandon();
        return error.message();
    }
    temporary_.clear();
    return {};
}

void DataFileWriter::abandon()
{
    if (stream_.is_open())
        stream_.close();
    if (!temporary_.empty()) {
        std::error_code ignored;
        std::filesystem::remove(temporary_, ignored);
        temporary_.clear();
    }
}

std::string DataFileReader::open(const std::string& path)
{
    close();
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return "it is a folder";
    errno = 0;
    stream_.open(path, std::ios::binary);
    return stream_.is_open() ? std::string() : LastError();
}

std::optional<std::string> DataFileReader::readLine()
{
    std::string line;
    int c = stream_.get();
    if (c == std::char_traits<char>::eof())
        return std::nullopt;
    while (c != std::char_traits<char>::eof() && c != '\r' && c != '\n') {
        line.push_back(static_cast<char>(c));
        c = stream_.get();
    }
    if (c == '\r' && stream_.peek() == '\n')
        stream_.get();
    return line;
}

void DataFileReader::close()
{
    if (stream_.is_open())
        stream_.close();
}

} // namespace marlune::transfer

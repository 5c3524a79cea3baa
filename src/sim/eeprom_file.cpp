#include "eeprom_file.h"

#include "counts.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace marlune::sim {
namespace {

constexpr std::string_view kHeader = "marlune-sim eeprom";

std::string Escaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else
            out += c;
    }
    return out;
}

std::optional<std::string> Unescaped(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size())
            return std::nullopt;
        switch (text[i]) {
        case '\\': out += '\\'; break;
        case 'r': out += '\r'; break;
        case 'n': out += '\n'; break;
        default: return std::nullopt;
        }
    }
    return out;
}

// "KEY REST": the key and what follows the first blank.
std::pair<std::string_view, std::string_view> SplitWord(std::string_view line)
{
    const auto blank = line.find(' ');
    if (blank == std::string_view::npos)
        return {line, {}};
    return {line.substr(0, blank), line.substr(blank + 1)};
}

// One line after the header into `image`; false when it is not one of the lines the file has.
bool ReadLine(std::string_view line, EepromImage& image, std::int32_t& writes)
{
    const auto [key, rest] = SplitWord(line);
    if (key == "writes") {
        const auto value = ParseSigned32(rest);
        if (!value || *value < 0)
            return false;
        writes = *value;
        return true;
    }
    if (key == "ip" || key == "project") {
        const auto text = Unescaped(rest);
        if (!text)
            return false;
        if (key == "ip")
            image.ipAddress = *text;
        else
            image.projectName = *text;
        return true;
    }
    if (key == "program-set") {
        image.programSet = ParseSigned32(rest);
        return image.programSet.has_value();
    }
    const auto [number, value] = SplitWord(rest);
    if (key == "P") {
        const auto program = ParseIndex(number, kProgramCount);
        const auto text = Unescaped(value);
        if (!program || !text)
            return false;
        image.programs[static_cast<std::size_t>(*program - 1)].push_back(*text);
        return true;
    }
    if (key == "I" || key == "V") {
        const auto index = ParseIndex(number, key == "I" ? kICount : kVCount);
        const auto parsed = ParseSigned32(value);
        if (!index || !parsed)
            return false;
        auto& slot = key == "I" ? image.iValues[static_cast<std::size_t>(*index - 1)]
                                : image.vValues[static_cast<std::size_t>(*index - 1)];
        slot = *parsed;
        return true;
    }
    return false;
}

} // namespace

std::string FormatEeprom(const Eeprom& eeprom)
{
    const EepromImage& image = eeprom.image();
    std::ostringstream out;
    out << kHeader << '\n' << "writes " << eeprom.writeCount() << '\n' << "ip " << Escaped(image.ipAddress) << '\n';
    if (image.projectName)
        out << "project " << Escaped(*image.projectName) << '\n';
    if (image.programSet)
        out << "program-set " << *image.programSet << '\n';
    for (int n = 1; n <= kICount; ++n)
        out << "I " << n << ' ' << image.iValues[static_cast<std::size_t>(n - 1)] << '\n';
    for (int n = 1; n <= kVCount; ++n)
        out << "V " << n << ' ' << image.vValues[static_cast<std::size_t>(n - 1)] << '\n';
    for (int program = 1; program <= kProgramCount; ++program) {
        for (const std::string& line : image.programs[static_cast<std::size_t>(program - 1)])
            out << "P " << program << ' ' << Escaped(line) << '\n';
    }
    return out.str();
}

std::optional<Eeprom> ParseEeprom(std::string_view text, std::string& why)
{
    EepromImage image;
    std::int32_t writes = 0;
    int number = 0;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++number;
        const bool read = number == 1 ? line == kHeader : ReadLine(line, image, writes);
        if (!read) {
            why = "line " + std::to_string(number) + " is not understood: " + std::string(line.substr(0, 60));
            return std::nullopt;
        }
    }
    if (number == 0) {
        why = "the file is empty";
        return std::nullopt;
    }
    return Eeprom(std::move(image), writes);
}

std::optional<Eeprom> EepromFile::load(std::string& why)
{
    std::error_code error;
    if (!std::filesystem::exists(path_, error) && !error) {
        savedWrites_ = 0;
        return Eeprom{};
    }
    std::ifstream in(path_, std::ios::binary);
    if (!in) {
        why = "it cannot be opened";
        return std::nullopt;
    }
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    auto eeprom = ParseEeprom(text, why);
    if (eeprom)
        savedWrites_ = eeprom->writeCount();
    return eeprom;
}

bool EepromFile::saveIfWritten(const Eeprom& eeprom, std::string& why)
{
    if (eeprom.writeCount() == savedWrites_)
        return true;
    std::error_code error;
    if (path_.has_parent_path())
        std::filesystem::create_directories(path_.parent_path(), error);
    auto temporary = path_;
    temporary += ".part";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << FormatEeprom(eeprom);
        out.close();
        if (!out) {
            std::filesystem::remove(temporary, error);
            why = "it cannot be written";
            return false;
        }
    }
    std::filesystem::rename(temporary, path_, error);
    if (error) {
        why = error.message();
        std::filesystem::remove(temporary, error);
        return false;
    }
    savedWrites_ = eeprom.writeCount();
    return true;
}

} // namespace marlune::sim

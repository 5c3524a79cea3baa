#include "headless/quoted_text.h"

namespace marlune::headless {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

int HexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::string Quoted(std::string_view bytes)
{
    std::string out = "\"";
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        switch (c) {
        case '"': out += "\\\""; continue;
        case '\\': out += "\\\\"; continue;
        case '\r': out += "\\r"; continue;
        case '\n': out += "\\n"; continue;
        case '\t': out += "\\t"; continue;
        default: break;
        }
        if (b < 0x20 || b >= 0x7F) {
            out += "\\x";
            out += kHex[b >> 4];
            out += kHex[b & 0xF];
        } else {
            out += c;
        }
    }
    out += '"';
    return out;
}

std::optional<std::string> Unescape(std::string_view inside, std::string& error)
{
    std::string out;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] != '\\') {
            out += inside[i];
            continue;
        }
        if (i + 1 >= inside.size()) {
            error = "a backslash ends the string";
            return std::nullopt;
        }
        const char e = inside[++i];
        switch (e) {
        case '"': out += '"'; break;
        case '\\': out += '\\'; break;
        case 'r': out += '\r'; break;
        case 'n': out += '\n'; break;
        case 't': out += '\t'; break;
        case 'x': {
            const int high = i + 1 < inside.size() ? HexValue(inside[i + 1]) : -1;
            const int low = i + 2 < inside.size() ? HexValue(inside[i + 2]) : -1;
            if (high < 0 || low < 0) {
                error = "\\x needs two hex digits";
                return std::nullopt;
            }
            out += static_cast<char>(high * 16 + low);
            i += 2;
            break;
        }
        default: error = std::string("unknown escape \\") + e; return std::nullopt;
        }
    }
    return out;
}

} // namespace marlune::headless

#include "forms/text.h"

#include <array>
#include <cstdint>

namespace marlune::forms {

namespace {

// Code points of bytes 0x80..0x9F in Windows-1252; 0 marks the five unused bytes, which map
// to the C1 control of the same number so that every byte survives a round trip.
constexpr std::array<char32_t, 32> kHigh = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                            0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char32_t ToCodePoint(unsigned char b)
{
    if (b >= 0x80 && b <= 0x9F && kHigh[b - 0x80] != 0)
        return kHigh[b - 0x80];
    return b;
}

void AppendUtf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

char FromCodePoint(char32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF))
        return static_cast<char>(cp);
    for (std::size_t i = 0; i < kHigh.size(); ++i) {
        if (kHigh[i] == cp && cp != 0)
            return static_cast<char>(0x80 + i);
        if (kHigh[i] == 0 && cp == 0x80 + i)
            return static_cast<char>(cp);
    }
    return '?';
}

} // namespace

std::string AnsiToUtf8(std::string_view ansi)
{
    std::string out;
    out.reserve(ansi.size());
    for (char c : ansi)
        AppendUtf8(out, ToCodePoint(static_cast<unsigned char>(c)));
    return out;
}

std::string Utf8ToAnsi(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        char32_t cp = 0;
        std::size_t len = 1;
        if (b < 0x80) {
            cp = b;
        } else if ((b & 0xE0) == 0xC0) {
            cp = b & 0x1F;
            len = 2;
        } else if ((b & 0xF0) == 0xE0) {
            cp = b & 0x0F;
            len = 3;
        } else if ((b & 0xF8) == 0xF0) {
            cp = b & 0x07;
            len = 4;
        } else {
            out.push_back('?');
            ++i;
            continue;
        }
        if (i + len > utf8.size()) {
            out.push_back('?');
            break;
        }
        bool valid = true;
        for (std::size_t k = 1; k < len; ++k) {
            const auto c = static_cast<unsigned char>(utf8[i + k]);
            if ((c & 0xC0) != 0x80) {
                valid = false;
                break;
            }
            cp = (cp << 6) | (c & 0x3F);
        }
        out.push_back(valid ? FromCodePoint(cp) : '?');
        i += valid ? len : 1;
    }
    return out;
}

std::string UpperAscii(std::string_view text)
{
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

bool ContainsUpper(std::string_view text, std::string_view upperWord)
{
    return UpperAscii(text).find(upperWord) != std::string::npos;
}

} // namespace marlune::forms

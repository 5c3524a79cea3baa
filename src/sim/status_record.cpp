#include "status_record.h"

#include <charconv>

namespace marlune::sim {

namespace {

class RecordWriter final {
public:
    RecordWriter() { text_.reserve(160); }

    void field(std::int64_t value, char terminator = ',')
    {
        char digits[24];
        const auto result = std::to_chars(std::begin(digits), std::end(digits), value);
        text_.append(digits, result.ptr);
        text_.push_back(terminator);
    }
    template <typename Values>
    void fields(const Values& values)
    {
        for (const auto value : values)
            field(value);
    }
    std::string take() { return std::move(text_); }
    void start() { text_.push_back('@'); }

private:
    std::string text_;
};

} // namespace

std::string FormatStatusRecord(const StatusSnapshot& status)
{
    RecordWriter out;
    out.start();
    out.fields(status.position);
    out.fields(status.encoder);
    out.fields(status.speed);
    out.fields(status.axisStatus);
    out.field(status.digitalIo, '.');
    out.field(status.outputsAndIndex);
    out.fields(status.programState);
    out.fields(status.programLine);
    out.field(status.joystick);
    out.field(status.latch, '.');
    return out.take();
}

} // namespace marlune::sim

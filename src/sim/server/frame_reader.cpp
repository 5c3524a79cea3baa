#include "frame_reader.h"

namespace marlune::sim {

void FrameReader::feed(std::string_view bytes, std::int64_t micros)
{
    if (!bytes.empty())
        lastByteAt_ = micros;
    for (const char ch : bytes) {
        if (ch == '\n')
            continue;
        if (ch == '\r') {
            ready_ += skipping_ ? std::string() : partial_;
            ready_.push_back('\r');
            oversized_.push_back(skipping_ ? '1' : '0');
            partial_.clear();
            skipping_ = false;
            continue;
        }
        if (skipping_)
            continue;
        if (partial_.size() >= limit_) {
            partial_.clear();
            skipping_ = true;
            continue;
        }
        partial_.push_back(ch);
    }
}

std::optional<FrameReader::Frame> FrameReader::take()
{
    if (oversized_.empty())
        return std::nullopt;
    const auto end = ready_.find('\r');
    Frame frame{ready_.substr(0, end), oversized_.front() == '1'};
    ready_.erase(0, end + 1);
    oversized_.erase(0, 1);
    return frame;
}

void FrameReader::dropStale(std::int64_t micros)
{
    if (hasPartial() && micros > lastByteAt_) {
        partial_.clear();
        skipping_ = false;
    }
}

} // namespace marlune::sim

#include "app/model/CommandOutput.h"

#include <utility>

namespace fennik::app {

std::string CommandOutput::text() const {
    std::string all;
    all.reserve(bytes_ + last_.size() + std::string_view(omission).size() + 1);
    if (omitted_ > 0)
        all.append(omission).append("\n");
    for (const auto& line : ended_)
        all.append(line).append("\n");
    return all.append(last_);
}

void CommandOutput::endLine(std::string line) {
    bytes_ += line.size() + 1;
    ended_.push_back(std::move(line));
    last_.clear();
    omit();
}

void CommandOutput::setLast(std::string line) {
    last_ = std::move(line);
    omit();
}

void CommandOutput::append(CommandOutput newer) {
    if (newer.omitted_ > 0) {
        omitted_ += std::int64_t(ended_.size()) + newer.omitted_;
        ended_.clear();
        bytes_ = 0;
    }
    for (auto& line : newer.ended_)
        endLine(std::move(line));
    setLast(std::move(newer.last_));
}

void CommandOutput::omit() {
    const std::size_t begun = last_.empty() ? 0 : 1;
    while (!ended_.empty() &&
           (ended_.size() + begun > mostLines || bytes_ + last_.size() > mostBytes)) {
        bytes_ -= ended_.front().size() + 1;
        ended_.pop_front();
        ++omitted_;
    }
}

} // namespace fennik::app

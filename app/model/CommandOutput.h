#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace fennik::app {

/// The end of what a command has written, in lines of UTF-8: older ones are left out when there
/// are too many.
class CommandOutput {
public:
    static constexpr std::size_t mostLines = 5000;
    static constexpr std::size_t mostBytes = std::size_t(4) << 20;
    /// Stands before the rest of an output.
    static constexpr const char* omission = "… starší výstup vynechán";

    /// The lines that have ended, and then the one that is being written.
    std::size_t lineCount() const { return ended_.size() + 1; }
    const std::string& line(std::size_t index) const {
        return index < ended_.size() ? ended_[index] : last_;
    }
    /// How many lines before these are left out.
    std::int64_t omitted() const { return omitted_; }
    bool isEmpty() const { return ended_.empty() && last_.empty() && omitted_ == 0; }
    /// All of it, with a first line that says so where older ones are left out.
    std::string text() const;

    /// Ends the line that is being written: it is `line`.
    void endLine(std::string line);
    /// The line that is being written is `line` by now.
    void setLast(std::string line);
    /// What was written since, beginning with the line that is being written.
    void append(CommandOutput newer);

private:
    void omit();

    std::deque<std::string> ended_;
    std::string last_;
    std::size_t bytes_ = 0; ///< of `ended_`, with their ends
    std::int64_t omitted_ = 0;
};

} // namespace fennik::app

#pragma once

#include "core/base/FileUrl.h"

#include <functional>
#include <string>
#include <string_view>

namespace fennik::test {

/// A folder of its own for one test; gone with everything in it at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const FileUrl& url() const { return url_; }
    std::string path(std::string_view name) const { return url_.appending(name).path(); }

    void file(std::string_view name, std::string_view content = {}) const;
    void folder(std::string_view name) const;
    void link(std::string_view name, const std::string& target) const;

private:
    FileUrl url_;
};

/// Runs `check` as an ordinary user who owns nothing, in a process of its own, and tells whether it
/// said true.
bool asOrdinaryUser(const std::function<bool()>& check);

} // namespace fennik::test

#pragma once

#include "core/archives/ArchiveFormat.h"

#include <QTemporaryDir>

#include <cstdint>
#include <string>
#include <string_view>

namespace fennik::app {

/// A home folder with made-up files for pictures, in a private temporary folder that goes with this
/// object. From its making on the process takes it for the user's home and keeps its trash and its
/// caches there. Main thread only, before any other thread runs.
class TourFiles {
public:
    /// Packs the archives itself; waits for that.
    TourFiles();
    ~TourFiles();
    TourFiles(const TourFiles&) = delete;
    TourFiles& operator=(const TourFiles&) = delete;

    /// Whether all of it could be made.
    bool isComplete() const { return isComplete_; }
    /// The path of what is called so below the home folder.
    std::string path(std::string_view name) const;

private:
    void folder(const char* name);
    void pack(const char* name, ArchiveFormat format, const char* password);
    void file(const char* name, std::int64_t size, const char* date, const char* beginning = "");

    QTemporaryDir place_;
    bool isComplete_ = false;
};

} // namespace fennik::app

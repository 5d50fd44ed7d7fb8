#pragma once

#include <string>
#include <string_view>

namespace fennik {

/// Why something with an archive did not work, for the user.
struct ArchiveError {
    enum class Case {
        cannotOpen,
        unsupportedEncryption, ///< `text` names the archive; may be empty
        damaged,
        writeFailed,
        passwordRequired, ///< without a text, as are the following ones
        wrongPassword,
        cancelled, ///< by the user, who is told nothing
    };
    Case kind = Case::damaged;
    std::string text = {}; ///< the cause, without a full stop
    /// Of `passwordRequired` and `wrongPassword`: with what, "AES-256"; empty where it is not
    /// known.
    std::string encryption = {};

    /// What a failure of the archive library stands for. `message` is its text, empty where it has
    /// none; `code` its errno, which may be zero or negative where it means nothing.
    static ArchiveError of(std::string_view message, int code);

    /// Another password may help.
    bool isAboutPassword() const {
        return kind == Case::passwordRequired || kind == Case::wrongPassword;
    }
    /// A complete sentence; empty for `cancelled`.
    std::string message() const;

    friend bool operator==(const ArchiveError&, const ArchiveError&) = default;
};

} // namespace fennik

#include "core/archives/ArchiveError.h"

#include "core/base/AsciiText.h"
#include "core/base/PosixError.h"

#include <cerrno>

namespace fennik {

ArchiveError ArchiveError::of(std::string_view message, int code) {
    const auto lowered = asciiLowered(message);
    if (lowered.contains("passphrase"))
        return {lowered.contains("incorrect") ? Case::wrongPassword : Case::passwordRequired};
    if (lowered.contains("encrypt"))
        return {Case::unsupportedEncryption};
    if (lowered.contains("unrecognized archive format"))
        return {Case::cannotOpen, "neznámý formát"};
    if (code == EPERM || code == ENOENT || code == EACCES)
        return {Case::cannotOpen, PosixError{code}.reason()};
    return {Case::damaged, message.empty() ? "neznámá chyba" : std::string(message)};
}

std::string ArchiveError::message() const {
    switch (kind) {
    case Case::cannotOpen:
        return "Archiv nejde otevřít: " + text;
    case Case::unsupportedEncryption:
        return "Šifrovaný archiv " + text + " Fennik neumí rozbalit (umí jen šifrovaný ZIP).";
    case Case::damaged:
        return "Archiv je poškozený nebo nečitelný: " + text;
    case Case::writeFailed:
        return "Archiv nejde zapsat: " + text;
    case Case::passwordRequired:
        return "Archiv je chráněný heslem.";
    case Case::wrongPassword:
        return "Špatné heslo.";
    case Case::cancelled:
        break;
    }
    return {};
}

} // namespace fennik

#pragma once

#include <string>

namespace fennik {

/// What the first encrypted entry of a ZIP archive is encrypted with, as the archive's directory
/// says: "AES-256" or "ZipCrypto". Empty where there is none, or the directory does not say.
/// Reads the open file, whatever it holds, and keeps little of it in memory.
std::string zipEncryption(int descriptor);

} // namespace fennik

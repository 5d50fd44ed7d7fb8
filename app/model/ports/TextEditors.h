#pragma once

#include <functional>
#include <string>
#include <vector>

namespace fennik::app {

/// An application that edits texts.
struct TextEditor {
    std::string name = {};  ///< for the eye, UTF-8
    std::string value = {}; ///< for `SettingKeys::editorApp`
};

/// The text editors of the desktop. Main thread only.
class TextEditors {
public:
    virtual ~TextEditors() = default;

    /// Calls `found` on the main thread, later, with those that are installed, by name. Nothing
    /// waits for the disk meanwhile.
    virtual void find(std::function<void(std::vector<TextEditor>)> found) = 0;
};

} // namespace fennik::app

#include "app/system/InstalledEditors.h"

#include "app/system/Applications.h"
#include "core/base/FoldedText.h"

#include <algorithm>
#include <utility>

namespace fennik::system {

namespace {

std::vector<app::TextEditor> installed() {
    std::vector<app::TextEditor> editors;
    for (auto& [identifier, entry] : Applications().allFor("text/plain"))
        editors.push_back({.name = std::move(entry.name), .value = identifier});
    std::ranges::stable_sort(editors, {},
                             [](const auto& editor) { return foldedText(editor.name); });
    return editors;
}

} // namespace

void InstalledEditors::find(std::function<void(std::vector<app::TextEditor>)> found) {
    runThen(disk_, main_, "/usr/share/applications", life_, installed, std::move(found));
}

} // namespace fennik::system

#pragma once

#include "app/model/PanelModel.h"
#include "tests/support/PanelFixture.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::test {

/// A panel that stands in the test's own folder, and has not listed it yet.
class PanelModelFixture : public PanelFixture {
protected:
    void show(std::string_view name = {}) {
        panel.navigate(name.empty() ? temp.url() : FileUrl(temp.path(name)));
        settle();
    }
    void moveTo(std::string_view name) {
        const auto row = panel.items().rowOf(name);
        ASSERT_TRUE(row) << name;
        panel.setCursor(static_cast<std::ptrdiff_t>(*row));
    }
    void mark(std::string_view name) {
        const auto row = panel.items().rowOf(name);
        ASSERT_TRUE(row) << name;
        panel.toggleMark(*row);
    }
    std::string underCursor() const { return std::string(panel.items().view(panel.cursor()).name); }

    /// What the user would answer.
    std::vector<std::optional<std::string>> passwords;
    std::vector<bool> wasWrong; ///< what was said at each question

    app::PanelModel panel{
        app::PanelSide::left,
        services(),
        settings,
        sizeCache,
        [this](const FileUrl&, const ArchiveError& reason) -> std::optional<std::string> {
            wasWrong.push_back(reason.kind == ArchiveError::Case::wrongPassword);
            return wasWrong.size() <= passwords.size() ? passwords[wasWrong.size() - 1]
                                                       : std::nullopt;
        },
        temp.url().path()};
};

} // namespace fennik::test

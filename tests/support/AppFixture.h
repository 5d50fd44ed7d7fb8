#pragma once

#include "app/model/AppModel.h"
#include "app/model/ports/PreviewDecoder.h"
#include "core/base/SerialWorker.h"
#include "core/operations/Trashes.h"
#include "tests/support/ManualWorkspace.h"
#include "tests/support/PanelFixture.h"

#include <expected>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

/// What another program has put into the clipboard, or this one.
class ManualClipboard final : public app::Clipboard {
public:
    std::string text() const override { return content; }
    void setText(const std::string& text) override { content = text; }
    Files files() const override { return held; }
    void setFiles(const std::vector<FileUrl>& files) override {
        held = {};
        for (const auto& file : files)
            held.paths.push_back(file.path());
    }

    std::string content;
    Files held;
};

/// Decodes nothing of a file, but says what the test wants.
class ManualDecoder final : public app::PreviewDecoder {
public:
    std::expected<app::Decoded, std::string> decode(app::DecodedKind kind, int,
                                                    const std::function<bool()>&) const override {
        asked.push_back(kind);
        return answer;
    }

    mutable std::vector<app::DecodedKind> asked;
    std::expected<app::Decoded, std::string> answer = std::unexpected("Nejde to.");
};

/// The services of a whole application, all of them cranked by hand. The home folder is "home" in
/// the test's own folder.
class AppFixture : public PanelFixture {
protected:
    AppFixture() { temp.folder("home"); }

    app::AppServices appServices() {
        return {.panels = services(),
                .settings = store,
                .clipboard = clipboard,
                .transferWorker = transfers,
                .actionsWorker = actions,
                .trash = trash,
                .packer = packer,
                .workspace = workspace,
                .previews = previews};
    }
    FileUrl home() const { return FileUrl(temp.path("home"), FileUrl::Form::directory); }

    void settle() {
        PanelFixture::settle();
        while (!actions.isIdle()) {
            actions.runAll();
            PanelFixture::settle();
        }
    }

    ManualClipboard clipboard;
    SerialWorker transfers; ///< a real thread, so that it can wait
    ManualExecutor actions;
    ManualPacker packer;
    ManualWorkspace workspace;
    ManualDecoder previews;
    FolderTrash trash{FileUrl(temp.path("trash"))};
};

} // namespace fennik::test

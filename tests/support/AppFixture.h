#pragma once

#include "app/model/AppModel.h"
#include "tests/support/PanelFixture.h"

#include <string>
#include <utility>

namespace fennik::test {

/// What another program has put into the clipboard.
class ManualClipboard final : public app::Clipboard {
public:
    std::string text() const override { return content; }

    std::string content;
};

/// The services of a whole application, all of them cranked by hand. The home folder is "home" in
/// the test's own folder.
class AppFixture : public PanelFixture {
protected:
    AppFixture() { temp.folder("home"); }

    app::AppServices appServices() {
        return {.panels = services(), .settings = store, .clipboard = clipboard};
    }
    FileUrl home() const { return FileUrl(temp.path("home"), FileUrl::Form::directory); }

    ManualClipboard clipboard;
};

} // namespace fennik::test

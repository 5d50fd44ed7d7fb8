#include "app/ui/PlatformWords.h"

#include "app/ui/Text.h"
#include "core/base/CzechText.h"

namespace fennik::ui::PlatformWords {

QString failureMessage(const FolderOpener::Failure& failure) {
    if (failure.kind != FolderOpener::Failure::Case::noPermission)
        return fromUtf8(failure.message());
    const auto name = fromUtf8(quoted(failure.url.lastComponent()));
    return QStringLiteral("Složku %1 nejde otevřít: nemáte k ní přístup.").arg(name);
}

QString title(app::KAction action) {
    return action == app::KAction::revealInFinder ? QStringLiteral("Ukázat ve správci souborů")
                                                  : fromUtf8(app::KActions::title(action));
}

} // namespace fennik::ui::PlatformWords

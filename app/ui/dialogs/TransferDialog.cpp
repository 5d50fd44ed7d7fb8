#include "app/ui/dialogs/TransferDialog.h"

namespace fennik::ui {

namespace {

DialogCard::Texts textsOf(TransferKind kind, const SourceItems& sources, const QString& subtitle) {
    const bool isMove = kind == TransferKind::move;
    const auto verb = isMove ? QStringLiteral("Přesunout") : QStringLiteral("Kopírovat");
    return {.icon = isMove ? QStringLiteral("file-output") : QStringLiteral("copy"),
            .title = verb + QLatin1Char(' ') + sources.inWords(),
            .subtitle = subtitle,
            .confirm = verb};
}

} // namespace

TransferDialog::TransferDialog(TransferKind kind, const SourceItems& sources,
                               const QString& subtitle, std::string_view target, const Theme& theme,
                               Icons& icons, QWidget* parent)
    : TargetDialog(textsOf(kind, sources, subtitle), sources, target, nullptr, theme, icons,
                   parent) {}

} // namespace fennik::ui

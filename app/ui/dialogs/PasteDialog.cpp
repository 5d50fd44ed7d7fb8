#include "app/ui/dialogs/PasteDialog.h"

#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace fennik::ui {

namespace {

DialogCard::Texts textsOf(TransferKind kind, PasteDialog::Origin origin, const SourceItems& sources,
                          const QString& folder) {
    const auto count = sources.inWords();
    if (kind == TransferKind::move)
        return {.icon = QStringLiteral("file-output"),
                .title = QStringLiteral("Přesunout %1?").arg(count),
                .subtitle = QStringLiteral("přesunout do složky „%1“").arg(folder),
                .confirm = QStringLiteral("Přesunout")};
    if (origin == PasteDialog::Origin::drop)
        return {.icon = QStringLiteral("copy"),
                .title = QStringLiteral("Kopírovat %1?").arg(count),
                .subtitle = QStringLiteral("kopírovat do složky „%1“").arg(folder),
                .confirm = QStringLiteral("Kopírovat")};
    return {.icon = QStringLiteral("clipboard-paste"),
            .title = QStringLiteral("Vložit %1 ze schránky?").arg(count),
            .subtitle = QStringLiteral("kopírovat do složky „%1“").arg(folder),
            .confirm = QStringLiteral("Vložit")};
}

} // namespace

PasteDialog::PasteDialog(TransferKind kind, Origin origin, const SourceItems& sources,
                         const QString& target, const QString& folder, const Theme& theme,
                         Icons& icons, QWidget* parent)
    : DialogCard(textsOf(kind, origin, sources, folder), theme, icons, parent) {
    auto* label = new QLabel(QStringLiteral("Kam:"));
    followColor(*label, theme, &Tokens::text2);
    auto* path = new ElidedLabel(target, nullptr);
    path->setObjectName(QStringLiteral("pasteTarget"));
    followColor(*path, theme, &Tokens::text);
    for (auto* text : {label, static_cast<QLabel*>(path)})
        text->setFont(theme.font(FontRole::detail));

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(9));
    layout->addWidget(new SourceList(sources, theme, icons, nullptr));
    auto* where = new QHBoxLayout;
    where->setSpacing(theme.px(4));
    where->addWidget(label);
    where->addWidget(path, 1);
    layout->addLayout(where);
    setContent(content);
}

} // namespace fennik::ui

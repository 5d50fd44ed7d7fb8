#include "app/ui/DialogPresenter.h"

#include "app/model/ItemInspection.h"
#include "app/ui/StatusLine.h"
#include "app/ui/Suggestions.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ConflictDialog.h"
#include "app/ui/dialogs/Deafness.h"
#include "app/ui/dialogs/DialogHost.h"
#include "app/ui/dialogs/ExtractDialog.h"
#include "app/ui/dialogs/InfoDialog.h"
#include "app/ui/dialogs/MaskDialog.h"
#include "app/ui/dialogs/NewFolderDialog.h"
#include "app/ui/dialogs/PackDialog.h"
#include "app/ui/dialogs/PasswordDialog.h"
#include "app/ui/dialogs/PasteDialog.h"
#include "app/ui/dialogs/TransferDialog.h"
#include "app/ui/dialogs/TrashDialog.h"
#include "core/listing/FileMask.h"
#include "core/listing/Format.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>

namespace fennik::ui {

namespace {

constexpr auto typingPause = std::chrono::milliseconds(120);

SourceItems::Row rowOf(const FileUrl& url) {
    const auto kind = url.hasDirectoryForm() ? FileKind::directory : FileKind::file;
    const auto name = url.lastComponent();
    return {.name = shownName(name), .look = lookOf({.name = name, .kind = kind})};
}

/// The same with what the panel knows of the item.
SourceItems::Row rowOf(const app::PanelModel& panel, std::size_t row) {
    const auto item = panel.items().view(row);
    const auto folderSize = panel.folderSizes().find(item.name);
    QString size;
    if (!item.isFolderLike())
        size = fromUtf8(Format::bytes(item.size));
    else if (folderSize != panel.folderSizes().end())
        size = fromUtf8(Format::bytes(folderSize->second));
    return {.name = shownName(item.name),
            .size = size,
            .look = lookOf(item),
            .badge = item.isLink() ? IconBadge::link : IconBadge::none};
}

SourceItems itemsOf(app::AppModel& app, const std::vector<FileUrl>& urls) {
    SourceItems items{.count = std::int64_t(urls.size())};
    const auto shown = std::min(urls.size(), SourceItems::mostRows);
    for (const auto& url : std::span(urls).first(shown)) {
        auto row = rowOf(url);
        for (const auto* panel : {&app.activePanel(), &app.otherPanel()}) {
            if (panel->items().folder().path() != url.parent().path())
                continue;
            if (const auto place = panel->items().rowOf(url.lastComponent()))
                row = rowOf(*panel, *place);
            break;
        }
        items.rows.push_back(std::move(row));
    }
    return items;
}

/// Those of an archive.
SourceItems entriesOf(const ArchiveIndex& archive, const std::vector<std::string>& paths) {
    SourceItems items{.count = std::int64_t(paths.size())};
    const auto shown = std::min(paths.size(), SourceItems::mostRows);
    for (const auto& path : std::span(paths).first(shown)) {
        const auto entry = archive.find(path);
        const auto name = std::string_view(path).substr(path.rfind('/') + 1);
        if (!entry) {
            items.rows.push_back({.name = shownName(name)});
            continue;
        }
        const bool isFolder = entry->kind == ArchiveEntry::Kind::directory;
        const bool isLink = entry->linkTarget.has_value();
        const auto size = isFolder ? archive.folderSize(path) : entry->size;
        items.rows.push_back(
            {.name = shownName(name),
             .size = isLink ? QString() : fromUtf8(Format::bytes(size)),
             .look =
                 lookOf({.name = name, .kind = isFolder ? FileKind::directory : FileKind::file}),
             .badge = isLink ? IconBadge::link : IconBadge::none});
    }
    return items;
}

/// "5,14 MB ze složky „Smlouvy 2026“", as far as the sizes are known.
QString originText(std::int64_t bytes, bool isPart, const FileUrl& folder) {
    const auto origin = QStringLiteral("ze složky „%1“").arg(shownName(folder.lastComponent()));
    if (isPart && bytes == 0)
        return origin;
    const auto amount = fromUtf8(Format::bytes(bytes)) + QLatin1Char(' ');
    return (isPart ? QStringLiteral("nejméně ") : QString()) + amount + origin;
}

OutcomeLine::Kind kindOf(app::Outcome::Kind kind) {
    switch (kind) {
    case app::Outcome::Kind::existing:
        return OutcomeLine::Kind::ok;
    case app::Outcome::Kind::creates:
        return OutcomeLine::Kind::creates;
    case app::Outcome::Kind::renames:
        return OutcomeLine::Kind::renames;
    case app::Outcome::Kind::refused:
        return OutcomeLine::Kind::error;
    case app::Outcome::Kind::none:
        break;
    }
    return OutcomeLine::Kind::note;
}

} // namespace

DialogPresenter::DialogPresenter(const UiContext& context, QWidget* window,
                                 std::function<QRect()> beside)
    : QObject(window),
      context_(context),
      app_(context.app),
      host_(new DialogHost(context.theme, window)),
      beside_(std::move(beside)) {
    connect(&app_, &app::AppModel::changed, this, &DialogPresenter::takeApp);
}

void DialogPresenter::takeApp(app::AppChanges changes) {
    if (changes.testFlag(app::AppChange::dialog))
        takeDialog();
    if (changes & (app::AppChange::dialog | app::AppChange::outcome))
        takeOutcome();
    if (auto* info = qobject_cast<InfoDialog*>(host_->card());
        info != nullptr && changes.testFlag(app::AppChange::details))
        info->setDetails(app_.itemDetails());
    auto* target = qobject_cast<TargetDialog*>(host_->card());
    if (changes.testFlag(app::AppChange::suggestions) && target != nullptr)
        target->setSuggestions(app_.pathSuggestions().found(), app_.activePanel().tab().path);
}

void DialogPresenter::takeDialog() {
    if (qobject_cast<TargetDialog*>(host_->card()) != nullptr)
        app_.pathSuggestions().clear();
    const auto& dialog = app_.dialog();
    if (dialog) {
        auto* shown = std::visit([this](const auto& content) { return card(content); }, *dialog);
        const bool isAboutItem = std::holds_alternative<app::InfoDialog>(*dialog);
        if (shown != host_->card())
            host_->open(shown, isAboutItem ? beside_ : std::function<QRect()>());
    } else {
        host_->close();
        emit closed();
    }
}

void DialogPresenter::takeOutcome() {
    auto* card = qobject_cast<FieldDialog*>(host_->card());
    if (card == nullptr || qobject_cast<PasswordDialog*>(card) != nullptr)
        return;
    const auto& [kind, sentence, freeSpace] = app_.outcome();
    card->setOutcome(kindOf(kind), fromUtf8(sentence));
    card->setConfirming(app_.isConfirming());
    if (auto* target = qobject_cast<TargetDialog*>(card))
        target->setFreeSpace(freeSpace ? fromUtf8(Format::bytes(*freeSpace)) : QString());
}

DialogCard* DialogPresenter::card(const app::TransferDialog& dialog) {
    const auto origin = originText(dialog.knownBytes, dialog.hasUnsizedFolders, dialog.from);
    auto* card = new TransferDialog(dialog.kind, itemsOf(app_, dialog.sources), origin,
                                    dialog.target, context_.theme, context_.icons, host_);
    follow(*card, dialog.from);
    connect(card, &FieldDialog::textConfirmed, &app_,
            [this](const QString& text) { app_.confirmTransfer(text.toStdString()); });
    return card;
}

void DialogPresenter::follow(TargetDialog& card, const FileUrl& base) {
    connect(&card, &FieldDialog::textChanged, &app_,
            [this](const QString& text) { app_.dialogTextChanged(text.toStdString()); });
    connect(&card, &TargetDialog::typed, &app_,
            [this, base](const QString& text) { askForSuggestions(app_, text, base); });
    connect(&card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
}

DialogCard* DialogPresenter::card(const app::NewFolderDialog& dialog) {
    auto* card = new NewFolderDialog(shownName(dialog.folder.lastComponent()),
                                     fromUtf8(dialog.name), context_.theme, context_.icons, host_);
    connect(card, &FieldDialog::textChanged, &app_,
            [this](const QString& text) { app_.dialogTextChanged(text.toStdString()); });
    connect(card, &FieldDialog::textConfirmed, &app_,
            [this](const QString& text) { app_.confirmNewFolder(text.toStdString()); });
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::TrashDialog& dialog) {
    const auto folder = dialog.items.empty() ? FileUrl() : dialog.items.front().parent();
    const auto hint = context_.keys().sentence("⌘Z vrátí přesun, přejmenování, novou složku i Koš");
    auto* card = new TrashDialog(itemsOf(app_, dialog.items),
                                 originText(dialog.knownBytes, dialog.hasUnsizedFolders, folder),
                                 hint, context_.theme, context_.icons, host_);
    connect(card, &DialogCard::confirmed, &app_, [this, card] {
        app_.confirmTrash(card->asksNextTime() ? app::AskNextTime::yes : app::AskNextTime::no);
    });
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::PasteDialog& dialog) {
    auto* card = new PasteDialog(
        dialog.kind, dialog.origin, itemsOf(app_, dialog.sources), shownName(dialog.target.path()),
        shownName(dialog.target.lastComponent()), context_.theme, context_.icons, host_);
    connect(card, &DialogCard::confirmed, &app_, &app::AppModel::confirmPaste);
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::ConflictDialog& dialog) {
    auto* card = qobject_cast<ConflictDialog*>(host_->card());
    if (card == nullptr) {
        card = new ConflictDialog(context_.theme, context_.icons, host_);
        connect(card, &ConflictDialog::answered, &app_, &app::AppModel::answerConflict);
        connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    }
    card->ask(dialog.pending->conflict, dialog.pending->job);
    return card;
}

DialogCard* DialogPresenter::card(const app::PackDialog& dialog) {
    const auto origin = originText(dialog.knownBytes, dialog.hasUnsizedFolders, dialog.here);
    auto* card = new PackDialog(dialog, itemsOf(app_, dialog.sources), origin, context_.theme,
                                context_.icons, host_);
    connect(card, &PackDialog::answerChanged, &app_, &app::AppModel::packAnswerChanged);
    connect(card, &PackDialog::answerConfirmed, &app_, &app::AppModel::confirmPack);
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::ExtractDialog& dialog) {
    const auto amount = fromUtf8(Format::bytes(dialog.knownBytes));
    const auto ownFolder =
        dialog.ownFolder ? ExtractDialog::OwnFolder::yes : ExtractDialog::OwnFolder::no;
    auto* card = dialog.browse == nullptr
                     ? new ExtractDialog(itemsOf(app_, dialog.archives), amount, dialog.target,
                                         ownFolder, context_.theme, context_.icons, host_)
                     : new ExtractDialog(shownName(dialog.browse->place.lastComponent()),
                                         entriesOf(*dialog.browse->index, dialog.selection), amount,
                                         dialog.target, context_.theme, context_.icons, host_);
    follow(*card, dialog.from);
    connect(card, &FieldDialog::textConfirmed, &app_, [this, card](const QString& text) {
        app_.confirmExtract(text.toStdString(), card->usesOwnFolder());
    });
    return card;
}

DialogCard* DialogPresenter::card(const app::PasswordDialog& dialog) {
    const auto& pending = *dialog.pending;
    auto* card =
        new PasswordDialog(shownName(pending.archive.lastComponent()), fromUtf8(pending.encryption),
                           context_.theme, context_.icons, host_);
    const auto tried = std::exchange(tried_, std::nullopt);
    const bool isAboutTried = tried && tried->archive == pending.archive;
    if (pending.wasWrong == app::WasWrong::yes)
        card->showWrong(isAboutTried ? tried->password : QString());
    else if (pending.asker == app::PendingPassword::Asker::job)
        new Deafness(*card); // nobody has just opened what the job needs
    connect(card, &FieldDialog::textConfirmed, &app_,
            [this, archive = pending.archive](const QString& text) {
                tried_ = Tried{archive, text};
                app_.answerPassword(text.toStdString());
            });
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::InfoDialog& dialog) {
    auto* card = new InfoDialog(dialog, context_.theme, context_.icons, host_);
    card->setDetails(app_.itemDetails());
    connect(card, &InfoDialog::copyRequested, &app_, &app::AppModel::copyInfoPath);
    connect(card, &DialogCard::confirmed, &app_, &app::AppModel::closeDialog);
    connect(card, &DialogCard::cancelled, &app_, &app::AppModel::closeDialog);
    return card;
}

DialogCard* DialogPresenter::card(const app::MaskDialog& dialog) {
    auto& panel = app_.activePanel();
    const auto marking = dialog.marking;
    const auto subtitle = shownName(panel.folder().lastComponent()) + QStringLiteral(" · ") +
                          itemCount(shownItemCount(panel));
    QStringList recents;
    for (const auto& mask : app_.maskHistory())
        recents << fromUtf8(mask);
    const auto purpose =
        marking == Marking::mark ? MaskDialog::Purpose::mark : MaskDialog::Purpose::unmark;
    auto* card = new MaskDialog(purpose, subtitle, recents, context_.theme, context_.icons, host_);
    if (dialog.text)
        card->setMask(fromUtf8(*dialog.text));
    const auto tellMatches = [&panel, card](const QString& text) {
        const auto totals = panel.totalsOf(FileMask(text.toStdString()));
        card->setMatches(totals.count, fromUtf8(Format::bytes(totals.bytes)));
    };
    // A long mask over many items takes a while; who types on does not wait for it.
    auto* typing = new QTimer(card);
    typing->setSingleShot(true);
    typing->setInterval(typingPause);
    connect(card, &MaskDialog::maskChanged, typing, qOverload<>(&QTimer::start));
    connect(card, &MaskDialog::maskChanged, &app_,
            [this](const QString& mask) { app_.dialogTextChanged(mask.toStdString()); });
    connect(typing, &QTimer::timeout, card, [card, tellMatches] { tellMatches(card->mask()); });
    connect(card, &MaskDialog::maskConfirmed, &app_,
            [this, marking](const QString& mask) { app_.applyMask(marking, mask.toStdString()); });
    connect(card, &MaskDialog::cancelled, &app_, &app::AppModel::closeDialog);
    tellMatches(card->mask());
    return card;
}

} // namespace fennik::ui

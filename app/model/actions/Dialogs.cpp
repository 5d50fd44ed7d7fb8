#include "app/model/AppModel.h"
#include "app/model/TransferTarget.h"
#include "core/base/CzechText.h"
#include "core/base/PathText.h"
#include "core/listing/PathCompleter.h"
#include "core/operations/FileActions.h"

#include <utility>

namespace fennik::app {

namespace {

/// A clash that comes within this after the last one is shown in the same card.
constexpr auto nextClashWithin = std::chrono::milliseconds(100);

constexpr std::size_t longestName = 255; // bytes, of the file systems in use

TransferTarget::Question questionOf(const TransferDialog& dialog, const FileUrl& home) {
    return {.kind = dialog.kind,
            .sources = dialog.sources,
            .text = dialog.target,
            .from = dialog.from,
            .home = home,
            .knownBytes = dialog.knownBytes};
}

TransferTarget::Question questionOf(const ExtractDialog& dialog, const FileUrl& home) {
    TransferTarget::Question question{.kind = TransferKind::extract,
                                      .sources = dialog.archives,
                                      .text = dialog.target,
                                      .from = dialog.from,
                                      .home = home};
    // What whole archives come to is not known before they are read.
    if (const auto* browse = dialog.browse.get()) {
        question.knownBytes = dialog.knownBytes;
        question.sources.clear();
        for (const auto& path : dialog.selection)
            question.sources.push_back(browse->place.appending(path));
    }
    return question;
}

Outcome refused(std::string sentence) {
    return {Outcome::Kind::refused, std::move(sentence), {}};
}

/// The archive that is to be made.
FileUrl archiveOf(const PackDialog& dialog) {
    const bool isOther = dialog.answer.place == PackAnswer::Place::other;
    return (isOther ? dialog.other.value_or(dialog.here) : dialog.here)
        .appending(dialog.answer.name);
}

/// Why there can be no such archive.
Outcome outcomeOf(const FileSystem& files, const PackDialog& dialog) {
    const auto& answer = dialog.answer;
    const auto& format = answer.options.format;
    if (!answer.options.password.empty() && format != ArchiveFormat::zip)
        return refused("Heslo umí jen formát ZIP.");
    const bool isOnlyExtension = answer.name == "." + std::string(extensionOf(format));
    const auto name = FileActions::validateName(isOnlyExtension ? "" : answer.name);
    if (!name)
        return refused(name.error().message());
    if (name->contains('/'))
        return refused("Název nesmí obsahovat „/“.");
    if (name->size() > longestName)
        return refused("Název " + quoted(*name) + " je příliš dlouhý.");
    const auto archive = archiveOf(dialog);
    if (files.status(archive.path(), FollowLinks::no))
        return refused(quoted(*name) + " už ve složce je.");
    for (const auto& source : dialog.sources) {
        if (archive.path().starts_with(source.path() + "/"))
            return refused("Archiv nemůže přepsat soubor, který se do něj balí.");
    }
    Outcome outcome;
    if (auto reason = TransferTarget::storingObstacle(files, archive.parent()))
        outcome = refused(std::move(*reason));
    if (const auto space = files.freeSpace(archive.parent().path()))
        outcome.freeSpace = *space;
    return outcome;
}

/// Why there can be no new folder of that name.
Outcome outcomeOf(const FileSystem& files, const NewFolderDialog& dialog) {
    const auto name = FileActions::validateName(dialog.name);
    if (!name)
        return refused(name.error().message());
    const auto folder = FileActions::folderNamed(dialog.folder, *name);
    if (!folder)
        return refused(folder.error().message());
    if (!files.status(folder->path(), FollowLinks::no))
        return {};
    return refused("Složka " + quoted(*name) + " už existuje.");
}

} // namespace

void AppModel::setDialog(Dialog dialog) {
    const auto before = stage_.shownId();
    stage_.open(std::move(dialog));
    takeStage(before);
}

void AppModel::takeClash(std::shared_ptr<PendingConflict> pending) {
    const auto before = stage_.shownId();
    nextClash_.cancel();
    stage_.openQuestion(ConflictDialog{std::move(pending)});
    takeStage(before);
}

void AppModel::close(DialogStage::Id dialog) {
    const auto before = stage_.shownId();
    stage_.close(dialog);
    takeStage(before);
}

void AppModel::takeStage(DialogStage::Id shownBefore) {
    if (stage_.shownId() == shownBefore)
        return;
    preview_.set({});
    previewOutcome(OutcomePreview::When::now);
    inspectItem();
    emit changed(AppChange::dialog);
}

void AppModel::previewOutcome(OutcomePreview::When when) {
    const auto& files = services_.panels.files;
    const auto previewTarget = [&](TransferTarget::Question question) {
        auto path = PathCompleter::normalise(question.text, question.from, home_);
        preview_.ask(when, std::move(path), [&files, question = std::move(question)] {
            return TransferTarget::resolve(files, question).outcome;
        });
    };
    if (const auto* transfer = stage_.shownAs<TransferDialog>()) {
        previewTarget(questionOf(*transfer, home_));
    } else if (const auto* extraction = stage_.shownAs<ExtractDialog>()) {
        previewTarget(questionOf(*extraction, home_));
    } else if (const auto* packing = stage_.shownAs<PackDialog>()) {
        preview_.ask(when, archiveOf(*packing).parent().path(),
                     [&files, dialog = *packing] { return outcomeOf(files, dialog); });
    } else if (const auto* folder = stage_.shownAs<NewFolderDialog>();
               folder != nullptr && !folder->name.empty()) {
        preview_.ask(when, folder->folder.path(),
                     [&files, dialog = *folder] { return outcomeOf(files, dialog); });
    } else {
        preview_.set({});
    }
}

void AppModel::dialogTextChanged(const std::string& text) {
    if (auto* transfer = stage_.shownAs<TransferDialog>())
        transfer->target = text;
    else if (auto* extraction = stage_.shownAs<ExtractDialog>())
        extraction->target = text;
    else if (auto* folder = stage_.shownAs<NewFolderDialog>())
        folder->name = text;
    else if (auto* mask = stage_.shownAs<MaskDialog>())
        mask->text = text;
    previewOutcome(OutcomePreview::When::afterTyping);
}

void AppModel::closeDialog() {
    if (const auto* clash = stage_.shownAs<ConflictDialog>())
        clash->pending->answer({.choice = ConflictChoice::cancel});
    else if (const auto* password = stage_.shownAs<PasswordDialog>())
        password->pending->answer(std::nullopt);
    else
        confirmation_.reset();
    nextClash_.cancel();
    close(stage_.shownId());
}

void AppModel::confirmTransfer(const std::string& target) {
    auto* dialog = stage_.shownAs<TransferDialog>();
    if (dialog == nullptr || confirmation_)
        return;
    dialog->target = target;
    confirmTarget(questionOf(*dialog, home_),
                  [this, kind = dialog->kind](std::vector<TransferPair> pairs) {
                      enqueue(kind, std::move(pairs));
                  });
}

void AppModel::confirmExtract(const std::string& target, bool ownFolder) {
    auto* dialog = stage_.shownAs<ExtractDialog>();
    if (dialog == nullptr || confirmation_)
        return;
    dialog->target = target;
    if (dialog->browse == nullptr) {
        dialog->ownFolder = ownFolder;
        settings_.set(SettingKeys::extractIntoOwnFolder, ownFolder);
    }
    confirmTarget(questionOf(*dialog, home_),
                  [this, dialog = *dialog](std::vector<TransferPair> pairs) {
                      extract(dialog, std::move(pairs));
                  });
}

void AppModel::confirmTarget(TransferTarget::Question question, Confirmed confirmed) {
    auto path = PathCompleter::normalise(question.text, question.from, home_);
    confirm(
        std::move(path),
        [&files = services_.panels.files, question = std::move(question)] {
            return TransferTarget::resolve(files, question);
        },
        std::move(confirmed));
}

void AppModel::confirm(std::string path, std::function<TransferTarget::Answer()> examine,
                       Confirmed confirmed) {
    setConfirmation(std::make_shared<int>());
    auto done = [this, id = stage_.shownId(),
                 confirmed = std::move(confirmed)](TransferTarget::Answer answer) {
        setConfirmation(nullptr);
        if (answer.outcome.kind != Outcome::Kind::refused) {
            close(id);
            confirmed(std::move(answer.pairs));
        } else if (stage_.shownId() == id) {
            previewOutcome(OutcomePreview::When::now); // of what stands there by now
        }
    };
    runThen(services_.panels.disk, services_.panels.main, std::move(path), confirmation_,
            std::move(examine), std::move(done));
}

void AppModel::setConfirmation(std::shared_ptr<int> confirmation) {
    confirmation_ = std::move(confirmation);
    emit changed(AppChange::outcome);
}

void AppModel::packAnswerChanged(const PackAnswer& answer) {
    if (auto* dialog = stage_.shownAs<PackDialog>())
        dialog->answer = answer;
    previewOutcome(OutcomePreview::When::afterTyping);
}

void AppModel::confirmPack(const PackAnswer& answer) {
    auto* dialog = stage_.shownAs<PackDialog>();
    if (dialog == nullptr || confirmation_)
        return;
    dialog->answer = answer;
    confirm(
        archiveOf(*dialog).parent().path(),
        [&files = services_.panels.files, dialog = *dialog] {
            return TransferTarget::Answer{.outcome = outcomeOf(files, dialog)};
        },
        [this, dialog = *dialog](const std::vector<TransferPair>&) {
            pack(dialog.sources, archiveOf(dialog), dialog.answer.options);
        });
}

void AppModel::confirmNewFolder(const std::string& name) {
    auto* dialog = stage_.shownAs<NewFolderDialog>();
    if (dialog == nullptr || confirmation_)
        return;
    dialog->name = name;
    setConfirmation(std::make_shared<int>());
    const auto id = stage_.shownId();
    auto done = [this, id, side = activeSide_, folder = dialog->folder,
                 confirmed = std::weak_ptr(confirmation_)](auto made) {
        if (!confirmed.expired())
            setConfirmation(nullptr);
        if (made) {
            close(id);
            const auto below = made->path().substr(folder.isRoot() ? 1 : folder.path().size() + 1);
            showItem(side, folder, below.substr(0, below.find('/')));
            tellUndoTitle();
            showToast({.text = "Vytvořena složka " + quoted(below),
                       .kind = Toast::Kind::ok,
                       .undoable = true});
        } else if (stage_.shownId() == id) {
            preview_.set({Outcome::Kind::refused, made.error().message(), {}});
        } else {
            showToast(made.error().message(), Toast::Kind::error);
        }
    };
    actions_.run(
        "Vytvářím složku " + quoted(name) + "…",
        [folder = dialog->folder, name, &journal = journal_] {
            return FileActions::newFolder(folder, name, journal);
        },
        std::move(done));
}

void AppModel::confirmTrash(AskNextTime askNextTime) {
    const auto* dialog = stage_.shownAs<TrashDialog>();
    if (dialog == nullptr)
        return;
    auto items = dialog->items;
    if (askNextTime == AskNextTime::no)
        settings_.set(SettingKeys::confirmTrash, false);
    closeDialog();
    moveToTrash(std::move(items));
}

void AppModel::confirmPaste() {
    const auto* dialog = stage_.shownAs<PasteDialog>();
    if (dialog == nullptr)
        return;
    const auto paste = *dialog;
    closeDialog();
    enqueue(paste.kind, TransferTarget::pairsInto(paste.sources, paste.target));
}

void AppModel::answerConflict(ConflictDecision decision) {
    const auto* clash = stage_.shownAs<ConflictDialog>();
    if (clash == nullptr || clash->pending->isAnswered())
        return;
    clash->pending->answer(decision);
    if (decision.choice == ConflictChoice::cancel || decision.applyToAll)
        closeDialog();
    else
        nextClash_.schedule(nextClashWithin, [this] { closeDialog(); });
}

} // namespace fennik::app

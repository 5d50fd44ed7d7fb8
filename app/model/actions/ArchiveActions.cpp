#include "app/model/AppModel.h"
#include "app/model/ArchivePaths.h"
#include "core/archives/ArchiveExtractor.h"
#include "core/archives/ArchiveSupport.h"
#include "core/base/CzechText.h"
#include "core/base/PathText.h"
#include "core/listing/Format.h"

#include <utility>

namespace fennik::app {

namespace {

bool isArchive(const FileItemView& item) {
    const bool mayBeFile = item.kind == FileKind::file || item.kind == FileKind::symlink;
    return mayBeFile && ArchiveSupport::archiveExtension(item.name);
}

/// What an archive of these items is called, without its extension.
std::string stemFor(const std::vector<FileUrl>& sources, const FileItemView& first) {
    if (sources.size() > 1)
        return std::string(sources.front().parent().lastComponent());
    return std::string(first.kind == FileKind::file ? first.baseName() : first.name);
}

PackAnswer firstAnswer(const PackDialog& dialog) {
    return {.name = dialog.stem + "." + std::string(extensionOf(dialog.options.format)),
            .options = dialog.options};
}

std::string hiddenEntries(std::int64_t count) {
    const auto items = pluralForm(count, {"položku, kterou", "položky, které", "položek, které"});
    return ("Archiv obsahuje " + Format::grouped(count) + " ").append(items) + " nejde ukázat.";
}

} // namespace

bool AppModel::refusesArchiveAsTarget() {
    if (!otherPanel().archive())
        return false;
    showToast("Do archivu nejde nic přidat, je jen pro čtení.", Toast::Kind::error);
    return true;
}

// Packing

void AppModel::openPacking() {
    auto items = sources();
    if (items.empty())
        return showToast("Není co zabalit.");
    const auto& active = activePanel();
    const auto& other = otherPanel();
    const auto totals = sourceTotals();
    PackDialog dialog{.here = active.folder(),
                      .stem = stemFor(items, active.items().view(active.targets().front())),
                      .knownBytes = totals.bytes,
                      .hasUnsizedFolders = totals.hasUnsizedFolders()};
    if (!other.archive() && other.folder() != dialog.here)
        dialog.other = other.folder();
    dialog.sources = std::move(items);
    dialog.answer = firstAnswer(dialog);
    setDialog(std::move(dialog));
}

void AppModel::pack(const std::vector<FileUrl>& sources, const FileUrl& archive,
                    PackOptions options) {
    TransferRequest request{.kind = TransferKind::pack,
                            .title = "Balení " + quoted(archive.lastComponent())};
    for (const auto& source : sources)
        request.pairs.push_back({source, archive});
    engine_.enqueue(std::move(request), {},
                    [&packer = services_.packer, sources, archive,
                     options = std::move(options)](OperationContext& context) {
                        const bool isPacked = packer.pack(sources, archive, options, context);
                        return std::vector(sources.size(),
                                           isPacked ? PairOutcome::done : PairOutcome::failed);
                    });
}

// Extraction

void AppModel::openExtraction() {
    auto& active = activePanel();
    ExtractDialog dialog{.target = typeablePath(otherPanel().tab().path), .from = active.folder()};
    for (const auto row : active.targets()) {
        const auto item = active.items().view(row);
        if (active.archive()) {
            dialog.selection.push_back(ArchivePaths::child(active.archive()->inner, item.name));
        } else if (isArchive(item)) {
            dialog.archives.push_back(active.folder().appending(item.name));
            dialog.knownBytes += item.size;
        }
    }
    if (dialog.archives.empty() && dialog.selection.empty())
        return showToast("Není co rozbalit.");
    if (refusesArchiveAsTarget())
        return;
    if (const auto& browse = active.archive()) {
        dialog.archives = {browse->place};
        dialog.browse = std::make_shared<const ArchiveBrowse>(*browse);
        dialog.knownBytes = sourceTotals().bytes;
    } else {
        dialog.ownFolder = settings_.get(SettingKeys::extractIntoOwnFolder);
    }
    setDialog(std::move(dialog));
}

void AppModel::extract(const ExtractDialog& dialog, std::vector<TransferPair> pairs) {
    const auto target = pairs.front().destination.parent();
    std::vector<Extraction> extractions;
    if (const auto* browse = dialog.browse.get()) {
        extractions.push_back({.archive = browse->index->url(),
                               .password = browse->password.value_or(""),
                               .index = browse->index,
                               .selection = dialog.selection,
                               .target = target});
    } else {
        for (const auto& archive : dialog.archives)
            extractions.push_back(
                {.archive = archive, .target = target, .ownFolder = dialog.ownFolder});
    }
    const auto count = dialog.archives.size();
    const auto what = count == 1 ? quoted(dialog.archives.front().lastComponent())
                                 : std::to_string(count) + " archivů";
    // The browse keeps the copy of an archive that lay in another one.
    engine_.enqueue(
        {.kind = TransferKind::extract, .pairs = std::move(pairs), .title = "Rozbalení " + what},
        {},
        [&archives = services_.panels.archives, extractions = std::move(extractions),
         ask = passwords_.askingFor(PendingPassword::Asker::job),
         browse = dialog.browse](OperationContext& context) {
            return ArchiveExtractor(archives, context, ask).run(extractions);
        });
}

void AppModel::takeOpening(const PanelModel& panel) {
    if (!panel.openingFailure().empty())
        return showToast(panel.openingFailure(), Toast::Kind::error);
    if (!panel.takenFile().place) {
        const auto refused = panel.archive() ? panel.archive()->index->refusedCount() : 0;
        if (refused > 0)
            showToast(hiddenEntries(refused));
        return;
    }
    takenFiles_.push_back(panel.takenFile());
    openFile(panel.takenFile().url);
}

// Passwords

void AppModel::takePassword(std::shared_ptr<PendingPassword> pending) {
    if (pending->wasWrong == WasWrong::yes)
        rememberPassword(pending->archive, std::nullopt);
    const auto before = stage_.shownId();
    stage_.openQuestion(PasswordDialog{std::move(pending)});
    takeStage(before);
}

void AppModel::answerPassword(const std::string& password) {
    const auto* dialog = stage_.shownAs<PasswordDialog>();
    if (dialog == nullptr)
        return;
    rememberPassword(dialog->pending->archive, password);
    dialog->pending->answer(password);
    close(stage_.shownId());
}

void AppModel::rememberPassword(const FileUrl& archive,
                                const std::optional<std::string>& password) {
    left_.takePassword(archive, password);
    right_.takePassword(archive, password);
}

} // namespace fennik::app

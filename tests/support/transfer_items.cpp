// Copies, moves or trashes items with the real engine: what is killed and robbed of its power.
//
//     transfer_items copy|move|trash skip|overwrite|rename|wait TRASH [TARGET-FOLDER] ITEMS…
//
// TRASH is a folder, or "system". "wait" overwrites as well, but prints "?" at every clash and goes
// on when it is given a line. Prints the sentences on what failed; 0: nothing did.
#include "core/base/SerialWorker.h"
#include "core/operations/FileActions.h"
#include "core/operations/TransferEngine.h"
#include "core/operations/Trashes.h"

#include <chrono>
#include <iostream>
#include <memory>
#include <semaphore>
#include <span>
#include <string>
#include <string_view>

namespace {

using namespace fennik;
using Texts = std::span<char* const>;

constexpr int usage = 2;

int report(const std::vector<std::string>& sentences) {
    for (const auto& sentence : sentences)
        std::cout << sentence << '\n';
    return sentences.empty() ? 0 : 1;
}

std::unique_ptr<TrashProvider> trashNamed(std::string_view name) {
    if (name == "system")
        return std::make_unique<SystemTrash>();
    return std::make_unique<FolderTrash>(FileUrl(std::string(name)));
}

ConflictDecision answer(std::string_view choice) {
    if (choice == "wait") {
        std::cout << "?\n" << std::flush;
        std::string line;
        std::getline(std::cin, line);
        return {.choice = ConflictChoice::overwrite};
    }
    if (choice == "overwrite")
        return {.choice = ConflictChoice::overwrite};
    return {.choice = choice == "rename" ? ConflictChoice::rename : ConflictChoice::skip};
}

int trashItems(Texts items, const TrashProvider& trash) {
    UndoJournal journal;
    std::vector<FileUrl> urls;
    for (const auto* item : items)
        urls.emplace_back(item);
    return report(FileActions::trash(urls, trash, journal).failures);
}

int transferItems(TransferKind kind, std::string_view choice, const FileUrl& target, Texts items,
                  const TrashProvider& trash) {
    TransferRequest request{.kind = kind};
    for (const auto* item : items) {
        const FileUrl source(item);
        request.pairs.push_back({source, target.appending(source.lastComponent())});
    }
    SerialWorker worker;
    UndoJournal journal;
    TransferEngine engine({.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now = [] { return std::chrono::steady_clock::now(); },
                           .today = [] { return Date{}; }});
    engine.setResolver([choice](const Conflict&) { return answer(choice); });
    JobSnapshot ended;
    std::binary_semaphore finished{0};
    engine.setOnJobFinished([&](const JobSnapshot& job, const TransferRequest&) {
        ended = job;
        finished.release();
    });
    engine.enqueue(std::move(request));
    finished.acquire();
    worker.shutDown(std::chrono::seconds(10));
    return report(*ended.errors);
}

} // namespace

int main(int argumentCount, char** arguments) {
    const Texts texts(arguments, static_cast<std::size_t>(argumentCount));
    if (texts.size() < 5)
        return usage;
    const std::string_view action(texts[1]);
    const auto trash = trashNamed(texts[3]);
    if (action == "trash")
        return trashItems(texts.subspan(4), *trash);
    return transferItems(action == "move" ? TransferKind::move : TransferKind::copy, texts[2],
                         FileUrl(texts[4]), texts.subspan(5), *trash);
}

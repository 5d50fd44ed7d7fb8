#include "core/archives/helper/ArchiveHelper.h"

#include "core/archives/ArchiveReader.h"
#include "core/archives/helper/ArchiveMessages.h"
#include "core/archives/helper/PackingHelper.h"
#include "core/archives/helper/ReadingHelper.h"
#include "core/platform/OwnProcess.h"

#include <array>
#include <atomic>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace fennik {

namespace {

/// There is no other thread yet.
void settleLocale() {
    // The system's reasons are in the language of the user, as those of Fennik are.
    std::setlocale(LC_CTYPE, "");    // NOLINT(concurrency-mt-unsafe)
    std::setlocale(LC_MESSAGES, ""); // NOLINT(concurrency-mt-unsafe)
    // Without this, the C library examines the file of the time zone for each date it converts.
    setenv("TZ", ":/etc/localtime", 0); // NOLINT(concurrency-mt-unsafe)
    tzset();
}

struct Request {
    MessageKind kind = {};
    std::vector<std::byte> fields = {};
};

std::optional<Request> takeRequest() {
    MessageHead head;
    std::array<std::byte, sizeof head> bytes{};
    if (!OwnProcess::readAll(bytes))
        return std::nullopt;
    std::memcpy(&head, bytes.data(), sizeof head);
    Request request{.kind = head.kind, .fields = std::vector<std::byte>(head.size)};
    if (!OwnProcess::readAll(request.fields))
        return std::nullopt;
    return request;
}

int readArchive(const HelperWork& work, const ArchiveRequest& request) {
    // Whatever the library is doing.
    OwnProcess::watchInput([] { std::_Exit(HelperExit::abandoned); });
    return readForOthers(work, request);
}

int packArchive(const HelperWork& work, const PackRequest& request) {
    static std::atomic<bool> isAbandoned = false; // the thread may outlive this call
    OwnProcess::watchInput([] {
        // Time to remove what is half written.
        constexpr std::chrono::seconds patience(2);
        isAbandoned = true;
        std::this_thread::sleep_for(patience);
        std::_Exit(HelperExit::abandoned);
    });
    return packForOthers(work.packer, request, isAbandoned);
}

} // namespace

int runArchiveHelper() {
    const DirectPacker packer;
    const auto open =
        [](int descriptor, const ArchiveRequest& request,
           IsCancelled isCancelled) -> EntryStream::Result<std::unique_ptr<EntryStream>> {
        return ArchiveReader::open(descriptor, request, std::move(isCancelled));
    };
    return runArchiveHelper({.open = open, .packer = packer});
}

int runArchiveHelper(const HelperWork& work) {
    if (!OwnProcess::hasPipes())
        return HelperExit::noHelper;
    OwnProcess::renounce();
    settleLocale();
    const auto request = takeRequest();
    if (!request)
        return HelperExit::abandoned;
    const MessageReader fields(request->fields);
    try {
        if (request->kind == MessageKind::readArchive)
            if (const auto reading = ArchiveMessages::archiveRequest(fields))
                return readArchive(work, *reading);
        if (request->kind == MessageKind::packArchive)
            if (const auto packing = ArchiveMessages::packRequest(fields))
                return packArchive(work, *packing);
    } catch (const std::bad_alloc&) {
        return HelperExit::outOfMemory;
    }
    return HelperExit::noHelper;
}

} // namespace fennik

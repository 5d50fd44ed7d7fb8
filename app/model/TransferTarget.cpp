#include "app/model/TransferTarget.h"

#include "app/model/ItemCount.h"
#include "core/base/CzechText.h"
#include "core/base/PathText.h"
#include "core/base/WhiteSpace.h"
#include "core/listing/Format.h"
#include "core/listing/PathCompleter.h"

#include <algorithm>
#include <cerrno>
#include <expected>
#include <map>
#include <utility>

namespace fennik::app::TransferTarget {

namespace {

constexpr std::size_t longestName = 255; // bytes, of the file systems in use
constexpr int deepestFolder = 4096;

/// Why nothing can be done, as a sentence.
using Refusal = std::unexpected<std::string>;
template <class T>
using OrRefusal = std::expected<T, std::string>;

/// The path that was typed.
struct Typed {
    FileUrl url = {};
    bool isFolder = false; ///< it was written like one
};

/// Where the items go.
struct Place {
    FileUrl folder = {};                     ///< maybe one that does not exist yet
    FileUrl existing = {};                   ///< that folder, or the nearest one above it
    FileStatus status = {};                  ///< of `existing`
    std::optional<std::string> newName = {}; ///< of the one item

    bool isThere() const { return existing.path() == folder.path(); }
};

/// The first name that no file system in use can hold.
std::optional<std::string> nameTooLong(const FileUrl& url) {
    for (auto at = url; !at.isRoot(); at = at.parent()) {
        if (at.lastComponent().size() > longestName)
            return std::string(at.lastComponent());
    }
    return std::nullopt;
}

OrRefusal<Typed> typed(const Question& question) {
    const auto text = trimmed(question.text);
    if (text.find_first_of(std::string_view("\n\r\0", 3)) != std::string::npos)
        return Refusal("Cesta nesmí obsahovat konec řádku ani znak NUL.");
    if (text.starts_with("file://") && !pathOfFileUrl(text))
        return Refusal("Adresu " + quoted(text) + " nejde přečíst.");
    const auto path = PathCompleter::normalise(text, question.from, question.home);
    if (path.empty())
        return Refusal("Zadejte, kam.");
    const auto last = path.substr(path.rfind('/') + 1);
    const bool isFolder = last.empty() || last == "." || last == "..";
    const auto url = FileUrl(path).standardized();
    if (const auto name = nameTooLong(url))
        return Refusal("Název " + quoted(*name) + " je příliš dlouhý.");
    return Typed{url, isFolder};
}

/// The nearest item that exists at or above `url`, which has to be a folder.
OrRefusal<std::pair<FileUrl, FileStatus>> nearestFolder(const FileSystem& files, FileUrl url) {
    for (;; url = url.parent()) {
        const auto status = files.status(url.path(), FollowLinks::yes);
        if (status && status->type == FileType::directory)
            return std::pair(url, *status);
        if (status)
            return Refusal(quoted(url.lastComponent()) + " není složka.");
        const int code = status.error().code;
        if ((code != ENOENT && code != ENOTDIR) || url.isRoot())
            return Refusal("Cíl " + quoted(url.lastComponent()) +
                           " teď není dostupný: " + status.error().reason());
        // A link is there, though what it leads to is not: no folder can be made in its place.
        if (files.status(url.path(), FollowLinks::no))
            return Refusal(quoted(url.lastComponent()) + " je odkaz, který nikam nevede.");
    }
}

OrRefusal<Place> place(const FileSystem& files, const Question& question, const Typed& typed) {
    const auto& url = typed.url;
    const auto status = files.status(url.path(), FollowLinks::yes);
    const bool isFolder = status && status->type == FileType::directory;
    const bool isExtraction = question.kind == TransferKind::extract;
    const bool takesOneItem =
        question.sources.size() == 1 && !isExtraction && !typed.isFolder && !url.isRoot();
    if (status && !isFolder && !isExtraction && question.sources.size() > 1)
        return Refusal(quoted(url.lastComponent()) + " je soubor a položek je víc.");
    const bool isNewName = takesOneItem && !isFolder;
    const auto folder = isNewName ? url.parent() : url;
    const auto existing = nearestFolder(files, folder);
    if (!existing)
        return Refusal(existing.error());
    Place found{.folder = folder, .existing = existing->first, .status = existing->second};
    if (isNewName)
        found.newName = std::string(url.lastComponent());
    return found;
}

/// The folder itself and all that hold it, wherever links in its path lead.
std::vector<FileIdentity> withAncestors(const FileSystem& files, const Place& place) {
    std::vector<FileIdentity> found{place.status.identity()};
    auto path = place.existing.path();
    for (int depth = 0; depth < deepestFolder; ++depth) {
        path += "/..";
        const auto status = files.status(path, FollowLinks::yes);
        if (!status || status->identity() == found.back())
            break;
        found.push_back(status->identity());
    }
    return found;
}

std::string intoItself(TransferKind kind, const FileUrl& source) {
    return quoted(source.lastComponent()) + " nejde " +
           (kind == TransferKind::move ? "přesunout" : "kopírovat") + " do sebe sama.";
}

/// The item that holds the target.
std::optional<FileUrl> sourceAround(const FileSystem& files, const Question& question,
                                    const Place& place) {
    const auto ancestors = withAncestors(files, place);
    for (const auto& source : question.sources) {
        if ((place.folder.path() + "/").starts_with(source.path() + "/"))
            return source;
        const auto status = files.status(source.path(), FollowLinks::no);
        if (status && status->type == FileType::directory &&
            std::ranges::find(ancestors, status->identity()) != ancestors.end())
            return source;
    }
    return std::nullopt;
}

/// Why entries of the folder cannot be added or removed.
std::optional<std::string> writeObstacle(const FileSystem& files, const FileUrl& folder) {
    const auto writable = files.checkWritable(folder.path());
    if (writable)
        return std::nullopt;
    switch (writable.error().code) {
    case EACCES:
    case EPERM:
        return "nemáte do ní právo zapisovat.";
    case EROFS:
        return "je na disku jen pro čtení.";
    default:
        return writable.error().reason();
    }
}

/// Whether the items themselves already lie in the folder of the target.
bool isSameFolder(const FileSystem& files, const Question& question, const Place& place) {
    if (question.kind == TransferKind::extract)
        return false;
    const auto status = files.status(question.sources.front().parent().path(), FollowLinks::yes);
    return place.isThere() && status && status->identity() == place.status.identity();
}

std::optional<std::string> obstacle(const FileSystem& files, const Question& question,
                                    const Place& place, std::optional<std::int64_t> freeSpace) {
    const auto& first = question.sources.front();
    const bool isMove = question.kind == TransferKind::move;
    if (const auto around = sourceAround(files, question, place))
        return intoItself(question.kind, *around);
    const bool keepsName = !place.newName || *place.newName == first.lastComponent();
    if (isMove && keepsName && isSameFolder(files, question, place))
        return itemsInShort(question.sources) + " už v této složce " +
               std::string(pluralForm(std::ssize(question.sources), {"je.", "jsou.", "je."}));
    if (auto reason = storingObstacle(files, place.existing))
        return reason;
    const auto from = first.parent();
    if (const auto reason = isMove ? writeObstacle(files, from) : std::nullopt)
        return "Ze složky " + quoted(from.lastComponent()) + " nejde nic přesunout: " + *reason;
    const auto source = files.status(from.path(), FollowLinks::yes);
    const bool isOtherVolume = source && source->device != place.status.device;
    const bool needsSpace = isOtherVolume || question.kind == TransferKind::extract;
    if (needsSpace && freeSpace && question.knownBytes > *freeSpace)
        return "V cíli je málo místa: potřeba " + Format::bytes(question.knownBytes) + ", volno " +
               Format::bytes(*freeSpace) + ".";
    return std::nullopt;
}

/// The folder that does not exist yet, as seen from the one that does.
std::string newFolders(const Place& place) {
    const auto& existing = place.existing.path();
    const auto begin = existing == "/" ? 1 : existing.size() + 1;
    return quoted(std::string_view(place.folder.path()).substr(begin));
}

Outcome outcome(const FileSystem& files, const Question& question, const Place& place) {
    using Kind = Outcome::Kind;
    const auto count = std::ssize(question.sources);
    const auto creation = place.isThere() ? "" : "Složka " + newFolders(place) + " se vytvoří";
    if (place.newName) {
        const auto name = quoted(*place.newName);
        const auto what = question.kind == TransferKind::move ? "přesun a přejmenování na " + name
                                                              : "kopie pod tímto jménem: " + name;
        return {creation.empty() ? Kind::renames : Kind::creates,
                creation.empty() ? what : creation + ", " + what,
                {}};
    }
    if (!place.isThere())
        return {Kind::creates,
                creation + (count == 1 ? " a položka půjde do ní." : " a položky půjdou do ní."),
                {}};
    const auto folder = quoted(place.folder.lastComponent());
    if (isSameFolder(files, question, place))
        return {Kind::existing,
                "Ve složce " + folder +
                    (count == 1 ? " přibude kopie s číslem v názvu."
                                : " přibudou kopie s čísly v názvech."),
                {}};
    const auto go = pluralForm(count, {" půjde", " půjdou", " půjde"});
    return {Kind::existing,
            itemCount(count) + std::string(go) + " do existující složky " + folder + ".",
            {}};
}

Answer refused(std::string sentence, std::optional<std::int64_t> freeSpace = {}) {
    return {.outcome = {Outcome::Kind::refused, std::move(sentence), freeSpace}};
}

} // namespace

Answer resolve(const FileSystem& files, const Question& question) {
    const auto path = typed(question);
    if (!path)
        return refused(path.error());
    const auto where = place(files, question, *path);
    if (!where)
        return refused(where.error());
    std::optional<std::int64_t> freeSpace;
    if (const auto space = files.freeSpace(where->existing.path()))
        freeSpace = *space;
    if (const auto reason = obstacle(files, question, *where, freeSpace))
        return refused(*reason, freeSpace);
    Answer answer{.outcome = outcome(files, question, *where)};
    answer.outcome.freeSpace = freeSpace;
    if (where->newName)
        answer.pairs = {{question.sources.front(), where->folder.appending(*where->newName)}};
    else
        answer.pairs = pairsInto(question.sources, where->folder);
    return answer;
}

std::optional<std::string> storingObstacle(const FileSystem& files, const FileUrl& folder) {
    const auto reason = writeObstacle(files, folder);
    if (!reason)
        return std::nullopt;
    return "Do složky " + quoted(folder.lastComponent()) + " nejde nic uložit: " + *reason;
}

std::vector<TransferPair> pairsInto(const std::vector<FileUrl>& sources, const FileUrl& folder) {
    std::vector<TransferPair> pairs;
    pairs.reserve(sources.size());
    for (const auto& source : sources)
        pairs.push_back({source, folder.appending(source.lastComponent())});
    return pairs;
}

} // namespace fennik::app::TransferTarget

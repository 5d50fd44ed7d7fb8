#include "app/model/QuickPreview.h"

#include "app/model/ArchivePaths.h"
#include "app/model/ItemAt.h"

#include <chrono>
#include <utility>

namespace fennik::app {

namespace {

/// Who runs through many rows wants none of their previews.
constexpr auto restOfCursor = std::chrono::milliseconds(100);

/// Whether the one shows what the other would.
bool isSame(const std::optional<PreviewSubject>& one, const std::optional<PreviewSubject>& other) {
    if (!one || !other)
        return one.has_value() == other.has_value();
    const auto indexOf = [](const PreviewSubject& subject) {
        return subject.archive ? subject.archive->index.get() : nullptr;
    };
    return one->item == other->item && indexOf(*one) == indexOf(*other) &&
           one->showHidden == other->showHidden;
}

} // namespace

QuickPreview::QuickPreview(PanelServices services, const Settings& settings,
                           const PreviewDecoder& decoder, std::function<void()> changed)
    : services_(std::move(services)),
      settings_(settings),
      decoder_(decoder),
      changed_(std::move(changed)),
      loading_(services_.delayed) {}

void QuickPreview::open(PanelModel& panel) {
    panel_ = &panel;
    load();
}

bool QuickPreview::close() {
    if (!isOpen())
        return false;
    panel_ = nullptr;
    loading_.cancel();
    flag_->set();
    life_.reset();
    subject_.reset();
    content_ = {};
    isLoading_ = false;
    changed_();
    return true;
}

void QuickPreview::follow(const PanelModel& panel, PanelChanges changes) {
    constexpr auto ofItem = PanelChange::cursor | PanelChange::items | PanelChange::state;
    if (&panel != panel_)
        return;
    if (changes & ofItem) {
        // Before the first rows of a folder come, what was shown may as well stay.
        const bool isBetweenFolders = panel.loading() && panel.items().empty();
        if (isBetweenFolders || isSame(subject_, wanted()))
            loading_.cancel();
        else
            loading_.schedule(restOfCursor, [this] { load(); });
    }
    if (changes & (ofItem | PanelChange::marks))
        changed_();
}

std::optional<PreviewSubject> QuickPreview::wanted() const {
    const auto under = panel_->cursorItem();
    if (!under)
        return std::nullopt;
    PreviewSubject subject{.item = panel_->items()[panel_->cursor()],
                           .archive = panel_->archive(),
                           .showHidden = settings_.get(SettingKeys::showHidden)
                                             ? FolderOpener::ShowHidden::yes
                                             : FolderOpener::ShowHidden::no};
    if (!under->isParentLink)
        return subject;
    // Where the way up leads, as an item among others.
    subject.item = itemAt(panel_->location().parent(), FileKind::directory);
    if (!subject.archive)
        return subject;
    auto& inner = subject.archive->inner;
    const auto folder = std::string(ArchivePaths::parent(inner));
    if (!folder.empty()) {
        inner = std::string(ArchivePaths::parent(folder));
        return subject;
    }
    if (subject.archive->outer != nullptr)
        return std::nullopt;
    if (!inner.empty())
        subject.item.kind = FileKind::file; // the archive itself
    subject.archive.reset();
    return subject;
}

void QuickPreview::load() {
    subject_ = wanted();
    ++token_;
    flag_->set();
    flag_ = std::make_shared<CancelFlag>();
    life_ = std::make_shared<int>();
    isLoading_ = subject_.has_value();
    if (subject_) {
        runThen(
            services_.sizingDisk, services_.main, panel_->folder().path(), life_,
            [services = services_, &decoder = decoder_, flag = flag_, subject = *subject_] {
                return PreviewReading(services, decoder, flag).read(subject);
            },
            [this](PreviewContent content) {
                content_ = std::move(content);
                isLoading_ = false;
                changed_();
            });
    }
    changed_();
}

QuickPreview::Place QuickPreview::place() const {
    if (!isOpen())
        return {};
    const auto& marks = panel_->marks();
    Place place{.count = marks.marked().size()};
    const auto& items = panel_->items();
    const auto item = panel_->cursorItem();
    if (!item || !marks.isMarked(item->name))
        return place;
    for (std::size_t row = 0; row <= panel_->cursor(); ++row) {
        if (marks.isMarked(items.view(row).name))
            ++place.number;
    }
    return place;
}

std::optional<std::size_t> QuickPreview::target(Direction direction) const {
    if (!isOpen() || !panel_->cursorItem())
        return std::nullopt;
    const auto& items = panel_->items();
    const auto& marks = panel_->marks();
    const bool takesAll = marks.marked().empty();
    const std::size_t by = direction == Direction::forth ? 1 : std::size_t(-1);
    for (auto row = panel_->cursor() + by; row < items.size(); row += by) {
        const auto item = items.view(row);
        if (!item.isParentLink && (takesAll || marks.isMarked(item.name)))
            return row;
    }
    return std::nullopt;
}

void QuickPreview::step(Direction direction) {
    if (const auto row = target(direction))
        panel_->setCursor(static_cast<std::ptrdiff_t>(*row));
}

} // namespace fennik::app

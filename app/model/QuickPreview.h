#pragma once

#include "app/model/PanelModel.h"
#include "app/model/PreviewReading.h"
#include "core/base/DelayedWork.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace fennik::app {

/// The quick preview: of which item it is, and what is shown of that. It goes with the cursor of
/// one panel, a moment behind it. What is no longer wanted is cancelled, and dropped where it comes
/// all the same. Lives on the main thread.
class QuickPreview {
public:
    /// Where the item stands among the marked ones.
    struct Place {
        std::size_t number = 0; ///< from 1 on; 0: it is not marked
        std::size_t count = 0;  ///< of marked items
    };
    enum class Direction { back, forth };

    /// All outlives this object. `changed` is called after every change of what it has to tell.
    QuickPreview(PanelServices services, const Settings& settings, const PreviewDecoder& decoder,
                 std::function<void()> changed);
    ~QuickPreview() { flag_->set(); }
    QuickPreview(const QuickPreview&) = delete;
    QuickPreview& operator=(const QuickPreview&) = delete;

    bool isOpen() const { return panel_ != nullptr; }
    /// Shows the item under the cursor of `panel`, and goes with it from now on.
    void open(PanelModel& panel);
    /// False when there was none.
    bool close();
    /// Something of `panel` has changed.
    void follow(const PanelModel& panel, PanelChanges changes);

    /// None where there is no item under the cursor.
    const std::optional<PreviewSubject>& subject() const { return subject_; }
    /// Of the subject, unless it is loading; then still of the one before.
    const PreviewContent& content() const { return content_; }
    bool isLoading() const { return isLoading_; }
    /// Grows with each change of `subject` and with each loading.
    int token() const { return token_; }

    Place place() const;
    /// Puts the cursor on the next item, or on the next marked one while there are any.
    void step(Direction direction);
    bool canStep(Direction direction) const { return target(direction).has_value(); }

private:
    std::optional<std::size_t> target(Direction direction) const;
    std::optional<PreviewSubject> wanted() const;
    void load();

    PanelServices services_;
    const Settings& settings_;
    const PreviewDecoder& decoder_;
    std::function<void()> changed_;
    PanelModel* panel_ = nullptr; ///< while it is open
    std::optional<PreviewSubject> subject_;
    PreviewContent content_;
    bool isLoading_ = false;
    int token_ = 0;
    DelayedWork loading_;                                               ///< once the cursor rests
    std::shared_ptr<CancelFlag> flag_ = std::make_shared<CancelFlag>(); ///< of the newest reading
    std::shared_ptr<int> life_;                                         ///< likewise
};

} // namespace fennik::app

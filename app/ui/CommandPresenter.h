#pragma once

#include "app/model/CommandLine.h"
#include "app/ui/UiContext.h"

#include <QObject>

#include <functional>

namespace fennik::ui {

class CommandLineBar;
class OutputCard;

/// Shows the command line that the application has, and the output of its last command, and passes
/// on what the user wants of them.
class CommandPresenter final : public QObject {
    Q_OBJECT

public:
    /// The card is made when a command first runs. It outlives this, as the bar does.
    using MakeCard = std::function<OutputCard&()>;
    CommandPresenter(const UiContext& context, CommandLineBar& bar, MakeCard makeCard,
                     QObject* parent);

    /// The active panel shows something else, or another panel is the active one.
    void takePlace();

private:
    void takeChange(app::CommandChanges changes);
    void takeKeys();
    OutputCard& card();

    UiContext context_;
    app::AppModel& app_;
    app::CommandLine& line_;
    CommandLineBar& bar_;
    MakeCard makeCard_;
    OutputCard* card_ = nullptr;
};

} // namespace fennik::ui

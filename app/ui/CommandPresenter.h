#pragma once

#include "app/model/CommandLine.h"
#include "app/ui/UiContext.h"

#include <QObject>

namespace fennik::ui {

class CommandLineBar;
class OutputCard;

/// Shows the command line that the application has, and the output of its last command, and passes
/// on what the user wants of them.
class CommandPresenter final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    CommandPresenter(const UiContext& context, CommandLineBar& bar, OutputCard& card,
                     QObject* parent);

    /// The active panel shows something else, or another panel is the active one.
    void takePlace();

private:
    void takeChange(app::CommandChanges changes);
    void takeKeys();

    UiContext context_;
    app::AppModel& app_;
    app::CommandLine& line_;
    CommandLineBar& bar_;
    OutputCard& card_;
};

} // namespace fennik::ui

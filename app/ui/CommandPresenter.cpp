#include "app/ui/CommandPresenter.h"

#include "app/ui/CommandLineBar.h"
#include "app/ui/OutputCard.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <utility>

namespace fennik::ui {

using app::CommandChange;

CommandPresenter::CommandPresenter(const UiContext& context, CommandLineBar& bar, MakeCard makeCard,
                                   QObject* parent)
    : QObject(parent),
      context_(context),
      app_(context.app),
      line_(context.app.commandLine()),
      bar_(bar),
      makeCard_(std::move(makeCard)) {
    connect(&bar_, &CommandLineBar::edited, this,
            [this](const QString& text) { line_.setText(text.toStdString()); });
    connect(&bar_, &CommandLineBar::runRequested, this, [this] { line_.run(); });
    connect(&line_, &app::CommandLine::changed, this, &CommandPresenter::takeChange);
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &CommandPresenter::takeKeys);
    bar_.setHistory(line_.history());
    takeKeys();
    takePlace();
}

OutputCard& CommandPresenter::card() {
    if (card_ != nullptr)
        return *card_;
    card_ = &makeCard_();
    connect(card_, &OutputCard::stopRequested, this, [this] { line_.stop(); });
    connect(card_, &OutputCard::closeRequested, this, [this] { line_.closeOutput(); });
    connect(card_, &OutputCard::copyRequested, this, [this] {
        line_.copyOutput();
        app_.showToast("Výstup zkopírován", app::Toast::Kind::ok);
    });
    return *card_;
}

void CommandPresenter::takeKeys() {
    bar_.setLegend(context_.keys().of(app::KAction::commandLine));
}

void CommandPresenter::takePlace() {
    bar_.setFolder(shownPath(app_.activePanel().folder().path(), app_.home().path()));
}

void CommandPresenter::takeChange(app::CommandChanges changes) {
    if (changes & (CommandChange::text | CommandChange::failure)) {
        bar_.setHistory(line_.history());
        bar_.setText(fromUtf8(line_.text()));
    }
    if (changes.testFlag(CommandChange::focus))
        bar_.takeFocus();
    if (changes.testFlag(CommandChange::failure) && line_.failure())
        app_.showToast(PlatformWords::failureMessage(*line_.failure()).toStdString(),
                       app::Toast::Kind::error);
    const auto& run = line_.lastRun();
    if (changes.testFlag(CommandChange::run)) {
        if (run)
            card().showRun(*run, shownPath(run->directory, app_.home().path()));
        else if (card_ != nullptr)
            card_->setOnShow(false);
    } else if (changes.testFlag(CommandChange::output) && run) {
        card().showOutput(*run);
    }
}

} // namespace fennik::ui

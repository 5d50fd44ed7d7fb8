#include "app/ui/QueuePresenter.h"

#include "app/ui/FunctionKeyBar.h"
#include "app/ui/OperationsCard.h"
#include "core/operations/TransferEngine.h"

namespace fennik::ui {

QueuePresenter::QueuePresenter(const UiContext& context, OperationsCard& card, FunctionKeyBar& bar,
                               QObject* parent)
    : QObject(parent), context_(context), app_(context.app), card_(card), bar_(bar) {
    connect(&card_, &OperationsCard::pauseRequested, this,
            [this](const Uuid& job) { app_.engine().pause(job); });
    connect(&card_, &OperationsCard::resumeRequested, this,
            [this](const Uuid& job) { app_.engine().resume(job); });
    connect(&card_, &OperationsCard::cancelRequested, this,
            [this](const Uuid& job) { app_.cancelJob(job); });
    connect(&card_, &OperationsCard::removeRequested, this,
            [this](const Uuid& job) { app_.engine().remove(job); });
    connect(&card_, &OperationsCard::tidyRequested, this, [this] { app_.engine().removeEnded(); });
    connect(&card_, &OperationsCard::hideRequested, this,
            [this] { app_.setShowsOperations(false); });
    connect(&bar_, &FunctionKeyBar::queueClicked, this,
            [this] { app_.perform(app::KAction::operations); });
    connect(&app_, &app::AppModel::changed, this, &QueuePresenter::takeApp);
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &QueuePresenter::takeKeys);
    takeKeys();
}

void QueuePresenter::takeKeys() {
    card_.setUndoWords(context_.keys().sentence("hotové zůstaly, vrátí je ⌘Z"));
    showBrief();
}

void QueuePresenter::takeApp(app::AppChanges changes) {
    if (changes.testFlag(app::AppChange::jobs))
        card_.setJobs(app_.jobs());
    if (changes.testFlag(app::AppChange::operations))
        card_.setOnShow(app_.showsOperations());
    if (changes & (app::AppChange::jobs | app::AppChange::operations))
        showBrief();
}

void QueuePresenter::showBrief() {
    bar_.setQueue(app_.showsOperations() ? std::nullopt : JobTexts::brief(app_.jobs()),
                  context_.keys().titleAndKey(app::KAction::operations));
}

} // namespace fennik::ui

#pragma once

#include "app/ui/UiContext.h"

#include <QObject>

namespace fennik::ui {

class FunctionKeyBar;
class OperationsCard;

/// Shows the jobs that the application has, in their card or else in a few words beside the
/// function keys, and passes on what the user wants of them.
class QueuePresenter final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    QueuePresenter(const UiContext& context, OperationsCard& card, FunctionKeyBar& bar,
                   QObject* parent);

private:
    void takeApp(app::AppChanges changes);
    void takeKeys();
    void showBrief();

    UiContext context_;
    app::AppModel& app_;
    OperationsCard& card_;
    FunctionKeyBar& bar_;
};

} // namespace fennik::ui

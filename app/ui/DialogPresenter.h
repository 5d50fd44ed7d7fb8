#pragma once

#include "app/ui/UiContext.h"

#include <QObject>

#include <optional>

class QWidget;

namespace fennik::ui {

class DialogCard;
class DialogHost;
class TargetDialog;

/// Shows the dialog that the application has, over the content of a window, and passes its answers
/// on.
class DialogPresenter final : public QObject {
    Q_OBJECT

public:
    DialogPresenter(const UiContext& context, QWidget* window);

signals:
    /// There is no dialog any more.
    void closed();

private:
    void takeApp(app::AppChanges changes);
    void takeDialog();
    void takeOutcome();
    /// Passes on what is typed; relative paths begin at `base`.
    void follow(TargetDialog& card, const FileUrl& base);
    DialogCard* card(const app::TransferDialog& dialog);
    DialogCard* card(const app::NewFolderDialog& dialog);
    DialogCard* card(const app::TrashDialog& dialog);
    DialogCard* card(const app::PasteDialog& dialog);
    DialogCard* card(const app::ConflictDialog& dialog);
    DialogCard* card(const app::PackDialog& dialog);
    DialogCard* card(const app::ExtractDialog& dialog);
    DialogCard* card(const app::PasswordDialog& dialog);
    DialogCard* card(const app::MaskDialog& dialog);

    /// The password that was given last, until it is known whether it was right.
    struct Tried {
        FileUrl archive = {};
        QString password = {};
    };

    UiContext context_;
    app::AppModel& app_;
    DialogHost* host_;
    std::optional<Tried> tried_;
};

} // namespace fennik::ui

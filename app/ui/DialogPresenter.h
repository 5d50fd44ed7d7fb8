#pragma once

#include "app/ui/UiContext.h"

#include <QObject>
#include <QRect>

#include <functional>
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
    /// `beside` is where a dialog stands that is about an item of the active panel.
    DialogPresenter(const UiContext& context, QWidget* window, std::function<QRect()> beside);

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
    DialogCard* card(const app::InfoDialog& dialog);

    /// The password that was given last, until it is known whether it was right.
    struct Tried {
        FileUrl archive = {};
        QString password = {};
    };

    UiContext context_;
    app::AppModel& app_;
    DialogHost* host_;
    std::function<QRect()> beside_;
    std::optional<Tried> tried_;
};

} // namespace fennik::ui

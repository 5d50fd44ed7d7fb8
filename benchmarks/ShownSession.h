#pragma once

#include "app/main/Session.h"
#include "app/ui/PanelTable.h"

#include <QApplication>
#include <QObject>

#include <string>

namespace fennik::bench {

/// Fennik with everything that its program has, but without a screen, showing two folders
/// completely. The keyboard is in the left panel. No sizes of folders are computed, as they would
/// come at any moment. One per program.
class ShownSession final : public QObject {
public:
    /// Returns once both folders are listed and the left one is painted.
    ShownSession(int argumentCount, char** arguments, const std::string& left,
                 const std::string& right);
    ~ShownSession() override;

    app::AppModel& app() { return session_.app(); }
    app::PanelModel& panel() { return session_.app().panel(app::PanelSide::left); }

    /// Presses a key in the left panel.
    void press(Qt::Key key, const QString& text = {});
    /// Waits for the next picture of the left panel's rows. The toolkit puts painting off, so that
    /// without waiting several presses would share one.
    void waitForPaint();
    /// Paints the left panel's rows anew and waits for that.
    void repaint();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ui::PanelTable& table();

    int argumentCount_;
    QApplication application_;
    app::Session session_;
    bool wasPainted_ = false;
};

} // namespace fennik::bench

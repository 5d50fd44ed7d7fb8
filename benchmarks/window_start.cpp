// Fennik with everything that its program has, which tells when its pictures stood on the screen:
//   window_start LEFT RIGHT
#include "app/main/Session.h"
#include "app/system/DisplayProbe.h"
#include "app/ui/PanelView.h"
#include "app/ui/WindowStyle.h"
#include "benchmarks/PictureClock.h"

#include <QApplication>
#include <QIcon>

int main(int argumentCount, char** arguments) {
    using namespace fennik;
    if (argumentCount != 3 || system::probeDisplay() != system::Display::available)
        return 2;
    QApplication::setStyle(new ui::WindowStyle);
    const QApplication application(argumentCount, arguments);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/fennik.svg")));
    const app::Options options{.left = arguments[1], .right = arguments[2]};
    app::Session session(options);
    const auto viewport = [&session](app::PanelSide side) -> QWidget& {
        return *session.window().view(side).table().viewport();
    };
    auto& left = viewport(app::PanelSide::left);
    const bench::PictureClock clock(
        left, viewport(app::PanelSide::right), [&](const QWidget& painted) {
            const auto side = &painted == &left ? app::PanelSide::left : app::PanelSide::right;
            const auto& panel = session.app().panel(side);
            return panel.settled() && !panel.items().empty();
        });
    session.start();
    const int code = QApplication::exec();
    session.shutDown();
    return code;
}

// Opens a window and prints the combination of each key that is pressed in it, one a line.
#include "app/system/KeyboardLayouts.h"
#include "app/ui/KeyPress.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <iostream>
#include <memory>

namespace {

using namespace fennik;

class KeyPrinter final : public QWidget {
protected:
    bool event(QEvent* event) override {
        // Here, because Tab does not get any further.
        if (event->type() == QEvent::KeyPress)
            print(*static_cast<const QKeyEvent*>(event));
        else if (event->type() == QEvent::FocusIn)
            std::cout << "ready" << '\n' << std::flush;
        else
            return QWidget::event(event);
        return true;
    }

private:
    void print(const QKeyEvent& event) {
        const auto nobodyOwns = [](const KeyCombo&) { return false; };
        if (const auto combo = ui::KeyPress::combo(event, *layout_, nobodyOwns))
            std::cout << combo->displayForm() << '\n' << std::flush;
    }

    std::unique_ptr<app::KeyboardLayout> layout_ = system::makeKeyboardLayout();
};

} // namespace

int main(int argumentCount, char** arguments) {
    const QApplication application(argumentCount, arguments);
    KeyPrinter printer;
    printer.setFocusPolicy(Qt::StrongFocus);
    printer.show();
    return QApplication::exec();
}

#include "app/ui/PlacesMenu.h"
#include "app/ui/MenuList.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

class PlacesMenuTest : public testing::Test {
protected:
    PlacesMenuTest() {
        window.resize(760, 480);
        menu.setAddLegend(QStringLiteral("Ctrl+Shift+D"));
        QObject::connect(&menu, &PlacesMenu::opened,
                         [this](const std::string& path) { note("open " + path); });
        QObject::connect(&menu, &PlacesMenu::openedInNewTab,
                         [this](const std::string& path) { note("tab " + path); });
        QObject::connect(&menu, &PlacesMenu::removed, [this](const std::string& path) {
            note("remove " + path);
            std::erase(favorites, path);
            fill();
        });
        QObject::connect(&menu, &PlacesMenu::addRequested, [this] { note("add"); });
        QObject::connect(&menu, &PlacesMenu::closed, [this] { note("closed"); });
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        fill();
        menu.popUp({20, 20});
    }

    void fill() { menu.setPlaces(favorites, recents, "/home/jana"); }
    void note(const std::string& what) { said += (said.empty() ? "" : "; ") + what; }
    std::string whatWasSaid() { return std::exchange(said, {}); }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&filter, Qt::Key(key), modifiers);
    }
    QString rows() {
        QStringList texts;
        for (int row = 0; row < list.count(); ++row)
            texts << list.row(row).spoken;
        return texts.join(QLatin1Char('|'));
    }
    QString chosen() { return list.chosen() < 0 ? QString() : list.row(list.chosen()).spoken; }

    Theme theme{Appearance::light};
    Icons icons{theme};
    QWidget window;
    QLineEdit other{&window};
    PlacesMenu menu{theme, icons, &window};
    QLineEdit& filter = *menu.findChild<QLineEdit*>();
    MenuList& list = *menu.findChild<MenuList*>();
    std::vector<std::string> favorites{"/home/jana/Dokumenty/Smlouvy", "/home/jana/Šablony",
                                       "/home/janasson"};
    std::vector<std::string> recents{"/", "/srv/\xFF"};
    std::string said;
};

} // namespace

TEST_F(PlacesMenuTest, placesAreListedWithTheirParents) {
    EXPECT_EQ(rows(), "Oblíbené|Smlouvy, ~/Dokumenty, 1|Šablony, ~, 2|janasson, /home, 3|"
                      "Nedávné|/|\uFFFD, /srv|Přidat složku do oblíbených, Ctrl+Shift+D");
    EXPECT_EQ(QApplication::focusWidget(), &filter);
    EXPECT_EQ(menu.width(), 460);
    favorites.clear();
    fill();
    EXPECT_TRUE(rows().startsWith("Oblíbené|Zatím nic – Ctrl+Shift+D přidá tuto složku|Nedávné|"));
    EXPECT_EQ(chosen(), "/");
    recents.clear();
    fill();
    EXPECT_EQ(chosen(), "Přidat složku do oblíbených, Ctrl+Shift+D");
}

TEST_F(PlacesMenuTest, arrowsGoRoundOverPlacesAndEnterOpens) {
    press(Qt::Key_Up);
    EXPECT_EQ(chosen(), "Přidat složku do oblíbených, Ctrl+Shift+D");
    press(Qt::Key_Down);
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Down);
    EXPECT_EQ(chosen(), "/");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(whatWasSaid(), "closed; open /srv/\xFF");
    EXPECT_TRUE(menu.isHidden());

    menu.popUp({20, 20});
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(whatWasSaid(), "closed; tab /home/jana/Dokumenty/Smlouvy");
    menu.popUp({20, 20});
    press(Qt::Key_Up);
    press(Qt::Key_Enter);
    EXPECT_EQ(whatWasSaid(), "closed; add");
}

TEST_F(PlacesMenuTest, digitsOpenFavoritesOnlyWhileNothingIsTyped) {
    press(Qt::Key_4);
    EXPECT_EQ(filter.text(), "4");
    press(Qt::Key_2);
    EXPECT_EQ(whatWasSaid(), "");
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_EQ(whatWasSaid(), "");
    press(Qt::Key_2);
    EXPECT_EQ(whatWasSaid(), "closed; open /home/jana/Šablony");
}

TEST_F(PlacesMenuTest, theFilterLooksForPartsOfNamesAndPaths) {
    QTest::keyClicks(&filter, QStringLiteral("SAB"));
    EXPECT_EQ(rows(), "Oblíbené|Šablony, ~|Přidat složku do oblíbených, Ctrl+Shift+D");
    EXPECT_EQ(chosen(), "Šablony, ~");
    filter.setText(QStringLiteral("~/dok"));
    EXPECT_EQ(chosen(), "Smlouvy, ~/Dokumenty");
    filter.setText(QStringLiteral("home/jana/"));
    EXPECT_EQ(list.count(), 4);
    filter.setText(QStringLiteral("xyz"));
    EXPECT_TRUE(rows().startsWith("Tomu neodpovídá žádná složka|"));
    press(Qt::Key_Return);
    EXPECT_EQ(whatWasSaid(), "");
    EXPECT_TRUE(menu.isVisible());
}

TEST_F(PlacesMenuTest, backspaceRemovesTheFavoriteUnderTheCursor) {
    press(Qt::Key_Down);
    press(Qt::Key_Backspace);
    EXPECT_EQ(whatWasSaid(), "remove /home/jana/Šablony");
    EXPECT_EQ(chosen(), "janasson, /home, 2");
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&filter, &held);
    EXPECT_EQ(whatWasSaid(), "");
    press(Qt::Key_Backspace);
    EXPECT_EQ(whatWasSaid(), "remove /home/janasson");
    EXPECT_EQ(chosen(), "/"); // a recent folder cannot be removed
    press(Qt::Key_Backspace);
    EXPECT_EQ(whatWasSaid(), "");
}

TEST_F(PlacesMenuTest, escapeAndAnotherPlaceForTheKeyboardCloseIt) {
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &filter);
    press(Qt::Key_Escape);
    EXPECT_EQ(whatWasSaid(), "closed");
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
    menu.popUp({20, 20});
    other.setFocus();
    EXPECT_EQ(whatWasSaid(), "closed");
    EXPECT_TRUE(menu.isHidden());
}

TEST_F(PlacesMenuTest, manyPlacesScrollAndClicksOpenThem) {
    for (int i = 0; i < 40; ++i)
        favorites.push_back("/srv/" + std::to_string(i));
    fill();
    window.grab();
    EXPECT_TRUE(window.rect().contains(menu.geometry()));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    const auto place = list.visualRect(list.currentIndex());
    EXPECT_TRUE(list.viewport()->rect().contains(place));
    EXPECT_EQ(list.row(3).note, "3");
    EXPECT_EQ(list.row(10).note, "");

    press(Qt::Key_Home);
    filter.setText(QStringLiteral("39"));
    const auto heading = list.visualRect(list.model()->index(0, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, heading);
    EXPECT_EQ(whatWasSaid(), "");
    EXPECT_EQ(chosen(), "39, /srv");
    const auto middle = list.visualRect(list.model()->index(1, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(whatWasSaid(), "closed; open /srv/39");
}

TEST_F(PlacesMenuTest, aChangeOfThemeReachesEveryPart) {
    const auto& dark = Tokens::of(Appearance::dark);
    theme.setAppearance(Appearance::dark);
    const auto image = menu.grab().toImage();
    const auto inList = [&](int row, int x) {
        const auto place = list.visualRect(list.model()->index(row, 0));
        return image.pixelColor(x, list.y() + place.center().y());
    };
    EXPECT_EQ(inList(1, 300), dark.accent);
    EXPECT_EQ(inList(2, 300), dark.raised);
    EXPECT_EQ(image.pixelColor(filter.geometry().center()), dark.field);
    EXPECT_EQ(filter.palette().color(QPalette::PlaceholderText), dark.text3);
}

TEST_F(PlacesMenuTest, screenReadersHearAList) {
    auto* places = QAccessible::queryAccessibleInterface(&list);
    EXPECT_EQ(places->role(), QAccessible::List);
    EXPECT_EQ(places->child(1)->text(QAccessible::Name), "Smlouvy, ~/Dokumenty, 1");
    EXPECT_TRUE(places->child(1)->state().selected);
}

} // namespace fennik::test

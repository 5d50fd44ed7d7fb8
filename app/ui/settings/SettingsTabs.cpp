#include "app/ui/settings/SettingsTabs.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/OneOfSeveral.h"

#include <QAbstractButton>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double tabHeight = 32;
constexpr double padding = 10;
constexpr double iconSide = 16;
constexpr double iconGap = 10;
constexpr double leastWidth = 160;
constexpr double radius = 7;

} // namespace

class SettingsTabs::Tab final : public QAbstractButton {
public:
    Tab(const Page& page, const Theme& theme, Icons& icons, QWidget* parent)
        : QAbstractButton(parent), icon_(page.icon), theme_(theme), icons_(icons) {
        setObjectName(page.name);
        setText(page.title);
        setAccessibleName(page.title);
        makeOneOfSeveral(*this);
    }

    void setTextShown(bool isShown) {
        showsText_ = isShown;
        setToolTip(isShown ? QString() : text());
        updateGeometry();
        update();
    }

    QSize sizeHint() const override {
        if (!showsText_)
            return {theme_.px(iconSide + 2 * padding), theme_.px(tabHeight)};
        const QFontMetrics metrics(theme_.font(FontRole::body, QFont::Medium));
        const int words = metrics.horizontalAdvance(text()) + theme_.px(iconSide + iconGap) +
                          2 * theme_.px(padding) + 2;
        return {std::max(words, theme_.px(leastWidth)), theme_.px(tabHeight)};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& tokens = theme_.tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        if (isChecked() || underMouse()) {
            painter.setBrush(isChecked() ? tokens.accent : tokens.hover);
            painter.drawRoundedRect(rect(), radius, radius);
        }
        if (hasFocus()) {
            painter.setPen(QPen(tokens.onAccent, 1.5));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), radius - 2,
                                    radius - 2);
        }
        const int side = theme_.px(iconSide);
        const int left = theme_.px(padding);
        painter.drawPixmap(left, (height() - side) / 2,
                           icons_.line(icon_, side, isChecked() ? tokens.onAccent : tokens.text2,
                                       devicePixelRatioF()));
        if (!showsText_)
            return;
        painter.setFont(theme_.font(FontRole::body, isChecked() ? QFont::Medium : QFont::Normal));
        painter.setPen(isChecked() ? tokens.onAccent : tokens.text);
        painter.drawText(rect().adjusted(left + side + theme_.px(iconGap), 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
    }

private:
    QString icon_;
    bool showsText_ = true;
    const Theme& theme_;
    Icons& icons_;
};

SettingsTabs::SettingsTabs(const std::vector<Page>& pages, const Theme& theme, Icons& icons,
                           QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("settingsTabs"));
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Oddíly nastavení"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme.px(8), theme.px(10), theme.px(8), theme.px(10));
    layout->setSpacing(theme.px(2));
    for (const auto& page : pages) {
        auto* tab = new Tab(page, theme, icons, this);
        connect(tab, &QAbstractButton::toggled, this,
                [this, index = int(tabs_.size())](bool isChosen) {
                    if (isChosen)
                        emit chosenChanged(index);
                });
        layout->addWidget(tab);
        tabs_.push_back(tab);
    }
    layout->addStretch();
    tabs_.front()->setChecked(true);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SettingsTabs::choose(int index) {
    tabs_[std::size_t(index)]->setChecked(true);
}

void SettingsTabs::setTextShown(bool isShown) {
    for (auto* tab : tabs_)
        tab->setTextShown(isShown);
}

void SettingsTabs::takeFocus() {
    (*std::ranges::find_if(tabs_, &QAbstractButton::isChecked))->setFocus(Qt::TabFocusReason);
}

void SettingsTabs::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.fillRect(rect(), tokens.window);
    painter.fillRect(width() - 1, 0, 1, height(), tokens.line);
}

} // namespace fennik::ui

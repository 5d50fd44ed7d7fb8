#include "app/ui/dialogs/RightsTable.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/Tick.h"

#include <QPainter>

#include <array>

namespace fennik::ui {

namespace {

constexpr std::array holders{"vlastník", "skupina", "ostatní"};
constexpr std::array rights{"čtení", "zápis", "spuštění"};
constexpr double rowHeight = 21;
constexpr double holderWidth = 90;
constexpr double rightWidth = 66;

QString text(const char* words) {
    return QString::fromUtf8(words);
}

} // namespace

RightsTable::RightsTable(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("rightsTable"));
    setAccessibleRole(*this, QAccessible::StaticText);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    setMode(0);
}

void RightsTable::setMode(std::uint16_t mode) {
    mode_ = mode;
    setAccessibleName(spoken());
    update();
}

bool RightsTable::has(int row, int column) const {
    return (mode_ >> (8 - 3 * row - column) & 1) != 0;
}

QString RightsTable::spoken() const {
    QStringList rows;
    for (int row = 0; row < int(holders.size()); ++row) {
        QStringList allowed;
        for (int column = 0; column < int(rights.size()); ++column) {
            if (has(row, column))
                allowed << text(rights.at(std::size_t(column)));
        }
        rows << text(holders.at(std::size_t(row))) + QStringLiteral(": ") +
                    (allowed.isEmpty() ? QStringLiteral("nic")
                                       : allowed.join(QStringLiteral(", ")));
    }
    return rows.join(QStringLiteral("; "));
}

QSize RightsTable::sizeHint() const {
    return {theme_.px(holderWidth + 3 * rightWidth), theme_.px(4 * rowHeight)};
}

void RightsTable::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(theme_.font(FontRole::small));
    const auto cell = [this](int row, int column) {
        return QRectF(theme_.px(holderWidth + column * rightWidth), theme_.px(row * rowHeight),
                      theme_.px(rightWidth), theme_.px(rowHeight));
    };
    painter.setPen(tokens.text2);
    for (int column = 0; column < int(rights.size()); ++column)
        painter.drawText(cell(0, column), Qt::AlignCenter, text(rights.at(std::size_t(column))));
    for (int row = 0; row < int(holders.size()); ++row) {
        painter.setPen(tokens.text2);
        painter.drawText(QRectF(0, theme_.px((row + 1) * rowHeight), theme_.px(holderWidth),
                                theme_.px(rowHeight)),
                         Qt::AlignLeft | Qt::AlignVCenter, text(holders.at(std::size_t(row))));
        for (int column = 0; column < int(rights.size()); ++column) {
            const auto place = cell(row + 1, column);
            const double side = theme_.px(13);
            if (has(row, column)) {
                drawTick(painter,
                         QRectF(place.center() - QPointF(side / 2, side / 2), QSizeF(side, side)),
                         tokens.ok);
            } else {
                painter.setPen(tokens.text3);
                painter.drawText(place, Qt::AlignCenter, QStringLiteral("–"));
            }
        }
    }
}

} // namespace fennik::ui

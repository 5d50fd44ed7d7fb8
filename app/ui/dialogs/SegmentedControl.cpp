#include "app/ui/dialogs/SegmentedControl.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/OneOfSeveral.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double controlHeight = 32;
constexpr double padding = 14;
constexpr double detailGap = 8;
constexpr double radius = 7;
constexpr double iconSide = 16;
constexpr double iconGap = 7;

} // namespace

class SegmentedControl::Segment final : public QAbstractButton {
public:
    Segment(const Choice& choice, const Theme& theme, Icons& icons, QWidget* parent)
        : QAbstractButton(parent),
          detail_(choice.detail),
          icon_(choice.icon),
          theme_(theme),
          icons_(icons) {
        setText(choice.title);
        setAccessibleName(detail_.isEmpty() ? choice.title
                                            : choice.title + QStringLiteral(", ") + detail_);
        setEnabled(choice.availability == Availability::available);
        makeOneOfSeveral(*this);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

    QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()), theme_.px(controlHeight)};
    }
    int naturalWidth() const {
        const QFontMetrics metrics(theme_.font(FontRole::body, QFont::DemiBold));
        return metrics.horizontalAdvance(text()) + iconRoom() + 2 * theme_.px(padding) + 2;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& tokens = theme_.tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked()) {
            const double line = hasFocus() ? 2 : 1;
            painter.setPen(QPen(tokens.accent, line));
            painter.setBrush(tokens.accentSoft);
            const double half = line / 2;
            painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius - 1,
                                    radius - 1);
        } else if (isEnabled() && underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(tokens.hover);
            painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 5, 5);
        }
        paintWords(painter);
    }

private:
    int iconRoom() const { return icon_.isEmpty() ? 0 : theme_.px(iconSide + iconGap); }

    void paintWords(QPainter& painter) const {
        const auto& tokens = theme_.tokens();
        const auto font =
            theme_.font(FontRole::body, isChecked() ? QFont::DemiBold : QFont::Normal);
        const int side = std::min(theme_.px(padding), width() / 8);
        auto area = rect().adjusted(side, 0, -side, 0);
        const QFontMetrics metrics(font);
        const auto title = metrics.elidedText(text(), Qt::ElideRight, area.width() - iconRoom());
        const auto color = isChecked()   ? tokens.accentText
                           : isEnabled() ? tokens.text
                                         : tokens.control;
        if (!icon_.isEmpty()) {
            const int icon = theme_.px(iconSide);
            const int whole = iconRoom() + metrics.horizontalAdvance(title);
            area.setLeft(area.left() + (area.width() - whole) / 2);
            painter.drawPixmap(area.left(), (height() - icon) / 2,
                               icons_.line(icon_, icon, color, devicePixelRatioF()));
            area.setLeft(area.left() + iconRoom());
        }
        painter.setFont(font);
        painter.setPen(color);
        const auto place = detail_.isEmpty() && icon_.isEmpty() ? Qt::AlignHCenter : Qt::AlignLeft;
        painter.drawText(area, int(place | Qt::AlignVCenter) | Qt::TextSingleLine, title);
        const int used = metrics.horizontalAdvance(title) + theme_.px(detailGap);
        if (detail_.isEmpty() || used >= area.width())
            return;
        const auto detailFont = theme_.font(FontRole::body);
        painter.setFont(detailFont);
        painter.setPen(isChecked()   ? tokens.accentText
                       : isEnabled() ? tokens.text2
                                     : tokens.control);
        const auto room = area.adjusted(used, 0, 0, 0);
        painter.drawText(
            room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
            QFontMetrics(detailFont).elidedText(detail_, Qt::ElideMiddle, room.width()));
    }

    QString detail_;
    QString icon_;
    const Theme& theme_;
    Icons& icons_;
};

SegmentedControl::SegmentedControl(const QString& name, const std::vector<Choice>& choices,
                                   const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    for (const auto& choice : choices) {
        auto* segment = new Segment(choice, theme, icons, this);
        // Wider words get more of the room.
        layout->addWidget(segment, segment->naturalWidth());
        connect(segment, &QAbstractButton::toggled, this,
                [this, index = int(segments_.size())](bool isChosen) {
                    if (isChosen)
                        emit chosenChanged(index);
                });
        segments_.push_back(segment);
    }
    choose(0);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

int SegmentedControl::chosen() const {
    return int(std::ranges::find_if(segments_, &QAbstractButton::isChecked) - segments_.begin());
}

void SegmentedControl::choose(int index) {
    segments_[std::size_t(index)]->setChecked(true);
}

int SegmentedControl::naturalWidth() const {
    int width = 0;
    for (const auto* segment : segments_)
        width += segment->naturalWidth();
    return width;
}

QSize SegmentedControl::sizeHint() const {
    return {0, theme_.px(controlHeight)};
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.control);
    painter.setBrush(tokens.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    for (std::size_t i = 1; i < segments_.size(); ++i)
        painter.fillRect(segments_[i]->x(), 1, 1, height() - 2, tokens.line);
}

} // namespace fennik::ui

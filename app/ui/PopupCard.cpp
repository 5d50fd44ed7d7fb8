#include "app/ui/PopupCard.h"

#include <QEvent>
#include <QPainter>

#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace fennik::ui {

namespace {

constexpr double footMargin = 14;

constexpr int shadowDrop = 8;
constexpr int shadowBlur = 28;

/// How much of a shadow that is `length` long falls on each pixel of the line that it lies on, with
/// its blur at both ends.
std::vector<double> shadowAlong(int length) {
    constexpr double deviation = shadowBlur / 2.0;
    const auto integral = [](double x) {
        return std::erf(x / (deviation * std::numbers::sqrt2)) / 2;
    };
    std::vector<double> shares(static_cast<std::size_t>(length + 2 * shadowBlur));
    double middle = 0.5 - shadowBlur;
    for (auto& share : shares) {
        share = integral(middle) - integral(middle - length);
        ++middle;
    }
    return shares;
}

/// The shadow of a card. A blur is far wider than the card's corners are round.
QImage shadowOf(const QSize& card, const QColor& color) {
    const auto across = shadowAlong(card.width());
    const auto down = shadowAlong(card.height());
    QImage image(card + QSize(2 * shadowBlur, 2 * shadowBlur), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double strength = color.alpha() * down[static_cast<std::size_t>(y)];
        for (const double share : across)
            *line++ = qRgba(color.red(), color.green(), color.blue(), qRound(strength * share));
    }
    return image;
}

} // namespace

class CardShadow final : public QWidget {
public:
    CardShadow(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

    void follow(const QWidget& card) {
        setGeometry(card.geometry()
                        .translated(0, shadowDrop)
                        .adjusted(-shadowBlur, -shadowBlur, shadowBlur, shadowBlur));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& color = theme_.tokens().shadow;
        if (drawn_.size() != size() || drawnColor_ != color) {
            drawn_ = shadowOf(size() - QSize(2 * shadowBlur, 2 * shadowBlur), color);
            drawnColor_ = color;
        }
        QPainter(this).drawImage(0, 0, drawn_);
    }

private:
    const Theme& theme_;
    QImage drawn_;
    QColor drawnColor_;
};

PopupCard::PopupCard(const Theme& theme, QString foot, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      foot_(std::move(foot)),
      shadow_(new CardShadow(theme, parent)) {
    hide();
    connect(this, &QObject::destroyed, shadow_, &QObject::deleteLater);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

bool PopupCard::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
        shadow_->raise();
        raise();
        [[fallthrough]];
    case QEvent::Move:
    case QEvent::Resize:
        followWithShadow();
        break;
    case QEvent::Hide:
        shadow_->hide();
        break;
    case QEvent::MouseButtonPress: // a click beside the rows is none on what lies below
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
        event->accept();
        return true;
    default:
        break;
    }
    return QWidget::event(event);
}

void PopupCard::followWithShadow() {
    shadow_->follow(*this);
    shadow_->setVisible(isVisible());
}

QFont PopupCard::footFont() const {
    return theme_.font(FontRole::small, QFont::Medium);
}

int PopupCard::footWidth() const {
    return QFontMetrics(footFont()).horizontalAdvance(foot_) + theme_.px(2 * footMargin);
}

void PopupCard::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.raised);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 9, 9);
    painter.setFont(footFont());
    painter.setPen(tokens.text2);
    const auto foot = QRect(0, height() - footHeight(), width(), footHeight())
                          .adjusted(theme_.px(footMargin), 0, -theme_.px(footMargin) / 2, 0);
    const auto shown = QFontMetrics(footFont()).elidedText(foot_, Qt::ElideRight, foot.width());
    painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter, shown);
}

} // namespace fennik::ui

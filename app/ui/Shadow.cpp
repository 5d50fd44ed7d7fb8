#include "app/ui/Shadow.h"

#include <QEvent>
#include <QGraphicsBlurEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPainter>
#include <qdrawutil.h>

#include <cmath>

namespace fennik::ui {

Shadow::Shadow(QWidget& caster, Depth depth, double radius, const Theme& theme)
    : QWidget(caster.parentWidget()),
      caster_(caster),
      theme_(theme),
      blur_(theme.px(depth == Depth::dialog ? 50 : 28)),
      offset_(theme.px(depth == Depth::dialog ? 18 : 8)),
      radius_(radius) {
    setObjectName(QStringLiteral("shadow"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    caster.installEventFilter(this);
    connect(&caster, &QObject::destroyed, this, &QObject::deleteLater);
    connect(&theme_, &Theme::changed, this, [this] {
        picture_ = {};
        update();
    });
    follow();
}

void Shadow::setOpacity(double opacity) {
    opacity_ = opacity;
    update();
}

bool Shadow::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ZOrderChange:
        follow();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void Shadow::follow() {
    setGeometry(caster_.geometry().adjusted(-blur_, -blur_, blur_, blur_).translated(0, offset_));
    setVisible(!caster_.isHidden());
    stackUnder(&caster_);
}

QPixmap Shadow::drawn() const {
    const double ratio = devicePixelRatioF();
    const int corner = int(std::ceil(radius_)) + blur_;
    const int side = 2 * (blur_ + corner) + 1;
    QPixmap shape(QSize(side, side) * ratio);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.scale(ratio, ratio);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_.tokens().shadow);
        painter.drawRoundedRect(QRectF(blur_, blur_, side - 2 * blur_, side - 2 * blur_), radius_,
                                radius_);
    }
    // The blur works in device pixels.
    QGraphicsScene scene;
    auto* item = scene.addPixmap(shape);
    auto* effect = new QGraphicsBlurEffect;
    effect->setBlurRadius(blur_ * ratio);
    effect->setBlurHints(QGraphicsBlurEffect::QualityHint);
    item->setGraphicsEffect(effect);
    QPixmap picture(shape.size());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    scene.render(&painter, picture.rect(), picture.rect());
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

void Shadow::paintEvent(QPaintEvent*) {
    if (picture_.isNull() || picture_.devicePixelRatio() != devicePixelRatioF())
        picture_ = drawn();
    QPainter painter(this);
    painter.setOpacity(opacity_);
    // A caster smaller than its shadow's corners gets less of each.
    const int corner = std::min(
        {int(picture_.deviceIndependentSize().width() - 1) / 2, width() / 2, height() / 2});
    const QMargins target(corner, corner, corner, corner);
    const int own = int((picture_.width() - picture_.devicePixelRatio()) / 2);
    qDrawBorderPixmap(&painter, rect(), target, picture_, picture_.rect(),
                      QMargins(own, own, own, own));
}

} // namespace fennik::ui

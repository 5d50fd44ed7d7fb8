#include "app/ui/dialogs/OutcomeLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace fennik::ui {

OutcomeLine::OutcomeLine(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme), icons_(icons), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("outcomeLine"));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setFont(theme.font(FontRole::detail, QFont::Medium));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(theme.px(21), 0, 0, 0);
    layout->addWidget(label_);
    connect(&theme_, &Theme::changed, this, &OutcomeLine::takeTheme);
    takeTheme();
}

void OutcomeLine::setOutcome(Kind kind, const QString& text) {
    kind_ = kind;
    label_->setText(text);
    takeTheme();
}

QString OutcomeLine::text() const {
    return label_->text();
}

QColor OutcomeLine::color() const {
    const auto& tokens = theme_.tokens();
    switch (kind_) {
    case Kind::ok:
        return tokens.ok;
    case Kind::note:
        return tokens.text2;
    case Kind::error:
        break;
    }
    return tokens.err;
}

void OutcomeLine::takeTheme() {
    auto colors = label_->palette();
    colors.setColor(QPalette::WindowText, color());
    label_->setPalette(colors);
    update();
}

void OutcomeLine::paintEvent(QPaintEvent*) {
    if (text().isEmpty())
        return;
    const auto icon = kind_ == Kind::ok     ? QStringLiteral("circle-check")
                      : kind_ == Kind::note ? QStringLiteral("info")
                                            : QStringLiteral("circle-alert");
    const int side = theme_.px(16);
    const int lineHeight = label_->fontMetrics().height();
    QPainter(this).drawPixmap(0, label_->y() + (lineHeight - side) / 2,
                              icons_.line(icon, side, color(), devicePixelRatioF()));
}

} // namespace fennik::ui

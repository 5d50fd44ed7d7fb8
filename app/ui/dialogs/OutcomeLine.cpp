#include "app/ui/dialogs/OutcomeLine.h"

#include "app/ui/Text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace fennik::ui {

OutcomeLine::OutcomeLine(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme), icons_(icons), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("outcomeLine"));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    // An empty one is nothing to read, but nothing moves when there is something to say.
    label_->setMinimumHeight(theme.px(16));
    auto policy = label_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    label_->setSizePolicy(policy);
    label_->hide();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(theme.px(21), 0, 0, 0);
    layout->addWidget(label_);
    connect(&theme_, &Theme::changed, this, &OutcomeLine::takeTheme);
    takeTheme();
}

void OutcomeLine::setOutcome(Kind kind, const QString& text) {
    kind_ = kind;
    text_ = text;
    label_->setText(breakableText(text));
    label_->setAccessibleName(text);
    label_->setVisible(!text.isEmpty());
    takeTheme();
}

QString OutcomeLine::icon() const {
    switch (kind_) {
    case Kind::ok:
        return QStringLiteral("circle-check");
    case Kind::creates:
        return QStringLiteral("folder-plus");
    case Kind::renames:
        return QStringLiteral("text-cursor-input");
    case Kind::note:
        return QStringLiteral("info");
    case Kind::error:
        break;
    }
    return QStringLiteral("circle-alert");
}

QColor OutcomeLine::color() const {
    const auto& tokens = theme_.tokens();
    switch (kind_) {
    case Kind::ok:
        return tokens.ok;
    case Kind::creates:
    case Kind::renames:
        return tokens.accentText;
    case Kind::note:
        return tokens.text2;
    case Kind::error:
        break;
    }
    return tokens.err;
}

void OutcomeLine::takeTheme() {
    const auto weight = kind_ == Kind::note ? QFont::Normal : QFont::Medium;
    label_->setFont(theme_.font(FontRole::detail, weight));
    auto colors = label_->palette();
    colors.setColor(QPalette::WindowText, color());
    label_->setPalette(colors);
    update();
}

void OutcomeLine::paintEvent(QPaintEvent*) {
    if (text_.isEmpty())
        return;
    const int side = theme_.px(16);
    const int lineHeight = label_->fontMetrics().height();
    QPainter(this).drawPixmap(0, label_->y() + (lineHeight - side) / 2,
                              icons_.line(icon(), side, color(), devicePixelRatioF()));
}

} // namespace fennik::ui

#include "app/ui/preview/PreviewNotice.h"

#include "app/ui/Text.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/preview/FactRows.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace fennik::ui {

namespace {

constexpr double iconSide = 96;

} // namespace

PreviewNotice::PreviewNotice(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      place_(new QWidget(this)),
      title_(new QLabel(this)),
      text_(new QLabel(this)),
      facts_(new QWidget(this)),
      rows_(new QGridLayout(facts_)) {
    setObjectName(QStringLiteral("previewNotice"));
    title_->setObjectName(QStringLiteral("previewNoticeTitle"));
    text_->setObjectName(QStringLiteral("previewNoticeText"));
    place_->setFixedSize(theme.px(iconSide), theme.px(iconSide));
    title_->setFont(theme.font(FontRole::body, QFont::Medium));
    text_->setFont(theme.font(FontRole::detail));
    followColor(*title_, theme, &Tokens::text);
    followColor(*text_, theme, &Tokens::text2);
    for (auto* label : {title_, text_}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
    }
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setVerticalSpacing(theme.px(4));
    rows_->setHorizontalSpacing(theme.px(12));
    facts_->setMaximumWidth(theme.px(340));
    auto* column = new QVBoxLayout(this);
    const int side = theme.px(24);
    column->setContentsMargins(side, side, side, side);
    column->setSpacing(theme.px(8));
    column->addStretch(2);
    column->addWidget(place_, 0, Qt::AlignHCenter);
    column->addSpacing(theme.px(8));
    column->addWidget(title_);
    column->addWidget(text_);
    auto* middle = new QHBoxLayout;
    middle->addStretch(1);
    middle->addWidget(facts_, 1000);
    middle->addStretch(1);
    column->addLayout(middle);
    column->addStretch(3);
}

void PreviewNotice::show(FileLook look, const QString& title, const QString& text,
                         const std::vector<PreviewTexts::Fact>& facts) {
    look_ = look;
    title_->setText(title);
    title_->setHidden(title.isEmpty());
    text_->setText(breakableText(text));
    text_->setAccessibleName(text);
    text_->setHidden(text.isEmpty());
    FactRows::clear(*rows_);
    FactRows::fill(*rows_, *facts_, facts, 1, theme_);
    facts_->setHidden(facts.empty());
    update();
}

void PreviewNotice::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(place_->pos(),
                              icons_.file(look_, IconBadge::none, IconGround::panelInactive,
                                          place_->width(), devicePixelRatioF()));
}

} // namespace fennik::ui

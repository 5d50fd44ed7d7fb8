#include "app/ui/dialogs/ArchiveNameField.h"

#include "app/ui/NameText.h"
#include "app/ui/Text.h"

#include <QPainter>
#include <QStyleOptionFrame>

#include <algorithm>

namespace fennik::ui {

ArchiveNameField::ArchiveNameField(std::string_view stem, const Theme& theme, QWidget* parent)
    : QLineEdit(NameText::fromBytes(stem), parent), theme_(theme) {
    connect(this, &QLineEdit::textChanged, this, &ArchiveNameField::makeRoom);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ArchiveNameField::setExtension(std::string_view extension) {
    extension_ = QLatin1Char('.') + fromUtf8(extension);
    makeRoom();
    update();
}

QString ArchiveNameField::suffix() const {
    const bool isTyped =
        text().size() > extension_.size() && text().endsWith(extension_, Qt::CaseInsensitive);
    return isTyped ? QString() : extension_;
}

std::string ArchiveNameField::name() const {
    return NameText::toBytes(text() + suffix());
}

void ArchiveNameField::makeRoom() {
    setTextMargins(0, 0, fontMetrics().horizontalAdvance(suffix()), 0);
}

void ArchiveNameField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    const auto rest = suffix();
    if (rest.isEmpty())
        return;
    QStyleOptionFrame option;
    initStyleOption(&option);
    // The toolkit leaves two pixels on either side of the text.
    constexpr int inset = 2;
    const auto content = style()
                             ->subElementRect(QStyle::SE_LineEditContents, &option, this)
                             .marginsRemoved(textMargins())
                             .adjusted(inset, 0, -inset, 0);
    const int used = std::min(fontMetrics().horizontalAdvance(text()), content.width());
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(theme_.tokens().text3);
    painter.drawText(content.left() + used, content.top(), textMargins().right() + inset,
                     content.height(), Qt::AlignLeft | Qt::AlignVCenter, rest);
}

} // namespace fennik::ui

#include "app/ui/FileDrag.h"

#include "app/ui/Text.h"
#include "core/base/FileLists.h"

#include <QDropEvent>
#include <QFontMetricsF>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace fennik::ui::FileDrag {

namespace {

QString nameOf(std::string_view type) {
    return QString::fromLatin1(type.data(), qsizetype(type.size()));
}

} // namespace

std::unique_ptr<QMimeData> data(const std::vector<FileUrl>& files) {
    FileLists::Files list;
    for (const auto& file : files)
        list.paths.push_back(file.path());
    auto result = std::make_unique<QMimeData>();
    for (const auto& [type, content] : FileLists::write(list))
        result->setData(nameOf(type), QByteArray::fromStdString(content));
    return result;
}

std::vector<FileUrl> files(const QMimeData& data) {
    const auto list = FileLists::read([&data](std::string_view type) {
        const auto name = nameOf(type);
        return data.hasFormat(name) ? data.data(name).toStdString() : std::string();
    });
    std::vector<FileUrl> result;
    for (const auto& path : list.paths)
        result.push_back(FileUrl(path).standardized());
    return result;
}

TransferKind kind(const QDropEvent& event) {
    const bool mayMove = event.possibleActions().testFlag(Qt::MoveAction);
    const bool wantsMove = event.modifiers().testFlag(Qt::ShiftModifier) &&
                           !event.modifiers().testFlag(Qt::ControlModifier);
    return wantsMove && mayMove ? TransferKind::move : TransferKind::copy;
}

QPixmap picture(const std::vector<FileUrl>& files, FileLook look, const Theme& theme, Icons& icons,
                double pixelRatio) {
    constexpr double mostWidth = 240;
    const auto font = theme.font(FontRole::body, QFont::Medium);
    const QFontMetricsF metrics(font);
    const auto whole = files.size() == 1 ? shownName(files.front().lastComponent())
                                         : itemCount(std::int64_t(files.size()));
    const auto text = metrics.elidedText(whole, Qt::ElideMiddle, theme.px(mostWidth));
    const int side = theme.px(16);
    const int padding = theme.px(10);
    const int gap = theme.px(8);
    const QSize size(2 * padding + side + gap + int(std::ceil(metrics.horizontalAdvance(text))),
                     theme.px(32));
    QPixmap pixmap(size * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    const auto& tokens = theme.tokens();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.raised);
    painter.drawRoundedRect(QRectF(QPointF(), size).adjusted(0.5, 0.5, -0.5, -0.5), 7, 7);
    painter.drawPixmap(padding, (size.height() - side) / 2,
                       icons.file(look, IconBadge::none, IconGround::panel, side, pixelRatio));
    painter.setFont(font);
    painter.setPen(tokens.text);
    painter.drawText(QRectF(padding + side + gap, 0, size.width(), size.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text);
    return pixmap;
}

} // namespace fennik::ui::FileDrag

#include "app/ui/Icons.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

/// The icons are compiled into a static library, which the linker would leave out otherwise. The
/// macro has to stand outside every namespace.
// NOLINTNEXTLINE(misc-use-anonymous-namespace)
static void keepIconResources() {
    Q_INIT_RESOURCE(icons);
}

namespace fennik::ui {

namespace {

QByteArray source(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap blank(int size, double pixelRatio) {
    QPixmap pixmap(QSize(size, size) * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

/// The file icons are drawn with these literal colours.
constexpr const char* paperColor = "#FEFEFE";
constexpr const char* lineColor = "#8A8377";
constexpr const char* arrowColor = "#58534B";
constexpr const char* badgeColor = "#1E1C19";
constexpr const char* brokenColor = "#B02A20";
constexpr const char* whiteDetail = "#FFFFFF";
constexpr double darkThemeTint = 1.12; ///< more would bleach the folders

/// Recolours every colour literal that `paint` gives another colour.
template <class Paint>
QByteArray recoloured(const QByteArray& svg, Paint paint) {
    constexpr qsizetype length = 7; // "#RRGGBB"
    const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'); };
    QByteArray result;
    for (qsizetype i = 0; i < svg.size();) {
        const auto literal = QByteArrayView(svg).sliced(i).first(std::min(length, svg.size() - i));
        const bool isColour = literal.size() == length && literal[0] == '#' &&
                              std::all_of(literal.begin() + 1, literal.end(), isDigit);
        if (isColour)
            result += paint(QString::fromLatin1(literal)).name().toLatin1();
        else
            result += svg[i];
        i += isColour ? length : 1;
    }
    return result;
}

QColor lightened(const QColor& color) {
    const auto channel = [](int value) { return std::min(255, qRound(value * darkThemeTint)); };
    return {channel(color.red()), channel(color.green()), channel(color.blue())};
}

/// Folders, packages and archives are solid shapes; the rest is a sheet with a sign on it.
bool isSolid(FileLook look) {
    return look == FileLook::folder || look == FileLook::package || look == FileLook::archive;
}

} // namespace

Icons::Icons(const Theme& theme) : theme_(theme) {
    keepIconResources();
}

QPixmap Icons::line(const QString& name, int size, const QColor& color, double pixelRatio,
                    IconFill fill) {
    const auto key = QStringLiteral("%1|%2|%3|%4|%5")
                         .arg(name)
                         .arg(size)
                         .arg(color.name())
                         .arg(pixelRatio)
                         .arg(int(fill));
    auto& pixmap = drawn_[key];
    if (!pixmap.isNull())
        return pixmap;
    auto svg = source(QStringLiteral(":/lucide/%1.svg").arg(name));
    if (fill == IconFill::solid)
        svg.replace("fill=\"none\"", "fill=\"currentColor\"");
    svg.replace("currentColor", color.name().toUtf8());
    svg.replace("stroke-width=\"2\"", "stroke-width=\"1.75\"");
    pixmap = blank(size, pixelRatio);
    QPainter painter(&pixmap);
    QSvgRenderer(svg).render(&painter, QRectF(0, 0, size, size));
    return pixmap;
}

QPixmap Icons::file(FileLook look, IconBadge badge, IconGround ground, int size,
                    double pixelRatio) {
    const bool isDark = theme_.appearance() == Appearance::dark;
    const auto key = QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
                         .arg(int(look))
                         .arg(int(badge))
                         .arg(int(ground))
                         .arg(isDark)
                         .arg(int(theme_.contrast()))
                         .arg(size)
                         .arg(pixelRatio);
    auto& pixmap = drawn_[key];
    if (!pixmap.isNull())
        return pixmap;

    const auto& tokens = theme_.tokens();
    const bool onAccent = ground == IconGround::accent;
    const QColor row = onAccent                              ? tokens.accent
                       : ground == IconGround::panelInactive ? tokens.panelInactive
                                                             : tokens.panel;
    const auto paintKind = [&](const QString& literal) -> QColor {
        if (literal == QLatin1String(arrowColor))
            return onAccent ? tokens.onAccent : tokens.text2;
        if (onAccent && isSolid(look))
            return literal == QLatin1String(whiteDetail) ? tokens.accent : tokens.onAccent;
        if (literal == QLatin1String(paperColor))
            return onAccent ? tokens.onAccent : row;
        if (literal == QLatin1String(lineColor))
            return tokens.control;
        if (literal == QLatin1String(whiteDetail))
            return literal;
        return isDark && !onAccent ? lightened(literal) : QColor(literal);
    };
    const auto paintBadge = [&](const QString& literal) -> QColor {
        if (literal == QLatin1String(paperColor))
            return onAccent ? tokens.onAccent : row;
        if (literal == QLatin1String(badgeColor))
            return onAccent ? tokens.accent : tokens.text;
        return literal == QLatin1String(brokenColor) && !onAccent ? tokens.err : QColor(literal);
    };

    pixmap = blank(size, pixelRatio);
    QPainter painter(&pixmap);
    const auto kind = source(QStringLiteral(":/kind/%1.svg").arg(iconName(look)));
    QSvgRenderer(recoloured(kind, paintKind)).render(&painter, QRectF(0, 0, size, size));
    if (badge != IconBadge::none) {
        const auto name =
            badge == IconBadge::link ? QStringLiteral("link") : QStringLiteral("broken");
        const auto svg = source(QStringLiteral(":/kind/badge-%1.svg").arg(name));
        const double side = size / 2.0;
        QSvgRenderer(recoloured(svg, paintBadge)).render(&painter, QRectF(0, side, side, side));
    }
    return pixmap;
}

QPixmap Icons::program(int size, double pixelRatio) {
    auto& pixmap = drawn_[QStringLiteral("program|%1|%2").arg(size).arg(pixelRatio)];
    if (!pixmap.isNull())
        return pixmap;
    pixmap = blank(size, pixelRatio);
    QPainter painter(&pixmap);
    QSvgRenderer(source(QStringLiteral(":/fennik.svg"))).render(&painter, QRectF(0, 0, size, size));
    return pixmap;
}

} // namespace fennik::ui

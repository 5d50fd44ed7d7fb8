#pragma once

#include "app/model/Look.h"

#include <QColor>
#include <QFont>
#include <QObject>

#include <optional>

class QPalette;

namespace fennik::ui {

enum class Appearance { light, dark };
/// In high contrast every line is as strong as text, and no colour is only a tint.
enum class Contrast { normal, high };

/// The colours of the interface by their names; no other colour appears in the code.
struct Tokens {
    QColor window, chrome, panel, panelInactive, field, raised, hover, pressed, line, control;
    QColor text, text2, text3;
    QColor accent, onAccent, onAccent2, accentText, accentSoft;
    QColor progress; ///< what is done of something that runs
    QColor mark, markSoft, markOnAccent, markSolid;
    QColor ok, okSoft, warn, warnSoft, err, errSoft;
    QColor scrim, shadow; ///< half transparent, over whatever lies below

    static const Tokens& of(Appearance appearance, Contrast contrast = Contrast::normal);
};

enum class FontRole {
    body,       ///< row names, buttons
    detail,     ///< sizes, dates, status
    small,      ///< column headers, key legends
    fixed,      ///< rights
    fixedLine,  ///< commands and their output
    fixedField, ///< masks as they are typed
    title,      ///< of dialogs, in `QFont::DemiBold`
    headline,   ///< of what introduces the program, in `QFont::DemiBold`
};

/// Colours, fonts and measures of the whole interface. One per application, on the main thread.
class Theme final : public QObject {
    Q_OBJECT

public:
    static constexpr double leastTextScale = 0.85;
    static constexpr double mostTextScale = 2;

    /// Takes its scale from the font of the application, where 13 px are 1.0, unless one is given.
    explicit Theme(Appearance appearance, std::optional<double> textScale = std::nullopt);

    Appearance appearance() const { return appearance_; }
    void setAppearance(Appearance appearance);
    Contrast contrast() const { return contrast_; }
    void setContrast(Contrast contrast);
    const Tokens& tokens() const { return Tokens::of(appearance_, contrast_); }
    /// Of what cannot be used now.
    const QColor& disabledText() const {
        // What can be used must stand out in high contrast too.
        return contrast_ == Contrast::high ? tokens().text3 : tokens().control;
    }
    app::Density density() const { return density_; }
    void setDensity(app::Density density);
    /// Of a row in a panel, in device-independent pixels.
    int rowHeight() const;

    QFont font(FontRole role, QFont::Weight weight = QFont::Normal) const;
    /// A measure given for the default text size, in device-independent pixels of this one.
    int px(double measure) const { return qRound(measure * scale_); }
    /// Whether nothing may move on its own: the style says so for the whole application.
    static bool reducedMotion();
    /// Has the style say so, or no longer.
    static void setReducedMotion(bool isReduced);

signals:
    /// The colours, the contrast or the height of the rows are others now.
    void changed();

private:
    void apply() const;

    Appearance appearance_;
    Contrast contrast_ = Contrast::normal;
    app::Density density_ = app::Density::regular;
    double scale_;
    QStringList families_; ///< the first that is installed
    QStringList fixedFamilies_;
};

/// What the system's own colours look like, read before a `Theme` replaces them.
Appearance appearanceOf(const QPalette& systemPalette);

} // namespace fennik::ui

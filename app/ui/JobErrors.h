#pragma once

#include "app/ui/Theme.h"

#include <QPlainTextEdit>

#include <string>
#include <vector>

namespace fennik::ui {

/// The errors of a job, one a line, to be read and copied. It shows a few lines and scrolls; of
/// very many errors the last ones are only counted.
class JobErrors final : public QPlainTextEdit {
    Q_OBJECT

public:
    static constexpr std::size_t mostShown = 2000;

    JobErrors(const Theme& theme, QWidget* parent);

    /// `errors` begins with those that were set before.
    void setErrors(const std::vector<std::string>& errors);
    /// The height that the first lines take in this width.
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

signals:
    /// The keyboard is to go back to where it was.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void takeTheme();

    const Theme& theme_;
    std::size_t count_ = 0;
};

} // namespace fennik::ui

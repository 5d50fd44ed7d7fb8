#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

#include <functional>
#include <string_view>

class QFormLayout;
class QLabel;
class QVBoxLayout;

namespace fennik::ui {

/// A page of the settings: rows with what is set at the left and controls at the right. What a
/// control changes is in force at once, and what is changed elsewhere shows at once.
class SettingsForm final : public QWidget {
    Q_OBJECT

public:
    SettingsForm(const UiContext& context, QWidget* parent);

    /// Adds a row; `field` belongs to the form from now on. The label may be renamed.
    QLabel* addRow(const QString& label, QWidget* field);
    /// Adds a row with a check box; without a label, to the row of the last one. `hint` stands
    /// below, may be empty and may have combinations in it.
    void addSwitch(const QString& label, const app::SettingKey<bool>& key, const QString& title,
                   const QString& name, std::string_view hint = {});
    /// Whether what is set stands above its controls, where there is no room beside them.
    void setStacked(bool isStacked);
    /// A line in small letters, for below a field.
    QLabel* hint(const QString& text);
    /// Calls `show` now and whenever a setting or a shortcut has changed.
    void follow(const std::function<void()>& show);

    template <class T>
    void put(const app::SettingKey<T>& key, const T& value) {
        if (auto& settings = context_.app.settings(); settings.get(key) != value)
            settings.set(key, value);
    }

private:
    UiContext context_;
    QFormLayout* rows_;
    QVBoxLayout* switches_ = nullptr; ///< of the last row with check boxes
};

} // namespace fennik::ui

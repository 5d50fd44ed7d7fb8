#include "app/system/SettingsFile.h"

#include <QStringList>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace fennik::system {

namespace {

using app::SettingData;
using app::SettingValue;
using Texts = std::vector<std::string>;

QString keyText(std::string_view key) {
    return QString::fromUtf8(key.data(), qsizetype(key.size()));
}

QVariant variantOf(bool value) {
    return value;
}

QVariant variantOf(std::int64_t value) {
    return qint64(value);
}

QVariant variantOf(double value) {
    return value;
}

QVariant variantOf(const std::string& value) {
    return QString::fromStdString(value);
}

QVariant variantOf(const Texts& value) {
    QStringList list;
    for (const auto& text : value)
        list.push_back(QString::fromStdString(text));
    return list;
}

QVariant variantOf(const SettingData& value) {
    return QByteArray::fromStdString(value.bytes);
}

/// The value as a T. In the file, numbers and truth values are texts, a list of one text is that
/// text, and an empty list is no value.
template <class T>
std::optional<T> valueOf(const QVariant& variant) {
    const auto type = variant.typeId();
    const bool isText = type == QMetaType::QString;
    if constexpr (std::is_same_v<T, bool>) {
        if (type == QMetaType::Bool ||
            (isText && (variant == QStringLiteral("true") || variant == QStringLiteral("false"))))
            return variant.toBool();
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        bool isNumber = false;
        const auto number = variant.toLongLong(&isNumber);
        if (isNumber && (isText || type == QMetaType::LongLong))
            return number;
    } else if constexpr (std::is_same_v<T, double>) {
        bool isNumber = false;
        const auto number = variant.toDouble(&isNumber);
        if (isNumber && (isText || type == QMetaType::Double) && std::isfinite(number))
            return number;
    } else if constexpr (std::is_same_v<T, std::string>) {
        if (isText)
            return variant.toString().toStdString();
    } else if constexpr (std::is_same_v<T, Texts>) {
        if (isText || type == QMetaType::QStringList) {
            Texts texts;
            for (const auto& text : variant.toStringList())
                texts.push_back(text.toStdString());
            return texts;
        }
    } else {
        static_assert(std::is_same_v<T, SettingData>);
        if (type == QMetaType::QByteArray)
            return SettingData{variant.toByteArray().toStdString()};
    }
    return std::nullopt;
}

} // namespace

std::string SettingsFile::configFolder(const std::string& home) {
    // The environment is read at start, before any thread could change it.
    const char* given = std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe)
    if (given != nullptr && std::string_view(given).starts_with('/'))
        return given;
    return home + "/.config";
}

/// Shared with the worker's tasks, which may still run when the settings are gone.
struct SettingsFile::Writer {
    Writer(const std::string& configFolder, Executor& mainThread, std::weak_ptr<Report> toReport)
        : file(configFolder), main(mainThread), report(std::move(toReport)) {}

    const IniFile file;
    Executor& main;
    const std::weak_ptr<Report> report;
    bool isFailing = false; ///< the worker's alone

    std::mutex mutex; ///< for what follows
    IniFile::Values waiting;
    bool isScheduled = false;
    /// Of what the waiting values replace.
    IniFile::Content content = IniFile::Content::understood;

    void write();
};

void SettingsFile::Writer::write() {
    std::unique_lock lock(mutex);
    isScheduled = false;
    auto changes = std::exchange(waiting, {});
    const auto replaced = std::exchange(content, IniFile::Content::understood);
    lock.unlock();

    const auto written = file.merge(changes, replaced);

    lock.lock();
    if (written) {
        isFailing = false;
        return;
    }
    if (replaced == IniFile::Content::notUnderstood)
        content = replaced;
    changes.insert(waiting); // what came meanwhile is newer
    waiting = std::move(changes);
    lock.unlock();
    if (!std::exchange(isFailing, true))
        main.execute([life = report, sentence = "Nastavení nejde uložit: " + written.error()] {
            if (const auto user = life.lock())
                (*user)(sentence);
        });
}

SettingsFile::SettingsFile(const std::string& configFolder, Executor& worker, Executor& main,
                           Report report)
    : worker_(worker),
      report_(std::make_shared<Report>(std::move(report))),
      writer_(std::make_shared<Writer>(configFolder, main, report_)),
      values_(writer_->file.read()) {}

SettingsFile::~SettingsFile() = default;

std::optional<SettingValue> SettingsFile::value(std::string_view key,
                                                const SettingValue& like) const {
    const auto found = values_.constFind(keyText(key));
    if (found == values_.cend() || !found->isValid())
        return std::nullopt;
    auto value = std::visit(
        [&](const auto& example) -> std::optional<SettingValue> {
            return valueOf<std::remove_cvref_t<decltype(example)>>(*found);
        },
        like);
    if (!value)
        notUnderstood_.insert(keyText(key));
    return value;
}

void SettingsFile::setValue(std::string_view key, SettingValue value) {
    const auto name = keyText(key);
    const auto variant = std::visit([](const auto& held) { return variantOf(held); }, value);
    values_.insert(name, variant);
    std::unique_lock lock(writer_->mutex);
    // What is replaced may mean something to another version.
    if (notUnderstood_.remove(name))
        writer_->content = IniFile::Content::notUnderstood;
    writer_->waiting.insert(name, variant);
    const bool wasScheduled = std::exchange(writer_->isScheduled, true);
    lock.unlock();
    if (!wasScheduled)
        worker_.execute([writer = writer_] { writer->write(); });
}

} // namespace fennik::system

#include "app/preview/decoding/MediaFacts.h"

#include "core/base/CzechText.h"
#include "core/listing/Format.h"

#include <MediaInfo/MediaInfo.h>
#include <QLocale>
#include <QString>

#include <cmath>
#include <string>
#include <utility>

namespace fennik::app::MediaFacts {

namespace {

using MediaInfoLib::MediaInfo;
using MediaInfoLib::stream_t;

class Facts {
public:
    explicit Facts(MediaInfo& file) : file_(file) {}

    QString text(stream_t stream, const wchar_t* field) {
        return QString::fromStdWString(file_.Get(stream, 0, field)).trimmed();
    }
    double number(stream_t stream, const wchar_t* field) { return text(stream, field).toDouble(); }
    bool has(stream_t stream) { return file_.Count_Get(stream) > 0; }

private:
    MediaInfo& file_;
};

QString decimal(double value, int digits) {
    auto text = QLocale(QLocale::Czech).toString(value, 'f', digits);
    return text;
}

/// "1,2 Mb/s"
QString bitRate(double bitsPerSecond) {
    constexpr double kilo = 1e3;
    constexpr double mega = 1e6;
    if (bitsPerSecond >= mega)
        return decimal(bitsPerSecond / mega, 1) + QStringLiteral(" Mb/s");
    return decimal(bitsPerSecond / kilo, 0) + QStringLiteral(" kb/s");
}

QString joined(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString videoText(Facts& facts, int width, int height) {
    using enum stream_t;
    QStringList parts{facts.text(Stream_Video, L"Format")};
    if (width > 0)
        parts << QStringLiteral("%1 × %2").arg(width).arg(height);
    if (const double rate = facts.number(Stream_Video, L"FrameRate"); rate > 0)
        parts << decimal(rate, std::abs(rate - std::round(rate)) < 0.005 ? 0 : 2) +
                     QStringLiteral(" snímků/s");
    return joined(std::move(parts));
}

QString audioText(Facts& facts) {
    using enum stream_t;
    constexpr double kilo = 1e3;
    QStringList parts{facts.text(Stream_Audio, L"Format")};
    if (const double rate = facts.number(Stream_Audio, L"SamplingRate"); rate > 0)
        parts << decimal(rate / kilo, std::fmod(rate, kilo) == 0 ? 0 : 1) + QStringLiteral(" kHz");
    const auto channels = std::int64_t(facts.number(Stream_Audio, L"Channel(s)"));
    if (channels > 0)
        parts << QStringLiteral("%1 %2").arg(channels).arg(
            QString::fromUtf8(pluralForm(channels, {"kanál", "kanály", "kanálů"})));
    return joined(std::move(parts));
}

} // namespace

Decoding of(int descriptor) {
    using enum stream_t;
    MediaInfo file;
    // Nothing beside the file itself is looked for.
    file.Option(L"Internet", L"No");
    file.Option(L"File_TestContinuousFileNames", L"0");
    file.Option(L"File_TestDirectory", L"0");
    if (file.Open(L"/proc/self/fd/" + std::to_wstring(descriptor)) == 0)
        return std::unexpected(DecodingFailure::damaged);
    Facts facts(file);
    const bool hasVideo = facts.has(Stream_Video);
    if (!hasVideo && !facts.has(Stream_Audio))
        return std::unexpected(DecodingFailure::unsupported);
    constexpr double millisecondsOfSecond = 1000;
    DecodedMedia media{.seconds = facts.number(Stream_General, L"Duration") / millisecondsOfSecond};
    if (!std::isfinite(media.seconds) || media.seconds < 0)
        media.seconds = 0;
    if (hasVideo) {
        media.width = int(facts.number(Stream_Video, L"Width"));
        media.height = int(facts.number(Stream_Video, L"Height"));
        const int rotation = int(facts.number(Stream_Video, L"Rotation"));
        if (rotation == 90 || rotation == 270) // as phones write it
            std::swap(media.width, media.height);
    }
    const auto add = [&media](const char* title, const QString& value) {
        if (!value.isEmpty())
            media.facts.emplace_back(title, value.toStdString());
    };
    add("Název", facts.text(Stream_General, L"Title"));
    add("Interpret", facts.text(Stream_General, L"Performer"));
    add("Album", facts.text(Stream_General, L"Album"));
    add("Rok", facts.text(Stream_General, L"Recorded_Date"));
    if (media.seconds > 0)
        add("Délka", QString::fromStdString(Format::duration(media.seconds)));
    add("Formát", facts.text(Stream_General, L"Format"));
    if (hasVideo)
        add("Obraz", videoText(facts, media.width, media.height));
    if (facts.has(Stream_Audio))
        add("Zvuk", audioText(facts));
    if (const double rate = facts.number(Stream_General, L"OverallBitRate"); rate > 0)
        add("Datový tok", bitRate(rate));
    return media;
}

} // namespace fennik::app::MediaFacts

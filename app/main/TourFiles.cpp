#include "app/main/TourFiles.h"

#include "core/archives/ArchivePacker.h"
#include "core/base/FileUrl.h"
#include "core/operations/DirectContext.h"
#include "core/operations/Trashes.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <array>
#include <utility>
#include <vector>

namespace fennik::app {

namespace {

struct Sample {
    const char* name;
    std::int64_t size; ///< bytes
    const char* date;
};

constexpr const char* contracts = "Dokumenty/Smlouvy 2026/";
constexpr std::array samples{
    Sample{"Dokumenty/Smlouvy 2026/Dodatky/Dodatek č. 1.pdf", 412'118, "2026-11-03T10:12:44"},
    Sample{"Dokumenty/Smlouvy 2026/Dodatky/Dodatek č. 2.pdf", 398'204, "2026-11-17T09:02:10"},
    Sample{"Dokumenty/Smlouvy 2026/Faktury/2026-09.pdf", 288'410, "2026-10-02T08:00:00"},
    Sample{"Dokumenty/Smlouvy 2026/Faktury/2026-10.pdf", 301'022, "2026-11-02T08:00:00"},
    Sample{"Dokumenty/Smlouvy 2026/Šablony/Smlouva o dílo.docx", 88'120, "2025-12-11T14:30:00"},
    Sample{"Dokumenty/Smlouvy 2026/Fotky z předání/IMG_2041.jpg", 4'812'330, "2026-11-12T11:31:00"},
    Sample{"Dokumenty/Smlouvy 2026/Fotky z předání/IMG_2042.jpg", 5'120'774, "2026-11-12T11:32:00"},
    Sample{"Dokumenty/Smlouvy 2026/Kalkulace – verze 4.xlsx", 214'332, "2026-11-19T16:40:12"},
    Sample{"Dokumenty/Smlouvy 2026/Nabídka Kovářství Brázda.docx", 91'445, "2026-10-28T13:05:51"},
    Sample{"Dokumenty/Smlouvy 2026/Nahrávka z jednání.m4a", 18'420'117, "2026-11-05T10:58:00"},
    Sample{"Dokumenty/Smlouvy 2026/Návrh smlouvy.txt", 0, "2026-11-18T17:22:09"},
    Sample{"Dokumenty/Smlouvy 2026/Objednávka 2026-118.pdf", 187'004, "2026-11-06T07:45:30"},
    Sample{"Dokumenty/Smlouvy 2026/Plná moc.pdf", 96'870, "2026-09-14T12:00:00"},
    Sample{"Dokumenty/Smlouvy 2026/Prezentace pro klienta.pptx", 12'880'901, "2026-11-10T09:11:00"},
    Sample{"Dokumenty/Smlouvy 2026/Smlouva o dílo – konečná.pdf", 1'118'204, "2026-11-20T15:26:31"},
    Sample{"Dokumenty/Smlouvy 2026/Smlouva o dílo – návrh.pdf", 1'044'871, "2026-11-11T15:20:00"},
    Sample{"Dokumenty/Smlouvy 2026/Termíny.csv", 4'220, "2026-11-16T08:15:00"},
    Sample{"Dokumenty/Smlouvy 2026/Video ze stavby.mp4", 264'118'300, "2026-11-13T14:02:00"},
    Sample{"Dokumenty/Smlouvy 2026/prepocet.py", 2'418, "2026-11-01T19:40:00"},
    Sample{"Dokumenty/Smlouvy 2026/.poznámky.md", 918, "2026-11-20T08:00:00"},
    Sample{"Dokumenty/Daně/Přiznání 2025.pdf", 512'000, "2026-03-28T10:00:00"},
    Sample{"Dokumenty/Recepty/Svíčková.md", 3'120, "2026-02-11T18:00:00"},
    Sample{"Dokumenty/Smlouvy 2025/Rámcová smlouva.pdf", 744'112, "2025-05-20T12:30:00"},
    Sample{"Projekty/fennik/README.md", 5'120, "2026-11-20T20:00:00"},
    Sample{"Záloha/Smlouvy/Smlouva o dílo – konečná.pdf", 1'098'011, "2026-11-11T15:26:31"},
    Sample{"Záloha/Smlouvy/Plná moc.pdf", 96'870, "2026-09-14T12:00:00"},
    Sample{"Záloha/Fotky 2025/IMG_1001.jpg", 3'911'200, "2025-07-04T12:00:00"},
    Sample{"Záloha/Smlouva o dílo – konečná.pdf", 1'098'011, "2026-11-11T15:26:31"},
    Sample{"Záloha/Seznam záloh.txt", 8'812, "2026-11-15T06:00:00"},
    Sample{"Záloha/Klíče.kdbx", 48'220, "2026-11-01T21:10:00"},
    Sample{"Velké/Obraz disku.img", 3'400'000'000, "2026-10-10T10:10:10"},
    Sample{"Zamčené/tajné.txt", 12, "2026-10-10T10:10:10"},
};

constexpr const char* draft = R"(SMLOUVA O DÍLO – NÁVRH

Smluvní strany
  Objednatel: Jana Nováková, Lipová 12, Olomouc
  Zhotovitel: Kovářství Brázda, s. r. o., Hranice

1. Předmět díla
   Kovaná brána a plot podle výkresu č. 118, povrch žárový zinek.

2. Termín
   Předání nejpozději 12. listopadu 2026.

3. Cena
   Cena díla je 214 332 Kč a obsahuje dopravu i montáž.
)";

bool writePicture(const QString& path) {
    QImage image(1600, 1067, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 700);
    sky.setColorAt(0, "#7fa9d8");
    sky.setColorAt(1, "#f3dcc0");
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor("#5c7250"));
    painter.drawPolygon(QPolygon(
        {{0, 760}, {420, 560}, {900, 740}, {1300, 600}, {1600, 720}, {1600, 1067}, {0, 1067}}));
    painter.setPen(QPen(QColor("#2b2b2b"), 9));
    for (int x = 120; x < 1500; x += 70)
        painter.drawLine(x, 640, x, 1000);
    painter.drawLine(90, 720, 1510, 720);
    painter.drawLine(90, 960, 1510, 960);
    painter.end();
    return image.save(path, "JPEG", 88);
}

} // namespace

TourFiles::TourFiles() {
    if (!place_.isValid() || !QDir(place_.path()).mkpath(QStringLiteral("jana")))
        return;
    const auto home = QString::fromStdString(path({}));
    qputenv("HOME", home.toUtf8());
    for (const auto& [variable, folder] :
         {std::pair("XDG_DATA_HOME", ".local/share"), std::pair("XDG_CACHE_HOME", ".cache"),
          std::pair("XDG_CONFIG_HOME", ".config")})
        qputenv(variable, (home + QLatin1Char('/') + QLatin1String(folder)).toUtf8());
    isComplete_ = true;
    for (const auto& [name, size, date] : samples)
        file(name, size, date);
    file((std::string(contracts) + "Návrh smlouvy.txt").c_str(), 0, "2026-11-18T17:22:09", draft);
    const auto photo = path(std::string(contracts) + "Fotky z předání/IMG_2043.jpg");
    isComplete_ = isComplete_ && fennik::app::writePicture(QString::fromStdString(photo));
    pack("Záloha/Podklady.tar.gz", ArchiveFormat::tarGz, "");
    pack("Záloha/Osobní.zip", ArchiveFormat::zip, "tajné");
    folder("Prázdná");
    folder("Stažené");
    QFile::link(QStringLiteral("../Smlouvy 2025"),
                QString::fromStdString(path(std::string(contracts) + "Loňské smlouvy")));
}

TourFiles::~TourFiles() {
    // What cannot be read could not be removed either.
    QFile::setPermissions(QString::fromStdString(path("Zamčené")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

std::string TourFiles::path(std::string_view name) const {
    auto result = place_.path().toStdString() + "/jana";
    return name.empty() ? result : result + "/" + std::string(name);
}

void TourFiles::folder(const char* name) {
    isComplete_ = isComplete_ && QDir().mkpath(QString::fromStdString(path(name)));
}

void TourFiles::pack(const char* name, ArchiveFormat format, const char* password) {
    std::vector<FileUrl> sources;
    for (const auto* source : {"Dodatky", "Kalkulace – verze 4.xlsx", "Plná moc.pdf"})
        sources.emplace_back(path(std::string(contracts) + source));
    const FolderTrash trash{FileUrl(path("trash"))};
    DirectContext context(TransferKind::pack, trash);
    isComplete_ =
        isComplete_ && DirectPacker().pack(sources, FileUrl(path(name)),
                                           {.format = format, .password = password}, context);
}

void TourFiles::file(const char* name, std::int64_t size, const char* date, const char* beginning) {
    const auto whole = QString::fromStdString(path(name));
    QFile file(whole);
    const bool isMade = QDir().mkpath(whole.section(QLatin1Char('/'), 0, -2)) &&
                        file.open(QIODevice::WriteOnly) && file.write(beginning) >= 0 &&
                        (size == 0 || file.resize(size)) && file.flush() &&
                        file.setFileTime(QDateTime::fromString(QLatin1String(date), Qt::ISODate),
                                         QFileDevice::FileModificationTime);
    isComplete_ = isComplete_ && isMade;
}

} // namespace fennik::app

#include "app/ui/dialogs/InfoDialog.h"

#include "app/model/ItemInspection.h"
#include "app/ui/FileLook.h"
#include "app/ui/KeyButton.h"
#include "app/ui/PanelWords.h"
#include "app/ui/RunLabel.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/dialogs/RightsTable.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace fennik::ui {

namespace {

constexpr int octalDigits = 3;

QString counted(std::int64_t count, const PluralForms& forms) {
    return fromUtf8(Format::grouped(count)) + QLatin1Char(' ') + fromUtf8(pluralForm(count, forms));
}

QString fileCount(std::int64_t count) {
    return counted(count, {"soubor", "soubory", "souborů"});
}

/// Where an item lies, for the eye: in an archive as "web.zip › css".
QString placeOf(const app::InfoDialog& about) {
    if (!about.archive)
        return shownName(about.item.url.parent().path());
    QStringList parts;
    for (const auto* archive = &*about.archive; archive != nullptr;
         archive = archive->outer.get()) {
        auto inner = shownName(archive->inner);
        inner.replace(QLatin1Char('/'), QStringLiteral(" › "));
        if (!inner.isEmpty())
            parts.prepend(inner);
        parts.prepend(shownName(archive->place.lastComponent()));
    }
    return parts.join(QStringLiteral(" › "));
}

QString subtitleOf(const app::InfoDialog& about) {
    return about.archive ? QStringLiteral("Položka v archivu") : kindTitle(about.item.view());
}

bool isFolder(const FileItem& item) {
    return item.kind == FileKind::directory || item.kind == FileKind::package;
}

} // namespace

InfoDialog::InfoDialog(const app::InfoDialog& about, const Theme& theme, Icons& icons,
                       QWidget* parent)
    : DialogCard({.title = shownName(about.item.name),
                  .subtitle = subtitleOf(about),
                  .other = QStringLiteral("Kopírovat cestu"),
                  .confirm = QStringLiteral("Zavřít"),
                  .cancel = {},
                  .look = lookOf(about.item.view())},
                 theme, icons, parent),
      about_(about),
      content_(new QWidget),
      grid_(new QGridLayout(content_)) {
    content_->setObjectName(QStringLiteral("infoContent"));
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setHorizontalSpacing(theme.px(12));
    grid_->setVerticalSpacing(theme.px(5));
    grid_->setColumnMinimumWidth(0, theme.px(118));
    grid_->setColumnStretch(1, 1);

    const auto& item = about_.item;
    addRow(QStringLiteral("Druh"), kindTitle(item.view()));
    addRow(QStringLiteral("Kde"), placeOf(about_));
    size_ = addRuns(QStringLiteral("Velikost"));
    if (isFolder(item))
        counts_ = addRuns(QStringLiteral("Obsah"));
    date_ = addRow(QStringLiteral("Změněno"), {});
    if (item.isLink())
        link_ = addRow(QStringLiteral("Cíl odkazu"), {});
    if (about_.archive && !isFolder(item)) {
        const auto& browse = *about_.archive;
        const auto path = browse.inner.empty() ? item.name : browse.inner + "/" + item.name;
        const auto entry = browse.index->find(path);
        const bool isEncrypted = entry && entry->encrypted;
        addRow(QStringLiteral("Šifrování"),
               isEncrypted ? QStringLiteral("Ano") : QStringLiteral("Ne"));
    }
    addRights();
    if (about_.archive)
        addArchive(*about_.archive->index, shownName(about_.archive->place.lastComponent()));

    otherButton().setLineIcon(QStringLiteral("link"), icons, &Tokens::text);
    connect(this, &DialogCard::otherRequested, this, &InfoDialog::copyRequested);
    setContent(content_);
}

void InfoDialog::addTitle(const QString& title) {
    auto* label = new QLabel(title, content_);
    label->setFont(theme().font(FontRole::detail));
    followColor(*label, theme(), &Tokens::text2);
    grid_->addWidget(label, grid_->rowCount(), 0, Qt::AlignTop | Qt::AlignLeft);
}

QLabel* InfoDialog::addRow(const QString& title, const QString& text) {
    addTitle(title);
    auto* value = new QLabel(breakableText(text), content_);
    value->setTextFormat(Qt::PlainText);
    value->setWordWrap(true);
    value->setFont(theme().font(FontRole::detail));
    value->setAccessibleName(QStringLiteral("%1: %2").arg(title, text));
    followColor(*value, theme(), &Tokens::text);
    grid_->addWidget(value, grid_->rowCount() - 1, 1);
    return value;
}

RunLabel* InfoDialog::addRuns(const QString& title) {
    addTitle(title);
    auto* value = new RunLabel(theme(), Qt::AlignLeft, content_);
    grid_->addWidget(value, grid_->rowCount() - 1, 1);
    return value;
}

void InfoDialog::addRights() {
    addTitle(QStringLiteral("Práva"));
    letters_ = new QLabel(content_);
    octal_ = new QLabel(content_);
    letters_->setFont(theme().font(FontRole::fixed));
    octal_->setFont(theme().font(FontRole::detail));
    followColor(*letters_, theme(), &Tokens::text);
    followColor(*octal_, theme(), &Tokens::text2);
    auto* line = new QHBoxLayout;
    line->setSpacing(theme().px(8));
    line->addWidget(letters_);
    line->addWidget(octal_, 1);
    grid_->addLayout(line, grid_->rowCount() - 1, 1);
    table_ = new RightsTable(theme(), content_);
    grid_->addWidget(table_, grid_->rowCount(), 1, Qt::AlignLeft);
}

void InfoDialog::addArchive(const ArchiveIndex& archive, const QString& name) {
    auto* line = new QWidget(content_);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    const auto paint = [line, &theme = theme()] {
        auto colors = line->palette();
        colors.setColor(QPalette::Window, theme.tokens().line);
        line->setPalette(colors);
    };
    connect(&theme(), &Theme::changed, line, paint);
    paint();
    grid_->addWidget(line, grid_->rowCount(), 0, 1, 2);
    auto* value = addRow(QStringLiteral("Archiv"), name);
    value->setContentsMargins(theme().px(22), 0, 0, 0);
    auto* icon = new QLabel(value);
    const int side = theme().px(16);
    icon->setPixmap(icons().file(FileLook::archive, IconBadge::none, IconGround::panel, side,
                                 devicePixelRatioF()));
    icon->resize(side, side);
    icon->setAccessibleName(QStringLiteral("archiv"));
    addRow(QStringLiteral("Formát"), fromUtf8(archive.formatLabel()));
    addRow(QStringLiteral("Obsah"), fileCount(archive.fileCount()) + QStringLiteral(", ") +
                                        fromUtf8(Format::bytes(archive.totalSize())) +
                                        QStringLiteral(" rozbalené"));
}

void InfoDialog::setDetails(const app::ItemDetails& details) {
    const auto& item = about_.item;
    showSize(details);
    const auto modified = details.status ? details.status->modified : item.modified;
    const auto date = czechDate(modified, DateDetail::seconds);
    date_->setText(date.isEmpty() ? QStringLiteral("—") : date);
    date_->setAccessibleName(QStringLiteral("Změněno: ") + date_->text());
    if (link_ != nullptr && details.link) {
        auto target = shownName(details.link->path);
        if (details.link->isBroken)
            target += QStringLiteral(" (neexistuje)");
        link_->setText(breakableText(target));
        link_->setAccessibleName(QStringLiteral("Cíl odkazu: ") + target);
    }
    showRights(details.status ? details.status->mode : item.mode);
}

void InfoDialog::showSize(const app::ItemDetails& details) {
    const auto& tokens = theme().tokens();
    const auto runsOf = [&](std::int64_t bytes) {
        const auto noun = pluralForm(bytes, {"bajt", "bajty", "bajtů"});
        return std::vector<RunLabel::Run>{
            {fromUtf8(Format::bytes(bytes)), tokens.text},
            {QStringLiteral(" (%1 %2)").arg(fromUtf8(Format::grouped(bytes)), fromUtf8(noun)),
             tokens.text2}};
    };
    if (isSizeUnknown(about_.archive, about_.item.view())) {
        size_->setRuns({{QStringLiteral("—"), tokens.control}});
        return;
    }
    if (!isFolder(about_.item)) {
        size_->setRuns(runsOf(details.status ? details.status->size : about_.item.size));
        return;
    }
    std::vector<RunLabel::Run> size;
    std::vector<RunLabel::Run> counts;
    if (details.content) {
        size = runsOf(details.content->bytes);
        const auto folders = counted(details.content->folders, {"složka", "složky", "složek"});
        counts = {
            {fileCount(details.content->files) + QStringLiteral(", ") + folders, tokens.text}};
    } else if (!details.isCounting) {
        size = counts = {{QStringLiteral("—"), tokens.control}};
    }
    if (details.isCounting) {
        const auto space = counts.empty() ? QString() : QStringLiteral("  ");
        counts.push_back({space + QStringLiteral("počítám…"), tokens.accentText});
        if (size.empty())
            size = counts;
    }
    size_->setRuns(size);
    counts_->setRuns(counts);
}

void InfoDialog::showRights(std::uint16_t mode) {
    const auto folder = about_.item.isFolderLike() ? Format::Folder::yes : Format::Folder::no;
    constexpr unsigned allBits = 07777;
    letters_->setText(fromUtf8(Format::permissions(mode, folder)));
    octal_->setText(
        QString::number(mode & allBits, 8).rightJustified(octalDigits, QLatin1Char('0')));
    table_->setMode(mode);
}

} // namespace fennik::ui

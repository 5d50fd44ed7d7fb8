// The least that shows two folders: one window with two tables, each filled by a thread of its own
// as soon as the window is on the screen:
//   bare_window LEFT RIGHT
#include "benchmarks/BareListing.h"
#include "benchmarks/PictureClock.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableView>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace fennik;

/// A folder at 32 bytes an entry and the bytes of its names.
struct Entries {
    struct Record {
        std::uint64_t name;
        std::int64_t size;
        std::int64_t seconds;
        std::uint32_t nanoseconds;
        std::uint16_t nameLength;
        std::uint16_t mode;
    };
    std::string names;
    std::vector<Record> records;
};
static_assert(sizeof(Entries::Record) == 32);

Entries list(const std::string& folder) {
    Entries entries;
    bench::forEachEntry(folder, [&entries](const char* name, const struct statx& info) {
        const auto length = std::strlen(name);
        entries.records.push_back({.name = entries.names.size(),
                                   .size = static_cast<std::int64_t>(info.stx_size),
                                   .seconds = info.stx_mtime.tv_sec,
                                   .nanoseconds = info.stx_mtime.tv_nsec,
                                   .nameLength = static_cast<std::uint16_t>(length),
                                   .mode = info.stx_mode});
        entries.names.append(name, length);
    });
    return entries;
}

class Model final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void show(Entries entries) {
        beginResetModel();
        entries_ = std::move(entries);
        isFilled_ = true;
        endResetModel();
    }

    bool isFilled() const { return isFilled_; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(entries_.records.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : 4;
    }

    QVariant data(const QModelIndex& index, int role) const override {
        // The rights, as Fennik writes them.
        static const QFont fixed(QStringLiteral("DejaVu Sans Mono"));
        if (role == Qt::FontRole && index.column() == 3)
            return fixed;
        if (role != Qt::DisplayRole)
            return {};
        const auto& record = entries_.records[static_cast<std::size_t>(index.row())];
        switch (index.column()) {
        case 0:
            return QString::fromUtf8(entries_.names.data() + record.name, record.nameLength);
        case 1:
            return QString::number(record.size);
        case 2:
            return QString::number(record.seconds);
        default:
            return QString::number(record.mode, 8);
        }
    }

private:
    Entries entries_;
    bool isFilled_ = false;
};

QTableView* makeTable(Model& model, QWidget& window) {
    auto* table = new QTableView(&window);
    table->setModel(&model);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(24);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->setShowGrid(false);
    auto heading = table->font();
    heading.setWeight(QFont::DemiBold);
    table->horizontalHeader()->setFont(heading);
    window.layout()->addWidget(table);
    return table;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argumentCount, arguments);
    QFont font(QStringLiteral("Inter"));
    font.setPointSizeF(9.75);
    QApplication::setFont(font);

    std::array<Model, 2> models;
    QWidget window;
    window.setLayout(new QHBoxLayout);
    window.resize(1440, 900);
    auto* left = makeTable(models[0], window)->viewport();
    auto* right = makeTable(models[1], window)->viewport();
    const bench::PictureClock clock(*left, *right, [&](const QWidget& painted) {
        return models[&painted == left ? 0 : 1].isFilled();
    });
    window.show();
    std::array<std::thread, 2> threads;
    for (std::size_t side = 0; auto& thread : threads) {
        thread = std::thread([&model = models[side], folder = std::string(arguments[side + 1])] {
            auto entries = std::make_shared<Entries>(list(folder));
            QMetaObject::invokeMethod(
                &model, [&model, entries] { model.show(std::move(*entries)); },
                Qt::QueuedConnection);
        });
        ++side;
    }
    const int code = QApplication::exec();
    for (auto& thread : threads)
        thread.join();
    return code;
}

#include "core/listing/MarkState.h"

#include "core/listing/MarkTotals.h"

#include <gmock/gmock.h>

#include <limits>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// The parent entry in row 0, then `views`.
FileItems withParent(const std::vector<FileItemView>& views) {
    FileItems::Builder builder{FileUrl("/f")};
    std::vector<std::uint32_t> order{FileItems::parentRow};
    for (const auto& view : views) {
        order.push_back(static_cast<std::uint32_t>(order.size()) - 1);
        builder.add(view);
    }
    return builder.finish().reordered(std::move(order));
}

FileItems named(const std::vector<std::string>& names) {
    std::vector<FileItemView> views;
    for (const auto& name : names)
        views.push_back({.name = name});
    return withParent(views);
}

const FileItems& letters() {
    static const auto items = named({"a", "b", "c", "d"});
    return items;
}

} // namespace

TEST(MarkStateTest, rangesAreClampedAndSkipTheParentEntry) {
    MarkState marks;
    EXPECT_THAT(marks.markRange(letters(), 2, -7, Marking::mark), ElementsAre(1U, 2U));
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a", "b"));
    EXPECT_EQ(marks.anchor(), 2);
    EXPECT_EQ(marks.base(), marks.marked());
    EXPECT_THAT(marks.markRange(letters(), 1, 99, Marking::mark), ElementsAre(3U, 4U));
    EXPECT_THAT(marks.markRange(letters(), 2, 3, Marking::unmark), ElementsAre(2U, 3U));
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a", "d"));

    constexpr auto far = std::numeric_limits<std::ptrdiff_t>::max();
    EXPECT_THAT(marks.markRange(letters(), far, far, Marking::unmark), ElementsAre(4U));
    EXPECT_THAT(marks.markRange({}, -far, far, Marking::mark), IsEmpty());
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a"));
}

TEST(MarkStateTest, theBaseStaysWhileSingleMarksChange) {
    MarkState marks;
    marks.markRange(letters(), 1, 2, Marking::mark);
    marks.toggle("a");
    marks.toggle("d");
    marks.toggle("..");
    marks.markByMask(letters(), FileMask("[!d]"), Marking::mark);
    marks.markByMask(letters(), FileMask("b"), Marking::unmark);
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a", "c", "d"));
    EXPECT_THAT(marks.base(), UnorderedElementsAre("a", "b"));
    EXPECT_EQ(marks.anchor(), 1);

    auto other = marks;
    EXPECT_EQ(other, marks);
    other.toggle("a");
    EXPECT_NE(other, marks);
    other.toggle("a");
    EXPECT_EQ(other, marks);
    other.markRange(letters(), 1, 1, Marking::mark);
    EXPECT_EQ(other.marked(), marks.marked());
    EXPECT_NE(other, marks); // other base
}

TEST(MarkStateTest, allNoneAndTheOthersLeaveNoAnchor) {
    MarkState marks;
    marks.markRange(letters(), 2, 2, Marking::mark);
    marks.invert(letters());
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a", "c", "d"));
    EXPECT_EQ(marks.base(), marks.marked());
    EXPECT_EQ(marks.anchor(), std::nullopt);
    marks.markAll(letters());
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("a", "b", "c", "d"));
    marks.toggle("a");
    marks.unmarkAll();
    EXPECT_EQ(marks, MarkState());
}

TEST(MarkStateTest, pruningKeepsWhatIsStillListed) {
    MarkState marks;
    marks.markRange(letters(), 4, 1, Marking::mark);
    marks.toggle("b");
    marks.toggle("d");
    marks.prune(named({"x", "d", "c"}));
    EXPECT_THAT(marks.marked(), UnorderedElementsAre("c"));
    EXPECT_THAT(marks.base(), UnorderedElementsAre("c", "d"));
    EXPECT_EQ(marks.anchor(), std::nullopt);
    marks.markRange(letters(), 3, 3, Marking::mark);
    marks.prune(named({"c", "d", "e"}));
    EXPECT_EQ(marks.anchor(), 3);
}

TEST(MarkStateTest, targetsAreTheMarkedRowsElseTheCursor) {
    MarkState marks;
    EXPECT_THAT(marks.targets(letters(), 0), IsEmpty());
    EXPECT_THAT(marks.targets(letters(), 3), ElementsAre(3U));
    EXPECT_THAT(marks.targets(letters(), 5), IsEmpty());
    EXPECT_THAT(marks.targets({}, 0), IsEmpty());
    marks.toggle("d");
    marks.toggle("b");
    EXPECT_THAT(marks.targets(letters(), 3), ElementsAre(2U, 4U));
}

TEST(MarkTotalsTest, followSingleMarksAndSizes) {
    const auto items =
        withParent({{.name = "f", .size = 10},
                    {.name = "l", .kind = FileKind::symlink, .linksToDirectory = true, .size = 5},
                    {.name = "d", .kind = FileKind::directory},
                    {.name = "p", .kind = FileKind::package, .size = 96},
                    {.name = "sized", .kind = FileKind::directory}});
    FolderSizes sizes{{"sized", 1000}};
    MarkState marks;
    marks.markAll(items);
    auto totals = MarkTotals::of(items, marks, sizes);
    EXPECT_EQ(totals, (MarkTotals{.count = 5, .bytes = 1010, .unsizedFolders = 2}));
    EXPECT_TRUE(totals.hasUnsizedFolders());

    for (const std::size_t row : {1U, 4U}) {
        marks.toggle(items.view(row).name);
        totals.remove(items.view(row), sizes);
    }
    totals.remove(items.view(3), sizes);
    sizes["d"] = 7;
    totals.add(items.view(3), sizes);
    EXPECT_EQ(totals, (MarkTotals{.count = 3, .bytes = 1007}));
    EXPECT_EQ(totals, MarkTotals::of(items, marks, sizes));

    // Sparse files of any size cannot spoil what is counted afterwards.
    const FileItemView huge{.name = "h", .size = std::numeric_limits<std::int64_t>::max()};
    totals.add(huge, sizes);
    totals.remove(huge, sizes);
    EXPECT_EQ(totals.bytes, 1007);
}

} // namespace fennik::test

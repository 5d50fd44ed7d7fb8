#include "app/ui/OutputView.h"

#include "app/model/CommandOutput.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <gmock/gmock.h>

namespace fennik::ui {

namespace {

class OutputViewTest : public testing::Test {
protected:
    OutputViewTest() {
        view.resize(600, 200);
        view.show();
        view.begin(QStringLiteral("make"));
    }
    void write(int lines) {
        app::CommandOutput newer;
        for (int i = 0; i < lines; ++i)
            newer.endLine("line " + std::to_string(written++));
        output.append(std::move(newer));
        view.showOutput(output);
    }
    bool isAtEnd() const {
        return view.verticalScrollBar()->value() == view.verticalScrollBar()->maximum();
    }
    /// Of the first block in view.
    QString firstInView() const { return view.cursorForPosition(QPoint(20, 12)).block().text(); }
    QString expected() const {
        const auto text = QString::fromStdString("$ make\n" + output.text());
        return text.endsWith('\n') ? text.chopped(1) : text;
    }

    Theme theme{Appearance::light};
    OutputView view{theme, nullptr};
    app::CommandOutput output;
    int written = 0;
};

TEST_F(OutputViewTest, showsTheSameAsIfItWereShownAtOnce) {
    EXPECT_EQ(view.toPlainText(), "$ make");
    write(3);
    EXPECT_EQ(view.toPlainText(), expected());
    for (const auto* text : {"10 %", "100 %", ""}) {
        output.setLast(text);
        view.showOutput(output);
        EXPECT_EQ(view.toPlainText(), expected());
    }
    for (const int lines : {4990, 30, 1, 7000, 2}) {
        write(lines);
        output.setLast("rest");
        view.showOutput(output);
        EXPECT_EQ(view.toPlainText(), expected()) << lines;
    }
    view.begin(QStringLiteral("ls"));
    EXPECT_EQ(view.toPlainText(), "$ ls");
}

TEST_F(OutputViewTest, followsTheEndUnlessItIsScrolledUp) {
    write(4000);
    EXPECT_TRUE(isAtEnd());
    view.verticalScrollBar()->setValue(3000);
    const auto seen = firstInView();
    ASSERT_THAT(seen.toStdString(), testing::StartsWith("line 29"));
    write(100);
    EXPECT_EQ(firstInView(), seen);
    write(2000); // and now the oldest lines go
    EXPECT_EQ(firstInView(), seen);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    write(10);
    EXPECT_TRUE(isAtEnd());
}

TEST_F(OutputViewTest, followsTheEndOfLinesThatWrap) {
    for (int round = 0; round < 20; ++round) {
        app::CommandOutput newer;
        for (int i = 0; i < 1000; ++i)
            newer.endLine(std::string(std::size_t(i) % 700, 'x'));
        output.append(std::move(newer));
        view.showOutput(output);
        QTest::qWait(1); // as it is painted, lines turn out to be several
        EXPECT_TRUE(isAtEnd()) << round;
    }
    view.resize(300, 100);
    QTest::qWait(1);
    EXPECT_TRUE(isAtEnd());
}

} // namespace

} // namespace fennik::ui

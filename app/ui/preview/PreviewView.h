#pragma once

#include "app/ui/Motion.h"
#include "app/ui/UiContext.h"
#include "app/ui/preview/PreviewTexts.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QPlainTextEdit;
class QScrollBar;
class QStackedWidget;
class QTimer;

namespace fennik::ui {

class ElidedLabel;
class IconButton;
class LoadingStripe;
class PreviewList;
class PreviewNotice;
class PreviewPicture;
class RunLabel;

/// The quick preview, in the place of a panel. It never takes the keyboard. What it shows comes all
/// at once: until the content has been read, or has taken its time, it stays with the item before.
class PreviewView final : public QWidget {
    Q_OBJECT

public:
    PreviewView(const UiContext& context, QWidget* parent);
    ~PreviewView() override;

    /// Moves on in what is longer than its place, back when negative.
    void scrollPages(int pages);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void takePreview();
    void takeOpening(bool isOpen);
    void arrive();
    void takeMarks();
    void showSubject();
    void showLoading();
    void showContent(const app::PreviewContent& content);
    void showText(const QString& text, const QFont& font, bool isCut);
    void showKeys();
    QScrollBar* scrollBar() const; ///< of what is shown, if that can be scrolled
    void showFacts(const std::vector<PreviewTexts::Fact>& facts);
    void placeFoot();
    void takeTheme();
    void setOpacity(double opacity);
    void tell();
    int headerHeight() const;

    UiContext context_;
    app::QuickPreview& preview_;
    const Theme& theme_;
    QLabel* icon_;
    ElidedLabel* name_;
    QLabel* word_;
    IconButton* back_;
    IconButton* forth_;
    QLabel* place_;
    IconButton* close_;
    LoadingStripe* stripe_;
    QStackedWidget* body_;
    PreviewNotice* notice_;
    PreviewPicture* picture_;
    QPlainTextEdit* text_;
    PreviewList* list_;
    QWidget* foot_;
    QGridLayout* factRows_;
    QWidget* hints_;
    ElidedLabel* hint_;
    QLabel* keys_;
    QTimer* patience_; ///< before loading shows
    Motion motion_;
    std::vector<PreviewTexts::Fact> facts_;
    int shownToken_ = 0;        ///< of what is shown, loading included
    bool showsContent_ = false; ///< of that
    bool isWide_ = true;        ///< enough for the facts to stand in two columns
};

} // namespace fennik::ui

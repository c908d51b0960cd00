#pragma once

#include "widgets/ImageWidget.h"

#include <QButtonGroup>
#include <QHash>
#include <QImage>
#include <QList>
#include <QStringList>
#include <QTimer>

#include <memory>

class HorizontalSlider;
class PhotographSource;
class ThumbnailButton;
class ThumbnailLoader;
class ThumbnailStore;

/// The strip of thumbnails below a photograph: one button a picture of the open folder, of which a
/// stretch around the current picture is shown. A child of the photograph canvas; GUI thread.
class ThumbnailWidget : public ImageWidget
{
    Q_OBJECT

public:
    ThumbnailWidget(PhotographSource *source, HorizontalSlider *slider, QWidget *parent);
    ~ThumbnailWidget() override;

    /// Makes the buttons again for the source's current folder and starts loading their pictures.
    /// Does not wait for a picture of the previous folder.
    void refresh();
    /// Shows the visible stretch of buttons and hides the others.
    void setThumbnailButtons();

public slots:
    /// Shows the picture of the button that was clicked.
    void photographSelected();
    /// Scrolls just far enough to show picture `id`, and marks it.
    void photographChanged(int id);
    /// Makes buttons for pictures that were added to the folder and loads what has changed; `id` is
    /// the picture shown.
    void folderChanged(int id);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    /// A screen with another pixel ratio needs other thumbnails.
    bool event(QEvent *event) override;

private slots:
    void viewChanged(int first);
    void thumbnailLoaded(int generation, int index, const QImage &image);

private:
    void removeButtons();
    /// Makes the first buttons at once and the others in idle moments, so that a folder opens at
    /// once however many pictures it has.
    void createButtons();
    void createMoreButtons();
    /// The button of picture `id`, made now if it was not yet.
    ThumbnailButton *buttonAt(int id);
    void fitView();
    void startLoading();
    void scrollTo(int first);

    PhotographSource *m_source;
    HorizontalSlider *m_slider;
    int m_visibleCount = 0;
    int m_firstVisible = 0;
    int m_leftOffset = 0;
    /// The loader of the open folder, a child of this widget; null before the first folder.
    ThumbnailLoader *m_loader = nullptr;
    qreal m_loadedRatio = 0;
    /// Lasts longer than its loaders.
    std::shared_ptr<ThumbnailStore> m_store;
    std::unique_ptr<QButtonGroup> m_group;
    /// One for each picture; null for one that is not made yet.
    QList<ThumbnailButton *> m_buttons;
    /// All buttons before this index are made.
    int m_firstUnmade = 0;
    /// How many buttons were made so far, for all folders.
    int m_made = 0;
    QTimer m_idle;
    /// The thumbnails that have come for buttons that are not made yet.
    QHash<int, QImage> m_early;
    /// The visible buttons, a range of m_buttons.
    QList<ThumbnailButton *> m_shown;
    QStringList m_fileNames;
};

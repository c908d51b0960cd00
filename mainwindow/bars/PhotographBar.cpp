#include "mainwindow/bars/PhotographBar.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasMessage.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/Popups.h"
#include "mainwindow/WindowLayout.h"
#include "mainwindow/bars/BarButtons.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "resources/SkinImages.h"
#include "settings/Config.h"
#include "sources/PhotographSource.h"
#include "sources/photographs/PhotographList.h"
#include "widgets/FileDialogs.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ImageWidget.h"
#include "widgets/Slider.h"
#include "widgets/TickLabel.h"
#include "widgets/ToolTips.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>

namespace
{

constexpr int INDEX_POINTS = 15;
constexpr int INDEX_MARGIN = 2;

QString sentenceOn(PictureProblem problem)
{
    switch (problem) {
    case PictureProblem::None:
        break;
    case PictureProblem::Gone:
        return QCoreApplication::translate(
            "MainWindow", "The photograph cannot be shown: the file is no longer there.");
    case PictureProblem::Unreadable:
        return QCoreApplication::translate(
            "MainWindow", "The photograph cannot be shown: the file cannot be read.");
    case PictureProblem::Damaged:
        return QCoreApplication::translate("MainWindow",
                                           "The photograph cannot be shown: the file is damaged, "
                                           "too large or not a picture.");
    case PictureProblem::NoAnswer:
        return QCoreApplication::translate(
            "MainWindow", "The photograph cannot be shown yet: its drive does not answer.");
    }
    return {};
}

/// Why a file that was chosen is not among the photographs of its folder.
QString sentenceOnChosen(const QString &name, PictureProblem refusal)
{
    if (refusal == PictureProblem::NoAnswer || PhotographList::isPictureName(name))
        return sentenceOn(refusal);
    return QCoreApplication::translate(
               "MainWindow", "\"%1\" is not shown: names of photographs end in .bmp, .jpg, .jpeg, "
                             ".png or .gif, in lower case.")
        .arg(name);
}

} // namespace

PhotographBar::PhotographBar(PhotographSource *source, ImageCanvas *canvas, Popups *popups,
                             CommandButtons *buttons, QWidget *window)
    : QObject(window)
    , m_source(source)
    , m_popups(popups)
    , m_window(window)
    , m_message(new CanvasMessage(canvas))
{
    createBar(buttons);
    createInterval();
    createIndex();
    createThumbnails(canvas);
}

QSize PhotographBar::barSize() const
{
    return m_bar->size();
}

ThumbnailWidget *PhotographBar::thumbnails() const
{
    return m_thumbnails;
}

QWidget *PhotographBar::message() const
{
    return m_message;
}

void PhotographBar::place(const WindowLayout &at)
{
    m_bar->move(at.photographBar);
    m_interval->move(at.intervalSlider);
    m_intervalLabel->move(at.intervalLabel);
    m_indexLabel->move(at.indexLabel.topLeft());
    m_indexLabel->setFixedSize(at.indexLabel.size());
    m_thumbnails->move(at.thumbnailStrip.topLeft());
    m_thumbnails->setFixedSize(at.thumbnailStrip.size());
    m_scrollBar->move(at.thumbnailScrollBar.topLeft());
    m_scrollBar->setFixedSize(at.thumbnailScrollBar.size());
}

void PhotographBar::enter()
{
    m_bar->show();
    m_bar->raise();
    m_indexLabel->show();
    m_source->resumeCapture();
    showPlaying();
}

void PhotographBar::leave()
{
    m_bar->hide();
    m_intervalButton->setChecked(false);
    m_thumbnailsButton->setChecked(false);
    m_interval->hide();
    m_intervalLabel->hide();
    m_thumbnails->hide();
    m_scrollBar->hide();
    m_indexLabel->hide();
    m_source->pauseCapture();
}

void PhotographBar::openDirectory()
{
    m_popups->closeAny();
    const QString file = FileDialogs::openFile(m_window, Config::snapshotPath());
    // An empty answer would mean the current folder.
    if (file.isEmpty())
        return;
    const QFileInfo info(file);
    if (m_source->setDirectory(info.dir(), info.fileName()))
        showPlaying();
    else
        m_message->pass(sentenceOnChosen(info.fileName(), m_source->refusal()));
}

void PhotographBar::previous()
{
    m_popups->closeAny();
    m_source->previous();
    showPlaying();
}

void PhotographBar::next()
{
    m_popups->closeAny();
    m_source->next();
    showPlaying();
}

void PhotographBar::playOrStop()
{
    m_popups->closeAny();
    if (m_slideshowButton->isChecked())
        m_source->play();
    else
        m_source->stop();
}

void PhotographBar::playDone()
{
    m_slideshowButton->setChecked(false);
}

void PhotographBar::showThumbnails()
{
    m_popups->closeAny();
    const bool shown = m_thumbnailsButton->isChecked();
    m_thumbnails->setVisible(shown);
    m_scrollBar->setVisible(shown);
}

void PhotographBar::showInterval()
{
    m_popups->closeAny();
    const bool shown = m_intervalButton->isChecked();
    m_interval->setVisible(shown);
    m_intervalLabel->setVisible(shown);
    // In a narrow window the slider extends below the index.
    m_indexLabel->raise();
    m_intervalLabel->raise();
}

void PhotographBar::setInterval(int place)
{
    if (place >= 0 && place < static_cast<int>(PHOTOGRAPH_PLAY_INTERVALS.size()))
        m_source->setPlayInterval(PHOTOGRAPH_PLAY_INTERVALS[static_cast<std::size_t>(place)] *
                                  1000);
}

void PhotographBar::showIndex(int id)
{
    const QString text = QStringLiteral("%1/%2").arg(id + 1).arg(m_source->photographCount());
    QFont font("Arial", INDEX_POINTS);
    const int room = m_indexLabel->width() - INDEX_MARGIN;
    while (font.pointSize() > 1 && QFontMetrics(font).horizontalAdvance(text) > room)
        font.setPointSize(font.pointSize() - 1);
    m_indexLabel->setFont(font);
    m_indexLabel->setText(text);
    m_message->pass(sentenceOn(m_source->problem()));
}

void PhotographBar::showPlaying()
{
    m_slideshowButton->setChecked(m_source->playing());
}

void PhotographBar::createBar(CommandButtons *buttons)
{
    m_bar = new ImageWidget(SkinImages::load(":/icons/Background/PHOTO_CONTROL_BK.png"), m_window);
    BarButtons::create(Commands::Group::PhotographBar, m_bar, buttons);
    m_slideshowButton = buttons->of(Command::Slideshow);
    m_thumbnailsButton = buttons->of(Command::Thumbnails);
    m_intervalButton = buttons->of(Command::SlideshowInterval);
    m_bar->hide();
}

void PhotographBar::createInterval()
{
    m_interval = new Slider(Qt::Horizontal, m_window);
    m_interval->setTickPosition(QSlider::TicksBelow);
    // The slider's height ends above the numbers.
    m_interval->setFixedSize(160, 20);
    m_interval->setPageStep(1);
    m_interval->setRange(0, static_cast<int>(PHOTOGRAPH_PLAY_INTERVALS.size()) - 1);
    m_interval->setValue(0);
    m_interval->setAccessibleName(QCoreApplication::translate("MainWindow", "Slideshow interval"));
    ToolTips::addName(m_interval);
    connect(m_interval, &Slider::valueChanged, this, &PhotographBar::intervalMoved);
    m_interval->hide();

    m_intervalLabel = new TickLabel(
        QCoreApplication::translate("MainWindow", "1     2     5    10    15    30  sec."),
        m_window);
    QPalette palette = m_intervalLabel->palette();
    palette.setColor(QPalette::WindowText, Qt::gray);
    m_intervalLabel->setPalette(palette);
    m_intervalLabel->setFixedSize(200, 10);
    m_intervalLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_intervalLabel->hide();
}

void PhotographBar::createIndex()
{
    m_indexLabel = new QLabel("0/0", m_window);
    m_indexLabel->setFont(QFont("Arial", INDEX_POINTS));
    QPalette palette = m_indexLabel->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    m_indexLabel->setPalette(palette);
    m_indexLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_indexLabel->hide();
    connect(m_source, &PhotographSource::folderChanged, this, &PhotographBar::showIndex);
}

void PhotographBar::createThumbnails(ImageCanvas *canvas)
{
    m_scrollBar =
        new HorizontalSlider(SkinImages::load(":/icons/Background/PHOTO_SCROLL_BAR.png"), m_window);
    m_scrollBar->setAccessibleName(QCoreApplication::translate("MainWindow", "Thumbnails"));
    ToolTips::addName(m_scrollBar);
    m_scrollBar->hide();
    m_thumbnails = new ThumbnailWidget(m_source, m_scrollBar, canvas);
    m_thumbnails->hide();
}

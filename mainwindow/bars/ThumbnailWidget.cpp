#include "mainwindow/bars/ThumbnailWidget.h"

#include "mainwindow/bars/ThumbnailButton.h"
#include "mainwindow/bars/ThumbnailLayout.h"
#include "mainwindow/bars/ThumbnailLoader.h"
#include "resources/SkinImages.h"
#include "sources/PhotographSource.h"
#include "sources/photographs/FileNames.h"
#include "sources/photographs/ThumbnailStore.h"
#include "widgets/HorizontalSlider.h"

#include <QFileInfo>
#include <QPainter>
#include <QResizeEvent>

#include <algorithm>

namespace
{

/// How many buttons are made at once, also in one idle moment.
constexpr int MADE_AT_ONCE = 1000;
constexpr int MADE_IN_A_MOMENT = 100;

} // namespace

ThumbnailWidget::ThumbnailWidget(PhotographSource *source, HorizontalSlider *slider,
                                 QWidget *parent)
    : ImageWidget(SkinImages::load(":/icons/Background/THUMBNIL_BAR.png"), parent)
    , m_source(source)
    , m_slider(slider)
    , m_store(std::make_shared<ThumbnailStore>())
{
    // A press beside a button must not draw on the photograph below.
    setAttribute(Qt::WA_NoMousePropagation);
    connect(&m_idle, &QTimer::timeout, this, &ThumbnailWidget::createMoreButtons);
    refresh();
    connect(m_source, SIGNAL(photographChanged(int)), this, SLOT(photographChanged(int)));
    connect(m_source, &PhotographSource::folderChanged, this, &ThumbnailWidget::folderChanged);
    connect(m_slider, SIGNAL(valueChanged(int)), this, SLOT(viewChanged(int)));
}

ThumbnailWidget::~ThumbnailWidget()
{
    // Long enough to read one picture, if the disk answers.
    constexpr unsigned long ENOUGH_MS = 300;
    m_loader->stop();
    m_loader->wait(ENOUGH_MS);
    ThumbnailLoader::retire(m_loader);
}

void ThumbnailWidget::refresh()
{
    if (m_loader)
        m_loader->stop();
    removeButtons();
    m_fileNames = m_source->fileNameList();
    createButtons();
    fitView();
    startLoading();
}

void ThumbnailWidget::fitView()
{
    const auto view = ThumbnailLayout::filled(width(), m_fileNames.size());
    m_visibleCount = view.visibleCount;
    m_leftOffset = view.leftOffset;
    setThumbnailButtons();
    m_slider->setRange(0, std::max(m_fileNames.size() - m_visibleCount, 0));
    // The slider itself keeps a value that is outside the new range.
    m_slider->setValue(m_firstVisible);
}

void ThumbnailWidget::setThumbnailButtons()
{
    for (ThumbnailButton *button : qAsConst(m_shown))
        button->hide();
    m_shown.clear();
    m_firstVisible =
        ThumbnailLayout::clampedFirst(m_firstVisible, m_visibleCount, m_buttons.size());
    if (m_visibleCount < 1)
        return;
    for (int i = 0; i < m_visibleCount; ++i)
        m_shown.append(buttonAt(m_firstVisible + i));
    for (int i = 0; i < m_shown.size(); ++i) {
        m_shown[i]->move(m_leftOffset + i * ThumbnailLayout::PITCH, ThumbnailLayout::TOP);
        m_shown[i]->show();
        m_shown[i]->raise();
    }
}

void ThumbnailWidget::photographSelected()
{
    const int index = m_buttons.indexOf(qobject_cast<ThumbnailButton *>(sender()));
    if (index >= 0)
        m_source->selectPhotograph(index);
}

void ThumbnailWidget::photographChanged(int id)
{
    if (id < 0 || id >= m_buttons.size())
        return;
    const int first = ThumbnailLayout::firstShowing(id, m_firstVisible, m_visibleCount);
    if (first != m_firstVisible) {
        m_slider->setValue(first);
        scrollTo(first);
    }
    buttonAt(id)->setChecked(true);
}

void ThumbnailWidget::folderChanged(int id)
{
    const QStringList names = m_source->fileNameList();
    // Names are only added: each old one keeps its button.
    QList<ThumbnailButton *> buttons;
    buttons.reserve(names.size());
    int old = 0;
    for (const QString &name : names) {
        const bool isOld = old < m_fileNames.size() && m_fileNames.at(old) == name;
        buttons.append(isOld ? m_buttons.at(old++) : nullptr);
    }
    if (old < m_fileNames.size()) {
        refresh();
        photographChanged(id);
        return;
    }
    m_fileNames = names;
    m_buttons = buttons;
    m_early.clear();
    m_firstUnmade = 0;
    m_idle.start();
    fitView();
    startLoading();
    photographChanged(id);
}

void ThumbnailWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    painter.drawImage(rect(), image());
}

void ThumbnailWidget::resizeEvent(QResizeEvent *event)
{
    const auto view =
        ThumbnailLayout::resized(event->size().width(), m_fileNames.size(), m_leftOffset);
    m_visibleCount = view.visibleCount;
    m_leftOffset = view.leftOffset;
    setThumbnailButtons();
}

bool ThumbnailWidget::event(QEvent *event)
{
    // The widget has no native window until it is shown, and only then knows its screen.
    const bool otherScreen =
        event->type() == QEvent::ScreenChangeInternal || event->type() == QEvent::Show;
    if (otherScreen && m_loadedRatio != devicePixelRatioF())
        startLoading();
    return ImageWidget::event(event);
}

void ThumbnailWidget::viewChanged(int first)
{
    scrollTo(first);
}

void ThumbnailWidget::thumbnailLoaded(int generation, int index, const QImage &image)
{
    // A result that was under way when the folder changed belongs to buttons that no longer exist.
    if (generation != m_loader->generation() || index >= m_buttons.size())
        return;
    // Thousands may come at once, and making a button takes much longer than this.
    if (ThumbnailButton *button = m_buttons.at(index))
        button->setImage(image);
    else
        m_early.insert(index, image);
}

void ThumbnailWidget::removeButtons()
{
    m_idle.stop();
    m_early.clear();
    m_shown.clear();
    // The group is destroyed before its buttons: each of them would otherwise be searched for in
    // it.
    m_group = std::make_unique<QButtonGroup>();
    m_group->setExclusive(true);
    qDeleteAll(m_buttons);
    m_buttons.clear();
}

void ThumbnailWidget::createButtons()
{
    m_buttons.reserve(m_fileNames.size());
    for (int i = 0; i < m_fileNames.size(); ++i)
        m_buttons.append(nullptr);
    m_firstUnmade = std::min(m_fileNames.size(), MADE_AT_ONCE);
    for (int i = 0; i < m_firstUnmade; ++i)
        (void)buttonAt(i);
    if (m_firstUnmade < m_fileNames.size())
        m_idle.start();
}

void ThumbnailWidget::createMoreButtons()
{
    for (int made = 0; made < MADE_IN_A_MOMENT && m_firstUnmade < m_buttons.size();
         ++m_firstUnmade) {
        if (m_buttons.at(m_firstUnmade))
            continue;
        (void)buttonAt(m_firstUnmade);
        ++made;
    }
    if (m_firstUnmade >= m_buttons.size())
        m_idle.stop();
}

ThumbnailButton *ThumbnailWidget::buttonAt(int id)
{
    ThumbnailButton *&place = m_buttons[id];
    if (place)
        return place;
    place = new ThumbnailButton(this);
    place->hide();
    place->setFixedSize(ThumbnailLayout::BUTTON_WIDTH, ThumbnailLayout::BUTTON_HEIGHT);
    const QString name = FileNames::readable(QFileInfo(m_fileNames.at(id)).fileName());
    place->setAccessibleName(name);
    place->setToolTip(name);
    connect(place, SIGNAL(clicked()), this, SLOT(photographSelected()));
    // An id of its own, because the group would otherwise search all others for a free one.
    m_group->addButton(place, -2 - m_made++);
    const auto early = m_early.find(id);
    if (early != m_early.end()) {
        place->setImage(*early);
        m_early.erase(early);
    }
    return place;
}

void ThumbnailWidget::startLoading()
{
    const int generation = m_loader ? m_loader->generation() + 1 : 1;
    if (m_loader)
        ThumbnailLoader::retire(m_loader);
    m_loadedRatio = devicePixelRatioF();
    m_loader = new ThumbnailLoader(generation, m_fileNames, m_loadedRatio, this, m_store);
    connect(m_loader, &ThumbnailLoader::thumbnailLoaded, this, &ThumbnailWidget::thumbnailLoaded,
            Qt::QueuedConnection);
    m_loader->start(QThread::InheritPriority);
}

void ThumbnailWidget::scrollTo(int first)
{
    m_firstVisible = first;
    setThumbnailButtons();
}

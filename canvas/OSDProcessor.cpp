#include "canvas/OSDProcessor.h"

#include "canvas/DesktopMotion.h"
#include "canvas/ImageCanvas.h"
#include "canvas/osd/EffectNames.h"
#include "canvas/osd/IndicationTexts.h"
#include "resources/FittedFont.h"
#include "resources/SkinImages.h"
#include "sources/LiveSource.h"
#include "sources/WindowServices.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace
{

constexpr qint64 INDICATION_MS = 1000;
constexpr qint64 SNAPSHOT_MS = 500;
constexpr qint64 CLIP_BLINK_MS = 900;
constexpr qint64 CLIP_BLINK_HALF_PERIOD_MS = 100;
/// The icon's part of an image with a caption.
constexpr int ICON_AREA = 38;
/// Width of the bar that fills with the optical zoom.
constexpr double OPTICAL_BAR_WIDTH = 129.0;
constexpr int OPTICAL_BAR_FROM_RIGHT = 184;
constexpr QRgb OPTICAL_BAR_COLOR = 0xFF0080FF;
/// Opacity of the dark background of the zoom factor, and how far it extends past the text on
/// either side.
constexpr int GROUND_ALPHA = 178;
constexpr int FACTOR_MARGIN = 8;
/// How long an indication fades before it ends.
constexpr qint64 FADE_MS = 120;

qint64 monotonicMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

QImage osdImage(const QString &name)
{
    return SkinImages::load(QStringLiteral(":/icons/OSD/OSD_%1.png").arg(name));
}

int widthOf(const QImage &image)
{
    return SkinImages::layoutSize(image).width();
}

int heightOf(const QImage &image)
{
    return SkinImages::layoutSize(image).height();
}

} // namespace

OSDProcessor::OSDProcessor(MainWindow *window, ImageCanvas *canvas)
    : QObject(WindowServices::of(window).object())
    , m_window(window)
    , m_canvas(canvas)
    , m_clock(monotonicMs)
{
}

OSDProcessor::~OSDProcessor() = default;

void OSDProcessor::osdMask()
{
    m_maskTimer = m_clock();
    const int mode = m_canvas != nullptr ? m_canvas->maskMode.load() : CanvasModes::MaskNone;
    m_maskImage = osdImage("MASK_" + EffectNames::nameOf(EffectNames::maskIconNames, mode));
}

void OSDProcessor::osdEffect()
{
    m_effectTimer = m_clock();
    const int mode = m_canvas != nullptr ? m_canvas->effectMode.load() : CanvasModes::EffectColor;
    m_effectImage = osdImage("COLOR_" + EffectNames::nameOf(EffectNames::effectIconNames, mode));
    m_effectText = EffectNames::translatedEffectName(mode);
}

void OSDProcessor::osdBrightness()
{
    m_brightnessTimer = m_clock();
    m_brightnessImages.shortSegment = osdImage("BRIGHTNESS_BK_SHORT");
    m_brightnessImages.longSegment = osdImage("BRIGHTNESS_BK_LONG");
    m_brightnessImages.minimumEnd = osdImage("BRIGHTNESS_BK_MIN");
    m_brightnessImages.maximumEnd = osdImage("BRIGHTNESS_BK_MAX");
    m_brightnessImages.marker = osdImage("BRIGHTNESS_BAR");
    m_brightnessImages.centreMarker = osdImage("BRIGHTNESS_BAR_CENTER");
    emit indicated(tr("Brightness"));
}

void OSDProcessor::setBrightnessMode(bool on)
{
    m_brightnessModeOn = on;
    if (on)
        osdBrightness();
}

void OSDProcessor::osdZoomIn()
{
    m_zoomTimer = m_clock();
    m_zoomImage = osdImage("ZOOM_IN");
    m_zoomText = IndicationTexts::zoomStep(m_canvas != nullptr ? m_canvas->zoomScale() : 1.0);
    emit indicated(tr("Zoom") + QLatin1Char(' ') + m_zoomText);
}

void OSDProcessor::osdZoomOut()
{
    m_zoomTimer = m_clock();
    m_zoomImage = osdImage("ZOOM_OUT");
    m_zoomText = IndicationTexts::zoomStep(m_canvas != nullptr ? m_canvas->zoomScale() : 1.0);
    emit indicated(tr("Zoom") + QLatin1Char(' ') + m_zoomText);
}

void OSDProcessor::osdOpticalZoomOn()
{
    m_zoomText.clear();
    m_opticalZoomOn = true;
    emit indicated(tr("Zoom"));
}

void OSDProcessor::osdOpticalZoomOff()
{
    m_opticalZoomOn = false;
}

void OSDProcessor::osdRotate()
{
    m_rotateTimer = m_clock();
    m_rotateImage = osdImage("ROTATE");
    m_rotateText = IndicationTexts::rotation(m_canvas != nullptr ? m_canvas->rotation() : 0);
}

void OSDProcessor::osdAutoFocus()
{
    m_autoFocusTimer = m_clock();
    m_autoFocusImage = osdImage("AUTOFOCUS");
}

void OSDProcessor::osdFreeze()
{
    m_freezeImage = osdImage("FREEZE");
    const bool isFrozen = m_canvas != nullptr && m_canvas->frozen;
    emit indicated(isFrozen ? tr("The picture is frozen.") : tr("The picture moves again."));
}

void OSDProcessor::osdMacro(bool on)
{
    m_macroOn = on;
    m_macroImage = osdImage("MACRO");
}

void OSDProcessor::osdRecord()
{
    m_recordTime.start(m_clock());
    m_recordImage = osdImage("TIME");
    emit indicated(tr("Recording has begun."));
}

void OSDProcessor::stopOsdRecord()
{
    if (m_recordTime.isRunning())
        emit indicated(tr("Recording has ended."));
    m_recordTime.stop();
}

void OSDProcessor::holdOsdRecord(bool held)
{
    if (m_recordTime.isRunning())
        emit indicated(held ? tr("Recording is paused.") : tr("Recording goes on."));
    m_recordTime.setHeld(held, m_clock());
}

void OSDProcessor::osdSnapshot()
{
    m_snapshotTimer = m_clock();
    m_snapshotImage = osdImage("SNAPSHOT");
    emit indicated(tr("Snapshot taken."));
}

void OSDProcessor::postPaint(QPainter *painter)
{
    if (painter == nullptr || m_canvas == nullptr)
        return;
    painter->save();
    SkinImages::smoothAtFractions(painter);
    // Later ones lie over earlier ones where a narrow window makes them meet.
    paintModes(painter);
    paintBrightness(painter);
    if (begin(painter, m_zoomTimer, INDICATION_MS))
        paintImageText(painter, m_canvas->width() - 100, m_canvas->height() - 50, m_zoomImage,
                       m_zoomText);
    paintOpticalZoom(painter);
    if (begin(painter, m_rotateTimer, INDICATION_MS))
        paintImageText(painter, m_canvas->width() - 100, m_canvas->height() - 100, m_rotateImage,
                       m_rotateText);
    paintCameraStates(painter);
    paintRecordTime(painter);
    if (begin(painter, m_snapshotTimer, SNAPSHOT_MS))
        painter->drawImage(QPointF(10, 10), m_snapshotImage);
    painter->setOpacity(1.0);
    paintClipFrame(painter);
    painter->restore();
}

void OSDProcessor::paintImageText(QPainter *painter, int x, int y, const QImage &image,
                                  const QString &text)
{
    painter->drawImage(QPointF(x, y), image);
    painter->setPen(Qt::white);
    const int room = widthOf(image) - ICON_AREA;
    painter->setFont(FittedFont::within(QFont("Arial", 11), text, room));
    const QFontMetrics metrics = painter->fontMetrics();
    painter->drawText(x + ICON_AREA + (room - metrics.horizontalAdvance(text)) / 2,
                      y + (heightOf(image) + metrics.height()) / 2, text);
}

void OSDProcessor::setClock(Clock clock)
{
    m_clock = std::move(clock);
}

const QImage &OSDProcessor::BrightnessImages::of(BrightnessScale::Piece piece) const
{
    switch (piece) {
    case BrightnessScale::Piece::MinimumEnd:
        return minimumEnd;
    case BrightnessScale::Piece::MaximumEnd:
        return maximumEnd;
    case BrightnessScale::Piece::ShortSegment:
        return shortSegment;
    case BrightnessScale::Piece::LongSegment:
        return longSegment;
    case BrightnessScale::Piece::Marker:
        return marker;
    case BrightnessScale::Piece::CentreMarker:
        break;
    }
    return centreMarker;
}

BrightnessScale::Widths OSDProcessor::BrightnessImages::widths() const
{
    return {widthOf(minimumEnd), widthOf(maximumEnd), widthOf(shortSegment), widthOf(longSegment)};
}

void OSDProcessor::paintModes(QPainter *painter)
{
    const int bottomLine = m_canvas->height() - 50;
    if (begin(painter, m_maskTimer, INDICATION_MS))
        painter->drawImage(QPointF(30, bottomLine), m_maskImage);
    if (begin(painter, m_effectTimer, INDICATION_MS))
        paintImageText(painter, 75, bottomLine, m_effectImage, m_effectText);
}

void OSDProcessor::paintBrightness(QPainter *painter)
{
    if (!begin(painter, m_brightnessTimer, INDICATION_MS) && !m_brightnessModeOn)
        return;
    if (m_brightnessModeOn)
        painter->setOpacity(1.0);
    LiveSourceBase *source = camera();
    const int value = source != nullptr ? source->brightness() : 0;
    const int maximum = source != nullptr ? source->brightnessMax() : 0;
    const int minimum = source != nullptr ? source->brightnessMin() : 0;
    const auto pieces = BrightnessScale::layout(m_canvas->size(), value, minimum, maximum,
                                                m_brightnessImages.widths());
    for (const BrightnessScale::PlacedPiece &piece : pieces)
        painter->drawImage(QPointF(piece.position), m_brightnessImages.of(piece.piece));
}

void OSDProcessor::paintOpticalZoom(QPainter *painter)
{
    if (!m_opticalZoomOn)
        return;
    painter->setOpacity(1.0);
    LiveSourceBase *source = camera();
    const double lens = source != nullptr ? source->opticalZoomPercent() : 0.0;
    const double factor = source != nullptr ? source->digitalZoomPercent() : 0.0;
    const int width = m_canvas->width();
    const int height = m_canvas->height();
    if (lens != 0.0) {
        painter->drawImage(QPointF(width - 250, height - 50), m_zoomImage);
        // A wrong answer of the camera must not draw beyond the widget's edge.
        const auto bar = static_cast<int>(
            std::min(lens * OPTICAL_BAR_WIDTH, static_cast<double>(OPTICAL_BAR_FROM_RIGHT)));
        painter->fillRect(width - OPTICAL_BAR_FROM_RIGHT, height - 40, bar, 18,
                          QColor(OPTICAL_BAR_COLOR));
    }
    if (!qFuzzyCompare(factor, 1.0)) {
        painter->setPen(Qt::white);
        QFont font;
        font.setPointSize(24);
        painter->setFont(font);
        const QPoint baseline(width - 110, height - 56);
        const QString text = IndicationTexts::digitalZoom(factor);
        const QFontMetrics metrics = painter->fontMetrics();
        // White letters alone would not be readable on white paper.
        const QRect ground(baseline.x() - FACTOR_MARGIN, baseline.y() - metrics.ascent(),
                           metrics.horizontalAdvance(text) + 2 * FACTOR_MARGIN, metrics.height());
        painter->fillRect(ground, QColor(0, 0, 0, GROUND_ALPHA));
        painter->drawText(baseline, text);
    }
}

void OSDProcessor::paintCameraStates(QPainter *painter)
{
    const int width = m_canvas->width();
    const int bottomLine = m_canvas->height() - 50;
    if (begin(painter, m_autoFocusTimer, INDICATION_MS))
        painter->drawImage(QPointF(width - 145, bottomLine), m_autoFocusImage);
    painter->setOpacity(1.0);
    if (m_canvas->frozen)
        painter->drawImage(QPointF(width - 190, bottomLine), m_freezeImage);
    if (m_macroOn)
        painter->drawImage(QPointF(width - 235, bottomLine), m_macroImage);
}

void OSDProcessor::paintRecordTime(QPainter *painter)
{
    if (!m_recordTime.isRunning())
        return;
    const int imageWidth = widthOf(m_recordImage);
    const int x = (m_canvas->width() - imageWidth) / 2;
    const int y = m_canvas->height() - 100;
    painter->drawImage(QPointF(x, y), m_recordImage);
    painter->setPen(Qt::red);
    QFont font("Arial", 15);
    font.setWeight(QFont::Bold);
    painter->setFont(font);
    const QString text = IndicationTexts::recordTime(m_recordTime.elapsedMs(m_clock()));
    const QFontMetrics metrics = painter->fontMetrics();
    painter->drawText(x + (imageWidth - metrics.horizontalAdvance(text)) / 2,
                      y - 3 + (metrics.height() + heightOf(m_recordImage)) / 2, text);
}

void OSDProcessor::paintClipFrame(QPainter *painter)
{
    if (m_canvas->clipRectangle().isValid()) {
        m_clipFrame = m_canvas->clippingRect();
        m_clipBlinkTimer = m_clock();
    }
    if (!isDue(m_clipBlinkTimer, CLIP_BLINK_MS))
        return;
    const qint64 elapsedMs = m_clock() - *m_clipBlinkTimer;
    if (elapsedMs / CLIP_BLINK_HALF_PERIOD_MS % 2 != 0)
        return;
    painter->setPen(Qt::black);
    painter->setBrush(Qt::NoBrush);
    painter->drawRects(&m_clipFrame, 1);
}

bool OSDProcessor::isDue(const Timer &timer, qint64 limitMs) const
{
    return timer && m_clock() - *timer < limitMs;
}

bool OSDProcessor::begin(QPainter *painter, const Timer &timer, qint64 limitMs) const
{
    if (!isDue(timer, limitMs))
        return false;
    const qint64 leftMs = limitMs - (m_clock() - *timer);
    const bool fades = leftMs < FADE_MS && DesktopMotion::isWanted(*m_canvas);
    painter->setOpacity(fades ? static_cast<double>(leftMs) / FADE_MS : 1.0);
    return true;
}

LiveSourceBase *OSDProcessor::camera() const
{
    return WindowServices::of(m_window).liveSource();
}

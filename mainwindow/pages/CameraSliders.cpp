#include "mainwindow/pages/CameraSliders.h"

#include "mainwindow/CameraPreferences.h"
#include "mainwindow/pages/Pages.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraSettings.h"
#include "widgets/FormControls.h"
#include "widgets/Slider.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace
{

constexpr int REFRESH_MS = 1000;
constexpr int SLIDER_HEIGHT = 20;
/// The steps of the keys for a page up and down.
constexpr int SLIDER_PAGES = 10;

int toInt(std::int64_t value)
{
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

struct SliderName {
    StandardControl control;
    const char *name;
};
constexpr SliderName SLIDER_NAMES[] = {
    {StandardControl::Exposure, QT_TRANSLATE_NOOP("MoreToolWindow", "Exposure")},
    {StandardControl::Focus, QT_TRANSLATE_NOOP("MoreToolWindow", "Focus")},
    {StandardControl::WhiteBalance, QT_TRANSLATE_NOOP("MoreToolWindow", "White balance")},
    {StandardControl::Sharpness, QT_TRANSLATE_NOOP("MoreToolWindow", "Sharpness")},
};

QGridLayout *makeGrid(QWidget *row)
{
    auto *grid = new QGridLayout(row);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(0, 1);
    return grid;
}

} // namespace

CameraSliders::CameraSliders(LiveSource *camera, QWidget *parent)
    : QWidget(parent)
    , m_camera(camera)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    for (const SliderName &row : SLIDER_NAMES)
        addRow(row.control, Pages::text(row.name));
    addFrequency();
    connect(&camera->cameraSettings(), &CameraSettings::changed, this, &CameraSliders::refresh);
    connect(&camera->cameraSettings(), &CameraSettings::cameraChanged, this, [this] {
        if (isVisible())
            m_camera->cameraSettings().ask();
    });
    m_timer.setInterval(REFRESH_MS);
    connect(&m_timer, &QTimer::timeout, this, [camera] { camera->cameraSettings().refresh(); });
    refresh();
}

void CameraSliders::showEvent(QShowEvent *event)
{
    m_camera->cameraSettings().ask();
    m_camera->cameraSettings().refresh();
    m_timer.start();
    QWidget::showEvent(event);
}

void CameraSliders::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

void CameraSliders::addRow(StandardControl control, const QString &name)
{
    auto *widget = new QWidget(this);
    QGridLayout *grid = makeGrid(widget);
    auto *slider = new Slider(Qt::Horizontal, widget);
    slider->setFixedHeight(SLIDER_HEIGHT);
    slider->setAccessibleName(name);
    Pages::leaveWheelToPage(slider);
    QCheckBox *automatic =
        Pages::makeCheckBox(QT_TRANSLATE_NOOP("MoreToolWindow", "Automatic"), false, widget);
    automatic->setAccessibleName(QStringLiteral("%1: %2").arg(name, automatic->text()));
    grid->addWidget(new QLabel(name, widget), 0, 0);
    grid->addWidget(automatic, 0, 1);
    grid->addWidget(slider, 1, 0, 1, 2);
    layout()->addWidget(widget);
    connect(slider, &Slider::valueChanged, this, [this, control, slider](int value) {
        // Kept when it is let go of, and not on the disk at every pixel.
        if (slider->isSliderDown())
            m_camera->cameraSettings().set(control, value);
        else
            CameraPreferences::setControl(*m_camera, control, value);
    });
    connect(slider, &Slider::sliderReleased, this, [this, control, slider] {
        CameraPreferences::setControl(*m_camera, control, slider->value());
    });
    connect(automatic, &QCheckBox::toggled, this,
            [this, control](bool on) { CameraPreferences::setAutomatic(*m_camera, control, on); });
    m_rows.push_back({control, widget, slider, automatic});
}

void CameraSliders::addFrequency()
{
    m_frequencyRow = new QWidget(this);
    QGridLayout *grid = makeGrid(m_frequencyRow);
    auto *name =
        new QLabel(Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Against flickering light")),
                   m_frequencyRow);
    m_frequency = new QComboBox(m_frequencyRow);
    FormControls::applyLook(m_frequency);
    m_frequency->setAccessibleName(name->text());
    Pages::leaveWheelToPage(m_frequency);
    grid->addWidget(name, 0, 0);
    grid->addWidget(m_frequency, 1, 0);
    layout()->addWidget(m_frequencyRow);
    connect(m_frequency, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        CameraPreferences::setControl(*m_camera, StandardControl::PowerLine, index);
    });
}

void CameraSliders::refresh()
{
    for (const Row &row : m_rows)
        show(row);
    showFrequency();
}

void CameraSliders::show(const Row &row)
{
    const StandardControls &controls = m_camera->cameraSettings().controls();
    row.widget->setVisible(controls.has(row.control));
    if (!controls.has(row.control) || row.slider->isSliderDown())
        return;
    const QSignalBlocker sliderQuiet(row.slider), boxQuiet(row.automatic);
    const ControlRange range = controls.range(row.control);
    row.slider->setRange(toInt(range.minimum), toInt(range.maximum));
    row.slider->setSingleStep(toInt(range.step));
    row.slider->setPageStep(
        toInt(std::max(range.step, (range.maximum - range.minimum) / SLIDER_PAGES)));
    row.slider->setValue(toInt(range.current));
    row.automatic->setVisible(controls.hasAutomatic(row.control));
    row.automatic->setChecked(controls.automatic(row.control));
}

void CameraSliders::showFrequency()
{
    const StandardControls &controls = m_camera->cameraSettings().controls();
    m_frequencyRow->setVisible(controls.has(StandardControl::PowerLine));
    const ControlRange range = controls.range(StandardControl::PowerLine);
    const QStringList all{Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Off")), "50 Hz", "60 Hz",
                          Pages::text(QT_TRANSLATE_NOOP("MoreToolWindow", "Automatic"))};
    const QStringList offered = all.mid(0, toInt(range.maximum) + 1);
    if (m_frequency->count() != offered.size()) {
        m_frequency->clear();
        m_frequency->addItems(offered);
    }
    m_frequency->setCurrentIndex(toInt(range.current));
}

#include "mainwindow/CameraPreferences.h"

#include "mainwindow/KeptControls.h"
#include "settings/Preferences.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "sources/camera/CameraName.h"
#include "sources/camera/CameraSettings.h"
#include "sources/camera/UvcCamera.h"

#include <QUrl>

namespace
{

const QString CHOSEN = QStringLiteral("cameraChosen");
const QString NAME = QStringLiteral("cameraName");
const QString MIRRORED = QStringLiteral("cameraMirrored");
const QString WIDTH = QStringLiteral("cameraWidth");
const QString HEIGHT = QStringLiteral("cameraHeight");
constexpr int LARGEST_SIZE = 65535;

/// Where the controls of the camera in use are kept.
QString controlsKey(const LiveSource &source)
{
    const QString camera = source.camera().identity().text();
    return QStringLiteral("cameraControls/") + QString::fromLatin1(QUrl::toPercentEncoding(camera));
}

void keepControl(const LiveSource &source, StandardControl control, KeptControls::Value value)
{
    const QString key = controlsKey(source);
    KeptControls kept = KeptControls::fromText(Preferences::text(key));
    kept.keep(control, value);
    Preferences::setText(key, kept.text());
}

void restoreControls(LiveSource &source)
{
    CameraSettings &settings = source.cameraSettings();
    const KeptControls kept = KeptControls::fromText(Preferences::text(controlsKey(source)));
    for (const auto &[control, value] : kept.values()) {
        if (value)
            settings.set(control, *value);
        else
            settings.setAutomatic(control, true);
    }
}

/// A camera whose controls nobody has set is not asked for them.
void askForKept(LiveSource &source)
{
    if (!KeptControls::fromText(Preferences::text(controlsKey(source))).values().empty())
        source.cameraSettings().ask();
}

void keepPreviewSize(QSize size)
{
    Preferences::setNumber(WIDTH, size.isEmpty() ? 0 : size.width());
    Preferences::setNumber(HEIGHT, size.isEmpty() ? 0 : size.height());
}

} // namespace

void CameraPreferences::restore(CameraKeeper &keeper, LiveSource &source)
{
    keeper.choose(CameraIdentity::fromText(Preferences::text(CHOSEN)));
    const int both = Qt::Horizontal | Qt::Vertical;
    source.setMirrored(Qt::Orientations(Preferences::number(MIRRORED, 0, 0, both)));
    source.setPreviewSize(QSize(Preferences::number(WIDTH, 0, 0, LARGEST_SIZE),
                                Preferences::number(HEIGHT, 0, 0, LARGEST_SIZE)));
    QObject::connect(&source, &LiveSource::previewSizeDropped, &source,
                     [] { keepPreviewSize(QSize()); });
    QObject::connect(&source.cameraSettings(), &CameraSettings::cameraChanged, &source,
                     [&source] { askForKept(source); });
    QObject::connect(&source.cameraSettings(), &CameraSettings::ready, &source,
                     [&source] { restoreControls(source); });
}

void CameraPreferences::choose(CameraKeeper &keeper, const CameraChoice &choice,
                               const QString &name)
{
    Preferences::setText(CHOSEN, choice ? choice->text() : QString());
    Preferences::setText(NAME, choice ? name : QString());
    keeper.choose(choice);
}

QString CameraPreferences::chosenName()
{
    return shownCameraName(Preferences::text(NAME));
}

void CameraPreferences::setMirrored(LiveSource &source, Qt::Orientation direction, bool on)
{
    Qt::Orientations directions = source.mirrored();
    directions.setFlag(direction, on);
    Preferences::setNumber(MIRRORED, static_cast<int>(directions));
    source.setMirrored(directions);
}

void CameraPreferences::setPreviewSize(LiveSource &source, QSize size)
{
    if (!size.isEmpty() || !source.previewSize().isEmpty())
        keepPreviewSize(size);
    source.setPreviewSize(size);
}

void CameraPreferences::setControl(LiveSource &source, StandardControl control, std::int64_t value)
{
    source.cameraSettings().set(control, value);
    keepControl(source, control, source.cameraSettings().controls().range(control).current);
}

void CameraPreferences::setAutomatic(LiveSource &source, StandardControl control, bool on)
{
    CameraSettings &settings = source.cameraSettings();
    settings.setAutomatic(control, on);
    const std::int64_t value = settings.controls().range(control).current;
    keepControl(source, control, on ? KeptControls::Value() : value);
}

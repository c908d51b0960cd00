#include "mainwindow/CameraPreferences.h"

#include "settings/Preferences.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"
#include "sources/camera/CameraName.h"

namespace
{

const QString CHOSEN = QStringLiteral("cameraChosen");
const QString NAME = QStringLiteral("cameraName");
const QString MIRRORED = QStringLiteral("cameraMirrored");

} // namespace

void CameraPreferences::restore(CameraKeeper &keeper, LiveSource &source)
{
    keeper.choose(CameraIdentity::fromText(Preferences::text(CHOSEN)));
    const int both = Qt::Horizontal | Qt::Vertical;
    source.setMirrored(Qt::Orientations(Preferences::number(MIRRORED, 0, 0, both)));
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

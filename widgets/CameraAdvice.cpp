#include "widgets/CameraAdvice.h"

#include <QCoreApplication>
#include <QLocale>

namespace
{

using State = CameraStatus::State;

struct Row {
    State state;
    const char *sentence;
    const char *remedy;
};

constexpr char CONTEXT[] = "CameraPage";

constexpr Row ROWS[] = {
    {State::Waiting, QT_TRANSLATE_NOOP("CameraPage", "No camera is plugged in."),
     QT_TRANSLATE_NOOP("CameraPage",
                       "Plug the document camera into a USB port. Its picture comes by "
                       "itself.")},
    {State::Seen, QT_TRANSLATE_NOOP("CameraPage", "The camera is there and about to start."), ""},
    {State::Showing,
     QT_TRANSLATE_NOOP("CameraPage", "The camera shows %1 x %2 at %3 pictures a "
                                     "second. Lost: %4."),
     ""},
    {State::Unplugged, QT_TRANSLATE_NOOP("CameraPage", "The camera was unplugged."),
     QT_TRANSLATE_NOOP("CameraPage", "Plug it in again. Its picture comes back by itself.")},
    {State::Busy, QT_TRANSLATE_NOOP("CameraPage", "Another program uses the camera."),
     QT_TRANSLATE_NOOP("CameraPage", "Close the other program. The picture then comes by itself.")},
    {State::NoPermission, QT_TRANSLATE_NOOP("CameraPage", "You may not open the camera."),
     QT_TRANSLATE_NOOP("CameraPage",
                       "Enter these two commands in a terminal. The picture then comes "
                       "by itself.")},
    {State::NotOpened, QT_TRANSLATE_NOOP("CameraPage", "The camera cannot be opened."),
     QT_TRANSLATE_NOOP("CameraPage", "Unplug it and plug it in again, into another port if need "
                                     "be.")},
    {State::NoSuchSize, QT_TRANSLATE_NOOP("CameraPage", "The camera has no pictures of %1 x %2."),
     QT_TRANSLATE_NOOP("CameraPage", "Choose another resolution in the settings.")},
    {State::Silent, QT_TRANSLATE_NOOP("CameraPage", "The camera sends no pictures."),
     QT_TRANSLATE_NOOP("CameraPage",
                       "It is started anew by itself. If that does not help, unplug it "
                       "and plug it in again.")},
};

/// In place of the sentences on a camera that is not there.
constexpr Row CHOSEN_AWAY{State::Waiting,
                          QT_TRANSLATE_NOOP("CameraPage", "The chosen camera is not plugged in."),
                          QT_TRANSLATE_NOOP("CameraPage", "Plug it in, or choose another camera.")};

constexpr char NEAREST_SIZE[] = QT_TRANSLATE_NOOP(
    "CameraPage", "The camera has no pictures of %1 x %2. These are the nearest that it has.");

QString translated(const char *text)
{
    return *text ? QCoreApplication::translate(CONTEXT, text) : QString();
}

/// The commands that allow whoever sits at the machine to open cameras of that make permanently.
QStringList permissionCommands(std::uint16_t vendorId, std::uint16_t productId)
{
    const auto hexadecimal = [](std::uint16_t id) {
        return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
    };
    return {QStringLiteral("echo 'SUBSYSTEM==\"usb\", ENV{DEVTYPE}==\"usb_device\", "
                           "ATTR{idVendor}==\"%1\", ATTR{idProduct}==\"%2\", TAG+=\"uaccess\"' | "
                           "sudo tee /etc/udev/rules.d/70-camera-%1-%2.rules")
                .arg(hexadecimal(vendorId), hexadecimal(productId)),
            QStringLiteral("sudo sh -c 'udevadm control --reload; udevadm trigger --settle "
                           "--subsystem-match=usb'")};
}

} // namespace

CameraAdvice CameraAdvice::of(const CameraStatus &status)
{
    CameraAdvice advice;
    for (const Row &row : ROWS) {
        if (row.state != status.state)
            continue;
        advice.sentence = translated(row.sentence);
        advice.remedy = translated(row.remedy);
    }
    const QString width = QString::number(status.size.width()),
                  height = QString::number(status.size.height());
    if (status.state == State::Showing)
        advice.sentence =
            advice.sentence.arg(width, height, QLocale().toString(status.framesPerSecond, 'f', 1),
                                QString::number(status.framesLost));
    const bool away = status.state == State::Waiting || status.state == State::Unplugged;
    if (status.chosen && away) {
        advice.sentence = translated(CHOSEN_AWAY.sentence);
        advice.remedy = translated(CHOSEN_AWAY.remedy);
    }
    if (status.state == State::Showing && !status.wantedSize.isEmpty() &&
        status.wantedSize != status.size)
        advice.remedy = translated(NEAREST_SIZE)
                            .arg(QString::number(status.wantedSize.width()),
                                 QString::number(status.wantedSize.height()));
    if (status.state == State::NoSuchSize)
        advice.sentence = advice.sentence.arg(width, height);
    if (status.state == State::NoPermission)
        advice.commands = permissionCommands(status.vendorId, status.productId);
    return advice;
}

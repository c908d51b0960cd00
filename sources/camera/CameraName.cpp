#include "sources/camera/CameraName.h"

#include <QVector>

namespace
{

constexpr int LONGEST_NAME = 60;

} // namespace

QString shownCameraName(const QString &name)
{
    QVector<uint> shown;
    for (const uint character : name.simplified().toUcs4()) {
        if (QChar::isPrint(character) && character != QChar::ReplacementCharacter)
            shown.append(character);
        if (shown.size() == LONGEST_NAME)
            break;
    }
    return QString::fromUcs4(shown.constData(), shown.size()).trimmed();
}

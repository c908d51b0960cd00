#pragma once

#include "resources/SkinImages.h"

/// One of the skin's backgrounds, by its name there.
inline QImage background(const QString &name)
{
    return SkinImages::load(":/icons/Background/" + name + ".png");
}

#pragma once

#include "settings/CanvasModes.h"

#include <QMetaType>

// The modes as columns of a test's table.
Q_DECLARE_METATYPE(CanvasModes::MouseMode)

#pragma once

#include <QFont>

class QLabel;
class QWidget;

/// The look of combo boxes and line edits in the pop-up windows: light fields on the dark ground,
/// like the push buttons beside them, whatever theme the desktop has.
namespace FormControls
{

/// The height at which a field stands in a row of the pop-ups, in pixels.
constexpr int FIELD_HEIGHT = 22;

/// Gives a combo box or a line edit its colours and its height.
void applyLook(QWidget *field, int height = FIELD_HEIGHT);

/// The font of the fields, for the push buttons beside them too.
[[nodiscard]] QFont font();

/// Gives the tips of the whole program dark ground and light letters. The style sheets of the
/// pop-ups, white letters for one, reach the tips of their buttons too and need that ground.
void applyLookToToolTips();

/// Gives a label the height of its own font's line. A script that the font lacks comes from a
/// taller one, and the label would hang down from its row; this way it is centred on it.
void keepLineHeight(QLabel *label);

} // namespace FormControls

#pragma once

#include <QFont>
#include <QStringList>

class QLabel;
class QWidget;

/// The look of combo boxes and line edits in the pop-up windows: flat and dark as the ground,
/// whatever theme the desktop has.
namespace FormControls
{

/// The height at which a field stands in a row of the pop-ups, in pixels.
constexpr int FIELD_HEIGHT = 22;

/// Gives a combo box, a line edit or a check box its colours and its height.
void applyLook(QWidget *field, int height = FIELD_HEIGHT);

/// Makes the letters of a field or a label narrower where the widest of these texts would be cut
/// off in `width` pixels.
void fitFont(QWidget *widget, const QStringList &texts, int width);

/// The font of the fields, for the push buttons beside them too.
[[nodiscard]] QFont font();

/// Gives the tool tips of the whole program a dark background and light letters. The style sheets
/// of the pop-ups, with white letters for one, also apply to the tips of their buttons, which need
/// that background.
void applyLookToToolTips();

/// Gives a label the height of a line of its own font. Letters that the font lacks come from a
/// taller font, which would move the label down in its row; with this height it stays centred.
void keepLineHeight(QLabel *label);

} // namespace FormControls

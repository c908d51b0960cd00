#pragma once

#include <QString>

#include <initializer_list>
#include <vector>

class CameraKeeper;
class CanvasDeck;
class LiveSource;
class Presentation;
class QCheckBox;
class QWidget;

/// The pages of the pop-up "More". To add one is to add a row.
namespace Pages
{

enum class Id { Camera, Recording, Presentation, Keys, Pen };

/// The objects that the pages report on; all outlive the pop-up.
struct Context {
    const CanvasDeck *deck = nullptr;
    CameraKeeper *keeper = nullptr;
    LiveSource *camera = nullptr;
    ::Presentation *presentation = nullptr;
};

struct Page {
    Id id;
    /// A marked source text of the pop-up.
    const char *title;
    /// Builds the page with the current information.
    QWidget *(*make)(const Context &context, QWidget *parent);
};

[[nodiscard]] const std::vector<Page> &all();

/// One of the marked source texts of the pop-up, in the language of now.
[[nodiscard]] QString text(const char *source);

// The makers
[[nodiscard]] QWidget *makeCameraPage(const Context &context, QWidget *parent);
[[nodiscard]] QWidget *makeRecordingPage(const Context &context, QWidget *parent);
[[nodiscard]] QWidget *makePresentationPage(const Context &context, QWidget *parent);
[[nodiscard]] QWidget *makeKeysPage(const Context &context, QWidget *parent);
[[nodiscard]] QWidget *makePenPage(const Context &context, QWidget *parent);

/// A row of a page with two columns: a name and its value.
struct Line {
    QString what;
    QString how;
};
[[nodiscard]] QWidget *makeTable(const std::vector<Line> &lines, QWidget *parent);

/// A page of these, one below the other; none of them is null.
[[nodiscard]] QWidget *makeColumn(std::initializer_list<QWidget *> rows, QWidget *parent);
/// Has the wheel scroll the page over that field, too, instead of changing its value unnoticed.
void leaveWheelToPage(QWidget *field);
/// A check box in the look of the pages.
[[nodiscard]] QCheckBox *makeCheckBox(const char *source, bool checked, QWidget *parent);

} // namespace Pages

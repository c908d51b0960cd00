#pragma once

#include "tools/screenshots/Photographer.h"

#include "mainwindow/Commands.h"

class ImageButton;

/// Leads the main window through every mode and every pop-up, with something to see in each.
class Tour
{
public:
    /// `film` and `photograph` are files to show; an empty name leaves that mode empty.
    Tour(MainWindow *window, const QDir &folder, const QString &film, const QString &photograph);

    /// With the camera's picture, drawn on.
    void prepare();
    /// Every mode, and with `popups` every pop-up; file names end in "-`suffix`".
    void run(const QString &suffix, bool popups);
    /// Every mode, every pop-up by itself and every caption of the indications: what a language
    /// has to fit.
    void runLanguage();
    /// The sign of a recording in every mode, while it runs and is paused, and its page.
    void takeRecording();
    /// The states worth a picture of their own.
    void runHighlights();

private:
    [[nodiscard]] ImageButton *button(const QString &accessibleName) const;
    void enter(int mode);
    void draw(const QList<QPoint> &way);
    void openFilm();
    void openPhotographs();
    /// Types a path into the file dialog that comes next.
    void answerFileDialog(const QString &path);
    void takeModes(const QString &suffix);
    void takePopups(const QString &suffix);
    void takePopupsAlone();
    /// The pages of the pop-up "More", that of the camera in each of its states as well.
    void takePages();
    void takeBoxes();
    void takeIndications();
    /// A text that is being typed, and a tip.
    void takeTyping();
    void openPopup(Command tool);

    MainWindow *m_window;
    Photographer m_photographer;
    QString m_film;
    QString m_photograph;
};

#pragma once

#include "widgets/ToolWindow.h"

class FolderField;
class MainWindow;
class QComboBox;

/// The pop-up that edits resolutions, snapshot mode and interval, and the two folders. Nothing is
/// stored or applied before OK.
class SettingsToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    SettingsToolWindow(ImageButton *toolButton, MainWindow *mainWindow);

public slots:
    /// Asks whether the largest recording size is meant, and goes back to a smaller one if not.
    void recordingResolutionChanged(int index);
    void snapshotFileBrowse();
    void recordFileBrowse();
    /// Stores everything, applies the resolutions to the camera and closes the window.
    void settingsOk();

private:
    void addLabel(const QString &text, int row);
    void addField(const QString &label, const QString &text, int row);
    FolderField *addFolder(const QString &label, const QString &path, int row, const char *slot);
    void placeField(QWidget *field, const QString &label, int row);
    QComboBox *addBox(const QString &label, const QStringList &entries, int index, int row);
    void addButton(const QString &caption, const QString &accessibleName, QPoint position,
                   const char *slot);
    void browse(FolderField *field, const QString &caption);

    MainWindow *m_mainWindow;
    QComboBox *m_resolutionBox = nullptr;
    QComboBox *m_recordingBox = nullptr;
    QComboBox *m_captureBox = nullptr;
    QComboBox *m_timeBox = nullptr;
    FolderField *m_snapshotPath = nullptr;
    FolderField *m_recordPath = nullptr;
};

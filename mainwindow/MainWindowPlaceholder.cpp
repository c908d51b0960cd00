// Replaced by the main window.

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Version 1.00</source>
        <translation>Version 1.00</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>CameraPage</name>
    <message>
        <source>No camera is plugged in.</source>
        <translation>Keine Kamera ist angeschlossen.</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>Schließen Sie die Dokumentenkamera an einen USB-Anschluss an. Das Bild erscheint von selbst.</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>Die Kamera ist da und startet gleich.</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>Die Kamera zeigt %1 x %2 mit %3 Bildern pro Sekunde. Verloren: %4.</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>Die Kamera wurde abgezogen.</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>Schließen Sie sie wieder an. Das Bild kommt von selbst zurück.</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>Ein anderes Programm benutzt die Kamera.</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>Schließen Sie das andere Programm. Das Bild erscheint dann von selbst.</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>Sie dürfen die Kamera nicht öffnen.</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>Geben Sie diese beiden Befehle in einem Terminal ein. Das Bild erscheint dann von selbst.</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>Die Kamera lässt sich nicht öffnen.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>Ziehen Sie sie ab und schließen Sie sie wieder an, notfalls an einem anderen Anschluss.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>Die Kamera liefert keine Bilder mit %1 x %2.</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>Wählen Sie in den Einstellungen eine andere Auflösung.</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>Die Kamera sendet keine Bilder.</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>Sie wird von selbst neu gestartet. Hilft das nicht, ziehen Sie sie ab und schließen Sie sie wieder an.</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>Die gewählte Kamera ist nicht angeschlossen.</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>Schließen Sie sie an oder wählen Sie eine andere Kamera.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>Die Kamera hat keine Bilder mit %1 x %2. Dies sind die nächstliegenden, die sie hat.</translation>
    </message>
</context>
<context>
    <name>ChoiceRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>ColorToolWindow</name>
    <message>
        <source>%1 pixels</source>
        <translation>%1 Pixel</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>Keine Füllung</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>Dokumentenkamera</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>Betrachter für Dokumentenkameras</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>Das Bild einer Dokumentenkamera zeigen, beschriften und aufnehmen</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>Visualizer</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>Präsentation</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>Unterricht</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>Whiteboard</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>Zeigt einer Klasse über den Beamer das Livebild einer USB-Dokumentenkamera. Wer vorträgt, zeichnet und schreibt darüber, vergrößert, dreht, friert ein und deckt ab, speichert Standbilder, nimmt Videos mit Ton auf und druckt.</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>Drei weitere Betriebsarten spielen einen Film ab, zeigen einen Ordner mit Fotos und dienen als Zeichentafel.</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>Stifte und Finger zeichnen, vergrößern und verschieben das Bild, und jeder Schritt lässt sich zurücknehmen. Ein zweiter Bildschirm zeigt der Klasse nur das Bild. Auch andere USB-Kameras lassen sich wählen und ihre Bilder spiegeln.</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>Das Livebild mit Zeichnungen</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>Ein Ordner mit Fotos</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>Die Zeichentafel</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>Die erste Veröffentlichung.</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>S/W</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>Negativ</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>Mosaik</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>Farbeffekt</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>Es wurde nichts aufgenommen, weil kein Bild von der Kamera kam.</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>Es wurde nichts aufgenommen, weil die Aufnahme unterbrochen war.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>Linienstärke</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>Effekte</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>Freihand</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Dreieck</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Radierer</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>Alles löschen</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>Ausschnitt kopieren</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Bild verschieben</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>Hintergrund füllen</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Maske</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effekt</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Zoom zurücksetzen</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>Autofokus</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>Helligkeit verringern</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>Helligkeit erhöhen</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Drehen</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Bild einfrieren</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>Video aufnehmen</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>Foto aufnehmen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>Zeichentafel</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>Film öffnen</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>Langsamer oder rückwärts</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>Schneller</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>Fotoordner öffnen</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>Vorheriges Foto</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>Diashow</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>Nächstes Foto</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Vorschaubilder</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>Intervall der Diashow</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>Bitte wählen Sie zuerst einen Ordner aus.</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>Linienfarbe</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>Füllfarbe</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Hintergrundfarbe</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>Alle unterstützten Mediendateien (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>Position im Film</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>Seitenleiste</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  Sek.</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>Auf diesem System wurden keine Drucker gefunden.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>Der Film kann nicht gezeigt werden: Die Datei lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>Der Film kann nicht gezeigt werden: Die Datei ist beschädigt oder kein Film.</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>Dieser Film enthält kein Bild.</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>Der Film kann nicht gezeigt werden: Ein Decoder dafür fehlt (Pakete gstreamer1.0-libav, gstreamer1.0-plugins-bad).</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>Der Film kann nicht weiter gelesen werden.</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>Der Film kann nicht gezeigt werden: Laufwerk oder Netzwerk antwortet nicht.</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>Der Film läuft ohne Ton: Das Tonsystem antwortet nicht.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>Das Foto kann noch nicht gezeigt werden: Sein Laufwerk antwortet nicht.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>Das Foto kann nicht gezeigt werden: Die Datei ist nicht mehr da.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>Das Foto kann nicht gezeigt werden: Die Datei ist beschädigt, zu groß oder kein Bild.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>Das Foto kann nicht gezeigt werden: Die Datei lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>„%1“ wird nicht gezeigt: Namen von Fotos enden auf .bmp, .jpg, .jpeg, .png oder .gif, in Kleinbuchstaben.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Abspielen oder anhalten</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>Fenster schließen oder Vollbild verlassen</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>Alle Tasten</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>Nächste Maske</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>Nächster Effekt</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>Schwarzer Stift</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>Roter Stift</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>Gelber Stift</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>Blauer Stift</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>Dünnerer Stift</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>Dickerer Stift</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Präsentation</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>Präsentation anhalten</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>Präsentation schwarz</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>Dokumentenkamera anschließen</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>Einen Film öffnen</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>Ein Foto aus einem Ordner öffnen</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>Aufnahme unterbrechen</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>Die Festplatte reicht für %1 Minuten</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>Es wird kein Ton aufgenommen</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>Ausgelassene Bilder: %1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>Verpasste Kamerabilder: %1</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
</context>
<context>
    <name>MoreToolWindow</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>läuft nicht</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>Videoordner</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>Fotoordner</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Nicht gespeichert</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Präsentation</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>Der erste freie</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>Bildschirm für die Klasse</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>Beim Programmstart öffnen</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>Zeiger anzeigen</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>Stift und Finger</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>Verschieben und zoomen</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>zwei Finger</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>Mausrad</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>mit zwei Fingern tippen</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>mit drei Fingern tippen</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>untere Taste des Stifts, mittlere Maustaste</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>obere Taste oder anderes Ende des Stifts</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>Optionen eines Werkzeugs</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>seine Schaltfläche gedrückt halten</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>Stärkerer Druck zeichnet breiter</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>Angezeigte Kamera</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>Die Dokumentenkamera</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1 (nicht angeschlossen)</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>Links und rechts spiegeln</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>Oben und unten spiegeln</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>Bildgröße</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>Wie in den Einstellungen (%1)</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Weißabgleich</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>Bildschärfe</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>Gegen flackerndes Licht</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>unterbrochen</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>Letztes Video</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>Das der Kamera</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>Kein Mikrofon ist zu hören</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>Jetzt zu hören: %1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>Größe der Videos</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>Klein (halb so groß)</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>Zeitraffer</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>Ein Bild alle %1 s, kein Ton</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>Rechte Hälfte</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>Untere Hälfte</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effekt</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>Auf diesem Computer ist kein Video-Encoder vorhanden.</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>Auf diesem Computer fehlt eine Komponente zum Speichern von Videos.</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>Die Videodatei kann nicht erstellt werden.</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>Die Aufnahme wurde beendet, weil der Zielordner nicht mehr vorhanden ist.</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>Die Aufnahme wurde beendet, weil der Datenträger voll ist.</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>Die Aufnahme wurde beendet, weil die Videodatei nicht geschrieben werden kann.</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>Das Bild ist eingefroren.</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>Das Bild bewegt sich wieder.</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>Die Aufnahme läuft.</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>Die Aufnahme ist beendet.</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>Foto aufgenommen.</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>Die Aufnahme ist unterbrochen.</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>Die Aufnahme geht weiter.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>Freihand</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Dreieck</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Radierer</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>Registrierungsdatei öffnen...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>Registrierungsdatei (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>Registrierungsdatei speichern...</translation>
    </message>
</context>
<context>
    <name>SettingsToolWindow</name>
    <message>
        <source>sec</source>
        <translation>Sek.</translation>
    </message>
    <message>
        <source>min</source>
        <translation>Min.</translation>
    </message>
    <message>
        <source>hr</source>
        <translation>Std.</translation>
    </message>
    <message>
        <source>XGA 1024 x 768</source>
        <translation>XGA 1024 x 768</translation>
    </message>
    <message>
        <source>HD 1280 x 720</source>
        <translation>HD 1280 x 720</translation>
    </message>
    <message>
        <source>FHD 1920 x 1080</source>
        <translation>FHD 1920 x 1080</translation>
    </message>
    <message>
        <source>Single</source>
        <translation>Einzelbild</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>Serie</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>Dokumentenkamera</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Intervall</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Fotoordner</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>Ordner für Fotos auswählen</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>Videoordner</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>Ordner für Videos auswählen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Frage</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>Bei einer Aufnahmeauflösung von 1920x1080 kann die Bildrate sinken, wenn der Computer nicht leistungsfähig genug ist. Fortfahren?</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>Ordner für Fotos</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>Ordner für Videos</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Schriftart</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Schriftgröße</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>Präsentation</translation>
    </message>
</context>
</TS>

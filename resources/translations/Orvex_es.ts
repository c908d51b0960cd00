<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Version 1.00</source>
        <translation>Versión 1.00</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>CameraPage</name>
    <message>
        <source>No camera is plugged in.</source>
        <translation>No hay ninguna cámara conectada.</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>Conecte la cámara de documentos a un puerto USB. La imagen aparecerá sola.</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>La cámara está conectada y va a iniciarse.</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>La cámara muestra %1 x %2 a %3 imágenes por segundo. Perdidas: %4.</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>Se ha desconectado la cámara.</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>Vuelva a conectarla. La imagen volverá sola.</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>Otro programa está usando la cámara.</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>Cierre el otro programa. La imagen aparecerá sola.</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>No tiene permiso para abrir la cámara.</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>Introduzca estas dos órdenes en un terminal. La imagen aparecerá sola.</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>No se puede abrir la cámara.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>Desconéctela y vuelva a conectarla, si hace falta en otro puerto.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>La cámara no ofrece imágenes de %1 x %2.</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>Elija otra resolución en los ajustes.</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>La cámara no envía imágenes.</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>Se reinicia sola. Si no basta, desconéctela y vuelva a conectarla.</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Órdenes</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>La cámara elegida no está conectada.</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>Conéctela o elija otra cámara.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>La cámara no tiene imágenes de %1 x %2. Estas son las más parecidas que tiene.</translation>
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
        <translation>%1 píxeles</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>Sin relleno</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Negro</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rojo</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Amarillo</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Azul</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanco</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>Cámara de documentos</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>Visor de cámara de documentos</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>Mostrar, anotar y grabar la imagen de una cámara de documentos</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>cámara</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>visualizador</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>presentación</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>clase</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>pizarra</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>Muestra a una clase, a través del proyector, la imagen en directo de una cámara de documentos USB. El ponente dibuja y escribe sobre ella, la amplía, la gira, la congela y la tapa, toma instantáneas, graba vídeos con sonido e imprime.</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>Otros tres modos reproducen un vídeo, muestran una carpeta de fotografías y sirven de pizarra.</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>Con un lápiz o con los dedos se dibuja, se amplía y se desplaza la imagen, y cada paso se puede deshacer. Una segunda pantalla muestra a la clase solo la imagen. También se pueden elegir otras cámaras USB y reflejar su imagen.</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>La imagen en directo, con dibujos</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>Una carpeta de fotografías</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>La pizarra</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>La primera versión.</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>B y N</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>Negativo</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>Mosaico</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>Efecto de color</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>No se ha grabado nada porque no ha llegado ninguna imagen de la cámara.</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>No se grabó nada porque la grabación estaba en pausa.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>Grosor de línea</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Ancho</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>Anotación</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>Efectos</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Grabación</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Línea</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectángulo</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>A mano alzada</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Círculo</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Flecha</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Triángulo</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Goma</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Texto</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>Borrar todo</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>Copiar área</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Mano</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>Rellenar el fondo</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Máscara</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efecto</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Reducir</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Ampliar</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Restablecer el zoom</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>Enfoque automático</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>Reducir el brillo</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>Aumentar el brillo</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Girar</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Congelar la imagen</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>Grabar un vídeo</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>Tomar una instantánea</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Imprimir</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>En directo</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Vídeo</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>Fotografía</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>Pizarra</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>Abrir un vídeo</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>Más lento o hacia atrás</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>Más rápido</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>Abrir una carpeta de fotografías</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>Fotografía anterior</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>Presentación de diapositivas</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>Fotografía siguiente</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Miniaturas</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>Intervalo de la presentación</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>Seleccione primero una carpeta.</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>Color de línea</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>Relleno</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Color de fondo</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>Todos los archivos multimedia admitidos (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>Posición en el vídeo</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>Panel lateral</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  s</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>No se ha encontrado ninguna impresora en este sistema.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>No se puede mostrar el vídeo: no se puede leer el archivo.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>No se puede mostrar el vídeo: el archivo está dañado o no es un vídeo.</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>Este vídeo no contiene imagen.</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>No se puede mostrar el vídeo: falta un decodificador (paquetes gstreamer1.0-libav, gstreamer1.0-plugins-bad).</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>No se puede seguir leyendo el vídeo.</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>No se puede mostrar el vídeo: el disco o la red no responde.</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>El vídeo se reproduce sin sonido: el sistema de sonido no responde.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>Todavía no se puede mostrar la fotografía: su unidad no responde.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>No se puede mostrar la fotografía: el archivo ya no está.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>No se puede mostrar la fotografía: el archivo está dañado, es demasiado grande o no es una imagen.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>No se puede mostrar la fotografía: no se puede leer el archivo.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>«%1» no se muestra: los nombres de las fotografías terminan en .bmp, .jpg, .jpeg, .png o .gif, en minúsculas.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rehacer</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Más</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Reproducir o pausar</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Pantalla completa</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>Cerrar la ventana o salir de la pantalla completa</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>Todas las teclas</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>Máscara siguiente</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>Efecto siguiente</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>Lápiz negro</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>Lápiz rojo</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>Lápiz amarillo</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>Lápiz azul</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>Lápiz más fino</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>Lápiz más grueso</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Presentación</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>Congelar la presentación</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>Presentación en negro</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>Conecte la cámara de documentos</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>Abra un vídeo</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>Abra una fotografía de una carpeta</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>Pausar la grabación</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>El disco alcanza para %1 minutos</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>No se graba ningún sonido</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>Imágenes omitidas: %1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>Imágenes de la cámara perdidas: %1</translation>
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
        <translation>Más</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Cámara</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Grabación</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclas</translation>
    </message>
    <message>
        <source>running</source>
        <translation>en curso</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>detenida</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>Vídeos en</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>Instantáneas en</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>No guardado</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Presentación</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>La primera libre</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>Pantalla para la clase</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>Abrir al iniciar el programa</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>Mostrar el puntero</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>Lápiz y dedos</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>Mover y ampliar</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>dos dedos</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>rueda del ratón</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>toque con dos dedos</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>toque con tres dedos</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>botón inferior del lápiz, botón central del ratón</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>botón superior u otro extremo del lápiz</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>Opciones de una herramienta</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>mantener pulsado su botón</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>Más presión, trazo más ancho</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>Cámara que se muestra</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>La cámara de documentos</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1 (no conectada)</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>Reflejar izquierda y derecha</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>Reflejar arriba y abajo</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>Tamaño de la imagen</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>Como en los ajustes (%1)</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Exposición</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Enfoque</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Balance de blancos</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>Nitidez</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>Contra el parpadeo de la luz</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Desactivado</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>en pausa</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>Último vídeo</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>Abrir su carpeta</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Micrófono</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>El de la cámara</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguno</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>No se oye ningún micrófono</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>Se oye ahora: %1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>Tamaño de los vídeos</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Estándar</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>Pequeño (la mitad)</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>Cámara rápida</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>Una imagen cada %1 s, sin sonido</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>Círculo</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectángulo</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>Mitad derecha</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>Mitad inferior</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efecto</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>Este equipo no dispone de ningún codificador de vídeo.</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>En este equipo falta un componente necesario para grabar vídeos.</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>No se puede crear el archivo de vídeo.</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>La grabación se ha detenido porque su carpeta ya no existe.</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>La grabación se ha detenido porque el disco está lleno.</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>La grabación se ha detenido porque no se puede escribir el archivo de vídeo.</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>Ajustado</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Brillo</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>La imagen está congelada.</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>La imagen vuelve a moverse.</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>La grabación ha comenzado.</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>La grabación ha terminado.</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>Instantánea tomada.</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>La grabación está en pausa.</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>La grabación continúa.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Line</source>
        <translation>Línea</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectángulo</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>A mano alzada</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Círculo</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Flecha</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Triángulo</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Goma</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>Abrir archivo de inscripciones...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>Archivo de inscripciones (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>Guardar archivo de inscripciones...</translation>
    </message>
</context>
<context>
    <name>SettingsToolWindow</name>
    <message>
        <source>sec</source>
        <translation>s</translation>
    </message>
    <message>
        <source>min</source>
        <translation>min</translation>
    </message>
    <message>
        <source>hr</source>
        <translation>h</translation>
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
        <translation>Única</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>Continua</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Origen</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>Cám. documentos</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Resolución</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Grabación</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Captura</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Intervalo</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Instantáneas en</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Examinar</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>Examinar para elegir la carpeta de instantáneas</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>Vídeos en</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>Examinar para elegir la carpeta de grabaciones</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Pregunta</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>Una resolución de grabación de 1920x1080 puede reducir la velocidad de fotogramas si el equipo no es lo bastante potente. ¿Desea continuar?</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>Carpeta de instantáneas</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>Carpeta de grabaciones</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>Texto</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Tipo de letra</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Tamaño de letra</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>Presentación</translation>
    </message>
</context>
</TS>

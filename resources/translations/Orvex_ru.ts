<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Version 1.00</source>
        <translation>Версия 1.00</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
<context>
    <name>CameraPage</name>
    <message>
        <source>No camera is plugged in.</source>
        <translation>Камера не подключена.</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>Подключите документ-камеру к порту USB. Изображение появится само.</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>Камера подключена и сейчас запустится.</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>Камера показывает %1 x %2, кадров в секунду: %3. Потеряно: %4.</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>Камера отключена.</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>Подключите её снова. Изображение вернётся само.</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>Камеру использует другая программа.</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>Закройте другую программу. Изображение появится само.</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>У вас нет прав на открытие камеры.</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>Введите эти две команды в терминале. Изображение появится само.</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>Не удаётся открыть камеру.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>Отключите её и подключите снова, при необходимости к другому порту.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>Камера не поддерживает изображение %1 x %2.</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>Выберите другое разрешение в настройках.</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>Камера не передаёт изображение.</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>Она перезапускается сама. Если это не помогает, отключите её и подключите снова.</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Команды</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>Выбранная камера не подключена.</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>Подключите её или выберите другую камеру.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>У камеры нет изображения %1 x %2. Показан ближайший размер, который у неё есть.</translation>
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
        <translation>%1 пикс.</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>Без заливки</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Чёрный</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Красный</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Жёлтый</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Синий</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Белый</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>Документ-камера</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>Просмотр документ-камеры</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>Показ, разметка и запись изображения с документ-камеры</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>камера</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>визуализатор</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>презентация</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>урок</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>доска</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>Показывает классу через проектор живое изображение с USB-документ-камеры. Докладчик рисует и пишет поверх него, увеличивает, поворачивает, останавливает и частично закрывает его, делает снимки, записывает видео со звуком и печатает.</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>Ещё три режима воспроизводят видео, показывают папку с фотографиями и служат доской для рисования.</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>Пером и пальцами рисуют, увеличивают и перемещают изображение, и каждый шаг можно отменить. На втором экране класс видит только изображение. Можно выбрать и другую USB-камеру и отразить её изображение зеркально.</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>Живое изображение с рисунками</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>Папка с фотографиями</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>Доска для рисования</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>Первый выпуск.</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>Цвет</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>Ч/Б</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>Негатив</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>Мозаика</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>Цветовой эффект</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>Ничего не записано, так как с камеры не поступило изображение.</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>Ничего не записано, так как запись была приостановлена.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>Толщина линии</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Толщина</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>Пометки</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>Эффекты</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>Настройка</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Линия</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Прямоугольник</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>От руки</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Круг</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Стрелка</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Треугольник</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Ластик</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Текст</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>Стереть всё</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>Копировать область</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Рука</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>Залить фон</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Маска</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Эффект</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Уменьшить</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Увеличить</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Сбросить масштаб</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>Автофокус</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>Уменьшить яркость</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>Увеличить яркость</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Повернуть</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Стоп-кадр</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>Записать видео</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>Сделать снимок</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Параметры</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Печать</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Камера</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Видео</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>Фотография</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>Доска для рисования</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>Открыть видео</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Воспроизвести</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Приостановить</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>Медленнее или назад</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>Быстрее</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Громкость</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>Открыть папку с фотографиями</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>Предыдущая фотография</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>Слайд-шоу</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>Следующая фотография</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Миниатюры</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>Интервал слайд-шоу</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>Сначала выберите папку.</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>Цвет линии</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>Цвет заливки</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Цвет фона</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>Все поддерживаемые медиафайлы (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>Позиция воспроизведения</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>Боковая панель</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  сек.</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>В системе не найдено ни одного принтера.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>Видео не может быть показано: файл не читается.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>Видео не может быть показано: файл повреждён или не является видео.</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>В этом видео нет изображения.</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>Видео не может быть показано: нет нужного декодера (пакеты gstreamer1.0-libav, gstreamer1.0-plugins-bad).</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>Не удаётся читать видео дальше.</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>Видео не может быть показано: диск или сеть не отвечает.</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>Видео воспроизводится без звука: звуковая система не отвечает.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>Пока не удаётся показать фотографию: её диск не отвечает.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>Не удаётся показать фотографию: файла больше нет.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>Фотография не может быть показана: файл повреждён, слишком велик или не является изображением.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>Фотография не может быть показана: файл не читается.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>«%1» не показывается: имена фотографий оканчиваются на .bmp, .jpg, .jpeg, .png или .gif строчными буквами.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Вернуть</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Ещё</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Воспроизвести или приостановить</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Весь экран</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>Закрыть окно или выйти из полноэкранного режима</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>Все клавиши</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>Следующая маска</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>Следующий эффект</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>Чёрное перо</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>Красное перо</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>Жёлтое перо</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>Синее перо</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>Тоньше перо</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>Толще перо</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Презентация</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>Остановить кадр презентации</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>Чёрный экран презентации</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>Подключите документ-камеру</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>Откройте видео</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>Откройте фотографию из папки</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>Приостановить запись</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 мин</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>Места на диске на %1 мин</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>Звук не записывается</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>Пропущено кадров при записи: %1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>Потеряно кадров камеры: %1</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 ч</translation>
    </message>
</context>
<context>
    <name>MoreToolWindow</name>
    <message>
        <source>More</source>
        <translation>Ещё</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Камера</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Клавиши</translation>
    </message>
    <message>
        <source>running</source>
        <translation>идёт</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>не идёт</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>Папка видео</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>Папка снимков</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Не сохранено</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Презентация</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>Первый свободный</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>Экран для класса</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>Открывать при запуске программы</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>Показывать указатель</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>Перо и пальцы</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>Сдвиг и масштаб</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>два пальца</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Масштаб</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>колесо мыши</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>касание двумя пальцами</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>касание тремя пальцами</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>нижняя кнопка пера, средняя кнопка мыши</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>верхняя кнопка или другой конец пера</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>Параметры инструмента</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>удерживать его кнопку</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>Сильнее нажим – шире линия</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>Показываемая камера</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>Документ-камера</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1 (не подключена)</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>Отразить слева направо</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>Отразить сверху вниз</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>Размер изображения</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>Как в настройках (%1)</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Экспозиция</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Фокус</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Баланс белого</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>Резкость</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Автоматически</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>Против мерцания света</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Выключено</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>приостановлена</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>Последнее видео</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>Открыть папку</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Микрофон</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>Микрофон камеры</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>Микрофон не слышен</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>Сейчас слышен: %1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>Размер видео</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Обычный</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>Малый (вдвое меньше)</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>Ускоренная съёмка</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>Кадр каждые %1 с, без звука</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>Круг</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Прямоугольник</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>Правая половина</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>Нижняя половина</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Эффект</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>На этом компьютере нет кодировщика видео.</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>На этом компьютере не хватает компонента для записи видео.</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>Не удалось создать видеофайл.</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>Запись остановлена, так как папка для записи больше не существует.</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>Запись остановлена, так как диск заполнен.</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>Запись остановлена, так как не удаётся записать видеофайл.</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>Вписано</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Яркость</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Масштаб</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>Изображение остановлено.</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>Изображение снова движется.</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>Запись началась.</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>Запись завершена.</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>Снимок сделан.</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>Запись приостановлена.</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>Запись продолжается.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Line</source>
        <translation>Линия</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Прямоугольник</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>От руки</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Круг</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Стрелка</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Треугольник</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Ластик</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>Открыть файл регистрации...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>Файл регистрации (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>Сохранить файл регистрации...</translation>
    </message>
</context>
<context>
    <name>SettingsToolWindow</name>
    <message>
        <source>sec</source>
        <translation>сек.</translation>
    </message>
    <message>
        <source>min</source>
        <translation>мин.</translation>
    </message>
    <message>
        <source>hr</source>
        <translation>ч</translation>
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
        <translation>Одиночная</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>Серийная</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Параметры</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Источник</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>Документ-камера</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Разрешение</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Съёмка</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Интервал</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Папка снимков</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Обзор</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>Обзор папки для снимков</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>Папка видео</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>Обзор папки для записей</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Вопрос</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>При разрешении записи 1920x1080 частота кадров может снизиться, если компьютер недостаточно мощный. Продолжить?</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>Папка для снимков</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>Папка для записей</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>Текст</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Цвет</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Шрифт</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Размер шрифта</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>Презентация</translation>
    </message>
</context>
</TS>

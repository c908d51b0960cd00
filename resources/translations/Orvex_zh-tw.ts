<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>關於</translation>
    </message>
    <message>
        <source>Version 1.00</source>
        <translation>版本 1.00</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
    </message>
</context>
<context>
    <name>CameraPage</name>
    <message>
        <source>No camera is plugged in.</source>
        <translation>尚未連接攝影機。</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>請將實物攝影機接到 USB 連接埠，影像會自動出現。</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>已偵測到攝影機，即將啟動。</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>攝影機目前顯示 %1 x %2，每秒 %3 格，遺失：%4。</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>攝影機已被拔除。</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>請重新接上，影像會自動恢復。</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>其他程式正在使用攝影機。</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>請關閉該程式，影像隨後會自動出現。</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>您沒有開啟攝影機的權限。</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>請在終端機輸入這兩行指令，影像隨後會自動出現。</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>無法開啟攝影機。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>請拔除後重新接上，必要時改用另一個連接埠。</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>攝影機不支援 %1 x %2 的影像。</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>請在設定中選擇其他解析度。</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>攝影機沒有傳送影像。</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>攝影機會自動重新啟動；若仍無效，請拔除後重新接上。</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>指令</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>複製</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>所選的攝影機沒有接上。</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>請接上它，或選擇其他攝影機。</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>此攝影機沒有 %1 x %2 的畫面。目前顯示最接近的尺寸。</translation>
    </message>
</context>
<context>
    <name>ChoiceRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>ColorToolWindow</name>
    <message>
        <source>%1 pixels</source>
        <translation>%1 像素</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>無填滿</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>黑色</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>紅色</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黃色</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>藍色</translation>
    </message>
    <message>
        <source>White</source>
        <translation>白色</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>實物投影機</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>實物投影機檢視器</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>顯示、註記並錄製實物投影機的影像</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>攝影機</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>投影機</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>簡報</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>教室</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>白板</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>透過投影機向全班顯示 USB 實物投影機的即時影像。講者可在影像上繪圖與書寫，縮放、旋轉、凍結及遮蔽影像，並可拍照、錄製有聲影片及列印。</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>另有三種模式，可播放影片、顯示資料夾中的相片，以及作為畫板使用。</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>可用手寫筆和手指繪圖、縮放及移動畫面，每個步驟都能復原。第二個螢幕只向全班顯示畫面。也可選擇其他 USB 攝影機，並將其畫面鏡像。</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>加上繪圖的即時影像</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>相片資料夾</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>畫板</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>第一個版本。</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>彩色</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>黑白</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>負片</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>馬賽克</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>色彩效果</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>攝影機沒有傳來影像，因此沒有錄下任何內容。</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>由於錄影已暫停，沒有錄下任何內容。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>線條寬度</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>寬度</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>註記</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>輔助</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>調整</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>錄製</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>直線</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>手繪</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>圓形</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>箭頭</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>三角形</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>橡皮擦</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>全部清除</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>複製區域</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>手形工具</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>填滿背景</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>遮罩</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>效果</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>重設縮放</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>自動對焦</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>降低亮度</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>提高亮度</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>旋轉</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>凍結畫面</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>錄製影片</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>拍攝快照</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>列印</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>即時影像</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>影片</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>相片</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>畫板</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>開啟影片</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>播放</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>暫停</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>放慢或倒轉</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>加快</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>開啟相片資料夾</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>上一張相片</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>投影片放映</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>下一張相片</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>縮圖</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>投影片放映間隔</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>錯誤</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>請先選取資料夾。</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>線條顏色</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>填滿顏色</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>背景顏色</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>所有支援的媒體檔案 (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>影片播放位置</translation>
    </message>
    <message>
        <source>About</source>
        <translation>關於</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>側邊面板</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  秒</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>在此系統上找不到印表機。</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>無法播放影片：無法讀取檔案。</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>無法播放影片：檔案已損毀，或不是影片。</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>這部影片沒有畫面。</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>無法播放影片：缺少所需的解碼器（套件 gstreamer1.0-libav、gstreamer1.0-plugins-bad）。</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>無法繼續讀取影片。</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>無法播放影片：磁碟或網路沒有回應。</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>影片以無聲播放：音訊系統沒有回應。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>暫時無法顯示相片：磁碟機沒有回應。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>無法顯示相片：檔案已不存在。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>無法顯示相片：檔案已損毀、過大，或不是圖片。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>無法顯示相片：無法讀取檔案。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>無法顯示「%1」：相片的檔名須以小寫的 .bmp、.jpg、.jpeg、.png 或 .gif 結尾。</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>復原</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>More</source>
        <translation>更多</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>播放或暫停</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>全螢幕</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>關閉視窗或離開全螢幕</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>所有按鍵</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>下一個遮罩</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>下一個效果</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>黑色畫筆</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>紅色畫筆</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>黃色畫筆</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>藍色畫筆</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>較細的畫筆</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>較粗的畫筆</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>簡報</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>凍結簡報畫面</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>簡報黑畫面</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>請連接實物投影機</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>請開啟影片</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>請開啟資料夾中的相片</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>暫停錄影</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 分</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>磁碟可再錄 %1 分鐘</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>沒有錄到聲音</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>捨棄的畫面：%1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>遺漏的攝影機畫面：%1</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 小時</translation>
    </message>
</context>
<context>
    <name>MoreToolWindow</name>
    <message>
        <source>More</source>
        <translation>更多</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>攝影機</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>錄影</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>按鍵</translation>
    </message>
    <message>
        <source>running</source>
        <translation>進行中</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>未進行</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>錄影儲存至</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>快照儲存至</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>未儲存</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>簡報</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>第一個可用的螢幕</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>給全班看的螢幕</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>程式啟動時開啟</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>顯示指標位置</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>筆與手指</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>移動與縮放</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>兩指</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>縮放</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>滑鼠滾輪</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>兩指輕點</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>三指輕點</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>筆的下方按鈕、滑鼠中鍵</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>筆的上方按鈕或另一端</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>工具選項</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>按住其按鈕</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>用力下筆，線條變粗</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>要顯示的攝影機</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>實物投影機</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1（未接上）</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>左右鏡像</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>上下鏡像</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>影像尺寸</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>依照設定（%1）</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>曝光</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>對焦</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>白平衡</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>銳利度</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>防止燈光閃爍</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>關閉</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>已暫停</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>上次錄影</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>開啟資料夾</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>麥克風</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>攝影機的麥克風</translation>
    </message>
    <message>
        <source>None</source>
        <translation>無</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>沒有收到麥克風的聲音</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>目前收音：%1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>錄影大小</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>標準</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>小（一半大小）</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>縮時攝影</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>每 %1 秒一張，無聲音</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>圓形</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>右半部</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>下半部</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>效果</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>這台電腦沒有影片編碼器。</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>這台電腦缺少寫入影片所需的元件。</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>無法建立影片檔。</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>錄影資料夾已不存在，錄影已停止。</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>磁碟已滿，錄影已停止。</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>無法寫入影片檔，錄影已停止。</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>全圖</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>亮度</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>縮放</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>畫面已凍結。</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>畫面已恢復。</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>錄影已開始。</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>錄影已結束。</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>已拍攝快照。</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>錄影已暫停。</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>錄影繼續。</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Line</source>
        <translation>直線</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>手繪</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>圓形</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>箭頭</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>三角形</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>橡皮擦</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>開啟登錄資料檔...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>登錄資料檔 (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>儲存登錄資料檔...</translation>
    </message>
</context>
<context>
    <name>SettingsToolWindow</name>
    <message>
        <source>sec</source>
        <translation>秒</translation>
    </message>
    <message>
        <source>min</source>
        <translation>分鐘</translation>
    </message>
    <message>
        <source>hr</source>
        <translation>小時</translation>
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
        <translation>單張</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>連續</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>來源</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>實物投影機</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>解析度</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>錄影</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>拍攝</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>間隔時間</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>快照儲存至</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>瀏覽</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>瀏覽快照資料夾</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>錄影儲存至</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>瀏覽錄影資料夾</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>確定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>若電腦效能不足，以 1920x1080 的解析度錄影可能會使影格率降低。要繼續嗎？</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>快照資料夾</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>錄影資料夾</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>顏色</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>字型</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>字型大小</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>關閉</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>簡報</translation>
    </message>
</context>
</TS>

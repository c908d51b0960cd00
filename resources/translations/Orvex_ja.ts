<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>このアプリについて</translation>
    </message>
    <message>
        <source>Version 1.00</source>
        <translation>バージョン 1.00</translation>
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
        <translation>カメラが接続されていません。</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>書画カメラを USB ポートに接続してください。映像は自動的に表示されます。</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>カメラを認識しました。まもなく開始します。</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>カメラの映像は %1 x %2、毎秒 %3 フレームです。欠落：%4。</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>カメラの接続が外れました。</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>もう一度接続してください。映像は自動的に戻ります。</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>別のプログラムがカメラを使用しています。</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>そのプログラムを終了してください。映像は自動的に表示されます。</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>カメラを開く権限がありません。</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>端末で次の 2 つのコマンドを実行してください。映像は自動的に表示されます。</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>カメラを開けません。</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>いったん外してから接続し直してください。必要に応じて別のポートをお使いください。</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>カメラは %1 x %2 の映像に対応していません。</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>設定で別の解像度を選んでください。</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>カメラから映像が届きません。</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>自動的に再起動します。それでも直らない場合は、いったん外してから接続し直してください。</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>コマンド</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>選択したカメラは接続されていません。</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>接続するか、別のカメラを選んでください。</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>このカメラには %1 x %2 の画像がありません。最も近いサイズで表示しています。</translation>
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
        <translation>%1 ピクセル</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>塗りつぶしなし</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>黒</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>赤</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>青</translation>
    </message>
    <message>
        <source>White</source>
        <translation>白</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>書画カメラ</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>書画カメラビューアー</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>書画カメラの映像を表示し、書き込み、録画します</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>カメラ</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>実物投影機</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>プレゼンテーション</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>授業</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>ホワイトボード</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>USB 書画カメラのライブ映像を、プロジェクターで教室に映します。映像の上に図や文字を書き込み、拡大、回転、静止、マスク、静止画の保存、音声付きの録画、印刷ができます。</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>ほかに、動画の再生、フォルダー内の写真の表示、描画ボードの 3 つのモードがあります。</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>ペンや指で書き込み、拡大、移動ができ、操作は一つずつ元に戻せます。2 台目の画面には、教室に見せる映像だけを表示します。ほかの USB カメラも選べ、その映像を反転できます。</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>図を書き込んだライブ映像</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>写真のフォルダー</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>描画ボード</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>最初のリリース。</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>カラー</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>白黒</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>ネガ</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>モザイク</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>カラー効果</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>カメラから映像が届かなかったため、何も録画されませんでした。</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>一時停止していたため、何も録画されませんでした。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>線の太さ</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>太さ</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>書き込み</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>表示効果</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>調整</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>撮影・録画</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>直線</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>長方形</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>フリーハンド</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>円</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>矢印</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>三角形</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>消しゴム</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>テキスト</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>すべて消去</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>範囲をコピー</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>手のひらツール</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>背景を塗りつぶす</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>マスク</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>効果</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>拡大</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>ズームをリセット</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>オートフォーカス</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>明るさを下げる</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>明るさを上げる</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>回転</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>映像を静止</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>動画を録画</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>静止画を撮影</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>印刷</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>ライブ</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>動画</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>写真</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>描画ボード</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>動画を開く</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>再生</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>一時停止</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>低速または逆再生</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>高速再生</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>写真フォルダーを開く</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>前の写真</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>スライドショー</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>次の写真</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>サムネイル</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>スライドショーの間隔</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>最初にフォルダーを選択してください。</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>線の色</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>塗りつぶし色</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>背景色</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>対応するすべてのメディアファイル (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>動画の再生位置</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このアプリについて</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>サイドパネル</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  秒</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>このシステムにプリンターが見つかりません。</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>動画を表示できません。ファイルを読み込めません。</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>動画を表示できません。ファイルが壊れているか、動画ではありません。</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>この動画には映像がありません。</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>動画を表示できません。必要なデコーダー（パッケージ gstreamer1.0-libav、gstreamer1.0-plugins-bad）がありません。</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>動画をこれ以上読み込めません。</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>動画を表示できません。ディスクまたはネットワークが応答しません。</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>音声なしで再生しています。サウンドシステムが応答しません。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>写真をまだ表示できません。ドライブが応答していません。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>写真を表示できません。ファイルがなくなっています。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>写真を表示できません。ファイルが壊れているか、大きすぎるか、画像ではありません。</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>写真を表示できません。ファイルを読み込めません。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>「%1」は表示されません。写真のファイル名は小文字の .bmp、.jpg、.jpeg、.png、.gif で終わる必要があります。</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>やり直す</translation>
    </message>
    <message>
        <source>More</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>再生または一時停止</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>全画面表示</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>ウィンドウを閉じる、または全画面表示を終了</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>すべてのキー</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>次のマスク</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>次の効果</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>黒いペン</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>赤いペン</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>黄色いペン</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>青いペン</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>ペンを細く</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>ペンを太く</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>発表画面</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>発表画面を静止</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>発表画面を黒くする</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>書画カメラを接続してください</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>動画を開いてください</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>フォルダーの写真を開いてください</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>録画を一時停止</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 分</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>ディスクの残り：約 %1 分</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>音声は録音されていません</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>記録できなかった画像：%1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>カメラから受け取れなかった画像：%1</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 時間</translation>
    </message>
</context>
<context>
    <name>MoreToolWindow</name>
    <message>
        <source>More</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>カメラ</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>録画</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>キー</translation>
    </message>
    <message>
        <source>running</source>
        <translation>録画中</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>停止中</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>動画の保存先</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>静止画の保存先</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>保存できません</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>発表画面</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>空いている最初の画面</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>クラス用の画面</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>起動時に開く</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>ポインターの位置を表示</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>ペンと指</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>移動とズーム</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>2 本の指</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>ズーム</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>マウスホイール</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>2 本の指でタップ</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>3 本の指でタップ</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>ペンの下ボタン、マウスの中央ボタン</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>ペンの上ボタンまたは反対側の端</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>ツールのオプション</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>ボタンを長押し</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>筆圧で線を太くする</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>表示するカメラ</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>書画カメラ</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1（未接続）</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>左右反転</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>上下反転</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>映像のサイズ</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>設定のとおり（%1）</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>露出</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>ピント</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>ホワイトバランス</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>シャープネス</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>照明のちらつき防止</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>一時停止中</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>最後の動画</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>フォルダーを開く</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>マイク</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>カメラのマイク</translation>
    </message>
    <message>
        <source>None</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>マイクの音は入っていません</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>使用中のマイク：%1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>動画のサイズ</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>標準</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>小（半分）</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>タイムラプス</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>%1 秒ごとに 1 枚、音声なし</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>円</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>長方形</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>右半分</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>下半分</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>効果</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>このコンピューターには動画のエンコーダーがありません。</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>このコンピューターには動画の書き込みに必要なコンポーネントがありません。</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>動画ファイルを作成できません。</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>保存先のフォルダーがなくなったため、録画を停止しました。</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>ディスクがいっぱいになったため、録画を停止しました。</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>動画ファイルに書き込めないため、録画を停止しました。</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>全体</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>明るさ</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>ズーム</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>映像を静止しました。</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>映像の静止を解除しました。</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>録画を開始しました。</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>録画を終了しました。</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>静止画を撮影しました。</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>録画を一時停止しました。</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>録画を再開しました。</translation>
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
        <translation>長方形</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>フリーハンド</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>円</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>矢印</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>三角形</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>消しゴム</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>登録ファイルを開く...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>登録ファイル (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>登録ファイルを保存...</translation>
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
        <translation>分</translation>
    </message>
    <message>
        <source>hr</source>
        <translation>時間</translation>
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
        <translation>1 枚撮影</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>連続撮影</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>入力元</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>書画カメラ</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>解像度</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>録画</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>撮影</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>間隔</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>静止画の保存先</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>参照</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>静止画のフォルダーを参照</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>動画の保存先</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>録画のフォルダーを参照</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>コンピューターの性能が十分でない場合、録画の解像度を 1920x1080 にするとフレームレートが低下することがあります。続行しますか？</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>静止画のフォルダー</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>録画のフォルダー</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>テキスト</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>色</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>フォント</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>フォントサイズ</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>発表画面</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>AboutToolWindow</name>
    <message>
        <source>About</source>
        <translation>À propos</translation>
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
        <translation>Aucune caméra n’est branchée.</translation>
    </message>
    <message>
        <source>Plug the document camera into a USB port. Its picture comes by itself.</source>
        <translation>Branchez la caméra de documents sur un port USB. L’image apparaîtra d’elle-même.</translation>
    </message>
    <message>
        <source>The camera is there and about to start.</source>
        <translation>La caméra est branchée et va démarrer.</translation>
    </message>
    <message>
        <source>The camera shows %1 x %2 at %3 pictures a second. Lost: %4.</source>
        <translation>La caméra affiche %1 x %2 à %3 images par seconde. Perdues : %4.</translation>
    </message>
    <message>
        <source>The camera was unplugged.</source>
        <translation>La caméra a été débranchée.</translation>
    </message>
    <message>
        <source>Plug it in again. Its picture comes back by itself.</source>
        <translation>Rebranchez-la. L’image reviendra d’elle-même.</translation>
    </message>
    <message>
        <source>Another program uses the camera.</source>
        <translation>Un autre programme utilise la caméra.</translation>
    </message>
    <message>
        <source>Close the other program. The picture then comes by itself.</source>
        <translation>Fermez l’autre programme. L’image apparaîtra ensuite d’elle-même.</translation>
    </message>
    <message>
        <source>You may not open the camera.</source>
        <translation>Vous n’avez pas l’autorisation d’ouvrir la caméra.</translation>
    </message>
    <message>
        <source>Enter these two commands in a terminal. The picture then comes by itself.</source>
        <translation>Saisissez ces deux commandes dans un terminal. L’image apparaîtra ensuite d’elle-même.</translation>
    </message>
    <message>
        <source>The camera cannot be opened.</source>
        <translation>La caméra ne peut pas être ouverte.</translation>
    </message>
    <message>
        <source>Unplug it and plug it in again, into another port if need be.</source>
        <translation>Débranchez-la puis rebranchez-la, au besoin sur un autre port.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2.</source>
        <translation>La caméra ne fournit pas d’images de %1 x %2.</translation>
    </message>
    <message>
        <source>Choose another resolution in the settings.</source>
        <translation>Choisissez une autre résolution dans les réglages.</translation>
    </message>
    <message>
        <source>The camera sends no pictures.</source>
        <translation>La caméra n’envoie pas d’images.</translation>
    </message>
    <message>
        <source>It is started anew by itself. If that does not help, unplug it and plug it in again.</source>
        <translation>Elle est relancée automatiquement. Si cela ne suffit pas, débranchez-la puis rebranchez-la.</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Commandes</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>The chosen camera is not plugged in.</source>
        <translation>La caméra choisie n’est pas branchée.</translation>
    </message>
    <message>
        <source>Plug it in, or choose another camera.</source>
        <translation>Branchez-la ou choisissez une autre caméra.</translation>
    </message>
    <message>
        <source>The camera has no pictures of %1 x %2. These are the nearest that it has.</source>
        <translation>La caméra n’a pas d’images de %1 x %2. Celles-ci sont les plus proches qu’elle ait.</translation>
    </message>
</context>
<context>
    <name>ChoiceRow</name>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
</context>
<context>
    <name>ColorToolWindow</name>
    <message>
        <source>%1 pixels</source>
        <translation>%1 pixels</translation>
    </message>
    <message>
        <source>No fill</source>
        <translation>Sans remplissage</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Noir</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Jaune</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
</context>
<context>
    <name>DesktopTexts</name>
    <message>
        <source>Document Camera</source>
        <translation>Visualiseur</translation>
    </message>
    <message>
        <source>Document Camera Viewer</source>
        <translation>Affichage pour visualiseur</translation>
    </message>
    <message>
        <source>Show, annotate and record the picture of a document camera</source>
        <translation>Afficher, annoter et enregistrer l’image d’un visualiseur</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>caméra</translation>
    </message>
    <message>
        <source>visualizer</source>
        <translation>visualiseur</translation>
    </message>
    <message>
        <source>presentation</source>
        <translation>présentation</translation>
    </message>
    <message>
        <source>classroom</source>
        <translation>classe</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>tableau blanc</translation>
    </message>
    <message>
        <source>Shows the live picture of a USB document camera for a class and its projector. The speaker draws and writes over it, zooms, rotates, freezes and masks it, takes snapshots, records movies with sound and prints.</source>
        <translation>Montre à une classe, par le projecteur, l’image en direct d’un visualiseur USB. L’intervenant dessine et écrit dessus, zoome, fait pivoter, fige et masque l’image, prend des photos, enregistre des vidéos avec le son et imprime.</translation>
    </message>
    <message>
        <source>Three more modes play a film, show a folder of photographs and serve as a drawing board.</source>
        <translation>Trois autres modes lisent un film, montrent un dossier de photos et servent de tableau blanc.</translation>
    </message>
    <message>
        <source>Pens and fingers draw, zoom and move the picture, and each step can be taken back. A second screen shows the class the picture alone. Other USB cameras can be chosen, and their pictures mirrored.</source>
        <translation>Au stylet ou au doigt, on dessine, on agrandit et on déplace l’image, et chaque étape peut être annulée. Un second écran ne montre à la classe que l’image. D’autres caméras USB peuvent être choisies, et leur image inversée en miroir.</translation>
    </message>
    <message>
        <source>The live picture, drawn on</source>
        <translation>L’image en direct, avec des dessins</translation>
    </message>
    <message>
        <source>A folder of photographs</source>
        <translation>Un dossier de photos</translation>
    </message>
    <message>
        <source>The drawing board</source>
        <translation>Le tableau blanc</translation>
    </message>
    <message>
        <source>The first release.</source>
        <translation>La première version.</translation>
    </message>
</context>
<context>
    <name>EffectToolWindow</name>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>B &amp; W</source>
        <translation>N et B</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>Négatif</translation>
    </message>
    <message>
        <source>Mosaic</source>
        <translation>Mosaïque</translation>
    </message>
    <message>
        <source>Color Effect</source>
        <translation>Effet de couleur</translation>
    </message>
</context>
<context>
    <name>LiveSource</name>
    <message>
        <source>Nothing was recorded because no picture came from the camera.</source>
        <translation>Rien n’a été enregistré, car aucune image n’est parvenue de la caméra.</translation>
    </message>
    <message>
        <source>Nothing was recorded because the recording was paused.</source>
        <translation>Rien n’a été enregistré car l’enregistrement était suspendu.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Line Width</source>
        <translation>Épaisseur du trait</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Noting</source>
        <translation>Annotation</translation>
    </message>
    <message>
        <source>Assisting</source>
        <translation>Effets</translation>
    </message>
    <message>
        <source>Adjustment</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Trait</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectangle</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>À main levée</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Cercle</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Flèche</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Triangle</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Gomme</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>Erase all</source>
        <translation>Tout effacer</translation>
    </message>
    <message>
        <source>Clip image</source>
        <translation>Copier une zone</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Main</translation>
    </message>
    <message>
        <source>Fill background</source>
        <translation>Remplir le fond</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Masque</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effet</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Réinitialiser le zoom</translation>
    </message>
    <message>
        <source>Auto focus</source>
        <translation>Mise au point automatique</translation>
    </message>
    <message>
        <source>Brightness down</source>
        <translation>Réduire la luminosité</translation>
    </message>
    <message>
        <source>Brightness up</source>
        <translation>Augmenter la luminosité</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Faire pivoter</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Figer l’image</translation>
    </message>
    <message>
        <source>Record video</source>
        <translation>Enregistrer une vidéo</translation>
    </message>
    <message>
        <source>Take snapshot</source>
        <translation>Prendre un instantané</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Imprimer</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>En direct</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Photograph</source>
        <translation>Photo</translation>
    </message>
    <message>
        <source>Drawing Board</source>
        <translation>Tableau blanc</translation>
    </message>
    <message>
        <source>Open film</source>
        <translation>Ouvrir un film</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêt</translation>
    </message>
    <message>
        <source>Slower or backward</source>
        <translation>Ralentir ou reculer</translation>
    </message>
    <message>
        <source>Faster</source>
        <translation>Accélérer</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Open folder of photographs</source>
        <translation>Ouvrir un dossier de photos</translation>
    </message>
    <message>
        <source>Previous photograph</source>
        <translation>Photo précédente</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>Diaporama</translation>
    </message>
    <message>
        <source>Next photograph</source>
        <translation>Photo suivante</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Miniatures</translation>
    </message>
    <message>
        <source>Slideshow interval</source>
        <translation>Intervalle du diaporama</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Please select a folder first.</source>
        <translation>Veuillez d’abord sélectionner un dossier.</translation>
    </message>
    <message>
        <source>Line Color</source>
        <translation>Couleur du trait</translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation>Remplissage</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Couleur de fond</translation>
    </message>
    <message>
        <source>All supported media files (*.avi *.mov *.mp4)</source>
        <translation>Tous les fichiers multimédias pris en charge (*.avi *.mov *.mp4)</translation>
    </message>
    <message>
        <source>Position in the film</source>
        <translation>Position dans le film</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Side panel</source>
        <translation>Panneau latéral</translation>
    </message>
    <message>
        <source>1     2     5    10    15    30  sec.</source>
        <translation>1     2     5    10    15    30  s</translation>
    </message>
    <message>
        <source>No printers found on this system.</source>
        <translation>Aucune imprimante trouvée sur ce système.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file cannot be read.</source>
        <translation>Le film ne peut pas être affiché : le fichier est illisible.</translation>
    </message>
    <message>
        <source>The film cannot be shown: the file is damaged or is not a film.</source>
        <translation>Le film ne peut pas être affiché : le fichier est endommagé ou n’est pas un film.</translation>
    </message>
    <message>
        <source>There is no picture in this film.</source>
        <translation>Ce film ne contient pas d’image.</translation>
    </message>
    <message>
        <source>The film cannot be shown: a decoder for it is missing (packages gstreamer1.0-libav, gstreamer1.0-plugins-bad).</source>
        <translation>Le film ne peut pas être affiché : il manque un décodeur (paquets gstreamer1.0-libav, gstreamer1.0-plugins-bad).</translation>
    </message>
    <message>
        <source>The film cannot be read any further.</source>
        <translation>La suite du film ne peut pas être lue.</translation>
    </message>
    <message>
        <source>The film cannot be shown: its disk or network does not answer.</source>
        <translation>Le film ne peut pas être affiché : le disque ou le réseau ne répond pas.</translation>
    </message>
    <message>
        <source>The film plays without sound: the sound system does not answer.</source>
        <translation>Le film est lu sans le son : le système audio ne répond pas.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown yet: its drive does not answer.</source>
        <translation>La photo ne peut pas encore être affichée : son lecteur ne répond pas.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is no longer there.</source>
        <translation>La photo ne peut pas être affichée : le fichier n’existe plus.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file is damaged, too large or not a picture.</source>
        <translation>La photo ne peut pas être affichée : le fichier est endommagé, trop volumineux ou n’est pas une image.</translation>
    </message>
    <message>
        <source>The photograph cannot be shown: the file cannot be read.</source>
        <translation>La photo ne peut pas être affichée : le fichier est illisible.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not shown: names of photographs end in .bmp, .jpg, .jpeg, .png or .gif, in lower case.</source>
        <translation>« %1 » n’est pas affiché : le nom d’une photo se termine par .bmp, .jpg, .jpeg, .png ou .gif, en minuscules.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Lire ou suspendre</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Close the pop-up or leave the full screen</source>
        <translation>Fermer la fenêtre ou quitter le plein écran</translation>
    </message>
    <message>
        <source>All keys</source>
        <translation>Toutes les touches</translation>
    </message>
    <message>
        <source>Next mask</source>
        <translation>Masque suivant</translation>
    </message>
    <message>
        <source>Next effect</source>
        <translation>Effet suivant</translation>
    </message>
    <message>
        <source>Black pen</source>
        <translation>Crayon noir</translation>
    </message>
    <message>
        <source>Red pen</source>
        <translation>Crayon rouge</translation>
    </message>
    <message>
        <source>Yellow pen</source>
        <translation>Crayon jaune</translation>
    </message>
    <message>
        <source>Blue pen</source>
        <translation>Crayon bleu</translation>
    </message>
    <message>
        <source>Thinner pen</source>
        <translation>Crayon plus fin</translation>
    </message>
    <message>
        <source>Thicker pen</source>
        <translation>Crayon plus épais</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Présentation</translation>
    </message>
    <message>
        <source>Hold the presentation</source>
        <translation>Figer la présentation</translation>
    </message>
    <message>
        <source>Black presentation</source>
        <translation>Présentation noire</translation>
    </message>
    <message>
        <source>Connect the document camera</source>
        <translation>Connectez le visualiseur</translation>
    </message>
    <message>
        <source>Open a film</source>
        <translation>Ouvrez un film</translation>
    </message>
    <message>
        <source>Open a picture of a folder</source>
        <translation>Ouvrez une photo d’un dossier</translation>
    </message>
    <message>
        <source>Pause recording</source>
        <translation>Suspendre l’enregistrement</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>The disk lasts %1 minutes</source>
        <translation>Le disque suffit pour %1 minutes</translation>
    </message>
    <message>
        <source>No sound is recorded</source>
        <translation>Aucun son n’est enregistré</translation>
    </message>
    <message>
        <source>Pictures dropped: %1</source>
        <translation>Images perdues : %1</translation>
    </message>
    <message>
        <source>Frames missed: %1</source>
        <translation>Images de la caméra manquées : %1</translation>
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
        <translation>Plus</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Caméra</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Enregistrement</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Touches</translation>
    </message>
    <message>
        <source>running</source>
        <translation>en cours</translation>
    </message>
    <message>
        <source>not running</source>
        <translation>arrêté</translation>
    </message>
    <message>
        <source>Movies in</source>
        <translation>Vidéos dans</translation>
    </message>
    <message>
        <source>Snapshots in</source>
        <translation>Instantanés dans</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Non enregistré</translation>
    </message>
    <message>
        <source>Presentation</source>
        <translation>Présentation</translation>
    </message>
    <message>
        <source>The first free one</source>
        <translation>Le premier libre</translation>
    </message>
    <message>
        <source>Screen for the class</source>
        <translation>Écran pour la classe</translation>
    </message>
    <message>
        <source>Open it when the program starts</source>
        <translation>Ouvrir au démarrage du programme</translation>
    </message>
    <message>
        <source>Show where the pointer is</source>
        <translation>Montrer le pointeur</translation>
    </message>
    <message>
        <source>Pen and fingers</source>
        <translation>Stylet et doigts</translation>
    </message>
    <message>
        <source>Move and zoom</source>
        <translation>Déplacer et zoomer</translation>
    </message>
    <message>
        <source>two fingers</source>
        <translation>deux doigts</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>wheel of the mouse</source>
        <translation>molette de la souris</translation>
    </message>
    <message>
        <source>tap with two fingers</source>
        <translation>toucher avec deux doigts</translation>
    </message>
    <message>
        <source>tap with three fingers</source>
        <translation>toucher avec trois doigts</translation>
    </message>
    <message>
        <source>lower button of the pen, middle mouse button</source>
        <translation>bouton inférieur du stylet, bouton central de la souris</translation>
    </message>
    <message>
        <source>upper button or other end of the pen</source>
        <translation>bouton supérieur ou autre extrémité du stylet</translation>
    </message>
    <message>
        <source>Options of a tool</source>
        <translation>Options d’un outil</translation>
    </message>
    <message>
        <source>hold its button</source>
        <translation>maintenir son bouton enfoncé</translation>
    </message>
    <message>
        <source>Press the pen harder to draw wider</source>
        <translation>Appuyer plus fort élargit le trait</translation>
    </message>
    <message>
        <source>Camera to show</source>
        <translation>Caméra affichée</translation>
    </message>
    <message>
        <source>The document camera</source>
        <translation>Le visualiseur</translation>
    </message>
    <message>
        <source>%1 (not plugged in)</source>
        <translation>%1 (non branchée)</translation>
    </message>
    <message>
        <source>Mirror left and right</source>
        <translation>Inverser gauche et droite</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>Inverser haut et bas</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>Taille de l’image</translation>
    </message>
    <message>
        <source>As in the settings (%1)</source>
        <translation>Comme dans les réglages (%1)</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Exposition</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Mise au point</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Balance des blancs</translation>
    </message>
    <message>
        <source>Sharpness</source>
        <translation>Netteté</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Against flickering light</source>
        <translation>Contre le scintillement de la lumière</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>suspendu</translation>
    </message>
    <message>
        <source>Last movie</source>
        <translation>Dernière vidéo</translation>
    </message>
    <message>
        <source>Open its folder</source>
        <translation>Ouvrir le dossier</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>That of the camera</source>
        <translation>Celui de la caméra</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucun</translation>
    </message>
    <message>
        <source>No microphone is heard</source>
        <translation>Aucun microphone n’est entendu</translation>
    </message>
    <message>
        <source>Heard now: %1</source>
        <translation>Entendu actuellement : %1</translation>
    </message>
    <message>
        <source>Size of movies</source>
        <translation>Taille des vidéos</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Small (half the size)</source>
        <translation>Petite (moitié moins)</translation>
    </message>
    <message>
        <source>Time-lapse</source>
        <translation>Accéléré</translation>
    </message>
    <message>
        <source>A picture every %1 s, no sound</source>
        <translation>Une image toutes les %1 s, sans son</translation>
    </message>
</context>
<context>
    <name>MaskToolWindow</name>
    <message>
        <source>Circle</source>
        <translation>Cercle</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectangle</translation>
    </message>
    <message>
        <source>Right half</source>
        <translation>Moitié droite</translation>
    </message>
    <message>
        <source>Lower half</source>
        <translation>Moitié inférieure</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effet</translation>
    </message>
</context>
<context>
    <name>MovieWriter</name>
    <message>
        <source>This computer has no encoder for movies.</source>
        <translation>Aucun encodeur vidéo n’est disponible sur cet ordinateur.</translation>
    </message>
    <message>
        <source>A component for writing movies is missing.</source>
        <translation>Il manque sur cet ordinateur un composant nécessaire à l’enregistrement des vidéos.</translation>
    </message>
    <message>
        <source>The movie file cannot be created.</source>
        <translation>Impossible de créer le fichier vidéo.</translation>
    </message>
    <message>
        <source>The recording was stopped because its folder no longer exists.</source>
        <translation>L’enregistrement a été arrêté, car son dossier n’existe plus.</translation>
    </message>
    <message>
        <source>The recording was stopped because the disk is full.</source>
        <translation>L’enregistrement a été arrêté, car le disque est plein.</translation>
    </message>
    <message>
        <source>The recording was stopped because the movie file cannot be written.</source>
        <translation>L’enregistrement a été arrêté, car l’écriture du fichier vidéo est impossible.</translation>
    </message>
</context>
<context>
    <name>OSDProcessor</name>
    <message>
        <source>Best fit</source>
        <translation>Ajusté</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>The picture is frozen.</source>
        <translation>L’image est figée.</translation>
    </message>
    <message>
        <source>The picture moves again.</source>
        <translation>L’image bouge de nouveau.</translation>
    </message>
    <message>
        <source>Recording has begun.</source>
        <translation>L’enregistrement a commencé.</translation>
    </message>
    <message>
        <source>Recording has ended.</source>
        <translation>L’enregistrement est terminé.</translation>
    </message>
    <message>
        <source>Snapshot taken.</source>
        <translation>Instantané pris.</translation>
    </message>
    <message>
        <source>Recording is paused.</source>
        <translation>L’enregistrement est suspendu.</translation>
    </message>
    <message>
        <source>Recording goes on.</source>
        <translation>L’enregistrement continue.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Line</source>
        <translation>Trait</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rectangle</translation>
    </message>
    <message>
        <source>Freehand</source>
        <translation>À main levée</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Cercle</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Flèche</translation>
    </message>
    <message>
        <source>Triangle</source>
        <translation>Triangle</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Gomme</translation>
    </message>
</context>
<context>
    <name>RegistrationWidget</name>
    <message>
        <source>Open registration file...</source>
        <translation>Ouvrir un fichier d’inscription...</translation>
    </message>
    <message>
        <source>Registration file (*.rf)</source>
        <translation>Fichier d’inscription (*.rf)</translation>
    </message>
    <message>
        <source>Save registration file...</source>
        <translation>Enregistrer le fichier d’inscription...</translation>
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
        <translation>Image unique</translation>
    </message>
    <message>
        <source>Continuous</source>
        <translation>En continu</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Source</translation>
    </message>
    <message>
        <source>Document Camera</source>
        <translation>Visualiseur</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Résolution</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Enregistrement</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Capture</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Intervalle</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Instantanés dans</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Parcourir</translation>
    </message>
    <message>
        <source>Browse for the snapshot folder</source>
        <translation>Parcourir pour choisir le dossier des instantanés</translation>
    </message>
    <message>
        <source>RecordingSave</source>
        <translation>Vidéos dans</translation>
    </message>
    <message>
        <source>Browse for the recording folder</source>
        <translation>Parcourir pour choisir le dossier des enregistrements</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Question</translation>
    </message>
    <message>
        <source>Using a recording resolution of 1920x1080 may cause low framerate when the PC isn&apos;t powerful. Continue?</source>
        <translation>Une résolution d’enregistrement de 1920x1080 peut réduire la fréquence d’images si l’ordinateur n’est pas assez puissant. Continuer ?</translation>
    </message>
    <message>
        <source>Folder for snapshots</source>
        <translation>Dossier des instantanés</translation>
    </message>
    <message>
        <source>Folder for recordings</source>
        <translation>Dossier des enregistrements</translation>
    </message>
</context>
<context>
    <name>TextToolWindow</name>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Police</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Taille de police</translation>
    </message>
</context>
<context>
    <name>ToolWindow</name>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>PresentationView</name>
    <message>
        <source>Presentation</source>
        <translation>Présentation</translation>
    </message>
</context>
</TS>

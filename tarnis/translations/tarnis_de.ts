<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>DialogCheckList</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Check All</source>
        <translation>Alle ankreuzen</translation>
    </message>
    <message>
        <source>Uncheck All</source>
        <translation>Alle abwählen</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>Umkehren</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Einträge</translation>
    </message>
</context>
<context>
    <name>Graph1DDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Curves</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Visible items</source>
        <translation>Sichtbare Kurven</translation>
    </message>
    <message>
        <source>desc</source>
        <translation>desc</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>AutoUpdate</source>
        <translation>Laufend aktualisieren</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>infoLabel</source>
        <translation>infoLabel</translation>
    </message>
    <message>
        <source>failed to parse information - &apos;%1&apos;</source>
        <translation>Die Angaben lassen sich nicht lesen - &apos;%1&apos;</translation>
    </message>
    <message>
        <source>Invalid index!</source>
        <translation>Ungültiger Index!</translation>
    </message>
    <message>
        <source>1D histograms</source>
        <translation>1D-Histogramme</translation>
    </message>
    <message>
        <source>&gt;&gt;&gt; %1
&lt;&lt;&lt; %2</source>
        <translation>&gt;&gt;&gt; %1
&lt;&lt;&lt; %2</translation>
    </message>
</context>
<context>
    <name>Graph2DDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>AutoUpdate</source>
        <translation>Laufend aktualisieren</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>infoLabel</source>
        <translation>infoLabel</translation>
    </message>
    <message>
        <source>graph data size mismatched! %1 != %2 ( %3 * %4 )</source>
        <translation>Die Größe der Daten passt nicht! %1 != %2 ( %3 * %4 )</translation>
    </message>
    <message>
        <source>2D histogram</source>
        <translation>2D-Histogramm</translation>
    </message>
    <message>
        <source>&gt;&gt;&gt; %1
&lt;&lt;&lt; %2</source>
        <translation>&gt;&gt;&gt; %1
&lt;&lt;&lt; %2</translation>
    </message>
</context>
<context>
    <name>Graph2DFilterDialog</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Matrix</source>
        <translation>Matrix</translation>
    </message>
    <message>
        <source>Row 1, column 1</source>
        <translation>Zeile 1, Spalte 1</translation>
    </message>
    <message>
        <source>Row 1, column 2</source>
        <translation>Zeile 1, Spalte 2</translation>
    </message>
    <message>
        <source>Row 1, column 3</source>
        <translation>Zeile 1, Spalte 3</translation>
    </message>
    <message>
        <source>Row 1, column 4</source>
        <translation>Zeile 1, Spalte 4</translation>
    </message>
    <message>
        <source>Row 1, column 5</source>
        <translation>Zeile 1, Spalte 5</translation>
    </message>
    <message>
        <source>Row 2, column 1</source>
        <translation>Zeile 2, Spalte 1</translation>
    </message>
    <message>
        <source>Row 2, column 2</source>
        <translation>Zeile 2, Spalte 2</translation>
    </message>
    <message>
        <source>Row 2, column 3</source>
        <translation>Zeile 2, Spalte 3</translation>
    </message>
    <message>
        <source>Row 2, column 4</source>
        <translation>Zeile 2, Spalte 4</translation>
    </message>
    <message>
        <source>Row 2, column 5</source>
        <translation>Zeile 2, Spalte 5</translation>
    </message>
    <message>
        <source>Row 3, column 1</source>
        <translation>Zeile 3, Spalte 1</translation>
    </message>
    <message>
        <source>Row 3, column 2</source>
        <translation>Zeile 3, Spalte 2</translation>
    </message>
    <message>
        <source>Row 3, column 3</source>
        <translation>Zeile 3, Spalte 3</translation>
    </message>
    <message>
        <source>Row 3, column 4</source>
        <translation>Zeile 3, Spalte 4</translation>
    </message>
    <message>
        <source>Row 3, column 5</source>
        <translation>Zeile 3, Spalte 5</translation>
    </message>
    <message>
        <source>Row 4, column 1</source>
        <translation>Zeile 4, Spalte 1</translation>
    </message>
    <message>
        <source>Row 4, column 2</source>
        <translation>Zeile 4, Spalte 2</translation>
    </message>
    <message>
        <source>Row 4, column 3</source>
        <translation>Zeile 4, Spalte 3</translation>
    </message>
    <message>
        <source>Row 4, column 4</source>
        <translation>Zeile 4, Spalte 4</translation>
    </message>
    <message>
        <source>Row 4, column 5</source>
        <translation>Zeile 4, Spalte 5</translation>
    </message>
    <message>
        <source>Row 5, column 1</source>
        <translation>Zeile 5, Spalte 1</translation>
    </message>
    <message>
        <source>Row 5, column 2</source>
        <translation>Zeile 5, Spalte 2</translation>
    </message>
    <message>
        <source>Row 5, column 3</source>
        <translation>Zeile 5, Spalte 3</translation>
    </message>
    <message>
        <source>Row 5, column 4</source>
        <translation>Zeile 5, Spalte 4</translation>
    </message>
    <message>
        <source>Row 5, column 5</source>
        <translation>Zeile 5, Spalte 5</translation>
    </message>
    <message>
        <source>Divisor</source>
        <translation>Teiler</translation>
    </message>
</context>
<context>
    <name>MultiVectorGraphWidget</name>
    <message>
        <source>Save CSV...</source>
        <translation>CSV speichern...</translation>
    </message>
    <message>
        <source>Column Chart</source>
        <translation>Säulendiagramm</translation>
    </message>
    <message>
        <source>Connect Points</source>
        <translation>Punkte verbinden</translation>
    </message>
    <message>
        <source>Peak Search</source>
        <translation>Peaksuche</translation>
    </message>
    <message>
        <source>Log Scale</source>
        <translation>Logarithmisch</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>CSV speichern</translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation>CSV-Dateien (*.csv *.txt)</translation>
    </message>
    <message>
        <source>Select Visible Items</source>
        <translation>Sichtbare Kurven wählen</translation>
    </message>
</context>
<context>
    <name>NameValueListDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation>CSV-Dateien (*.csv *.txt)</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
</context>
<context>
    <name>PeakSearchDialog</name>
    <message>
        <source>Peak Search</source>
        <translation>Peaksuche</translation>
    </message>
    <message>
        <source>Threshold ( % )</source>
        <translation>Schwelle ( % )</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Amplitude</source>
        <translation>Amplitude</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>Halbwertsbreite</translation>
    </message>
    <message>
        <source>Display Points</source>
        <translation>Punkte zeigen</translation>
    </message>
    <message>
        <source>Invalid threshold.</source>
        <translation>Ungültige Schwelle.</translation>
    </message>
    <message>
        <source>Invalid width.</source>
        <translation>Ungültige Breite.</translation>
    </message>
    <message>
        <source>Peaks</source>
        <translation>Peaks</translation>
    </message>
</context>
<context>
    <name>SelectCheckedDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Check Selected</source>
        <translation>Auswahl ankreuzen</translation>
    </message>
    <message>
        <source>UnCheck Selected</source>
        <translation>Auswahl abwählen</translation>
    </message>
    <message>
        <source>Reverse Selection</source>
        <translation>Auswahl umkehren</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Einträge</translation>
    </message>
</context>
<context>
    <name>SelectDirectoryDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Files and folders</source>
        <translation>Dateien und Ordner</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>&apos;%1&apos; already exists. Do you want to overwrite it?</source>
        <translation>&apos;%1&apos; gibt es schon. Soll es überschrieben werden?</translation>
    </message>
</context>
<context>
    <name>SelectPathDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Files and folders</source>
        <translation>Dateien und Ordner</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>File not found: %1</source>
        <translation>Datei nicht gefunden: %1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; already exists. Do you want to overwrite it?</source>
        <translation>&apos;%1&apos; gibt es schon. Soll es überschrieben werden?</translation>
    </message>
</context>
<context>
    <name>StatDialog</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>TarnisSession</name>
    <message>
        <source>The connection was refused by the peer.</source>
        <translation>Die Gegenseite hat die Verbindung abgelehnt.</translation>
    </message>
    <message>
        <source>The host was not found.</source>
        <translation>Der Rechner wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>%1.</source>
        <translation>%1.</translation>
    </message>
</context>
<context>
    <name>VectorGraphWidget</name>
    <message>
        <source>Save CSV...</source>
        <translation>CSV speichern...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>CSV speichern</translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation>CSV-Dateien (*.csv *.txt)</translation>
    </message>
</context>
<context>
    <name>ViewSelectedROI</name>
    <message>
        <source>Form</source>
        <translation>Bereiche</translation>
    </message>
    <message>
        <source>x1</source>
        <translation>x1</translation>
    </message>
    <message>
        <source>y1</source>
        <translation>y1</translation>
    </message>
    <message>
        <source>x2</source>
        <translation>x2</translation>
    </message>
    <message>
        <source>y2</source>
        <translation>y2</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Alle löschen</translation>
    </message>
    <message>
        <source>Can not edit ROI.</source>
        <translation>Der Bereich lässt sich nicht ändern.</translation>
    </message>
    <message>
        <source>Are you sure to delete selected item?</source>
        <translation>Soll der gewählte Eintrag gelöscht werden?</translation>
    </message>
    <message>
        <source>Are you sure to clear all items?</source>
        <translation>Sollen alle Einträge gelöscht werden?</translation>
    </message>
    <message>
        <source>Regions</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>XRangeInputDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>X-max</source>
        <translation>X-Max</translation>
    </message>
    <message>
        <source>X-min</source>
        <translation>X-Min</translation>
    </message>
    <message>
        <source>%1-min</source>
        <translation>%1-Min</translation>
    </message>
    <message>
        <source>%1-max</source>
        <translation>%1-Max</translation>
    </message>
</context>
<context>
    <name>XY2DGraphWidget</name>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuell</translation>
    </message>
    <message>
        <source>Save CSV...</source>
        <translation>CSV speichern...</translation>
    </message>
    <message>
        <source>1D Cut</source>
        <translation>1D-Schnitt</translation>
    </message>
    <message>
        <source>Inside Only</source>
        <translation>Nur innerhalb</translation>
    </message>
    <message>
        <source>Log Scale</source>
        <translation>Logarithmisch</translation>
    </message>
    <message>
        <source>Min Color</source>
        <translation>Farbe des Minimums</translation>
    </message>
    <message>
        <source>Half Min Color</source>
        <translation>Farbe bei einem Viertel</translation>
    </message>
    <message>
        <source>Half Color</source>
        <translation>Farbe der Mitte</translation>
    </message>
    <message>
        <source>Half Max Color</source>
        <translation>Farbe bei drei Vierteln</translation>
    </message>
    <message>
        <source>Max Color</source>
        <translation>Farbe des Maximums</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Hintergrundfarbe</translation>
    </message>
    <message>
        <source>Edit Min Y ...</source>
        <translation>Y-Minimum ändern ...</translation>
    </message>
    <message>
        <source>Edit Max Y ...</source>
        <translation>Y-Maximum ändern ...</translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation>CSV speichern</translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation>CSV-Dateien (*.csv *.txt)</translation>
    </message>
    <message>
        <source>Select ROI...</source>
        <translation>Bereiche wählen...</translation>
    </message>
</context>
<context>
    <name>XYGraphWidget</name>
    <message>
        <source>Auto Scale X</source>
        <translation>X automatisch</translation>
    </message>
    <message>
        <source>Auto Scale Y</source>
        <translation>Y automatisch</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Show Grid</source>
        <translation>Gitter zeigen</translation>
    </message>
    <message>
        <source>Print...</source>
        <translation>Drucken...</translation>
    </message>
    <message>
        <source>Save PNG...</source>
        <translation>PNG speichern...</translation>
    </message>
    <message>
        <source>Select X Range</source>
        <translation>X-Bereich wählen</translation>
    </message>
    <message>
        <source>Clear X Range</source>
        <translation>X-Bereich löschen</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Min Y</source>
        <translation>Y-Minimum</translation>
    </message>
    <message>
        <source>Max Y</source>
        <translation>Y-Maximum</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Images (*.png *.jpg)</source>
        <translation>Bilder (*.png *.jpg)</translation>
    </message>
    <message>
        <source>Save Image</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Save %1 failed.</source>
        <translation>%1 ließ sich nicht speichern.</translation>
    </message>
    <message>
        <source>Select %1 Range</source>
        <translation>%1-Bereich wählen</translation>
    </message>
    <message>
        <source>Clear %1 Range</source>
        <translation>%1-Bereich löschen</translation>
    </message>
</context>
<context>
    <name>XYRangeInputDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>X-min</source>
        <translation>X-Min</translation>
    </message>
    <message>
        <source>Y-min</source>
        <translation>Y-Min</translation>
    </message>
    <message>
        <source>X-max</source>
        <translation>X-Max</translation>
    </message>
    <message>
        <source>Y-max</source>
        <translation>Y-Max</translation>
    </message>
</context>
<context>
    <name>tarnis::Client</name>
    <message>
        <source>The client was closed.</source>
        <translation>Der Client wurde geschlossen.</translation>
    </message>
    <message>
        <source>The connection was closed by this program.</source>
        <translation>Dieses Programm hat die Verbindung geschlossen.</translation>
    </message>
    <message>
        <source>The connection was aborted by this program.</source>
        <translation>Dieses Programm hat die Verbindung abgebrochen.</translation>
    </message>
    <message>
        <source>The name of the uploaded file is empty or holds a line feed.</source>
        <translation>Der Name der hochzuladenden Datei ist leer oder enthält einen Zeilenumbruch.</translation>
    </message>
    <message>
        <source>The prompt is empty. Without it the end of a reply cannot be recognised.</source>
        <translation>Der Prompt ist leer. Ohne ihn ist das Ende einer Antwort nicht zu erkennen.</translation>
    </message>
    <message>
        <source>The name of the server&apos;s host is empty.</source>
        <translation>Der Name des Rechners, auf dem der Server läuft, ist leer.</translation>
    </message>
    <message>
        <source>The port must be from 1 to 65535.</source>
        <translation>Der Port muss zwischen 1 und 65535 liegen.</translation>
    </message>
    <message>
        <source>The client connects to another server.</source>
        <translation>Der Client verbindet sich mit einem anderen Server.</translation>
    </message>
    <message>
        <source>The request was cancelled before it was sent.</source>
        <translation>Die Anfrage wurde abgebrochen, bevor sie gesendet wurde.</translation>
    </message>
    <message>
        <source>The request was made on another thread than the client&apos;s.</source>
        <translation>Die Anfrage kam von einem anderen Thread als dem des Clients.</translation>
    </message>
    <message>
        <source>The command holds a line feed. Send one command per request.</source>
        <translation>Der Befehl enthält einen Zeilenumbruch. Senden Sie einen Befehl je Anfrage.</translation>
    </message>
    <message>
        <source>The client is not connected to a server.</source>
        <translation>Der Client ist mit keinem Server verbunden.</translation>
    </message>
    <message>
        <source>%1 requests wait already.</source>
        <translation>Es warten bereits %1 Anfragen.</translation>
    </message>
    <message>
        <source>The server sent bytes that no request asked for.</source>
        <translation>Der Server hat Bytes gesendet, die nicht angefordert wurden.</translation>
    </message>
    <message>
        <source>The request was not sent within its deadline of %1 s.</source>
        <translation>Die Anfrage konnte nicht innerhalb ihrer Frist von %1 s gesendet werden.</translation>
    </message>
    <message>
        <source>The reply was not complete within the deadline of %1 s.</source>
        <translation>Die Antwort war nach der Frist von %1 s nicht vollständig.</translation>
    </message>
    <message>
        <source>The server was silent for %1 s.</source>
        <translation>Der Server hat %1 s lang nichts gesendet.</translation>
    </message>
    <message>
        <source>No connection to the server within %1 s.</source>
        <translation>Keine Verbindung zum Server innerhalb von %1 s.</translation>
    </message>
    <message>
        <source>No prompt from the server within %1 s.</source>
        <translation>Kein Prompt vom Server innerhalb von %1 s.</translation>
    </message>
</context>
<context>
    <name>tarnis::Connection</name>
    <message>
        <source>The server sent bytes that no request asked for.</source>
        <translation>Der Server hat Bytes gesendet, die nicht angefordert wurden.</translation>
    </message>
    <message>
        <source>The server announced a reply of %1 bytes; at most %2 are accepted.</source>
        <translation>Der Server hat eine Antwort von %1 Bytes angekündigt; höchstens %2 sind zulässig.</translation>
    </message>
    <message>
        <source>The reply is larger than the accepted %1 bytes.</source>
        <translation>Die Antwort ist größer als die zulässigen %1 Bytes.</translation>
    </message>
    <message>
        <source>The connection was refused: no server listens at this address.</source>
        <translation>Die Verbindung wurde abgelehnt: Unter dieser Adresse läuft kein Server.</translation>
    </message>
    <message>
        <source>The host was not found. Check its name.</source>
        <translation>Der Rechner wurde nicht gefunden. Prüfen Sie seinen Namen.</translation>
    </message>
    <message>
        <source>The server has closed the connection.</source>
        <translation>Der Server hat die Verbindung geschlossen.</translation>
    </message>
    <message>
        <source>The network connection was interrupted (%1).</source>
        <translation>Die Netzwerkverbindung wurde unterbrochen (%1).</translation>
    </message>
    <message>
        <source>The connection has failed.</source>
        <translation>Die Verbindung ist fehlgeschlagen.</translation>
    </message>
</context>
<context>
    <name>tarnis::Files</name>
    <message>
        <source>no space is left on the device: free some or choose another folder</source>
        <translation>auf dem Datenträger ist kein Platz mehr: Platz schaffen oder einen anderen Ordner wählen</translation>
    </message>
    <message>
        <source>the disk quota is used up: free some space or choose another folder</source>
        <translation>das Speicherkontingent ist verbraucht: Platz schaffen oder einen anderen Ordner wählen</translation>
    </message>
    <message>
        <source>the file would be larger than this file system allows</source>
        <translation>die Datei wäre größer, als es dieses Dateisystem erlaubt</translation>
    </message>
    <message>
        <source>permission denied: choose another file or folder</source>
        <translation>keine Berechtigung: eine andere Datei oder einen anderen Ordner wählen</translation>
    </message>
    <message>
        <source>the file system is read-only: choose another folder</source>
        <translation>das Dateisystem ist schreibgeschützt: einen anderen Ordner wählen</translation>
    </message>
    <message>
        <source>the folder &apos;%1&apos; does not exist: create it or choose another one</source>
        <translation>der Ordner „%1“ existiert nicht: ihn anlegen oder einen anderen wählen</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>es gibt keine solche Datei</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a folder</source>
        <translation>„%1“ ist kein Ordner</translation>
    </message>
    <message>
        <source>it is a folder: give the name of a file</source>
        <translation>es ist ein Ordner: den Namen einer Datei angeben</translation>
    </message>
    <message>
        <source>the reader has closed the pipe</source>
        <translation>der Leser hat die Pipe geschlossen</translation>
    </message>
    <message>
        <source>the name is too long: choose a shorter one</source>
        <translation>der Name ist zu lang: einen kürzeren wählen</translation>
    </message>
    <message>
        <source>the symbolic link leads nowhere: choose another file</source>
        <translation>der symbolische Link führt ins Leere: eine andere Datei wählen</translation>
    </message>
    <message>
        <source>it is larger than %1 bytes</source>
        <translation>sie ist größer als %1 Bytes</translation>
    </message>
</context>
</TS>

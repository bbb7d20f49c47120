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
    <message>
        <source>The server&apos;s reply is larger than the limit of %1. The connection has been closed</source>
        <translation>Die Antwort des Servers ist größer als die Grenze von %1. Die Verbindung wurde geschlossen</translation>
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
        <translation>Regionen</translation>
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
        <translation>Die Region lässt sich nicht ändern.</translation>
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
        <translation>Regionen</translation>
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
        <translation>Regionen wählen...</translation>
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
    <name>tarnis::BinAggregation</name>
    <message>
        <source>mean</source>
        <translation>Mittelwert</translation>
    </message>
    <message>
        <source>sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>%1 of %2 bins per pixel</source>
        <translation>%1 von %2 Bins pro Pixel</translation>
    </message>
    <message>
        <source>Bins That Share a Pixel</source>
        <translation>Bins, die sich ein Pixel teilen</translation>
    </message>
    <message>
        <source>First Bin</source>
        <translation>Erster Bin</translation>
    </message>
    <message>
        <source>Curve Only</source>
        <translation>Nur Kurve</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittelwert</translation>
    </message>
</context>
<context>
    <name>tarnis::BinnedData</name>
    <message>
        <source>There are no bins.</source>
        <translation>Es gibt keine Bins.</translation>
    </message>
    <message>
        <source>Each bin needs one variance.</source>
        <translation>Jeder Bin braucht eine Varianz.</translation>
    </message>
    <message>
        <source>A variance is negative or not finite. Correct the variances.</source>
        <translation>Eine Varianz ist negativ oder nicht endlich. Berichtigen Sie die Varianzen.</translation>
    </message>
    <message>
        <source>The axis needs a finite start and a positive bin width.</source>
        <translation>Die Achse braucht einen endlichen Anfang und eine positive Binbreite.</translation>
    </message>
    <message>
        <source>The axis needs one more edge than bins.</source>
        <translation>Die Achse braucht eine Kante mehr als Bins.</translation>
    </message>
    <message>
        <source>The edges of the axis must be finite and increase.</source>
        <translation>Die Kanten der Achse müssen endlich sein und steigen.</translation>
    </message>
    <message>
        <source>Bin %1 is not a finite number.</source>
        <translation>Bin %1 ist keine endliche Zahl.</translation>
    </message>
    <message>
        <source>Bin %1 is negative (%2). Contents that were subtracted are not counts and need variances.</source>
        <translation>Bin %1 ist negativ (%2). Inhalte, von denen etwas abgezogen wurde, sind keine Zählwerte und brauchen Varianzen.</translation>
    </message>
    <message>
        <source>Bin %1 is not an integer (%2). Contents that were scaled are not counts and need variances.</source>
        <translation>Bin %1 ist keine ganze Zahl (%2). Skalierte Inhalte sind keine Zählwerte und brauchen Varianzen.</translation>
    </message>
</context>
<context>
    <name>tarnis::CalibrationLines</name>
    <message>
        <source>There is no source &quot;%1&quot;. Known are: %2.</source>
        <translation>Es gibt keine Quelle „%1“. Bekannt sind: %2.</translation>
    </message>
    <message>
        <source>Line %1 is not &quot;energy, error, channel, name&quot;: give a positive energy and an error that is not negative.</source>
        <translation>Zeile %1 ist nicht „Energie, Fehler, Kanal, Name“: Geben Sie eine positive Energie und einen nicht negativen Fehler an.</translation>
    </message>
    <message>
        <source>There are no lines. Write &quot;energy, error&quot; in each line.</source>
        <translation>Es gibt keine Linien. Schreiben Sie „Energie, Fehler“ in jede Zeile.</translation>
    </message>
</context>
<context>
    <name>tarnis::CalibrationModel</name>
    <message>
        <source>Used</source>
        <translation>Verwendet</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Energy [%1]</source>
        <translation>Energie [%1]</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>Abweichung</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a positive energy.</source>
        <translation>„%1“ ist keine positive Energie.</translation>
    </message>
</context>
<context>
    <name>tarnis::CalibrationPanel</name>
    <message>
        <source>%1 from %2 lines, chi squared %3 for %4 degrees of freedom.</source>
        <translation>%1 aus %2 Linien, Chi-Quadrat %3 bei %4 Freiheitsgraden.</translation>
    </message>
    <message>
        <source>The lines deviate from the curve by more than their errors.</source>
        <translation>Die Linien liegen nicht innerhalb ihrer Fehler auf der Kurve.</translation>
    </message>
    <message>
        <source>Lines of a File</source>
        <translation>Linien einer Datei</translation>
    </message>
    <message>
        <source>Save Calibration</source>
        <translation>Kalibrierung speichern</translation>
    </message>
    <message>
        <source>Calibrations (*.json)</source>
        <translation>Kalibrierungen (*.json)</translation>
    </message>
    <message>
        <source>Load Calibration</source>
        <translation>Kalibrierung laden</translation>
    </message>
    <message>
        <source>Energy Calibration</source>
        <translation>Energiekalibrierung</translation>
    </message>
    <message>
        <source>Source:</source>
        <translation>Quelle:</translation>
    </message>
    <message>
        <source>Several sources are joined by +, for example ba133+cs137</source>
        <translation>Mehrere Quellen werden mit + verbunden, zum Beispiel ba133+cs137</translation>
    </message>
    <message>
        <source>Lines of a File...</source>
        <translation>Linien einer Datei...</translation>
    </message>
    <message>
        <source>Degree:</source>
        <translation>Grad:</translation>
    </message>
    <message>
        <source>automatic</source>
        <translation>automatisch</translation>
    </message>
    <message>
        <source>Calibrate</source>
        <translation>Kalibrieren</translation>
    </message>
    <message>
        <source>Fit the peaks of the plot and assign the lines to them</source>
        <translation>Die Peaks des Diagramms anpassen und ihnen die Linien zuordnen</translation>
    </message>
    <message>
        <source>Apply to the Axis</source>
        <translation>Auf die Achse anwenden</translation>
    </message>
    <message>
        <source>Channels Again</source>
        <translation>Wieder Kanäle</translation>
    </message>
    <message>
        <source>Remove the calibration from the axis</source>
        <translation>Die Kalibrierung von der Achse nehmen</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Load...</source>
        <translation>Laden...</translation>
    </message>
    <message>
        <source>Lines: %1. Press &quot;Calibrate&quot; to find them in the plot.</source>
        <translation>Linien: %1. „Kalibrieren“ sucht sie im Diagramm.</translation>
    </message>
    <message>
        <source>There is no calibration to save.</source>
        <translation>Es gibt keine Kalibrierung zu speichern.</translation>
    </message>
    <message>
        <source>The plot has been closed.</source>
        <translation>Das Diagramm wurde geschlossen.</translation>
    </message>
    <message>
        <source>The plot has no data.</source>
        <translation>Das Diagramm hat keine Daten.</translation>
    </message>
    <message>
        <source>There are no lines: choose a source or a file.</source>
        <translation>Es gibt keine Linien: eine Quelle oder eine Datei wählen.</translation>
    </message>
    <message>
        <source>Fitting the peaks...</source>
        <translation>Die Peaks werden angepasst...</translation>
    </message>
    <message>
        <source>The lines do not match the peaks. Type the energies of three peaks in the table.</source>
        <translation>Die Linien passen nicht zu den Peaks. Die Energien von drei Peaks in die Tabelle eingeben.</translation>
    </message>
    <message>
        <source>The axis shows energies.</source>
        <translation>Die Achse zeigt Energien.</translation>
    </message>
    <message>
        <source>The axis shows channels.</source>
        <translation>Die Achse zeigt Kanäle.</translation>
    </message>
    <message>
        <source>The curve whose peaks are fitted</source>
        <translation>Die Kurve, deren Peaks angepasst werden</translation>
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
        <source>The name of the uploaded file is empty or contains a line feed.</source>
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
        <source>The command contains a line feed. Send one command per request.</source>
        <translation>Der Befehl enthält einen Zeilenumbruch. Senden Sie einen Befehl je Anfrage.</translation>
    </message>
    <message>
        <source>The client is not connected to a server.</source>
        <translation>Der Client ist mit keinem Server verbunden.</translation>
    </message>
    <message>
        <source>%1 requests are already waiting.</source>
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
    <message>
        <source>The keep-alive command must be one line of text.</source>
        <translation>Der Befehl, der die Verbindung prüft, muss eine Textzeile sein.</translation>
    </message>
    <message>
        <source>The server refused the request without a reason.</source>
        <translation>Der Server hat die Anfrage ohne Angabe eines Grundes abgelehnt.</translation>
    </message>
</context>
<context>
    <name>tarnis::ColourLevels</name>
    <message>
        <source>Histogram of the Colours</source>
        <translation>Histogramm der Farben</translation>
    </message>
    <message>
        <source>Colours and Scale</source>
        <translation>Farben und Skala</translation>
    </message>
    <message>
        <source>Colours of This Map</source>
        <translation>Farben dieser Karte</translation>
    </message>
    <message>
        <source>Colours of All Maps</source>
        <translation>Farben aller Karten</translation>
    </message>
    <message>
        <source>Linear Scale</source>
        <translation>Lineare Skala</translation>
    </message>
    <message>
        <source>Square Root Scale</source>
        <translation>Wurzelskala</translation>
    </message>
    <message>
        <source>Logarithmic Scale</source>
        <translation>Logarithmische Skala</translation>
    </message>
    <message>
        <source>Limits Follow the Data</source>
        <translation>Grenzen folgen den Daten</translation>
    </message>
    <message>
        <source>Limits at %L1 and %L2 % of the Bins</source>
        <translation>Grenzen bei %L1 und %L2 % der Bins</translation>
    </message>
    <message>
        <source>The map is too narrow for the histogram.</source>
        <translation>Die Karte ist zu schmal für das Histogramm.</translation>
    </message>
</context>
<context>
    <name>tarnis::ColourMaps</name>
    <message>
        <source>Viridis</source>
        <translation>Viridis</translation>
    </message>
    <message>
        <source>Cividis (safe for colour-blind users)</source>
        <translation>Cividis (auch bei Farbenblindheit)</translation>
    </message>
    <message>
        <source>Magma</source>
        <translation>Magma</translation>
    </message>
    <message>
        <source>Inferno</source>
        <translation>Inferno</translation>
    </message>
    <message>
        <source>Turbo</source>
        <translation>Turbo</translation>
    </message>
    <message>
        <source>Greys</source>
        <translation>Graustufen</translation>
    </message>
    <message>
        <source>Diverging, blue to red</source>
        <translation>Divergierend, blau bis rot</translation>
    </message>
    <message>
        <source>Five points: rainbow from black</source>
        <translation>Fünf Punkte: Regenbogen ab Schwarz</translation>
    </message>
    <message>
        <source>Five points: rainbow from magenta</source>
        <translation>Fünf Punkte: Regenbogen ab Magenta</translation>
    </message>
    <message>
        <source>Five points: greys</source>
        <translation>Fünf Punkte: Graustufen</translation>
    </message>
    <message>
        <source>Five points: blue, red, green</source>
        <translation>Fünf Punkte: Blau, Rot, Grün</translation>
    </message>
    <message>
        <source>Five points: red, white, blue</source>
        <translation>Fünf Punkte: Rot, Weiß, Blau</translation>
    </message>
    <message>
        <source>Five points: cyan, magenta</source>
        <translation>Fünf Punkte: Cyan, Magenta</translation>
    </message>
    <message>
        <source>Five points: black, red, yellow, white</source>
        <translation>Fünf Punkte: Schwarz, Rot, Gelb, Weiß</translation>
    </message>
    <message>
        <source>Five points: black, blue, white</source>
        <translation>Fünf Punkte: Schwarz, Blau, Weiß</translation>
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
        <source>The server has sent %1 bytes without its prompt. Check the address and the prompt.</source>
        <translation>Der Server hat %1 Bytes ohne seinen Prompt gesendet. Prüfen Sie Adresse und Prompt.</translation>
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
    <name>tarnis::Csv</name>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>it has no numbers: it must have one column of counts, or x and counts</source>
        <translation>sie enthält keine Zahlen: eine Spalte mit Ereigniszahlen oder x und Ereigniszahlen sind nötig</translation>
    </message>
    <message>
        <source>field %1: &apos;%2&apos; is not a number: correct it, or begin the line with # if it is a comment</source>
        <translation>Feld %1: „%2“ ist keine Zahl: berichtigen, oder die Zeile mit # beginnen, wenn sie ein Kommentar ist</translation>
    </message>
    <message>
        <source>more than %1 numbers: split the file</source>
        <translation>mehr als %1 Zahlen: die Datei aufteilen</translation>
    </message>
    <message>
        <source>fields: %1, in the lines before: %2; each line needs the same number of fields</source>
        <translation>Felder: %1, in den Zeilen davor: %2; jede Zeile braucht gleich viele Felder</translation>
    </message>
    <message>
        <source>fields in a line: %1, which does not fit the header: restore the file</source>
        <translation>Felder je Zeile: %1, was nicht zum Kopf passt: die Datei wiederherstellen</translation>
    </message>
    <message>
        <source>the axes of the header do not fit the table: restore the file</source>
        <translation>die Achsen im Kopf passen nicht zur Tabelle: die Datei wiederherstellen</translation>
    </message>
    <message>
        <source>the first of two columns is x and must rise: sort the lines by x</source>
        <translation>die erste von zwei Spalten ist x und muss ansteigen: die Zeilen nach x sortieren</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a list of numbers: correct &apos;%2&apos;</source>
        <translation>„%1“ ist keine Liste von Zahlen: „%2“ berichtigen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a time: write it as 2026-03-10T12:00:00Z</source>
        <translation>„%1“ ist keine Zeit: als 2026-03-10T12:00:00Z schreiben</translation>
    </message>
</context>
<context>
    <name>tarnis::CurveNames</name>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>tarnis::EnergyCalibration</name>
    <message>
        <source>The calibration file is damaged: coefficients, covariance or points are missing or no numbers.</source>
        <translation>Die Kalibrierdatei ist beschädigt: Koeffizienten, Kovarianz oder Punkte fehlen oder sind keine Zahlen.</translation>
    </message>
    <message>
        <source>The energy of this calibration does not increase with the channel.</source>
        <translation>Die Energie dieser Kalibrierung steigt nicht mit dem Kanal.</translation>
    </message>
    <message>
        <source>The degree of a calibration is 1 or 2.</source>
        <translation>Der Grad einer Kalibrierung ist 1 oder 2.</translation>
    </message>
    <message>
        <source>Assigned lines: %1. A calibration needs %2, so that one is left as a check.</source>
        <translation>Zugeordnete Linien: %1. Eine Kalibrierung braucht %2, damit eine zur Kontrolle bleibt.</translation>
    </message>
    <message>
        <source>The limits of the axis must be finite and increase.</source>
        <translation>Die Grenzen der Achse müssen endlich sein und steigen.</translation>
    </message>
    <message>
        <source>A line has a position or an energy that is not a finite number.</source>
        <translation>Eine Linie hat eine Position oder eine Energie, die keine endliche Zahl ist.</translation>
    </message>
    <message>
        <source>The line at %1 needs an error of its position or its energy.</source>
        <translation>Die Linie bei %1 braucht einen Fehler ihrer Position oder ihrer Energie.</translation>
    </message>
    <message>
        <source>The energies do not increase with the positions between %1 and %2. Check the assignment of the lines.</source>
        <translation>Die Energien steigen zwischen %1 und %2 nicht mit den Positionen. Prüfen Sie die Zuordnung der Linien.</translation>
    </message>
    <message>
        <source>The lines do not determine a calibration. Use lines that are further apart.</source>
        <translation>Die Linien bestimmen keine Kalibrierung. Verwenden Sie Linien, die weiter auseinander liegen.</translation>
    </message>
    <message>
        <source>The calibration does not increase over the complete axis. Use degree 1, more lines or another assignment.</source>
        <translation>Die Kalibrierung steigt nicht über die ganze Achse. Verwenden Sie Grad 1, mehr Linien oder eine andere Zuordnung.</translation>
    </message>
    <message>
        <source>This is not JSON: %1 at byte %2.</source>
        <translation>Das ist kein JSON: %1 bei Byte %2.</translation>
    </message>
    <message>
        <source>This is not a calibration file of version 1. Create one with &quot;tarnis calibrate&quot;.</source>
        <translation>Das ist keine Kalibrierdatei der Version 1. Erzeugen Sie eine mit „tarnis calibrate“.</translation>
    </message>
</context>
<context>
    <name>tarnis::ErrorBars</name>
    <message>
        <source>Error Bars</source>
        <translation>Fehlerbalken</translation>
    </message>
    <message>
        <source>Exact Intervals for Small Counts</source>
        <translation>Exakte Intervalle für kleine Zählwerte</translation>
    </message>
</context>
<context>
    <name>tarnis::ExportDialog</name>
    <message>
        <source>PNG picture</source>
        <translation>PNG-Bild</translation>
    </message>
    <message>
        <source>PDF page</source>
        <translation>PDF-Seite</translation>
    </message>
    <message>
        <source>SVG drawing</source>
        <translation>SVG-Zeichnung</translation>
    </message>
    <message>
        <source>CSV table</source>
        <translation>CSV-Tabelle</translation>
    </message>
    <message>
        <source>NPY array</source>
        <translation>NPY-Feld</translation>
    </message>
    <message>
        <source>HDF5 (NeXus) file</source>
        <translation>HDF5-Datei (NeXus)</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source> dpi</source>
        <translation> dpi</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>All bins</source>
        <translation>Alle Bins</translation>
    </message>
    <message>
        <source>Visible bins</source>
        <translation>Sichtbare Bins</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>&amp;Format:</source>
        <translation>&amp;Format:</translation>
    </message>
    <message>
        <source>&amp;Width:</source>
        <translation>&amp;Breite:</translation>
    </message>
    <message>
        <source>&amp;Height:</source>
        <translation>&amp;Höhe:</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>&amp;Auflösung:</translation>
    </message>
    <message>
        <source>&amp;Bins:</source>
        <translation>B&amp;ins:</translation>
    </message>
    <message>
        <source>Size:</source>
        <translation>Größe:</translation>
    </message>
    <message>
        <source>F&amp;ile:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>%1 x %2 mm</source>
        <translation>%1 x %2 mm</translation>
    </message>
    <message>
        <source>numbers, not a picture</source>
        <translation>Zahlen, kein Bild</translation>
    </message>
    <message>
        <source>%1 x %2 pixels, %3</source>
        <translation>%1 x %2 Pixel, %3</translation>
    </message>
    <message>
        <source>Cannot save the file: %1.</source>
        <translation>Die Datei kann nicht gespeichert werden: %1.</translation>
    </message>
    <message>
        <source>%1 exists already. Replace it?</source>
        <translation>%1 gibt es schon. Ersetzen?</translation>
    </message>
    <message>
        <source>enter the name of a file</source>
        <translation>einen Dateinamen eingeben</translation>
    </message>
    <message>
        <source>The file to write</source>
        <translation>Die Datei, die geschrieben wird</translation>
    </message>
    <message>
        <source>Choose the folder and the name of the file</source>
        <translation>Ordner und Namen der Datei wählen</translation>
    </message>
    <message>
        <source>Write the file and close</source>
        <translation>Die Datei schreiben und schließen</translation>
    </message>
    <message>
        <source>Close without writing a file</source>
        <translation>Schließen, ohne eine Datei zu schreiben</translation>
    </message>
    <message>
        <source>PNG has pixels; PDF and SVG stay sharp at any size; the others contain the numbers</source>
        <translation>PNG hat Pixel; PDF und SVG bleiben in jeder Größe scharf; die anderen enthalten die Zahlen</translation>
    </message>
    <message>
        <source>This format contains numbers, not a picture</source>
        <translation>Dieses Format enthält Zahlen, kein Bild</translation>
    </message>
    <message>
        <source>Width of the picture in pixels of a screen with 96 dpi</source>
        <translation>Breite des Bilds in Pixeln eines Bildschirms mit 96 dpi</translation>
    </message>
    <message>
        <source>Height of the picture in pixels of a screen with 96 dpi</source>
        <translation>Höhe des Bilds in Pixeln eines Bildschirms mit 96 dpi</translation>
    </message>
    <message>
        <source>Pixels per inch; 300 suits print</source>
        <translation>Pixel je Zoll; 300 eignet sich für den Druck</translation>
    </message>
    <message>
        <source>This format has no pixels: it is sharp at any resolution</source>
        <translation>Dieses Format hat keine Pixel: es ist in jeder Auflösung scharf</translation>
    </message>
    <message>
        <source>A picture shows the visible bins</source>
        <translation>Ein Bild zeigt die sichtbaren Bins</translation>
    </message>
    <message>
        <source>Which bins the file contains</source>
        <translation>Welche Bins die Datei enthält</translation>
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
<context>
    <name>tarnis::FitPanel</name>
    <message>
        <source>Fit</source>
        <translation>Anpassung</translation>
    </message>
    <message>
        <source>Press &quot;Range&quot; and drag over a peak, or press &quot;Peaks&quot; and click on it.</source>
        <translation>„Bereich“ drücken und über einen Peak ziehen, oder „Peaks“ drücken und ihn anklicken.</translation>
    </message>
    <message>
        <source>The last fit was not used: %1
Shown is the result of %2.</source>
        <translation>Die letzte Anpassung wurde nicht verwendet: %1
Gezeigt ist das Ergebnis von %2.</translation>
    </message>
    <message>
        <source>Fitting...</source>
        <translation>Anpassung läuft...</translation>
    </message>
    <message>
        <source>Save Results</source>
        <translation>Ergebnisse speichern</translation>
    </message>
    <message>
        <source>Text separated by tabs (*.tsv *.txt)</source>
        <translation>Text mit Tabulatoren (*.tsv *.txt)</translation>
    </message>
    <message>
        <source>acceptable</source>
        <translation>annehmbar</translation>
    </message>
    <message>
        <source>not acceptable</source>
        <translation>nicht annehmbar</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>constant</source>
        <translation>konstant</translation>
    </message>
    <message>
        <source>line</source>
        <translation>Gerade</translation>
    </message>
    <message>
        <source>parabola</source>
        <translation>Parabel</translation>
    </message>
    <message>
        <source>exponential</source>
        <translation>exponentiell</translation>
    </message>
    <message>
        <source>likelihood of counts</source>
        <translation>Likelihood der Zählungen</translation>
    </message>
    <message>
        <source>chi squared (Pearson)</source>
        <translation>Chi-Quadrat (Pearson)</translation>
    </message>
    <message>
        <source>chi squared (Neyman)</source>
        <translation>Chi-Quadrat (Neyman)</translation>
    </message>
    <message>
        <source>unweighted</source>
        <translation>ungewichtet</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Drag on the plot to choose the range of the fit</source>
        <translation>Im Diagramm ziehen, um den Bereich der Anpassung zu wählen</translation>
    </message>
    <message>
        <source>Peaks</source>
        <translation>Peaks</translation>
    </message>
    <message>
        <source>Click peaks on the plot; a click on a peak removes it</source>
        <translation>Peaks im Diagramm anklicken; ein Klick auf einen Peak entfernt ihn</translation>
    </message>
    <message>
        <source>from</source>
        <translation>von</translation>
    </message>
    <message>
        <source>to</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>Peaks:</source>
        <translation>Peaks:</translation>
    </message>
    <message>
        <source>Background:</source>
        <translation>Untergrund:</translation>
    </message>
    <message>
        <source>automatic</source>
        <translation>automatisch</translation>
    </message>
    <message>
        <source>Own widths</source>
        <translation>Eigene Breiten</translation>
    </message>
    <message>
        <source>Each peak has its own width instead of one for all</source>
        <translation>Jeder Peak hat seine eigene Breite statt einer gemeinsamen</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>A step of the background below each peak</source>
        <translation>Eine Stufe des Untergrunds unter jedem Peak</translation>
    </message>
    <message>
        <source>Guess</source>
        <translation>Schätzen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Follow every</source>
        <translation>Folgen alle</translation>
    </message>
    <message>
        <source>Fit again while data arrive; the last good result is kept</source>
        <translation>Wieder anpassen, solange Daten kommen; das letzte gute Ergebnis bleibt</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Trend</source>
        <translation>Trend</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>Urteil</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Fläche</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>Halbwertsbreite</translation>
    </message>
    <message>
        <source>Statistic</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the shown page with all digits</source>
        <translation>Die gezeigte Seite mit allen Stellen kopieren</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Save the shown page with all digits</source>
        <translation>Die gezeigte Seite mit allen Stellen speichern</translation>
    </message>
    <message>
        <source>residual</source>
        <translation>Residuum</translation>
    </message>
    <message>
        <source>The plot has no data.</source>
        <translation>Das Diagramm hat keine Daten.</translation>
    </message>
    <message>
        <source>Choose a range first: press &quot;Range&quot; and drag over a peak.</source>
        <translation>Zuerst einen Bereich wählen: „Bereich“ drücken und über einen Peak ziehen.</translation>
    </message>
    <message>
        <source>The range contains no bin of the data.</source>
        <translation>Der Bereich enthält keinen Bin der Daten.</translation>
    </message>
    <message>
        <source>A guess, not fitted yet.</source>
        <translation>Eine Schätzung, noch nicht angepasst.</translation>
    </message>
    <message>
        <source>Acceptable.</source>
        <translation>Annehmbar.</translation>
    </message>
    <message>
        <source>Not acceptable.</source>
        <translation>Nicht annehmbar.</translation>
    </message>
    <message>
        <source>%1: %2 for %3 degrees of freedom, %4 bins</source>
        <translation>%1: %2 bei %3 Freiheitsgraden, %4 Bins</translation>
    </message>
    <message>
        <source>, %1 standard deviations from the expectation</source>
        <translation>, %1 Standardabweichungen vom Erwartungswert</translation>
    </message>
    <message>
        <source>Fit</source>
        <comment>button</comment>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Likelihood ratio (Cash)</source>
        <translation>Likelihood-Verhältnis (Cash)</translation>
    </message>
    <message>
        <source>Chi squared (Pearson)</source>
        <translation>Chi-Quadrat (Pearson)</translation>
    </message>
    <message>
        <source>Chi squared (Neyman)</source>
        <translation>Chi-Quadrat (Neyman)</translation>
    </message>
    <message>
        <source>Sum of squares</source>
        <translation>Quadratsumme</translation>
    </message>
    <message>
        <source>The range must end above its start.</source>
        <translation>Das Ende des Bereichs muss über seinem Anfang liegen.</translation>
    </message>
</context>
<context>
    <name>tarnis::FitParameterModel</name>
    <message>
        <source>%1 (at bound)</source>
        <translation>%1 (an der Grenze)</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Fixed</source>
        <translation>Fest</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Tied to</source>
        <translation>Gekoppelt an</translation>
    </message>
    <message>
        <source>Type another parameter, for example sigma1, 0.5 * area1 or centre1 + 10.</source>
        <translation>Einen anderen Parameter eingeben, zum Beispiel sigma1, 0.5 * area1 oder centre1 + 10.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number.</source>
        <translation>„%1“ ist keine Zahl.</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>cts: counts, ch: channels, x: units of the axis</source>
        <translation>Imp.: Ereignisse, Kan: Kanäle, x: Einheiten der Achse</translation>
    </message>
</context>
<context>
    <name>tarnis::Formats</name>
    <message>
        <source>HDF5 files need the library %1, which is not installed: install it or use .csv or .npy</source>
        <translation>HDF5-Dateien brauchen die Bibliothek %1, die nicht installiert ist: sie installieren oder .csv oder .npy verwenden</translation>
    </message>
    <message>
        <source>the name does not end in .csv, .npy, .spe or .h5: rename the file</source>
        <translation>der Name endet nicht auf .csv, .npy, .spe oder .h5: die Datei umbenennen</translation>
    </message>
    <message>
        <source>there are no values to write</source>
        <translation>es gibt keine Werte zu schreiben</translation>
    </message>
    <message>
        <source>a .spe file has one spectrum of counts over channel numbers: choose another format</source>
        <translation>eine .spe-Datei enthält ein Spektrum über Kanalnummern: ein anderes Format wählen</translation>
    </message>
</context>
<context>
    <name>tarnis::Hdf5</name>
    <message>
        <source>&apos;counts&apos; has %1 dimensions: save one or two of them</source>
        <translation>„counts“ hat %1 Dimensionen: eine oder zwei davon speichern</translation>
    </message>
    <message>
        <source>&apos;counts&apos; is empty: save an array with values</source>
        <translation>„counts“ ist leer: ein Feld mit Werten speichern</translation>
    </message>
    <message>
        <source>&apos;counts&apos; has more than %1 values: save a part of it</source>
        <translation>„counts“ hat mehr als %1 Werte: einen Teil davon speichern</translation>
    </message>
    <message>
        <source>&apos;counts&apos; announces more values than the file contains: it is damaged, copy it again</source>
        <translation>„counts“ kündigt mehr Werte an, als die Datei enthält: sie ist beschädigt, erneut kopieren</translation>
    </message>
    <message>
        <source>&apos;%1&apos; does not contain real numbers</source>
        <translation>„%1“ enthält keine reellen Zahlen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be read: the file is damaged, copy it again</source>
        <translation>„%1“ ist nicht lesbar: die Datei ist beschädigt, erneut kopieren</translation>
    </message>
    <message>
        <source>the group has no dataset &apos;%1&apos;: restore the file</source>
        <translation>die Gruppe hat keinen Datensatz „%1“: die Datei wiederherstellen</translation>
    </message>
    <message>
        <source>the file has no dataset of numbers</source>
        <translation>die Datei hat keinen Datensatz mit Zahlen</translation>
    </message>
    <message>
        <source>the axis &apos;%1&apos; does not fit %2 bins: restore the file</source>
        <translation>die Achse „%1“ passt nicht zu %2 Bins: die Datei wiederherstellen</translation>
    </message>
    <message>
        <source>the file has no entry of the class NXentry and no dataset of numbers</source>
        <translation>die Datei hat keinen Eintrag der Klasse NXentry und keinen Datensatz mit Zahlen</translation>
    </message>
    <message>
        <source>the entry &apos;%1&apos; has no group of the class NXdata</source>
        <translation>der Eintrag „%1“ hat keine Gruppe der Klasse NXdata</translation>
    </message>
    <message>
        <source>it is not an HDF5 file, or it is incomplete: copy it again</source>
        <translation>sie ist keine HDF5-Datei oder unvollständig: erneut kopieren</translation>
    </message>
    <message>
        <source>the axes do not fit the values: restore the file</source>
        <translation>die Achsen passen nicht zu den Werten: die Datei wiederherstellen</translation>
    </message>
    <message>
        <source>there are no values to write</source>
        <translation>es gibt keine Werte zu schreiben</translation>
    </message>
    <message>
        <source>the HDF5 library could not build the file: there may not be enough memory</source>
        <translation>die HDF5-Bibliothek konnte die Datei nicht erstellen: vielleicht reicht der Speicher nicht</translation>
    </message>
</context>
<context>
    <name>tarnis::HistogramPoller</name>
    <message>
        <source>The connection to the server was closed.</source>
        <translation>Die Verbindung zum Server wurde geschlossen.</translation>
    </message>
</context>
<context>
    <name>tarnis::HistogramReply</name>
    <message>
        <source>%1 bytes are not a whole number of 64-bit values.</source>
        <translation>%1 Bytes sind keine ganze Zahl von 64-Bit-Werten.</translation>
    </message>
    <message>
        <source>%1 bins are more than the accepted %2.</source>
        <translation>%1 Bins sind mehr als die zulässigen %2.</translation>
    </message>
    <message>
        <source>The axis &quot;(min max bins)&quot; is missing.</source>
        <translation>Die Achse „(min max bins)“ fehlt.</translation>
    </message>
    <message>
        <source>%1 values are less than a row of %2 bins.</source>
        <translation>%1 Werte sind weniger als eine Zeile mit %2 Bins.</translation>
    </message>
    <message>
        <source>%1 values are not %2 rows of %3 bins.</source>
        <translation>%1 Werte ergeben nicht %2 Zeilen mit %3 Bins.</translation>
    </message>
    <message>
        <source>The last position has no value.</source>
        <translation>Zur letzten Position fehlt der Wert.</translation>
    </message>
    <message>
        <source>The position %1 is outside of the axis from %2 to %3.</source>
        <translation>Die Position %1 liegt außerhalb der Achse von %2 bis %3.</translation>
    </message>
    <message>
        <source>The numbers of bins, &quot;exported X x Y y&quot;, are missing.</source>
        <translation>Die Anzahlen der Bins, „exported X x Y y“, fehlen.</translation>
    </message>
    <message>
        <source>The numbers of bins are not positive integers.</source>
        <translation>Die Anzahlen der Bins sind keine positiven ganzen Zahlen.</translation>
    </message>
    <message>
        <source>%1 values are not a map of %2 x %3 bins.</source>
        <translation>%1 Werte ergeben keine Karte mit %2 x %3 Bins.</translation>
    </message>
    <message>
        <source>The axis does not end with a parenthesis.</source>
        <translation>Die Achse endet nicht mit einer Klammer.</translation>
    </message>
    <message>
        <source>The axis must be of the form (min max bins).</source>
        <translation>Die Achse muss die Form (min max bins) haben.</translation>
    </message>
    <message>
        <source>The axis has no bins, or ends before it begins.</source>
        <translation>Die Achse hat keine Bins oder endet vor ihrem Anfang.</translation>
    </message>
    <message>
        <source>%1 values are more than the accepted %2.</source>
        <translation>%1 Werte sind mehr als die zulässigen %2.</translation>
    </message>
    <message>
        <source>%1 rows are more than the accepted %2.</source>
        <translation>%1 Zeilen sind mehr als die zulässigen %2.</translation>
    </message>
    <message>
        <source>The reply is a map, and a 1D histogram was expected.</source>
        <translation>Die Antwort ist eine Karte; erwartet wurde ein 1D-Histogramm.</translation>
    </message>
    <message>
        <source>The reply is a 1D histogram with an axis, and a map was expected.</source>
        <translation>Die Antwort ist ein 1D-Histogramm mit einer Achse; erwartet wurde eine Karte.</translation>
    </message>
</context>
<context>
    <name>tarnis::LevelStrip</name>
    <message>
        <source>Colour levels</source>
        <translation>Farbgrenzen</translation>
    </message>
    <message>
        <source>Histogram of the values of the map. Drag a line to set the limits of the colours, or the space between both. Keys: Left and Right choose a line, Up and Down move it, Home follows the data.</source>
        <translation>Histogramm der Werte der Karte. Ziehen Sie eine Linie, um eine Grenze der Farben zu setzen, oder den Raum zwischen beiden. Tasten: Links und Rechts wählen eine Linie, Auf und Ab bewegen sie, Pos1 folgt den Daten.</translation>
    </message>
</context>
<context>
    <name>tarnis::LineProfile</name>
    <message>
        <source>Bin</source>
        <translation>Bin</translation>
    </message>
    <message>
        <source>Counts</source>
        <translation>Zählwerte</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Bins Along the Line</source>
        <translation>Bins entlang der Linie</translation>
    </message>
    <message>
        <source>mean</source>
        <translation>Mittelwert</translation>
    </message>
    <message>
        <source>maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>%1, width in bins: %2</source>
        <translation>%1, Breite in Bins: %2</translation>
    </message>
    <message>
        <source>Profile Along a Line</source>
        <translation>Profil entlang einer Linie</translation>
    </message>
    <message>
        <source>Width of the Profile</source>
        <translation>Breite des Profils</translation>
    </message>
    <message>
        <source>Sum Across the Band</source>
        <translation>Summe über das Band</translation>
    </message>
    <message>
        <source>Mean Across the Band</source>
        <translation>Mittelwert über das Band</translation>
    </message>
    <message>
        <source>Maximum Across the Band</source>
        <translation>Maximum über das Band</translation>
    </message>
    <message>
        <source>Width in Bins: %1</source>
        <translation>Breite in Bins: %1</translation>
    </message>
</context>
<context>
    <name>tarnis::LiveMap</name>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>The reply is a 1D histogram, and this widget shows maps. Choose the command of a map.</source>
        <translation>Die Antwort ist ein 1D-Histogramm; dieses Fenster zeigt Karten. Wählen Sie den Befehl einer Karte.</translation>
    </message>
</context>
<context>
    <name>tarnis::LivePlot</name>
    <message>
        <source>Channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>Counts</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>The reply is a map, and this widget shows curves. Choose the command of a 1D histogram.</source>
        <translation>Die Antwort ist eine Karte; dieses Fenster zeigt Kurven. Wählen Sie den Befehl eines 1D-Histogramms.</translation>
    </message>
</context>
<context>
    <name>tarnis::LiveWidget</name>
    <message>
        <source>The plot shows the data of %1.</source>
        <translation>Gezeigt werden die Daten von %1.</translation>
    </message>
    <message>
        <source>There are no data yet.</source>
        <translation>Es gibt noch keine Daten.</translation>
    </message>
    <message>
        <source>No histogram is chosen.</source>
        <translation>Es ist kein Histogramm gewählt.</translation>
    </message>
    <message>
        <source>There is no connection to a server.</source>
        <translation>Es besteht keine Verbindung zu einem Server.</translation>
    </message>
    <message>
        <source>Paused.</source>
        <translation>Angehalten.</translation>
    </message>
    <message>
        <source>No new data: %1</source>
        <translation>Keine neuen Daten: %1</translation>
    </message>
    <message>
        <source>No new data: the server is late.</source>
        <translation>Keine neuen Daten: Der Server ist im Verzug.</translation>
    </message>
    <message>
        <source>Waiting for data.</source>
        <translation>Es wird auf Daten gewartet.</translation>
    </message>
    <message>
        <source>Values that are not finite: %1.</source>
        <translation>Werte, die nicht endlich sind: %1.</translation>
    </message>
</context>
<context>
    <name>tarnis::LiveWindow</name>
    <message>
        <source>Stopped at %1. &quot;Update&quot; starts again. %2</source>
        <translation>Angehalten um %1. „Aktualisieren“ startet wieder. %2</translation>
    </message>
    <message>
        <source>The reply is too large for this window: %1 values, at most %2 are accepted.</source>
        <translation>Die Antwort ist zu groß für dieses Fenster: %1 Werte, höchstens %2 werden angenommen.</translation>
    </message>
    <message>
        <source>The window was hidden.</source>
        <translation>Das Fenster war nicht zu sehen.</translation>
    </message>
</context>
<context>
    <name>tarnis::MapRegion</name>
    <message>
        <source>The map has no bins.</source>
        <translation>Die Karte hat keine Bins.</translation>
    </message>
    <message>
        <source>The map needs one content for each bin.</source>
        <translation>Die Karte braucht einen Inhalt für jeden Bin.</translation>
    </message>
    <message>
        <source>The axes of the map need a finite start and a positive bin width.</source>
        <translation>Die Achsen der Karte brauchen einen endlichen Anfang und eine positive Binbreite.</translation>
    </message>
    <message>
        <source>The region contains no bin of the map. Choose an outline on the map.</source>
        <translation>Die Region enthält keinen Bin der Karte. Wählen Sie einen Umriss auf der Karte.</translation>
    </message>
    <message>
        <source>A bin of the region is not a finite number. Choose an outline without it.</source>
        <translation>Ein Bin der Region ist keine endliche Zahl. Wählen Sie einen Umriss ohne ihn.</translation>
    </message>
    <message>
        <source>There is no frame of finite bins around the region: no background and no net content.</source>
        <translation>Um die Region gibt es keinen Rahmen endlicher Bins: kein Untergrund und kein Nettoinhalt.</translation>
    </message>
    <message>
        <source>The frame is clipped: the background is a plane fitted to it.</source>
        <translation>Der Rahmen ist nicht vollständig: Der Untergrund ist eine daran angepasste Ebene.</translation>
    </message>
    <message>
        <source>The contents are not counts: their errors are unknown.</source>
        <translation>Die Inhalte sind keine Zählungen: Ihre Fehler sind unbekannt.</translation>
    </message>
</context>
<context>
    <name>tarnis::MessageLabel</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Show All...</source>
        <translation>Alles zeigen...</translation>
    </message>
</context>
<context>
    <name>tarnis::Npy</name>
    <message>
        <source>byte 0: it does not begin as an NPY file: save it again with numpy.save()</source>
        <translation>Byte 0: sie beginnt nicht wie eine NPY-Datei: erneut mit numpy.save() speichern</translation>
    </message>
    <message>
        <source>byte 6: version %1 of the format is not known: save it as version 1 to 3</source>
        <translation>Byte 6: Version %1 des Formats ist unbekannt: als Version 1 bis 3 speichern</translation>
    </message>
    <message>
        <source>byte %1: the file ends in its header: it is incomplete, copy it again</source>
        <translation>Byte %1: die Datei endet in ihrem Kopf: sie ist unvollständig, erneut kopieren</translation>
    </message>
    <message>
        <source>byte %1: the header is damaged: save the array again with numpy.save()</source>
        <translation>Byte %1: der Kopf ist beschädigt: das Feld erneut mit numpy.save() speichern</translation>
    </message>
    <message>
        <source>the array has %1 dimensions: save one or two of them</source>
        <translation>das Feld hat %1 Dimensionen: eine oder zwei davon speichern</translation>
    </message>
    <message>
        <source>the array is empty: save one with values</source>
        <translation>das Feld ist leer: eines mit Werten speichern</translation>
    </message>
    <message>
        <source>the array has more than %1 values: save a part of it</source>
        <translation>das Feld hat mehr als %1 Werte: einen Teil davon speichern</translation>
    </message>
    <message>
        <source>the values are of the type &apos;%1&apos;: convert them to real numbers, for example float64</source>
        <translation>die Werte sind vom Typ „%1“: in reelle Zahlen umwandeln, zum Beispiel float64</translation>
    </message>
    <message>
        <source>byte %1: the shape needs %2 bytes of values and the file has %3: it is damaged, copy it again</source>
        <translation>Byte %1: die Form braucht %2 Bytes an Werten und die Datei hat %3: sie ist beschädigt, erneut kopieren</translation>
    </message>
</context>
<context>
    <name>tarnis::PanelText</name>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
</context>
<context>
    <name>tarnis::ParameterText</name>
    <message>
        <source>In ties and files: %1</source>
        <translation>In Kopplungen und Dateien: %1</translation>
    </message>
    <message>
        <source>channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Fläche</translation>
    </message>
    <message>
        <source>Counts in the peak, without the background.</source>
        <translation>Ereignisse im Peak, ohne den Untergrund.</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>Position of the peak. With a tail it is neither the top nor the mean.</source>
        <translation>Lage des Peaks. Mit einem Ausläufer ist sie weder das Maximum noch der Mittelwert.</translation>
    </message>
    <message>
        <source>Sigma</source>
        <translation>Sigma</translation>
    </message>
    <message>
        <source>Standard deviation of the Gaussian.</source>
        <translation>Standardabweichung der Gauß-Kurve.</translation>
    </message>
    <message>
        <source>Half width</source>
        <translation>Halbe Breite</translation>
    </message>
    <message>
        <source>Half width at half maximum of the Lorentzian.</source>
        <translation>Halbe Breite der Lorentz-Kurve in halber Höhe.</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>Halbwertsbreite</translation>
    </message>
    <message>
        <source>Full width at half maximum.</source>
        <translation>Volle Breite in halber Höhe.</translation>
    </message>
    <message>
        <source>Lorentzian share</source>
        <translation>Lorentz-Anteil</translation>
    </message>
    <message>
        <source>Share of the Lorentzian in the area, from 0 to 1.</source>
        <translation>Anteil der Lorentz-Kurve an der Fläche, von 0 bis 1.</translation>
    </message>
    <message>
        <source>Tail length</source>
        <translation>Ausläufer</translation>
    </message>
    <message>
        <source>Distance in which the exponential tail falls by a factor of e.</source>
        <translation>Strecke, auf der der exponentielle Ausläufer um den Faktor e fällt.</translation>
    </message>
    <message>
        <source>Rise rate</source>
        <translation>Anstiegsrate</translation>
    </message>
    <message>
        <source>Rate of the exponential on the left.</source>
        <translation>Rate der Exponentialfunktion links.</translation>
    </message>
    <message>
        <source>Fall rate</source>
        <translation>Abfallrate</translation>
    </message>
    <message>
        <source>Rate of the exponential on the right.</source>
        <translation>Rate der Exponentialfunktion rechts.</translation>
    </message>
    <message>
        <source>Tail share</source>
        <translation>Anteil des Ausläufers</translation>
    </message>
    <message>
        <source>Share of the tail in the area, from 0 to 1.</source>
        <translation>Anteil des Ausläufers an der Fläche, von 0 bis 1.</translation>
    </message>
    <message>
        <source>Width factor</source>
        <translation>Breitenfaktor</translation>
    </message>
    <message>
        <source>Fitted width divided by that of the width calibration.</source>
        <translation>Angepasste Breite, geteilt durch die der Breitenkalibrierung.</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Height of the step below a peak, divided by the area of the peak.</source>
        <translation>Höhe der Stufe unter einem Peak, geteilt durch die Fläche des Peaks.</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Untergrund</translation>
    </message>
    <message>
        <source>Background in the middle of the range.</source>
        <translation>Untergrund in der Mitte des Bereichs.</translation>
    </message>
    <message>
        <source>Background slope</source>
        <translation>Untergrundsteigung</translation>
    </message>
    <message>
        <source>Slope of the background in the middle of the range.</source>
        <translation>Steigung des Untergrunds in der Mitte des Bereichs.</translation>
    </message>
    <message>
        <source>Background bend</source>
        <translation>Untergrundkrümmung</translation>
    </message>
    <message>
        <source>Factor of the square of the distance from the middle of the range.</source>
        <translation>Faktor des Quadrats des Abstands von der Mitte des Bereichs.</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Height of the peak above the background.</source>
        <translation>Höhe des Peaks über dem Untergrund.</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>FWHM divided by the centre.</source>
        <translation>Halbwertsbreite, geteilt durch die Lage.</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Position of the maximum.</source>
        <translation>Lage des Maximums.</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittelwert</translation>
    </message>
    <message>
        <source>Mean position of the counts of the peak.</source>
        <translation>Mittlere Lage der Ereignisse des Peaks.</translation>
    </message>
    <message>
        <source>Separation</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>Distance from the previous peak.</source>
        <translation>Abstand vom vorigen Peak.</translation>
    </message>
    <message>
        <source>Total area</source>
        <translation>Gesamtfläche</translation>
    </message>
    <message>
        <source>Sum of the areas of all peaks.</source>
        <translation>Summe der Flächen aller Peaks.</translation>
    </message>
    <message>
        <source>Area ratio</source>
        <translation>Flächenverhältnis</translation>
    </message>
    <message>
        <source>Area divided by that of the first peak.</source>
        <translation>Fläche, geteilt durch die des ersten Peaks.</translation>
    </message>
    <message>
        <source>Background, left</source>
        <translation>Untergrund links</translation>
    </message>
    <message>
        <source>Background at the first bin of the range.</source>
        <translation>Untergrund im ersten Bin des Bereichs.</translation>
    </message>
    <message>
        <source>Background, right</source>
        <translation>Untergrund rechts</translation>
    </message>
    <message>
        <source>Background at the last bin of the range.</source>
        <translation>Untergrund im letzten Bin des Bereichs.</translation>
    </message>
    <message>
        <source>Energy</source>
        <translation>Energie</translation>
    </message>
    <message>
        <source>Centre by the calibration of the axis.</source>
        <translation>Lage nach der Kalibrierung der Achse.</translation>
    </message>
    <message>
        <source>Background rate</source>
        <translation>Untergrundrate</translation>
    </message>
    <message>
        <source>Rate at which the background falls to the right; negative: it rises.</source>
        <translation>Rate, mit der der Untergrund nach rechts fällt; negativ: er steigt.</translation>
    </message>
    <message>
        <source>cts</source>
        <comment>short for counts</comment>
        <translation>Imp.</translation>
    </message>
    <message>
        <source>ch</source>
        <comment>short for channels</comment>
        <translation>Kan</translation>
    </message>
</context>
<context>
    <name>tarnis::PeakPanel</name>
    <message>
        <source>Save Peaks</source>
        <translation>Peaks speichern</translation>
    </message>
    <message>
        <source>Text separated by tabs (*.tsv *.txt)</source>
        <translation>Text mit Tabulatoren (*.tsv *.txt)</translation>
    </message>
    <message>
        <source>Peaks</source>
        <translation>Peaks</translation>
    </message>
    <message>
        <source>Find and Fit</source>
        <translation>Suchen und anpassen</translation>
    </message>
    <message>
        <source>Significance:</source>
        <translation>Signifikanz:</translation>
    </message>
    <message>
        <source>Standard deviations of the second difference that a peak needs; below 4 noise is found too</source>
        <translation>Standardabweichungen der zweiten Differenz, die ein Peak braucht; unter 4 wird auch Rauschen gefunden</translation>
    </message>
    <message>
        <source>Visible range only</source>
        <translation>Nur sichtbarer Bereich</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the table with all digits</source>
        <translation>Die Tabelle mit allen Stellen kopieren</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>The plot has no data.</source>
        <translation>Das Diagramm hat keine Daten.</translation>
    </message>
    <message>
        <source>The plot has been closed.</source>
        <translation>Das Diagramm wurde geschlossen.</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft...</translation>
    </message>
    <message>
        <source>Peaks: %1. In acceptable fits: %2.</source>
        <translation>Peaks: %1. In annehmbaren Anpassungen: %2.</translation>
    </message>
    <message>
        <source>The curve that is searched</source>
        <translation>Die Kurve, die durchsucht wird</translation>
    </message>
    <message>
        <source>The visible range contains no bin of the data.</source>
        <translation>Der sichtbare Bereich enthält keinen Bin der Daten.</translation>
    </message>
    <message>
        <source>Press &quot;Find and Fit&quot; to list the peaks of the curve.</source>
        <translation>„Suchen und anpassen“ drücken, um die Peaks der Kurve aufzulisten.</translation>
    </message>
</context>
<context>
    <name>tarnis::PeakShape</name>
    <message>
        <source>Gaussian</source>
        <translation>Gauß</translation>
    </message>
    <message>
        <source>Lorentzian</source>
        <translation>Lorentz</translation>
    </message>
    <message>
        <source>Pseudo-Voigt</source>
        <translation>Pseudo-Voigt</translation>
    </message>
    <message>
        <source>Voigt</source>
        <translation>Voigt</translation>
    </message>
    <message>
        <source>Gaussian with left tail</source>
        <translation>Gauß mit linkem Ausläufer</translation>
    </message>
    <message>
        <source>Gaussian with right tail</source>
        <translation>Gauß mit rechtem Ausläufer</translation>
    </message>
    <message>
        <source>Back-to-back exponentials</source>
        <translation>Zweiseitige Exponentialfunktion</translation>
    </message>
    <message>
        <source>Gaussian plus left tail</source>
        <translation>Gauß und linker Ausläufer</translation>
    </message>
</context>
<context>
    <name>tarnis::PeakTable</name>
    <message>
        <source>The range contains no bins, or contents that are not finite numbers. Choose another one.</source>
        <translation>Der Bereich enthält keine Bins oder Inhalte, die keine endlichen Zahlen sind. Wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>The search for peaks needs counts. %1 Fit the range of a peak with the statistic unweighted.</source>
        <translation>Die Suche nach Peaks braucht Ereigniszahlen. %1 Passen Sie den Bereich eines Peaks mit der ungewichteten Statistik an.</translation>
    </message>
    <message>
        <source>No peak is strong enough to measure its width; the search finds peaks up to %1 bins wide. Fit the range of a peak instead.</source>
        <translation>Kein Peak ist stark genug, um seine Breite zu messen; die Suche findet Peaks bis zu einer Breite von %1 Bins. Passen Sie stattdessen den Bereich eines Peaks an.</translation>
    </message>
</context>
<context>
    <name>tarnis::PeakTableModel</name>
    <message>
        <source>%1, extrapolated</source>
        <translation>%1, extrapoliert</translation>
    </message>
    <message>
        <source>by the fit</source>
        <translation>durch die Anpassung</translation>
    </message>
    <message>
        <source>acceptable</source>
        <translation>annehmbar</translation>
    </message>
    <message>
        <source>not acceptable</source>
        <translation>nicht annehmbar</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Energy</source>
        <translation>Energie</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Fläche</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>Halbwertsbreite</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Untergrund</translation>
    </message>
    <message>
        <source>Significance</source>
        <translation>Signifikanz</translation>
    </message>
    <message>
        <source>Verdict</source>
        <translation>Urteil</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotCalibration</name>
    <message>
        <source>Energy [%1]</source>
        <translation>Energie [%1]</translation>
    </message>
    <message>
        <source>There is no calibration to apply.</source>
        <translation>Es gibt keine Kalibrierung anzuwenden.</translation>
    </message>
    <message>
        <source>The axis of this plot has a second scale already.</source>
        <translation>Die Achse dieses Diagramms hat schon eine zweite Skala.</translation>
    </message>
    <message>
        <source>The energy does not increase over the complete axis of the plot.</source>
        <translation>Die Energie steigt nicht über die ganze Achse des Diagramms.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotCrosshair</name>
    <message>
        <source>no data</source>
        <translation>keine Daten</translation>
    </message>
    <message>
        <source>%1 [%2, %3) bin %4</source>
        <translation>%1 [%2, %3) Bin %4</translation>
    </message>
    <message>
        <source>Values Under the Pointer</source>
        <translation>Werte unter dem Zeiger</translation>
    </message>
    <message>
        <source>Pin the Cross</source>
        <translation>Kreuz festhalten</translation>
    </message>
    <message>
        <source>Copy the Values</source>
        <translation>Werte kopieren</translation>
    </message>
    <message>
        <source>Pin the cross first.</source>
        <translation>Halten Sie zuerst das Kreuz fest.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotExporter</name>
    <message>
        <source>the picture is too large: choose a smaller size or resolution</source>
        <translation>das Bild ist zu groß: eine kleinere Größe oder Auflösung wählen</translation>
    </message>
    <message>
        <source>the name does not end in .png, .pdf or .svg: rename the file</source>
        <translation>der Name endet nicht auf .png, .pdf oder .svg: die Datei umbenennen</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotKeyboard</name>
    <message>
        <source>The menu key opens the tools, F6 goes to the boxes beside the plot.</source>
        <translation>Die Menütaste öffnet die Werkzeuge, F6 führt zu den Kästen neben dem Diagramm.</translation>
    </message>
    <message>
        <source>Colour scale</source>
        <translation>Farbskala</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>%1 from %2 to %3, logarithmic</source>
        <translation>%1 von %2 bis %3, logarithmisch</translation>
    </message>
    <message>
        <source>%1 from %2 to %3</source>
        <translation>%1 von %2 bis %3</translation>
    </message>
    <message>
        <source>Plot</source>
        <translation>Diagramm</translation>
    </message>
    <message>
        <source>Plot: %1</source>
        <translation>Diagramm: %1</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Map of %1 by %2 bins</source>
        <translation>Karte mit %1 mal %2 Bins</translation>
    </message>
    <message>
        <source>%1 of %2 curves with %3 bins</source>
        <translation>%1 von %2 Kurven mit %3 Bins</translation>
    </message>
    <message>
        <source>Curve, number of bins: %1</source>
        <translation>Kurve, Anzahl der Bins: %1</translation>
    </message>
    <message>
        <source>&amp;Left End of the Axis...</source>
        <translation>&amp;Linkes Ende der Achse...</translation>
    </message>
    <message>
        <source>Left end of the axis</source>
        <translation>Linkes Ende der Achse</translation>
    </message>
    <message>
        <source>&amp;Right End of the Axis...</source>
        <translation>&amp;Rechtes Ende der Achse...</translation>
    </message>
    <message>
        <source>Right end of the axis</source>
        <translation>Rechtes Ende der Achse</translation>
    </message>
    <message>
        <source>&amp;Bottom End of the Axis...</source>
        <translation>&amp;Unteres Ende der Achse...</translation>
    </message>
    <message>
        <source>Bottom end of the axis</source>
        <translation>Unteres Ende der Achse</translation>
    </message>
    <message>
        <source>&amp;Top End of the Axis...</source>
        <translation>&amp;Oberes Ende der Achse...</translation>
    </message>
    <message>
        <source>Top end of the axis</source>
        <translation>Oberes Ende der Achse</translation>
    </message>
    <message>
        <source>To the Bo&amp;x Beside</source>
        <translation>Zum Ka&amp;sten daneben</translation>
    </message>
    <message>
        <source>Switch the tool of the mouse off first</source>
        <translation>Schalten Sie zuerst das Werkzeug der Maus aus</translation>
    </message>
    <message>
        <source>&amp;Colours...</source>
        <translation>&amp;Farben...</translation>
    </message>
    <message>
        <source>&amp;Upper Limit of the Colours...</source>
        <translation>Ob&amp;ere Grenze der Farben...</translation>
    </message>
    <message>
        <source>Lo&amp;wer Limit of the Colours...</source>
        <translation>U&amp;ntere Grenze der Farben...</translation>
    </message>
    <message>
        <source>Add a Re&amp;gion in the Middle</source>
        <translation>Re&amp;gion in der Mitte hinzufügen</translation>
    </message>
    <message>
        <source>Upper limit of the colours</source>
        <translation>Obere Grenze der Farben</translation>
    </message>
    <message>
        <source>Lower limit of the colours</source>
        <translation>Untere Grenze der Farben</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotLegend</name>
    <message>
        <source>Legend</source>
        <translation>Legende</translation>
    </message>
    <message>
        <source>The plot has no curves.</source>
        <translation>Das Diagramm hat keine Kurven.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotMarkers</name>
    <message>
        <source>Name of the marker</source>
        <translation>Name der Marke</translation>
    </message>
    <message>
        <source>Move Markers</source>
        <translation>Marken bewegen</translation>
    </message>
    <message>
        <source>Set a Marker</source>
        <translation>Marke setzen</translation>
    </message>
    <message>
        <source>Remove the Selected Marker</source>
        <translation>Gewählte Marke entfernen</translation>
    </message>
    <message>
        <source>Copy the Table of Markers</source>
        <translation>Tabelle der Marken kopieren</translation>
    </message>
    <message>
        <source>No marker is selected. Click one first.</source>
        <translation>Keine Marke ist ausgewählt. Klicken Sie zuerst auf eine.</translation>
    </message>
    <message>
        <source>There are no markers.</source>
        <translation>Es gibt keine Marken.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotNavigator</name>
    <message>
        <source>There is no earlier view.</source>
        <translation>Es gibt keine frühere Ansicht.</translation>
    </message>
    <message>
        <source>There is no later view.</source>
        <translation>Es gibt keine spätere Ansicht.</translation>
    </message>
    <message>
        <source>X held</source>
        <translation>X gehalten</translation>
    </message>
    <message>
        <source>Y held</source>
        <translation>Y gehalten</translation>
    </message>
    <message>
        <source>Previous View</source>
        <translation>Vorige Ansicht</translation>
    </message>
    <message>
        <source>Next View</source>
        <translation>Nächste Ansicht</translation>
    </message>
    <message>
        <source>Show All</source>
        <translation>Alles zeigen</translation>
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
        <source>Logarithmic Scale</source>
        <translation>Logarithmische Skala</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Gitter</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotRegion</name>
    <message>
        <source>The file of regions is damaged at byte %1: %2</source>
        <translation>Die Datei der Regionen ist bei Byte %1 beschädigt: %2</translation>
    </message>
    <message>
        <source>The file contains no list &quot;regions&quot;.</source>
        <translation>Die Datei enthält keine Liste „regions“.</translation>
    </message>
    <message>
        <source>The file contains more than %1 regions.</source>
        <translation>Die Datei enthält mehr als %1 Regionen.</translation>
    </message>
    <message>
        <source>Region %1 of the file has no known kind or no valid points.</source>
        <translation>Region %1 der Datei hat keine bekannte Art oder keine gültigen Punkte.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotRegions</name>
    <message>
        <source>Region %1</source>
        <translation>Region %1</translation>
    </message>
    <message>
        <source>Draw a Range of X</source>
        <translation>X-Bereich zeichnen</translation>
    </message>
    <message>
        <source>Draw a Range of Y</source>
        <translation>Y-Bereich zeichnen</translation>
    </message>
    <message>
        <source>Draw a Rectangle</source>
        <translation>Rechteck zeichnen</translation>
    </message>
    <message>
        <source>Draw an Ellipse</source>
        <translation>Ellipse zeichnen</translation>
    </message>
    <message>
        <source>Draw a Polygon</source>
        <translation>Polygon zeichnen</translation>
    </message>
    <message>
        <source>Remove the Region</source>
        <translation>Region entfernen</translation>
    </message>
    <message>
        <source>No region is selected. Click one first.</source>
        <translation>Keine Region ist ausgewählt. Klicken Sie zuerst auf eine.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotRuler</name>
    <message>
        <source>Ruler</source>
        <translation>Lineal</translation>
    </message>
    <message>
        <source>Copy the Reading of the Ruler</source>
        <translation>Ablesung des Lineals kopieren</translation>
    </message>
    <message>
        <source>There is no ruler. Switch it on and drag over the plot.</source>
        <translation>Es gibt kein Lineal. Schalten Sie es ein und ziehen Sie über das Diagramm.</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotStyle</name>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
    </message>
    <message>
        <source>High Contrast</source>
        <translation>Hoher Kontrast</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Colours and Curves</source>
        <translation>Farben und Kurven</translation>
    </message>
    <message>
        <source>Curves as in the Menu</source>
        <translation>Kurven wie im Menü</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>Linien</translation>
    </message>
    <message>
        <source>Steps</source>
        <translation>Stufen</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Säulen</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Punkte</translation>
    </message>
    <message>
        <source>Powers of Ten</source>
        <translation>Zehnerpotenzen</translation>
    </message>
    <message>
        <source>Square Bins for Equal Units</source>
        <translation>Quadratische Bins bei gleichen Einheiten</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotToolBar</name>
    <message>
        <source>Zoom to a Rectangle</source>
        <translation>Auf ein Rechteck vergrößern</translation>
    </message>
    <message>
        <source>Move with the Mouse</source>
        <translation>Mit der Maus verschieben</translation>
    </message>
    <message>
        <source>Tools of the Plot</source>
        <translation>Werkzeuge des Diagramms</translation>
    </message>
    <message>
        <source>&amp;Plot</source>
        <translation>&amp;Diagramm</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Weitere Werkzeuge</translation>
    </message>
</context>
<context>
    <name>tarnis::PlotView</name>
    <message>
        <source>%1; delete or rename the file to store the view again</source>
        <translation>%1; löschen Sie die Datei oder benennen Sie sie um, damit die Ansicht wieder gespeichert wird</translation>
    </message>
    <message>
        <source>The view was not stored: the folder %1 cannot be created.</source>
        <translation>Die Ansicht wurde nicht gespeichert: Der Ordner %1 kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>The view was not stored in %1: %2.</source>
        <translation>Die Ansicht wurde nicht in %1 gespeichert: %2.</translation>
    </message>
    <message>
        <source>%1 was not deleted: %2.</source>
        <translation>%1 wurde nicht gelöscht: %2.</translation>
    </message>
    <message>
        <source>it is not a stored view of a plot</source>
        <translation>sie ist keine gespeicherte Ansicht eines Diagramms</translation>
    </message>
    <message>
        <source>it has no version</source>
        <translation>sie hat keine Version</translation>
    </message>
    <message>
        <source>a later version of this program wrote it</source>
        <translation>eine spätere Version dieses Programms hat sie geschrieben</translation>
    </message>
    <message>
        <source>it is too large for a stored view</source>
        <translation>sie ist zu groß für eine gespeicherte Ansicht</translation>
    </message>
    <message>
        <source>it is damaged at byte %1</source>
        <translation>sie ist bei Byte %1 beschädigt</translation>
    </message>
    <message>
        <source>The view in %1 was not changed: %2.</source>
        <translation>Die Ansicht in %1 blieb unverändert: %2.</translation>
    </message>
    <message>
        <source>The view in %1 was not restored: %2.</source>
        <translation>Die Ansicht in %1 wurde nicht wiederhergestellt: %2.</translation>
    </message>
</context>
<context>
    <name>tarnis::ReferenceCurves</name>
    <message>
        <source>The data are incomplete. Choose another file or run.</source>
        <translation>Die Daten sind unvollständig. Wählen Sie eine andere Datei oder Messung.</translation>
    </message>
    <message>
        <source>These are the data of a map. Choose a spectrum or curves.</source>
        <translation>Dies sind die Daten einer Karte. Wählen Sie ein Spektrum oder Kurven.</translation>
    </message>
    <message>
        <source>There is no reference. Freeze the curves or open a file.</source>
        <translation>Es gibt keine Referenz. Frieren Sie die Kurven ein oder öffnen Sie eine Datei.</translation>
    </message>
    <message>
        <source>The plot shows no curve.</source>
        <translation>Das Diagramm zeigt keine Kurve.</translation>
    </message>
    <message>
        <source>The reference has %1 bins, the plot has %2.</source>
        <translation>Die Referenz hat %1 Bins, das Diagramm %2.</translation>
    </message>
    <message>
        <source>No curve of the reference has the name of a visible one.</source>
        <translation>Keine Kurve der Referenz heißt wie eine sichtbare.</translation>
    </message>
    <message>
        <source>data / %1</source>
        <translation>Daten / %1</translation>
    </message>
    <message>
        <source>(data − %1) / σ</source>
        <translation>(Daten − %1) / σ</translation>
    </message>
    <message>
        <source>data − %1</source>
        <translation>Daten − %1</translation>
    </message>
    <message>
        <source>, errors of the counts since</source>
        <translation>, Fehler der Zählwerte seither</translation>
    </message>
    <message>
        <source>, part of the data</source>
        <translation>, Teil der Daten</translation>
    </message>
    <message>
        <source>, not scaled: the live time is unknown</source>
        <translation>, nicht skaliert: Die Lebendzeit ist unbekannt</translation>
    </message>
    <message>
        <source>Freeze the Curves as a Reference</source>
        <translation>Kurven als Referenz einfrieren</translation>
    </message>
    <message>
        <source>Open a Reference...</source>
        <translation>Referenz öffnen...</translation>
    </message>
    <message>
        <source>Compare with the Reference</source>
        <translation>Mit der Referenz vergleichen</translation>
    </message>
    <message>
        <source>Curves Only</source>
        <translation>Nur Kurven</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Differenz</translation>
    </message>
    <message>
        <source>Ratio</source>
        <translation>Verhältnis</translation>
    </message>
    <message>
        <source>Difference in Standard Deviations</source>
        <translation>Differenz in Standardabweichungen</translation>
    </message>
    <message>
        <source>As Measured</source>
        <translation>Wie gemessen</translation>
    </message>
    <message>
        <source>Scaled to the Total Counts</source>
        <translation>Auf die Gesamtzahl skaliert</translation>
    </message>
    <message>
        <source>Scaled to the Live Time</source>
        <translation>Auf die Lebendzeit skaliert</translation>
    </message>
    <message>
        <source>The live time of the data or of the reference is unknown.</source>
        <translation>Die Lebendzeit der Daten oder der Referenz ist unbekannt.</translation>
    </message>
    <message>
        <source>Remove the Reference</source>
        <translation>Referenz entfernen</translation>
    </message>
    <message>
        <source>Remove All References</source>
        <translation>Alle Referenzen entfernen</translation>
    </message>
    <message>
        <source>Open a Reference</source>
        <translation>Referenz öffnen</translation>
    </message>
    <message>
        <source>Spectra (*.csv *.txt *.tsv *.dat *.npy *.spe *.h5 *.hdf5 *.nxs);;All Files (*)</source>
        <translation>Spektren (*.csv *.txt *.tsv *.dat *.npy *.spe *.h5 *.hdf5 *.nxs);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>%1 is not a reference.

%2</source>
        <translation>%1 ist keine Referenz.

%2</translation>
    </message>
    <message>
        <source>Scaled to the Counts in the Visible Range</source>
        <translation>Auf die Zahl im sichtbaren Bereich skaliert</translation>
    </message>
    <message>
        <source>Takes the range of X that is visible now, and keeps it in later views.</source>
        <translation>Nimmt den jetzt sichtbaren Bereich von X und behält ihn in späteren Ansichten.</translation>
    </message>
    <message>
        <source>Scaled to the counts from %1 to %2. Choose it again to take the range that is visible now.</source>
        <translation>Auf die Zahl von %1 bis %2 skaliert. Erneut wählen, um den jetzt sichtbaren Bereich zu nehmen.</translation>
    </message>
    <message>
        <source>, not scaled: there are no counts</source>
        <translation>, nicht skaliert: Es gibt keine Ereignisse</translation>
    </message>
</context>
<context>
    <name>tarnis::RegionStatistics</name>
    <message>
        <source>Bin %1 is not a finite number. Choose a region without it.</source>
        <translation>Bin %1 ist keine endliche Zahl. Wählen Sie eine Region ohne ihn.</translation>
    </message>
    <message>
        <source>The region covers no part of a bin.</source>
        <translation>Die Region bedeckt keinen Teil eines Bins.</translation>
    </message>
    <message>
        <source>There are no bins next to the region: no background and no net area.</source>
        <translation>Neben der Region gibt es keine Bins: kein Untergrund und keine Nettofläche.</translation>
    </message>
    <message>
        <source>A bin next to the region is not a finite number: no background and no net area.</source>
        <translation>Ein Bin neben der Region ist keine endliche Zahl: kein Untergrund und keine Nettofläche.</translation>
    </message>
    <message>
        <source>One side is missing at the end of the axis: the background is flat.</source>
        <translation>Am Ende der Achse fehlt eine Seite: Der Untergrund ist flach.</translation>
    </message>
    <message>
        <source>The region contains no bin of the axis. Choose limits on the axis.</source>
        <translation>Die Region enthält keinen Bin der Achse. Wählen Sie Grenzen auf der Achse.</translation>
    </message>
    <message>
        <source>The contents are not counts and have no variances: their errors are unknown.</source>
        <translation>Die Inhalte sind keine Zählungen und haben keine Varianzen: Ihre Fehler sind unbekannt.</translation>
    </message>
</context>
<context>
    <name>tarnis::RegionTable</name>
    <message>
        <source>Save Regions</source>
        <translation>Regionen speichern</translation>
    </message>
    <message>
        <source>Regions (*.json)</source>
        <translation>Regionen (*.json)</translation>
    </message>
    <message>
        <source>Load Regions</source>
        <translation>Regionen laden</translation>
    </message>
    <message>
        <source>Regions</source>
        <translation>Regionen</translation>
    </message>
    <message>
        <source>Frame:</source>
        <translation>Rahmen:</translation>
    </message>
    <message>
        <source>Side bins:</source>
        <translation>Seitenbins:</translation>
    </message>
    <message>
        <source>Width of the frame around a region that carries its background</source>
        <translation>Breite des Rahmens um eine Region, der ihren Untergrund liefert</translation>
    </message>
    <message>
        <source>Bins on either side of a region that carry its background; 0: no net areas</source>
        <translation>Bins zu beiden Seiten einer Region, die ihren Untergrund liefern; 0: keine Nettoflächen</translation>
    </message>
    <message>
        <source>Since here</source>
        <translation>Ab hier</translation>
    </message>
    <message>
        <source>Shows further counts in separate columns</source>
        <translation>Zeigt in eigenen Spalten, was ab jetzt dazukommt</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the table with all digits</source>
        <translation>Die Tabelle mit allen Stellen kopieren</translation>
    </message>
    <message>
        <source>Save Regions...</source>
        <translation>Regionen speichern...</translation>
    </message>
    <message>
        <source>Load Regions...</source>
        <translation>Regionen laden...</translation>
    </message>
    <message>
        <source>The plot has been closed.</source>
        <translation>Das Diagramm wurde geschlossen.</translation>
    </message>
    <message>
        <source>%1 regions are for maps and were ignored.</source>
        <translation>%1 Regionen sind für Karten und wurden weggelassen.</translation>
    </message>
    <message>
        <source>Press a button for a region and drag on the plot.</source>
        <translation>Einen Knopf für eine Region drücken und im Diagramm ziehen.</translation>
    </message>
</context>
<context>
    <name>tarnis::RegionTableModel</name>
    <message>
        <source>Selected range</source>
        <translation>Gewählter Bereich</translation>
    </message>
    <message>
        <source>ROI %1</source>
        <translation>ROI %1</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
    <message>
        <source>From Y</source>
        <translation>Von Y</translation>
    </message>
    <message>
        <source>To Y</source>
        <translation>Bis Y</translation>
    </message>
    <message>
        <source>Bins</source>
        <translation>Bins</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>Net</source>
        <translation>Netto</translation>
    </message>
    <message>
        <source>Centroid</source>
        <translation>Schwerpunkt</translation>
    </message>
    <message>
        <source>Centroid Y</source>
        <translation>Schwerpunkt Y</translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation>Halbwertsbreite</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Maximum at</source>
        <translation>Maximum bei</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Anteil</translation>
    </message>
    <message>
        <source>Sum since %1</source>
        <translation>Summe seit %1</translation>
    </message>
    <message>
        <source>Net since %1</source>
        <translation>Netto seit %1</translation>
    </message>
    <message>
        <source>Energy [%1]</source>
        <translation>Energie [%1]</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number.</source>
        <translation>„%1“ ist keine Zahl.</translation>
    </message>
</context>
<context>
    <name>tarnis::Saving</name>
    <message>
        <source>the page cannot be made in the folder for temporary files &apos;%1&apos;: free some space there</source>
        <translation>die Seite kann im Ordner für temporäre Dateien &apos;%1&apos; nicht erzeugt werden: dort Platz schaffen</translation>
    </message>
    <message>
        <source>the extension of the file name is not a picture format: use .png or .jpg</source>
        <translation>die Endung des Dateinamens ist kein Bildformat: .png oder .jpg verwenden</translation>
    </message>
    <message>
        <source>the picture is empty or too large: change the size of the window</source>
        <translation>das Bild ist leer oder zu groß: die Größe des Fensters ändern</translation>
    </message>
    <message>
        <source>the printer does not accept the page: check that it is ready</source>
        <translation>der Drucker nimmt die Seite nicht an: prüfen, ob er bereit ist</translation>
    </message>
</context>
<context>
    <name>tarnis::Server</name>
    <message>
        <source>The server is started again.</source>
        <translation>Der Server wird neu gestartet.</translation>
    </message>
    <message>
        <source>Another step was begun.</source>
        <translation>Ein anderer Schritt wurde begonnen.</translation>
    </message>
    <message>
        <source>The server is shut down.</source>
        <translation>Der Server wird heruntergefahren.</translation>
    </message>
    <message>
        <source>The connection attempt was cancelled.</source>
        <translation>Der Verbindungsversuch wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server was not reached within %1 s.</source>
        <translation>Der Server wurde innerhalb von %1 s nicht erreicht.</translation>
    </message>
    <message>
        <source>The server object was destroyed.</source>
        <translation>Das Server-Objekt wurde gelöscht.</translation>
    </message>
</context>
<context>
    <name>tarnis::ServerProcess</name>
    <message>
        <source>The server announced a port that is not valid: &quot;%1&quot;.</source>
        <translation>Der Server hat einen ungültigen Port angegeben: „%1“.</translation>
    </message>
    <message>
        <source>The server &quot;%1&quot; could not be started: %2.</source>
        <translation>Der Server „%1“ konnte nicht gestartet werden: %2.</translation>
    </message>
    <message>
        <source>The server was stopped.</source>
        <translation>Der Server wurde beendet.</translation>
    </message>
    <message>
        <source>The server has crashed.</source>
        <translation>Der Server ist abgestürzt.</translation>
    </message>
    <message>
        <source>The server has exited with code %1.</source>
        <translation>Der Server hat sich mit dem Code %1 beendet.</translation>
    </message>
    <message>
        <source>The server did not announce its port within %1 s.</source>
        <translation>Der Server hat seinen Port nicht innerhalb von %1 s angegeben.</translation>
    </message>
    <message>
        <source>no program is chosen</source>
        <translation>es ist kein Programm ausgewählt</translation>
    </message>
    <message>
        <source>no folder of the search path contains it</source>
        <translation>kein Ordner des Suchpfads enthält es</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>diese Datei gibt es nicht</translation>
    </message>
    <message>
        <source>it is not an executable file</source>
        <translation>es ist keine ausführbare Datei</translation>
    </message>
</context>
<context>
    <name>tarnis::SettingsModel</name>
    <message>
        <source>&quot;%1&quot; is outside of Latin-1 and cannot be sent.</source>
        <translation>„%1“ liegt außerhalb von Latin-1 und kann nicht gesendet werden.</translation>
    </message>
    <message>
        <source>The connection to the server was closed.</source>
        <translation>Die Verbindung zum Server wurde geschlossen.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value here</source>
        <translation>Wert hier</translation>
    </message>
    <message>
        <source>On the server</source>
        <translation>Auf dem Server</translation>
    </message>
    <message>
        <source>The name of a setting must be one word.</source>
        <translation>Der Name einer Einstellung muss ein einzelnes Wort sein.</translation>
    </message>
    <message>
        <source>A setting cannot contain a colon, which separates its name from its value.</source>
        <translation>Eine Einstellung kann keinen Doppelpunkt enthalten; er trennt ihren Namen vom Wert.</translation>
    </message>
    <message>
        <source>The value contains several consecutive spaces, of which the server would keep one.</source>
        <translation>Der Wert enthält mehrere Leerzeichen hintereinander, von denen der Server nur eines behielte.</translation>
    </message>
    <message>
        <source>A setting cannot contain control characters.</source>
        <translation>Eine Einstellung kann keine Steuerzeichen enthalten.</translation>
    </message>
</context>
<context>
    <name>tarnis::Spe</name>
    <message>
        <source>it has no section $DATA: it is not a spectrum in the .spe format, or incomplete</source>
        <translation>sie hat keinen Abschnitt $DATA: sie ist kein Spektrum im .spe-Format oder unvollständig</translation>
    </message>
    <message>
        <source>$DATA announces %1 channels and has %2: the file is damaged, copy it again</source>
        <translation>$DATA kündigt %1 Kanäle an und hat %2: die Datei ist beschädigt, erneut kopieren</translation>
    </message>
    <message>
        <source>a second section $DATA: keep one spectrum in the file</source>
        <translation>ein zweiter Abschnitt $DATA: nur ein Spektrum in der Datei behalten</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not the first and the last channel: the file is damaged</source>
        <translation>„%1“ ist nicht der erste und der letzte Kanal: die Datei ist beschädigt</translation>
    </message>
    <message>
        <source>&apos;%1&apos;: more than %2 channels are not read</source>
        <translation>„%1“: mehr als %2 Kanäle werden nicht gelesen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a count: correct it</source>
        <translation>„%1“ ist keine Ereigniszahl: berichtigen</translation>
    </message>
    <message>
        <source>more than the announced %1 channels: the file is damaged, copy it again</source>
        <translation>mehr als die angekündigten %1 Kanäle: die Datei ist beschädigt, erneut kopieren</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
</context>
<context>
    <name>tarnis::SpectrumFit</name>
    <message>
        <source>The parameter %1 is tied to %2, which the model does not have.</source>
        <translation>Der Parameter %1 ist an %2 gebunden, den das Modell nicht hat.</translation>
    </message>
    <message>
        <source>The parameter %1 is tied to %2, which is tied itself. Tie both to the same parameter.</source>
        <translation>Der Parameter %1 ist an %2 gebunden, der selbst gebunden ist. Binden Sie beide an denselben Parameter.</translation>
    </message>
    <message>
        <source>The tie of the parameter %1 needs another parameter and a finite factor and offset.</source>
        <translation>Die Bindung des Parameters %1 braucht einen anderen Parameter und einen endlichen Faktor und Versatz.</translation>
    </message>
    <message>
        <source>The model has no parameter %1. Its parameters are: %2.</source>
        <translation>Das Modell hat keinen Parameter %1. Seine Parameter sind: %2.</translation>
    </message>
    <message>
        <source>The fixed parameter %1 needs a value.</source>
        <translation>Der festgehaltene Parameter %1 braucht einen Wert.</translation>
    </message>
    <message>
        <source>The value of %1 is not a finite number.</source>
        <translation>Der Wert von %1 ist keine endliche Zahl.</translation>
    </message>
    <message>
        <source>The parameter %1 must be positive.</source>
        <translation>Der Parameter %1 muss positiv sein.</translation>
    </message>
    <message>
        <source>All parameters are fixed. Free at least one.</source>
        <translation>Alle Parameter sind festgehalten. Geben Sie mindestens einen frei.</translation>
    </message>
    <message>
        <source>The fit did not converge.</source>
        <translation>Die Anpassung hat nicht konvergiert.</translation>
    </message>
    <message>
        <source>The number of bins of the range, %1, is too small for the number of free parameters, %2.</source>
        <translation>Die Anzahl der Bins des Bereichs, %1, ist zu klein für die Anzahl der freien Parameter, %2.</translation>
    </message>
    <message>
        <source>The area %1 is at its bound.</source>
        <translation>Die Fläche %1 ist an ihrer Grenze.</translation>
    </message>
    <message>
        <source>The parameter %1 is at its bound.</source>
        <translation>Der Parameter %1 ist an seiner Grenze.</translation>
    </message>
    <message>
        <source>The parameter %1 has no error.</source>
        <translation>Der Parameter %1 hat keinen Fehler.</translation>
    </message>
    <message>
        <source>The error of %1 is open to one side.</source>
        <translation>Der Fehler von %1 ist zu einer Seite offen.</translation>
    </message>
    <message>
        <source>%1 and %2 are correlated by %3: the range cannot separate them.</source>
        <translation>%1 und %2 sind mit %3 korreliert: Der Bereich unterscheidet sie nicht.</translation>
    </message>
    <message>
        <source>The area of the peak at %1 is below three of its errors.</source>
        <translation>Die Fläche des Peaks bei %1 liegt unter drei ihrer Fehler.</translation>
    </message>
    <message>
        <source>The peak at %1 is within one standard deviation of the end of the range.</source>
        <translation>Der Peak bei %1 liegt weniger als eine Standardabweichung vor dem Ende des Bereichs.</translation>
    </message>
    <message>
        <source>The peak at %1 is wider than half of the range, which shows no background.</source>
        <translation>Der Peak bei %1 ist breiter als der halbe Bereich, der keinen Untergrund zeigt.</translation>
    </message>
    <message>
        <source>The counts of the peak at %1 are not a significant excess (probability %2 without a peak).</source>
        <translation>Die Ereignisse des Peaks bei %1 sind kein signifikanter Überschuss (Wahrscheinlichkeit %2 ohne Peak).</translation>
    </message>
    <message>
        <source>The model does not fit: the statistic is %1 standard deviations from its expectation.</source>
        <translation>Das Modell passt nicht: Die Statistik liegt %1 Standardabweichungen neben ihrem Erwartungswert.</translation>
    </message>
    <message>
        <source>The range %1 to %2 is not within the bins 0 to %3.</source>
        <translation>Der Bereich %1 bis %2 liegt nicht innerhalb der Bins 0 bis %3.</translation>
    </message>
    <message>
        <source>A range can hold 0 to %1 peaks.</source>
        <translation>Ein Bereich kann 0 bis %1 Peaks enthalten.</translation>
    </message>
    <message>
        <source>The model is empty. Choose a peak or a background.</source>
        <translation>Das Modell ist leer. Wählen Sie einen Peak oder einen Untergrund.</translation>
    </message>
    <message>
        <source>There are %1 positions for %2 peaks.</source>
        <translation>Es gibt %1 Positionen für %2 Peaks.</translation>
    </message>
    <message>
        <source>Widths by calibration need Gaussian peaks.</source>
        <translation>Kalibrierte Breiten brauchen Gauß-Peaks.</translation>
    </message>
    <message>
        <source>The width calibration is not finite.</source>
        <translation>Die Breitenkalibrierung ist nicht endlich.</translation>
    </message>
    <message>
        <source>A content of the range is not a finite number. Choose a range without it.</source>
        <translation>Ein Inhalt des Bereichs ist keine endliche Zahl. Wählen Sie einen Bereich ohne ihn.</translation>
    </message>
    <message>
        <source>All contents of the range are 0. There is nothing to fit.</source>
        <translation>Alle Inhalte des Bereichs sind 0. Es gibt nichts anzupassen.</translation>
    </message>
    <message>
        <source>The contents are not counts but have variances. Use the statistic neyman or unweighted.</source>
        <translation>Die Inhalte sind keine Zählwerte, sondern haben eigene Varianzen. Verwenden Sie die Statistik neyman oder unweighted.</translation>
    </message>
    <message>
        <source>Poisson statistics need counts: %1 Use the statistic unweighted.</source>
        <translation>Poisson-Statistik braucht Zählwerte: %1 Verwenden Sie die Statistik unweighted.</translation>
    </message>
    <message>
        <source>A variance of the range is 0. Use the statistic unweighted or exclude the bin.</source>
        <translation>Eine Varianz des Bereichs ist 0. Verwenden Sie die Statistik unweighted oder lassen Sie den Bin aus.</translation>
    </message>
    <message>
        <source>The position %1 is outside of the range.</source>
        <translation>Die Position %1 liegt außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>The number of bins of the range, %1, is below the number of free parameters, %2.</source>
        <translation>Die Anzahl der Bins des Bereichs, %1, ist kleiner als die Anzahl der freien Parameter, %2.</translation>
    </message>
    <message>
        <source>The range is too short for %1 peaks. Give their positions.</source>
        <translation>Der Bereich ist zu kurz für %1 Peaks. Geben Sie ihre Positionen an.</translation>
    </message>
    <message>
        <source>The model is 0 or negative at bins that have counts. Choose a background or another range.</source>
        <translation>Das Modell ist 0 oder negativ an Bins, die Ereignisse haben. Wählen Sie einen Untergrund oder einen anderen Bereich.</translation>
    </message>
    <message>
        <source>The residuals around %1 are off by %2 standard deviations: a peak is missing or the shape is wrong.</source>
        <translation>Die Residuen um %1 weichen um %2 Standardabweichungen ab: Ein Peak fehlt oder die Form ist falsch.</translation>
    </message>
    <message>
        <source>The shape of the peak at %1 is wrong by %2 standard deviations.</source>
        <translation>Die Form des Peaks bei %1 ist um %2 Standardabweichungen falsch.</translation>
    </message>
    <message>
        <source>The background is curved or has a step, by %1 standard deviations.</source>
        <translation>Der Untergrund ist gebogen oder hat eine Stufe, um %1 Standardabweichungen.</translation>
    </message>
    <message>
        <source>A Lorentzian fits better: its statistic is lower by %1. The shape is wrong.</source>
        <translation>Eine Lorentzkurve passt besser: Ihre Statistik ist um %1 kleiner. Die Form ist falsch.</translation>
    </message>
    <message>
        <source>The lower bound of %1, %2, is not below its upper bound, %3. Change one of them.</source>
        <translation>Die untere Grenze von %1, %2, liegt nicht unter der oberen, %3. Eine von beiden ändern.</translation>
    </message>
</context>
<context>
    <name>tarnis::SystemMessage</name>
    <message>
        <source>Local Server[%1] Started</source>
        <translation>Lokaler Server [%1] gestartet</translation>
    </message>
    <message>
        <source>Could not Start Local Server[%1] - check velmark.xml localServer element</source>
        <translation>Der lokale Server [%1] ließ sich nicht starten - siehe velmark.xml, Element localServer</translation>
    </message>
    <message>
        <source>Local Tarnis Server Started on port %1</source>
        <translation>Lokaler Tarnis-Server bereit, Port %1</translation>
    </message>
    <message>
        <source>Remote Tarnis Server Started on port %1</source>
        <translation>Entfernter Tarnis-Server verbunden, Port %1</translation>
    </message>
    <message>
        <source>Server process crashed.</source>
        <translation>Der Serverprozess ist abgestürzt.</translation>
    </message>
    <message>
        <source>ServerError: Crashed but shutting down or idle. err[%1]</source>
        <translation>Serverfehler beim Herunterfahren oder im Leerlauf: err[%1]</translation>
    </message>
    <message>
        <source>Socket Error %1 %2</source>
        <translation>Verbindungsfehler %1: %2</translation>
    </message>
</context>
</TS>

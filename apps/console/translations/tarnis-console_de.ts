<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AddSettingDialog</name>
    <message>
        <source>Add a Setting</source>
        <translation>Einstellung hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Name of the setting</source>
        <translation>Name der Einstellung</translation>
    </message>
    <message>
        <source>&amp;Value:</source>
        <translation>&amp;Wert:</translation>
    </message>
    <message>
        <source>Value of the setting</source>
        <translation>Wert der Einstellung</translation>
    </message>
    <message>
        <source>Error in name or value</source>
        <translation>Fehler in Name oder Wert</translation>
    </message>
</context>
<context>
    <name>AlertBar</name>
    <message>
        <source>Alert</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Dismiss this alert</source>
        <translation>Diesen Hinweis ausblenden</translation>
    </message>
    <message>
        <source>Another alert</source>
        <translation>Weitere Meldung</translation>
    </message>
</context>
<context>
    <name>ColourBarMenu</name>
    <message>
        <source>Pattern - Rainbow1</source>
        <translation>Muster - Regenbogen 1</translation>
    </message>
    <message>
        <source>Pattern - Rainbow2</source>
        <translation>Muster - Regenbogen 2</translation>
    </message>
    <message>
        <source>Pattern - Grayscale</source>
        <translation>Muster - Graustufen</translation>
    </message>
    <message>
        <source>Pattern - BlueRedGreen</source>
        <translation>Muster - Blau Rot Grün</translation>
    </message>
    <message>
        <source>Pattern - RedWhiteBlue</source>
        <translation>Muster - Rot Weiß Blau</translation>
    </message>
    <message>
        <source>Pattern - CyanMagenta</source>
        <translation>Muster - Cyan Magenta</translation>
    </message>
    <message>
        <source>Pattern - YellowHot</source>
        <translation>Muster - Gelbglut</translation>
    </message>
    <message>
        <source>Pattern - Blue</source>
        <translation>Muster - Blau</translation>
    </message>
    <message>
        <source> Edit - Max Color</source>
        <translation> Ändern - Farbe des Maximums</translation>
    </message>
    <message>
        <source> Edit - Half Max Color</source>
        <translation> Ändern - Farbe bei drei Vierteln</translation>
    </message>
    <message>
        <source> Edit - Half Color</source>
        <translation> Ändern - Farbe der Mitte</translation>
    </message>
    <message>
        <source> Edit - Half Min Color</source>
        <translation> Ändern - Farbe bei einem Viertel</translation>
    </message>
    <message>
        <source> Edit - Min Color</source>
        <translation> Ändern - Farbe des Minimums</translation>
    </message>
    <message>
        <source>Edit - Reverse</source>
        <translation>Ändern - Umkehren</translation>
    </message>
    <message>
        <source> Edit - Back Ground Color</source>
        <translation> Ändern - Hintergrundfarbe</translation>
    </message>
</context>
<context>
    <name>CommandPanel</name>
    <message>
        <source>Commands and replies</source>
        <translation>Befehle und Antworten</translation>
    </message>
    <message>
        <source>Progress of the command</source>
        <translation>Fortschritt des Befehls</translation>
    </message>
    <message>
        <source>A reply is under way</source>
        <translation>Eine Antwort ist unterwegs</translation>
    </message>
    <message>
        <source>C&amp;ommand:</source>
        <translation>Befeh&amp;l:</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>A command for the server, for example help</source>
        <translation>Ein Befehl für den Server, zum Beispiel help</translation>
    </message>
    <message>
        <source>&amp;Binary reply</source>
        <translation>Binäre Ant&amp;wort</translation>
    </message>
    <message>
        <source>&amp;Give Up</source>
        <translation>Auf&amp;geben</translation>
    </message>
    <message>
        <source>Se&amp;nd</source>
        <translation>Se&amp;nden</translation>
    </message>
    <message>
        <source>Send &amp;File...</source>
        <translation>Da&amp;tei senden...</translation>
    </message>
</context>
<context>
    <name>ConnectDialog</name>
    <message>
        <source>Choose a Server</source>
        <translation>Server wählen</translation>
    </message>
    <message>
        <source>Start the &amp;simulated server that comes with the console</source>
        <translation>Den mitgelieferten &amp;simulierten Server starten</translation>
    </message>
    <message>
        <source>Start a &amp;program on this machine</source>
        <translation>Ein &amp;Programm auf diesem Rechner starten</translation>
    </message>
    <message>
        <source>Program of the server</source>
        <translation>Programm des Servers</translation>
    </message>
    <message>
        <source>/path/to/the/server, without arguments</source>
        <translation>/Pfad/zum/Server, ohne Argumente</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Durchsuchen...</translation>
    </message>
    <message>
        <source>&amp;Connect to a server that runs already</source>
        <translation>&amp;Mit einem laufenden Server verbinden</translation>
    </message>
    <message>
        <source>&amp;Host:</source>
        <translation>&amp;Rechner:</translation>
    </message>
    <message>
        <source>Host of the server</source>
        <translation>Rechner des Servers</translation>
    </message>
    <message>
        <source>name or address</source>
        <translation>Name oder Adresse</translation>
    </message>
    <message>
        <source>P&amp;ort:</source>
        <translation>P&amp;ort:</translation>
    </message>
    <message>
        <source>TCP port of the server</source>
        <translation>TCP-Port des Servers</translation>
    </message>
    <message>
        <source>Pro&amp;mpt of the server:</source>
        <translation>Prompt des Ser&amp;vers:</translation>
    </message>
    <message>
        <source>Prompt of the server</source>
        <translation>Prompt des Servers</translation>
    </message>
    <message>
        <source>What the server sends when it waits for a command. \n \r \t \e \\ and \xHH are escapes for special bytes; spaces count.</source>
        <translation>Was der Server schreibt, wenn er auf einen Befehl wartet. \n \r \t \e \\ und \xHH stehen für Bytes, die sich schlecht eingeben lassen; Leerzeichen zählen.</translation>
    </message>
    <message>
        <source>What is missing</source>
        <translation>Was fehlt</translation>
    </message>
</context>
<context>
    <name>LastServerText</name>
    <message>
        <source>“%1” is not a valid host name.</source>
        <translation>„%1“ ist kein gültiger Rechnername.</translation>
    </message>
    <message>
        <source>“%1” is not a valid port: it must be a number from 1 to 65535.</source>
        <translation>„%1“ ist kein gültiger Port: Er muss eine Zahl von 1 bis 65535 sein.</translation>
    </message>
    <message>
        <source>The port is missing.</source>
        <translation>Der Port fehlt.</translation>
    </message>
    <message>
        <source>“%1” is not a valid kind of server.</source>
        <translation>„%1“ ist keine gültige Art von Server.</translation>
    </message>
    <message>
        <source>The prompt “%1” contains an escape other than \n \r \t \e \\ \xHH.</source>
        <translation>Der Prompt „%1“ enthält eine andere Escape-Folge als \n \r \t \e \\ \xHH.</translation>
    </message>
</context>
<context>
    <name>LogWindow</name>
    <message>
        <source>Log File</source>
        <translation>Logdatei</translation>
    </message>
    <message>
        <source>&amp;Log file:</source>
        <translation>&amp;Logdatei:</translation>
    </message>
    <message>
        <source>Log file on this machine</source>
        <translation>Logdatei auf diesem Rechner</translation>
    </message>
    <message>
        <source>path of a file on this machine</source>
        <translation>Pfad einer Datei auf diesem Rechner</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Durchsuchen...</translation>
    </message>
    <message>
        <source>Choose the log file</source>
        <translation>Die Logdatei wählen</translation>
    </message>
    <message>
        <source>Lines of the log file</source>
        <translation>Zeilen der Logdatei</translation>
    </message>
    <message>
        <source>State of the log file</source>
        <translation>Stand der Logdatei</translation>
    </message>
    <message>
        <source>&amp;Follow</source>
        <translation>Ver&amp;folgen</translation>
    </message>
    <message>
        <source>Show new lines as they are written. Scrolling up pauses, scrolling to the end resumes.</source>
        <translation>Neue Zeilen zeigen, sobald sie geschrieben sind. Zurückscrollen hält an, Scrollen ans Ende setzt fort.</translation>
    </message>
    <message>
        <source>F&amp;ind:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Text to find in the log</source>
        <translation>Gesuchter Text im Log</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>&amp;Aufwärts</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>A&amp;bwärts</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Find the text further up</source>
        <translation>Den Text weiter oben suchen</translation>
    </message>
    <message>
        <source>Find the text further down</source>
        <translation>Den Text weiter unten suchen</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Tarnis Console</source>
        <translation>Tarnis-Konsole</translation>
    </message>
    <message>
        <source>Status of the server</source>
        <translation>Status des Servers</translation>
    </message>
    <message>
        <source>Server in use</source>
        <translation>Verwendeter Server</translation>
    </message>
    <message>
        <source>Host messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>&amp;Server</source>
        <translation>&amp;Server</translation>
    </message>
    <message>
        <source>&amp;Command</source>
        <translation>&amp;Befehl</translation>
    </message>
    <message>
        <source>Se&amp;ttings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Windows</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Choose Server...</source>
        <translation>Server &amp;wählen...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Give Up</source>
        <translation>Auf&amp;geben</translation>
    </message>
    <message>
        <source>&amp;Save Record...</source>
        <translation>Protokoll &amp;speichern...</translation>
    </message>
    <message>
        <source>&amp;Clear Record</source>
        <translation>Protokoll &amp;leeren</translation>
    </message>
    <message>
        <source>Remove the commands and replies from the screen</source>
        <translation>Befehle und Antworten vom Bildschirm nehmen</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>E&amp;inlesen</translation>
    </message>
    <message>
        <source>Go to &amp;Command Line</source>
        <translation>Zur &amp;Befehlszeile</translation>
    </message>
    <message>
        <source>Go to &amp;Settings</source>
        <translation>Zu den &amp;Einstellungen</translation>
    </message>
    <message>
        <source>Go to Host &amp;Messages</source>
        <translation>Zu den &amp;Meldungen</translation>
    </message>
    <message>
        <source>&amp;Dark Colours</source>
        <translation>&amp;Dunkle Farben</translation>
    </message>
    <message>
        <source>&amp;Keyboard</source>
        <translation>&amp;Tastatur</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>&amp;Tile</source>
        <translation>&amp;Nebeneinander</translation>
    </message>
    <message>
        <source>&amp;Cascade</source>
        <translation>Hintere&amp;inander</translation>
    </message>
    <message>
        <source>Close All &amp;Windows</source>
        <translation>Alle Fenster s&amp;chließen</translation>
    </message>
    <message>
        <source>Start another server, or connect to one</source>
        <translation>Einen anderen Server starten oder mit einem verbinden</translation>
    </message>
    <message>
        <source>Shut the server down and close the console</source>
        <translation>Den Server herunterfahren und die Konsole schließen</translation>
    </message>
    <message>
        <source>Write the shown commands and replies to a text file</source>
        <translation>Die gezeigten Befehle und Antworten in eine Textdatei schreiben</translation>
    </message>
    <message>
        <source>Go to the Console&apos;s &amp;Window</source>
        <translation>Zum &amp;Fenster der Konsole</translation>
    </message>
    <message>
        <source>From any window back to this one</source>
        <translation>Aus jedem Fenster zurück zu diesem</translation>
    </message>
    <message>
        <source>R&amp;un</source>
        <translation>&amp;Messlauf</translation>
    </message>
    <message>
        <source>&amp;Start Server</source>
        <translation>&amp;Server starten</translation>
    </message>
    <message>
        <source>&amp;Restart Server</source>
        <translation>Server &amp;neu starten</translation>
    </message>
    <message>
        <source>Shut &amp;Down Server</source>
        <translation>Server &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;End Server by Force</source>
        <translation>Server &amp;erzwungen beenden</translation>
    </message>
    <message>
        <source>Send &amp;File...</source>
        <translation>Da&amp;tei senden...</translation>
    </message>
    <message>
        <source>&amp;Send Settings</source>
        <translation>Einstellungen &amp;senden</translation>
    </message>
    <message>
        <source>Send and S&amp;ave</source>
        <translation>Senden und s&amp;peichern</translation>
    </message>
    <message>
        <source>Move the keyboard focus to the command line</source>
        <translation>Die Tastatur an die Befehlszeile geben</translation>
    </message>
    <message>
        <source>Move the keyboard focus to the table of settings</source>
        <translation>Die Tastatur an die Tabelle der Einstellungen geben</translation>
    </message>
    <message>
        <source>Move the keyboard focus to the messages of the library</source>
        <translation>Die Tastatur an die Meldungen der Bibliothek geben</translation>
    </message>
    <message>
        <source>Dark colours for a dark room</source>
        <translation>Dunkle Farben für einen dunklen Raum</translation>
    </message>
    <message>
        <source>List the keys of the console and its plots</source>
        <translation>Die Tasten der Konsole und ihrer Diagramme auflisten</translation>
    </message>
    <message>
        <source>Version of the console</source>
        <translation>Version der Konsole</translation>
    </message>
</context>
<context>
    <name>ModulesForm</name>
    <message>
        <source>&amp;To:</source>
        <translation>A&amp;n:</translation>
    </message>
    <message>
        <source>Recipients of the command</source>
        <translation>An wen der Befehl geht</translation>
    </message>
    <message>
        <source>All modules</source>
        <translation>Alle Module</translation>
    </message>
    <message>
        <source>The modules of the family orsino</source>
        <translation>Die Module der Familie orsino</translation>
    </message>
    <message>
        <source>One module</source>
        <translation>Ein Modul</translation>
    </message>
    <message>
        <source>Several modules, one after the other</source>
        <translation>Mehrere Module, eines nach dem anderen</translation>
    </message>
    <message>
        <source>&amp;Modules:</source>
        <translation>&amp;Module:</translation>
    </message>
    <message>
        <source>Numbers of the modules</source>
        <translation>Nummern der Module</translation>
    </message>
    <message>
        <source>one: 3; several: 0, 2, 4-7</source>
        <translation>eines: 3; mehrere: 0, 2, 4-7</translation>
    </message>
    <message>
        <source>C&amp;ommand:</source>
        <translation>Befeh&amp;l:</translation>
    </message>
    <message>
        <source>Command to the modules</source>
        <translation>Befehl an die Module</translation>
    </message>
</context>
<context>
    <name>PlotLinks</name>
    <message>
        <source>Link</source>
        <translation>Koppeln</translation>
    </message>
    <message>
        <source>Link %1</source>
        <translation>Gekoppelt: %1</translation>
    </message>
    <message>
        <source>Link this plot with others: plots of a group show the same range of axes of the same name</source>
        <translation>Dieses Diagramm mit anderen koppeln: Diagramme einer Gruppe zeigen denselben Bereich gleichnamiger Achsen</translation>
    </message>
    <message>
        <source>Not Linked</source>
        <translation>Nicht gekoppelt</translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>Gruppe %1</translation>
    </message>
</context>
<context>
    <name>PlotPanels</name>
    <message>
        <source>Analysis</source>
        <translation>Auswertung</translation>
    </message>
    <message>
        <source>Analysis of this plot: regions, fits, peaks, energy calibration</source>
        <translation>Auswertung dieses Diagramms: Regionen, Anpassungen, Peaks, Energiekalibrierung</translation>
    </message>
    <message>
        <source>Regions...</source>
        <translation>Regionen...</translation>
    </message>
    <message>
        <source>Fit...</source>
        <translation>Anpassung...</translation>
    </message>
    <message>
        <source>Peaks...</source>
        <translation>Peaks...</translation>
    </message>
    <message>
        <source>Energy Calibration...</source>
        <translation>Energiekalibrierung...</translation>
    </message>
</context>
<context>
    <name>PlotTools</name>
    <message>
        <source>Copy Picture</source>
        <translation>Bild kopieren</translation>
    </message>
</context>
<context>
    <name>RateWindow</name>
    <message>
        <source>Rate now and on average</source>
        <translation>Rate jetzt und im Mittel</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Clear the curve</source>
        <translation>Die Kurve neu beginnen</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>ReplyText</name>
    <message numerus="yes">
        <source>%Ln value(s)</source>
        <translation>
            <numerusform>%Ln Wert</numerusform>
            <numerusform>%Ln Werte</numerusform>
        </translation>
    </message>
    <message>
        <source>, plus %1 of an incomplete value</source>
        <translation>, dazu %1 eines unvollständigen Wertes</translation>
    </message>
    <message numerus="yes">
        <source>, %Ln of them not finite and omitted below</source>
        <translation>
            <numerusform>, davon %Ln nicht endlich und unten nicht mitgezählt</numerusform>
            <numerusform>, davon %Ln nicht endlich und unten nicht mitgezählt</numerusform>
        </translation>
    </message>
    <message>
        <source>no finite value</source>
        <translation>kein endlicher Wert</translation>
    </message>
    <message>
        <source>sum %1, minimum %2, maximum %3</source>
        <translation>Summe %1, kleinster %2, größter %3</translation>
    </message>
    <message>
        <source>first: %1</source>
        <translation>erste: %1</translation>
    </message>
    <message>
        <source>[%1 omitted here]</source>
        <translation>[%1 hier ausgelassen]</translation>
    </message>
    <message>
        <source>There is no command.</source>
        <translation>Es gibt keinen Befehl.</translation>
    </message>
    <message>
        <source>A command is one line; send the lines one after the other.</source>
        <translation>Ein Befehl ist eine Zeile; senden Sie die Zeilen nacheinander.</translation>
    </message>
    <message>
        <source>The command contains a control character, which the server cannot accept.</source>
        <translation>Der Befehl enthält ein Steuerzeichen, das der Server nicht annehmen kann.</translation>
    </message>
    <message>
        <source>The character “%1” cannot be sent: commands are Latin-1.</source>
        <translation>Das Zeichen „%1“ lässt sich nicht senden: Befehle sind in Latin-1.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln byte(s)</source>
        <translation>
            <numerusform>%Ln Byte</numerusform>
            <numerusform>%Ln Bytes</numerusform>
        </translation>
    </message>
    <message>
        <source>%L1 MiB</source>
        <translation>%L1 MiB</translation>
    </message>
    <message>
        <source>%1, which are not text</source>
        <translation>%1, die kein Text sind</translation>
    </message>
</context>
<context>
    <name>RowCaption</name>
    <message>
        <source>No curve is visible</source>
        <translation>Keine Kurve ist sichtbar</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>RunsWindow</name>
    <message>
        <source>Runs</source>
        <translation>Messläufe</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>Folder on the server</source>
        <translation>Ordner auf dem Server</translation>
    </message>
    <message>
        <source>empty for the server&apos;s own</source>
        <translation>leer für den des Servers</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Durchsuchen...</translation>
    </message>
    <message>
        <source>&amp;Prefix:</source>
        <translation>&amp;Präfix:</translation>
    </message>
    <message>
        <source>Prefix of the runs to show</source>
        <translation>Präfix der gezeigten Messläufe</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Zeigen:</translation>
    </message>
    <message>
        <source>Part of the names to show</source>
        <translation>Teil der gezeigten Namen</translation>
    </message>
    <message>
        <source>part of a name; empty for all</source>
        <translation>Teil eines Namens; leer für alle</translation>
    </message>
    <message>
        <source>Run directories</source>
        <translation>Ordner der Messläufe</translation>
    </message>
    <message>
        <source>State of the list</source>
        <translation>Stand der Liste</translation>
    </message>
    <message>
        <source>&amp;Into the Command Line</source>
        <translation>&amp;In die Befehlszeile</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>ServerText</name>
    <message>
        <source>Path of the file on the server</source>
        <translation>Pfad der Datei auf dem Server</translation>
    </message>
    <message>
        <source>Text of the file</source>
        <translation>Text der Datei</translation>
    </message>
    <message>
        <source>State of the text</source>
        <translation>Zustand des Textes</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Öffnen...</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>State of the settings</source>
        <translation>Stand der Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>E&amp;inlesen</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>Hin&amp;zufügen...</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Entfe&amp;rnen</translation>
    </message>
    <message>
        <source>R&amp;evert</source>
        <translation>Zurüc&amp;ksetzen</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>Adressen</translation>
    </message>
    <message>
        <source>Base &amp;path:</source>
        <translation>Basis&amp;pfad:</translation>
    </message>
    <message>
        <source>Base path of the server&apos;s data</source>
        <translation>Basispfad der Daten des Servers</translation>
    </message>
    <message>
        <source>Set Path</source>
        <translation>Pfad setzen</translation>
    </message>
    <message>
        <source>Readout &amp;IP:</source>
        <translation>A&amp;uslese-IP:</translation>
    </message>
    <message>
        <source>IP address of the readout module</source>
        <translation>IP-Adresse des Auslesemoduls</translation>
    </message>
    <message>
        <source>TCP port:</source>
        <translation>TCP-Port:</translation>
    </message>
    <message>
        <source>TCP port of the readout module</source>
        <translation>TCP-Port des Auslesemoduls</translation>
    </message>
    <message>
        <source>Readout address that was set last</source>
        <translation>Zuletzt gesetzte Ausleseadresse</translation>
    </message>
    <message>
        <source>Set Address</source>
        <translation>Adresse setzen</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>Sen&amp;d Settings</source>
        <translation>Einstellungen sen&amp;den</translation>
    </message>
    <message>
        <source>Send and Save</source>
        <translation>Senden und speichern</translation>
    </message>
    <message>
        <source>With instrument</source>
        <translation>Mit Instrument</translation>
    </message>
    <message>
        <source>Send the setting inst, the name of the instrument, in the same line, in front of the base path</source>
        <translation>Die Einstellung inst, den Namen des Instruments, in derselben Zeile vor dem Basispfad senden</translation>
    </message>
    <message>
        <source>Modu&amp;le:</source>
        <translation>M&amp;odul:</translation>
    </message>
    <message>
        <source>Number of the readout module</source>
        <translation>Nummer des Auslesemoduls</translation>
    </message>
    <message>
        <source>Number of the readout module whose address this is; without a number it is the one address for all</source>
        <translation>Nummer des Auslesemoduls, dessen Adresse dies ist; ohne Nummer ist es die eine Adresse für alle</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>Port at which the readout module delivers its data (the setting tcp)</source>
        <translation>Port, an dem das Auslesemodul seine Daten liefert (die Einstellung tcp)</translation>
    </message>
    <message>
        <source>Control port:</source>
        <translation>Steuerport:</translation>
    </message>
    <message>
        <source>Control port of the readout module</source>
        <translation>Steuerport des Auslesemoduls</translation>
    </message>
    <message>
        <source>Port at which the readout module accepts control commands (the setting bcp)</source>
        <translation>Port, an dem das Auslesemodul Steuerbefehle annimmt (die Einstellung bcp)</translation>
    </message>
</context>
<context>
    <name>Status</name>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Verbindung verloren</translation>
    </message>
    <message>
        <source>Readout connected</source>
        <translation>Auslese verbunden</translation>
    </message>
    <message>
        <source>Readout error</source>
        <translation>Fehler der Auslese</translation>
    </message>
    <message>
        <source>Hardware busy</source>
        <translation>Hardware beschäftigt</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Startet</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Lädt</translation>
    </message>
    <message>
        <source>Shutting down</source>
        <translation>Fährt herunter</translation>
    </message>
</context>
<context>
    <name>ToolTips</name>
    <message>
        <source>Show each curve by itself, or one curve with the sum of all</source>
        <translation>Jede Kurve für sich zeigen, oder eine Kurve mit der Summe aller</translation>
    </message>
    <message>
        <source>Choose which curves are visible</source>
        <translation>Wählen, welche Kurven sichtbar sind</translation>
    </message>
    <message>
        <source>Request new data from the server now</source>
        <translation>Den Server jetzt nach neuen Daten fragen</translation>
    </message>
    <message>
        <source>Request new data from the server continuously</source>
        <translation>Den Server immer wieder nach neuen Daten fragen</translation>
    </message>
    <message>
        <source>Smooth or sharpen a copy of this map in a separate window</source>
        <translation>Eine Kopie dieser Karte in einem eigenen Fenster glätten oder schärfen</translation>
    </message>
    <message>
        <source>Ignore peaks lower than this percentage of the highest value</source>
        <translation>Peaks unter diesem Anteil des höchsten Werts werden ausgelassen, in Prozent</translation>
    </message>
    <message>
        <source>Expected width of a peak, in bins</source>
        <translation>Erwartete Breite eines Peaks, in Bins</translation>
    </message>
    <message>
        <source>Search the visible part of the curve for peaks and fit them</source>
        <translation>Im sichtbaren Teil der Kurve Peaks suchen und anpassen</translation>
    </message>
    <message>
        <source>Mark the points that each fit has used</source>
        <translation>Die Punkte markieren, die jede Anpassung benutzt hat</translation>
    </message>
    <message>
        <source>Lower end of the range along X; Enter sets it</source>
        <translation>Unteres Ende des Bereichs entlang X; die Eingabetaste setzt es</translation>
    </message>
    <message>
        <source>Upper end of the range along X; Enter sets it</source>
        <translation>Oberes Ende des Bereichs entlang X; die Eingabetaste setzt es</translation>
    </message>
    <message>
        <source>Lower end of the range along Y; Enter sets it</source>
        <translation>Unteres Ende des Bereichs entlang Y; die Eingabetaste setzt es</translation>
    </message>
    <message>
        <source>Upper end of the range along Y; Enter sets it</source>
        <translation>Oberes Ende des Bereichs entlang Y; die Eingabetaste setzt es</translation>
    </message>
    <message>
        <source>Left edge of the chosen region</source>
        <translation>Linker Rand der gewählten Region</translation>
    </message>
    <message>
        <source>Lower edge of the chosen region</source>
        <translation>Unterer Rand der gewählten Region</translation>
    </message>
    <message>
        <source>Right edge of the chosen region</source>
        <translation>Rechter Rand der gewählten Region</translation>
    </message>
    <message>
        <source>Upper edge of the chosen region</source>
        <translation>Oberer Rand der gewählten Region</translation>
    </message>
    <message>
        <source>Delete the chosen region</source>
        <translation>Die gewählte Region löschen</translation>
    </message>
    <message>
        <source>Check every entry of the list</source>
        <translation>Jeden Eintrag der Liste ankreuzen</translation>
    </message>
    <message>
        <source>Uncheck every entry of the list</source>
        <translation>Bei jedem Eintrag der Liste das Kreuz entfernen</translation>
    </message>
    <message>
        <source>Check what is unchecked, and uncheck the rest</source>
        <translation>Ankreuzen, was kein Kreuz hat, und umgekehrt</translation>
    </message>
    <message>
        <source>Check the selected cells</source>
        <translation>Die gewählten Zellen ankreuzen</translation>
    </message>
    <message>
        <source>Uncheck the selected cells</source>
        <translation>Das Kreuz der gewählten Zellen entfernen</translation>
    </message>
    <message>
        <source>Check what is unchecked among the selected cells, and the reverse</source>
        <translation>Unter den gewählten Zellen ankreuzen, was kein Kreuz hat, und umgekehrt</translation>
    </message>
    <message>
        <source>Show the checked curves</source>
        <translation>Die angekreuzten Kurven zeigen</translation>
    </message>
    <message>
        <source>The open folder and the folders above it</source>
        <translation>Der offene Ordner und die Ordner darüber</translation>
    </message>
    <message>
        <source>Name of a file or folder in the open folder</source>
        <translation>Name einer Datei oder eines Ordners im offenen Ordner</translation>
    </message>
    <message>
        <source>Accept and close</source>
        <translation>Übernehmen und schließen</translation>
    </message>
    <message>
        <source>Close without a change</source>
        <translation>Ohne Änderung schließen</translation>
    </message>
    <message>
        <source>Close this window</source>
        <translation>Dieses Fenster schließen</translation>
    </message>
    <message>
        <source>Save to a file</source>
        <translation>In eine Datei speichern</translation>
    </message>
    <message>
        <source>Use the values and keep the window open</source>
        <translation>Die Werte übernehmen, das Fenster bleibt offen</translation>
    </message>
    <message>
        <source>Continue without saving</source>
        <translation>Weiter, ohne zu speichern</translation>
    </message>
    <message>
        <source>Delete all regions</source>
        <translation>Alle Regionen löschen</translation>
    </message>
    <message>
        <source>* means all: its check mark applies to all of them</source>
        <translation>* heißt jede: ein Kreuz gilt für alle</translation>
    </message>
    <message>
        <source>For trying the console without a detector</source>
        <translation>Um die Konsole ohne Detektor auszuprobieren</translation>
    </message>
    <message>
        <source>The server ends with the console</source>
        <translation>Der Server endet mit der Konsole</translation>
    </message>
    <message>
        <source>The server keeps running when the console is closed</source>
        <translation>Der Server läuft weiter, wenn die Konsole geschlossen wird</translation>
    </message>
    <message>
        <source>Choose from a list</source>
        <translation>Aus einer Liste wählen</translation>
    </message>
    <message>
        <source>The sum of the weighted bins is divided by this number</source>
        <translation>Die Summe der gewichteten Bins wird durch diese Zahl geteilt</translation>
    </message>
    <message>
        <source>Run the action of the alert</source>
        <translation>Die Aktion des Hinweises ausführen</translation>
    </message>
    <message>
        <source>Fit the limits of the colours to the data</source>
        <translation>Die Grenzen der Farben an die Daten anpassen</translation>
    </message>
</context>
<context>
    <name>Windows</name>
    <message>
        <source>The current values that the server reports</source>
        <translation>Die aktuellen Werte, die der Server meldet</translation>
    </message>
    <message>
        <source>Stat Snapshot</source>
        <translation>Momentaufnahme von stat</translation>
    </message>
    <message>
        <source>S&amp;etting Snapshot</source>
        <translation>Momentaufnahme von s&amp;etting</translation>
    </message>
    <message>
        <source>The current settings of the server</source>
        <translation>Die aktuellen Einstellungen des Servers</translation>
    </message>
    <message>
        <source>Setting Snapshot</source>
        <translation>Momentaufnahme von setting</translation>
    </message>
    <message>
        <source>&amp;Histograms...</source>
        <translation>&amp;Histogramme...</translation>
    </message>
    <message>
        <source>Histograms</source>
        <translation>Histogramme</translation>
    </message>
    <message>
        <source>Lo&amp;g File</source>
        <translation>Lo&amp;gdatei</translation>
    </message>
    <message>
        <source>Log File</source>
        <translation>Logdatei</translation>
    </message>
    <message>
        <source>Arrival Times</source>
        <translation>Ankunftszeiten</translation>
    </message>
    <message>
        <source>Time [us]</source>
        <translation>Zeit [us]</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>Modul</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Arrival Times, All Modules</source>
        <translation>Ankunftszeiten, alle Module</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>Position, Module 0</source>
        <translation>Position, Modul 0</translation>
    </message>
    <message>
        <source>Position [mm]</source>
        <translation>Position [mm]</translation>
    </message>
    <message>
        <source>&amp;Arrival Times</source>
        <translation>&amp;Ankunftszeiten</translation>
    </message>
    <message>
        <source>The arrival times of each module, live</source>
        <translation>Die Ankunftszeiten jedes Moduls, live</translation>
    </message>
    <message>
        <source>Arrival Times, A&amp;ll Modules</source>
        <translation>Ankunftszeiten, alle &amp;Module</translation>
    </message>
    <message>
        <source>The sum of all modules, live; the server defines the axis</source>
        <translation>Die Summe aller Module, live; der Server nennt die Achse</translation>
    </message>
    <message>
        <source>&amp;Position of Module 0</source>
        <translation>&amp;Position von Modul 0</translation>
    </message>
    <message>
        <source>The positions of the events of one module, live</source>
        <translation>Die Positionen der Ereignisse eines Moduls, live</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
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
        <source>&amp;Image</source>
        <translation>&amp;Bild</translation>
    </message>
    <message>
        <source>The events by position, live</source>
        <translation>Die Ereignisse nach Ort, live</translation>
    </message>
    <message>
        <source>Histogram %1</source>
        <translation>Histogramm %1</translation>
    </message>
    <message>
        <source>Row</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>%1 was not set as the base path: %2</source>
        <translation>%1 wurde nicht als Basispfad gesetzt: %2</translation>
    </message>
    <message>
        <source>Base Path</source>
        <translation>Basispfad</translation>
    </message>
    <message>
        <source>Files of the Server</source>
        <translation>Dateien des Servers</translation>
    </message>
    <message>
        <source>&amp;Statistics</source>
        <translation>&amp;Statistik</translation>
    </message>
    <message>
        <source>The values that the server reports, live</source>
        <translation>Die Werte, die der Server meldet, live</translation>
    </message>
    <message>
        <source>&amp;Base Path...</source>
        <translation>Basisp&amp;fad...</translation>
    </message>
    <message>
        <source>Choose the folder of the data on the server</source>
        <translation>Den Ordner der Daten auf dem Server wählen</translation>
    </message>
    <message>
        <source>&amp;Files of the Server...</source>
        <translation>&amp;Dateien des Servers...</translation>
    </message>
    <message>
        <source>Choose a file on the server for the command line</source>
        <translation>Eine Datei auf dem Server für die Befehlszeile wählen</translation>
    </message>
    <message>
        <source>Stat S&amp;napshot</source>
        <translation>Momentaufnahme von s&amp;tat</translation>
    </message>
    <message>
        <source>&amp;Runs</source>
        <translation>Mess&amp;läufe</translation>
    </message>
    <message>
        <source>Runs</source>
        <translation>Messläufe</translation>
    </message>
    <message>
        <source>Measured Spectrum</source>
        <translation>Gemessenes Spektrum</translation>
    </message>
    <message>
        <source>Energy or Channel</source>
        <translation>Energie oder Kanal</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>&amp;Measured Spectrum</source>
        <translation>Gemessenes Spe&amp;ktrum</translation>
    </message>
    <message>
        <source>Te&amp;xt on the Server</source>
        <translation>Te&amp;xt auf dem Server</translation>
    </message>
    <message>
        <source>Text on the Server[*]</source>
        <translation>Text auf dem Server[*]</translation>
    </message>
    <message>
        <source>The measured spectrum of the server&apos;s option --spectrum</source>
        <translation>Das gemessene Spektrum der Option --spectrum des Servers</translation>
    </message>
    <message>
        <source>Choose which of the server&apos;s histograms to open</source>
        <translation>Wählen, welche Histogramme des Servers geöffnet werden</translation>
    </message>
    <message>
        <source>The run directories of the server by prefix, run and date</source>
        <translation>Die Ordner der Messläufe auf dem Server nach Präfix, Lauf und Datum</translation>
    </message>
    <message>
        <source>Open, edit and save a text file on the server</source>
        <translation>Eine Textdatei auf dem Server öffnen, ändern und speichern</translation>
    </message>
    <message>
        <source>Follow a log file as it grows</source>
        <translation>Eine Logdatei verfolgen, während sie wächst</translation>
    </message>
    <message>
        <source>Sen&amp;d to Modules</source>
        <translation>An Mod&amp;ule senden</translation>
    </message>
    <message>
        <source>Send to Modules</source>
        <translation>An Module senden</translation>
    </message>
    <message>
        <source>A command for all readout modules, a family, one or several</source>
        <translation>Ein Befehl an alle Auslesemodule, eine Familie, eines oder mehrere</translation>
    </message>
    <message>
        <source>E&amp;vent Rate</source>
        <translation>E&amp;reignisrate</translation>
    </message>
    <message>
        <source>Event Rate</source>
        <translation>Ereignisrate</translation>
    </message>
    <message>
        <source>The event rate over the last hour, once a second</source>
        <translation>Die Ereignisrate der letzten Stunde, einmal in der Sekunde</translation>
    </message>
    <message>
        <source>%1, the first %2 of %3 rows</source>
        <translation>%1, die ersten %2 von %3 Zeilen</translation>
    </message>
    <message>
        <source>The server has no histogram “%1”</source>
        <translation>Der Server hat kein Histogramm „%1“</translation>
    </message>
</context>
<context>
    <name>console::AddSettingDialog</name>
    <message>
        <source>Add the setting</source>
        <translation>Die Einstellung hinzufügen</translation>
    </message>
    <message>
        <source>A setting with this name exists: it gets the new value.</source>
        <translation>Es gibt schon eine Einstellung dieses Namens: sie bekommt den neuen Wert.</translation>
    </message>
</context>
<context>
    <name>console::AlertBar</name>
    <message>
        <source>Start Again</source>
        <translation>Erneut starten</translation>
    </message>
    <message>
        <source>Choose a Server...</source>
        <translation>Server wählen...</translation>
    </message>
    <message>
        <source>Stop Waiting</source>
        <translation>Nicht länger warten</translation>
    </message>
    <message>
        <source>End by Force</source>
        <translation>Gewaltsam beenden</translation>
    </message>
    <message>
        <source>Send Again</source>
        <translation>Erneut senden</translation>
    </message>
    <message>
        <source>Connect Again</source>
        <translation>Erneut verbinden</translation>
    </message>
</context>
<context>
    <name>console::ChooserGuide</name>
    <message>
        <source>State of the choice</source>
        <translation>Stand der Auswahl</translation>
    </message>
    <message>
        <source>There is no connection to the server. This window resumes when it is back.</source>
        <translation>Es gibt keine Verbindung zum Server. Es geht weiter, sobald er zurück ist.</translation>
    </message>
    <message>
        <source>Listing...</source>
        <translation>Wird aufgelistet...</translation>
    </message>
    <message>
        <source>The server lists no folder</source>
        <translation>Der Server listet keinen Ordner auf</translation>
    </message>
    <message>
        <source>The server does not list the folder: %1</source>
        <translation>Der Server listet den Ordner nicht auf: %1</translation>
    </message>
    <message>
        <source>OK selects %1</source>
        <translation>OK nimmt %1</translation>
    </message>
    <message>
        <source>Type a name, or choose a file</source>
        <translation>Einen Namen eingeben oder eine Datei wählen</translation>
    </message>
    <message>
        <source>A name cannot contain a slash; open the folder in the list</source>
        <translation>Ein Name enthält keinen Schrägstrich; den Ordner in der Liste öffnen</translation>
    </message>
</context>
<context>
    <name>console::CommandPanel</name>
    <message>
        <source>Given up: %1. The server may still be working on it.</source>
        <translation>Aufgegeben: %1. Der Server arbeitet vielleicht noch daran.</translation>
    </message>
    <message>
        <source>%1: %2 s, %3</source>
        <translation>%1: %2 s, %3</translation>
    </message>
    <message>
        <source>(an empty reply)</source>
        <translation>(leere Antwort)</translation>
    </message>
    <message>
        <source>The connection broke: %1.</source>
        <translation>Die Verbindung ist abgerissen: %1.</translation>
    </message>
    <message>
        <source>The connection broke before the reply to “%1” was complete (%2). The next command opens a new one.</source>
        <translation>Die Verbindung ist abgerissen, bevor die Antwort auf „%1“ vollständig war (%2). Der nächste Befehl stellt eine neue her.</translation>
    </message>
    <message>
        <source>No reply: %1</source>
        <translation>Keine Antwort: %1</translation>
    </message>
    <message>
        <source>Needs a connected server. What you type stays here.</source>
        <translation>Nur mit verbundenem Server. Was Sie eingeben, bleibt hier stehen.</translation>
    </message>
    <message>
        <source>Send the command (Enter)</source>
        <translation>Den Befehl senden (Eingabetaste)</translation>
    </message>
    <message>
        <source>Type a command first</source>
        <translation>Geben Sie zuerst einen Befehl ein</translation>
    </message>
    <message>
        <source>No command is under way</source>
        <translation>Es ist kein Befehl unterwegs</translation>
    </message>
    <message numerus="yes">
        <source>, %Ln more to go</source>
        <translation>
            <numerusform>, %Ln weiterer</numerusform>
            <numerusform>, %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>text: %1</source>
        <translation>Text: %1</translation>
    </message>
    <message>
        <source>Send a file to the server with txfile</source>
        <translation>Eine Datei mit txfile an den Server senden</translation>
    </message>
    <message>
        <source>Stop waiting for the reply and close its connection</source>
        <translation>Nicht länger auf die Antwort warten und ihre Verbindung schließen</translation>
    </message>
    <message>
        <source>The reply is a block of numbers followed by text, as of hist1d and hist2d, or a file, as of rxfile; set automatically for known commands</source>
        <translation>Die Antwort ist ein Block von Zahlen mit Text dahinter, wie bei hist1d und hist2d, oder eine Datei, wie bei rxfile; richtet sich nach dem Befehl</translation>
    </message>
    <message numerus="yes">
        <source>“%1” was given up; %Ln later command(s) got no reply.</source>
        <translation>
            <numerusform>„%1“ wurde aufgegeben; %Ln späterer Befehl blieb ohne Antwort.</numerusform>
            <numerusform>„%1“ wurde aufgegeben; %Ln spätere Befehle blieben ohne Antwort.</numerusform>
        </translation>
    </message>
    <message>
        <source>Send a File</source>
        <translation>Datei senden</translation>
    </message>
</context>
<context>
    <name>console::ConnectDialog</name>
    <message>
        <source>Program of the Server</source>
        <translation>Programm des Servers</translation>
    </message>
    <message>
        <source>Type the server&apos;s prompt.</source>
        <translation>Geben Sie den Prompt des Servers ein.</translation>
    </message>
    <message>
        <source>The prompt contains an escape other than \n \r \t \e \\ \xHH.</source>
        <translation>Der Prompt enthält eine andere Escape-Folge als \n \r \t \e \\ \xHH.</translation>
    </message>
    <message>
        <source>Type or browse for the program to start.</source>
        <translation>Geben Sie das Programm an, das gestartet werden soll, oder suchen Sie es.</translation>
    </message>
    <message>
        <source>The simulated server is not installed beside the console.</source>
        <translation>Der simulierte Server ist nicht neben der Konsole installiert.</translation>
    </message>
    <message>
        <source>There is no program of this name.</source>
        <translation>Ein Programm dieses Namens gibt es nicht.</translation>
    </message>
    <message>
        <source>Type the host&apos;s name or address.</source>
        <translation>Geben Sie Name oder Adresse des Rechners ein.</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>Use this server</source>
        <translation>Ab jetzt diesen Server verwenden</translation>
    </message>
</context>
<context>
    <name>console::DataAge</name>
    <message>
        <source>Last data: %1.</source>
        <translation>Letzte Daten: %1.</translation>
    </message>
    <message>
        <source>No data yet.</source>
        <translation>Noch keine Daten.</translation>
    </message>
    <message>
        <source>The server has not answered since %1 (%2 s). The window waits.</source>
        <translation>Der Server hat seit %1 (%2 s) nicht geantwortet. Das Fenster wartet.</translation>
    </message>
</context>
<context>
    <name>console::FileChooser</name>
    <message>
        <source>Choose a file</source>
        <translation>Eine Datei wählen</translation>
    </message>
    <message>
        <source>Choose a file; Enter opens the folder</source>
        <translation>Eine Datei wählen; die Eingabetaste öffnet den Ordner</translation>
    </message>
</context>
<context>
    <name>console::FileSender</name>
    <message>
        <source>the connection broke (%1).</source>
        <translation>die Verbindung ist abgerissen (%1).</translation>
    </message>
    <message>
        <source>its name cannot be sent. %1</source>
        <translation>ihr Name lässt sich nicht senden. %1</translation>
    </message>
    <message>
        <source>it cannot be read (%1).</source>
        <translation>sie lässt sich nicht lesen (%1).</translation>
    </message>
    <message>
        <source>it is larger than %1.</source>
        <translation>sie ist größer als %1.</translation>
    </message>
    <message>
        <source>there is no connection to the server.</source>
        <translation>es gibt keine Verbindung zum Server.</translation>
    </message>
    <message>
        <source>“%1” already exists in %2 on the server. Do you want to overwrite it?</source>
        <translation>„%1“ gibt es schon in %2 auf dem Server. Soll die Datei überschrieben werden?</translation>
    </message>
    <message>
        <source>The server does not report whether it has a file “%1”. Do you want to send it? A file of that name would be overwritten.</source>
        <translation>Der Server sagt nicht, ob er eine Datei „%1“ hat. Soll sie gesendet werden? Eine Datei dieses Namens würde überschrieben.</translation>
    </message>
    <message>
        <source>the server was stopped.</source>
        <translation>der Server wurde beendet.</translation>
    </message>
    <message>
        <source>%1 is not sent: %2 is being sent.</source>
        <translation>%1 wird nicht gesendet: %2 ist unterwegs.</translation>
    </message>
    <message>
        <source>Send a File</source>
        <translation>Datei senden</translation>
    </message>
    <message>
        <source>%1 is not sent: %2</source>
        <translation>%1 wird nicht gesendet: %2</translation>
    </message>
</context>
<context>
    <name>console::HistogramChooser</name>
    <message>
        <source>%1: map of %2 x %3 bins, %4 by %5</source>
        <translation>%1: Karte aus %2 x %3 Bins, %4 gegen %5</translation>
    </message>
    <message>
        <source>No reply: %1. Close and open this window to ask again.</source>
        <translation>Keine Antwort: %1. Schließen und öffnen Sie dieses Fenster, um erneut zu fragen.</translation>
    </message>
    <message>
        <source>Asking the server...</source>
        <translation>Der Server wird gefragt...</translation>
    </message>
    <message>
        <source>The server does not list its histograms: %1</source>
        <translation>Der Server listet seine Histogramme nicht auf: %1</translation>
    </message>
    <message>
        <source>The server has no histograms.</source>
        <translation>Der Server hat keine Histogramme.</translation>
    </message>
    <message>
        <source>A live window opens for each checked histogram.</source>
        <translation>Für jedes angekreuzte Histogramm öffnet sich ein Live-Fenster.</translation>
    </message>
    <message>
        <source>There is no connection to the server. The list is read again when it is back.</source>
        <translation>Es gibt keine Verbindung zum Server. Die Liste kommt wieder, sobald er zurück ist.</translation>
    </message>
    <message>
        <source>Open a live window for each checked histogram</source>
        <translation>Für jedes angekreuzte Histogramm ein Live-Fenster öffnen</translation>
    </message>
    <message>
        <source>Check a histogram first</source>
        <translation>Kreuzen Sie zuerst ein Histogramm an</translation>
    </message>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>There is no histogram to check</source>
        <translation>Es gibt kein Histogramm zum Ankreuzen</translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln row(s) of %2 bins, %3</source>
        <translation>
            <numerusform>%1: %Ln Zeile zu %2 Bins, %3</numerusform>
            <numerusform>%1: %Ln Zeilen zu je %2 Bins, %3</numerusform>
        </translation>
    </message>
    <message>
        <source>%1; only the first %2 are shown</source>
        <translation>%1; nur die ersten %2 werden gezeigt</translation>
    </message>
    <message>
        <source>Histograms of the server</source>
        <translation>Histogramme des Servers</translation>
    </message>
</context>
<context>
    <name>console::KeyboardDialog</name>
    <message>
        <source>Keyboard and Mouse</source>
        <translation>Tastatur und Maus</translation>
    </message>
    <message>
        <source>Keys and gestures</source>
        <translation>Tasten und Gesten</translation>
    </message>
    <message>
        <source>Key or gesture</source>
        <translation>Taste oder Geste</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>Wirkung</translation>
    </message>
    <message>
        <source>Step through the command history</source>
        <translation>Durch die eingegebenen Befehle gehen</translation>
    </message>
    <message>
        <source>Press the button of the alert</source>
        <translation>Die Schaltfläche des Hinweises drücken</translation>
    </message>
    <message>
        <source>Edit the chosen setting</source>
        <translation>Die gewählte Einstellung ändern</translation>
    </message>
    <message>
        <source>Update a live window</source>
        <translation>Ein Live-Fenster aktualisieren</translation>
    </message>
    <message>
        <source>In Runs and the snapshots: refresh</source>
        <translation>In Messläufen und Momentaufnahmen: aktualisieren</translation>
    </message>
    <message>
        <source>In the log file: find further down and up</source>
        <translation>In der Logdatei: weiter unten und weiter oben suchen</translation>
    </message>
    <message>
        <source>In Text on the Server: open</source>
        <translation>Im Text auf dem Server: öffnen</translation>
    </message>
    <message>
        <source>In Text on the Server: save, save under another name</source>
        <translation>Im Text auf dem Server: speichern, unter anderem Namen speichern</translation>
    </message>
    <message>
        <source>In a plot: its tools</source>
        <translation>In einem Diagramm: seine Werkzeuge</translation>
    </message>
    <message>
        <source>In a plot: move</source>
        <translation>In einem Diagramm: verschieben</translation>
    </message>
    <message>
        <source>In a plot: show all</source>
        <translation>In einem Diagramm: alles zeigen</translation>
    </message>
    <message>
        <source>In a plot: zoom in and out along X</source>
        <translation>In einem Diagramm: längs X vergrößern und verkleinern</translation>
    </message>
    <message>
        <source>In a plot: zoom in and out along Y</source>
        <translation>In einem Diagramm: längs Y vergrößern und verkleinern</translation>
    </message>
    <message>
        <source>In a plot: to the boxes beside its window, and back</source>
        <translation>In einem Diagramm: zu den Kästen neben seinem Fenster und zurück</translation>
    </message>
    <message>
        <source>Close a window</source>
        <translation>Ein Fenster schließen</translation>
    </message>
    <message>
        <source>In a plot: leave the tool</source>
        <translation>In einem Diagramm: das Werkzeug verlassen</translation>
    </message>
    <message>
        <source>In a plot: to the previous view, back and forward</source>
        <translation>In einem Diagramm: zur vorigen Ansicht, zurück und vor</translation>
    </message>
    <message>
        <source>In a plot: grid, logarithmic scale</source>
        <translation>In einem Diagramm: Gitter, logarithmische Skala</translation>
    </message>
    <message>
        <source>In a plot: the values under the pointer; pin them, copy them</source>
        <translation>In einem Diagramm: die Werte unter dem Zeiger; festhalten, kopieren</translation>
    </message>
    <message>
        <source>In a plot: set a marker; the ruler</source>
        <translation>In einem Diagramm: eine Marke setzen; das Lineal</translation>
    </message>
    <message>
        <source>In a plot: the legend</source>
        <translation>In einem Diagramm: die Legende</translation>
    </message>
    <message>
        <source>In a plot: select the next marker, rename it, remove it</source>
        <translation>In einem Diagramm: die nächste Marke wählen, umbenennen, löschen</translation>
    </message>
    <message>
        <source>In a plot: swap the ends of the ruler or profile</source>
        <translation>In einem Diagramm: die Enden von Lineal oder Profil tauschen</translation>
    </message>
    <message>
        <source>In a plot: move the cross, or the end of the ruler or profile; with Shift by ten bins</source>
        <translation>In einem Diagramm: das Kreuz oder das Ende von Lineal oder Profil verschieben; mit Umschalt um zehn Bins</translation>
    </message>
    <message>
        <source>In a plot: error bars, a reference, in a map a profile</source>
        <translation>In einem Diagramm: Fehlerbalken, eine Referenz, in einer Karte ein Profil</translation>
    </message>
    <message>
        <source>In a plot without values to copy: copy its picture</source>
        <translation>In einem Diagramm ohne Werte zum Kopieren: sein Bild kopieren</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>In a plot: zoom at the pointer; over an axis along it, over the colours their upper limit</source>
        <translation>In einem Diagramm: am Zeiger vergrößern; über einer Achse längs dieser, über den Farben deren obere Grenze</translation>
    </message>
    <message>
        <source>In a plot: zoom along Y; over the colours their lower limit</source>
        <translation>In einem Diagramm: längs Y vergrößern; über den Farben deren untere Grenze</translation>
    </message>
    <message>
        <source>In a plot: zoom along both axes</source>
        <translation>In einem Diagramm: längs beider Achsen vergrößern</translation>
    </message>
    <message>
        <source>Middle drag</source>
        <translation>Ziehen mit der mittleren Taste</translation>
    </message>
    <message>
        <source>In a plot: move; begun on an axis along it</source>
        <translation>In einem Diagramm: verschieben; auf einer Achse begonnen längs dieser</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>In a plot: follow the data again; on an axis along it</source>
        <translation>In einem Diagramm: wieder den Daten folgen; auf einer Achse längs dieser</translation>
    </message>
    <message>
        <source>Side buttons</source>
        <translation>Seitliche Maustasten</translation>
    </message>
    <message>
        <source>Click in the legend</source>
        <translation>Klick in der Legende</translation>
    </message>
    <message>
        <source>In a plot: hide or show a curve; twice: show it alone</source>
        <translation>In einem Diagramm: eine Kurve verbergen oder zeigen; zweimal: sie allein zeigen</translation>
    </message>
</context>
<context>
    <name>console::LanguageMenu</name>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Sprache</translation>
    </message>
    <message>
        <source>As on the &amp;Desktop</source>
        <translation>Wie auf dem Desk&amp;top</translation>
    </message>
    <message>
        <source>Show all texts in this language</source>
        <translation>Alle Texte in dieser Sprache zeigen</translation>
    </message>
    <message>
        <source>Show all texts in the language of the desktop</source>
        <translation>Alle Texte in der Sprache des Desktops zeigen</translation>
    </message>
</context>
<context>
    <name>console::LastDataBar</name>
    <message>
        <source>Save &amp;Picture...</source>
        <translation>&amp;Bild speichern...</translation>
    </message>
    <message>
        <source>Save what is shown as a picture</source>
        <translation>Das Gezeigte als Bild speichern</translation>
    </message>
    <message>
        <source>Save &amp;Values...</source>
        <translation>&amp;Werte speichern...</translation>
    </message>
    <message>
        <source>Save what is shown as comma-separated values</source>
        <translation>Das Gezeigte als durch Kommas getrennte Werte speichern</translation>
    </message>
    <message>
        <source>Show the &amp;New Data</source>
        <translation>&amp;Neue Daten zeigen</translation>
    </message>
    <message>
        <source>Discard these data; the server has none yet</source>
        <translation>Diese Daten aufgeben; der Server hat noch keine</translation>
    </message>
    <message>
        <source>These data are from %1, when the server was last connected. They are kept until it has new data.</source>
        <translation>Diese Daten sind von %1, als der Server zuletzt verbunden war. Sie bleiben, bis er neue hat.</translation>
    </message>
</context>
<context>
    <name>console::LiveCurves</name>
    <message>
        <source>Intensity</source>
        <translation>Intensität</translation>
    </message>
    <message>
        <source>Each Curve</source>
        <translation>Jede Kurve</translation>
    </message>
    <message>
        <source>Sum of All</source>
        <translation>Summe aller</translation>
    </message>
    <message>
        <source>Curves...</source>
        <translation>Kurven...</translation>
    </message>
    <message>
        <source>The reply contains no axis and is not shown: %1</source>
        <translation>Die Antwort nennt keine Achse und wird nicht gezeigt: %1</translation>
    </message>
    <message>
        <source>The reply contains a value outside of its axis and is not shown.</source>
        <translation>Die Antwort enthält einen Wert außerhalb ihrer Achse und wird nicht gezeigt.</translation>
    </message>
    <message>
        <source>%1 of %2 values are not finite.</source>
        <translation>%1 von %2 Werten sind nicht endlich.</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>The reply contains no values.</source>
        <translation>Die Antwort enthält keine Werte.</translation>
    </message>
    <message>
        <source>The reply is incomplete: its last bin is not shown.</source>
        <translation>Die Antwort ist unvollständig: ihr letzter Bin fehlt im Bild.</translation>
    </message>
</context>
<context>
    <name>console::LiveMap</name>
    <message>
        <source>%1 (filtered, %2)</source>
        <translation>%1 (gefiltert, %2)</translation>
    </message>
    <message>
        <source>The reply contains %1 values for %2 x %3 bins and is not shown.</source>
        <translation>Die Antwort enthält %1 Werte für %2 x %3 Bins und wird nicht gezeigt.</translation>
    </message>
</context>
<context>
    <name>console::LiveStatistics</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Save to a file</source>
        <translation>In eine Datei speichern</translation>
    </message>
    <message>
        <source>No data yet</source>
        <translation>Noch keine Daten</translation>
    </message>
</context>
<context>
    <name>console::LogTail</name>
    <message>
        <source>it is not an ordinary file</source>
        <translation>es ist keine gewöhnliche Datei</translation>
    </message>
</context>
<context>
    <name>console::LogWindow</name>
    <message>
        <source>Open a Log File</source>
        <translation>Logdatei öffnen</translation>
    </message>
    <message>
        <source>Log files (*.log *.txt);;All files (*)</source>
        <translation>Logdateien (*.log *.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>(%1 of the file are not shown)</source>
        <translation>(%1 der Datei werden nicht gezeigt)</translation>
    </message>
    <message>
        <source>(the file was emptied or rewritten)</source>
        <translation>(die Datei wurde geleert oder neu geschrieben)</translation>
    </message>
    <message>
        <source>(the file was replaced by another one)</source>
        <translation>(die Datei wurde durch eine andere ersetzt)</translation>
    </message>
    <message>
        <source>Type the text to find first</source>
        <translation>Geben Sie zuerst den gesuchten Text ein</translation>
    </message>
    <message>
        <source>“%1” was not found in the shown lines.</source>
        <translation>„%1“ steht nicht in den gezeigten Zeilen.</translation>
    </message>
    <message>
        <source>Choose a log file. The console writes one when it is started with --log FILE.</source>
        <translation>Wählen Sie eine Logdatei. Die Konsole schreibt eine, wenn sie mit --log DATEI gestartet wird.</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2. It is shown as soon as it can be read.</source>
        <translation>%1 lässt sich nicht lesen: %2. Die Datei wird gezeigt, sobald sie lesbar ist.</translation>
    </message>
    <message>
        <source>The file was removed. A new file of this name is shown as soon as it exists.</source>
        <translation>Die Datei wurde entfernt. Eine neue Datei dieses Namens wird gezeigt, sobald es sie gibt.</translation>
    </message>
    <message>
        <source>Following the file.</source>
        <translation>Die Datei wird verfolgt.</translation>
    </message>
    <message>
        <source>Paused; %1 more in the file. Follow shows them.</source>
        <translation>Angehalten; in der Datei sind %1 mehr. „Verfolgen“ zeigt sie.</translation>
    </message>
    <message>
        <source>Paused; nothing new in the file.</source>
        <translation>Angehalten; nichts Neues in der Datei.</translation>
    </message>
    <message>
        <source>Find the text further down</source>
        <translation>Den Text weiter unten suchen</translation>
    </message>
    <message>
        <source>Find the text further up</source>
        <translation>Den Text weiter oben suchen</translation>
    </message>
</context>
<context>
    <name>console::MainWindow</name>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>Co&amp;nnect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>Wait until the server has ended</source>
        <translation>Warten Sie, bis sich der Server beendet hat</translation>
    </message>
    <message>
        <source>A server is in use already</source>
        <translation>Es wird schon ein Server verwendet</translation>
    </message>
    <message>
        <source>There is no server to restart</source>
        <translation>Es gibt keinen Server, der neu gestartet werden könnte</translation>
    </message>
    <message>
        <source>No server is in use</source>
        <translation>Es wird kein Server verwendet</translation>
    </message>
    <message>
        <source>Kill the local server; unsaved data are lost</source>
        <translation>Den lokalen Server gewaltsam beenden; was er nicht gespeichert hat, geht verloren</translation>
    </message>
    <message>
        <source>No server process of this console is running</source>
        <translation>Es läuft kein Serverprozess dieser Konsole</translation>
    </message>
    <message>
        <source>No command is under way</source>
        <translation>Es ist kein Befehl unterwegs</translation>
    </message>
    <message>
        <source>Wait until the sent lines are answered</source>
        <translation>Warten Sie, bis die gesendeten Zeilen beantwortet sind</translation>
    </message>
    <message>
        <source>No server</source>
        <translation>Kein Server</translation>
    </message>
    <message>
        <source>last: %1</source>
        <translation>zuletzt: %1</translation>
    </message>
    <message>
        <source>Starting...</source>
        <translation>Wird gestartet...</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Wird verbunden...</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 unter %2</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>Keine Verbindung</translation>
    </message>
    <message>
        <source>Save the Record</source>
        <translation>Protokoll speichern</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Tarnis Console %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Operates a data-acquisition server: status, commands, settings, live windows.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;Tarnis-Konsole %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Bedient einen Server der Datennahme: Status, Befehle, Einstellungen, Live-Fenster.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>No window is open</source>
        <translation>Es ist kein Fenster offen</translation>
    </message>
    <message>
        <source>This desktop (Wayland) places windows itself; started with QT_QPA_PLATFORM=xcb the console can do it</source>
        <translation>Dieser Desktop (Wayland) ordnet Fenster selbst an; mit QT_QPA_PLATFORM=xcb gestartet kann es die Konsole</translation>
    </message>
    <message>
        <source>Arrange all open windows side by side</source>
        <translation>Alle offenen Fenster nebeneinander anordnen</translation>
    </message>
    <message>
        <source>Arrange all open windows in a cascade</source>
        <translation>Alle offenen Fenster hintereinander anordnen</translation>
    </message>
    <message>
        <source>Close all windows but this one</source>
        <translation>Alle Fenster außer diesem schließen</translation>
    </message>
    <message>
        <source>A run is under way at %1. It ends with the server.</source>
        <translation>Auf %1 läuft ein Messlauf. Er endet mit dem Server.</translation>
    </message>
    <message>
        <source>&amp;End the Run</source>
        <translation>Messlauf &amp;beenden</translation>
    </message>
    <message>
        <source>Let the server end</source>
        <translation>Den Server herunterfahren</translation>
    </message>
    <message>
        <source>Disconnect from the server, which keeps running</source>
        <translation>Vom Server trennen; er läuft weiter</translation>
    </message>
    <message>
        <source>Start %1</source>
        <translation>%1 starten</translation>
    </message>
    <message>
        <source>Connect to %1</source>
        <translation>Mit %1 verbinden</translation>
    </message>
    <message>
        <source>Shut the server down and start it again</source>
        <translation>Den Server herunterfahren und neu starten</translation>
    </message>
    <message>
        <source>Disconnect and connect again</source>
        <translation>Trennen und erneut verbinden</translation>
    </message>
    <message>
        <source>Start another server, or connect to one</source>
        <translation>Einen anderen Server starten oder mit einem verbinden</translation>
    </message>
    <message>
        <source>Send a file to the server with txfile</source>
        <translation>Eine Datei mit txfile an den Server senden</translation>
    </message>
    <message>
        <source>Stop waiting for the reply</source>
        <translation>Nicht länger auf die Antwort warten</translation>
    </message>
    <message>
        <source>Ask the server for its settings</source>
        <translation>Den Server nach seinen Einstellungen fragen</translation>
    </message>
    <message>
        <source>Bring this window forward</source>
        <translation>Dieses Fenster nach vorn holen</translation>
    </message>
    <message>
        <source>The last server cannot be used. %1</source>
        <translation>Der letzte Server ist nicht verwendbar. %1</translation>
    </message>
    <message>
        <source>The settings file %1 is not valid. Settings are not stored.</source>
        <translation>Die Einstellungsdatei %1 ist ungültig. Einstellungen werden nicht gespeichert.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be written. Commands, windows and the server are not stored.</source>
        <translation>Die Einstellungsdatei %1 ist nicht beschreibbar. Befehle, Fenster und Server werden nicht gespeichert.</translation>
    </message>
    <message>
        <source>&amp;Start Server</source>
        <translation>&amp;Server starten</translation>
    </message>
    <message>
        <source>Shut &amp;Down Server</source>
        <translation>Server &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Restart Server</source>
        <translation>Server &amp;neu starten</translation>
    </message>
    <message>
        <source>&amp;Reconnect</source>
        <translation>&amp;Neu verbinden</translation>
    </message>
    <message>
        <source>Send the settings to the server</source>
        <translation>Die Einstellungen an den Server senden</translation>
    </message>
    <message>
        <source>There is nothing to send: all settings are as on the server</source>
        <translation>Es gibt nichts zu senden: alle Einstellungen sind wie auf dem Server</translation>
    </message>
    <message>
        <source>Send the settings and let the server store them</source>
        <translation>Die Einstellungen senden und vom Server speichern lassen</translation>
    </message>
    <message>
        <source>The record is empty</source>
        <translation>Das Protokoll ist leer</translation>
    </message>
    <message>
        <source>Write the commands and replies to a text file</source>
        <translation>Befehle und Antworten in eine Textdatei schreiben</translation>
    </message>
    <message>
        <source>Remove the commands and replies from the window</source>
        <translation>Befehle und Antworten aus dem Fenster entfernen</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Settings and addresses</source>
        <translation>Einstellungen und Adressen</translation>
    </message>
    <message>
        <source>The %1 events of the last run were not saved. They are lost when %2 ends.</source>
        <translation>Die %1 Ereignisse des letzten Laufs wurden nicht gespeichert. Sie gehen verloren, wenn %2 endet.</translation>
    </message>
    <message>
        <source>&amp;End Without Saving</source>
        <translation>Ohne Speichern b&amp;eenden</translation>
    </message>
    <message>
        <source>Name of this status in the log: %1</source>
        <translation>Name dieses Zustands in der Logdatei: %1</translation>
    </message>
</context>
<context>
    <name>console::ModuleAnswers</name>
    <message>
        <source>done</source>
        <translation>erledigt</translation>
    </message>
    <message>
        <source>refused: %1</source>
        <translation>abgelehnt: %1</translation>
    </message>
    <message>
        <source>%1 is not a valid range of modules</source>
        <translation>%1 ist kein gültiger Bereich von Modulen</translation>
    </message>
    <message>
        <source>Type the number of a module</source>
        <translation>Geben Sie die Nummer eines Moduls ein</translation>
    </message>
    <message>
        <source>These are more than %L1 modules</source>
        <translation>Das sind mehr als %L1 Module</translation>
    </message>
</context>
<context>
    <name>console::ModulesWindow</name>
    <message>
        <source>No reply: %1. It is not known whether a module has executed the command: check with stat or setting.</source>
        <translation>Keine Antwort: %1. Ob ein Modul den Befehl ausgeführt hat, ist nicht bekannt: prüfen Sie es mit stat oder setting.</translation>
    </message>
    <message>
        <source>no reply</source>
        <translation>keine Antwort</translation>
    </message>
    <message>
        <source>No reply: the server was stopped.</source>
        <translation>Keine Antwort: der Server wurde beendet.</translation>
    </message>
    <message>
        <source>Answers of the modules</source>
        <translation>Antworten der Module</translation>
    </message>
    <message>
        <source>State of the command</source>
        <translation>Stand des Befehls</translation>
    </message>
    <message>
        <source>Se&amp;nd</source>
        <translation>S&amp;enden</translation>
    </message>
    <message>
        <source>&amp;Give Up</source>
        <translation>Auf&amp;geben</translation>
    </message>
    <message>
        <source>Type a command</source>
        <translation>Geben Sie einen Befehl ein</translation>
    </message>
    <message>
        <source>These are several modules: choose &quot;Several modules&quot; above</source>
        <translation>Das sind mehrere Module: wählen Sie oben „Mehrere Module“</translation>
    </message>
    <message>
        <source>module %1</source>
        <translation>Modul %1</translation>
    </message>
    <message>
        <source>all modules</source>
        <translation>alle Module</translation>
    </message>
    <message>
        <source>family orsino</source>
        <translation>Familie orsino</translation>
    </message>
    <message>
        <source>Asking the server...</source>
        <translation>Der Server wird gefragt...</translation>
    </message>
    <message numerus="yes">
        <source>Waiting for %Ln more</source>
        <translation>
            <numerusform>Noch %Ln unterwegs</numerusform>
            <numerusform>Noch %Ln unterwegs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) answered</source>
        <translation>
            <numerusform>%Ln Zeile beantwortet</numerusform>
            <numerusform>%Ln Zeilen beantwortet</numerusform>
        </translation>
    </message>
    <message>
        <source>Given up. It is not known whether a module has executed the command: check with stat or setting.</source>
        <translation>Aufgegeben. Ob ein Modul den Befehl ausgeführt hat, ist nicht bekannt: prüfen Sie es mit stat oder setting.</translation>
    </message>
    <message>
        <source>given up</source>
        <translation>aufgegeben</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>Modul</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>waiting...</source>
        <translation>wartet...</translation>
    </message>
    <message>
        <source>Numbers between commas; 4-7 is a range</source>
        <translation>Nummern zwischen Kommas; 4-7 ist ein Bereich</translation>
    </message>
    <message>
        <source>All of them get the command</source>
        <translation>Alle bekommen den Befehl</translation>
    </message>
    <message>
        <source>Sends “%1” and so on</source>
        <translation>Sendet „%1“ und so weiter</translation>
    </message>
    <message>
        <source>Sends “%1”</source>
        <translation>Sendet „%1“</translation>
    </message>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>Wait for the reply</source>
        <translation>Warten Sie auf die Antwort</translation>
    </message>
    <message>
        <source>Stop waiting for the reply</source>
        <translation>Nicht länger auf die Antwort warten</translation>
    </message>
    <message>
        <source>No command is under way</source>
        <translation>Es ist kein Befehl unterwegs</translation>
    </message>
</context>
<context>
    <name>console::PlotThemeMenu</name>
    <message>
        <source>&amp;Plots</source>
        <translation>Dia&amp;gramme</translation>
    </message>
    <message>
        <source>As the &amp;Window</source>
        <translation>Wie das &amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Print</source>
        <translation>D&amp;ruck</translation>
    </message>
    <message>
        <source>&amp;High Contrast</source>
        <translation>Hoher &amp;Kontrast</translation>
    </message>
    <message>
        <source>&amp;Classic</source>
        <translation>K&amp;lassisch</translation>
    </message>
    <message>
        <source>Light or dark plots, like the console&apos;s windows</source>
        <translation>Helle oder dunkle Diagramme, wie die Fenster der Konsole</translation>
    </message>
    <message>
        <source>Plots on white</source>
        <translation>Diagramme auf Weiß</translation>
    </message>
    <message>
        <source>Plots on dark grey</source>
        <translation>Diagramme auf Dunkelgrau</translation>
    </message>
    <message>
        <source>Plots in black on white, for paper</source>
        <translation>Diagramme schwarz auf weiß, für Papier</translation>
    </message>
    <message>
        <source>Plots on black with thick lines and large contrast</source>
        <translation>Diagramme auf Schwarz mit dicken Linien und hohem Kontrast</translation>
    </message>
    <message>
        <source>Plots on black in a grey frame, the original look</source>
        <translation>Diagramme auf Schwarz in grauem Rahmen, das ursprüngliche Aussehen</translation>
    </message>
</context>
<context>
    <name>console::RateWindow</name>
    <message>
        <source>Event Rate</source>
        <translation>Ereignisrate</translation>
    </message>
    <message>
        <source>No reply: %1. Polling continues.</source>
        <translation>Keine Antwort: %1. Es wird erneut gefragt.</translation>
    </message>
    <message>
        <source>The server reports no rate: its reply to stat has no line &quot;rate:&quot;.</source>
        <translation>Der Server nennt keine Rate: in seiner Antwort auf stat fehlt die Zeile „rate:“.</translation>
    </message>
    <message>
        <source>largest %1 /s</source>
        <translation>höchste %1 /s</translation>
    </message>
    <message>
        <source>%1 /s now, %2 /s on average over %3 s</source>
        <translation>%1 /s jetzt, %2 /s im Mittel über %3 s</translation>
    </message>
    <message>
        <source>Reply, one a second</source>
        <translation>Antwort, eine in der Sekunde</translation>
    </message>
    <message>
        <source>Rate [1/s]</source>
        <translation>Rate [1/s]</translation>
    </message>
    <message>
        <source>Needs a connected server; the curve continues when it is back.</source>
        <translation>Nur mit verbundenem Server; die Kurve geht von selbst weiter, sobald er wieder da ist.</translation>
    </message>
    <message>
        <source>Clear the curve and start again</source>
        <translation>Die Punkte verwerfen und neu beginnen</translation>
    </message>
    <message>
        <source>There is no point yet</source>
        <translation>Noch gibt es keinen Punkt</translation>
    </message>
</context>
<context>
    <name>console::RunControl</name>
    <message>
        <source>The connection broke before the server answered “%1” (%2). Check the state of the run before you try again.</source>
        <translation>Die Verbindung brach ab, bevor der Server auf „%1“ geantwortet hat (%2). Prüfen Sie den Zustand des Laufs, bevor Sie es erneut versuchen.</translation>
    </message>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>Wait until the server has answered</source>
        <translation>Warten, bis der Server geantwortet hat</translation>
    </message>
    <message>
        <source>A run is under way already</source>
        <translation>Ein Lauf ist schon im Gang</translation>
    </message>
    <message>
        <source>No run is under way</source>
        <translation>Kein Lauf ist im Gang</translation>
    </message>
    <message>
        <source>There are no events to clear</source>
        <translation>Es gibt keine Ereignisse zu löschen</translation>
    </message>
    <message>
        <source>A new run discards the %1 events on the server. They were not saved.</source>
        <translation>Ein neuer Lauf verwirft die %1 Ereignisse auf dem Server. Nichts davon wurde gespeichert.</translation>
    </message>
    <message>
        <source>&amp;Start Without Saving</source>
        <translation>&amp;Starten ohne Speichern</translation>
    </message>
    <message>
        <source>Clear discards the %1 events on the server. They were not saved.</source>
        <translation>Löschen verwirft die %1 Ereignisse auf dem Server. Nichts davon wurde gespeichert.</translation>
    </message>
    <message>
        <source>Clear discards the data on the server. The server does not report whether there are any.</source>
        <translation>Löschen verwirft die Daten auf dem Server. Der Server meldet nicht, ob es welche gibt.</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>The server refused “%1”: %2</source>
        <translation>Der Server hat „%1“ abgelehnt: %2</translation>
    </message>
</context>
<context>
    <name>console::RunPanel</name>
    <message>
        <source>Start &amp;Run</source>
        <translation>Lauf &amp;starten</translation>
    </message>
    <message>
        <source>St&amp;op Run</source>
        <translation>Lauf an&amp;halten</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Number of the current or last run</source>
        <translation>Nummer des aktuellen oder letzten Laufs</translation>
    </message>
    <message>
        <source>Whether the server is acquiring data</source>
        <translation>Ob der Server Daten nimmt</translation>
    </message>
    <message>
        <source>Time since the run began or was cleared</source>
        <translation>Zeit seit Beginn oder Löschen des Laufs</translation>
    </message>
    <message>
        <source>Time in which the detectors could count</source>
        <translation>Zeit, in der die Detektoren zählen konnten</translation>
    </message>
    <message>
        <source>Events since the run began or was cleared</source>
        <translation>Ereignisse seit Beginn oder Löschen des Laufs</translation>
    </message>
    <message>
        <source>Current number of events per second</source>
        <translation>Aktuelle Zahl der Ereignisse pro Sekunde</translation>
    </message>
    <message>
        <source>Begin the next run (the command start)</source>
        <translation>Den nächsten Lauf beginnen (der Befehl start)</translation>
    </message>
    <message>
        <source>End the run (the command stop)</source>
        <translation>Den Lauf beenden (der Befehl stop)</translation>
    </message>
    <message>
        <source>Set histograms, counts and times to zero (the command clear)</source>
        <translation>Histogramme, Zähler und Zeiten auf null setzen (der Befehl clear)</translation>
    </message>
    <message>
        <source>No run yet</source>
        <translation>Noch kein Lauf</translation>
    </message>
    <message>
        <source>Run %1</source>
        <translation>Lauf %1</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>steht</translation>
    </message>
    <message>
        <source>Elapsed %1</source>
        <translation>Vergangen %1</translation>
    </message>
    <message>
        <source>Live %1</source>
        <translation>Aktiv %1</translation>
    </message>
    <message>
        <source>Events %1</source>
        <translation>Ereignisse %1</translation>
    </message>
    <message>
        <source>Rate %1 /s</source>
        <translation>Rate %1 /s</translation>
    </message>
</context>
<context>
    <name>console::RunTable</name>
    <message>
        <source>Prefix</source>
        <translation>Präfix</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Lauf</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>console::RunsWindow</name>
    <message>
        <source>No reply: %1. Refresh to ask again.</source>
        <translation>Keine Antwort: %1. „Aktualisieren“ fragt noch einmal.</translation>
    </message>
    <message>
        <source>No reply: the server was stopped.</source>
        <translation>Keine Antwort: der Server wurde beendet.</translation>
    </message>
    <message>
        <source>The folder cannot be requested: %1</source>
        <translation>Nach dem Ordner lässt sich nicht fragen: %1</translation>
    </message>
    <message>
        <source>Asking the server...</source>
        <translation>Der Server wird gefragt...</translation>
    </message>
    <message>
        <source>The server does not list the folder: %1</source>
        <translation>Der Server listet den Ordner nicht auf: %1</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>%1 in %2, and %3</source>
        <translation>%1 in %2 und %3</translation>
    </message>
    <message>
        <source>Folder of the Runs</source>
        <translation>Ordner der Messläufe</translation>
    </message>
    <message>
        <source>Wait for the reply</source>
        <translation>Warten Sie auf die Antwort</translation>
    </message>
    <message>
        <source>Needs a connected server. Showing the previous runs.</source>
        <translation>Nur mit verbundenem Server. Die bisherigen Messläufe bleiben hier stehen.</translation>
    </message>
    <message>
        <source>Choose the folder on the server</source>
        <translation>Den Ordner auf dem Server wählen</translation>
    </message>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>Insert the run&apos;s path into the command line</source>
        <translation>Den Pfad des Messlaufs in die Befehlszeile übernehmen</translation>
    </message>
    <message>
        <source>Choose a run in the table first</source>
        <translation>Wählen Sie zuerst einen Messlauf in der Tabelle</translation>
    </message>
    <message numerus="yes">
        <source>%Ln run(s)</source>
        <translation>
            <numerusform>%Ln Messlauf</numerusform>
            <numerusform>%Ln Messläufe</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%L1 of %Ln run(s)</source>
        <translation>
            <numerusform>%L1 von %Ln Messlauf</numerusform>
            <numerusform>%L1 von %Ln Messläufen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln other entry(s)</source>
        <translation>
            <numerusform>%Ln anderer Eintrag</numerusform>
            <numerusform>%Ln andere Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Ask the server again</source>
        <translation>Den Server erneut fragen</translation>
    </message>
</context>
<context>
    <name>console::SaveReports</name>
    <message>
        <source>Comma-separated values (*.csv)</source>
        <translation>Durch Kommas getrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Gespeichert als %1.</translation>
    </message>
    <message>
        <source>%1 was not saved: %2.</source>
        <translation>%1 wurde nicht gespeichert: %2.</translation>
    </message>
    <message>
        <source>%1, run %2</source>
        <translation>%1, Lauf %2</translation>
    </message>
    <message>
        <source>Save: %1</source>
        <translation>Speichern: %1</translation>
    </message>
</context>
<context>
    <name>console::ServerController</name>
    <message>
        <source>There is no program “%1” to start here. Choose another server.</source>
        <translation>Ein Programm „%1“ gibt es hier nicht. Wählen Sie einen anderen Server.</translation>
    </message>
    <message>
        <source>The program “%1” could not be started. Check that it is executable, or choose another server.</source>
        <translation>Das Programm „%1“ ließ sich nicht starten. Prüfen Sie, ob es ausgeführt werden darf, oder wählen Sie einen anderen Server.</translation>
    </message>
    <message>
        <source>A program answers at %1, but does not send the prompt “%2”. Check the port and the prompt.</source>
        <translation>Unter %1 antwortet etwas, meldet sich aber nicht mit dem Prompt „%2“. Prüfen Sie, ob Port und Prompt die des Servers sind.</translation>
    </message>
    <message>
        <source>it crashed</source>
        <translation>Absturz</translation>
    </message>
    <message>
        <source>exit code %1</source>
        <translation>Rückgabewert %1</translation>
    </message>
    <message>
        <source>The server %1 has ended unexpectedly (%2). Start it again to go on.</source>
        <translation>Der Server %1 hat sich unerwartet beendet (%2). Starten Sie ihn erneut, um weiterzuarbeiten.</translation>
    </message>
    <message>
        <source>The server %1 has ended before it was ready (%2). Start it again, or choose another.</source>
        <translation>Der Server %1 hat sich beendet, bevor er bereit war (%2). Starten Sie ihn erneut oder wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>%1 has not ended yet. It is killed after half a minute.</source>
        <translation>%1 wird heruntergefahren, hat sich aber noch nicht beendet. Nach einer halben Minute wird er gewaltsam beendet.</translation>
    </message>
    <message>
        <source>%1 runs, but has not announced its port yet (the line “UI port:”).</source>
        <translation>%1 läuft, hat aber seinen Port noch nicht genannt (die Zeile „UI port:“).</translation>
    </message>
    <message>
        <source>%1 has greeted, but does not answer “stat” yet.</source>
        <translation>%1 hat sich gemeldet, antwortet aber noch nicht auf „stat“.</translation>
    </message>
    <message>
        <source>The server is busy (%1) and is not shut down now. Wait until it is done.</source>
        <translation>Der Server ist beschäftigt (%1) und wird jetzt nicht heruntergefahren. Warten Sie, bis er fertig ist.</translation>
    </message>
    <message>
        <source>The base path cannot be changed in the status “%1”</source>
        <translation>Der Basispfad lässt sich im Status „%1“ nicht ändern</translation>
    </message>
    <message>
        <source>Start it again to go on.</source>
        <translation>Starten Sie ihn erneut, um weiterzuarbeiten.</translation>
    </message>
    <message>
        <source>Connect again to go on.</source>
        <translation>Verbinden Sie erneut, um weiterzuarbeiten.</translation>
    </message>
    <message>
        <source>%1 accepts connections, but no longer sends its greeting.</source>
        <translation>%1 nimmt Verbindungen an, meldet sich aber nicht mehr.</translation>
    </message>
    <message>
        <source>%1 runs, but does not send the prompt “%2”. Choose the server with the correct prompt.</source>
        <translation>%1 läuft, meldet sich aber nicht mit dem Prompt „%2“. Wählen Sie den Server mit dem richtigen Prompt.</translation>
    </message>
    <message>
        <source>The host of %1 was not found. Check its name.</source>
        <translation>Der Rechner wurde nicht gefunden (%1). Prüfen Sie seinen Namen.</translation>
    </message>
    <message>
        <source>Nothing answers at %1: the connection was refused.</source>
        <translation>Unter %1 antwortet kein Server: Die Verbindung wurde abgelehnt.</translation>
    </message>
    <message>
        <source>Nothing answers at %1 within %2 s.</source>
        <translation>Unter %1 antwortet innerhalb von %2 s kein Server.</translation>
    </message>
    <message>
        <source>No connection to %1: %2.</source>
        <translation>Keine Verbindung zu %1: %2.</translation>
    </message>
    <message>
        <source>Check that the server runs there, then connect again.</source>
        <translation>Prüfen Sie, ob der Server dort läuft, und verbinden Sie erneut.</translation>
    </message>
    <message>
        <source>Check host and port, and that the server runs there.</source>
        <translation>Prüfen Sie, ob Rechner und Port stimmen und ob der Server dort läuft.</translation>
    </message>
    <message>
        <source>The connection to %1 broke: %2.</source>
        <translation>Die Verbindung zu %1 ist abgerissen: %2.</translation>
    </message>
    <message>
        <source>The console connects automatically when the server answers.</source>
        <translation>Die Konsole verbindet sich von selbst, sobald der Server antwortet.</translation>
    </message>
    <message>
        <source>%1 refuses the connection: %2. Disconnect another client of this server, then try again.</source>
        <translation>%1 lehnt die Verbindung ab: %2. Trennen Sie ein anderes Programm von diesem Server, und versuchen Sie es dann noch einmal.</translation>
    </message>
</context>
<context>
    <name>console::ServerProbe</name>
    <message>
        <source>No answer in time</source>
        <translation>Keine rechtzeitige Antwort</translation>
    </message>
</context>
<context>
    <name>console::ServerTextWindow</name>
    <message>
        <source>Saved.</source>
        <translation>Gespeichert.</translation>
    </message>
    <message>
        <source>Opened, %1.</source>
        <translation>Geöffnet, %1.</translation>
    </message>
    <message>
        <source>No reply: %1. Try again.</source>
        <translation>Keine Antwort: %1. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>No reply: the server was stopped. The text stays here.</source>
        <translation>Keine Antwort: der Server wurde beendet. Der Text bleibt hier stehen.</translation>
    </message>
    <message>
        <source>Open on the Server</source>
        <translation>Auf dem Server öffnen</translation>
    </message>
    <message>
        <source>Save on the Server</source>
        <translation>Auf dem Server speichern</translation>
    </message>
    <message>
        <source>Reading %1...</source>
        <translation>%1 wird gelesen...</translation>
    </message>
    <message>
        <source>Not saved: the file is in Latin-1, and a character of the text is not.</source>
        <translation>Nicht gespeichert: die Datei ist in Latin-1, und ein Zeichen des Textes gehört nicht dazu.</translation>
    </message>
    <message>
        <source>Writing %1...</source>
        <translation>%1 wird geschrieben...</translation>
    </message>
    <message>
        <source>Needs a connected server. The text stays here.</source>
        <translation>Nur mit verbundenem Server. Der Text bleibt hier stehen.</translation>
    </message>
    <message>
        <source>%1 is not opened: %2</source>
        <translation>%1 wird nicht geöffnet: %2</translation>
    </message>
    <message>
        <source>%1 is not opened: it is not a text, or larger than %2.</source>
        <translation>%1 wird nicht geöffnet: es ist kein Text oder größer als %2.</translation>
    </message>
    <message>
        <source>%1 is not saved: %2</source>
        <translation>%1 wird nicht gespeichert: %2</translation>
    </message>
    <message>
        <source>The text has changes that are not saved on the server.</source>
        <translation>Der Text hat Änderungen, die auf dem Server nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>A text without a file yet</source>
        <translation>Ein Text, der noch keine Datei hat</translation>
    </message>
    <message>
        <source>Wait for the reply</source>
        <translation>Warten Sie auf die Antwort</translation>
    </message>
    <message>
        <source>Nothing has changed</source>
        <translation>Nichts hat sich geändert</translation>
    </message>
    <message>
        <source>No server is connected: they cannot be saved now.</source>
        <translation>Kein Server ist verbunden: Jetzt lassen sie sich nicht speichern.</translation>
    </message>
    <message>
        <source>Open a file on the server</source>
        <translation>Eine Datei auf dem Server öffnen</translation>
    </message>
    <message>
        <source>Save under another name on the server</source>
        <translation>Unter einem anderen Namen auf dem Server speichern</translation>
    </message>
    <message>
        <source>Save on the server</source>
        <translation>Auf dem Server speichern</translation>
    </message>
    <message>
        <source>%1 is not opened: the text is being written.</source>
        <translation>%1 wird nicht geöffnet: der Text wird gerade geschrieben.</translation>
    </message>
    <message>
        <source>Saved. Later edits are not saved yet.</source>
        <translation>Gespeichert. Spätere Änderungen sind noch nicht gespeichert.</translation>
    </message>
</context>
<context>
    <name>console::SessionRecovery</name>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>The server is being stopped. This window resumes when a server is connected again.</source>
        <translation>Die Verbindung zum Server wird beendet. Es geht weiter, sobald wieder ein Server verbunden ist.</translation>
    </message>
    <message>
        <source>The connection broke: %1. This window resumes when the server answers again.</source>
        <translation>Die Verbindung ist abgerissen: %1. Es geht weiter, sobald der Server wieder antwortet.</translation>
    </message>
    <message>
        <source>There is no connection to the server. This window resumes when it is back.</source>
        <translation>Es gibt keine Verbindung zum Server. Es geht weiter, sobald er zurück ist.</translation>
    </message>
    <message>
        <source>The server has ended. This window resumes when it has been started again in the main window.</source>
        <translation>Der Server ist beendet. Hier geht es weiter, wenn er im Hauptfenster wieder gestartet wurde.</translation>
    </message>
    <message>
        <source>“Update” tries at once.</source>
        <translation>„Aktualisieren“ versucht es sofort.</translation>
    </message>
    <message>
        <source>The server refuses a connection for this window: %1. Close another window or another client. Then this window resumes.</source>
        <translation>Der Server lehnt eine Verbindung für dieses Fenster ab: %1. Schließen Sie ein anderes Fenster oder Programm. Dann geht es hier weiter.</translation>
    </message>
</context>
<context>
    <name>console::SettingsModel</name>
    <message>
        <source>%1 contains a space, which would end it in the request.</source>
        <translation>%1 enthält ein Leerzeichen, das ihn in der Anfrage beenden würde.</translation>
    </message>
    <message>
        <source>%1 contains a control character.</source>
        <translation>%1 enthält ein Steuerzeichen.</translation>
    </message>
    <message>
        <source>%1 contains a character outside Latin-1, which cannot be sent.</source>
        <translation>%1 enthält ein Zeichen außerhalb von Latin-1, das sich nicht senden lässt.</translation>
    </message>
    <message>
        <source>A setting needs a name.</source>
        <translation>Eine Einstellung braucht einen Namen.</translation>
    </message>
    <message>
        <source>The name contains a colon, which would end it in the request.</source>
        <translation>Der Name enthält einen Doppelpunkt, der ihn in der Anfrage beenden würde.</translation>
    </message>
    <message>
        <source>The value contains a colon, which changes its meaning for the server.</source>
        <translation>Der Wert enthält einen Doppelpunkt, der für den Server seinen Sinn ändert.</translation>
    </message>
    <message>
        <source>The name</source>
        <translation>Der Name</translation>
    </message>
    <message>
        <source>The value</source>
        <translation>Der Wert</translation>
    </message>
    <message>
        <source>This setting was not read from the server yet, or does not exist there.</source>
        <translation>Diese Einstellung wurde noch nicht vom Server gelesen, oder es gibt sie dort nicht.</translation>
    </message>
    <message>
        <source>Changed here. The server has “%1”.</source>
        <translation>Hier geändert. Der Server hat „%1“.</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>as on the server</source>
        <translation>wie auf dem Server</translation>
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
        <translation>Am Server</translation>
    </message>
    <message>
        <source>“%1” is not a valid value for “%2”: it must be an integer.</source>
        <translation>„%1“ ist kein gültiger Wert für „%2“: es muss eine ganze Zahl sein.</translation>
    </message>
    <message>
        <source>Folder of the data on the server</source>
        <translation>Ordner der Daten auf dem Server</translation>
    </message>
    <message>
        <source>Name of the instrument</source>
        <translation>Name des Instruments</translation>
    </message>
    <message>
        <source>IP address of the readout module</source>
        <translation>IP-Adresse des Auslesemoduls</translation>
    </message>
    <message>
        <source>Port at which the readout module delivers its data</source>
        <translation>Port, an dem das Auslesemodul seine Daten liefert</translation>
    </message>
    <message>
        <source>Port at which the readout module accepts control commands</source>
        <translation>Port, an dem das Auslesemodul Steuerbefehle annimmt</translation>
    </message>
    <message>
        <source>A setting of the server: %1</source>
        <translation>Eine Einstellung des Servers: %1</translation>
    </message>
</context>
<context>
    <name>console::SettingsPanel</name>
    <message>
        <source>The base path %1 is being sent.</source>
        <translation>Der Basispfad %1 wird gesendet.</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Wird eingelesen...</translation>
    </message>
    <message>
        <source>The server refused the base path: %1</source>
        <translation>Der Server hat den Basispfad abgelehnt: %1</translation>
    </message>
    <message>
        <source>As on the server.</source>
        <translation>Wie auf dem Server.</translation>
    </message>
    <message>
        <source>Set: %1</source>
        <translation>Gesetzt: %1</translation>
    </message>
    <message>
        <source>Needs a connected server</source>
        <translation>Nur mit verbundenem Server</translation>
    </message>
    <message>
        <source>Wait until the sent lines are answered</source>
        <translation>Warten Sie, bis die gesendeten Zeilen beantwortet sind</translation>
    </message>
    <message>
        <source>Send all settings and let the server store them</source>
        <translation>Alle Einstellungen senden und vom Server speichern lassen</translation>
    </message>
    <message>
        <source>Add a setting here</source>
        <translation>Hier eine Einstellung hinzufügen</translation>
    </message>
    <message>
        <source>Remove the selected setting here</source>
        <translation>Die gewählte Einstellung hier entfernen</translation>
    </message>
    <message>
        <source>Choose a setting in the table first</source>
        <translation>Wählen Sie zuerst eine Einstellung in der Tabelle</translation>
    </message>
    <message>
        <source>Reset all values to the server&apos;s</source>
        <translation>Alle Werte auf die des Servers zurücksetzen</translation>
    </message>
    <message>
        <source>Nothing was changed here</source>
        <translation>Hier wurde nichts geändert</translation>
    </message>
    <message>
        <source>Send the base path to the server</source>
        <translation>Den Basispfad an den Server senden</translation>
    </message>
    <message>
        <source>Type a path first</source>
        <translation>Geben Sie zuerst einen Pfad ein</translation>
    </message>
    <message>
        <source>Type an IPv4 address such as 192.168.0.16 first</source>
        <translation>Geben Sie zuerst eine IPv4-Adresse ein, etwa 192.168.0.16</translation>
    </message>
    <message>
        <source>Reading the settings of the server...</source>
        <translation>Die Einstellungen des Servers werden eingelesen...</translation>
    </message>
    <message numerus="yes">
        <source>Sending %Ln line(s)...</source>
        <translation>
            <numerusform>%Ln Zeile wird gesendet...</numerusform>
            <numerusform>%Ln Zeilen werden gesendet...</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln changed here, not on the server yet.</source>
        <translation>
            <numerusform>%Ln hier geändert, noch nicht auf dem Server.</numerusform>
            <numerusform>%Ln hier geändert, noch nicht auf dem Server.</numerusform>
        </translation>
    </message>
    <message>
        <source>Ask the server for its settings</source>
        <translation>Den Server nach seinen Einstellungen fragen</translation>
    </message>
    <message>
        <source>The server refused %L1 of %L2: %3</source>
        <translation>Der Server hat %L1 von %L2 abgelehnt: %3</translation>
    </message>
    <message>
        <source>Not connected. Showing the settings that were last read.</source>
        <translation>Nicht verbunden. Gezeigt sind die zuletzt gelesenen Einstellungen.</translation>
    </message>
    <message>
        <source>No settings were read yet.</source>
        <translation>Noch wurden keine Einstellungen gelesen.</translation>
    </message>
    <message>
        <source>Choose the folder of the data on the server</source>
        <translation>Den Ordner der Daten auf dem Server wählen</translation>
    </message>
    <message numerus="yes">
        <source>The server has restarted. %Ln setting(s) sent before are not on it: send the settings again.</source>
        <translation>
            <numerusform>Der Server wurde neu gestartet. %Ln zuvor gesendete Einstellung fehlt ihm: senden Sie die Einstellungen noch einmal.</numerusform>
            <numerusform>Der Server wurde neu gestartet. %Ln zuvor gesendete Einstellungen fehlen ihm: senden Sie die Einstellungen noch einmal.</numerusform>
        </translation>
    </message>
    <message>
        <source>The base path is kept until settings are sent.</source>
        <translation>Der Basispfad bleibt gespeichert, bis Einstellungen gesendet werden.</translation>
    </message>
    <message>
        <source>Send the settings to the server</source>
        <translation>Die Einstellungen an den Server senden</translation>
    </message>
    <message>
        <source>There is nothing to send: all settings are as on the server</source>
        <translation>Es gibt nichts zu senden: alle Einstellungen sind wie auf dem Server</translation>
    </message>
    <message>
        <source>The server has this setting; only settings that were added here can be removed</source>
        <translation>Der Server hat diese Einstellung; nur hier hinzugefügte können entfernt werden</translation>
    </message>
    <message>
        <source>Keep the base path until settings are sent</source>
        <translation>Den Basispfad behalten, bis Einstellungen gesendet werden</translation>
    </message>
    <message>
        <source>Store the address in the settings; then send the settings</source>
        <translation>Die Adresse in die Einstellungen übernehmen; danach die Einstellungen senden</translation>
    </message>
    <message>
        <source>As on the server, saved there at %1.</source>
        <translation>Wie auf dem Server, dort gespeichert um %1.</translation>
    </message>
    <message>
        <source>As on the server, sent at %1.</source>
        <translation>Wie auf dem Server, gesendet um %1.</translation>
    </message>
</context>
<context>
    <name>console::SnapshotRecord</name>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>gone</source>
        <translation>entfallen</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
</context>
<context>
    <name>console::SnapshotWindow</name>
    <message>
        <source>No reply: %1. Refresh to ask again.</source>
        <translation>Keine Antwort: %1. „Aktualisieren“ fragt noch einmal.</translation>
    </message>
    <message>
        <source>No reply: the server was stopped.</source>
        <translation>Keine Antwort: der Server wurde beendet.</translation>
    </message>
    <message>
        <source>Asking the server...</source>
        <translation>Der Server wird gefragt...</translation>
    </message>
    <message>
        <source>%1, as of %2</source>
        <translation>%1, Stand %2</translation>
    </message>
    <message>
        <source>Wait for the reply</source>
        <translation>Warten Sie auf die Antwort</translation>
    </message>
    <message>
        <source>Needs a connected server. Showing the previous values.</source>
        <translation>Nur mit verbundenem Server. Die bisherigen Werte bleiben hier stehen.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln value(s)</source>
        <translation>
            <numerusform>%Ln Wert</numerusform>
            <numerusform>%Ln Werte</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%L1 of %Ln value(s)</source>
        <translation>
            <numerusform>%L1 von %Ln Wert</numerusform>
            <numerusform>%L1 von %Ln Werten</numerusform>
        </translation>
    </message>
    <message>
        <source>Ask the server again</source>
        <translation>Den Server erneut fragen</translation>
    </message>
    <message>
        <source>Sho&amp;w:</source>
        <translation>&amp;Zeigen:</translation>
    </message>
    <message>
        <source>Part of the names to show</source>
        <translation>Teil der gezeigten Namen</translation>
    </message>
    <message>
        <source>part of a name; empty for all</source>
        <translation>Teil eines Namens; leer für alle</translation>
    </message>
    <message>
        <source>Values of the snapshot</source>
        <translation>Werte der Momentaufnahme</translation>
    </message>
    <message>
        <source>State of the snapshot</source>
        <translation>Stand der Momentaufnahme</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message numerus="yes">
        <source>%1, %Ln of them changed since the previous snapshot, as of %2</source>
        <translation>
            <numerusform>%1, davon %Ln seit der vorigen Momentaufnahme geändert, Stand %2</numerusform>
            <numerusform>%1, davon %Ln seit der vorigen Momentaufnahme geändert, Stand %2</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::WindowAccess</name>
    <message>
        <source>How the curves are shown</source>
        <translation>Wie die Kurven gezeigt werden</translation>
    </message>
    <message>
        <source>Choose the visible curves</source>
        <translation>Die sichtbaren Kurven wählen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>List</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Select Visible Items</source>
        <translation>Sichtbare Kurven wählen</translation>
    </message>
    <message>
        <source>There is no region yet: drag one over the map</source>
        <translation>Es gibt noch keine Region: ziehen Sie eine über die Karte</translation>
    </message>
    <message>
        <source>Choose a region in the list first</source>
        <translation>Erst eine Region in der Liste wählen</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AliasWidget</name>
    <message>
        <source>Aliases</source>
        <translation>Aliasse</translation>
    </message>
    <message>
        <source>Edit alias</source>
        <translation>Alias bearbeiten</translation>
    </message>
    <message>
        <source>Save alias</source>
        <translation>Alias speichern</translation>
    </message>
    <message>
        <source>Cancel alias edit</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add alias</source>
        <translation>Alias anlegen</translation>
    </message>
    <message>
        <source>Delete alias</source>
        <translation>Alias löschen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>The commands run in place of the alias, one per line</source>
        <translation>Die Befehle, die anstelle des Alias ausgeführt werden, einer pro Zeile</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>What to type, to the letter, to run the commands</source>
        <translation>Was buchstabengenau einzugeben ist, um die Befehle auszuführen</translation>
    </message>
    <message>
        <source>&lt;Enter your alias here&gt;</source>
        <translation>&lt;Alias hier eingeben&gt;</translation>
    </message>
    <message>
        <source>Add Alias</source>
        <translation>Alias anlegen</translation>
    </message>
    <message>
        <source>An alias already exists with that name.</source>
        <translation>Ein Alias mit diesem Namen ist bereits vorhanden.</translation>
    </message>
    <message>
        <source>Save Alias</source>
        <translation>Alias speichern</translation>
    </message>
    <message>
        <source>Invalid alias name specified.</source>
        <translation>Kein gültiger Name für den Alias angegeben.</translation>
    </message>
    <message>
        <source>Delete Alias</source>
        <translation>Alias löschen</translation>
    </message>
    <message>
        <source>Really delete this alias?</source>
        <translation>Diesen Alias wirklich löschen?</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Usage: kelmora [options]
A client for the text game Kelmora. Without options it opens its window.

Options:
  -h, --help     Show this text and end.
  -v, --version  Show the version and end.

Options of Qt, such as -style and -platform, are taken as well.
</source>
        <translation>Aufruf: kelmora [Optionen]
Ein Client für das Textspiel Kelmora. Ohne Optionen öffnet er sein Fenster.

Optionen:
  -h, --help     Diesen Text zeigen und beenden.
  -v, --version  Die Version zeigen und beenden.

Optionen von Qt wie -style und -platform werden ebenfalls angenommen.
</translation>
    </message>
    <message>
        <source>kelmora: %1
Try &apos;kelmora --help&apos;.
</source>
        <translation>kelmora: %1
Mehr dazu mit „kelmora --help“.
</translation>
    </message>
</context>
<context>
    <name>ConfigureWidget</name>
    <message>
        <source>Display ANSI color</source>
        <translation>ANSI-Farben anzeigen</translation>
    </message>
    <message>
        <source>Enable local echo</source>
        <translation>Lokales Echo aktivieren</translation>
    </message>
    <message>
        <source>Play beeps</source>
        <translation>Signaltöne abspielen</translation>
    </message>
    <message>
        <source>Parse html tags</source>
        <translation>HTML-Tags auswerten</translation>
    </message>
    <message>
        <source>Flush input bar</source>
        <translation>Eingabezeile leeren</translation>
    </message>
    <message>
        <source>Display clickable URLs</source>
        <translation>URLs anklickbar anzeigen</translation>
    </message>
    <message>
        <source>Split input by following string:</source>
        <translation>Eingabe an dieser Zeichenfolge teilen:</translation>
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
        <source>Green</source>
        <translation>Grün</translation>
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
        <source>Magenta</source>
        <translation>Magenta</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>Cyan</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>General Settings</source>
        <translation>Allgemeine Einstellungen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Normal Colors</source>
        <translation>Normale Farben</translation>
    </message>
    <message>
        <source>Bold Colors</source>
        <translation>Fettschriftfarben</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Anzeige</translation>
    </message>
    <message>
        <source>String to split the input by</source>
        <translation>Zeichenfolge, an der die Eingabe geteilt wird</translation>
    </message>
    <message>
        <source>%1, normal color</source>
        <translation>%1, normale Farbe</translation>
    </message>
    <message>
        <source>%1, bold color</source>
        <translation>%1, Farbe für Fettschrift</translation>
    </message>
    <message>
        <source>Output Window</source>
        <translation>Ausgabefenster</translation>
    </message>
    <message>
        <source>Font of the output window</source>
        <translation>Schrift des Ausgabefensters</translation>
    </message>
    <message>
        <source>Input Bar</source>
        <translation>Eingabezeile</translation>
    </message>
    <message>
        <source>Font of the input bar</source>
        <translation>Schrift der Eingabezeile</translation>
    </message>
    <message>
        <source>Interface style</source>
        <translation>Oberflächenstil</translation>
    </message>
    <message>
        <source>Use the following server:</source>
        <translation>Diesen Server verwenden:</translation>
    </message>
</context>
<context>
    <name>FontButton</name>
    <message>
        <source>%1, %2 pixels</source>
        <translation>%1, %2 Pixel</translation>
    </message>
    <message>
        <source>%1, %2 points</source>
        <translation>%1, %2 Punkt</translation>
    </message>
</context>
<context>
    <name>HelpWidget</name>
    <message>
        <source>Client tutorial</source>
        <translation>Einführung in den Client</translation>
    </message>
    <message>
        <source>A guide to using this client</source>
        <translation>Eine Anleitung für diesen Client</translation>
    </message>
    <message>
        <source>Official site</source>
        <translation>Offizielle Website</translation>
    </message>
    <message>
        <source>Kelmora&apos;s official website</source>
        <translation>Die offizielle Website von Kelmora</translation>
    </message>
    <message>
        <source>Official wiki</source>
        <translation>Offizielles Wiki</translation>
    </message>
    <message>
        <source>Kelmora&apos;s community wiki</source>
        <translation>Das Wiki der Kelmora-Gemeinschaft</translation>
    </message>
    <message>
        <source>Kelmora Help</source>
        <translation>Kelmora-Hilfe</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Kelmora Client v%1</source>
        <translation>Kelmora Client v%1</translation>
    </message>
    <message>
        <source>Made by the Kelmora client authors</source>
        <translation>Von den Autoren des Kelmora-Clients</translation>
    </message>
    <message>
        <source>This client has been released under the following licenses:</source>
        <translation>Dieser Client ist unter den folgenden Lizenzen veröffentlicht:</translation>
    </message>
</context>
<context>
    <name>KeyPressInput</name>
    <message>
        <source>&lt;Invalid&gt;</source>
        <translation>&lt;Ungültig&gt;</translation>
    </message>
</context>
<context>
    <name>KeyPressWidget</name>
    <message>
        <source>Add Macro</source>
        <translation>Makro anlegen</translation>
    </message>
    <message>
        <source>Hit a key:</source>
        <translation>Taste drücken:</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Shows the key that was pressed last; that one is bound</source>
        <translation>Zeigt die zuletzt gedrückte Taste; diese wird belegt</translation>
    </message>
    <message>
        <source>Okay</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>MacroWidget</name>
    <message>
        <source>Macros</source>
        <translation>Makros</translation>
    </message>
    <message>
        <source>Edit macro</source>
        <translation>Makro bearbeiten</translation>
    </message>
    <message>
        <source>Save macro</source>
        <translation>Makro speichern</translation>
    </message>
    <message>
        <source>Cancel macro edit</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add macro</source>
        <translation>Makro anlegen</translation>
    </message>
    <message>
        <source>Delete macro</source>
        <translation>Makro löschen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>The commands run when the key is pressed, one per line</source>
        <translation>Die Befehle, die beim Drücken der Taste ausgeführt werden, einer pro Zeile</translation>
    </message>
    <message>
        <source>Delete Macro</source>
        <translation>Makro löschen</translation>
    </message>
    <message>
        <source>Really delete this macro?</source>
        <translation>Dieses Makro wirklich löschen?</translation>
    </message>
    <message>
        <source>Add Macro</source>
        <translation>Makro anlegen</translation>
    </message>
    <message>
        <source>A macro has already been bound to that key.</source>
        <translation>Diese Taste ist bereits mit einem Makro belegt.</translation>
    </message>
</context>
<context>
    <name>MainWidget</name>
    <message>
        <source>Macros</source>
        <translation>Makros</translation>
    </message>
    <message>
        <source>There has been a failure reading your macros.txt file.</source>
        <translation>Beim Lesen der Datei macros.txt ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Triggers</source>
        <translation>Trigger</translation>
    </message>
    <message>
        <source>There has been a failure reading your triggers.txt file.</source>
        <translation>Beim Lesen der Datei triggers.txt ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Aliases</source>
        <translation>Aliasse</translation>
    </message>
    <message>
        <source>There has been a failure reading your aliases.txt file.</source>
        <translation>Beim Lesen der Datei aliases.txt ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>There has been a failure reading your variables.txt file.</source>
        <translation>Beim Lesen der Datei variables.txt ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Save Game Session To File</source>
        <translation>Spielsitzung in Datei speichern</translation>
    </message>
    <message>
        <source>Web Pages (*.htm *.html)</source>
        <translation>Webseiten (*.htm *.html)</translation>
    </message>
    <message>
        <source>Input bar</source>
        <translation>Eingabezeile</translation>
    </message>
    <message>
        <source>Game text</source>
        <translation>Spieltext</translation>
    </message>
    <message>
        <source>Export Settings</source>
        <translation>Einstellungen exportieren</translation>
    </message>
    <message>
        <source>Kelmora Client Settings (*.settings)</source>
        <translation>Einstellungen des Kelmora-Clients (*.settings)</translation>
    </message>
    <message>
        <source>There has been a failure exporting settings to the specified file.</source>
        <translation>Beim Exportieren der Einstellungen in die angegebene Datei ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Import Settings</source>
        <translation>Einstellungen importieren</translation>
    </message>
    <message>
        <source>The specified file does not contain valid settings for this client.</source>
        <translation>Die angegebene Datei enthält keine gültigen Einstellungen für diesen Client.</translation>
    </message>
    <message>
        <source>Play Kelmora (Ctrl+J)</source>
        <translation>Kelmora spielen (Strg+J)</translation>
    </message>
    <message>
        <source>Ctrl+J</source>
        <translation>Ctrl+J</translation>
    </message>
    <message>
        <source>Disconnect from Kelmora (Ctrl+D)</source>
        <translation>Verbindung zu Kelmora trennen (Strg+D)</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Save game session to file (Ctrl+S)</source>
        <translation>Spielsitzung in Datei speichern (Strg+S)</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Export settings (Ctrl+E)</source>
        <translation>Einstellungen exportieren (Strg+E)</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>Import settings (Ctrl+I)</source>
        <translation>Einstellungen importieren (Strg+I)</translation>
    </message>
    <message>
        <source>Ctrl+I</source>
        <translation>Ctrl+I</translation>
    </message>
    <message>
        <source>General settings (Ctrl+G)</source>
        <translation>Allgemeine Einstellungen (Strg+G)</translation>
    </message>
    <message>
        <source>Ctrl+G</source>
        <translation>Ctrl+G</translation>
    </message>
    <message>
        <source>Proxy settings (Ctrl+P)</source>
        <translation>Proxy-Einstellungen (Strg+P)</translation>
    </message>
    <message>
        <source>Ctrl+P</source>
        <translation>Ctrl+P</translation>
    </message>
    <message>
        <source>Edit macros (Ctrl+M)</source>
        <translation>Makros bearbeiten (Strg+M)</translation>
    </message>
    <message>
        <source>Ctrl+M</source>
        <translation>Ctrl+M</translation>
    </message>
    <message>
        <source>Edit aliases (Ctrl+L)</source>
        <translation>Aliasse bearbeiten (Strg+L)</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Edit triggers (Ctrl+T)</source>
        <translation>Trigger bearbeiten (Strg+T)</translation>
    </message>
    <message>
        <source>Ctrl+T</source>
        <translation>Ctrl+T</translation>
    </message>
    <message>
        <source>Kelmora help (Ctrl+H)</source>
        <translation>Hilfe zu Kelmora (Strg+H)</translation>
    </message>
    <message>
        <source>Ctrl+H</source>
        <translation>Ctrl+H</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>More buttons</source>
        <translation>Weitere Schaltflächen</translation>
    </message>
</context>
<context>
    <name>PaneSpeech</name>
    <message>
        <source>1 line left out</source>
        <translation>1 Zeile ausgelassen</translation>
    </message>
    <message>
        <source>%1 lines left out</source>
        <translation>%1 Zeilen ausgelassen</translation>
    </message>
</context>
<context>
    <name>Play</name>
    <message>
        <source>The server takes no lines: this one and what follows is lost</source>
        <translation>Der Server nimmt keine Zeilen an: Diese und die folgenden gehen verloren</translation>
    </message>
</context>
<context>
    <name>PlayersFolder</name>
    <message>
        <source>The folder for your files cannot be made or entered:
%1
Is the disk full, or is a folder in its path write-protected?</source>
        <translation>Der Ordner für die eigenen Dateien kann nicht angelegt oder betreten werden:
%1
Ist der Datenträger voll oder ein Ordner im Pfad schreibgeschützt?</translation>
    </message>
    <message>
        <source>Nothing can be written in the folder of your files:
%1
It is write-protected, or the disk is full. You can play, but what you change in aliases, triggers and variables will be lost.</source>
        <translation>Im Ordner der eigenen Dateien kann nichts geschrieben werden:
%1
Er ist schreibgeschützt oder der Datenträger voll. Spielen ist möglich, aber Änderungen an Aliassen, Triggern und Variablen gehen verloren.</translation>
    </message>
</context>
<context>
    <name>ProxyWidget</name>
    <message>
        <source>Socks5</source>
        <translation>Socks5</translation>
    </message>
    <message>
        <source>HTTP</source>
        <translation>HTTP</translation>
    </message>
    <message>
        <source>HTTP Caching</source>
        <translation>HTTP-Zwischenspeicher</translation>
    </message>
    <message>
        <source>FTP Caching</source>
        <translation>FTP-Zwischenspeicher</translation>
    </message>
    <message>
        <source>Hostname</source>
        <translation>Hostname</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Use the following proxy server:</source>
        <translation>Diesen Proxy-Server verwenden:</translation>
    </message>
    <message>
        <source>Proxy Settings</source>
        <translation>Proxy-Einstellungen</translation>
    </message>
    <message>
        <source>Proxy type</source>
        <translation>Proxy-Typ</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>Script</name>
    <message>
        <source>Text cut at %1 bytes: %2</source>
        <translation>Text nach %1 Bytes abgeschnitten: %2</translation>
    </message>
    <message>
        <source>Text cut at %1 characters: %2</source>
        <translation>Text nach %1 Zeichen abgeschnitten: %2</translation>
    </message>
    <message>
        <source>No such variable to delete: %1</source>
        <translation>Keine solche Variable zum Löschen: %1</translation>
    </message>
    <message>
        <source>Global variables:</source>
        <translation>Globale Variablen:</translation>
    </message>
    <message>
        <source>No such variable: %1</source>
        <translation>Keine solche Variable: %1</translation>
    </message>
    <message>
        <source>%1 takes one argument</source>
        <translation>%1 braucht ein Argument</translation>
    </message>
    <message>
        <source>%1 takes at least one argument</source>
        <translation>%1 braucht mindestens ein Argument</translation>
    </message>
    <message>
        <source>%1 takes two arguments</source>
        <translation>%1 braucht zwei Argumente</translation>
    </message>
    <message>
        <source>/condloop has reached maximum evaluation</source>
        <translation>/condloop hat die Höchstzahl an Durchläufen erreicht</translation>
    </message>
    <message>
        <source>Endless alias stopped: %1</source>
        <translation>Endloser Alias angehalten: %1</translation>
    </message>
    <message>
        <source>Script stopped after %1 steps: %2</source>
        <translation>Skript nach %1 Schritten angehalten: %2</translation>
    </message>
    <message>
        <source>Duplicate timer id: %1</source>
        <translation>Timer-ID bereits vergeben: %1</translation>
    </message>
    <message>
        <source>No such pending timer: %1</source>
        <translation>Kein solcher wartender Timer: %1</translation>
    </message>
    <message>
        <source>Deleted timer: %1</source>
        <translation>Timer gelöscht: %1</translation>
    </message>
</context>
<context>
    <name>StatusLines</name>
    <message>
        <source>Host not found</source>
        <translation>Host nicht gefunden</translation>
    </message>
    <message>
        <source>Connection refused by the peer</source>
        <translation>Verbindung von der Gegenstelle abgelehnt</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>Attempting to connect to %1 on port %2...</source>
        <translation>Verbindung zu %1 auf Port %2 wird aufgebaut ...</translation>
    </message>
    <message>
        <source>Connected to host!</source>
        <translation>Mit dem Host verbunden!</translation>
    </message>
    <message>
        <source>Disconnected from host!</source>
        <translation>Verbindung zum Host getrennt!</translation>
    </message>
    <message>
        <source>Socket error %1</source>
        <translation>Socket-Fehler %1</translation>
    </message>
</context>
<context>
    <name>StyleWidget</name>
    <message>
        <source>Icon width</source>
        <translation>Symbolbreite</translation>
    </message>
    <message>
        <source>Icon width in pixels</source>
        <translation>Symbolbreite in Pixel</translation>
    </message>
    <message>
        <source>Icon height</source>
        <translation>Symbolhöhe</translation>
    </message>
    <message>
        <source>Icon height in pixels</source>
        <translation>Symbolhöhe in Pixel</translation>
    </message>
    <message>
        <source>Interface Settings</source>
        <translation>Einstellungen der Oberfläche</translation>
    </message>
    <message>
        <source>Use the following icon dimensions:</source>
        <translation>Diese Symbolgröße verwenden:</translation>
    </message>
    <message>
        <source>Use the following interface style:</source>
        <translation>Diesen Oberflächenstil verwenden:</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>TriggerWidget</name>
    <message>
        <source>Triggers</source>
        <translation>Trigger</translation>
    </message>
    <message>
        <source>Edit trigger</source>
        <translation>Trigger bearbeiten</translation>
    </message>
    <message>
        <source>Save trigger</source>
        <translation>Trigger speichern</translation>
    </message>
    <message>
        <source>Cancel trigger edit</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add trigger</source>
        <translation>Trigger anlegen</translation>
    </message>
    <message>
        <source>Delete trigger</source>
        <translation>Trigger löschen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>The commands run for every line that matches, one per line</source>
        <translation>Die Befehle, die für jede passende Zeile ausgeführt werden, einer pro Zeile</translation>
    </message>
    <message>
        <source>Pattern</source>
        <translation>Muster</translation>
    </message>
    <message>
        <source>Text to find anywhere in a line; or, with {*} for each word to catch, the line from its start</source>
        <translation>Text, der irgendwo in einer Zeile steht; oder, mit {*} für jedes zu erfassende Wort, die Zeile von ihrem Anfang an</translation>
    </message>
    <message>
        <source>&lt;Enter your trigger pattern here&gt;</source>
        <translation>&lt;Triggermuster hier eingeben&gt;</translation>
    </message>
    <message>
        <source>Add Trigger</source>
        <translation>Trigger anlegen</translation>
    </message>
    <message>
        <source>A trigger has already been bound to that pattern.</source>
        <translation>Zu diesem Muster gibt es bereits einen Trigger.</translation>
    </message>
    <message>
        <source>Save Trigger</source>
        <translation>Trigger speichern</translation>
    </message>
    <message>
        <source>Invalid trigger pattern specified.</source>
        <translation>Kein gültiges Triggermuster angegeben.</translation>
    </message>
    <message>
        <source>Delete Trigger</source>
        <translation>Trigger löschen</translation>
    </message>
    <message>
        <source>Really delete this trigger?</source>
        <translation>Diesen Trigger wirklich löschen?</translation>
    </message>
</context>
<context>
    <name>VitalsBars</name>
    <message>
        <source>Hit points</source>
        <translation>Trefferpunkte</translation>
    </message>
    <message>
        <source>Spell points</source>
        <translation>Zauberpunkte</translation>
    </message>
    <message>
        <source>Endurance points</source>
        <translation>Ausdauerpunkte</translation>
    </message>
</context>
<context>
    <name>kelmora::terminal::FindBar</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Find in the game text</source>
        <translation>Im Spieltext suchen</translation>
    </message>
    <message>
        <source>Hits</source>
        <translation>Treffer</translation>
    </message>
    <message>
        <source>Older hit</source>
        <translation>Älterer Treffer</translation>
    </message>
    <message>
        <source>Older hit (Enter, F3)</source>
        <translation>Älterer Treffer (Eingabe, F3)</translation>
    </message>
    <message>
        <source>Newer hit</source>
        <translation>Neuerer Treffer</translation>
    </message>
    <message>
        <source>Newer hit (Shift+Enter, Shift+F3)</source>
        <translation>Neuerer Treffer (Umschalt+Eingabe, Umschalt+F3)</translation>
    </message>
    <message>
        <source>Upper and lower case</source>
        <translation>Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Ganze Wörter</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close (Esc)</source>
        <translation>Schließen (Esc)</translation>
    </message>
    <message>
        <source>No expression</source>
        <translation>Kein Ausdruck</translation>
    </message>
    <message>
        <source>No hit</source>
        <translation>Kein Treffer</translation>
    </message>
    <message>
        <source>%1 of many</source>
        <translation>%1 von vielen</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>kelmora::terminal::ReadBackView</name>
    <message>
        <source>Earlier game text</source>
        <translation>Früherer Spieltext</translation>
    </message>
</context>
<context>
    <name>kelmora::terminal::ReadingTools</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Open Link</source>
        <translation>Link ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Copy &amp;Link Address</source>
        <translation>&amp;Link-Adresse kopieren</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>&amp;Find…</source>
        <translation>&amp;Suchen…</translation>
    </message>
    <message>
        <source>Make a &amp;Trigger of This Line…</source>
        <translation>&amp;Trigger aus dieser Zeile anlegen…</translation>
    </message>
    <message>
        <source>&amp;Divide the Pane While Reading Back</source>
        <translation>Ausgabe beim &amp;Zurücklesen teilen</translation>
    </message>
</context>
<context>
    <name>kelmora::terminal::SplitHandle</name>
    <message>
        <source>Drag or use the arrow keys to divide the pane; Escape closes the upper part</source>
        <translation>Zum Teilen der Ausgabe ziehen oder die Pfeiltasten verwenden; Esc schließt den oberen Teil</translation>
    </message>
    <message>
        <source>Border of the earlier game text</source>
        <translation>Grenze des früheren Spieltexts</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>MainWindow</name>
    <message>
        <source>MainWindow</source>
        <translation>Hauptfenster</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>MAC-Adresse</translation>
    </message>
    <message>
        <source>DHCP</source>
        <translation>DHCP</translation>
    </message>
    <message>
        <source>Subnet Mask</source>
        <translation>Subnetzmaske</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Gateway</translation>
    </message>
    <message>
        <source>DNS Server</source>
        <translation>DNS-Server</translation>
    </message>
    <message>
        <source>Firmware Version</source>
        <translation>Firmware-Version</translation>
    </message>
    <message>
        <source>WebUI Version</source>
        <translation>WebUI-Version</translation>
    </message>
    <message>
        <source>IP Conf.</source>
        <translation>IP-Konf.</translation>
    </message>
    <message>
        <source>Obtain IP from DHCP Server</source>
        <translation>IP vom DHCP-Server beziehen</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;IP Address:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;IP-Adresse:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Subnet Mask:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Subnetzmaske:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Gateway:</source>
        <translation>Gateway:</translation>
    </message>
    <message>
        <source>DNS Server:</source>
        <translation>DNS-Server:</translation>
    </message>
    <message>
        <source>HTTP Port:</source>
        <translation>HTTP-Port:</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisierung</translation>
    </message>
    <message>
        <source>Frimware Version</source>
        <translation>Firmware-Version</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Update:</source>
        <translation>Aktualisieren:</translation>
    </message>
    <message>
        <source>Firmware</source>
        <translation>Firmware</translation>
    </message>
    <message>
        <source>WebUI</source>
        <translation>WebUI</translation>
    </message>
    <message>
        <source>Firmware Version:</source>
        <translation>Firmware-Version:</translation>
    </message>
    <message>
        <source>Path:</source>
        <translation>Pfad:</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>SD Card</source>
        <translation>SD-Karte</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;br/&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;br/&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-family:&apos;Tahoma,sans-serif&apos;; font-size:10.5pt;&quot;&gt;Total Memory&lt;/span&gt;:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-family:&apos;Tahoma,sans-serif&apos;; font-size:10.5pt;&quot;&gt;Gesamtspeicher&lt;/span&gt;:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Used Memory:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Belegter Speicher:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Free Memory:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Freier Speicher:&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Show Files</source>
        <translation>Dateien anzeigen</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:10pt;&quot;&gt;Network Interfaces:&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-size:10pt;&quot;&gt;Schnittstellen:&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Automatic Search</source>
        <translation>Automatische Suche</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Refresh Interface List</source>
        <translation>Schnittstellenliste aktualisieren</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>F11</source>
        <translation>F11</translation>
    </message>
    <message>
        <source>Online Help</source>
        <translation>Online-Hilfe</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>About VELTOR Camera Tool</source>
        <translation>Über VELTOR Camera Tool</translation>
    </message>
    <message>
        <source>VELTOR Camera Tool</source>
        <translation>VELTOR Camera Tool</translation>
    </message>
    <message>
        <source>Authentication required</source>
        <translation>Anmeldung erforderlich</translation>
    </message>
    <message>
        <source>Unnamed</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Port invalid</source>
        <translation>Ungültiger Port</translation>
    </message>
    <message>
        <source>Port needs to be a value in range of 0-65535</source>
        <translation>Der Port muss zwischen 0 und 65535 liegen</translation>
    </message>
    <message>
        <source>Ip-address has a wrong format</source>
        <translation>Die IP-Adresse hat ein falsches Format</translation>
    </message>
    <message>
        <source>Subnet has a wrong format</source>
        <translation>Die Subnetzmaske hat ein falsches Format</translation>
    </message>
    <message>
        <source>Gateway has a wrong format</source>
        <translation>Das Gateway hat ein falsches Format</translation>
    </message>
    <message>
        <source>DNS has a wrong format</source>
        <translation>Der DNS-Server hat ein falsches Format</translation>
    </message>
    <message>
        <source>Ip-address has invalid values</source>
        <translation>Die IP-Adresse enthält ungültige Werte</translation>
    </message>
    <message>
        <source>Subnet-address has invalid values</source>
        <translation>Die Subnetzmaske enthält ungültige Werte</translation>
    </message>
    <message>
        <source>Gateway-address has invalid values</source>
        <translation>Die Gateway-Adresse enthält ungültige Werte</translation>
    </message>
    <message>
        <source>DNS-address has invalid values</source>
        <translation>Die DNS-Adresse enthält ungültige Werte</translation>
    </message>
    <message>
        <source>The MAC address of this camera has a wrong format</source>
        <translation>Die MAC-Adresse dieser Kamera hat ein falsches Format</translation>
    </message>
    <message>
        <source>The username is too long for this camera (at most 12 bytes)</source>
        <translation>Der Benutzername ist für diese Kamera zu lang (höchstens 12 Byte)</translation>
    </message>
    <message>
        <source>The password is too long for this camera (at most 12 bytes)</source>
        <translation>Das Passwort ist für diese Kamera zu lang (höchstens 12 Byte)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Your request has failed, retry please!</source>
        <translation>Ihre Anfrage ist fehlgeschlagen, bitte versuchen Sie es erneut!</translation>
    </message>
    <message>
        <source>Camera rebooting</source>
        <translation>Kamera startet neu</translation>
    </message>
    <message>
        <source>The camera is rebooting now, please wait for a moment!</source>
        <translation>Die Kamera startet jetzt neu, bitte warten Sie einen Moment!</translation>
    </message>
    <message>
        <source>IP Configure</source>
        <translation>IP-Konfiguration</translation>
    </message>
    <message>
        <source>IP Config Successful! Please search again!</source>
        <translation>IP-Konfiguration erfolgreich! Bitte suchen Sie erneut!</translation>
    </message>
    <message>
        <source>The camera was not seen with the new settings after %1 s: %2</source>
        <translation>Die Kamera wurde nach %1 s nicht mit den neuen Einstellungen gefunden: %2</translation>
    </message>
    <message>
        <source>it did not answer the searches</source>
        <translation>sie hat auf die Suche nicht geantwortet</translation>
    </message>
    <message>
        <source>Firmware Files(*.bin)</source>
        <translation>Firmware-Dateien(*.bin)</translation>
    </message>
    <message>
        <source>Firmware Files(*.pkg)</source>
        <translation>Firmware-Dateien(*.pkg)</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Please choose a file!</source>
        <translation>Bitte wählen Sie eine Datei aus!</translation>
    </message>
    <message>
        <source>An error occured while trying to open the file!</source>
        <translation>Beim Öffnen der Datei ist ein Fehler aufgetreten!</translation>
    </message>
    <message>
        <source>Camera rebooting!</source>
        <translation>Kamera startet neu!</translation>
    </message>
    <message>
        <source>The camera is rebooting now! Please wait a few minutes and search again!</source>
        <translation>Die Kamera startet jetzt neu! Bitte warten Sie einige Minuten und suchen Sie dann erneut!</translation>
    </message>
    <message>
        <source>VGA-Cameras do not support SD cards</source>
        <translation>VGA-Kameras unterstützen keine SD-Karten</translation>
    </message>
    <message>
        <source>Could not retrieve SD card information</source>
        <translation>SD-Karten-Informationen konnten nicht abgerufen werden</translation>
    </message>
    <message>
        <source>No SD card detected</source>
        <translation>Keine SD-Karte erkannt</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>SD Card Information</source>
        <translation>SD-Karten-Informationen</translation>
    </message>
    <message>
        <source>Another camera claims %1 too: give one of them another address.</source>
        <translation>Eine andere Kamera beansprucht %1 ebenfalls: Geben Sie einer der beiden eine andere Adresse.</translation>
    </message>
    <message>
        <source>On another subnet than %1: change its address first.</source>
        <translation>In einem anderen Subnetz als %1: Ändern Sie zuerst ihre Adresse.</translation>
    </message>
    <message>
        <source>The reply came from %1, not from the address it claims.</source>
        <translation>Die Antwort kam von %1, nicht von der Adresse, die die Kamera angibt.</translation>
    </message>
    <message>
        <source>No camera answered on %1. Usual causes: a firewall dropping UDP ports 10000 or 8002, the wrong interface (choose another one below the tables), cameras on another subnet behind a router.</source>
        <translation>Auf %1 hat keine Kamera geantwortet. Übliche Ursachen: eine Firewall, die die UDP-Ports 10000 oder 8002 verwirft, die falsche Netzwerkschnittstelle (wählen Sie unter den Tabellen eine andere), Kameras in einem anderen Subnetz hinter einem Router.</translation>
    </message>
    <message>
        <source>Cameras found: %1 (Winbond %2, Haisi %3); need attention: %4 (marked rows); interface %5</source>
        <translation>Gefundene Kameras: %1 (Winbond %2, Haisi %3); mit Handlungsbedarf: %4 (markierte Zeilen); Schnittstelle %5</translation>
    </message>
    <message>
        <source>Export cameras…</source>
        <translation>Kameras exportieren…</translation>
    </message>
    <message>
        <source>Open web page</source>
        <translation>Webseite öffnen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV-Dateien (*.csv)</translation>
    </message>
    <message>
        <source>JSON files (*.json)</source>
        <translation>JSON-Dateien (*.json)</translation>
    </message>
    <message>
        <source>Export cameras</source>
        <translation>Kameras exportieren</translation>
    </message>
    <message>
        <source>The cameras could not be written to %1: %2</source>
        <translation>Die Kameras konnten nicht nach %1 geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>aboutDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;VELTOR Camera Tool,Version %1&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;VELTOR Camera Tool, Version %1&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;Copyright 2026 VELTOR. All rights reserved.&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-weight:600;&quot;&gt;Copyright 2026 VELTOR. Alle Rechte vorbehalten.&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Please send your feedback to:feedback@veltor.example</source>
        <translation>Bitte senden Sie Ihre Rückmeldung an:feedback@veltor.example</translation>
    </message>
</context>
<context>
    <name>loadDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
</context>
<context>
    <name>sdmanager</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Deselect All</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Format SD Card</source>
        <translation>SD-Karte formatieren</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Modified Date</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Open Directory</source>
        <translation>Verzeichnis öffnen</translation>
    </message>
    <message>
        <source>Request error</source>
        <translation>Anfragefehler</translation>
    </message>
    <message>
        <source>Could not retrieve SD card information</source>
        <translation>SD-Karten-Informationen konnten nicht abgerufen werden</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Modified Time</source>
        <translation>Änderungszeit</translation>
    </message>
    <message>
        <source>state</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Unexpected Error: Wrong parameters occured in sdmanager f: mycellfileClicked</source>
        <translation>Unerwarteter Fehler: Falsche Parameter in sdmanager f: mycellfileClicked</translation>
    </message>
    <message>
        <source>Do you want to download these files?</source>
        <translation>Möchten Sie diese Dateien herunterladen?</translation>
    </message>
    <message>
        <source>Please choose </source>
        <translation>Bitte wählen Sie ein Verzeichnis </translation>
    </message>
    <message>
        <source>New directory</source>
        <translation>Neues Verzeichnis</translation>
    </message>
    <message>
        <source>This directory already exists</source>
        <translation>Dieses Verzeichnis existiert bereits</translation>
    </message>
    <message>
        <source>Failed to create a new directory</source>
        <translation>Das neue Verzeichnis konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Unexpected error: Wrong parameters in sdmanager: procedure</source>
        <translation>Unerwarteter Fehler: Falsche Parameter in sdmanager: procedure</translation>
    </message>
    <message>
        <source>Please wait! Downloading...</source>
        <translation>Bitte warten! Wird heruntergeladen...</translation>
    </message>
    <message>
        <source>Download successful!</source>
        <translation>Herunterladen erfolgreich!</translation>
    </message>
    <message>
        <source>%1 (the folder could not be created)</source>
        <translation>%1 (der Ordner konnte nicht angelegt werden)</translation>
    </message>
    <message>
        <source>Download Successful!</source>
        <translation>Herunterladen erfolgreich!</translation>
    </message>
    <message>
        <source>%1 (the listing failed: %2)</source>
        <translation>%1 (die Auflistung schlug fehl: %2)</translation>
    </message>
    <message>
        <source>Download error! Try again!</source>
        <translation>Fehler beim Herunterladen! Bitte erneut versuchen!</translation>
    </message>
    <message>
        <source>Download error!Try again!</source>
        <translation>Fehler beim Herunterladen!Bitte erneut versuchen!</translation>
    </message>
    <message>
        <source>%1 (not a valid file name)</source>
        <translation>%1 (kein gültiger Dateiname)</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>... and %1 more</source>
        <translation>... und %1 weitere</translation>
    </message>
    <message>
        <source>These files or folders were not downloaded:
%1</source>
        <translation>Diese Dateien oder Ordner wurden nicht heruntergeladen:
%1</translation>
    </message>
    <message>
        <source>Unexpected Error: Wrong parameters in sdmanager:on_selectallBtn_clicked</source>
        <translation>Unerwarteter Fehler: Falsche Parameter in sdmanager:on_selectallBtn_clicked</translation>
    </message>
    <message>
        <source>Unexpected Error: Wrong parameters in sdmanager:on_delectallBtn_clicked</source>
        <translation>Unerwarteter Fehler: Falsche Parameter in sdmanager:on_delectallBtn_clicked</translation>
    </message>
    <message>
        <source>SD Format</source>
        <translation>SD-Formatierung</translation>
    </message>
    <message>
        <source>All files will be lost, are you sure?</source>
        <translation>Alle Dateien gehen verloren. Sind Sie sicher?</translation>
    </message>
    <message>
        <source>Unexpected error occured</source>
        <translation>Unerwarteter Fehler aufgetreten</translation>
    </message>
    <message>
        <source>Success!</source>
        <translation>Erfolgreich!</translation>
    </message>
    <message>
        <source>the transfer ended after %1 of %2 bytes</source>
        <translation>die Übertragung endete nach %1 von %2 Byte</translation>
    </message>
    <message>
        <source>an older file of that name is in the way</source>
        <translation>eine ältere Datei dieses Namens ist im Weg</translation>
    </message>
    <message>
        <source>the answer is longer than the tool accepts</source>
        <translation>die Antwort ist länger, als das Programm annimmt</translation>
    </message>
    <message>
        <source>the camera answered %1 %2</source>
        <translation>die Kamera antwortete %1 %2</translation>
    </message>
    <message>
        <source>the camera did not answer in time</source>
        <translation>die Kamera antwortete nicht rechtzeitig</translation>
    </message>
</context>
<context>
    <name>userCheckDialog</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Authentication required:</source>
        <translation>Anmeldung erforderlich:</translation>
    </message>
    <message>
        <source>username:</source>
        <translation>Benutzername:</translation>
    </message>
    <message>
        <source>password:</source>
        <translation>Passwort:</translation>
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
        <source>Authentication</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Username and password can not be checked, changes might be invalid</source>
        <translation>Benutzername und Passwort können nicht geprüft werden, Änderungen sind möglicherweise ungültig</translation>
    </message>
    <message>
        <source>Timeout, username and password could not be checked</source>
        <translation>Zeitüberschreitung, Benutzername und Passwort konnten nicht geprüft werden</translation>
    </message>
    <message>
        <source>Authentification</source>
        <translation>Authentifizierung</translation>
    </message>
    <message>
        <source>Your username or password is not correct!</source>
        <translation>Ihr Benutzername oder Passwort ist nicht korrekt!</translation>
    </message>
</context>
</TS>

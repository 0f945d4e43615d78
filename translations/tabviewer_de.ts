<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>FeatureTableModel</name>
    <message>
        <source>(command)</source>
        <translation>(Befehl)</translation>
    </message>
    <message>
        <source>(raw data)</source>
        <translation>(Rohdaten)</translation>
    </message>
    <message>
        <source>, step %1</source>
        <translation>, Schritt %1</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Feature</source>
        <translation>Merkmal</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Writable</source>
        <translation>Schreibbar</translation>
    </message>
</context>
<context>
    <name>ImagePane</name>
    <message>
        <source>Frames received: %1  shown: %2  display: %3 fps</source>
        <translation>Bilder empfangen: %1  gezeigt: %2  Anzeige: %3 fps</translation>
    </message>
    <message>
        <source>No image</source>
        <translation>Kein Bild</translation>
    </message>
</context>
<context>
    <name>OpenedCamera</name>
    <message>
        <source>No camera named %1</source>
        <translation>Keine Kamera namens %1</translation>
    </message>
    <message>
        <source>Cannot open camera %1: %2</source>
        <translation>Kamera %1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>Camera %1 was lost: it no longer answers</source>
        <translation>Kamera %1 ist verloren: sie antwortet nicht mehr</translation>
    </message>
</context>
<context>
    <name>ViewerWindow</name>
    <message>
        <source>Tab viewer</source>
        <translation>Tab-Betrachter</translation>
    </message>
    <message>
        <source>%1 did not take the acquisition signal</source>
        <translation>%1 hat das Aufnahmesignal nicht angenommen</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Camera: </source>
        <translation>Kamera: </translation>
    </message>
    <message>
        <source>Filter features by name</source>
        <translation>Merkmale nach Namen filtern</translation>
    </message>
    <message>
        <source>The camera refused to start acquisition</source>
        <translation>Die Kamera hat den Start der Aufnahme abgelehnt</translation>
    </message>
    <message>
        <source>The camera refused to stop acquisition</source>
        <translation>Die Kamera hat das Ende der Aufnahme abgelehnt</translation>
    </message>
    <message>
        <source>%1 declined camera %2 with code %3</source>
        <translation>%1 hat Kamera %2 mit Code %3 abgelehnt</translation>
    </message>
    <message>
        <source>No tab for this camera.</source>
        <translation>Kein Tab für diese Kamera.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Stop acquisition</source>
        <translation>Aufnahme beenden</translation>
    </message>
    <message>
        <source>Start acquisition</source>
        <translation>Aufnahme starten</translation>
    </message>
    <message>
        <source>Opening camera %1...</source>
        <translation>Kamera %1 wird geöffnet...</translation>
    </message>
    <message>
        <source>Camera %1 is controlled by another program: its features can only be read</source>
        <translation>Kamera %1 wird von einem anderen Programm gesteuert: ihre Merkmale können nur gelesen werden</translation>
    </message>
    <message>
        <source>Camera %1 is back</source>
        <translation>Kamera %1 ist wieder da</translation>
    </message>
</context>
</TS>

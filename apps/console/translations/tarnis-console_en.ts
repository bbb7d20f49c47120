<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB">
<context>
    <name>ReplyText</name>
    <message numerus="yes">
        <source>%Ln value(s)</source>
        <translation>
            <numerusform>%Ln value</numerusform>
            <numerusform>%Ln values</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %Ln of them not finite and omitted below</source>
        <translation>
            <numerusform>, %Ln of them not finite and omitted below</numerusform>
            <numerusform>, %Ln of them not finite and omitted below</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln byte(s)</source>
        <translation>
            <numerusform>%Ln byte</numerusform>
            <numerusform>%Ln bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::CommandPanel</name>
    <message numerus="yes">
        <source>, %Ln more to go</source>
        <translation>
            <numerusform>, %Ln more to go</numerusform>
            <numerusform>, %Ln more to go</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>“%1” was given up; %Ln later command(s) got no reply.</source>
        <translation>
            <numerusform>“%1” was given up; %Ln later command got no reply.</numerusform>
            <numerusform>“%1” was given up; %Ln later commands got no reply.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::HistogramChooser</name>
    <message numerus="yes">
        <source>%1: %Ln row(s) of %2 bins, %3</source>
        <translation>
            <numerusform>%1: %Ln row of %2 bins, %3</numerusform>
            <numerusform>%1: %Ln rows of %2 bins, %3</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::ModulesWindow</name>
    <message numerus="yes">
        <source>Waiting for %Ln more</source>
        <translation>
            <numerusform>Waiting for %Ln more</numerusform>
            <numerusform>Waiting for %Ln more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) answered</source>
        <translation>
            <numerusform>%Ln row answered</numerusform>
            <numerusform>%Ln rows answered</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::RunsWindow</name>
    <message numerus="yes">
        <source>%Ln run(s)</source>
        <translation>
            <numerusform>%Ln run</numerusform>
            <numerusform>%Ln runs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%L1 of %Ln run(s)</source>
        <translation>
            <numerusform>%L1 of %Ln run</numerusform>
            <numerusform>%L1 of %Ln runs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln other entry(s)</source>
        <translation>
            <numerusform>%Ln other entry</numerusform>
            <numerusform>%Ln other entries</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::SettingsPanel</name>
    <message numerus="yes">
        <source>Sending %Ln line(s)...</source>
        <translation>
            <numerusform>Sending %Ln line...</numerusform>
            <numerusform>Sending %Ln lines...</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln changed here, not on the server yet.</source>
        <translation>
            <numerusform>%Ln changed here, not on the server yet.</numerusform>
            <numerusform>%Ln changed here, not on the server yet.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The server has restarted. %Ln setting(s) sent before are not on it: send the settings again.</source>
        <translation>
            <numerusform>The server has restarted. %Ln setting sent before is not on it: send the settings again.</numerusform>
            <numerusform>The server has restarted. %Ln settings sent before are not on it: send the settings again.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>console::SnapshotWindow</name>
    <message numerus="yes">
        <source>%Ln value(s)</source>
        <translation>
            <numerusform>%Ln value</numerusform>
            <numerusform>%Ln values</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%L1 of %Ln value(s)</source>
        <translation>
            <numerusform>%L1 of %Ln value</numerusform>
            <numerusform>%L1 of %Ln values</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %Ln of them changed since the previous snapshot, as of %2</source>
        <translation>
            <numerusform>%1, %Ln of them changed since the previous snapshot, as of %2</numerusform>
            <numerusform>%1, %Ln of them changed since the previous snapshot, as of %2</numerusform>
        </translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CAxCoordinateWidget</name>
    <message>
        <source>Form</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CAxEarthManipulator</name>
    <message>
        <source>longitude:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>degree</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>latitude:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>altitude:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>meter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera range:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CAxEarthViewer</name>
    <message>
        <source>Video adapter tips</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to run application,the video adapter not support GLSL 330 .Please check you adapter driver version or hardware supported.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create tile map service...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading Sky...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading prohibited area...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Route Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create tile map service error.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CAxMapToolsWidget</name>
    <message>
        <source>CAxMapToolsWidget</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display shoot point</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No fly zone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Distance measurement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Measuring elevation mark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display all blocks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Follow Aircraft</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Audio</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HostOptions</name>
    <message>
        <source>Show this text and end.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fly to four places, write a picture of each to DIR, end.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show this map instead of the shipped ones.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size of the window in pixels (1440x900).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Look at this point: degrees, metres; pitch -90 is straight down.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write the window&apos;s picture once it is complete, end.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End S seconds after the map was loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Language of the texts: en or zh_CN.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Ground control</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blocks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Block</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save picture...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>S&amp;ky and graticule</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Compass</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coo&amp;rdinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Places</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Whole globe</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spanish Peaks from 20 km</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spanish Peaks from 500 m</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ready</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pictures (*.png *.jpg)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AxGroundControl %1

A small host for the AxEarthViewer globe. MIT licence; the NOTICE file credits the map data.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Tour</name>
    <message>
        <source>%1: the picture was still incomplete after a minute</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>

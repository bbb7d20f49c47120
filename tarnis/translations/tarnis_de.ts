<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>DialogCheckList</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Graph1DDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Curves</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Visible items</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>desc</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AutoUpdate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>infoLabel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed to parse information - &apos;%1&apos;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid index!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Graph2DFilterDialog</name>
    <message>
        <source>Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Matrix</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 1, column 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 1, column 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 1, column 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 1, column 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 1, column 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 2, column 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 2, column 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 2, column 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 2, column 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 2, column 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 3, column 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 3, column 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 3, column 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 3, column 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 3, column 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 4, column 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 4, column 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 4, column 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 4, column 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 4, column 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 5, column 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 5, column 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 5, column 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 5, column 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row 5, column 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Divisor</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LiveWindow</name>
    <message>
        <source>&gt;&gt;&gt; %1
&lt;&lt;&lt; %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MultiVectorGraphWidget</name>
    <message>
        <source>Save CSV...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Column Chart</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect Points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Peak Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Log Scale</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Visible Items</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NameValueListDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PeakSearchDialog</name>
    <message>
        <source>Peak Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Threshold ( % )</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Amplitude</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FWHM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display Points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid threshold.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid width.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SelectCheckedDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UnCheck Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reverse Selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SelectDirectoryDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; already exists. Do you want to overwrite it?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SelectPathDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File not found: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; already exists. Do you want to overwrite it?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatDialog</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TarnisSession</name>
    <message>
        <source>The connection was refused by the peer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The host was not found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VectorGraphWidget</name>
    <message>
        <source>Save CSV...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save CSV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CSV Files (*.csv *.txt)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>XRangeInputDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X-max</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X-min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1-min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1-max</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>XYGraphWidget</name>
    <message>
        <source>Auto Scale X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Auto Scale Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save PNG...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select X Range</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear X Range</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Min Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Max Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images (*.png *.jpg)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save %1 failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select %1 Range</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear %1 Range</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>XYRangeInputDialog</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X-min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y-min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X-max</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y-max</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>

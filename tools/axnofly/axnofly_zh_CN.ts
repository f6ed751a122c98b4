<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>axnofly</name>
    <message>
        <source>&quot;%1&quot; holds nothing.</source>
        <translation>“%1”没有内容。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no table of airports: it needs the columns icao, type, lat, lon and runways.</source>
        <translation>“%1”不是机场表：需要 icao、type、lat、lon 和 runways 列。</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>正在读取 %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no id.</source>
        <translation>“%1”不是编号。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;, &quot;%2&quot; is no place.</source>
        <translation>“%1”、“%2”不是位置。</translation>
    </message>
    <message>
        <source>A zone with this id was read before; this one is left out.</source>
        <translation>已读入同一编号的禁飞区，略去此条。</translation>
    </message>
    <message>
        <source>There is no zone to write; &quot;%1&quot; stays as it is.</source>
        <translation>没有可写入的禁飞区，“%1”保持原样。</translation>
    </message>
    <message>
        <source>%1: %2 zones, %3 lifts, %4 remarks</source>
        <translation>%1：%2 个禁飞区，%3 个解禁，%4 条提示</translation>
    </message>
    <message>
        <source>--near needs longitude,latitude,kilometres.</source>
        <translation>--near 需要 经度,纬度,千米。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds no zone; the globe does not start with it.</source>
        <translation>“%1”没有禁飞区，地球无法用它启动。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is being changed by another program: there is &quot;%2&quot;.</source>
        <translation>其他程序正在修改“%1”：存在“%2”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number.</source>
        <translation>“%1”不是数字。</translation>
    </message>
    <message>
        <source>A radius of %1 m is not possible.</source>
        <translation>半径不能是 %1 米。</translation>
    </message>
    <message>
        <source>The shape leaves the globe.</source>
        <translation>图形超出地球范围。</translation>
    </message>
    <message>
        <source>The shape goes around a pole.</source>
        <translation>图形环绕极点。</translation>
    </message>
    <message>
        <source>There is no shape.</source>
        <translation>没有图形。</translation>
    </message>
    <message>
        <source>The coordinates cannot be converted to degrees.</source>
        <translation>坐标无法换算成度。</translation>
    </message>
    <message>
        <source>The holes of the shape are filled.</source>
        <translation>图形中的孔已填充。</translation>
    </message>
    <message>
        <source>The outline has fewer than three points.</source>
        <translation>轮廓少于三个点。</translation>
    </message>
    <message>
        <source>The shape is neither a point nor a polygon (%1).</source>
        <translation>图形既不是点也不是多边形（%1）。</translation>
    </message>
    <message>
        <source>Reading ended after feature %1: %2</source>
        <translation>读到第 %1 个要素后结束：%2</translation>
    </message>
    <message>
        <source>The zone has no id.</source>
        <translation>禁飞区没有编号。</translation>
    </message>
    <message>
        <source>The id &quot;%1&quot; holds a comma, which separates the ids of lifts.</source>
        <translation>编号“%1”含有逗号，而逗号用来分隔解禁的编号。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither 1 nor 0.</source>
        <translation>“%1”既不是 1 也不是 0。</translation>
    </message>
    <message>
        <source>The lift names no zone.</source>
        <translation>解禁没有指明禁飞区。</translation>
    </message>
    <message>
        <source>A date with a semicolon.</source>
        <translation>日期中有分号。</translation>
    </message>
    <message>
        <source>Makes and looks after the file in which AxEarthViewer keeps its no-fly zones.

  axnofly build --zones zones.csv --lifts lifts.geojson NoflyZone.db
  axnofly list NoflyZone.db
  axnofly check NoflyZone.db
  axnofly open NoflyZone.db plain.db      (then change plain.db with any SQLite program)
  axnofly seal plain.db NoflyZone.db

build  writes a zone file from tables or shapes: CSV (also .csv.gz), GeoJSON, KML, Shapefile
       and what else GDAL reads. A zone has an id (field local_id, id or name) and a shape: the
       feature's own, or the fields lng and lat, or the field area (&quot;lng,lat|lng,lat|...&quot;).
       A point is a circle of 8 km; a field radius, in metres, makes it another circle.
       Field enable: 1 or 0.
       A lift frees its shape inside the zones that its field local_ids names (ids with commas);
       further fields begin_at, expired_at, user_id and status (2 is granted, the default).
       What cannot be used is named with its line, or feature, and field; the rest is written.
list   prints the zones, or with --show-lifts the lifts, one a line.
check  prints everything doubtful about a zone file.
seal   enciphers a plain zone database.   open   does the reverse.

The key is that of the shipped sample unless --key-file names a file or the environment variable
AXNOFLY_KEY holds one. Programs that use the viewer name theirs with CAxNoflyZoneMgr::SetNoflyKey().

The program ends with 0 when all is well, 1 when it failed, 2 when it was called wrongly, 3 when
check found something or build --strict could not use something.</source>
        <translation>制作和维护 AxEarthViewer 存放禁飞区的文件。

  axnofly build --zones zones.csv --lifts lifts.geojson NoflyZone.db
  axnofly list NoflyZone.db
  axnofly check NoflyZone.db
  axnofly open NoflyZone.db plain.db      （之后可用任何 SQLite 程序修改 plain.db）
  axnofly seal plain.db NoflyZone.db

build  由表格或图形写成禁飞区文件：CSV（包括 .csv.gz）、GeoJSON、KML、Shapefile
       以及 GDAL 能读取的其他格式。禁飞区有编号（字段 local_id、id 或 name）和图形：
       要素自身的图形，或字段 lng 和 lat，或字段 area（&quot;lng,lat|lng,lat...&quot;）。
       点表示 8 千米的圆；字段 radius（米）给出其他半径。
       字段 enable：1 或 0。
       解禁在字段 local_ids 指明的禁飞区（编号以逗号分隔）内放开其图形；
       其他字段为 begin_at、expired_at、user_id 和 status（2 为已批准，默认值）。
       无法使用的内容会指出行号（或要素）和字段，其余照常写入。
list   显示禁飞区，或用 --show-lifts 显示解禁，每行一个。
check  显示禁飞区文件中的所有可疑之处。
seal   加密明文的禁飞区数据库。   open   与之相反。

除非 --key-file 指明文件或环境变量 AXNOFLY_KEY 给出密钥，否则使用随附样本的密钥。
使用地球的程序用 CAxNoflyZoneMgr::SetNoflyKey() 指明自己的密钥。

程序在一切正常时以 0 结束，失败时为 1，调用有误时为 2，
check 发现问题或 build --strict 有无法使用的内容时为 3。</translation>
    </message>
    <message>
        <source>build, list, check, seal or open</source>
        <translation>build、list、check、seal 或 open</translation>
    </message>
    <message>
        <source>The zone file; for seal and open source and target.</source>
        <translation>禁飞区文件；seal 和 open 为来源和目标。</translation>
    </message>
    <message>
        <source>build: a file of zones; may be repeated.</source>
        <translation>build：禁飞区文件，可多次给出。</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>build: a file of lifts; may be repeated.</source>
        <translation>build：解禁文件，可多次给出。</translation>
    </message>
    <message>
        <source>build: a table of airports (icao, type, lat, lon, runways), each of which becomes a zone; may be repeated.</source>
        <translation>build：机场表（icao、type、lat、lon、runways），每个机场成为一个禁飞区；可多次给出。</translation>
    </message>
    <message>
        <source>build: do not seal the file.</source>
        <translation>build：不加密文件。</translation>
    </message>
    <message>
        <source>build: write nothing unless everything can be used.</source>
        <translation>build：只有全部可用时才写入。</translation>
    </message>
    <message>
        <source>build: print counts only, not each thing that cannot be used.</source>
        <translation>build：只显示数量，不逐条显示无法使用的内容。</translation>
    </message>
    <message>
        <source>list: the lifts.</source>
        <translation>list：解禁。</translation>
    </message>
    <message>
        <source>list: only zones whose middle is near a place.</source>
        <translation>list：只列出中心在某处附近的禁飞区。</translation>
    </message>
    <message>
        <source>lng,lat,km</source>
        <translation>经度,纬度,千米</translation>
    </message>
    <message>
        <source>The file whose bytes are the key.</source>
        <translation>其字节即为密钥的文件。</translation>
    </message>
    <message>
        <source>Say how far the work is, even when not on a terminal.</source>
        <translation>即使不在终端上也显示进度。</translation>
    </message>
    <message>
        <source>Say what to do: build, list, check, seal or open; --help tells more.</source>
        <translation>请说明要做什么：build、list、check、seal 或 open；详见 --help。</translation>
    </message>
    <message>
        <source>%1 needs a source and a target.</source>
        <translation>%1 需要来源和目标。</translation>
    </message>
    <message>
        <source>%1 needs one zone file.</source>
        <translation>%1 需要一个禁飞区文件。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no command: build, list, check, seal or open.</source>
        <translation>“%1”不是命令：build、list、check、seal 或 open。</translation>
    </message>
    <message>
        <source>There is no file &quot;%1&quot;.</source>
        <translation>没有文件“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is in no known format.</source>
        <translation>“%1”的格式未知。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be read: %2</source>
        <translation>无法读取“%1”：%2</translation>
    </message>
    <message>
        <source>%1, feature %2</source>
        <translation>%1，要素 %2</translation>
    </message>
    <message>
        <source>%1, layer %2, feature %3</source>
        <translation>%1，图层 %2，要素 %3</translation>
    </message>
    <message>
        <source>%1: %2 %</source>
        <translation>%1：%2 %</translation>
    </message>
    <message>
        <source>%1, row %2</source>
        <translation>%1，第 %2 行</translation>
    </message>
    <message>
        <source>%1, row %2 (%3)</source>
        <translation>%1，第 %2 行（%3）</translation>
    </message>
    <message>
        <source>The outline leaves the globe.</source>
        <translation>轮廓超出地球范围。</translation>
    </message>
    <message>
        <source>The outline goes around a pole.</source>
        <translation>轮廓环绕极点。</translation>
    </message>
    <message>
        <source>The outline crosses or touches itself.</source>
        <translation>轮廓自相交或自相接。</translation>
    </message>
    <message>
        <source>The outline reaches %1 km from its middle. Small areas can lie in it unnoticed; divide zones that reach more than %2 km.</source>
        <translation>轮廓距其中心达 %1 千米，其中的小区域可能未被发现；请拆分超过 %2 千米的禁飞区。</translation>
    </message>
    <message>
        <source>This is neither 1 nor 0.</source>
        <translation>既不是 1 也不是 0。</translation>
    </message>
    <message>
        <source>This is no number.</source>
        <translation>不是数字。</translation>
    </message>
    <message>
        <source>This is no date.</source>
        <translation>不是日期。</translation>
    </message>
    <message>
        <source>The lift is out of date since %1.</source>
        <translation>解禁自 %1 起已过期。</translation>
    </message>
    <message>
        <source>The lift ends before it begins.</source>
        <translation>解禁的结束早于开始。</translation>
    </message>
    <message>
        <source>A single point lifts nothing; an outline needs three.</source>
        <translation>单个点不能解禁，轮廓需要三个点。</translation>
    </message>
    <message>
        <source>Lifts that name a zone with an id of one character are passed over.</source>
        <translation>只有一个字符的编号的解禁会被略过。</translation>
    </message>
    <message>
        <source>There is no zone &quot;%1&quot;.</source>
        <translation>没有禁飞区“%1”。</translation>
    </message>
    <message>
        <source>Checking zones</source>
        <translation>正在检查禁飞区</translation>
    </message>
    <message>
        <source>The id stands in an earlier row too; the later row counts.</source>
        <translation>前面的行已有此编号，以后面的行为准。</translation>
    </message>
    <message>
        <source>Writing zones</source>
        <translation>正在写入禁飞区</translation>
    </message>
    <message>
        <source>There is no temporary folder: %1.</source>
        <translation>没有临时文件夹：%1。</translation>
    </message>
    <message>
        <source>The zones cannot be written: %1.</source>
        <translation>无法写入禁飞区：%1。</translation>
    </message>
    <message>
        <source>Point %1 of the area, &quot;%2&quot;, is not a longitude and a latitude.</source>
        <translation>区域的第 %1 个点“%2”不是经度和纬度。</translation>
    </message>
    <message>
        <source>The area has no point.</source>
        <translation>区域没有点。</translation>
    </message>
    <message>
        <source>The area has two points; an outline needs three.</source>
        <translation>区域只有两个点，轮廓需要三个点。</translation>
    </message>
    <message>
        <source>Runway %1 is not two points: &quot;%2&quot;.</source>
        <translation>第 %1 条跑道不是两个点：“%2”。</translation>
    </message>
    <message>
        <source>Runway %1 leaves the globe.</source>
        <translation>第 %1 条跑道超出地球范围。</translation>
    </message>
    <message>
        <source>Runway %1 would be %2 km long.</source>
        <translation>第 %1 条跑道将长达 %2 千米。</translation>
    </message>
    <message>
        <source>Runway %1 would reach %2 km from the airport.</source>
        <translation>第 %1 条跑道将距机场 %2 千米。</translation>
    </message>
    <message>
        <source>Not everything can be used (%1 remarks); nothing is written.</source>
        <translation>并非全部可用（%1 条提示），未写入任何内容。</translation>
    </message>
</context>
</TS>

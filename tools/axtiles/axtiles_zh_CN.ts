<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>axtiles</name>
    <message>
        <source>Fetches the tiles of an area into one MBTiles file, which AxEarthViewer and other programs show without a network.

  axtiles --area -105.3,37.2,-104.8,37.6 --levels 8-15 \
          &quot;https://tiles.example.org/{z}/{x}/{y}.png&quot; peaks.mbtiles
  axtiles --outline field.kml --margin 500 --levels 12-18 ADDRESS field.mbtiles
  axtiles --estimate ...        tells how many tiles and megabytes that would be

In the address {z} stands for the level, {x} for the column, {y} for the row from the north, {-y} for the row from the south, {s} for one of the hosts a, b and c, [1234] for one of these letters. The service has to be in Web Mercator.

The same command goes on where it was broken off, by Ctrl+C, a lost network or a power cut: tiles that are in the file are not asked for again. The service is asked by few requests at once and left alone as long as it asks for. Whether it may be fetched from in this way is in its terms of use; many forbid it.

A proxy is taken from the system (http_proxy, https_proxy).

The program ends with 0 when all that the service has is in the file, 1 when it failed and there is no file to go on with, 2 when it was called wrongly, 3 when a part is in the file and the same command will go on.</source>
        <translation>将一个区域的瓦片下载到一个 MBTiles 文件中，AxEarthViewer 和其他程序无需网络即可显示。

  axtiles --area -105.3,37.2,-104.8,37.6 --levels 8-15 \
          &quot;https://tiles.example.org/{z}/{x}/{y}.png&quot; peaks.mbtiles
  axtiles --outline field.kml --margin 500 --levels 12-18 ADDRESS field.mbtiles
  axtiles --estimate ...        显示瓦片数量和兆字节数

地址中 {z} 表示级别，{x} 表示列，{y} 表示自北向南的行，{-y} 表示自南向北的行，{s} 表示主机 a、b、c 之一，[1234] 表示这些字符之一。服务必须采用 Web 墨卡托投影。

无论因 Ctrl+C、网络中断还是断电而中止，再次执行同一命令即可从中止处继续：文件中已有的瓦片不会再次请求。程序同时只发出少量请求，并按服务的要求暂停访问。是否允许这样下载，请查看服务的使用条款；许多服务禁止批量下载。

代理取自系统设置（http_proxy、https_proxy）。

退出码：0 表示服务拥有的瓦片均已写入文件；1 表示失败，且没有可继续的文件；2 表示命令行有误；3 表示只写入了一部分，再次执行同一命令可继续。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: no margin can be put around &quot;%2&quot;.</source>
        <translation>“%1”：无法在“%2”周围添加边距。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has no area in it.</source>
        <translation>“%1”中没有区域。</translation>
    </message>
    <message>
        <source>--%1 is a whole number from %2 to %3.</source>
        <translation>--%1 应为 %2 至 %3 的整数。</translation>
    </message>
    <message>
        <source>A rectangle of degrees; it crosses 180 degrees where its east is less than its west.</source>
        <translation>以度表示的矩形；东经度小于西经度时跨越 180 度经线。</translation>
    </message>
    <message>
        <source>The areas of a file: KML, KMZ, GeoJSON, Shapefile, GeoPackage, DXF.</source>
        <translation>文件中的区域：KML、KMZ、GeoJSON、Shapefile、GeoPackage、DXF。</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Metres around the areas of --outline.</source>
        <translation>--outline 区域周围的米数。</translation>
    </message>
    <message>
        <source>metres</source>
        <translation>米</translation>
    </message>
    <message>
        <source>From the coarse one to the fine one, 0 to %1.</source>
        <translation>从粗级到细级，0 至 %1。</translation>
    </message>
    <message>
        <source>Name of the map; otherwise the one in the file, or that of the file.</source>
        <translation>地图名称；默认为文件中已有的名称，否则为文件名。</translation>
    </message>
    <message>
        <source>text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>Whose pictures they are; kept in the file, also when it is gone on with.</source>
        <translation>图片的版权说明；保存在文件中，继续下载时也保留。</translation>
    </message>
    <message>
        <source>Requests at once, 1 to %1; otherwise 4.</source>
        <translation>同时请求数，1 至 %1；默认为 4。</translation>
    </message>
    <message>
        <source>number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>Seconds of silence that are waited for; otherwise 20.</source>
        <translation>无响应时等待的秒数；默认为 20。</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>秒</translation>
    </message>
    <message>
        <source>No more tiles than this; otherwise 100000.</source>
        <translation>瓦片数量上限；默认为 100000。</translation>
    </message>
    <message>
        <source>Who asks, told to the service: a name and a way to reach you.</source>
        <translation>告知服务的请求者：名称和联系方式。</translation>
    </message>
    <message>
        <source>Ask again for tiles that the file knows to be missing.</source>
        <translation>再次请求文件中记为缺失的瓦片。</translation>
    </message>
    <message>
        <source>Ask for a few tiles, tell how many tiles and megabytes there are, and write nothing.</source>
        <translation>请求少量瓦片，显示瓦片数量和兆字节数，不写入任何内容。</translation>
    </message>
    <message>
        <source>Say nothing but what is wrong.</source>
        <translation>只显示错误。</translation>
    </message>
    <message>
        <source>Say how far it is, even when not on a terminal.</source>
        <translation>即使不在终端上也显示进度。</translation>
    </message>
    <message>
        <source>Of the tile service.</source>
        <translation>瓦片服务的地址。</translation>
    </message>
    <message>
        <source>The MBTiles file.</source>
        <translation>MBTiles 文件。</translation>
    </message>
    <message>
        <source>An address and a file are needed; --help tells more.</source>
        <translation>需要一个地址和一个文件；--help 显示更多信息。</translation>
    </message>
    <message>
        <source>Either --area or --outline is needed.</source>
        <translation>需要 --area 或 --outline 之一。</translation>
    </message>
    <message>
        <source>--levels is needed, as in --levels 8-16.</source>
        <translation>需要 --levels，例如 --levels 8-16。</translation>
    </message>
    <message>
        <source>--area is west,south,east,north in degrees.</source>
        <translation>--area 应为以度表示的 西,南,东,北。</translation>
    </message>
    <message>
        <source>%1 % of %2 tiles, level %3, %4 MB</source>
        <translation>%2 个瓦片的 %1 %，级别 %3，%4 MB</translation>
    </message>
    <message>
        <source>waiting for %1 s: %2</source>
        <translation>等待 %1 秒：%2</translation>
    </message>
    <message>
        <source>%1 tiles</source>
        <translation>%1 个瓦片</translation>
    </message>
    <message>
        <source>, about %1 MB (of %2 tiles that were asked for the service has %3)</source>
        <translation>，约 %1 MB（试请求 %2 个瓦片，服务有 %3 个）</translation>
    </message>
    <message>
        <source>%1: %2 of %3 tiles: %4 fetched, %5 kept, %6 missing, %7 unusable</source>
        <translation>%1：%3 个瓦片中的 %2 个：下载 %4，已有 %5，缺失 %6，不可用 %7</translation>
    </message>
</context>
</TS>

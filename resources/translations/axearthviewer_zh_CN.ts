<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CAxCoordinateWidget</name>
    <message>
        <source>Form</source>
        <translation>坐标</translation>
    </message>
</context>
<context>
    <name>AxToolBox</name>
    <message>
        <source>The drawing goes on when Shift is let go.</source>
        <translation>松开 Shift 键后继续绘制。</translation>
    </message>
</context>
<context>
    <name>CAxEarthManipulator</name>
    <message>
        <source>longitude:</source>
        <translation>经度：</translation>
    </message>
    <message>
        <source>degree</source>
        <translation>度</translation>
    </message>
    <message>
        <source>latitude:</source>
        <translation>纬度：</translation>
    </message>
    <message>
        <source>altitude:</source>
        <translation>高度：</translation>
    </message>
    <message>
        <source>meter</source>
        <translation>米</translation>
    </message>
    <message>
        <source>camera range:</source>
        <translation>视距：</translation>
    </message>
    <message>
        <source>Move blocks</source>
        <translation>移动多个测区</translation>
    </message>
    <message>
        <source>%1:%2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>CAxEarthViewer</name>
    <message>
        <source>Display all blocks</source>
        <translation>显示全部测区</translation>
    </message>
    <message>
        <source>There is no block to be seen on the map.</source>
        <translation>地图上没有可见的测区。</translation>
    </message>
    <message>
        <source>Video adapter tips</source>
        <translation>显卡提示</translation>
    </message>
    <message>
        <source>Unable to run application,the video adapter not support GLSL 330 .Please check you adapter driver version or hardware supported.</source>
        <translation>无法运行程序：显卡不支持 GLSL 330，请检查显卡驱动版本或硬件是否支持。</translation>
    </message>
    <message>
        <source>Create tile map service...</source>
        <translation>正在创建瓦片地图服务...</translation>
    </message>
    <message>
        <source>Loading Sky...</source>
        <translation>正在加载天空...</translation>
    </message>
    <message>
        <source>Loading prohibited area...</source>
        <translation>正在加载禁飞区...</translation>
    </message>
    <message>
        <source>Route Information</source>
        <translation>航线信息</translation>
    </message>
    <message>
        <source>Create tile map service error.</source>
        <translation>创建瓦片地图服务失败。</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>撤销%1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>重做%1</translation>
    </message>
    <message>
        <source>Not while something is drawn or moved: finish it, or give it up with Escape.</source>
        <translation>正在绘制或移动对象时不能进行此操作：请先完成，或按 Esc 键放弃。</translation>
    </message>
    <message>
        <source>Rename %1 to %2</source>
        <translation>将%1重命名为%2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1等，另有 %2 个</translation>
    </message>
    <message>
        <source>Delete block</source>
        <translation>删除测区</translation>
    </message>
    <message>
        <source>Delete blocks</source>
        <translation>删除多个测区</translation>
    </message>
    <message>
        <source>Draw block</source>
        <translation>绘制测区</translation>
    </message>
    <message>
        <source>Refused drawing</source>
        <translation>被拒绝的绘制</translation>
    </message>
    <message>
        <source>Please select the appropriate landing point because the landing point is too far from the job area.</source>
        <translation>降落点距离作业区域太远，请选择合适的降落点。</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>没有此文件。</translation>
    </message>
    <message>
        <source>The file may not be read.</source>
        <translation>无权读取此文件。</translation>
    </message>
    <message>
        <source>The file holds no map.</source>
        <translation>此文件不含地图。</translation>
    </message>
    <message>
        <source>Video adapter: %1, OpenGL %2, GLSL %3</source>
        <translation>显卡：%1，OpenGL %2，GLSL %3</translation>
    </message>
    <message>
        <source>The map is not open.</source>
        <translation>地图未打开。</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>文件 %1 不存在。</translation>
    </message>
</context>
<context>
    <name>CAxMapToolsWidget</name>
    <message>
        <source>CAxMapToolsWidget</source>
        <translation>地图工具</translation>
    </message>
    <message>
        <source>Display shoot point</source>
        <translation>显示拍摄点</translation>
    </message>
    <message>
        <source>No fly zone</source>
        <translation>禁飞区</translation>
    </message>
    <message>
        <source>Distance measurement</source>
        <translation>距离测量</translation>
    </message>
    <message>
        <source>Measuring elevation mark</source>
        <translation>高程标记测量</translation>
    </message>
    <message>
        <source>Display all blocks</source>
        <translation>显示全部测区</translation>
    </message>
    <message>
        <source>Follow Aircraft</source>
        <translation>跟随飞机</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>语音</translation>
    </message>
</context>
<context>
    <name>CAxMeasureArea</name>
    <message>
        <source>The outline crosses itself: no area</source>
        <translation>轮廓自相交：没有面积</translation>
    </message>
    <message>
        <source>double click: the last corner; Backspace: one corner back</source>
        <translation>双击：最后一个角点；退格键：撤回一个角点</translation>
    </message>
    <message>
        <source>over the ground about %1</source>
        <translation>地表约 %1</translation>
    </message>
</context>
<context>
    <name>CAxMeasurePlane</name>
    <message>
        <source>click or let go: the opposite corner</source>
        <translation>单击或松开：对角</translation>
    </message>
</context>
<context>
    <name>CAxProjCoordsToolHandler</name>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>height: %1</source>
        <translation>高度：%1</translation>
    </message>
</context>
<context>
    <name>CoordinatesMenu</name>
    <message>
        <source>Coordinate &amp;system</source>
        <translation>坐标系(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Decimal degrees</source>
        <translation>十进制度(&amp;D)</translation>
    </message>
    <message>
        <source>Degrees, &amp;minutes, seconds</source>
        <translation>度分秒(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;UTM</source>
        <translation>&amp;UTM</translation>
    </message>
    <message>
        <source>M&amp;GRS</source>
        <translation>M&amp;GRS</translation>
    </message>
    <message>
        <source>&amp;Other system (%1)...</source>
        <translation>其他坐标系（%1）(&amp;O)...</translation>
    </message>
    <message>
        <source>&amp;Other system...</source>
        <translation>其他坐标系(&amp;O)...</translation>
    </message>
    <message>
        <source>Coordinate system</source>
        <translation>坐标系</translation>
    </message>
    <message>
        <source>An EPSG code (32613), the exact name of a system, a PROJ string or WKT.</source>
        <translation>EPSG 代码（32613）、坐标系的准确名称、PROJ 字符串或 WKT。</translation>
    </message>
</context>
<context>
    <name>GoTo</name>
    <message>
        <source>The middle of a square with sides of %1</source>
        <translation>边长 %1 的方格中心</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>Degrees (37.4032, -105.0167 or 37°24'11.5&quot;N 105°01'W), UTM (13N 500000 4140000) or MGRS (13S EB 00000 40000), WGS 84.</source>
        <translation>度（37.4032, -105.0167 或 37°24'11.5&quot;N 105°01'W）、UTM（13N 500000 4140000）或 MGRS（13S EB 00000 40000），WGS 84。</translation>
    </message>
    <message>
        <source>Two numbers alone are coordinates of %1.</source>
        <translation>仅有两个数字时为 %1 的坐标。</translation>
    </message>
    <message>
        <source>Its area of use: %1.</source>
        <translation>其适用范围：%1。</translation>
    </message>
    <message>
        <source>This is beyond its area of use, %1.</source>
        <translation>此处在其适用范围 %1 之外。</translation>
    </message>
    <message>
        <source>The middle of the view: %1</source>
        <translation>视图中心：%1</translation>
    </message>
    <message>
        <source>Go to a coordinate</source>
        <translation>转到坐标</translation>
    </message>
    <message>
        <source>Fly there</source>
        <translation>飞到该处</translation>
    </message>
    <message>
        <source>Set a mark</source>
        <translation>设置标记</translation>
    </message>
    <message>
        <source>Mark not set</source>
        <translation>未设置标记</translation>
    </message>
</context>
<context>
    <name>HostOptions</name>
    <message>
        <source>Show this text and end.</source>
        <translation>显示本帮助后退出。</translation>
    </message>
    <message>
        <source>Fly to four places, write a picture of each to DIR, end.</source>
        <translation>依次飞到四个地点，各写一张图片到 DIR 后退出。</translation>
    </message>
    <message>
        <source>Show this map instead of the shipped ones.</source>
        <translation>用此地图代替自带的地图。</translation>
    </message>
    <message>
        <source>Size of the window in pixels (1440x900).</source>
        <translation>窗口大小，像素（1440x900）。</translation>
    </message>
    <message>
        <source>Look at this point: degrees, metres; pitch -90 is straight down.</source>
        <translation>观察此点：单位为度和米；俯仰 -90 为垂直向下。</translation>
    </message>
    <message>
        <source>Write the window's picture once it is complete, end.</source>
        <translation>画面完整后写出窗口图片并退出。</translation>
    </message>
    <message>
        <source>End S seconds after the map was loaded.</source>
        <translation>地图加载 S 秒后退出。</translation>
    </message>
    <message>
        <source>Print a line when the map is loaded and when its picture is complete.</source>
        <translation>在地图加载完毕和画面完整时各输出一行。</translation>
    </message>
    <message>
        <source>Language of the texts: en or zh_CN.</source>
        <translation>界面语言：en 或 zh_CN。</translation>
    </message>
    <message>
        <source>Unexpected argument '%1'.</source>
        <translation>多余的参数“%1”。</translation>
    </message>
    <message>
        <source>--%1 needs a value.</source>
        <translation>--%1 需要一个值。</translation>
    </message>
    <message>
        <source>--map: there is no file '%1'.</source>
        <translation>--map：文件“%1”不存在。</translation>
    </message>
    <message>
        <source>--size: '%1' is no size such as 1440x900.</source>
        <translation>--size：“%1”不是 1440x900 这样的大小。</translation>
    </message>
    <message>
        <source>--view: '%1' is not lon,lat,alt,heading,pitch,range with a place on the globe, a pitch from -90 to 90 and a range above 0.</source>
        <translation>--view：“%1”不是 lon,lat,alt,heading,pitch,range：地点须在地球上，俯仰在 -90 到 90 之间，视距大于 0。</translation>
    </message>
    <message>
        <source>--quit-after: '%1' is no number of seconds from 0 to 86400.</source>
        <translation>--quit-after：“%1”不是 0 到 86400 之间的秒数。</translation>
    </message>
    <message>
        <source>--lang: '%1' is neither en nor zh_CN.</source>
        <translation>--lang：“%1”既不是 en 也不是 zh_CN。</translation>
    </message>
    <message>
        <source>Usage: AxGroundControl [options]</source>
        <translation>用法：AxGroundControl [选项]</translation>
    </message>
    <message>
        <source>Write every signal and where the camera comes to rest to FILE, one JSON object a line; - is the standard output.</source>
        <translation>把每个信号以及相机停下的位置写入 FILE，每行一个 JSON 对象；- 表示标准输出。</translation>
    </message>
    <message>
        <source>Do not speak. Runs that end by themselves (--tour, --shot, --quit-after) never do.</source>
        <translation>不播报语音。会自行结束的运行（--tour、--shot、--quit-after）从不播报。</translation>
    </message>
    <message>
        <source>--log: '%1' cannot be written: %2</source>
        <translation>--log：无法写入“%1”：%2</translation>
    </message>
    <message>
        <source>Draw the blocks of this JSON file: [{&quot;name&quot;: &quot;A&quot;, &quot;type&quot;: 0, &quot;anchor&quot;: [[lon, lat], ...]}, ...].</source>
        <translation>绘制此 JSON 文件中的测区：[{&quot;name&quot;: &quot;A&quot;, &quot;type&quot;: 0, &quot;anchor&quot;: [[经度, 纬度], ...]}, ...]。</translation>
    </message>
    <message>
        <source>--blocks: %1</source>
        <translation>--blocks：%1</translation>
    </message>
    <message>
        <source>Take the no-fly zones of this file instead of the shipped ones.</source>
        <translation>使用此文件中的禁飞区，而非随附的禁飞区。</translation>
    </message>
    <message>
        <source>The zone file is sealed with the bytes of this file; without it with the environment variable AXNOFLY_KEY, or else with the sample&apos;s key.</source>
        <translation>禁飞区文件以此文件的内容为密钥；未指定时使用环境变量 AXNOFLY_KEY，否则使用示例密钥。</translation>
    </message>
    <message>
        <source>Send applications to fly in no-fly zones to this http or https address.</source>
        <translation>将禁飞区飞行申请发送到此 http 或 https 地址。</translation>
    </message>
    <message>
        <source>--zones: there is no file '%1'.</source>
        <translation>--zones：文件“%1”不存在。</translation>
    </message>
    <message>
        <source>--apply-url: '%1' is no address such as https://example.org/apply.</source>
        <translation>--apply-url：“%1”不是有效地址，应如 https://example.org/apply。</translation>
    </message>
    <message>
        <source>Keep the window&apos;s layout, the last view and the switches in this file instead of the usual place.</source>
        <translation>将窗口布局、上次的视图和各开关保存在此文件中，而非通常的位置。</translation>
    </message>
    <message>
        <source>Begin with the usual window and keep nothing of it. Runs that end by themselves do so unless --settings names a file.</source>
        <translation>以通常的窗口启动，且不保存其状态。会自行结束的运行都如此，除非用 --settings 指定文件。</translation>
    </message>
    <message>
        <source>--size: this display draws at most %1x%2 pixels.</source>
        <translation>--size：此显示器最多绘制 %1x%2 像素。</translation>
    </message>
    <message>
        <source>Open this project.</source>
        <translation>打开此项目。</translation>
    </message>
    <message>
        <source>--project: there is no file '%1'.</source>
        <translation>--project：没有文件“%1”。</translation>
    </message>
    <message>
        <source>--project and --blocks cannot go together.</source>
        <translation>--project 与 --blocks 不能同时使用。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Undone: %1</source>
        <translation>已撤销：%1</translation>
    </message>
    <message>
        <source>Volumes</source>
        <translation>体积</translation>
    </message>
    <message>
        <source>3-D &amp;models</source>
        <translation>三维模型(&amp;M)</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>模型</translation>
    </message>
    <message>
        <source>Control points</source>
        <translation>控制点</translation>
    </message>
    <message>
        <source>Sight</source>
        <translation>通视</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>测量(&amp;M)</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>The no-fly zones are hidden, as they were left.</source>
        <translation>禁飞区按上次的设置处于隐藏状态。</translation>
    </message>
    <message>
        <source>Ground control</source>
        <translation>地面站</translation>
    </message>
    <message>
        <source>Blocks</source>
        <translation>测区</translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation>任务</translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation>飞机</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Save picture of the &amp;window...</source>
        <translation>保存窗口图片(&amp;W)...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>S&amp;ky and graticule</source>
        <translation>天空与经纬网(&amp;K)</translation>
    </message>
    <message>
        <source>&amp;Compass</source>
        <translation>指北针(&amp;C)</translation>
    </message>
    <message>
        <source>Coo&amp;rdinates</source>
        <translation>坐标(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Places</source>
        <translation>地点(&amp;P)</translation>
    </message>
    <message>
        <source>Whole globe</source>
        <translation>全球</translation>
    </message>
    <message>
        <source>Alps</source>
        <translation>阿尔卑斯山</translation>
    </message>
    <message>
        <source>Spanish Peaks from 20 km</source>
        <translation>西班牙峰（20 公里）</translation>
    </message>
    <message>
        <source>Spanish Peaks from 500 m</source>
        <translation>西班牙峰（500 米）</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>正在加载...</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation>%1：无法写入图片</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>AxGroundControl %1

A small host for the AxEarthViewer globe. MIT licence; the NOTICE file credits the map data.</source>
        <translation>AxGroundControl %1

AxEarthViewer 地球控件的小型宿主程序。采用 MIT 许可；地图数据来源见 NOTICE 文件。</translation>
    </message>
    <message>
        <source>There is no display: DISPLAY is not set.</source>
        <translation>没有显示器：未设置 DISPLAY。</translation>
    </message>
    <message>
        <source>The display offers no OpenGL.</source>
        <translation>显示器不提供 OpenGL。</translation>
    </message>
    <message>
        <source>Nothing done</source>
        <translation>尚无操作</translation>
    </message>
    <message>
        <source>Undo history</source>
        <translation>撤销历史</translation>
    </message>
    <message>
        <source>&amp;Draw</source>
        <translation>绘制(&amp;D)</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>工具</translation>
    </message>
    <message>
        <source>No-fly zones</source>
        <translation>禁飞区</translation>
    </message>
    <message>
        <source>&amp;Mouse and keys</source>
        <translation>鼠标与按键(&amp;M)</translation>
    </message>
    <message>
        <source>%1 cannot be written: what is changed now is lost with the window.</source>
        <translation>无法写入 %1：现在所做的更改在关闭窗口后不会保留。</translation>
    </message>
    <message>
        <source>PNG picture (*.png)</source>
        <translation>PNG 图片 (*.png)</translation>
    </message>
    <message>
        <source>JPEG picture (*.jpg *.jpeg)</source>
        <translation>JPEG 图片 (*.jpg *.jpeg)</translation>
    </message>
    <message>
        <source>&amp;Task</source>
        <translation>任务(&amp;T)</translation>
    </message>
    <message>
        <source>Height profile</source>
        <translation>高度剖面</translation>
    </message>
    <message>
        <source>Coverage</source>
        <translation>覆盖</translation>
    </message>
    <message>
        <source>Do you want to close all the same?</source>
        <translation>仍要关闭吗？</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Measurements</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>&amp;Go to a coordinate...</source>
        <translation>转到坐标(&amp;G)...</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>图层</translation>
    </message>
</context>
<context>
    <name>PlaceLabel</name>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
    <message>
        <source>Longitude %1, latitude %2, altitude %3</source>
        <translation>经度 %1，纬度 %2，高度 %3</translation>
    </message>
    <message>
        <source>%1 (%2), altitude %3</source>
        <translation>%1（%2），高度 %3</translation>
    </message>
    <message>
        <source>%1, altitude %2</source>
        <translation>%1，高度 %2</translation>
    </message>
</context>
<context>
    <name>ProjectSession</name>
    <message>
        <source>Save &amp;as...</source>
        <translation>另存为(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Overwrite</source>
        <translation>覆盖(&amp;O)</translation>
    </message>
    <message>
        <source>%1 was changed by another program since it was opened here. Saving would undo what was changed.</source>
        <translation>%1 在此处打开之后被其他程序更改过。保存将撤销那些更改。</translation>
    </message>
    <message>
        <source>Let go of what you hold with the mouse first.</source>
        <translation>请先松开鼠标所按住的内容。</translation>
    </message>
    <message>
        <source>Answer the open box first.</source>
        <translation>请先回答打开的对话框。</translation>
    </message>
    <message>
        <source>What is not saved cannot be kept for a crash: %1</source>
        <translation>无法为意外退出保留未保存的内容：%1</translation>
    </message>
    <message>
        <source>The project cannot be saved as it is now: %1</source>
        <translation>项目目前无法保存：%1</translation>
    </message>
    <message>
        <source>This of it cannot be and is left out: %1</source>
        <translation>其中以下内容无效，将被略去：%1</translation>
    </message>
    <message>
        <source>Recovered; nothing of it is saved yet. What was left out is kept in %1.</source>
        <translation>已恢复，尚未保存。略去的内容保存在 %1 中。</translation>
    </message>
    <message>
        <source>&amp;New project</source>
        <translation>新建项目(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Open project...</source>
        <translation>打开项目(&amp;O)...</translation>
    </message>
    <message>
        <source>&amp;Recent projects</source>
        <translation>最近的项目(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Save project</source>
        <translation>保存项目(&amp;S)</translation>
    </message>
    <message>
        <source>Save project &amp;as...</source>
        <translation>项目另存为(&amp;A)...</translation>
    </message>
    <message>
        <source>%1 was not opened, because another project was recovered.</source>
        <translation>未打开 %1，因为已恢复另一个项目。</translation>
    </message>
    <message>
        <source>Open project</source>
        <translation>打开项目</translation>
    </message>
    <message>
        <source>This program cannot draw these blocks; they stay in the project: %1</source>
        <translation>本程序无法绘制以下测区，它们仍保留在项目中：%1</translation>
    </message>
    <message>
        <source>Do you want to begin a new project all the same?</source>
        <translation>仍要新建项目吗？</translation>
    </message>
    <message>
        <source>New project</source>
        <translation>新建项目</translation>
    </message>
    <message>
        <source>Projects (*%1)</source>
        <translation>项目 (*%1)</translation>
    </message>
    <message>
        <source>Do you want to open the other project all the same?</source>
        <translation>仍要打开另一个项目吗？</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Opened %1</source>
        <translation>已打开 %1</translation>
    </message>
    <message>
        <source>The folder of %1 cannot be written.</source>
        <translation>%1 所在的文件夹无法写入。</translation>
    </message>
    <message>
        <source>%1 is open in another program: %2. It can be opened as a copy, which is saved under another name.</source>
        <translation>%1 已在另一个程序中打开：%2。可以作为副本打开，并以其他名称保存。</translation>
    </message>
    <message>
        <source>Open as a copy</source>
        <translation>作为副本打开</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Save project</source>
        <translation>保存项目</translation>
    </message>
    <message>
        <source>project</source>
        <translation>项目</translation>
    </message>
    <message>
        <source>%1 is open in another program: %2. Choose another name.</source>
        <translation>%1 已在另一个程序中打开：%2。请选择其他名称。</translation>
    </message>
    <message>
        <source>The project is not saved. %1</source>
        <translation>项目未保存。%1</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has changes that are not saved.</source>
        <translation>“%1”有未保存的更改。</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>未保存的更改</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Discard changes</source>
        <translation>放弃更改(&amp;D)</translation>
    </message>
    <message>
        <source>What else was not saved is offered at the next start.</source>
        <translation>其余未保存的内容将在下次启动时提供恢复。</translation>
    </message>
    <message>
        <source>a project without a name</source>
        <translation>一个未命名的项目</translation>
    </message>
    <message>
        <source>Recover project</source>
        <translation>恢复项目</translation>
    </message>
    <message>
        <source>The program has ended before %1 was saved. The last changes are of %2.</source>
        <translation>程序在保存 %1 之前已退出。最后的更改时间为 %2。</translation>
    </message>
    <message>
        <source>The file was changed after that.</source>
        <translation>该文件在此之后又被更改过。</translation>
    </message>
    <message>
        <source>&amp;Recover</source>
        <translation>恢复(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Throw away</source>
        <translation>丢弃(&amp;T)</translation>
    </message>
    <message>
        <source>Ask again later</source>
        <translation>以后再问</translation>
    </message>
    <message>
        <source>Recovered; nothing of it is saved yet.</source>
        <translation>已恢复，尚未保存。</translation>
    </message>
    <message>
        <source>There is no file %1 any more. It is taken off the list.</source>
        <translation>文件 %1 已不存在，已从列表中移除。</translation>
    </message>
    <message>
        <source>Copy of %1</source>
        <translation>%1 的副本</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>An earlier version of the program has written this project. When you save it, the file of that version is kept beside it.</source>
        <translation>此工程由程序的较早版本写入。保存时，该版本的文件会保留在旁边。</translation>
    </message>
    <message>
        <source>Saved %1; the file of the earlier version is kept as %2</source>
        <translation>已保存 %1；较早版本的文件保留为 %2</translation>
    </message>
    <message>
        <source>Open the &amp;rest as a copy</source>
        <translation>将其余部分作为副本打开(&amp;R)</translation>
    </message>
    <message>
        <source>The rest of %1 is open as a copy; the file stays as it is.</source>
        <translation>%1 的其余部分已作为副本打开；文件保持原样。</translation>
    </message>
    <message>
        <source>&amp;Take over</source>
        <translation>接管(&amp;T)</translation>
    </message>
    <message>
        <source>If that program has ended without an end, because its computer lost its power for one, you can take the project over. If it is still running, one of both undoes what the other saves.</source>
        <translation>如果那个程序已非正常结束（例如其计算机断电），您可以接管此工程。如果它仍在运行，一方保存的内容会被另一方撤销。</translation>
    </message>
    <message>
        <source>%1 cannot be taken over: %2 still has it.</source>
        <translation>无法接管 %1：%2 仍在使用它。</translation>
    </message>
    <message>
        <source>A drawing is not finished. Save ends it, and keeps it where it is a shape already.</source>
        <translation>有一个图形尚未绘制完成。保存会结束绘制，已成形的予以保留。</translation>
    </message>
    <message>
        <source>A program has ended before it saved its project, and what it left cannot be read. %1</source>
        <translation>某个程序在保存工程之前就结束了，其留下的内容无法读取。%1</translation>
    </message>
    <message>
        <source>It is kept as %1.</source>
        <translation>它保留为 %1。</translation>
    </message>
    <message>
        <source>It cannot be put aside either, and is told again at the next start.</source>
        <translation>也无法将其移开，下次启动时会再次提示。</translation>
    </message>
    <message>
        <source>Recovered; nothing of it is saved yet. What was left out is offered again at the next start, because %1 cannot be put aside.</source>
        <translation>已恢复；尚未保存任何内容。由于无法移开 %1，略去的部分会在下次启动时再次提供。</translation>
    </message>
</context>
<context>
    <name>Tour</name>
    <message>
        <source>%1: the picture was still incomplete after a minute</source>
        <translation>%1：一分钟后画面仍不完整</translation>
    </message>
    <message>
        <source>%1: the picture cannot be written</source>
        <translation>%1：无法写入图片</translation>
    </message>
</context>
<context>
    <name>Voice</name>
    <message>
        <source>The map has been loaded.</source>
        <translation>地图已加载。</translation>
    </message>
    <message>
        <source>Position picked.</source>
        <translation>已选取位置。</translation>
    </message>
</context>
<context>
    <name>FileBlock</name>
    <message>
        <source>it is not [longitude, latitude]</source>
        <translation>不是 [经度, 纬度]</translation>
    </message>
    <message>
        <source>it is not on the globe</source>
        <translation>不在地球上</translation>
    </message>
    <message>
        <source>it is no list of vertices</source>
        <translation>不是顶点列表</translation>
    </message>
    <message>
        <source>vertex %1: %2</source>
        <translation>顶点 %1：%2</translation>
    </message>
    <message>
        <source>%1 vertices are too few, %2 are needed</source>
        <translation>只有 %1 个顶点，至少需要 %2 个</translation>
    </message>
    <message>
        <source>it is no JSON object</source>
        <translation>不是 JSON 对象</translation>
    </message>
    <message>
        <source>it is no text</source>
        <translation>不是文本</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>为空</translation>
    </message>
    <message>
        <source>another block is named &apos;%1&apos;, too</source>
        <translation>另一个测区也名为“%1”</translation>
    </message>
    <message>
        <source>%1 vertices are too many, %2 are needed</source>
        <translation>%1 个顶点过多，需要 %2 个</translation>
    </message>
    <message>
        <source>it is not between 1 and 10000 m</source>
        <translation>不在 1 到 10000 米之间</translation>
    </message>
    <message>
        <source>it is no kind of block that can be drawn</source>
        <translation>不是可以绘制的测区类型</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>文件为空</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>it is no list of blocks</source>
        <translation>不是测区列表</translation>
    </message>
    <message>
        <source>block %1: %2</source>
        <translation>测区 %1：%2</translation>
    </message>
</context>
<context>
    <name>BlockListModel</name>
    <message>
        <source>Meets %1</source>
        <translation>与 %1 相交</translation>
    </message>
    <message>
        <source>Polygon</source>
        <translation>多边形</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Strip</source>
        <translation>带状</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>禁飞区申请</translation>
    </message>
    <message>
        <source>Mark points</source>
        <translation>标记点</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>面积</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>锁定</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>可见</translation>
    </message>
    <message>
        <source>A block needs a name.</source>
        <translation>测区必须有名称。</translation>
    </message>
    <message>
        <source>The name already exists !</source>
        <translation>该名称已存在！</translation>
    </message>
    <message>
        <source>The block cannot be renamed.</source>
        <translation>无法重命名该测区。</translation>
    </message>
</context>
<context>
    <name>BlockPanel</name>
    <message>
        <source>&amp;Show</source>
        <translation>显示(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>隐藏(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Lock</source>
        <translation>锁定(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Unlock</source>
        <translation>解锁(&amp;U)</translation>
    </message>
    <message>
        <source>This block is not on the map.</source>
        <translation>该测区不在地图上。</translation>
    </message>
    <message>
        <source>&amp;Fly there</source>
        <translation>飞到该处(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>重命名(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>删除(&amp;D)...</translation>
    </message>
    <message>
        <source>Do you want to delete the block &quot;%1&quot;?</source>
        <translation>是否要删除测区“%1”？</translation>
    </message>
    <message>
        <source>Its tasks are deleted with it.</source>
        <translation>其任务将一并删除。</translation>
    </message>
    <message>
        <source>Do you want to delete %1 blocks?</source>
        <translation>是否要删除 %1 个测区？</translation>
    </message>
    <message>
        <source>Their tasks are deleted with them.</source>
        <translation>这些测区的任务将一并删除。</translation>
    </message>
    <message>
        <source>What is locked is not deleted.</source>
        <translation>已锁定的测区不会被删除。</translation>
    </message>
    <message>
        <source>Delete block</source>
        <translation>删除测区</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>ToolActions</name>
    <message>
        <source>&amp;Mark points</source>
        <translation>标记点(&amp;M)</translation>
    </message>
    <message>
        <source>Click places on the map to mark them; drag a mark to move it, double-click it for its name and note, Escape puts the tool down</source>
        <translation>单击地图上的位置进行标记；拖动可移动标记，双击可编辑名称和备注，Esc 放下工具</translation>
    </message>
    <message>
        <source>&amp;Browse</source>
        <translation>浏览(&amp;B)</translation>
    </message>
    <message>
        <source>Move the map and look at its blocks</source>
        <translation>移动地图，查看测区</translation>
    </message>
    <message>
        <source>&amp;Select and move</source>
        <translation>选择与移动(&amp;S)</translation>
    </message>
    <message>
        <source>Take a block and drag it elsewhere; Ctrl and click select several to move or delete together</source>
        <translation>选中测区并拖到别处；按住 Ctrl 点击可选中多个一起移动或删除</translation>
    </message>
    <message>
        <source>&amp;Polygon block</source>
        <translation>多边形测区(&amp;P)</translation>
    </message>
    <message>
        <source>Click the corners of a block, double-click the last one; Backspace takes one back, Escape gives it up, Ctrl+Z brings a refused drawing back</source>
        <translation>单击测区各角点，双击最后一点结束；Backspace 撤回一点，Esc 放弃，Ctrl+Z 恢复被拒绝的绘制</translation>
    </message>
    <message>
        <source>&amp;Application area</source>
        <translation>申请区域(&amp;A)</translation>
    </message>
    <message>
        <source>Click two opposite corners of a rectangle in which you apply to fly although it meets no-fly zones</source>
        <translation>单击矩形的两个对角点，申请在其涉及的禁飞区内飞行</translation>
    </message>
    <message>
        <source>&amp;Rectangle block</source>
        <translation>矩形测区(&amp;R)</translation>
    </message>
    <message>
        <source>Click the ends of the first side, then the width; or drag from a corner to the opposite one for sides along meridians and parallels. Its handles resize and turn it</source>
        <translation>依次单击第一条边的两端，再单击确定宽度；或从一个角拖到对角，得到边沿经纬线的矩形。其手柄可调整大小和旋转</translation>
    </message>
    <message>
        <source>S&amp;trip block</source>
        <translation>带状测区(&amp;T)</translation>
    </message>
    <message>
        <source>Click the vertices of a line, 50 m apart at least; the last one by a double click</source>
        <translation>依次单击线的顶点，间距至少 50 米；双击最后一个顶点结束</translation>
    </message>
    <message>
        <source>&amp;Video block</source>
        <translation>视频测区(&amp;V)</translation>
    </message>
    <message>
        <source>Click the centre of a circle, then its rim</source>
        <translation>单击圆心，再单击圆周</translation>
    </message>
    <message>
        <source>Video block &amp;anew</source>
        <translation>重设视频测区(&amp;A)</translation>
    </message>
    <message>
        <source>Click another centre of the current video block, then its rim</source>
        <translation>单击当前视频测区的新圆心，再单击圆周</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Delete block...	Del</source>
        <translation>删除测区(&amp;D)...	Del</translation>
    </message>
    <message>
        <source>&amp;Handles on edges</source>
        <translation>边上的手柄(&amp;H)</translation>
    </message>
    <message>
        <source>A handle in the middle of each edge inserts a vertex</source>
        <translation>每条边中点的手柄可插入顶点</translation>
    </message>
    <message>
        <source>Delete &amp;key removes vertices</source>
        <translation>Delete 键删除顶点(&amp;K)</translation>
    </message>
    <message>
        <source>Delete takes away the vertex under the mouse</source>
        <translation>按 Delete 删除鼠标下的顶点</translation>
    </message>
    <message>
        <source>&amp;Snap to vertices and edges</source>
        <translation>吸附到顶点和边(&amp;S)</translation>
    </message>
    <message>
        <source>A dragged or drawn vertex goes to vertices and edges close by</source>
        <translation>拖动或绘制的顶点吸附到附近的顶点和边</translation>
    </message>
    <message>
        <source>Put vertices on &amp;models</source>
        <translation>顶点贴合模型(&amp;M)</translation>
    </message>
    <message>
        <source>Vertices have the height of the 3-D models on the map, where there are any</source>
        <translation>在有三维模型的地方，顶点取模型的高度</translation>
    </message>
    <message>
        <source>&amp;Angles in steps of 15°</source>
        <translation>角度按 15° 步进(&amp;A)</translation>
    </message>
    <message>
        <source>A dragged vertex keeps the angle to the previous edge at steps of 15°</source>
        <translation>拖动的顶点与前一条边的夹角保持 15° 的整数倍</translation>
    </message>
    <message>
        <source>Handles to &amp;turn and stretch</source>
        <translation>旋转和缩放手柄(&amp;T)</translation>
    </message>
    <message>
        <source>Handles around the block turn it and change its size; Shift keeps its proportions</source>
        <translation>用测区四周的手柄旋转测区或改变其大小；按住 Shift 保持比例</translation>
    </message>
</context>
<context>
    <name>AxBlockRefusal</name>
    <message>
        <source>Block Information</source>
        <translation>测区信息</translation>
    </message>
    <message>
        <source>Point count of block is less than 3.</source>
        <translation>测区的点数少于 3 个。</translation>
    </message>
    <message>
        <source>Block is invalid.</source>
        <translation>测区无效。</translation>
    </message>
    <message>
        <source>The current measurement area contains information no-fly area.</source>
        <translation>当前测区包含禁飞区。</translation>
    </message>
    <message>
        <source>No-fly zones: %1</source>
        <translation>禁飞区：%1</translation>
    </message>
    <message>
        <source>No-fly zones: %1 and %2 more</source>
        <translation>禁飞区：%1 以及另外 %2 个</translation>
    </message>
</context>
<context>
    <name>CAxOsgDrawRectange</name>
    <message>
        <source>%1 x %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>click: the width</source>
        <translation>单击：宽度</translation>
    </message>
    <message>
        <source>%1, %2°</source>
        <translation>%1，%2°</translation>
    </message>
    <message>
        <source>click: end of a side</source>
        <translation>单击：边的另一端</translation>
    </message>
    <message>
        <source>double click: opposite corner</source>
        <translation>双击：对角</translation>
    </message>
    <message>
        <source>Turn block</source>
        <translation>旋转测区</translation>
    </message>
    <message>
        <source>Change size</source>
        <translation>更改大小</translation>
    </message>
    <message>
        <source>Rectangle Info</source>
        <translation>矩形信息</translation>
    </message>
    <message>
        <source>Angle(degree):</source>
        <translation>角度（度）：</translation>
    </message>
    <message>
        <source>The angle is that of the length, clockwise from north.</source>
        <translation>角度为长边方向，从正北起顺时针计。</translation>
    </message>
    <message>
        <source>Length(%1):</source>
        <translation>长度 (%1)：</translation>
    </message>
    <message>
        <source>Width(%1):</source>
        <translation>宽度 (%1)：</translation>
    </message>
    <message>
        <source>Its corners are up to %1 beside those of a rectangle; a change makes it the nearest one.</source>
        <translation>其各角与矩形的角最多相差 %1；修改后将变为最接近的矩形。</translation>
    </message>
</context>
<context>
    <name>CAxApplyForProhibitedArea</name>
    <message>
        <source>Application Information</source>
        <translation>申请信息</translation>
    </message>
    <message>
        <source>The block does not require an application.</source>
        <translation>该测区无需申请。</translation>
    </message>
    <message>
        <source>The application was sent.</source>
        <translation>申请已发送。</translation>
    </message>
</context>
<context>
    <name>AxBlockAdapter</name>
    <message>
        <source>Information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>The name must not be empty.</source>
        <translation>名称不能为空。</translation>
    </message>
    <message>
        <source>The name must not be longer than %1 letters.</source>
        <translation>名称不能超过 %1 个字符。</translation>
    </message>
    <message>
        <source>The name already exists !</source>
        <translation>该名称已存在！</translation>
    </message>
    <message>
        <source>Change name</source>
        <translation>修改名称</translation>
    </message>
    <message>
        <source>Are you sure want to change name?</source>
        <translation>确定要修改名称吗？</translation>
    </message>
    <message>
        <source>Vertex</source>
        <translation>顶点</translation>
    </message>
    <message>
        <source>Latitude(degree):</source>
        <translation>纬度（度）：</translation>
    </message>
    <message>
        <source>Longitude(degree):</source>
        <translation>经度（度）：</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Delete vertex</source>
        <translation>删除顶点</translation>
    </message>
    <message>
        <source>Are you sure you want to delete vertex?</source>
        <translation>确定要删除该顶点吗？</translation>
    </message>
    <message>
        <source>The cross at the top and Escape leave the vertex as it is.</source>
        <translation>右上角的叉号和 Esc 键保持顶点不变。</translation>
    </message>
    <message>
        <source>Delete Block</source>
        <translation>删除测区</translation>
    </message>
    <message>
        <source>The corners of a block that is locked or has routes cannot be changed.</source>
        <translation>已锁定或带有航线的测区，其顶点不能更改。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a latitude between -90 and 90.</source>
        <translation>“%1”不是 -90 到 90 之间的纬度。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a longitude between -180 and 180.</source>
        <translation>“%1”不是 -180 到 180 之间的经度。</translation>
    </message>
    <message>
        <source>Move vertex</source>
        <translation>移动顶点</translation>
    </message>
    <message>
        <source>Turn block</source>
        <translation>旋转测区</translation>
    </message>
    <message>
        <source>Change size</source>
        <translation>改变大小</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>area (%1):</source>
        <translation>面积 (%1)：</translation>
    </message>
    <message>
        <source>Block Information</source>
        <translation>测区信息</translation>
    </message>
    <message>
        <source>The size of a block that is locked or has routes cannot be changed.</source>
        <translation>已锁定或带有航线的测区，其大小不能更改。</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot; is not a number between %3 and %4. Decimals are written with a point.</source>
        <translation>%1“%2”不是 %3 到 %4 之间的数字。小数请使用小数点。</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot; is not a number. Decimals are written with a point.</source>
        <translation>%1“%2”不是数字。小数请使用小数点。</translation>
    </message>
</context>
<context>
    <name>CAxOsgDrawLine</name>
    <message>
        <source>The line had such a short leg here before. &quot;Simplify&quot; in the menu of the block leaves vertices out, and the box of a vertex deletes it.</source>
        <translation>此线在这里原来就有过短的线段。可用测区菜单中的“简化”去除顶点，或在顶点对话框中删除顶点。</translation>
    </message>
    <message>
        <source>Block Information</source>
        <translation>测区信息</translation>
    </message>
    <message>
        <source>The distance is less than 50 meters!</source>
        <translation>距离小于 50 米！</translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>至少 %1</translation>
    </message>
    <message>
        <source>Parameter of block is wrong.</source>
        <translation>测区参数错误。</translation>
    </message>
    <message>
        <source>The strip block anchor must be not less than 2.</source>
        <translation>带状测区的顶点不能少于 2 个。</translation>
    </message>
    <message>
        <source>Strip survey area</source>
        <translation>带状测区</translation>
    </message>
    <message>
        <source>Width1 lies to the left of the line as it was drawn, Width2 to the right.</source>
        <translation>宽度1 在绘制方向的左侧，宽度2 在右侧。</translation>
    </message>
    <message>
        <source>Change para</source>
        <translation>修改参数</translation>
    </message>
    <message>
        <source>Are you sure want to change this para?</source>
        <translation>确定要修改该参数吗？</translation>
    </message>
    <message>
        <source>Change widths</source>
        <translation>修改宽度</translation>
    </message>
    <message>
        <source>The line has no band of %1 %3 and %2 %3.</source>
        <translation>该线无法生成 %1 %3 和 %2 %3 的带状区域。</translation>
    </message>
    <message>
        <source>Total Length(%1):</source>
        <translation>总长度 (%1)：</translation>
    </message>
    <message>
        <source>Width1(%1):</source>
        <translation>宽度1 (%1)：</translation>
    </message>
    <message>
        <source>Width2(%1):</source>
        <translation>宽度2 (%1)：</translation>
    </message>
</context>
<context>
    <name>MissionDesk</name>
    <message>
        <source>The width parameter must be greater than 0.</source>
        <translation>宽度参数必须大于 0。</translation>
    </message>
    <message>
        <source>The total width parameter must be greater than 3.</source>
        <translation>总宽度参数必须大于 3。</translation>
    </message>
    <message>
        <source>Survey area parameter is not correct.</source>
        <translation>测区参数不正确。</translation>
    </message>
</context>
<context>
    <name>CAx3DGeometry</name>
    <message>
        <source>Polygon Info</source>
        <translation>多边形信息</translation>
    </message>
    <message>
        <source>The survey block anchor must be not less than 3.</source>
        <translation>测区的顶点不能少于 3 个。</translation>
    </message>
</context>
<context>
    <name>AxZoneHover</name>
    <message>
        <source>and %1 more</source>
        <translation>及另外 %1 个</translation>
    </message>
</context>
<context>
    <name>CAxHandleAdapter</name>
    <message>
        <source>area %1, width %2</source>
        <translation>面积 %1，宽度 %2</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>修改</translation>
    </message>
    <message>
        <source>Delete vertex</source>
        <translation>删除顶点</translation>
    </message>
    <message>
        <source>Insert vertex</source>
        <translation>插入顶点</translation>
    </message>
    <message>
        <source>%1, in all %2</source>
        <translation>%1，共 %2</translation>
    </message>
    <message>
        <source>area %1, perimeter %2</source>
        <translation>面积 %1，周长 %2</translation>
    </message>
    <message>
        <source>perimeter %1</source>
        <translation>周长 %1</translation>
    </message>
    <message>
        <source>Move vertex</source>
        <translation>移动顶点</translation>
    </message>
    <message>
        <source>Move block</source>
        <translation>移动测区</translation>
    </message>
    <message>
        <source>edges %1</source>
        <translation>边长 %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>length %1</source>
        <translation>长度 %1</translation>
    </message>
</context>
<context>
    <name>CAxTaskPolygon</name>
    <message>
        <source>The %1 route parameter error,Please delete the current route and try again.</source>
        <translation>%1 航线参数错误，请删除当前航线后重试。</translation>
    </message>
    <message>
        <source>MissionDesk</source>
        <translation>MissionDesk</translation>
    </message>
</context>
<context>
    <name>ZonePanel</name>
    <message>
        <source>No-fly &amp;zones</source>
        <translation>禁飞区(&amp;Z)</translation>
    </message>
    <message>
        <source>Show on the map</source>
        <translation>在地图上显示</translation>
    </message>
    <message>
        <source>Within %1 km of the view's middle: %2</source>
        <translation>视图中心 %1 公里内：%2 个</translation>
    </message>
    <message>
        <source>, the nearest %1 are listed</source>
        <translation>，列出最近的 %1 个</translation>
    </message>
</context>
<context>
    <name>CoveragePanel</name>
    <message>
        <source>Nothing can be counted: the area is too small, or a strip encloses a gap.</source>
        <translation>无法统计：测区过小，或条带围出了空洞。</translation>
    </message>
    <message>
        <source>Ground counts as shown even where a hill hides it from a tilted lens.</source>
        <translation>倾斜镜头被山丘遮挡的地面也计为已拍到。</translation>
    </message>
    <message>
        <source>Show coverage</source>
        <translation>显示覆盖情况</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Photos of each place</source>
        <translation>每处照片数</translation>
    </message>
    <message>
        <source>Ground sample distance</source>
        <translation>地面采样距离</translation>
    </message>
    <message>
        <source>No route is shown.</source>
        <translation>没有显示航线。</translation>
    </message>
    <message>
        <source>The map is not open.</source>
        <translation>地图尚未打开。</translation>
    </message>
    <message>
        <source>Cells of %1 m.</source>
        <translation>格网间距 %1 米。</translation>
    </message>
    <message>
        <source>The ground&apos;s height is not known in %1 of %2 cells.</source>
        <translation>%2 个格网中有 %1 个地面高程未知。</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>ground not known</source>
        <translation>地面高程未知</translation>
    </message>
    <message>
        <source>no photo</source>
        <translation>无照片</translation>
    </message>
    <message>
        <source>%1 to %2 cm a pixel</source>
        <translation>每像素 %1 至 %2 厘米</translation>
    </message>
    <message>
        <source>%1 and more</source>
        <translation>%1 及以上</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 至 %2</translation>
    </message>
    <message>
        <source>longitude %1°, latitude %2°</source>
        <translation>经度 %1°，纬度 %2°</translation>
    </message>
    <message>
        <source>Fewest photos: %1, at %2</source>
        <translation>照片最少：%1 张，位于 %2</translation>
    </message>
    <message>
        <source>Coarsest: %1 cm a pixel, at %2</source>
        <translation>最粗：每像素 %1 厘米，位于 %2</translation>
    </message>
</context>
<context>
    <name>ProfilePanel</name>
    <message>
        <source>No route is shown.</source>
        <translation>没有显示航线。</translation>
    </message>
    <message>
        <source>The map is not open.</source>
        <translation>地图尚未打开。</translation>
    </message>
    <message>
        <source>The heights of the ground are being read...</source>
        <translation>正在读取地面高程……</translation>
    </message>
    <message>
        <source>%1 km: route at %2 m, the ground&apos;s height is not known</source>
        <translation>%1 千米：航线高 %2 米，地面高程未知</translation>
    </message>
    <message>
        <source>%1 km: route at %2 m, ground at %3 m, %4 m above the ground</source>
        <translation>%1 千米：航线高 %2 米，地面高程 %3 米，离地 %4 米</translation>
    </message>
</context>
<context>
    <name>ProfilePlot</name>
    <message>
        <source>The wheel zooms the distance, with Ctrl the height. Dragging moves, a double click shows all.
Heights are counted as those of the map.</source>
        <translation>滚轮缩放距离，按住 Ctrl 缩放高度。拖动可平移，双击显示全部。
高度基准与地图高程相同。</translation>
    </message>
    <message>
        <source>Distance along the route (km)</source>
        <translation>沿航线距离（千米）</translation>
    </message>
    <message>
        <source>Height (m)</source>
        <translation>高度（米）</translation>
    </message>
    <message>
        <source>Ground</source>
        <translation>地面</translation>
    </message>
    <message>
        <source>Ground not known</source>
        <translation>地面高程未知</translation>
    </message>
    <message>
        <source>Ground and clearance</source>
        <translation>地面加安全高度</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>航线</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
</context>
<context>
    <name>ZoneListModel</name>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 公里</translation>
    </message>
    <message>
        <source>N</source>
        <translation>北</translation>
    </message>
    <message>
        <source>NE</source>
        <translation>东北</translation>
    </message>
    <message>
        <source>E</source>
        <translation>东</translation>
    </message>
    <message>
        <source>SE</source>
        <translation>东南</translation>
    </message>
    <message>
        <source>S</source>
        <translation>南</translation>
    </message>
    <message>
        <source>SW</source>
        <translation>西南</translation>
    </message>
    <message>
        <source>W</source>
        <translation>西</translation>
    </message>
    <message>
        <source>NW</source>
        <translation>西北</translation>
    </message>
    <message>
        <source>Lift without dates</source>
        <translation>解禁（无日期）</translation>
    </message>
    <message>
        <source>Lift from %1</source>
        <translation>自 %1 起解禁</translation>
    </message>
    <message>
        <source>Lift until %1</source>
        <translation>解禁至 %1</translation>
    </message>
    <message>
        <source>Lift from %1 until %2</source>
        <translation>解禁：%1 至 %2</translation>
    </message>
    <message>
        <source>%1: out of date</source>
        <translation>%1（已过期）</translation>
    </message>
    <message>
        <source>Zone</source>
        <translation>禁飞区</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>距离</translation>
    </message>
    <message>
        <source>Bearing</source>
        <translation>方位</translation>
    </message>
    <message>
        <source>Zone %1, middle at longitude %2°, latitude %3°. A click flies there.</source>
        <translation>禁飞区 %1，中心位于经度 %2°、纬度 %3°。单击即可飞往。</translation>
    </message>
    <message>
        <source>This lift has expired, but the map still leaves its area out of the zone. Ask the authority before you fly there.</source>
        <translation>该解禁已过期，但地图仍将其区域排除在禁飞区之外。飞行前请向主管部门确认。</translation>
    </message>
    <message>
        <source>The map leaves the lifted area out of the zone.</source>
        <translation>地图已将解禁区域排除在禁飞区之外。</translation>
    </message>
</context>
<context>
    <name>CAxAncillaryThread</name>
    <message>
        <source>no-fly zone Information</source>
        <translation>禁飞区信息</translation>
    </message>
    <message>
        <source>The no-fly zone document does not exist .</source>
        <translation>禁飞区文件不存在。</translation>
    </message>
    <message>
        <source>The no-fly zone document parsing error!May file has been corrupted, please login in the case of networking for Launcher!</source>
        <translation>禁飞区文件解析错误！文件可能已损坏，请在联网的情况下登录启动器！</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>没有此文件。</translation>
    </message>
    <message>
        <source>It holds no zone.</source>
        <translation>其中没有禁飞区。</translation>
    </message>
</context>
<context>
    <name>KeyHelp</name>
    <message>
        <source>Mark points</source>
        <translation>标记点</translation>
    </message>
    <message>
        <source>Click with &quot;Mark points&quot;</source>
        <translation>用“标记点”单击</translation>
    </message>
    <message>
        <source>Sets a mark; Escape puts the tool down</source>
        <translation>设置标记；Esc 放下工具</translation>
    </message>
    <message>
        <source>Moves it; while browsing only the selected one</source>
        <translation>移动标记；浏览时只移动所选标记</translation>
    </message>
    <message>
        <source>Shows coordinates, height, name and note</source>
        <translation>显示坐标、高程、名称和备注</translation>
    </message>
    <message>
        <source>Deletes the mark under the mouse, or the selected ones</source>
        <translation>删除鼠标下的标记或所选标记</translation>
    </message>
    <message>
        <source>Ctrl and drag beside the blocks with &quot;Select and move&quot;</source>
        <translation>使用“选择并移动”，按住 Ctrl 在测区外拖动</translation>
    </message>
    <message>
        <source>Draws a frame; the blocks and marks that it meets are selected as well</source>
        <translation>绘制选框，并选中与其相交的测区及框内的标记</translation>
    </message>
    <message>
        <source>Gives a drag up, or else leaves what is selected</source>
        <translation>放弃拖动，否则取消选择</translation>
    </message>
    <message>
        <source>Flies to the block; Enter to all chosen ones</source>
        <translation>飞到测区；回车飞到所有选中的测区</translation>
    </message>
    <message>
        <source>Ctrl or Shift and click; Ctrl+A; Escape</source>
        <translation>按住 Ctrl 或 Shift 单击；Ctrl+A；Esc</translation>
    </message>
    <message>
        <source>Selects several, on the map as well; all; none</source>
        <translation>选中多个（地图同步）；全选；取消选择</translation>
    </message>
    <message>
        <source>Mouse and keys</source>
        <translation>鼠标与按键</translation>
    </message>
    <message>
        <source>Mouse or key</source>
        <translation>鼠标或按键</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>作用</translation>
    </message>
    <message>
        <source>Moving the view</source>
        <translation>移动视图</translation>
    </message>
    <message>
        <source>Drag, left button</source>
        <translation>左键拖动</translation>
    </message>
    <message>
        <source>Carries the ground along</source>
        <translation>拖着地面移动</translation>
    </message>
    <message>
        <source>Drag, middle button; Ctrl and drag</source>
        <translation>中键拖动；Ctrl 加拖动</translation>
    </message>
    <message>
        <source>Turns and tilts</source>
        <translation>旋转与倾斜</translation>
    </message>
    <message>
        <source>Wheel; drag, right button</source>
        <translation>滚轮；右键拖动</translation>
    </message>
    <message>
        <source>Comes nearer or goes away</source>
        <translation>拉近或拉远</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>双击</translation>
    </message>
    <message>
        <source>Flies there</source>
        <translation>飞到该处</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>方向键</translation>
    </message>
    <message>
        <source>Move; with Ctrl turn and tilt</source>
        <translation>移动；加 Ctrl 旋转与倾斜</translation>
    </message>
    <message>
        <source>+, Page Up; -, Page Down</source>
        <translation>+、Page Up；-、Page Down</translation>
    </message>
    <message>
        <source>Comes nearer; goes away</source>
        <translation>拉近；拉远</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>Shows the whole globe</source>
        <translation>显示整个地球</translation>
    </message>
    <message>
        <source>Click on the compass</source>
        <translation>单击指北针</translation>
    </message>
    <message>
        <source>North up, straight down</source>
        <translation>正北朝上，垂直俯视</translation>
    </message>
    <message>
        <source>W; T; L; B; S</source>
        <translation>W；T；L；B；S</translation>
    </message>
    <message>
        <source>For developers: wires, textures, light, back faces, figures of frames; pressed again they change back, W with the third time</source>
        <translation>供开发者使用：线框、纹理、光照、背面、帧数据；再按一次恢复，W 按第三次恢复</translation>
    </message>
    <message>
        <source>Drawing a block</source>
        <translation>绘制测区</translation>
    </message>
    <message>
        <source>Click</source>
        <translation>单击</translation>
    </message>
    <message>
        <source>Sets a corner</source>
        <translation>设置角点</translation>
    </message>
    <message>
        <source>Sets the last corner and ends the drawing</source>
        <translation>设置最后一个角点并结束绘制</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Backspace</translation>
    </message>
    <message>
        <source>Takes the last corner back</source>
        <translation>撤回最后一个角点</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Escape</translation>
    </message>
    <message>
        <source>Gives the drawing up</source>
        <translation>放弃绘制</translation>
    </message>
    <message>
        <source>Editing blocks</source>
        <translation>编辑测区</translation>
    </message>
    <message>
        <source>Selects a block and shows its handles</source>
        <translation>选中测区并显示其控制点</translation>
    </message>
    <message>
        <source>Ctrl and click</source>
        <translation>Ctrl 加单击</translation>
    </message>
    <message>
        <source>Selects several</source>
        <translation>选中多个</translation>
    </message>
    <message>
        <source>Drag a handle</source>
        <translation>拖动控制点</translation>
    </message>
    <message>
        <source>Moves a corner; in the middle of an edge inserts one</source>
        <translation>移动角点；在边的中点则插入角点</translation>
    </message>
    <message>
        <source>Drag with &quot;Select and move&quot;</source>
        <translation>用“选择与移动”拖动</translation>
    </message>
    <message>
        <source>Moves the block, or all selected ones</source>
        <translation>移动测区或所有选中的测区</translation>
    </message>
    <message>
        <source>Shows a block&apos;s name and area, or a corner&apos;s coordinates</source>
        <translation>显示测区的名称与面积，或角点的坐标</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Takes away the corner under the mouse, or else the block</source>
        <translation>删除鼠标下的角点，否则删除测区</translation>
    </message>
    <message>
        <source>Ctrl+Z; Ctrl+Shift+Z</source>
        <translation>Ctrl+Z；Ctrl+Shift+Z</translation>
    </message>
    <message>
        <source>Takes an edit back; does it again</source>
        <translation>撤销编辑；重做</translation>
    </message>
    <message>
        <source>List of blocks</source>
        <translation>测区列表</translation>
    </message>
    <message>
        <source>Click; Enter</source>
        <translation>单击；Enter</translation>
    </message>
    <message>
        <source>Double click; F2</source>
        <translation>双击；F2</translation>
    </message>
    <message>
        <source>Renames it</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>Deletes it</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>窗口</translation>
    </message>
    <message>
        <source>Ctrl+N; Ctrl+O</source>
        <translation>Ctrl+N；Ctrl+O</translation>
    </message>
    <message>
        <source>Begins a project; opens one</source>
        <translation>新建项目；打开项目</translation>
    </message>
    <message>
        <source>Ctrl+S; Ctrl+Shift+S</source>
        <translation>Ctrl+S；Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>Saves the project; under another name</source>
        <translation>保存项目；以其他名称保存</translation>
    </message>
    <message>
        <source>Ctrl+Shift+P</source>
        <translation>Ctrl+Shift+P</translation>
    </message>
    <message>
        <source>Saves a picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>Shows this list</source>
        <translation>显示此列表</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>Quits</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Drag a handle around the block</source>
        <translation>拖动测区四周的手柄</translation>
    </message>
    <message>
        <source>Stretches it, with Shift in proportion; the blue one turns it</source>
        <translation>缩放测区，按住 Shift 保持比例；蓝色手柄旋转测区</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Puts a copy of the blocks beside them</source>
        <translation>在旁边放置测区的副本</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>拖动</translation>
    </message>
    <message>
        <source>Draws a rectangle from corner to corner</source>
        <translation>从一个角到对角绘制矩形</translation>
    </message>
    <message>
        <source>Measuring</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Ctrl+Shift+D; Ctrl+Shift+H</source>
        <translation>Ctrl+Shift+D；Ctrl+Shift+H</translation>
    </message>
    <message>
        <source>Measures distances; height differences</source>
        <translation>测量距离；高差</translation>
    </message>
    <message>
        <source>Click; double click; Backspace</source>
        <translation>单击；双击；退格键</translation>
    </message>
    <message>
        <source>Adds a point; the last one; takes one back</source>
        <translation>加一点；最后一点；退回一点</translation>
    </message>
    <message>
        <source>Gives the measurement up; pressed again, leaves the tool</source>
        <translation>放弃测量；再按一次离开工具</translation>
    </message>
    <message>
        <source>Ctrl+Shift+A; Ctrl+Shift+L; Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+A；Ctrl+Shift+L；Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Measures areas; planes of ground; coordinates</source>
        <translation>测量面积；地面平面；坐标</translation>
    </message>
    <message>
        <source>Ctrl+G</source>
        <translation>Ctrl+G</translation>
    </message>
    <message>
        <source>Goes to a coordinate that is typed</source>
        <translation>转到输入的坐标</translation>
    </message>
</context>
<context>
    <name>PlanWarnings</name>
    <message>
        <source>%1 m above the ground, %2 m are asked</source>
        <translation>离地 %1 米，要求 %2 米</translation>
    </message>
    <message>
        <source>No height of the ground is known here</source>
        <translation>此处地面高度未知</translation>
    </message>
    <message>
        <source>A photo every %1 s, the camera needs %2 s</source>
        <translation>每 %1 秒拍一张，相机需要 %2 秒</translation>
    </message>
    <message>
        <source>Side overlap %1 %, %2 % are asked</source>
        <translation>旁向重叠 %1 %，要求 %2 %</translation>
    </message>
    <message>
        <source>In the no-fly zone %1 for %2 m</source>
        <translation>在禁飞区 %1 内飞行 %2 米</translation>
    </message>
    <message>
        <source>The route bends at %1 m here, the aircraft turns at %2 m</source>
        <translation>航线在此处的转弯半径为 %1 m，飞机需要 %2 m</translation>
    </message>
    <message>
        <source>No way from or to home round the no-fly zones was found</source>
        <translation>找不到绕过禁飞区往返起降点的路径</translation>
    </message>
    <message>
        <source>The no-fly zones are not known</source>
        <translation>禁飞区未知</translation>
    </message>
    <message>
        <source>%1 m below the ground, %2 m above it are asked</source>
        <translation>低于地面 %1 米，要求高于地面 %2 米</translation>
    </message>
    <message>
        <source>Dangerous: %1</source>
        <translation>危险：%1</translation>
    </message>
    <message>
        <source>Dangerous at %1 places: %2</source>
        <translation>%1 处危险：%2</translation>
    </message>
</context>
<context>
    <name>TaskFigures</name>
    <message>
        <source>%1 m²</source>
        <translation>%1 平方米</translation>
    </message>
    <message>
        <source>%1 ha</source>
        <translation>%1 公顷</translation>
    </message>
    <message>
        <source>Covered area</source>
        <translation>覆盖面积</translation>
    </message>
    <message>
        <source>Ground that at least one photo shows</source>
        <translation>至少有一张照片拍到的地面</translation>
    </message>
    <message>
        <source>is being counted</source>
        <translation>正在统计</translation>
    </message>
    <message>
        <source>%1 of the area, %2 in all</source>
        <translation>测区内 %1，共 %2</translation>
    </message>
    <message>
        <source>%1, as far as the ground is known</source>
        <translation>%1（仅限地面高度已知处）</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 小时 %2 分</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>航程</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Flights</source>
        <translation>架次</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>照片</translation>
    </message>
    <message>
        <source>Interval</source>
        <translation>拍摄间隔</translation>
    </message>
    <message>
        <source>Passes, turns</source>
        <translation>航线、转弯</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>面积</translation>
    </message>
    <message>
        <source>Sample distance</source>
        <translation>地面分辨率</translation>
    </message>
    <message>
        <source>Above ground</source>
        <translation>离地高度</translation>
    </message>
    <message>
        <source>Least and mean height of the route above the ground</source>
        <translation>航线离地的最低高度和平均高度</translation>
    </message>
    <message>
        <source>A click flies there</source>
        <translation>单击飞到该处</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 公里</translation>
    </message>
    <message>
        <source>%1 of at most %2 min</source>
        <translation>%1 架次，每次至多 %2 分钟</translation>
    </message>
    <message>
        <source>too far for flights of %1 min</source>
        <translation>太远，%1 分钟无法完成</translation>
    </message>
    <message>
        <source>%1 s, the camera needs %2 s</source>
        <translation>%1 秒，相机需要 %2 秒</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1、%2</translation>
    </message>
    <message>
        <source>%1 km²</source>
        <translation>%1 平方公里</translation>
    </message>
    <message>
        <source>%1 cm</source>
        <translation>%1 厘米</translation>
    </message>
    <message>
        <source>%1 m, %2 m</source>
        <translation>%1 米，%2 米</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>还有 %1 条</translation>
    </message>
    <message>
        <source>%1 cm, on the ground %2 cm at least, %3 cm on average</source>
        <translation>%1 厘米，地面上最小 %2 厘米，平均 %3 厘米</translation>
    </message>
</context>
<context>
    <name>TaskFiles</name>
    <message>
        <source>QGroundControl survey (*.plan)</source>
        <translation>QGroundControl 测绘任务 (*.plan)</translation>
    </message>
    <message>
        <source>QGroundControl waypoints (*.plan)</source>
        <translation>QGroundControl 航点 (*.plan)</translation>
    </message>
    <message>
        <source>Mission text QGC WPL 110 (*.waypoints *.txt)</source>
        <translation>航点文本 QGC WPL 110 (*.waypoints *.txt)</translation>
    </message>
    <message>
        <source>KML (*.kml)</source>
        <translation>KML (*.kml)</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>GeoJSON (*.geojson)</source>
        <translation>GeoJSON (*.geojson)</translation>
    </message>
    <message>
        <source>Export route</source>
        <translation>导出航线</translation>
    </message>
    <message>
        <source>Import route</source>
        <translation>导入航线</translation>
    </message>
    <message>
        <source>The route was not written.</source>
        <translation>航线未能写入。</translation>
    </message>
    <message>
        <source>%1 is written. What it does not say:</source>
        <translation>%1 已写入。其中未包含：</translation>
    </message>
    <message>
        <source>Missions (*.plan *.waypoints *.txt)</source>
        <translation>任务文件 (*.plan *.waypoints *.txt)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>%1 was not read.</source>
        <translation>%1 未能读取。</translation>
    </message>
    <message>
        <source>It is too large for a mission.</source>
        <translation>文件过大，不是任务文件。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>No place to fly through is in it.</source>
        <translation>其中没有航点。</translation>
    </message>
    <message>
        <source>%1 is read.</source>
        <translation>%1 已读取。</translation>
    </message>
    <message>
        <source>An aircraft that flies this route is in danger. Write it all the same?</source>
        <translation>按此航线飞行有危险。仍要写入吗？</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>写入</translation>
    </message>
</context>
<context>
    <name>TaskParameters</name>
    <message>
        <source>%1 to %2%3</source>
        <translation>%1 至 %2%3</translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation>飞机</translation>
    </message>
    <message>
        <source>Fixed wing</source>
        <translation>固定翼</translation>
    </message>
    <message>
        <source>Tail sitter</source>
        <translation>尾座式</translation>
    </message>
    <message>
        <source>Quad plane</source>
        <translation>垂起固定翼</translation>
    </message>
    <message>
        <source>Quadcopter</source>
        <translation>四旋翼</translation>
    </message>
    <message>
        <source>Hexacopter</source>
        <translation>六旋翼</translation>
    </message>
    <message>
        <source>Octocopter</source>
        <translation>八旋翼</translation>
    </message>
    <message>
        <source>Oblique copter</source>
        <translation>倾斜摄影多旋翼</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>相机</translation>
    </message>
    <message>
        <source>Full frame, 35 mm</source>
        <translation>全画幅，35 毫米</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>航高</translation>
    </message>
    <message>
        <source> m</source>
        <translation> 米</translation>
    </message>
    <message>
        <source>Above the mean ground of the block; %1</source>
        <translation>高于测区平均地面；%1</translation>
    </message>
    <message>
        <source>Sample distance</source>
        <translation>地面分辨率</translation>
    </message>
    <message>
        <source> cm</source>
        <translation> 厘米</translation>
    </message>
    <message>
        <source>Of the ground, a pixel; the height follows from it</source>
        <translation>每像素对应的地面距离；航高随之变化</translation>
    </message>
    <message>
        <source>Heights</source>
        <translation>高度方式</translation>
    </message>
    <message>
        <source>Constant</source>
        <translation>定高</translation>
    </message>
    <message>
        <source>Keep the overlap</source>
        <translation>保持重叠度</translation>
    </message>
    <message>
        <source>Follow the terrain</source>
        <translation>仿地飞行</translation>
    </message>
    <message>
        <source>Clearance</source>
        <translation>安全高度</translation>
    </message>
    <message>
        <source>Least height above the ground anywhere on the route; %1</source>
        <translation>航线上任何一处的最小离地高度；%1</translation>
    </message>
    <message>
        <source>Side overlap</source>
        <translation>旁向重叠</translation>
    </message>
    <message>
        <source>Forward overlap</source>
        <translation>航向重叠</translation>
    </message>
    <message>
        <source> %</source>
        <translation> %</translation>
    </message>
    <message>
        <source>Of the passes, clockwise from north</source>
        <translation>航线方向，从正北顺时针</translation>
    </message>
    <message>
        <source>Best</source>
        <translation>最佳</translation>
    </message>
    <message>
        <source>The shortest flight decides</source>
        <translation>由最短的飞行决定</translation>
    </message>
    <message>
        <source>Heading</source>
        <translation>航线角度</translation>
    </message>
    <message>
        <source>Flying mode</source>
        <translation>飞行模式</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>普通</translation>
    </message>
    <message>
        <source>Cross grid</source>
        <translation>交叉航线</translation>
    </message>
    <message>
        <source>Three directions</source>
        <translation>三方向</translation>
    </message>
    <message>
        <source>Passes</source>
        <translation>航线数</translation>
    </message>
    <message>
        <source>By the overlap</source>
        <translation>由重叠度决定</translation>
    </message>
    <message>
        <source>Width to the left</source>
        <translation>左侧宽度</translation>
    </message>
    <message>
        <source>Width to the right</source>
        <translation>右侧宽度</translation>
    </message>
    <message>
        <source>Radius</source>
        <translation>半径</translation>
    </message>
    <message>
        <source>Wind</source>
        <translation>风速</translation>
    </message>
    <message>
        <source> m/s</source>
        <translation> 米/秒</translation>
    </message>
    <message>
        <source>Wind from</source>
        <translation>风向</translation>
    </message>
    <message>
        <source>Endurance</source>
        <translation>续航时间</translation>
    </message>
    <message>
        <source> min</source>
        <translation> 分钟</translation>
    </message>
    <message>
        <source>Entry point</source>
        <translation>进入点</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>3</source>
        <translation>3</translation>
    </message>
    <message>
        <source>4</source>
        <translation>4</translation>
    </message>
    <message>
        <source>A click on its marker on the map does the same</source>
        <translation>单击地图上的标记也可选择</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>起降点</translation>
    </message>
    <message>
        <source>Set home</source>
        <translation>设置起降点</translation>
    </message>
    <message>
        <source>Then click its place on the map; Escape gives it up</source>
        <translation>然后在地图上单击位置；按 Esc 取消</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>%1 min, as usual</source>
        <translation>%1 分钟（默认）</translation>
    </message>
    <message>
        <source>Three directions need an oblique camera, or a swinging one on an oblique copter; one direction is flown.</source>
        <translation>三方向需要倾斜相机，或倾斜摄影多旋翼上的摆动相机；现只飞一个方向。</translation>
    </message>
    <message>
        <source>On the map three directions are shown at one height.</source>
        <translation>地图上三方向航线以同一高度显示。</translation>
    </message>
    <message>
        <source>not set</source>
        <translation>未设置</translation>
    </message>
    <message>
        <source>%1°, %2°, %3 m</source>
        <translation>%1°，%2°，%3 米</translation>
    </message>
    <message>
        <source>Round no-fly zones</source>
        <translation>绕开禁飞区</translation>
    </message>
    <message>
        <source>Home legs</source>
        <translation>往返航段</translation>
    </message>
    <message>
        <source>%1 is beyond the limits, %2 to %3%4.</source>
        <translation>%1 超出范围，可设 %2 到 %3%4。</translation>
    </message>
    <message>
        <source>No photos over no-fly zones</source>
        <translation>禁飞区上空不拍照</translation>
    </message>
    <message>
        <source>The zones in the block are holes of its area</source>
        <translation>测区内的禁飞区作为其面积中的空洞</translation>
    </message>
    <message>
        <source>Zones</source>
        <translation>禁飞区</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number. Decimals are written with a point.</source>
        <translation>“%1”不是数字。小数用点书写。</translation>
    </message>
</context>
<context>
    <name>TaskPanel</name>
    <message>
        <source>&amp;Add task</source>
        <translation>添加任务(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Delete task...</source>
        <translation>删除任务(&amp;D)...</translation>
    </message>
    <message>
        <source>&amp;Export route...</source>
        <translation>导出航线(&amp;E)...</translation>
    </message>
    <message>
        <source>&amp;Import route...</source>
        <translation>导入航线(&amp;I)...</translation>
    </message>
    <message>
        <source>Plan a route over the current block</source>
        <translation>在当前测区上规划航线</translation>
    </message>
    <message>
        <source>Delete the chosen task, after a question</source>
        <translation>询问后删除所选任务</translation>
    </message>
    <message>
        <source>Write the route for a ground station or a map</source>
        <translation>为地面站或地图写出航线</translation>
    </message>
    <message>
        <source>Show a route from a file of a ground station</source>
        <translation>显示地面站文件中的航线</translation>
    </message>
    <message>
        <source>Add task</source>
        <translation>添加任务</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Tasks of %1</source>
        <translation>%1 的任务</translation>
    </message>
    <message>
        <source>No block is chosen</source>
        <translation>未选择测区</translation>
    </message>
    <message>
        <source>The box shows or hides the route; without a route on the map the block can be edited, and is planned anew</source>
        <translation>勾选框显示或隐藏航线；地图上没有航线时可以编辑测区，航线会重新规划</translation>
    </message>
    <message>
        <source>The name must not be longer than %1 letters.</source>
        <translation>名称不能超过 %1 个字符。</translation>
    </message>
    <message>
        <source>The name already exists !</source>
        <translation>名称已存在！</translation>
    </message>
    <message>
        <source>Draw a block or choose one; a task is planned over it.</source>
        <translation>请先绘制或选择一个测区；任务在其上规划。</translation>
    </message>
    <message>
        <source>Task %1</source>
        <translation>任务 %1</translation>
    </message>
    <message>
        <source>Delete task</source>
        <translation>删除任务</translation>
    </message>
    <message>
        <source>Do you want to delete the task "%1"?</source>
        <translation>是否删除任务“%1”？</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>The route cannot be shown.</source>
        <translation>航线无法显示。</translation>
    </message>
    <message>
        <source>Click home of %1 on the map; Escape gives it up.</source>
        <translation>请在地图上单击 %1 的起降点；按 Esc 取消。</translation>
    </message>
    <message>
        <source>%1, flight %2</source>
        <translation>%1，架次 %2</translation>
    </message>
    <message>
        <source>The task is gone.</source>
        <translation>任务已不存在。</translation>
    </message>
    <message>
        <source>The route has changed, and with it the flights. Choose one of the new ones.</source>
        <translation>航线已改变，架次也随之改变。请重新选择。</translation>
    </message>
</context>
<context>
    <name>NavigateMenu</name>
    <message>
        <source>&amp;Navigate</source>
        <translation>导航(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Home	Home</source>
        <translation>初始视图(&amp;H)	Home</translation>
    </message>
    <message>
        <source>&amp;North up</source>
        <translation>正北朝上(&amp;N)</translation>
    </message>
    <message>
        <source>Straight &amp;down</source>
        <translation>垂直俯视(&amp;D)</translation>
    </message>
    <message>
        <source>Zoom &amp;in	+</source>
        <translation>放大(&amp;I)	+</translation>
    </message>
    <message>
        <source>Zoom &amp;out	-</source>
        <translation>缩小(&amp;O)	-</translation>
    </message>
</context>
<context>
    <name>CarriedMissions</name>
    <message>
        <source>%1 is in the air with this mission, and goes on flying it.</source>
        <translation>%1 正在空中执行此任务，删除后仍会继续飞行。</translation>
    </message>
</context>
<context>
    <name>FlownSlider</name>
    <message>
        <source>Flown</source>
        <translation>已飞</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>Shows the route as if it were flown up to here</source>
        <translation>把航线显示为已飞到此处</translation>
    </message>
</context>
<context>
    <name>MeasureKept</name>
    <message>
        <source>Measurement without a name</source>
        <translation>未命名的量测</translation>
    </message>
    <message>
        <source>Measurements of the project that cannot be read, and stay in it: %1</source>
        <translation>项目中无法读取的量测（仍保留在项目中）：%1</translation>
    </message>
</context>
<context>
    <name>TaskFlights</name>
    <message>
        <source>%1: %2 min, %3 photos</source>
        <translation>%1：%2 分，%3 张照片</translation>
    </message>
    <message>
        <source>%1, resumes at %2°, %3°</source>
        <translation>%1，续飞起点 %2°，%3°</translation>
    </message>
    <message>
        <source>Export flight...</source>
        <translation>导出架次...</translation>
    </message>
    <message>
        <source>A click flies to where the flight begins</source>
        <translation>单击飞到该架次的起点</translation>
    </message>
    <message>
        <source>Write the chosen flight alone</source>
        <translation>单独写出所选架次</translation>
    </message>
</context>
<context>
    <name>TaskRoutes</name>
    <message>
        <source>The route of &quot;%1&quot; over %2 stays as it was read, and may not fit the changed block.</source>
        <translation>%2 上“%1”的航线保持导入时的样子，可能与修改后的测区不符。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; over %2 is planned anew; what was exported before does not fit the changed block.</source>
        <translation>%2 上的“%1”已重新规划；此前导出的航线与修改后的测区不符。</translation>
    </message>
    <message>
        <source>The planner of this kind of task gives no route.</source>
        <translation>此类任务的规划器没有给出航线。</translation>
    </message>
</context>
<context>
    <name>CAxUavNode</name>
    <message>
        <source>longitude:</source>
        <translation>经度：</translation>
    </message>
    <message>
        <source>degree</source>
        <translation>度</translation>
    </message>
    <message>
        <source>latitude:</source>
        <translation>纬度：</translation>
    </message>
    <message>
        <source>no position for %1 s</source>
        <translation>已 %1 秒没有位置</translation>
    </message>
    <message>
        <source>no link for %1 s</source>
        <translation>链路中断 %1 秒</translation>
    </message>
    <message>
        <source>photo %1</source>
        <translation>照片 %1</translation>
    </message>
</context>
<context>
    <name>StartBlocks</name>
    <message>
        <source>--blocks: block &apos;%1&apos; cannot be drawn.</source>
        <translation>--blocks：无法绘制测区“%1”。</translation>
    </message>
    <message>
        <source>--blocks: block &apos;%1&apos; is drawn, but drawing would refuse it: %2</source>
        <translation>--blocks：已绘制测区“%1”，但手工绘制时会被拒绝：%2</translation>
    </message>
    <message>
        <source>%1 of %2 blocks would be refused if they were drawn; they have a warning sign in the list.</source>
        <translation>%2 个测区中有 %1 个在手工绘制时会被拒绝；它们在列表中带有警告标志。</translation>
    </message>
</context>
<context>
    <name>AircraftOnMap</name>
    <message>
        <source>Aircraft %1</source>
        <translation>飞机 %1</translation>
    </message>
</context>
<context>
    <name>AircraftPanel</name>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>断开</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>跟随</translation>
    </message>
    <message>
        <source>Keeps the aircraft in the middle</source>
        <translation>使飞机保持在画面中央</translation>
    </message>
    <message>
        <source>Chase</source>
        <translation>追尾</translation>
    </message>
    <message>
        <source>Looks ahead from behind the aircraft</source>
        <translation>从飞机后方向前看</translation>
    </message>
    <message>
        <source>From home</source>
        <translation>起降点视角</translation>
    </message>
    <message>
        <source>Looks at the aircraft from home</source>
        <translation>从起降点看飞机</translation>
    </message>
    <message>
        <source>Trail</source>
        <translation>航迹</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>照片</translation>
    </message>
    <message>
        <source>Clear trail</source>
        <translation>清除航迹</translation>
    </message>
    <message>
        <source>Takes the trails flown so far off the map</source>
        <translation>从地图上移除已飞过的航迹</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>导出...</translation>
    </message>
    <message>
        <source>Writes the places of the photos to a CSV or KML file</source>
        <translation>将照片位置写入 CSV 或 KML 文件</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>链路</translation>
    </message>
    <message>
        <source>Flight</source>
        <translation>飞行</translation>
    </message>
    <message>
        <source>Mission</source>
        <translation>飞行任务</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>消息</translation>
    </message>
    <message>
        <source>Takes the aircraft of the closed link off the map</source>
        <translation>将已断开链路的飞机从地图上移除</translation>
    </message>
    <message>
        <source>Folder...</source>
        <translation>文件夹...</translation>
    </message>
    <message>
        <source>Where flights are recorded, from the next connection on</source>
        <translation>从下一次连接起，飞行记录保存的位置</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Opens the folder of the records</source>
        <translation>打开记录所在的文件夹</translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation>飞机</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>项目</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Shows the way flown</source>
        <translation>显示已飞过的航迹</translation>
    </message>
    <message>
        <source>Shows where photos were taken</source>
        <translation>显示拍照位置</translation>
    </message>
    <message>
        <source>The route cannot be shown.</source>
        <translation>无法显示该航线。</translation>
    </message>
    <message>
        <source>Folder for records</source>
        <translation>记录文件夹</translation>
    </message>
    <message>
        <source>Nothing is recorded yet: %1 does not exist.</source>
        <translation>尚无记录：%1 不存在。</translation>
    </message>
    <message>
        <source>Photos of %1</source>
        <translation>%1 的照片</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Recorded: %1</source>
        <translation>记录文件：%1</translation>
    </message>
    <message>
        <source>Flights are recorded in %1</source>
        <translation>飞行记录保存在 %1</translation>
    </message>
    <message>
        <source>Messages (%1)</source>
        <translation>消息 (%1)</translation>
    </message>
    <message>
        <source>A mission is on its way to or from an aircraft.</source>
        <translation>正在与飞机交换飞行任务。</translation>
    </message>
    <message>
        <source>%1 is in the air.</source>
        <translation>%1 正在空中。</translation>
    </message>
    <message>
        <source>%1 - no link</source>
        <translation>%1 - 无链路</translation>
    </message>
    <message>
        <source>%1 are in the air.</source>
        <translation>%1 在空中。</translation>
    </message>
    <message>
        <source>Do you want to disconnect all the same?</source>
        <translation>仍要断开吗？</translation>
    </message>
    <message>
        <source>Show folder</source>
        <translation>显示文件夹</translation>
    </message>
</context>
<context>
    <name>AircraftSession</name>
    <message>
        <source>Something is connected already: disconnect first.</source>
        <translation>已有连接：请先断开。</translation>
    </message>
    <message>
        <source>No file is chosen.</source>
        <translation>未选择文件。</translation>
    </message>
    <message>
        <source>No serial port is chosen.</source>
        <translation>未选择串口。</translation>
    </message>
    <message>
        <source>The simulator flies the route of a task: choose a task that has one.</source>
        <translation>模拟器飞行任务的航线：请选择一个有航线的任务。</translation>
    </message>
    <message>
        <source>The key has not 32 bytes.</source>
        <translation>密钥不是 32 字节。</translation>
    </message>
    <message>
        <source>The link is lost.</source>
        <translation>链路已丢失。</translation>
    </message>
    <message>
        <source>The link is back.</source>
        <translation>链路已恢复。</translation>
    </message>
    <message>
        <source>%1: no flight is in it.</source>
        <translation>%1：其中没有飞行记录。</translation>
    </message>
    <message>
        <source>Aircraft %1</source>
        <translation>飞机 %1</translation>
    </message>
    <message>
        <source>The block has no home: the simulator takes off below the first point of the route.</source>
        <translation>测区未设置起降点：模拟器从航线第一点的下方起飞。</translation>
    </message>
    <message>
        <source>Heights may be wrong by up to 110 m. %1</source>
        <translation>高度误差可能达 110 米。%1</translation>
    </message>
    <message>
        <source>Simulated all the same: %1</source>
        <translation>仍进行模拟：%1</translation>
    </message>
    <message>
        <source>The battery is low: %1 %.</source>
        <translation>电池电量低：%1 %。</translation>
    </message>
    <message>
        <source>The battery is nearly empty: %1 %. Land.</source>
        <translation>电池即将耗尽：%1 %。请降落。</translation>
    </message>
</context>
<context>
    <name>AircraftText</name>
    <message>
        <source>no receiver</source>
        <translation>无接收机</translation>
    </message>
    <message>
        <source>no fix</source>
        <translation>未定位</translation>
    </message>
    <message>
        <source>2D fix</source>
        <translation>二维定位</translation>
    </message>
    <message>
        <source>3D fix</source>
        <translation>三维定位</translation>
    </message>
    <message>
        <source>3D fix with corrections</source>
        <translation>差分三维定位</translation>
    </message>
    <message>
        <source>RTK float</source>
        <translation>RTK 浮点解</translation>
    </message>
    <message>
        <source>RTK fixed</source>
        <translation>RTK 固定解</translation>
    </message>
    <message>
        <source>fix of kind %1</source>
        <translation>定位类型 %1</translation>
    </message>
    <message>
        <source>armed</source>
        <translation>已解锁</translation>
    </message>
    <message>
        <source>disarmed</source>
        <translation>已上锁</translation>
    </message>
    <message>
        <source>on the ground</source>
        <translation>在地面</translation>
    </message>
    <message>
        <source>in the air</source>
        <translation>在空中</translation>
    </message>
    <message>
        <source>item %1 of %2</source>
        <translation>第 %1 项，共 %2 项</translation>
    </message>
    <message>
        <source>item %1</source>
        <translation>第 %1 项</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1，来自 %2</translation>
    </message>
    <message>
        <source>%1 of %2 messages</source>
        <translation>%1 / %2 条消息</translation>
    </message>
    <message>
        <source>no attitude for %1</source>
        <translation>已 %1没有姿态</translation>
    </message>
    <message>
        <source>Heard</source>
        <translation>最近收到</translation>
    </message>
    <message>
        <source>%1 ago</source>
        <translation>%1前</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>模式</translation>
    </message>
    <message>
        <source>Motors</source>
        <translation>电机</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>Height above the sea</source>
        <translation>海拔高度</translation>
    </message>
    <message>
        <source>Height above home</source>
        <translation>相对起降点高度</translation>
    </message>
    <message>
        <source>Height above the ground</source>
        <translation>离地高度</translation>
    </message>
    <message>
        <source>Ground speed</source>
        <translation>地速</translation>
    </message>
    <message>
        <source>Air speed</source>
        <translation>空速</translation>
    </message>
    <message>
        <source>Climb</source>
        <translation>爬升率</translation>
    </message>
    <message>
        <source>Heading</source>
        <translation>航向</translation>
    </message>
    <message>
        <source>Roll</source>
        <translation>横滚</translation>
    </message>
    <message>
        <source>Pitch</source>
        <translation>俯仰</translation>
    </message>
    <message>
        <source>Yaw</source>
        <translation>偏航</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>电池</translation>
    </message>
    <message>
        <source>Satellites</source>
        <translation>卫星</translation>
    </message>
    <message>
        <source>Mission</source>
        <translation>飞行任务</translation>
    </message>
    <message>
        <source>Wind</source>
        <translation>风</translation>
    </message>
    <message>
        <source>Lost on the way</source>
        <translation>途中丢失</translation>
    </message>
    <message>
        <source>Emergency</source>
        <translation>紧急</translation>
    </message>
    <message>
        <source>Alert</source>
        <translation>警报</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>严重</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>注意</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Debug</source>
        <translation>调试</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 分 %2 秒</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 小时 %2 分</translation>
    </message>
</context>
<context>
    <name>CommandBar</name>
    <message>
        <source>Lets the motors run; asks first</source>
        <translation>允许电机转动；会先询问</translation>
    </message>
    <message>
        <source>Stops the motors; in the air it asks twice</source>
        <translation>停止电机；在空中时会询问两次</translation>
    </message>
    <message>
        <source>Flies the mission that the aircraft carries; asks first</source>
        <translation>执行飞机携带的飞行任务；会先询问</translation>
    </message>
    <message>
        <source>Holds the aircraft where it is, until Continue</source>
        <translation>使飞机停在原处，直到按“继续”</translation>
    </message>
    <message>
        <source>Goes on with the mission</source>
        <translation>继续执行飞行任务</translation>
    </message>
    <message>
        <source>Brings the aircraft home, at once</source>
        <translation>使飞机立即返航</translation>
    </message>
    <message>
        <source>Arm</source>
        <translation>解锁</translation>
    </message>
    <message>
        <source>Disarm</source>
        <translation>上锁</translation>
    </message>
    <message>
        <source>Stop motors</source>
        <translation>停止电机</translation>
    </message>
    <message>
        <source>Start mission</source>
        <translation>开始飞行任务</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>暂停</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>返航</translation>
    </message>
    <message>
        <source>%1 has gone before it answered.</source>
        <translation>%1 在应答之前已消失。</translation>
    </message>
    <message>
        <source>Its mission has %1 items.</source>
        <translation>它的飞行任务有 %1 项。</translation>
    </message>
    <message>
        <source>How many items its mission has is not known.</source>
        <translation>它的飞行任务有多少项未知。</translation>
    </message>
    <message>
        <source>Arm %1? Its motors may run at once.</source>
        <translation>要解锁 %1 吗？电机可能立即转动。</translation>
    </message>
    <message>
        <source>%1 is in the air. Start its mission from there?</source>
        <translation>%1 在空中。要从当前位置开始它的飞行任务吗？</translation>
    </message>
    <message>
        <source>Start the mission of %1? It may arm, run its motors and take off at once.</source>
        <translation>要开始 %1 的飞行任务吗？它可能立即解锁、转动电机并起飞。</translation>
    </message>
    <message>
        <source>%1: not sent, the aircraft or its link is no longer as it was.</source>
        <translation>%1：未发送，飞机或其链路的状态已改变。</translation>
    </message>
    <message>
        <source>%1 is in the air. Disarmed, it FALLS. Disarm it all the same?</source>
        <translation>%1 在空中。上锁后它会坠落。仍要上锁吗？</translation>
    </message>
    <message>
        <source>%1 will fall to the ground, on whoever is below. Do you really want to stop its motors?</source>
        <translation>%1 将坠落到地面，砸到下方的人。确实要停止它的电机吗？</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>%1: %2...</source>
        <translation>%1：%2……</translation>
    </message>
    <message>
        <source>%1: %2 - the aircraft obeys.</source>
        <translation>%1：%2 - 飞机已接受。</translation>
    </message>
    <message>
        <source>%1: %2 - %3</source>
        <translation>%1：%2 - %3</translation>
    </message>
    <message>
        <source>%1 - %2</source>
        <translation>%1 - %2</translation>
    </message>
    <message>
        <source>%1: %2 - the aircraft has begun.</source>
        <translation>%1：%2 - 飞机已开始执行。</translation>
    </message>
</context>
<context>
    <name>ConnectForm</name>
    <message>
        <source>Connection</source>
        <translation>连接方式</translation>
    </message>
    <message>
        <source>Simulator</source>
        <translation>模拟器</translation>
    </message>
    <message>
        <source>UDP</source>
        <translation>UDP</translation>
    </message>
    <message>
        <source>TCP</source>
        <translation>TCP</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>串口</translation>
    </message>
    <message>
        <source>Recorded flight</source>
        <translation>飞行记录</translation>
    </message>
    <message>
        <source>%1 times</source>
        <translation>%1 倍</translation>
    </message>
    <message>
        <source>Where the wind blows from, clockwise from north</source>
        <translation>风的来向，自正北顺时针</translation>
    </message>
    <message>
        <source>from</source>
        <translation>来自</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Wind</source>
        <translation>风</translation>
    </message>
    <message>
        <source>The program listens on this port and answers to whom it hears</source>
        <translation>程序监听此端口，并向收到的来源应答</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>端口</translation>
    </message>
    <message>
        <source>Host</source>
        <translation>主机</translation>
    </message>
    <message>
        <source>Look for ports again</source>
        <translation>重新查找串口</translation>
    </message>
    <message>
        <source>Bits a second</source>
        <translation>每秒位数</translation>
    </message>
    <message>
        <source>Baud</source>
        <translation>波特率</translation>
    </message>
    <message>
        <source>Choose a .tlog or .csv file</source>
        <translation>选择 .tlog 或 .csv 文件</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>64 hexadecimal digits; empty: none</source>
        <translation>64 位十六进制数；空：无</translation>
    </message>
    <message>
        <source>With a key, messages that it does not sign are refused, and what is sent is signed. The key is not kept: it has to be given again after a start.</source>
        <translation>设置密钥后，未用它签名的消息将被拒绝，发出的消息会被签名。密钥不会被保存：重新启动后须再次输入。</translation>
    </message>
    <message>
        <source>Read the key from a file</source>
        <translation>从文件读取密钥</translation>
    </message>
    <message>
        <source>Signing key</source>
        <translation>签名密钥</translation>
    </message>
    <message>
        <source>No key: signed messages are refused.</source>
        <translation>无密钥：拒绝已签名的消息。</translation>
    </message>
    <message>
        <source>A key of 32 bytes, in this run only.</source>
        <translation>32 字节密钥，仅本次运行有效。</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>%1 has no key in it: 32 bytes or 64 hexadecimal digits.</source>
        <translation>%1 中没有密钥：应为 32 字节或 64 位十六进制数。</translation>
    </message>
    <message>
        <source>Recorded flights (*.tlog *.csv *.txt);;All files (*)</source>
        <translation>飞行记录 (*.tlog *.csv *.txt);;所有文件 (*)</translation>
    </message>
    <message>
        <source>This is no key of 32 bytes: nothing is connected with it.</source>
        <translation>这不是 32 字节的密钥：不会用它建立连接。</translation>
    </message>
</context>
<context>
    <name>LinkText</name>
    <message>
        <source>The map is still loading.</source>
        <translation>地图仍在加载。</translation>
    </message>
    <message>
        <source>The simulator flies the route of a task: choose a task that has one.</source>
        <translation>模拟器飞行任务的航线：请选择一个有航线的任务。</translation>
    </message>
    <message>
        <source>Reading the file: %1 %</source>
        <translation>正在读取文件：%1 %</translation>
    </message>
    <message>
        <source>Replay of a recorded flight, nothing is live: %1</source>
        <translation>回放飞行记录，非实时数据：%1</translation>
    </message>
    <message>
        <source>Not connected.</source>
        <translation>未连接。</translation>
    </message>
    <message>
        <source>Not connected. %1</source>
        <translation>未连接。%1</translation>
    </message>
    <message>
        <source>%1: connecting...</source>
        <translation>%1：正在连接...</translation>
    </message>
    <message>
        <source>%1. It is tried again.</source>
        <translation>%1。正在重试。</translation>
    </message>
    <message>
        <source>%1: %2 messages were refused: their signatures are not those of the key.</source>
        <translation>%1：已拒绝 %2 条消息：其签名与密钥不符。</translation>
    </message>
    <message>
        <source>%1: bytes come, but no aircraft is among them.</source>
        <translation>%1：收到数据，但其中没有飞机。</translation>
    </message>
    <message>
        <source>%1: open, nothing has been heard.</source>
        <translation>%1：已打开，尚未收到任何数据。</translation>
    </message>
    <message>
        <source>%1: LINK LOST for %2.</source>
        <translation>%1：链路已丢失 %2。</translation>
    </message>
    <message>
        <source>%1: connected.</source>
        <translation>%1：已连接。</translation>
    </message>
    <message>
        <source>%1: connected, %2 aircraft.</source>
        <translation>%1：已连接，%2 架飞机。</translation>
    </message>
    <message>
        <source>The signing key cannot be used.</source>
        <translation>签名密钥无法使用。</translation>
    </message>
    <message>
        <source>%1 of %2 aircraft lost.</source>
        <translation>%2 架飞机中有 %1 架失去链路。</translation>
    </message>
</context>
<context>
    <name>MessageList</name>
    <message>
        <source>Messages</source>
        <translation>消息</translation>
    </message>
</context>
<context>
    <name>MissionBox</name>
    <message>
        <source>Upload</source>
        <translation>上传</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Brings the route of the chosen task to the aircraft</source>
        <translation>将所选任务的航线上传到飞机</translation>
    </message>
    <message>
        <source>Shows the mission that the aircraft carries as a route</source>
        <translation>将飞机携带的飞行任务显示为航线</translation>
    </message>
    <message>
        <source>The mission was not uploaded: %1</source>
        <translation>飞行任务未上传：%1</translation>
    </message>
    <message>
        <source>Upload mission</source>
        <translation>上传飞行任务</translation>
    </message>
    <message>
        <source>%1 is in the air, or armed. Do you want to replace the mission that it carries?</source>
        <translation>%1 在空中或已解锁。要替换它携带的飞行任务吗？</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>Uploading to %1...</source>
        <translation>正在上传到 %1...</translation>
    </message>
    <message>
        <source>Downloading from %1...</source>
        <translation>正在从 %1 下载...</translation>
    </message>
    <message>
        <source>%1 has the mission.</source>
        <translation>%1 已接收飞行任务。</translation>
    </message>
    <message>
        <source>Mission of %1</source>
        <translation>%1 的飞行任务</translation>
    </message>
    <message>
        <source>%1 carries no mission with a place in it.</source>
        <translation>%1 携带的飞行任务中没有航点。</translation>
    </message>
    <message>
        <source>An aircraft that flies this route is in danger. Upload it all the same?</source>
        <translation>按此航线飞行的飞机有危险。仍要上传吗？</translation>
    </message>
    <message>
        <source>The route may not fit %1. Upload it all the same?</source>
        <translation>航线可能不适合 %1。仍要上传吗？</translation>
    </message>
    <message>
        <source>%1: no mission was downloaded: %2</source>
        <translation>%1：未下载飞行任务：%2</translation>
    </message>
    <message>
        <source>%1: the mission was not uploaded: %2</source>
        <translation>%1：飞行任务未上传：%2</translation>
    </message>
    <message>
        <source>Route to upload: %1.</source>
        <translation>待上传的航线：%1。</translation>
    </message>
    <message>
        <source>Route to upload: none, choose a task that has one.</source>
        <translation>待上传的航线：无，请选择一个有航线的任务。</translation>
    </message>
    <message>
        <source>Route: %1.</source>
        <translation>航线：%1。</translation>
    </message>
    <message>
        <source>The chosen route was read from a file or an aircraft, it is not planned here.</source>
        <translation>所选航线是从文件或飞机读取的，不是在此规划的。</translation>
    </message>
    <message>
        <source>The mission of %1 is shown as a route, which is chosen now.</source>
        <translation>%1 的飞行任务已显示为航线，并已选中。</translation>
    </message>
</context>
<context>
    <name>PhotoFiles</name>
    <message>
        <source>Export photos</source>
        <translation>导出照片</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>KML (*.kml)</source>
        <translation>KML (*.kml)</translation>
    </message>
    <message>
        <source>The photos were not written.</source>
        <translation>照片未写入。</translation>
    </message>
    <message>
        <source>%1 is written. What it does not say:</source>
        <translation>%1 已写入。其中不包含：</translation>
    </message>
</context>
<context>
    <name>ReplayBar</name>
    <message>
        <source> times</source>
        <translation> 倍</translation>
    </message>
    <message>
        <source>How fast the flight is replayed</source>
        <translation>飞行记录的回放速度</translation>
    </message>
    <message>
        <source>%1, no data</source>
        <translation>%1，无数据</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>暂停</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>播放</translation>
    </message>
</context>
<context>
    <name>TimeBar</name>
    <message>
        <source>Time of the flight</source>
        <translation>飞行时间</translation>
    </message>
</context>
<context>
    <name>MissionDoubts</name>
    <message>
        <source>The route is for an aircraft with wings, this one has none.</source>
        <translation>航线用于固定翼飞机，而此飞机没有机翼。</translation>
    </message>
    <message>
        <source>The route is for a multirotor, this aircraft has wings.</source>
        <translation>航线用于多旋翼，而此飞机有机翼。</translation>
    </message>
    <message>
        <source>It starts %1 m away from the home that the route was planned for.</source>
        <translation>飞机起点距航线规划的起降点 %1 米。</translation>
    </message>
    <message>
        <source>It starts %1 m higher than planned, and flies the whole route so much higher.</source>
        <translation>飞机起点比规划高 %1 米，整条航线将高出同样的高度。</translation>
    </message>
    <message>
        <source>It starts %1 m lower than planned, and flies the whole route so much lower.</source>
        <translation>飞机起点比规划低 %1 米，整条航线将低出同样的高度。</translation>
    </message>
    <message>
        <source>%1 of block %2</source>
        <translation>测区 %2 的 %1</translation>
    </message>
    <message>
        <source>A part of the route is too far from home for a flight of %1.</source>
        <translation>航线的一部分离起降点太远，无法在 %1 的一次飞行中完成。</translation>
    </message>
    <message>
        <source>Take-off, the climb at home and the return are added to the route: %1 items in all.</source>
        <translation>航线已加上起飞、在起降点的爬升和返航：共 %1 项。</translation>
    </message>
    <message>
        <source>The aircraft is not told of no-fly zones, nor is a fence set.</source>
        <translation>不会把禁飞区告知飞机，也不会设置围栏。</translation>
    </message>
    <message>
        <source>The route takes %1, a flight %2 at most. It needs %3 flights, but is uploaded whole.</source>
        <translation>航线需要 %1，一次飞行最多 %2。它需要 %3 次飞行，但会整条上传。</translation>
    </message>
    <message>
        <source>Where it has its home is not known; the heights of the route count from there.</source>
        <translation>它的起降点未知；航线的高度由此算起。</translation>
    </message>
    <message>
        <source>Where the camera looks is not part of the mission; set it on the aircraft.</source>
        <translation>相机的朝向不属于飞行任务；请在飞机上设置。</translation>
    </message>
    <message>
        <source>a task that is deleted</source>
        <translation>已删除的任务</translation>
    </message>
</context>
<context>
    <name>CAxOsgDrawVideo</name>
    <message>
        <source>radius %1</source>
        <translation>半径 %1</translation>
    </message>
    <message>
        <source>area %1</source>
        <translation>面积 %1</translation>
    </message>
    <message>
        <source>click: the centre</source>
        <translation>单击：圆心</translation>
    </message>
    <message>
        <source>click: the radius</source>
        <translation>单击：半径</translation>
    </message>
    <message>
        <source>Change video area</source>
        <translation>更改视频测区</translation>
    </message>
    <message>
        <source>Change radius</source>
        <translation>更改半径</translation>
    </message>
    <message>
        <source>Move block</source>
        <translation>移动测区</translation>
    </message>
    <message>
        <source>Video Info</source>
        <translation>视频测区信息</translation>
    </message>
    <message>
        <source>Block Information</source>
        <translation>测区信息</translation>
    </message>
    <message>
        <source>The radius of a block that is locked or has routes cannot be changed.</source>
        <translation>已锁定或带有航线的测区，其半径不能更改。</translation>
    </message>
    <message>
        <source>Radius(%1):</source>
        <translation>半径 (%1)：</translation>
    </message>
</context>
<context>
    <name>AxBlockOperations</name>
    <message>
        <source>Blocks that were not changed: %1 of %2</source>
        <translation>未更改的测区：%1 / %2</translation>
    </message>
    <message>
        <source>Block Information</source>
        <translation>测区信息</translation>
    </message>
    <message>
        <source>%1 covers no area.</source>
        <translation>%1 没有面积。</translation>
    </message>
    <message>
        <source>The blocks are too large or too far apart.</source>
        <translation>测区过大或相距过远。</translation>
    </message>
    <message>
        <source>The value is out of range.</source>
        <translation>数值超出范围。</translation>
    </message>
    <message>
        <source>Nothing would be left of %1.</source>
        <translation>%1 将不剩任何面积。</translation>
    </message>
    <message>
        <source>The line does not lead across %1.</source>
        <translation>该线没有穿过 %1。</translation>
    </message>
    <message>
        <source>The block is not on the map.</source>
        <translation>该测区不在地图上。</translation>
    </message>
    <message>
        <source>%1 has routes on the map, which would not fit any more.</source>
        <translation>%1 在地图上有航线，修改后将不再适用。</translation>
    </message>
    <message>
        <source>%1 is locked.</source>
        <translation>%1 已锁定。</translation>
    </message>
    <message>
        <source>%1 has tasks, which would not fit any more.</source>
        <translation>%1 有任务，更改后任务将不再适用。</translation>
    </message>
    <message>
        <source>%1 is being edited.</source>
        <translation>%1 正在编辑中。</translation>
    </message>
    <message>
        <source>This is not possible with a block of the kind of %1.</source>
        <translation>%1 这类测区不能进行此操作。</translation>
    </message>
    <message>
        <source>%1 would have a hole, and a block cannot have one.</source>
        <translation>%1 将出现空洞，而测区不能有空洞。</translation>
    </message>
    <message>
        <source>%1 copy</source>
        <translation>%1 副本</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Select two blocks at least.</source>
        <translation>请至少选择两个测区。</translation>
    </message>
    <message>
        <source>No vertex of %1 can be left out.</source>
        <translation>%1 没有可去掉的顶点。</translation>
    </message>
    <message>
        <source>%1 has tasks, which would go with it.</source>
        <translation>%1 有任务，撤销会将其一并移除。</translation>
    </message>
    <message>
        <source>The blocks do not meet.</source>
        <translation>测区互不相接。</translation>
    </message>
    <message>
        <source>Unite</source>
        <translation>合并</translation>
    </message>
    <message>
        <source>Subtract</source>
        <translation>减去</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>分割</translation>
    </message>
    <message>
        <source>Shrink</source>
        <translation>收缩</translation>
    </message>
    <message>
        <source>Grow</source>
        <translation>扩展</translation>
    </message>
    <message>
        <source>Simplify</source>
        <translation>简化</translation>
    </message>
    <message>
        <source>Turn block</source>
        <translation>旋转测区</translation>
    </message>
    <message>
        <source>Change size</source>
        <translation>改变大小</translation>
    </message>
    <message>
        <source>A part of %1 would be shorter than %2.</source>
        <translation>%1 的一部分将短于 %2。</translation>
    </message>
</context>
<context>
    <name>AxCutLine</name>
    <message>
        <source>click: the line along which the block is cut</source>
        <translation>单击：绘制分割测区的线</translation>
    </message>
    <message>
        <source>double click: cut; Escape: leave it</source>
        <translation>双击：分割；Esc：放弃</translation>
    </message>
</context>
<context>
    <name>UnitsMenu</name>
    <message>
        <source>&amp;Units</source>
        <translation>单位(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Metric: m, km, km²</source>
        <translation>公制：米、千米、平方千米(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Imperial: ft, mi, ac, mi²</source>
        <translation>英制：英尺、英里、英亩、平方英里(&amp;I)</translation>
    </message>
    <message>
        <source>M&amp;u and hectares</source>
        <translation>亩和公顷(&amp;U)</translation>
    </message>
</context>
<context>
    <name>BlockMenu</name>
    <message>
        <source>&amp;Volume</source>
        <translation>体积(&amp;V)</translation>
    </message>
    <message>
        <source>Cut and fill of the ground within the block, in the panel &quot;Volumes&quot;</source>
        <translation>测区内地面的挖方和填方，见“体积”面板</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>体积</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1: %2 blocks</source>
        <translation>%1：%2 个测区</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>分割</translation>
    </message>
    <message>
        <source>This is for one block, and %1 are selected.</source>
        <translation>此操作只用于一个测区，当前选中了 %1 个。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a number between %2 and %3. Decimals are written with a point.</source>
        <translation>“%1”不是 %2 到 %3 之间的数字。小数请使用小数点。</translation>
    </message>
    <message>
        <source>&amp;Block</source>
        <translation>测区(&amp;B)</translation>
    </message>
    <message>
        <source>&amp;Duplicate</source>
        <translation>复制(&amp;D)</translation>
    </message>
    <message>
        <source>A copy of the blocks beside them, without their tasks</source>
        <translation>在旁边生成测区的副本，不含任务</translation>
    </message>
    <message>
        <source>&amp;Split by a line</source>
        <translation>用线分割(&amp;S)</translation>
    </message>
    <message>
        <source>Clicks draw the line, a double click cuts the block along it</source>
        <translation>单击绘制分割线，双击沿线分割测区</translation>
    </message>
    <message>
        <source>&amp;Unite</source>
        <translation>合并(&amp;U)</translation>
    </message>
    <message>
        <source>One block out of those that are selected; Ctrl and clicks select several</source>
        <translation>将所选测区合并为一个；按住 Ctrl 单击可选择多个</translation>
    </message>
    <message>
        <source>Su&amp;btract the others</source>
        <translation>减去其他测区(&amp;B)</translation>
    </message>
    <message>
        <source>The block that was selected first without what the others cover</source>
        <translation>从最先选择的测区中减去其他测区覆盖的部分</translation>
    </message>
    <message>
        <source>&amp;Grow or shrink...</source>
        <translation>扩展或收缩(&amp;G)...</translation>
    </message>
    <message>
        <source>Grow or shrink</source>
        <translation>扩展或收缩</translation>
    </message>
    <message>
        <source>Si&amp;mplify...</source>
        <translation>简化(&amp;M)...</translation>
    </message>
    <message>
        <source>Leaves vertices out that hardly matter</source>
        <translation>去掉影响很小的顶点</translation>
    </message>
    <message>
        <source>Simplify</source>
        <translation>简化</translation>
    </message>
    <message>
        <source>&amp;Turn...</source>
        <translation>旋转(&amp;T)...</translation>
    </message>
    <message>
        <source>Around its middle</source>
        <translation>绕其中心</translation>
    </message>
    <message>
        <source>Turn</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Angle (degrees clockwise):</source>
        <translation>角度（度，顺时针）：</translation>
    </message>
    <message>
        <source>&amp;Change size...</source>
        <translation>改变大小(&amp;C)...</translation>
    </message>
    <message>
        <source>From its middle</source>
        <translation>以其中心为准</translation>
    </message>
    <message>
        <source>Change size</source>
        <translation>改变大小</translation>
    </message>
    <message>
        <source>Size (% of the present one):</source>
        <translation>大小（当前的百分比）：</translation>
    </message>
    <message>
        <source>Distance (%1), below 0 to shrink:</source>
        <translation>距离 (%1)，小于 0 为收缩：</translation>
    </message>
    <message>
        <source>Largest deviation (%1):</source>
        <translation>最大偏差 (%1)：</translation>
    </message>
    <message>
        <source>By the same distance on all sides; a strip to both sides</source>
        <translation>各边移动相同距离；带状测区向两侧</translation>
    </message>
    <message>
        <source>&amp;Properties...</source>
        <translation>属性(&amp;P)...</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>Name, size and measures of the block, as a double click on it</source>
        <translation>测区的名称、大小和尺寸，与双击测区相同</translation>
    </message>
    <message>
        <source>Split: click the points of the cut; a double click ends it, Escape gives it up</source>
        <translation>分割：单击分割线的各点；双击结束，Esc 放弃</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has tasks, and its measures stay as they are meanwhile. The list of blocks renames it.</source>
        <translation>“%1”带有任务，其尺寸暂不能更改。可在测区列表中重命名。</translation>
    </message>
    <message>
        <source>&amp;Heights of the ground...</source>
        <translation>地面高程(&amp;H)...</translation>
    </message>
    <message>
        <source>The lowest, highest and mean height below the block, and their export</source>
        <translation>测区下方地面的最低、最高和平均高程及其导出</translation>
    </message>
    <message>
        <source>Heights of the ground</source>
        <translation>地面高程</translation>
    </message>
</context>
<context>
    <name>GeoBlocks</name>
    <message>
        <source>&quot;%1&quot; has no vertices and was left out.</source>
        <translation>“%1”没有顶点，已略过。</translation>
    </message>
    <message>
        <source>a point is no block; the panel of marks imports points</source>
        <translation>点不是测区；标记面板可导入点</translation>
    </message>
    <message>
        <source>it has holes</source>
        <translation>带有孔洞</translation>
    </message>
    <message>
        <source>its widths of %1 and %2 make no strip; the widths below are taken</source>
        <translation>其宽度 %1 和 %2 不成条带，采用下方的宽度</translation>
    </message>
</context>
<context>
    <name>GeoImportBox</name>
    <message>
        <source>Area of an application</source>
        <translation>申请区域</translation>
    </message>
    <message>
        <source>Together at least %1 %2</source>
        <translation>合计至少 %1 %2</translation>
    </message>
    <message>
        <source>%1, beginning at longitude %2°, latitude %3°</source>
        <translation>%1，起点经度 %2°，纬度 %3°</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>Please choose</source>
        <translation>请选择</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>区域</translation>
    </message>
    <message>
        <source>Line, as a strip</source>
        <translation>线（作为条带）</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>点</translation>
    </message>
    <message>
        <source>Circle, as a video block</source>
        <translation>圆（作为视频区）</translation>
    </message>
    <message>
        <source>Import areas and lines</source>
        <translation>导入区域和线</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>not named</source>
        <translation>未说明</translation>
    </message>
    <message>
        <source>%1; shapes: %2; coordinate system: %3</source>
        <translation>%1；图形：%2 个；坐标系：%3</translation>
    </message>
    <message>
        <source>Tick all</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Tick none</source>
        <translation>全不选</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Vertices</source>
        <translation>顶点</translation>
    </message>
    <message>
        <source>Holes</source>
        <translation>孔洞</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>说明</translation>
    </message>
    <message>
        <source>&amp;Fill the holes</source>
        <translation>填充孔洞(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Leave these areas out</source>
        <translation>略去这些区域(&amp;L)</translation>
    </message>
    <message>
        <source>A block has no holes. Areas with holes:</source>
        <translation>测区没有孔洞。带孔洞的区域：</translation>
    </message>
    <message>
        <source>Strips without widths, to the left:</source>
        <translation>无宽度的条带，左侧：</translation>
    </message>
    <message>
        <source>To the right:</source>
        <translation>右侧：</translation>
    </message>
    <message>
        <source>left out: %1</source>
        <translation>略去：%1</translation>
    </message>
</context>
<context>
    <name>SaveBox</name>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>%1 is there already. Do you want to replace it?</source>
        <translation>%1 已存在。要替换它吗？</translation>
    </message>
</context>
<context>
    <name>GeoExchange</name>
    <message>
        <source>&quot;%1&quot; is the area of an application, which a drawing cannot say, and was left out.</source>
        <translation>“%1”是申请区域，图纸无法表示，已略过。</translation>
    </message>
    <message>
        <source>Blocks are put on the map...</source>
        <translation>正在将测区放到地图上…</translation>
    </message>
    <message>
        <source>The import was given up, and the map is as it was.</source>
        <translation>已放弃导入，地图保持原样。</translation>
    </message>
    <message>
        <source>KML (*.kml)</source>
        <translation>KML (*.kml)</translation>
    </message>
    <message>
        <source>Packed KML (*.kmz)</source>
        <translation>压缩 KML (*.kmz)</translation>
    </message>
    <message>
        <source>GeoJSON (*.geojson)</source>
        <translation>GeoJSON (*.geojson)</translation>
    </message>
    <message>
        <source>Shapefile (*.shp)</source>
        <translation>Shapefile (*.shp)</translation>
    </message>
    <message>
        <source>GeoPackage (*.gpkg)</source>
        <translation>GeoPackage (*.gpkg)</translation>
    </message>
    <message>
        <source>DXF drawing (*.dxf)</source>
        <translation>DXF 图纸 (*.dxf)</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>&amp;Import areas and lines...</source>
        <translation>导入区域和线(&amp;I)...</translation>
    </message>
    <message>
        <source>&amp;Export blocks...</source>
        <translation>导出测区(&amp;E)...</translation>
    </message>
    <message>
        <source>&amp;Export block...</source>
        <translation>导出测区(&amp;E)...</translation>
    </message>
    <message>
        <source>Import areas and lines</source>
        <translation>导入区域和线</translation>
    </message>
    <message>
        <source>Areas and lines (%1)</source>
        <translation>区域和线 (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>Reading %1...</source>
        <translation>正在读取 %1...</translation>
    </message>
    <message>
        <source>Coordinate system</source>
        <translation>坐标系</translation>
    </message>
    <message>
        <source>%1 does not say which coordinate system it uses.</source>
        <translation>%1 未说明所用坐标系。</translation>
    </message>
    <message>
        <source>EPSG code, as EPSG:32632:</source>
        <translation>EPSG 代码，如 EPSG:32632：</translation>
    </message>
    <message>
        <source>Nothing was imported.</source>
        <translation>没有导入任何内容。</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Blocks that cannot be drawn and were not imported: %1 of %2</source>
        <translation>无法绘制而未导入的测区：%1 个（共 %2 个）</translation>
    </message>
    <message>
        <source>Imported blocks that would be refused if they were drawn: %1 of %2. They have a warning sign in the list.</source>
        <translation>若手工绘制会被拒绝的已导入测区：%1 个（共 %2 个）。它们在列表中带有警告标志。</translation>
    </message>
    <message>
        <source>Blocks imported: %1</source>
        <translation>已导入测区：%1 个</translation>
    </message>
    <message>
        <source>Export blocks</source>
        <translation>导出测区</translation>
    </message>
    <message>
        <source>blocks</source>
        <translation>测区</translation>
    </message>
    <message>
        <source>The blocks were not written.</source>
        <translation>测区未写入。</translation>
    </message>
    <message>
        <source>%1 is written.</source>
        <translation>%1 已写入。</translation>
    </message>
    <message>
        <source>Blocks written to %1: %2</source>
        <translation>已写入 %1 的测区：%2 个</translation>
    </message>
</context>
<context>
    <name>CAxOsgDrawPointSet</name>
    <message>
        <source>A mark needs a name.</source>
        <translation>标记需要名称。</translation>
    </message>
    <message>
        <source>A name has %1 characters at most; this one has %2.</source>
        <translation>名称最多 %1 个字符，此名称有 %2 个。</translation>
    </message>
    <message>
        <source>There is a mark &quot;%1&quot; already.</source>
        <translation>已有名为“%1”的标记。</translation>
    </message>
    <message>
        <source>Mark %1</source>
        <translation>标记 %1</translation>
    </message>
    <message>
        <source>This is no place on the map.</source>
        <translation>这不是地图上的位置。</translation>
    </message>
    <message>
        <source>Add mark</source>
        <translation>添加标记</translation>
    </message>
    <message>
        <source>This mark is not there any more.</source>
        <translation>此标记已不存在。</translation>
    </message>
    <message>
        <source>Move mark</source>
        <translation>移动标记</translation>
    </message>
    <message>
        <source>Rename %1 to %2</source>
        <translation>将 %1 重命名为 %2</translation>
    </message>
    <message>
        <source>Change note</source>
        <translation>修改备注</translation>
    </message>
    <message>
        <source>Delete mark</source>
        <translation>删除标记</translation>
    </message>
    <message>
        <source>Delete marks</source>
        <translation>删除多个标记</translation>
    </message>
    <message>
        <source>Rename marks</source>
        <translation>重命名标记</translation>
    </message>
</context>
<context>
    <name>AxMarkDialog</name>
    <message>
        <source>Mark</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>名称：</translation>
    </message>
    <message>
        <source>Coordinates:</source>
        <translation>坐标：</translation>
    </message>
    <message>
        <source>Latitude and longitude in degrees, also as degrees, minutes and seconds, UTM or MGRS</source>
        <translation>以度表示的纬度和经度，也可用度分秒、UTM 或 MGRS</translation>
    </message>
    <message>
        <source>Plain numbers are coordinates of %1</source>
        <translation>纯数字按 %1 坐标读取</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>Height of the ground:</source>
        <translation>地面高程：</translation>
    </message>
    <message>
        <source>Note:</source>
        <translation>备注：</translation>
    </message>
    <message>
        <source>Delete mark</source>
        <translation>删除标记</translation>
    </message>
</context>
<context>
    <name>MarkListModel</name>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>备注</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
</context>
<context>
    <name>MarkPanel</name>
    <message>
        <source>Coordinate system: %1.</source>
        <translation>坐标系：%1。</translation>
    </message>
    <message>
        <source>KML (*.kml)</source>
        <translation>KML (*.kml)</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>Packed KML (*.kmz)</source>
        <translation>压缩 KML (*.kmz)</translation>
    </message>
    <message>
        <source>GeoJSON (*.geojson)</source>
        <translation>GeoJSON (*.geojson)</translation>
    </message>
    <message>
        <source>&amp;Export...</source>
        <translation>导出(&amp;E)...</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>&amp;Import...</source>
        <translation>导入(&amp;I)...</translation>
    </message>
    <message>
        <source>Add the points of a file: KML, CSV, GeoJSON and others</source>
        <translation>添加文件中的点：KML、CSV、GeoJSON 等</translation>
    </message>
    <message>
        <source>Write the chosen marks, or all, as KML, CSV or GeoJSON</source>
        <translation>将所选或全部标记写为 KML、CSV 或 GeoJSON</translation>
    </message>
    <message>
        <source>&amp;Information...</source>
        <translation>信息(&amp;I)...</translation>
    </message>
    <message>
        <source>&amp;Fly there</source>
        <translation>飞到该处(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>删除(&amp;D)</translation>
    </message>
    <message>
        <source>... (%1)</source>
        <translation>……（%1）</translation>
    </message>
    <message>
        <source>Import marks</source>
        <translation>导入标记</translation>
    </message>
    <message>
        <source>Points (*.kml *.kmz *.csv *.geojson *.json *.gpkg *.shp *.dxf)</source>
        <translation>点 (*.kml *.kmz *.csv *.geojson *.json *.gpkg *.shp *.dxf)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>%1 was not imported.</source>
        <translation>%1 未导入。</translation>
    </message>
    <message>
        <source>%1 has no points.</source>
        <translation>%1 中没有点。</translation>
    </message>
    <message>
        <source>Import %1 marks</source>
        <translation>导入 %1 个标记</translation>
    </message>
    <message>
        <source>%1 is imported.</source>
        <translation>%1 已导入。</translation>
    </message>
    <message>
        <source>%1 marks were imported; %2 areas, lines and circles are none.</source>
        <translation>已导入 %1 个标记；另有 %2 个区域、线和圆不是标记。</translation>
    </message>
    <message>
        <source>%1 marks were imported.</source>
        <translation>已导入 %1 个标记。</translation>
    </message>
    <message>
        <source>Export marks</source>
        <translation>导出标记</translation>
    </message>
    <message>
        <source>%1: marks are written as KML, KMZ, CSV or GeoJSON.</source>
        <translation>%1：标记只能写为 KML、KMZ、CSV 或 GeoJSON。</translation>
    </message>
    <message>
        <source>There are no marks.</source>
        <translation>没有标记。</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 未写入。</translation>
    </message>
    <message>
        <source>%1 marks are written to %2.</source>
        <translation>已将 %1 个标记写入 %2。</translation>
    </message>
    <message>
        <source>%1 is written.</source>
        <translation>%1 已写入。</translation>
    </message>
</context>
<context>
    <name>AxSightAnalysis</name>
    <message>
        <source>The map is not open.</source>
        <translation>地图尚未打开。</translation>
    </message>
    <message>
        <source>One end of the line is no place, or its height is none.</source>
        <translation>视线的一端不是有效位置，或其高度无效。</translation>
    </message>
    <message>
        <source>The line is longer than %1.</source>
        <translation>视线长度超过 %1。</translation>
    </message>
    <message>
        <source>Line of sight %1</source>
        <translation>通视线 %1</translation>
    </message>
    <message>
        <source>Viewshed %1</source>
        <translation>视域 %1</translation>
    </message>
    <message>
        <source>Observer</source>
        <translation>观察点</translation>
    </message>
</context>
<context>
    <name>AxSightText</name>
    <message>
        <source>hidden from %1 on
%2 in the way</source>
        <translation>自 %1 处起不可见
遮挡 %2</translation>
    </message>
    <message>
        <source>visible
%1 clear</source>
        <translation>可见
净空 %1</translation>
    </message>
    <message>
        <source>Visible: %1, hidden: %2</source>
        <translation>可见：%1，不可见：%2</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>longitude %1°, latitude %2°</source>
        <translation>经度 %1°，纬度 %2°</translation>
    </message>
    <message>
        <source>%1: %2, %3 above the ground (ground %4)</source>
        <translation>%1：%2，距地面 %3（地面高程 %4）</translation>
    </message>
    <message>
        <source>From which height on the target is seen is not known.</source>
        <translation>目标达到多高才可见，未知。</translation>
    </message>
    <message>
        <source>No height of the target would do.</source>
        <translation>目标无论多高都不可见。</translation>
    </message>
    <message>
        <source>The target is seen from %1 above its ground on.</source>
        <translation>目标距其地面 %1 及以上时可见。</translation>
    </message>
    <message>
        <source>With the Earth&apos;s curve and a refraction of %1.</source>
        <translation>已计入地球曲率和折光系数 %1。</translation>
    </message>
    <message>
        <source>Hidden from %1 on: the ground stands up to %2 in the way</source>
        <translation>自 %1 处起不可见：地面最多高出视线 %2</translation>
    </message>
    <message>
        <source>Not known: ground on the way has no known height</source>
        <translation>未知：途中有地面高程未知</translation>
    </message>
    <message>
        <source>Visible: at least %1 above the ground on the way</source>
        <translation>可见：途中至少高出地面 %1</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>可见</translation>
    </message>
    <message>
        <source>%1 % within %2 is visible, %3 % hidden</source>
        <translation>%2 范围内 %1 % 可见，%3 % 不可见</translation>
    </message>
    <message>
        <source>%1, %2 % not known</source>
        <translation>%1，%2 % 未知</translation>
    </message>
    <message>
        <source>Observer</source>
        <translation>观察点</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>目标</translation>
    </message>
    <message>
        <source>Distance along the ellipsoid: %1</source>
        <translation>椭球面距离：%1</translation>
    </message>
    <message>
        <source>First ground in the way: %1, after %2</source>
        <translation>首个遮挡处：%1，距观察点 %2</translation>
    </message>
    <message>
        <source>Lowest above the ground: %1, after %2, at %3</source>
        <translation>距地面最小净空：%1，距观察点 %2，位于%3</translation>
    </message>
    <message>
        <source>What is looked for stands %1 above the ground.</source>
        <translation>目标距地面 %1。</translation>
    </message>
    <message>
        <source>Visible: %1, hidden: %2, not known: %3</source>
        <translation>可见：%1，不可见：%2，未知：%3</translation>
    </message>
    <message>
        <source>Cells of %1</source>
        <translation>格网边长 %1</translation>
    </message>
    <message>
        <source>The observer&apos;s place or height is none.</source>
        <translation>观察点的位置或高度无效。</translation>
    </message>
    <message>
        <source>The radius may be up to %1, and a cell up to the radius.</source>
        <translation>半径最大为 %1，格网边长不得超过半径。</translation>
    </message>
    <message>
        <source>The cells are too small for this radius: it may have %1 of them.</source>
        <translation>相对于该半径，格网过小：半径上最多 %1 格。</translation>
    </message>
    <message>
        <source>The height of the ground below the observer is not known.</source>
        <translation>观察点处的地面高程未知。</translation>
    </message>
    <message>
        <source>Called off.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>%1: hidden from here on</source>
        <translation>%1：自此处起不可见</translation>
    </message>
    <message>
        <source>visible</source>
        <translation>可见</translation>
    </message>
    <message>
        <source>hidden</source>
        <translation>不可见</translation>
    </message>
</context>
<context>
    <name>SightPanel</name>
    <message>
        <source>GeoTIFF (*.tif)</source>
        <translation>GeoTIFF (*.tif)</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>KML (*.kml)</source>
        <translation>KML (*.kml)</translation>
    </message>
    <message>
        <source>GeoJSON (*.geojson)</source>
        <translation>GeoJSON (*.geojson)</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>%1 is there already. Do you want to replace it?</source>
        <translation>%1 已存在。是否替换？</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>Export %1</source>
        <translation>导出%1</translation>
    </message>
    <message>
        <source>%1 is written.</source>
        <translation>已写入 %1。</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 未能写入。</translation>
    </message>
    <message>
        <source>&amp;Line of sight</source>
        <translation>通视线(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Viewshed</source>
        <translation>视域(&amp;V)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Click the observer and the target: is it seen, and what is in the way?</source>
        <translation>依次点击观察点和目标：是否通视，何处遮挡？</translation>
    </message>
    <message>
        <source>Click the observer: what is seen around it?</source>
        <translation>点击观察点：周围哪些地方可见？</translation>
    </message>
    <message>
        <source>Observer above ground</source>
        <translation>观察点距地面</translation>
    </message>
    <message>
        <source>Target above ground</source>
        <translation>目标距地面</translation>
    </message>
    <message>
        <source>Radius of viewshed</source>
        <translation>视域半径</translation>
    </message>
    <message>
        <source>Cell of viewshed</source>
        <translation>视域格网</translation>
    </message>
    <message>
        <source>Refraction</source>
        <translation>折光系数</translation>
    </message>
    <message>
        <source>0.13 is usual by day; 0 leaves it out. It bends rays down, so that they reach farther.</source>
        <translation>白天通常为 0.13；0 表示不计。折光使视线向下弯曲，从而看得更远。</translation>
    </message>
    <message>
        <source>Viewshed from</source>
        <translation>视域起点</translation>
    </message>
    <message>
        <source>Viewshed &amp;from</source>
        <translation>视域起点(&amp;F)</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Fly to</source>
        <translation>飞到</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>导出...</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>&amp;Home of the current block</source>
        <translation>当前测区的起降点(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Mark point that is chosen</source>
        <translation>所选标记点(&amp;M)</translation>
    </message>
    <message>
        <source>Below the &amp;camera</source>
        <translation>相机正下方(&amp;C)</translation>
    </message>
    <message>
        <source>Click the observer on the map; Escape ends it.</source>
        <translation>请在地图上点击观察点；按 Esc 结束。</translation>
    </message>
    <message>
        <source>Click the target on the map; Escape ends it.</source>
        <translation>请在地图上点击目标；按 Esc 结束。</translation>
    </message>
    <message>
        <source>Called off.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>Waits for its turn</source>
        <translation>等待计算</translation>
    </message>
</context>
<context>
    <name>AxMeasurement</name>
    <message>
        <source>Cut</source>
        <translation>挖方</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>填方</translation>
    </message>
    <message>
        <source>Cut less fill</source>
        <translation>挖方减填方</translation>
    </message>
    <message>
        <source>Error by cells</source>
        <translation>格网误差</translation>
    </message>
    <message>
        <source>Mean above base</source>
        <translation>平均高出基准面</translation>
    </message>
    <message>
        <source>Highest above base</source>
        <translation>最高高出基准面</translation>
    </message>
    <message>
        <source>Lowest above base</source>
        <translation>最低高出基准面</translation>
    </message>
    <message>
        <source>Area without heights</source>
        <translation>无高程的面积</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>体积</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Over the ground</source>
        <translation>沿地面</translation>
    </message>
    <message>
        <source>Bearing</source>
        <translation>方位角</translation>
    </message>
    <message>
        <source>Height difference</source>
        <translation>高差</translation>
    </message>
    <message>
        <source>Slope</source>
        <translation>坡度</translation>
    </message>
    <message>
        <source>Straight line</source>
        <translation>直线距离</translation>
    </message>
    <message>
        <source>Ascent</source>
        <translation>累计上升</translation>
    </message>
    <message>
        <source>Descent</source>
        <translation>累计下降</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>距离</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
    <message>
        <source>%1° (%2 %)</source>
        <translation>%1°（%2 %）</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>面积</translation>
    </message>
    <message>
        <source>Area over the ground</source>
        <translation>地表面积</translation>
    </message>
    <message>
        <source>Perimeter</source>
        <translation>周长</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>宽度</translation>
    </message>
    <message>
        <source>Depth</source>
        <translation>纵深</translation>
    </message>
    <message>
        <source>Area on the plane</source>
        <translation>平面上的面积</translation>
    </message>
    <message>
        <source>Slope of the plane</source>
        <translation>平面坡度</translation>
    </message>
    <message>
        <source>Falls towards</source>
        <translation>坡向</translation>
    </message>
    <message>
        <source>Roughness</source>
        <translation>粗糙度</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>Easting</source>
        <translation>东坐标</translation>
    </message>
    <message>
        <source>Northing</source>
        <translation>北坐标</translation>
    </message>
    <message>
        <source>Ground</source>
        <translation>地面高度</translation>
    </message>
    <message>
        <source>Plane</source>
        <translation>平面</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
</context>
<context>
    <name>CAxMearsureToolHandler</name>
    <message>
        <source>%1, in all %2</source>
        <translation>%1，共 %2</translation>
    </message>
    <message>
        <source>over the ground about %1</source>
        <translation>沿地面约 %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>，</translation>
    </message>
    <message>
        <source>double click: the last point; Backspace: one point back</source>
        <translation>双击：最后一点；退格键：退回一点</translation>
    </message>
    <message>
        <source>over the ground %1</source>
        <translation>沿地面 %1</translation>
    </message>
</context>
<context>
    <name>CAxMeasureAltitudeHandler</name>
    <message>
        <source>click or let go: the second place</source>
        <translation>单击或松开：第二处</translation>
    </message>
</context>
<context>
    <name>MeasureFile</name>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>Part %1: %2</source>
        <translation>第 %1 段：%2</translation>
    </message>
    <message>
        <source>%1: not a name that ends in csv, kml or geojson</source>
        <translation>%1：文件名不以 csv、kml 或 geojson 结尾</translation>
    </message>
</context>
<context>
    <name>MeasureList</name>
    <message>
        <source>Measurement</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Part %1</source>
        <translation>第 %1 段</translation>
    </message>
</context>
<context>
    <name>MeasureProfile</name>
    <message>
        <source>Distance (km)</source>
        <translation>距离（千米）</translation>
    </message>
    <message>
        <source>No measurement is selected.</source>
        <translation>未选择测量。</translation>
    </message>
    <message>
        <source>A place has no profile.</source>
        <translation>单个位置没有剖面。</translation>
    </message>
    <message>
        <source>The heights of the ground are being read...</source>
        <translation>正在读取地面高度……</translation>
    </message>
    <message>
        <source>%1: the ground&apos;s height is not known</source>
        <translation>%1：地面高度未知</translation>
    </message>
    <message>
        <source>%1: ground at %2 m</source>
        <translation>%1：地面高 %2 米</translation>
    </message>
</context>
<context>
    <name>MeasurePanel</name>
    <message>
        <source>&amp;Fly to</source>
        <translation>飞往(&amp;F)</translation>
    </message>
    <message>
        <source>Look at the selected measurements from above</source>
        <translation>从上方观看所选测量</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>Copy the selected measurements as text, and as a table</source>
        <translation>将所选测量复制为文本和表格</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>删除(&amp;D)</translation>
    </message>
    <message>
        <source>Take the selected measurements off the map</source>
        <translation>从地图上移除所选测量</translation>
    </message>
    <message>
        <source>Take all measurements off the map</source>
        <translation>从地图上移除全部测量</translation>
    </message>
    <message>
        <source>Measurements copied: %1</source>
        <translation>已复制测量：%1</translation>
    </message>
    <message>
        <source>Measurements</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Do you want to take all %1 measurements off the map?</source>
        <translation>是否从地图上移除全部 %1 项测量？</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>The heights of the ground are still being read.</source>
        <translation>仍在读取地面高度。</translation>
    </message>
    <message>
        <source>Table (*.csv)</source>
        <translation>表格 (*.csv)</translation>
    </message>
    <message>
        <source>Google Earth (*.kml)</source>
        <translation>Google Earth (*.kml)</translation>
    </message>
    <message>
        <source>GeoJSON (*.geojson)</source>
        <translation>GeoJSON (*.geojson)</translation>
    </message>
    <message>
        <source>Export measurements</source>
        <translation>导出测量</translation>
    </message>
    <message>
        <source>measurements</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Measurements written to %1: %2</source>
        <translation>已写入 %1 的测量：%2</translation>
    </message>
    <message>
        <source>The measurements were not written.</source>
        <translation>测量未写入。</translation>
    </message>
    <message>
        <source>&amp;Export measurements...</source>
        <translation>导出测量(&amp;E)……</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>导出……</translation>
    </message>
    <message>
        <source>Clear &amp;all measurements</source>
        <translation>清除全部测量(&amp;A)</translation>
    </message>
    <message>
        <source>Clear all</source>
        <translation>全部清除</translation>
    </message>
    <message>
        <source>Write the selected measurements, or else all, into a CSV, KML or GeoJSON file</source>
        <translation>将所选测量（未选择则全部）写入 CSV、KML 或 GeoJSON 文件</translation>
    </message>
</context>
<context>
    <name>MeasureMenu</name>
    <message>
        <source>&amp;Volume</source>
        <translation>体积(&amp;V)</translation>
    </message>
    <message>
        <source>Click the corners of an area, the last one by a double click: cut and fill against a base that the panel on the map chooses; Escape leaves the tool</source>
        <translation>依次单击区域的角点，最后一点双击：按地图上的面板所选的基准面计算挖方和填方；Esc 退出工具</translation>
    </message>
    <message>
        <source>&amp;Distance</source>
        <translation>距离(&amp;D)</translation>
    </message>
    <message>
        <source>Click the points of a path, the last one by a double click; Backspace takes one back, Escape gives it up, and a second Escape leaves the tool</source>
        <translation>单击路径各点，双击最后一点；退格键退回一点，Esc 键放弃，再按一次 Esc 键离开工具</translation>
    </message>
    <message>
        <source>&amp;Height difference</source>
        <translation>高差(&amp;H)</translation>
    </message>
    <message>
        <source>Drag from one place to another, or click on each; Escape leaves the tool</source>
        <translation>从一处拖到另一处，或分别单击两处；Esc 键离开工具</translation>
    </message>
    <message>
        <source>&amp;Area</source>
        <translation>面积(&amp;A)</translation>
    </message>
    <message>
        <source>Click the corners of an area, the last one by a double click; Backspace takes one back, Escape gives it up, and a second Escape leaves the tool</source>
        <translation>单击区域的各角点，双击最后一个；退格键撤回一个，Esc 放弃，再按 Esc 离开工具</translation>
    </message>
    <message>
        <source>&amp;Plane</source>
        <translation>平面(&amp;P)</translation>
    </message>
    <message>
        <source>Drag a rectangle, or click on two opposite corners: slope, direction and roughness of the ground in it; Escape leaves the tool</source>
        <translation>拖出矩形，或单击两个对角：其中地面的坡度、坡向和粗糙度；Esc 离开工具</translation>
    </message>
    <message>
        <source>&amp;Coordinates</source>
        <translation>坐标(&amp;C)</translation>
    </message>
    <message>
        <source>The coordinates under the mouse, in the system of View &gt; Coordinate system; a click keeps them, Escape leaves the tool</source>
        <translation>鼠标处的坐标，采用“视图 &gt; 坐标系”中的坐标系；单击保留，Esc 离开工具</translation>
    </message>
</context>
<context>
    <name>AxMapLayers</name>
    <message>
        <source>There is no such layer.</source>
        <translation>没有该图层。</translation>
    </message>
    <message>
        <source>The map is not loaded yet.</source>
        <translation>地图尚未加载。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be shown: %2</source>
        <translation>“%1”无法显示：%2</translation>
    </message>
    <message>
        <source>there is no such file.</source>
        <translation>没有此文件。</translation>
    </message>
    <message>
        <source>it is not placed on the globe.</source>
        <translation>它在地球上没有位置。</translation>
    </message>
</context>
<context>
    <name>CAxLandingAreaNode</name>
    <message>
        <source>Please set the landing point in this range</source>
        <translation>请在此范围内设置降落点</translation>
    </message>
</context>
<context>
    <name>CAxInterestPointNode</name>
    <message>
        <source>Elevation Marker</source>
        <translation>高程标记</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
</context>
<context>
    <name>CAxDownhillAnglenode</name>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
</context>
<context>
    <name>LandingMenu</name>
    <message>
        <source>&amp;Approach to home</source>
        <translation>进近方向(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Point of interest</source>
        <translation>兴趣点(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Remove the point of interest</source>
        <translation>移除兴趣点(&amp;R)</translation>
    </message>
    <message>
        <source>Shows from where the aircraft comes down to the home of the chosen block; drag the handle</source>
        <translation>显示飞机从何处下降到所选区块的起降点；拖动手柄调整</translation>
    </message>
    <message>
        <source>Click a place near the chosen block; it can be dragged later. Escape leaves it</source>
        <translation>单击所选区块附近的位置；之后可以拖动。按 Esc 退出</translation>
    </message>
    <message>
        <source>The approach flies towards %1°</source>
        <translation>进近航向 %1°</translation>
    </message>
    <message>
        <source>Point of interest: %1, %2, %3 m</source>
        <translation>兴趣点：%1, %2, %3 米</translation>
    </message>
    <message>
        <source>The approach is shown once a block with a home is chosen.</source>
        <translation>选择设有起降点的区块后显示进近方向。</translation>
    </message>
    <message>
        <source>Turn the approach of %1</source>
        <translation>转动 %1 的进近方向</translation>
    </message>
    <message>
        <source>Approaches of the project that cannot be read: %1</source>
        <translation>项目中无法读取的进近方向：%1</translation>
    </message>
    <message>
        <source>The point of interest of the project cannot be read.</source>
        <translation>无法读取项目中的兴趣点。</translation>
    </message>
    <message>
        <source>A point of interest is set for a block, and none is chosen now.</source>
        <translation>兴趣点属于区块，而现在未选择任何区块。</translation>
    </message>
    <message>
        <source>Set the point of interest</source>
        <translation>设置兴趣点</translation>
    </message>
    <message>
        <source>Move the point of interest</source>
        <translation>移动兴趣点</translation>
    </message>
    <message>
        <source>Remove the point of interest</source>
        <translation>移除兴趣点</translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Picture</source>
        <translation>影像</translation>
    </message>
    <message>
        <source>Heights</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>Features</source>
        <translation>要素</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>不透明度</translation>
    </message>
    <message>
        <source>&amp;Opacity</source>
        <translation>不透明度(&amp;O)</translation>
    </message>
    <message>
        <source>Add picture…</source>
        <translation>添加影像…</translation>
    </message>
    <message>
        <source>Add heights…</source>
        <translation>添加高程…</translation>
    </message>
    <message>
        <source>Fly there</source>
        <translation>飞到此处</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Fault</source>
        <translation>故障</translation>
    </message>
    <message>
        <source>Add heights</source>
        <translation>添加高程</translation>
    </message>
    <message>
        <source>Add pictures</source>
        <translation>添加影像</translation>
    </message>
    <message>
        <source>Rasters (*.tif *.tiff *.vrt *.img *.jp2 *.png *.jpg *.mbtiles *.gpkg *.asc *.hgt);;All files (*)</source>
        <translation>栅格 (*.tif *.tiff *.vrt *.img *.jp2 *.png *.jpg *.mbtiles *.gpkg *.asc *.hgt);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>%1 is shown on the map.</source>
        <translation>%1 已显示在地图上。</translation>
    </message>
</context>
<context>
    <name>SearchBox</name>
    <message>
        <source>Search places, blocks, marks</source>
        <translation>搜索地名、区块、标记</translation>
    </message>
    <message>
        <source>Type a part of a name, or a coordinate; Enter flies there (Ctrl+F)</source>
        <translation>输入名称的一部分或坐标；回车飞到该处 (Ctrl+F)</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>%1 (block)</source>
        <translation>%1（区块）</translation>
    </message>
    <message>
        <source>%1 (mark)</source>
        <translation>%1（标记）</translation>
    </message>
    <message>
        <source>%1 (control point)</source>
        <translation>%1（控制点）</translation>
    </message>
    <message>
        <source>Nothing is called &quot;%1&quot; here.</source>
        <translation>这里没有名为“%1”的对象。</translation>
    </message>
    <message>
        <source>%1 is gone.</source>
        <translation>%1 已不存在。</translation>
    </message>
</context>
<context>
    <name>ControlPointPanel</name>
    <message>
        <source>&amp;Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Control points</source>
        <translation>控制点</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>&amp;Import...</source>
        <translation>导入...</translation>
    </message>
    <message>
        <source>Add the points of a file as control points: CSV, KML and others</source>
        <translation>将文件中的点添加为控制点：CSV、KML 等</translation>
    </message>
    <message>
        <source>Take the chosen control points off the map</source>
        <translation>从地图上移除所选控制点</translation>
    </message>
    <message>
        <source>Import &amp;control points...</source>
        <translation>导入控制点(&amp;C)...</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>Control points removed: %1</source>
        <translation>已移除控制点：%1</translation>
    </message>
    <message>
        <source>Import control points</source>
        <translation>导入控制点</translation>
    </message>
    <message>
        <source>Points (*.csv *.kml *.kmz *.geojson *.json *.gpkg *.shp *.dxf)</source>
        <translation>点 (*.csv *.kml *.kmz *.geojson *.json *.gpkg *.shp *.dxf)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>%1 was not imported.</source>
        <translation>%1 未导入。</translation>
    </message>
    <message>
        <source>The map is not loaded yet.</source>
        <translation>地图尚未加载。</translation>
    </message>
    <message>
        <source>%1 has no points.</source>
        <translation>%1 中没有点。</translation>
    </message>
    <message>
        <source>Areas, lines and circles that were left out: %1</source>
        <translation>未导入的区域、线和圆：%1</translation>
    </message>
    <message>
        <source>Points without a height, put on the ground as it is loaded: %1</source>
        <translation>没有高程、置于已加载地面上的点：%1</translation>
    </message>
    <message>
        <source>Control points imported: %1. Coordinate system: %2.</source>
        <translation>已导入控制点：%1。坐标系：%2。</translation>
    </message>
    <message>
        <source>%1 is imported.</source>
        <translation>%1 已导入。</translation>
    </message>
    <message>
        <source>Control points of the project that cannot be read: %1</source>
        <translation>项目中无法读取的控制点：%1</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>点</translation>
    </message>
    <message>
        <source>Remove control points (%1)</source>
        <translation>移除控制点（%1）</translation>
    </message>
    <message>
        <source>Import control points (%1)</source>
        <translation>导入控制点（%1）</translation>
    </message>
</context>
<context>
    <name>SightKept</name>
    <message>
        <source>Lines of sight and viewsheds of the project that cannot be read: %1</source>
        <translation>项目中无法读取的通视线和视域：%1</translation>
    </message>
    <message>
        <source>What the project asks about sight is looked at: %1 to go; Escape calls it off</source>
        <translation>正在重新计算项目中的通视与视域：剩余 %1 项；按 Esc 取消</translation>
    </message>
    <message>
        <source>Called off; a double click looks again</source>
        <translation>已取消；双击可重新计算</translation>
    </message>
    <message>
        <source>Line of sight</source>
        <translation>通视线</translation>
    </message>
    <message>
        <source>Viewshed</source>
        <translation>视域</translation>
    </message>
</context>
<context>
    <name>HomeClick</name>
    <message>
        <source>Set home of %1</source>
        <translation>设置 %1 的起降点</translation>
    </message>
    <message>
        <source>Clear home of %1</source>
        <translation>清除 %1 的起降点</translation>
    </message>
</context>
<context>
    <name>AxModelLayers</name>
    <message>
        <source>A lift is a number from -%1 to %1 m.</source>
        <translation>抬升值是 -%1 至 %1 米之间的数字。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; holds nothing that can be drawn.</source>
        <translation>“%1”中没有可以绘制的内容。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be read: %2</source>
        <translation>无法读取“%1”：%2</translation>
    </message>
    <message>
        <source>Pictures that are missing: %1, for one &quot;%2&quot;; drawn plain.</source>
        <translation>缺少 %1 张纹理图片，例如“%2”；按无纹理绘制。</translation>
    </message>
    <message>
        <source>Materials that are missing: %1, for one &quot;%2&quot;; drawn without.</source>
        <translation>缺少 %1 个材质，例如“%2”；按无材质绘制。</translation>
    </message>
    <message>
        <source>Triangles with corners that are nowhere: %1, left out.</source>
        <translation>有 %1 个三角形的顶点无效，已略去。</translation>
    </message>
    <message>
        <source>Its heights may be wrong by up to 100 m: they cannot be brought to those of the map. %1</source>
        <translation>其高程可能有最多 100 米的误差：无法换算为地图的高程。%1</translation>
    </message>
    <message>
        <source>Files that cannot be read: %1, for one &quot;%2&quot;.</source>
        <translation>有 %1 个文件无法读取，例如“%2”。</translation>
    </message>
    <message>
        <source>Files that are left out: %1. %2</source>
        <translation>略去了 %1 个文件。%2</translation>
    </message>
    <message>
        <source>The origin is not three numbers.</source>
        <translation>原点不是三个数字。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; does not tell a latitude and a longitude in degrees.</source>
        <translation>“%1”没有给出以度为单位的纬度和经度。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a way to write places and no system that a model can have. Degrees are &quot;EPSG:4326&quot;.</source>
        <translation>“%1”是位置的一种写法，不是模型可用的坐标系。以度为单位请用“EPSG:4326”。</translation>
    </message>
    <message>
        <source>The origin %1, %2 lies outside of the system &quot;%3&quot;.</source>
        <translation>原点 %1, %2 位于坐标系“%3”之外。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lies outside of the model's coordinate system.</source>
        <translation>“%1”位于模型坐标系之外。</translation>
    </message>
    <message>
        <source>The map is not loaded yet.</source>
        <translation>地图尚未加载。</translation>
    </message>
    <message>
        <source>Nothing tells in which coordinate system &quot;%1&quot; is.</source>
        <translation>没有任何信息说明“%1”所用的坐标系。</translation>
    </message>
    <message>
        <source>There are no tiles beside %1, as in Data/Tile_1/Tile_1.osgb.</source>
        <translation>%1 旁没有瓦片，例如 Data/Tile_1/Tile_1.osgb。</translation>
    </message>
    <message>
        <source>%1 is far too long for a description.</source>
        <translation>%1 作为说明文件过长。</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>无法读取 %1：%2</translation>
    </message>
    <message>
        <source>it does not describe a model</source>
        <translation>它不是模型的说明</translation>
    </message>
    <message>
        <source>%1: SRSOrigin &quot;%2&quot; is not three numbers.</source>
        <translation>%1：SRSOrigin“%2”不是三个数字。</translation>
    </message>
    <message>
        <source>%1, line %2: %3</source>
        <translation>%1，第 %2 行：%3</translation>
    </message>
    <message>
        <source>%1 does not hold three numbers.</source>
        <translation>%1 中不是三个数字。</translation>
    </message>
    <message>
        <source>%1 may not be read.</source>
        <translation>没有读取 %1 的权限。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: OpenSceneGraph has no reader for &quot;.%2&quot; here.</source>
        <translation>“%1”：此处的 OpenSceneGraph 没有“.%2”的读取插件。</translation>
    </message>
    <message>
        <source>The folder %1 has no metadata.xml. Choose the folder of the export that has it; models without it are loaded as files.</source>
        <translation>文件夹 %1 中没有 metadata.xml。请选择成果中含有该文件的文件夹；没有该文件的模型请按文件加载。</translation>
    </message>
    <message>
        <source>%1: there is no such file.</source>
        <translation>%1：没有这个文件。</translation>
    </message>
</context>
<context>
    <name>ModelPanel</name>
    <message>
        <source>Orbit</source>
        <translation>环绕</translation>
    </message>
    <message>
        <source>While it is pressed, drags move the view along with what is under the mouse, and with the right button turn it freely, also to look up at the model.</source>
        <translation>按下时，拖动使视图随鼠标下的位置移动，按右键拖动可自由旋转视图，也可从下方仰视模型。</translation>
    </message>
    <message>
        <source>%1 is more than %2 m off the ground.</source>
        <translation>%1 离地面超过 %2 米。</translation>
    </message>
    <message>
        <source>Find file…</source>
        <translation>查找文件…</translation>
    </message>
    <message>
        <source>Where is the model now?</source>
        <translation>模型现在在哪里？</translation>
    </message>
    <message>
        <source>Fly there</source>
        <translation>飞到该处</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Onto the ground</source>
        <translation>贴到地面</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>模型</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Load model…</source>
        <translation>加载模型…</translation>
    </message>
    <message>
        <source>Load export…</source>
        <translation>加载成果…</translation>
    </message>
    <message>
        <source>The folder with metadata.xml of a photogrammetry export</source>
        <translation>摄影测量成果中含有 metadata.xml 的文件夹</translation>
    </message>
    <message>
        <source>Raises or lowers the model until its lowest point is at the height of the ground below its middle.</source>
        <translation>抬升或降低模型，直到其最低点与其中心下方的地面等高。</translation>
    </message>
    <message>
        <source> m</source>
        <translation> m</translation>
    </message>
    <message>
        <source>&amp;Raised by</source>
        <translation>抬升(&amp;R)</translation>
    </message>
    <message>
        <source>%1 is on the map.</source>
        <translation>%1 已显示在地图上。</translation>
    </message>
    <message>
        <source>%1 is on the map. %2</source>
        <translation>%1 已显示在地图上。%2</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>模型</translation>
    </message>
    <message>
        <source>Load &amp;model…</source>
        <translation>加载模型(&amp;M)…</translation>
    </message>
    <message>
        <source>Load &amp;export of photogrammetry…</source>
        <translation>加载摄影测量成果(&amp;E)…</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>缺失</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>被拒绝</translation>
    </message>
    <message>
        <source>loading, %1 %</source>
        <translation>正在加载，%1 %</translation>
    </message>
    <message>
        <source>whole</source>
        <translation>完整</translation>
    </message>
    <message>
        <source>with faults</source>
        <translation>有缺陷</translation>
    </message>
    <message>
        <source>Load again</source>
        <translation>重新加载</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Load models</source>
        <translation>加载模型</translation>
    </message>
    <message>
        <source>Models (%1);;All files (*)</source>
        <translation>模型 (%1);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Load the folder with metadata.xml</source>
        <translation>加载含有 metadata.xml 的文件夹</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has %2 MB, and is loaded as a whole. Load it all the same?</source>
        <translation>“%1”有 %2 MB，将整体加载到内存。仍要加载吗？</translation>
    </message>
    <message>
        <source>The height of the ground there is not known.</source>
        <translation>该处的地面高程未知。</translation>
    </message>
</context>
<context>
    <name>ModelPlaceBox</name>
    <message>
        <source>Its &amp;zero stands at</source>
        <translation>模型原点位于(&amp;Z)</translation>
    </message>
    <message>
        <source>Its coordinates are those of a &amp;system</source>
        <translation>坐标属于某个坐标系(&amp;S)</translation>
    </message>
    <message>
        <source>Where does the model stand?</source>
        <translation>模型位于何处？</translation>
    </message>
    <message>
        <source>%1 does not tell where it stands.</source>
        <translation>%1 没有说明其位置。</translation>
    </message>
    <message>
        <source>%1 says that it stands in %2.</source>
        <translation>%1 说明其坐标系为 %2。</translation>
    </message>
    <message>
        <source>latitude, longitude, or as the read-out has them</source>
        <translation>纬度, 经度，或与坐标显示相同的写法</translation>
    </message>
    <message>
        <source>&amp;Middle of the view</source>
        <translation>视图中心(&amp;M)</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Height there, m</source>
        <translation>该处高程 (m)</translation>
    </message>
    <message>
        <source>Added to x, the easting or longitude</source>
        <translation>加到 x（东坐标或经度）上</translation>
    </message>
    <message>
        <source>Added to y, the northing or latitude</source>
        <translation>加到 y（北坐标或纬度）上</translation>
    </message>
    <message>
        <source>Added to z, the height</source>
        <translation>加到 z（高程）上</translation>
    </message>
    <message>
        <source>System</source>
        <translation>坐标系</translation>
    </message>
    <message>
        <source>Origin x, y, z</source>
        <translation>原点 x, y, z</translation>
    </message>
    <message>
        <source>as the system says, else the ellipsoid</source>
        <translation>按坐标系，否则为椭球面</translation>
    </message>
    <message>
        <source>the sea</source>
        <translation>海平面</translation>
    </message>
    <message>
        <source>the ellipsoid</source>
        <translation>椭球面</translation>
    </message>
    <message>
        <source>z, as in surveys</source>
        <translation>z（测绘惯例）</translation>
    </message>
    <message>
        <source>y, as in glTF</source>
        <translation>y（glTF 惯例）</translation>
    </message>
    <message>
        <source>Heights from</source>
        <translation>高程起算面</translation>
    </message>
    <message>
        <source>Axis that points up</source>
        <translation>朝上的轴</translation>
    </message>
    <message>
        <source>Type a place, or take the middle of the view.</source>
        <translation>请输入位置，或取视图中心。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no place.</source>
        <translation>“%1”不是位置。</translation>
    </message>
    <message>
        <source>for example EPSG:32650</source>
        <translation>例如 EPSG:32650</translation>
    </message>
    <message>
        <source>Type a coordinate system.</source>
        <translation>请输入坐标系。</translation>
    </message>
    <message>
        <source>Metres to the east, north and up of there.</source>
        <translation>以该处为原点，向东、向北、向上的米数。</translation>
    </message>
    <message>
        <source>The origin lies within the system.</source>
        <translation>原点在坐标系范围内。</translation>
    </message>
</context>
<context>
    <name>ModelsKept</name>
    <message>
        <source>The project has a value for &quot;%1&quot; that cannot be meant: %2</source>
        <translation>项目中“%1”的值无法使用：%2</translation>
    </message>
    <message>
        <source>Models of the project that cannot be read and are left out: %1</source>
        <translation>项目中无法读取而被略去的模型：%1</translation>
    </message>
</context>
<context>
    <name>HeightsBox</name>
    <message>
        <source>Heights of block</source>
        <translation>测区高程</translation>
    </message>
    <message>
        <source>Heights of %1</source>
        <translation>%1 的高程</translation>
    </message>
    <message>
        <source>The heights of the ground are read...</source>
        <translation>正在读取地面高程...</translation>
    </message>
    <message>
        <source>&quot;%1&quot; encloses no area.</source>
        <translation>“%1”没有围成区域。</translation>
    </message>
    <message>
        <source>No height of the ground is known below &quot;%1&quot;.</source>
        <translation>“%1”下方没有已知的地面高程。</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>导出...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Lowest: %1 at %2</source>
        <translation>最低：%1，位于 %2</translation>
    </message>
    <message>
        <source>Highest: %1 at %2</source>
        <translation>最高：%1，位于 %2</translation>
    </message>
    <message>
        <source>Mean: %1</source>
        <translation>平均：%1</translation>
    </message>
    <message>
        <source>Difference: %1</source>
        <translation>高差：%1</translation>
    </message>
    <message>
        <source>%1 cells of %2, heights above the ellipsoid.</source>
        <translation>%1 个格网单元，边长 %2，高程为椭球高。</translation>
    </message>
    <message>
        <source>%1 cells of %2, heights above mean sea level.</source>
        <translation>%1 个格网单元，边长 %2，高程为海拔高。</translation>
    </message>
    <message>
        <source>The map has a height every %1 here; in between they are interpolated.</source>
        <translation>此处地图的高程间距为 %1；其间的值由内插得到。</translation>
    </message>
    <message>
        <source>The map has finer heights, every %1; means of them are taken.</source>
        <translation>地图有更精细的高程（间距 %1），此处取其平均值。</translation>
    </message>
    <message>
        <source>%1 % of the area has no known height and does not count.</source>
        <translation>%1% 的区域没有已知高程，未计入。</translation>
    </message>
    <message>
        <source>Export heights</source>
        <translation>导出高程</translation>
    </message>
    <message>
        <source>GeoTIFF (*.tif)</source>
        <translation>GeoTIFF (*.tif)</translation>
    </message>
    <message>
        <source>CSV table (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>未能写入 %1。</translation>
    </message>
    <message>
        <source>%1 is written.</source>
        <translation>%1 已写入。</translation>
    </message>
</context>
<context>
    <name>AxVolumeText</name>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>%1 (%2 to %3)</source>
        <translation>%1（%2 至 %3）</translation>
    </message>
    <message>
        <source>%1 to %2 m above</source>
        <translation>高出 %1 至 %2 米</translation>
    </message>
    <message>
        <source>%1 to %2 m below</source>
        <translation>低于 %1 至 %2 米</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Plane through the rim</source>
        <translation>边界拟合平面</translation>
    </message>
    <message>
        <source>Surface through the rim</source>
        <translation>边界插值曲面</translation>
    </message>
    <message>
        <source>Mean height of the rim</source>
        <translation>边界平均高程</translation>
    </message>
    <message>
        <source>Lowest place of the rim</source>
        <translation>边界最低点</translation>
    </message>
    <message>
        <source>Highest place of the rim</source>
        <translation>边界最高点</translation>
    </message>
    <message>
        <source>Given height</source>
        <translation>指定高程</translation>
    </message>
    <message>
        <source>%1 cells, about %2 MB</source>
        <translation>%1 个格网单元，约 %2 MB</translation>
    </message>
    <message>
        <source>The outline has no area, or crosses itself.</source>
        <translation>轮廓没有面积，或自相交。</translation>
    </message>
    <message>
        <source>The area is more than %1 across.</source>
        <translation>区域跨度超过 %1。</translation>
    </message>
    <message>
        <source>The cell or the height is no number that it may be.</source>
        <translation>格网尺寸或高程不是有效数值。</translation>
    </message>
    <message>
        <source>The grid is large (%1): it is computed only when that is agreed to.</source>
        <translation>格网很大（%1）：需确认后才会计算。</translation>
    </message>
    <message>
        <source>The cells are too small for this area: it would have %1. There may be %2 cells.</source>
        <translation>对该区域而言格网过密：将有 %1。最多允许 %2 个单元。</translation>
    </message>
    <message>
        <source>No height of the ground in the area is known.</source>
        <translation>该区域内没有已知的地面高程。</translation>
    </message>
    <message>
        <source>The memory does not suffice. Choose larger cells, or remove other volumes.</source>
        <translation>内存不足。请选择更大的网格，或移除其他体积。</translation>
    </message>
    <message>
        <source>Too few heights of the ground below the outline are known.</source>
        <translation>轮廓处已知的地面高程太少。</translation>
    </message>
    <message>
        <source>Called off.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>挖方</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>填方</translation>
    </message>
    <message>
        <source>Cut less fill</source>
        <translation>挖方减填方</translation>
    </message>
    <message>
        <source>Error by cells</source>
        <translation>格网误差</translation>
    </message>
    <message>
        <source>up to %1</source>
        <translation>不超过 %1</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>面积</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>基准面</translation>
    </message>
    <message>
        <source>Mean above base</source>
        <translation>平均高出基准面</translation>
    </message>
    <message>
        <source>Highest above base</source>
        <translation>最高高出基准面</translation>
    </message>
    <message>
        <source>Lowest above base</source>
        <translation>最低高出基准面</translation>
    </message>
    <message>
        <source>Cell size</source>
        <translation>格网尺寸</translation>
    </message>
    <message>
        <source>Not known</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>%1 % of the area (%2) has no known height</source>
        <translation>%1 % 的区域（%2）没有已知高程</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>The cells are too large for the width of the area: %1 m or less will do.</source>
        <translation>网格对该区域的宽度过大：应不超过 %1 米。</translation>
    </message>
    <message>
        <source>Rim</source>
        <translation>边界</translation>
    </message>
    <message>
        <source>%1 % of it has no known height: the base is of the rest</source>
        <translation>%1 % 的边界没有已知高程：基准面取自其余部分</translation>
    </message>
</context>
<context>
    <name>AxVolumeAnalysis</name>
    <message>
        <source>The map is not open.</source>
        <translation>地图未打开。</translation>
    </message>
    <message>
        <source>The ground has changed since.</source>
        <translation>此后地形已变化。</translation>
    </message>
    <message>
        <source>%1 % of the area has no known height.</source>
        <translation>%1 % 的区域没有已知高程。</translation>
    </message>
    <message>
        <source>Cells of %1 m were not taken. %2</source>
        <translation>未采用 %1 米的网格单元。%2</translation>
    </message>
    <message>
        <source>%1 % of the rim has no known height: the base is of the rest.</source>
        <translation>%1 % 的边界没有已知高程：基准面取自其余部分。</translation>
    </message>
    <message>
        <source>3-D models in the area are not counted: the volume is that of the ground.</source>
        <translation>区域内的三维模型不计入：体积只是地面的体积。</translation>
    </message>
</context>
<context>
    <name>AxVolumeDesk</name>
    <message>
        <source>Click the corners of the area, the last one by a double click.</source>
        <translation>依次单击区域的角点，最后一点双击。</translation>
    </message>
    <message>
        <source>Cut %1, fill %2</source>
        <translation>挖方 %1，填方 %2</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>体积</translation>
    </message>
    <message>
        <source>Compute</source>
        <translation>计算</translation>
    </message>
    <message>
        <source>The grid of &quot;%1&quot; is large: %2. It takes a while. Do you want to compute it?</source>
        <translation>“%1”的格网很大：%2，计算需要一些时间。是否计算？</translation>
    </message>
    <message>
        <source>The volumes that there are hold %1 MB.</source>
        <translation>现有体积占用 %1 MB。</translation>
    </message>
</context>
<context>
    <name>AxVolumeFields</name>
    <message>
        <source>automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source> m</source>
        <translation> 米</translation>
    </message>
</context>
<context>
    <name>VolumeFile</name>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
    <message>
        <source>Called off.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>The memory does not suffice.</source>
        <translation>内存不足。</translation>
    </message>
</context>
<context>
    <name>AxGridWidget</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>基准面</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>Cell</source>
        <translation>格网</translation>
    </message>
    <message>
        <source>Next volume</source>
        <translation>下一个体积</translation>
    </message>
</context>
<context>
    <name>CAxMeasureVolume</name>
    <message>
        <source>The outline crosses itself: no volume</source>
        <translation>轮廓自相交：没有体积</translation>
    </message>
    <message>
        <source>double click: the last corner; Backspace: one corner back</source>
        <translation>双击：最后一个角点；退格键：退回一个角点</translation>
    </message>
    <message>
        <source>is being computed...</source>
        <translation>正在计算……</translation>
    </message>
</context>
<context>
    <name>VolumeKept</name>
    <message>
        <source>Volume without a name</source>
        <translation>未命名的体积</translation>
    </message>
    <message>
        <source>Volumes of the project that cannot be read, and stay in it: %1</source>
        <translation>项目中无法读取但仍予保留的体积：%1</translation>
    </message>
</context>
<context>
    <name>VolumePanel</name>
    <message>
        <source>&quot;%1&quot; encloses no area.</source>
        <translation>“%1”没有围成面积。</translation>
    </message>
    <message>
        <source>Volume of %1</source>
        <translation>%1 的体积</translation>
    </message>
    <message>
        <source>Compute</source>
        <translation>计算</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>体积</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>挖方</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>填方</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>基准面</translation>
    </message>
    <message>
        <source>Height of base</source>
        <translation>基准面高程</translation>
    </message>
    <message>
        <source>Cell</source>
        <translation>格网</translation>
    </message>
    <message>
        <source>Fly to</source>
        <translation>飞往</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>导出...</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>%1: cut %2, fill %3</source>
        <translation>%1：挖方 %2，填方 %3</translation>
    </message>
    <message>
        <source>Measure &gt; Volume draws the area of a volume.</source>
        <translation>用“测量 &gt; 体积”绘制体积的区域。</translation>
    </message>
    <message>
        <source>There is no volume to export yet.</source>
        <translation>还没有可导出的体积。</translation>
    </message>
    <message>
        <source>Cancel export</source>
        <translation>取消导出</translation>
    </message>
    <message>
        <source>The export was called off.</source>
        <translation>导出已取消。</translation>
    </message>
    <message>
        <source>Export %1</source>
        <translation>导出 %1</translation>
    </message>
    <message>
        <source>GeoTIFF of the differences (*.tif *.tiff)</source>
        <translation>差值 GeoTIFF (*.tif *.tiff)</translation>
    </message>
    <message>
        <source>Table of the cells (*.csv)</source>
        <translation>格网单元表格 (*.csv)</translation>
    </message>
    <message>
        <source>%1 is being written...</source>
        <translation>正在写入 %1……</translation>
    </message>
    <message>
        <source>%1 is written.</source>
        <translation>%1 已写入。</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 未写入。</translation>
    </message>
    <message>
        <source>Do you want to remove &quot;%1&quot; and its outline?</source>
        <translation>是否移除“%1”及其轮廓？</translation>
    </message>
    <message>
        <source>Do you want to remove %1 volumes and their outlines?</source>
        <translation>是否移除 %1 个体积及其轮廓？</translation>
    </message>
</context>
<context>
    <name>AxMagnifier</name>
    <message>
        <source>The place of the magnifier is not in the picture</source>
        <translation>放大镜所看的位置不在画面中</translation>
    </message>
</context>
<context>
    <name>AxPictureCapture</name>
    <message>
        <source>There is not enough memory for a picture of %1 x %2 pixels.</source>
        <translation>内存不足，无法生成 %1 x %2 像素的图片。</translation>
    </message>
    <message>
        <source>Pictures are being taken already.</source>
        <translation>正在拍摄图片。</translation>
    </message>
    <message>
        <source>There is no picture to take.</source>
        <translation>没有要拍摄的图片。</translation>
    </message>
    <message>
        <source>A picture has from 1 to %1 pixels in width and in height.</source>
        <translation>图片的宽和高为 1 至 %1 像素。</translation>
    </message>
    <message>
        <source>The map is not loaded yet.</source>
        <translation>地图尚未加载。</translation>
    </message>
    <message>
        <source>The video adapter has no room for the picture.</source>
        <translation>显卡没有足够的空间生成图片。</translation>
    </message>
    <message>
        <source>The map is gone.</source>
        <translation>地图已关闭。</translation>
    </message>
    <message>
        <source>The picture cannot be read from the video adapter.</source>
        <translation>无法从显卡读取图片。</translation>
    </message>
    <message>
        <source>A part does not lie in the picture that it is of.</source>
        <translation>图片的一部分不在该图片的范围内。</translation>
    </message>
    <message>
        <source>The camera of a picture has a place, a direction or a scale that is no number.</source>
        <translation>图片的相机位置、方向或比例不是有效数值。</translation>
    </message>
</context>
<context>
    <name>CaptureMenu</name>
    <message>
        <source>The map stands still while pictures are taken. Take them all the same?</source>
        <translation>拍图期间地图静止不动。仍要继续吗？</translation>
    </message>
    <message>
        <source>Take pictures</source>
        <translation>继续拍图</translation>
    </message>
    <message>
        <source>What the window shows</source>
        <translation>窗口所显示的范围</translation>
    </message>
    <message>
        <source>Block &quot;%1&quot;</source>
        <translation>测区“%1”</translation>
    </message>
    <message>
        <source>Save &amp;picture...</source>
        <translation>保存图片(&amp;P)...</translation>
    </message>
    <message>
        <source>Save map picture (&amp;GeoTIFF)...</source>
        <translation>保存地图图片 GeoTIFF(&amp;G)...</translation>
    </message>
    <message>
        <source>&amp;Pictures along route...</source>
        <translation>沿航线拍摄图片(&amp;P)...</translation>
    </message>
    <message>
        <source>&amp;Magnifier</source>
        <translation>放大镜(&amp;M)</translation>
    </message>
    <message>
        <source>A lens for the middle of the map; with Shift held, drag a rectangle for another place</source>
        <translation>放大地图中央；按住 Shift 拖出矩形可放大其他位置</translation>
    </message>
    <message>
        <source>%1; some of the map&apos;s detail did not come in time</source>
        <translation>%1；部分地图细节未能及时加载</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>地图</translation>
    </message>
    <message>
        <source>PNG picture (*.png)</source>
        <translation>PNG 图片 (*.png)</translation>
    </message>
    <message>
        <source>JPEG picture (*.jpg *.jpeg)</source>
        <translation>JPEG 图片 (*.jpg *.jpeg)</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>Save map picture</source>
        <translation>保存地图图片</translation>
    </message>
    <message>
        <source>A map picture shows up to %1 km of ground. Go nearer, or select a block.</source>
        <translation>地图图片最多显示 %1 km 的地面。请拉近视角或选择测区。</translation>
    </message>
    <message>
        <source>GeoTIFF (*.tif)</source>
        <translation>GeoTIFF (*.tif)</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>航线</translation>
    </message>
    <message>
        <source>Pictures along route</source>
        <translation>沿航线拍摄图片</translation>
    </message>
    <message>
        <source>The route leads nowhere.</source>
        <translation>该航线没有长度。</translation>
    </message>
    <message>
        <source>Numbered PNG pictures (*.png)</source>
        <translation>编号的 PNG 图片 (*.png)</translation>
    </message>
    <message>
        <source>Files with these names are there already: %1. Replace them?</source>
        <translation>已有同名文件：%1 个。要替换吗？</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>替换</translation>
    </message>
    <message>
        <source>%1 of %2 pictures were written</source>
        <translation>已写入 %1 张图片，共 %2 张</translation>
    </message>
    <message>
        <source>The map is loaded in the detail of the picture...</source>
        <translation>正在按图片的精细度加载地图...</translation>
    </message>
    <message>
        <source>Picture %1 of %2</source>
        <translation>第 %1 张图片，共 %2 张</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
    <message>
        <source>%1 is written...</source>
        <translation>正在写入 %1...</translation>
    </message>
    <message>
        <source>The picture is not lost yet. Save it elsewhere?</source>
        <translation>图片尚未丢失。要保存到其他位置吗？</translation>
    </message>
    <message>
        <source>Save elsewhere...</source>
        <translation>保存到其他位置...</translation>
    </message>
</context>
<context>
    <name>PictureBox</name>
    <message>
        <source> px</source>
        <translation> 像素</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>保存图片</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source>As the window (%1 x %2)</source>
        <translation>与窗口相同 (%1 x %2)</translation>
    </message>
    <message>
        <source>Twice the window (%1 x %2)</source>
        <translation>窗口的两倍 (%1 x %2)</translation>
    </message>
    <message>
        <source>Four times the window (%1 x %2)</source>
        <translation>窗口的四倍 (%1 x %2)</translation>
    </message>
    <message>
        <source>Screen (%1 x %2)</source>
        <translation>屏幕 (%1 x %2)</translation>
    </message>
    <message>
        <source>Poster (%1 x %2)</source>
        <translation>海报 (%1 x %2)</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>大小(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>宽度(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>高度(&amp;H)</translation>
    </message>
    <message>
        <source>%1 x %2 pixels, %3 MB while it is made</source>
        <translation>%1 x %2 像素，生成时占用 %3 MB</translation>
    </message>
    <message>
        <source>%1. The map is loaded in this detail first.</source>
        <translation>%1。先按此精细度加载地图。</translation>
    </message>
    <message>
        <source>A size of its own</source>
        <translation>自定义大小</translation>
    </message>
    <message>
        <source>&amp;Keep the shape of the map</source>
        <translation>保持地图的形状(&amp;K)</translation>
    </message>
    <message>
        <source>&amp;Texts and lines</source>
        <translation>文字和线条(&amp;T)</translation>
    </message>
    <message>
        <source>As large as in the window</source>
        <translation>与窗口中一样大</translation>
    </message>
    <message>
        <source>As many pixels as on the screen</source>
        <translation>像素数与屏幕上相同</translation>
    </message>
    <message>
        <source>As large as can be (%1 x %2)</source>
        <translation>最大尺寸 (%1 x %2)</translation>
    </message>
</context>
<context>
    <name>MapPictureBox</name>
    <message>
        <source>Save map picture</source>
        <translation>保存地图图片</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source> m</source>
        <translation> 米</translation>
    </message>
    <message>
        <source>&amp;Area</source>
        <translation>范围(&amp;A)</translation>
    </message>
    <message>
        <source>Size of a &amp;pixel</source>
        <translation>像素大小(&amp;P)</translation>
    </message>
    <message>
        <source>%1 m x %2 m of ground, %3 x %4 pixels. The map is loaded in this detail first.</source>
        <translation>地面 %1 米 x %2 米，%3 x %4 像素。先按此精细度加载地图。</translation>
    </message>
</context>
<context>
    <name>RoutePicturesBox</name>
    <message>
        <source> m</source>
        <translation> 米</translation>
    </message>
    <message>
        <source> px</source>
        <translation> 像素</translation>
    </message>
    <message>
        <source>Pictures along route</source>
        <translation>沿航线拍摄图片</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source>0 looks level along the route, -90 straight down</source>
        <translation>0 为沿航线水平方向，-90 为垂直向下</translation>
    </message>
    <message>
        <source>&amp;Distance between pictures</source>
        <translation>图片间距(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Pitch of the camera</source>
        <translation>相机俯仰角(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Field of view, from top to bottom</source>
        <translation>垂直视场角(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>宽度(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>高度(&amp;H)</translation>
    </message>
    <message>
        <source>Pictures: %1</source>
        <translation>图片数：%1</translation>
    </message>
    <message>
        <source>%1 pictures, which is the most; they are farther apart than asked</source>
        <translation>%1 张图片，已达上限；间距大于所设值</translation>
    </message>
</context>
<context>
    <name>OfflineBox</name>
    <message>
        <source>Ask a&amp;gain for missing tiles</source>
        <translation>重新请求缺失的瓦片(&amp;G)</translation>
    </message>
    <message>
        <source>Tiles that the service did not have when the file was fetched</source>
        <translation>下载该文件时服务没有的瓦片</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>&amp;Estimate size</source>
        <translation>估算大小(&amp;E)</translation>
    </message>
    <message>
        <source>Save area for use without network</source>
        <translation>保存区域以便无网络使用</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>{z} level, {x} column, {y} row from the north, {-y} row from the south, {s} one of the hosts a, b, c. The service has to be in Web Mercator.</source>
        <translation>{z} 级别，{x} 列，{y} 自北向南的行，{-y} 自南向北的行，{s} 主机 a、b、c 之一。服务必须采用 Web 墨卡托投影。</translation>
    </message>
    <message>
        <source>Whose pictures they are; kept in the file</source>
        <translation>图片的版权说明；保存在文件中</translation>
    </message>
    <message>
        <source>Ser&amp;vice</source>
        <translation>服务(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Address</source>
        <translation>地址(&amp;A)</translation>
    </message>
    <message>
        <source>A&amp;ttribution</source>
        <translation>版权说明(&amp;T)</translation>
    </message>
    <message>
        <source>Margin around the block</source>
        <translation>测区周围的边距</translation>
    </message>
    <message>
        <source>west,south,east,north in degrees</source>
        <translation>西,南,东,北（度）</translation>
    </message>
    <message>
        <source>What the &amp;map shows</source>
        <translation>地图当前显示的范围(&amp;M)</translation>
    </message>
    <message>
        <source>The &amp;block in hand, and around it</source>
        <translation>当前测区及其周围(&amp;B)</translation>
    </message>
    <message>
        <source>&amp;Rectangle</source>
        <translation>矩形(&amp;R)</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>区域</translation>
    </message>
    <message>
        <source>Coarsest level</source>
        <translation>最粗级别</translation>
    </message>
    <message>
        <source>Finest level</source>
        <translation>最细级别</translation>
    </message>
    <message>
        <source>to</source>
        <translation>至</translation>
    </message>
    <message>
        <source>&amp;Levels</source>
        <translation>级别(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>选择(&amp;C)...</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Whether tiles may be saved is in the terms of use of the service; many forbid it.</source>
        <translation>是否允许保存瓦片，请查看服务的使用条款；许多服务禁止保存。</translation>
    </message>
    <message>
        <source>Another one</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>area</source>
        <translation>区域</translation>
    </message>
    <message>
        <source>Tiles (*.mbtiles)</source>
        <translation>瓦片 (*.mbtiles)</translation>
    </message>
    <message>
        <source>The map shows no ground now.</source>
        <translation>地图当前未显示地面。</translation>
    </message>
    <message>
        <source>No block is in hand: click one on the map or in the list.</source>
        <translation>没有当前测区：请在地图或列表中单击一个。</translation>
    </message>
    <message>
        <source>A rectangle is west,south,east,north in degrees, as in -105.3,37.2,-104.8,37.6.</source>
        <translation>矩形为以度表示的 西,南,东,北，例如 -105.3,37.2,-104.8,37.6。</translation>
    </message>
    <message>
        <source>The file needs a folder.</source>
        <translation>文件需要指定文件夹。</translation>
    </message>
    <message>
        <source>There is no folder &quot;%1&quot;.</source>
        <translation>没有文件夹“%1”。</translation>
    </message>
    <message>
        <source>a pixel of the finest is %1</source>
        <translation>最细级别的像素为 %1</translation>
    </message>
    <message>
        <source>%1 tiles</source>
        <translation>%1 个瓦片</translation>
    </message>
    <message>
        <source>, about %1</source>
        <translation>，约 %1</translation>
    </message>
    <message>
        <source>; %1 are free</source>
        <translation>；可用空间 %1</translation>
    </message>
    <message>
        <source>The file has %1 tiles already; it is gone on with.</source>
        <translation>文件中已有 %1 个瓦片；将继续下载。</translation>
    </message>
    <message>
        <source>A few tiles are asked for...</source>
        <translation>正在请求少量瓦片...</translation>
    </message>
    <message>
        <source>These are %1 tiles, which take long and burden the service. A level less has a quarter of them. Do you want to fetch them all?</source>
        <translation>共 %1 个瓦片，下载时间长并给服务带来负担。少一级约为其四分之一。是否全部下载？</translation>
    </message>
    <message>
        <source>Fetch</source>
        <translation>下载</translation>
    </message>
    <message>
        <source>Looking at what is there...</source>
        <translation>正在查看已有内容...</translation>
    </message>
    <message>
        <source>Saving of %1 goes on; the same menu entry shows how far it is.</source>
        <translation>%1 继续保存；同一菜单项可查看进度。</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Level %1: %2 of %3 tiles, %4 fetched</source>
        <translation>级别 %1：%3 个瓦片中的 %2 个，已下载 %4</translation>
    </message>
    <message>
        <source>%1 could not be had: %2</source>
        <translation>%1 个无法获取：%2</translation>
    </message>
    <message>
        <source>Waiting for %1 s: %2</source>
        <translation>等待 %1 秒：%2</translation>
    </message>
    <message>
        <source>%1: %2 of %3 tiles are saved.</source>
        <translation>%1：已保存 %3 个瓦片中的 %2 个。</translation>
    </message>
    <message>
        <source>The service has no more: %1 are missing.</source>
        <translation>服务没有更多瓦片：缺失 %1 个。</translation>
    </message>
</context>
<context>
    <name>OfflineAreas</name>
    <message>
        <source>Save area for use without &amp;network...</source>
        <translation>保存区域以便无网络使用(&amp;N)...</translation>
    </message>
    <message>
        <source>Areas saved for use without network are not there: %1. The menu View finds or forgets them.</source>
        <translation>为无网络使用保存的区域不存在：%1。可在“视图”菜单中查找或不再记住它们。</translation>
    </message>
    <message>
        <source>Saved areas that are not &amp;there</source>
        <translation>不存在的已保存区域(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Find file…</source>
        <translation>查找文件(&amp;F)…</translation>
    </message>
    <message>
        <source>Where is %1 now?</source>
        <translation>%1 现在在哪里？</translation>
    </message>
    <message>
        <source>Tiles (*.mbtiles)</source>
        <translation>瓦片 (*.mbtiles)</translation>
    </message>
    <message>
        <source>F&amp;orget</source>
        <translation>不再记住(&amp;O)</translation>
    </message>
    <message>
        <source>%1 is shown on the map, with or without a network.</source>
        <translation>%1 已显示在地图上，有无网络均可。</translation>
    </message>
</context>
</TS>

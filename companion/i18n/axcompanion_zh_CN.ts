<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AxCoordinateSystem</name>
    <message>
        <source>longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>easting</source>
        <translation>东坐标</translation>
    </message>
    <message>
        <source>northing</source>
        <translation>北坐标</translation>
    </message>
    <message>
        <source>outside the area of %1</source>
        <translation>在 %1 的适用范围之外</translation>
    </message>
    <message>
        <source>%1, its datum shift is not known</source>
        <translation>%1，基准面转换未知</translation>
    </message>
    <message>
        <source>This can be coordinates of %1 or degrees: write degrees with N, S, E, W, or with °.</source>
        <translation>这可能是 %1 的坐标，也可能是度：度请带 N、S、E、W 或 °。</translation>
    </message>
    <message>
        <source>%1, %2 is outside the area of %3.</source>
        <translation>%1，%2 在 %3 的适用范围之外。</translation>
    </message>
    <message>
        <source>%1 to %2, %3 to %4</source>
        <translation>%1 至 %2，%3 至 %4</translation>
    </message>
    <message>
        <source>Degrees have the latitude first.</source>
        <translation>以度输入时先写纬度。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a system of heights, not of places.</source>
        <translation>“%1”是高程系统，不是平面位置系统。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is geocentric: its x, y, z are no easting and northing and no degrees.</source>
        <translation>“%1”是地心坐标系：其 x、y、z 既不是东北坐标也不是度。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a local system: where it lies on the earth is not known.</source>
        <translation>“%1”是局部坐标系：它在地球上的位置未知。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no system of places on the earth.</source>
        <translation>“%1”不是地球上的位置系统。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no coordinate system that PROJ knows.</source>
        <translation>PROJ 不认识坐标系“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no coordinate system, but something else that PROJ knows.</source>
        <translation>“%1”不是坐标系，而是 PROJ 的其他对象。</translation>
    </message>
    <message>
        <source>No way is known from WGS 84 to &quot;%1&quot;.</source>
        <translation>没有从 WGS 84 到“%1”的已知转换。</translation>
    </message>
</context>
<context>
    <name>AxCoordinateText</name>
    <message>
        <source>&quot;%1&quot; is not understood.</source>
        <translation>无法理解“%1”。</translation>
    </message>
    <message>
        <source>Only one of the two has N, S, E or W.</source>
        <translation>两个坐标中只有一个带有 N、S、E 或 W。</translation>
    </message>
    <message>
        <source>N, S, E or W has to stand once with each, both before or both behind.</source>
        <translation>每个坐标须带一个 N、S、E 或 W，且都在前或都在后。</translation>
    </message>
    <message>
        <source>One comma or semicolon stands between the two, not %1.</source>
        <translation>两个坐标之间应有一个逗号或分号，而不是 %1 个。</translation>
    </message>
    <message>
        <source>The longitude is missing.</source>
        <translation>缺少经度。</translation>
    </message>
    <message>
        <source>It is not clear where the latitude ends: put a comma between.</source>
        <translation>无法判断纬度在何处结束：请在两者之间加逗号。</translation>
    </message>
    <message>
        <source>latitude</source>
        <translation>纬度</translation>
    </message>
    <message>
        <source>longitude</source>
        <translation>经度</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no angle.</source>
        <translation>“%1”不是角度。</translation>
    </message>
    <message>
        <source>Only the last of degrees, minutes and seconds may have decimals: %1.</source>
        <translation>度、分、秒中只有最后一项可以有小数：%1。</translation>
    </message>
    <message>
        <source>Minutes and seconds are from 0 to below 60, not %1.</source>
        <translation>分和秒须从 0 到小于 60，不能是 %1。</translation>
    </message>
    <message>
        <source>The latitude is missing.</source>
        <translation>缺少纬度。</translation>
    </message>
    <message>
        <source>The %1 has a sign and %2; one of them is enough.</source>
        <translation>%1既有正负号又有 %2，只需其一。</translation>
    </message>
    <message>
        <source>The %1 %2° is beyond %3°.</source>
        <translation>%1 %2° 超出 %3°。</translation>
    </message>
    <message>
        <source>These are two latitudes, and no longitude.</source>
        <translation>这是两个纬度，没有经度。</translation>
    </message>
    <message>
        <source>These are two longitudes, and no latitude.</source>
        <translation>这是两个经度，没有纬度。</translation>
    </message>
    <message>
        <source>These look like metres: put their zone first, as 13N 500000 4140000.</source>
        <translation>这像是以米为单位的坐标：请先写带号，如 13N 500000 4140000。</translation>
    </message>
    <message>
        <source>The latitude comes first, unless letters tell which is which.</source>
        <translation>纬度在前，除非用字母标明。</translation>
    </message>
    <message>
        <source>The comma can stand for decimals or between the two: write decimals with a point, or a semicolon between.</source>
        <translation>逗号可能是小数点，也可能是分隔符：小数请用点，或用分号分隔。</translation>
    </message>
    <message>
        <source>Easting and northing are missing after the zone %1.</source>
        <translation>带号 %1 之后缺少东坐标和北坐标。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an easting and a northing in metres, as 500000 4140000.</source>
        <translation>“%1”不是以米为单位的东坐标和北坐标，如 500000 4140000。</translation>
    </message>
    <message>
        <source>The northing is missing.</source>
        <translation>缺少北坐标。</translation>
    </message>
    <message>
        <source>The easting %1 m is not between %2 and %3 km.</source>
        <translation>东坐标 %1 米不在 %2 至 %3 公里之间。</translation>
    </message>
    <message>
        <source>The northing %1 m is not on the northern hemisphere, up to 84°.</source>
        <translation>北坐标 %1 米不在北半球 84° 以内。</translation>
    </message>
    <message>
        <source>The northing %1 m is not on the southern hemisphere, up to 80°.</source>
        <translation>北坐标 %1 米不在南半球 80° 以内。</translation>
    </message>
    <message>
        <source>There is no UTM zone %1, only 1 to 60.</source>
        <translation>没有 UTM 带 %1，只有 1 至 60。</translation>
    </message>
    <message>
        <source>%1 is neither N nor S nor a latitude band of UTM.</source>
        <translation>%1 既不是 N 或 S，也不是 UTM 纬度带。</translation>
    </message>
    <message>
        <source>Band %1 reaches from %2° to %3°, and the northing belongs to %4°.</source>
        <translation>纬度带 %1 从 %2° 到 %3°，而北坐标对应 %4°。</translation>
    </message>
    <message>
        <source>S can be the southern hemisphere (%1°) or band S (%2°): write &quot;%3 south&quot; or &quot;%3N&quot;.</source>
        <translation>S 可能指南半球（%1°）或纬度带 S（%2°）：请写“%3 south”或“%3N”。</translation>
    </message>
    <message>
        <source>%1 m, %2 m is beyond the polar grid around 2000000 2000000.</source>
        <translation>%1 米，%2 米超出以 2000000 2000000 为中心的极区格网。</translation>
    </message>
    <message>
        <source>The digits are missing: %1 %2 alone is a square of 100 km.</source>
        <translation>缺少数字：仅 %1 %2 是 100 公里的方格。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be halved into as many digits of easting and of northing.</source>
        <translation>“%1”不能分成位数相同的东坐标和北坐标。</translation>
    </message>
    <message>
        <source>The easting %1 and the northing %2 have not as many digits.</source>
        <translation>东坐标 %1 与北坐标 %2 的位数不同。</translation>
    </message>
    <message>
        <source>More than %1 digits each.</source>
        <translation>每个坐标超过 %1 位。</translation>
    </message>
    <message>
        <source>There is no square %2 in the MGRS zone %1.</source>
        <translation>MGRS 带 %1 中没有方格 %2。</translation>
    </message>
    <message>
        <source>No coordinate is typed.</source>
        <translation>未输入坐标。</translation>
    </message>
    <message>
        <source>This is too long for a coordinate.</source>
        <translation>输入过长，不是坐标。</translation>
    </message>
</context>
<context>
    <name>AxExchange</name>
    <message>
        <source>The speed to fly and the distance between photos are not in the file.</source>
        <translation>文件不含飞行速度和拍照间距。</translation>
    </message>
    <message>
        <source>Which points begin or end a pass, and where the photos head, is not in the file.</source>
        <translation>文件不含各航带的起止点和照片的航向。</translation>
    </message>
    <message>
        <source>The format needs the altitude of each point, and that of %1 points is not known: they follow the terrain, or home's is left open.</source>
        <translation>该格式需要每个点的高程，而 %1 个点的高程未知：这些点随地形飞行，或起降点高程未给出。</translation>
    </message>
    <message>
        <source>The file does not say where home is, nor how high it lies.</source>
        <translation>文件未给出起降点的位置和高程。</translation>
    </message>
    <message>
        <source>Home is left open; in the file the first waypoint stands for it.</source>
        <translation>起降点未给出；文件中以第一个航点代替。</translation>
    </message>
    <message>
        <source>The landing pattern (%1) is not taken over; the mission has no landing by it.</source>
        <translation>着陆航线（%1）未被读入；该任务不含此着陆。</translation>
    </message>
    <message>
        <source>Heights are metres above the home point. Its altitude, %1 m, is written as the map has it; other programs take it for metres above the sea.</source>
        <translation>高度为相对起降点的米数。起降点高程（%1 米）按地图高程写入；其他程序会将其视为海拔高度。</translation>
    </message>
    <message>
        <source>Take-off and landing are not in the route; add them in the ground station.</source>
        <translation>航线不含起飞和降落，请在地面站中添加。</translation>
    </message>
    <message>
        <source>Where the camera looks is not in the file; set it on the aircraft.</source>
        <translation>文件不含相机朝向，请在飞机上设置。</translation>
    </message>
    <message>
        <source>The no-fly zones are not in the file, neither as a fence.</source>
        <translation>文件不含禁飞区，也未写成围栏。</translation>
    </message>
    <message>
        <source>%1 warnings of the route are not in the file.</source>
        <translation>文件不含航线的 %1 条警告。</translation>
    </message>
    <message>
        <source>the command or the frame is out of range</source>
        <translation>命令或坐标系编号超出范围</translation>
    </message>
    <message>
        <source>a value is infinite</source>
        <translation>有一个值为无穷大</translation>
    </message>
    <message>
        <source>the place is not on the globe</source>
        <translation>该位置不在地球上</translation>
    </message>
    <message>
        <source>the altitude is missing</source>
        <translation>缺少高度</translation>
    </message>
    <message>
        <source>The mission has no items.</source>
        <translation>任务中没有任何项目。</translation>
    </message>
    <message>
        <source>The mission has %1 items; with home no more than %2 are possible. Split the route.</source>
        <translation>任务有 %1 项，连同起降点最多 %2 项。请拆分航线。</translation>
    </message>
    <message>
        <source>Home is no place on the globe.</source>
        <translation>起降点不在地球上。</translation>
    </message>
    <message>
        <source>the item to jump to does not exist</source>
        <translation>跳转目标不存在</translation>
    </message>
    <message>
        <source>Item %1: %2.</source>
        <translation>第 %1 项：%2。</translation>
    </message>
    <message>
        <source>There is no route to write.</source>
        <translation>没有可写入的航线。</translation>
    </message>
    <message>
        <source>The route has no home point, and heights count from it. Set one first.</source>
        <translation>航线没有起降点，而高度以其为基准。请先设置起降点。</translation>
    </message>
    <message>
        <source>The altitude of %1 points is not known: they follow the terrain, or home&apos;s is left open.</source>
        <translation>%1 个点的高度未知：它们随地形飞行，或起降点高程未写明。</translation>
    </message>
    <message>
        <source>Altitudes are shown as the file states them; if another program made it, they count from the sea.</source>
        <translation>高度按文件原值显示；如果文件由其他程序生成，则为海拔高度。</translation>
    </message>
    <message>
        <source>The format has no place for the name &quot;%1&quot;.</source>
        <translation>该格式无法保存名称“%1”。</translation>
    </message>
    <message>
        <source>Only the survey of an area can be a survey item. Write plain mission items.</source>
        <translation>只有区域航测才能写成航测项目，请改写为普通任务项。</translation>
    </message>
    <message>
        <source>QGroundControl flies the route as written until the survey is edited there; then it computes its own, with one height and its own turns.</source>
        <translation>在 QGroundControl 中编辑该航测之前，按写入的航线飞行；编辑后它会重新计算，只用一个高度和它自己的转弯。</translation>
    </message>
    <message>
        <source>The holes of the area are not in the survey item.</source>
        <translation>航测项目不含区域中的孔洞。</translation>
    </message>
    <message>
        <source>The survey item states only the first of the three directions.</source>
        <translation>航测项目只写明三个方向中的第一个。</translation>
    </message>
    <message>
        <source>The camera &quot;%1&quot; is written by its measures, as a custom camera.</source>
        <translation>相机“%1”按其尺寸写为自定义相机。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no plan</source>
        <translation>“%1”不是航飞计划</translation>
    </message>
    <message>
        <source>Field %1: %2.</source>
        <translation>字段 %1：%2。</translation>
    </message>
    <message>
        <source>is no text</source>
        <translation>不是文本</translation>
    </message>
    <message>
        <source>is no number</source>
        <translation>不是数字</translation>
    </message>
    <message>
        <source>is neither true nor false</source>
        <translation>既不是 true 也不是 false</translation>
    </message>
    <message>
        <source>is no list</source>
        <translation>不是列表</translation>
    </message>
    <message>
        <source>is no object</source>
        <translation>不是对象</translation>
    </message>
    <message>
        <source>is missing</source>
        <translation>缺失</translation>
    </message>
    <message>
        <source>version %1 cannot be read</source>
        <translation>无法读取版本 %1</translation>
    </message>
    <message>
        <source>is no whole number</source>
        <translation>不是整数</translation>
    </message>
    <message>
        <source>%1 values instead of 3</source>
        <translation>有 %1 个值，应为 3 个</translation>
    </message>
    <message>
        <source>The plan does not say how high its home lies.</source>
        <translation>计划未写明起降点的高程。</translation>
    </message>
    <message>
        <source>items &quot;%1&quot; cannot be read</source>
        <translation>无法读取“%1”类项目</translation>
    </message>
    <message>
        <source>%1 values instead of 7</source>
        <translation>有 %1 个值，应为 7 个</translation>
    </message>
    <message>
        <source>no item has the number %1 to jump to</source>
        <translation>没有编号为 %1 的跳转目标</translation>
    </message>
    <message>
        <source>%1 fences of the plan are not taken over.</source>
        <translation>未采用计划中的 %1 个围栏。</translation>
    </message>
    <message>
        <source>%1 rally points of the plan are not taken over.</source>
        <translation>未采用计划中的 %1 个集结点。</translation>
    </message>
    <message>
        <source>Of a survey the items to fly are taken over, not the values it was computed from.</source>
        <translation>航测只采用要飞行的项目，不采用其计算参数。</translation>
    </message>
    <message>
        <source>Line %1: the file is no JSON or is cut off (%2).</source>
        <translation>第 %1 行：文件不是 JSON 或不完整（%2）。</translation>
    </message>
    <message>
        <source>The file is no plan.</source>
        <translation>该文件不是航飞计划。</translation>
    </message>
    <message>
        <source>A point of the route is no place on the globe.</source>
        <translation>航线中有一个点不在地球上。</translation>
    </message>
    <message>
        <source>Altitudes are written as the map has them; programs that read KML take them for metres above the sea.</source>
        <translation>高度按地图高程写入；读取 KML 的程序会将其视为海拔高度。</translation>
    </message>
    <message>
        <source>%1 columns instead of %2</source>
        <translation>有 %1 列，应为 %2 列</translation>
    </message>
    <message>
        <source>%1 is no whole number: &quot;%2&quot;</source>
        <translation>%1 不是整数：“%2”</translation>
    </message>
    <message>
        <source>%1 is no number: &quot;%2&quot;</source>
        <translation>%1 不是数字：“%2”</translation>
    </message>
    <message>
        <source>item %1 where item %2 should be</source>
        <translation>此处是第 %1 项，应为第 %2 项</translation>
    </message>
    <message>
        <source>The format cannot leave a value to the autopilot, such as the heading at a waypoint; it is written as 0.</source>
        <translation>该格式无法把某个值（如航点航向）留给自动驾驶仪决定，写为 0。</translation>
    </message>
    <message>
        <source>Line 1: the file does not begin with &quot;%1&quot;.</source>
        <translation>第 1 行：文件不以“%1”开头。</translation>
    </message>
    <message>
        <source>Line %1: %2.</source>
        <translation>第 %1 行：%2。</translation>
    </message>
</context>
<context>
    <name>AxGeoid</name>
    <message>
        <source>The height of the sea above the ellipsoid is not known: PROJ's grid %1 (package proj-data) is in none of %2.</source>
        <translation>海平面相对椭球面的高度未知：以下位置均没有 PROJ 格网 %1（软件包 proj-data）：%2。</translation>
    </message>
    <message>
        <source>The geoid grid %1 cannot be read: %2.</source>
        <translation>无法读取大地水准面格网 %1：%2。</translation>
    </message>
    <message>
        <source>The geoid grid %1 is damaged, or no grid of the whole earth.</source>
        <translation>大地水准面格网 %1 已损坏，或不是全球格网。</translation>
    </message>
</context>
<context>
    <name>AxMavlinkStation</name>
    <message>
        <source>Frames are refused although they are signed with the key: the times of their signatures are %1 s behind this computer&apos;s clock, and %2 s is the most. Set this computer&apos;s clock right and connect again, or wait until the aircraft knows the time.</source>
        <translation>数据帧的密钥正确，但仍被拒绝：签名时间比本机时钟落后 %1 秒，最多允许 %2 秒。请校准本机时钟后重新连接，或等待飞机获得时间。</translation>
    </message>
    <message>
        <source>Frames are refused although they are signed with the key: the times of their signatures are %1 s behind those of another aircraft, and %2 s is the most. Set the clock of that aircraft right and connect again.</source>
        <translation>数据帧的密钥正确，但仍被拒绝：签名时间比另一架飞机落后 %1 秒，最多允许 %2 秒。请校准那架飞机的时钟后重新连接。</translation>
    </message>
</context>
<context>
    <name>AxMissionTransfer</name>
    <message>
        <source>it gives no reason</source>
        <translation>未说明原因</translation>
    </message>
    <message>
        <source>it does not know what the altitudes count from</source>
        <translation>它不识别该高度基准</translation>
    </message>
    <message>
        <source>it does not know the command</source>
        <translation>它不识别该指令</translation>
    </message>
    <message>
        <source>the mission has more items than it can keep</source>
        <translation>任务项数超出其存储容量</translation>
    </message>
    <message>
        <source>a value is not valid</source>
        <translation>有数值无效</translation>
    </message>
    <message>
        <source>the first parameter is not valid</source>
        <translation>第一个参数无效</translation>
    </message>
    <message>
        <source>the second parameter is not valid</source>
        <translation>第二个参数无效</translation>
    </message>
    <message>
        <source>the third parameter is not valid</source>
        <translation>第三个参数无效</translation>
    </message>
    <message>
        <source>the fourth parameter is not valid</source>
        <translation>第四个参数无效</translation>
    </message>
    <message>
        <source>the latitude is not valid</source>
        <translation>纬度无效</translation>
    </message>
    <message>
        <source>the longitude is not valid</source>
        <translation>经度无效</translation>
    </message>
    <message>
        <source>the altitude is not valid</source>
        <translation>高度无效</translation>
    </message>
    <message>
        <source>an item came out of turn</source>
        <translation>任务项次序有误</translation>
    </message>
    <message>
        <source>it takes no missions from this station</source>
        <translation>它不接受本站的任务</translation>
    </message>
    <message>
        <source>it was cancelled there</source>
        <translation>对方已取消</translation>
    </message>
    <message>
        <source>The link was closed.</source>
        <translation>链路已关闭。</translation>
    </message>
    <message>
        <source>There is no link to the aircraft.</source>
        <translation>没有到飞机的链路。</translation>
    </message>
    <message>
        <source>The upload was cancelled.</source>
        <translation>上传已取消。</translation>
    </message>
    <message>
        <source>The download was cancelled.</source>
        <translation>下载已取消。</translation>
    </message>
    <message>
        <source>%1 What the aircraft carries now may be incomplete: do not fly it.</source>
        <translation>%1 飞机上的任务现在可能不完整，请勿执行。</translation>
    </message>
    <message>
        <source>The aircraft has stopped answering.</source>
        <translation>飞机已停止应答。</translation>
    </message>
    <message>
        <source>The link was lost.</source>
        <translation>链路已中断。</translation>
    </message>
    <message>
        <source>The aircraft refuses: %1.</source>
        <translation>飞机拒绝：%1。</translation>
    </message>
    <message>
        <source>The aircraft refuses at item %1: %2.</source>
        <translation>飞机在第 %1 项处拒绝：%2。</translation>
    </message>
    <message>
        <source>The aircraft asks for item %1 where item %2 should be.</source>
        <translation>飞机请求第 %1 项，而应为第 %2 项。</translation>
    </message>
    <message>
        <source>The aircraft asks for item %1 again and again.</source>
        <translation>飞机反复请求第 %1 项。</translation>
    </message>
    <message>
        <source>The mission on the aircraft has changed in the meantime.</source>
        <translation>飞机上的任务在此期间已改变。</translation>
    </message>
    <message>
        <source>The aircraft carries no mission.</source>
        <translation>飞机上没有任务。</translation>
    </message>
    <message>
        <source>The mission on the aircraft cannot be used. %1</source>
        <translation>飞机上的任务无法使用。%1</translation>
    </message>
</context>
<context>
    <name>AxPlanner</name>
    <message>
        <source>There is no list of cameras %1: routes are planned for a full-frame camera of 35 mm.</source>
        <translation>没有相机列表 %1：航线按 35 mm 全画幅相机规划。</translation>
    </message>
    <message>
        <source>%1: no camera has the &quot;name&quot; %2 and the &quot;type&quot; %3.</source>
        <translation>%1：没有“name”为 %2 且“type”为 %3 的相机。</translation>
    </message>
    <message>
        <source>%1: no camera has the &quot;type&quot; %2.</source>
        <translation>%1：没有“type”为 %2 的相机。</translation>
    </message>
    <message>
        <source>Camera %1: &quot;%2&quot; is missing or wrong.</source>
        <translation>相机 %1：“%2”缺失或错误。</translation>
    </message>
    <message>
        <source>The list of cameras is no JSON at byte %1: %2.</source>
        <translation>相机列表在第 %1 字节处不是 JSON：%2。</translation>
    </message>
    <message>
        <source>The list of cameras must be an array with a camera.</source>
        <translation>相机列表必须是至少含一个相机的数组。</translation>
    </message>
    <message>
        <source>No route for task &quot;%1&quot;: %2</source>
        <translation>任务“%1”没有航线：%2</translation>
    </message>
    <message>
        <source>The area has too few points.</source>
        <translation>区域的点太少。</translation>
    </message>
    <message>
        <source>A point of the area or of home is no place on the globe.</source>
        <translation>区域或起降点中有一个点不在地球上。</translation>
    </message>
    <message>
        <source>The camera&apos;s sensor has no width.</source>
        <translation>相机传感器没有宽度。</translation>
    </message>
    <message>
        <source>The camera&apos;s sensor has no height.</source>
        <translation>相机传感器没有高度。</translation>
    </message>
    <message>
        <source>The camera&apos;s focal length must be more than 0.</source>
        <translation>相机焦距必须大于 0。</translation>
    </message>
    <message>
        <source>The camera&apos;s picture has no width.</source>
        <translation>相机照片没有宽度。</translation>
    </message>
    <message>
        <source>The camera&apos;s picture has no height.</source>
        <translation>相机照片没有高度。</translation>
    </message>
    <message>
        <source>The camera&apos;s shortest interval must not be negative.</source>
        <translation>相机最短拍照间隔不能为负数。</translation>
    </message>
    <message>
        <source>The aircraft&apos;s speed must be more than 0.</source>
        <translation>飞机速度必须大于 0。</translation>
    </message>
    <message>
        <source>The radius of turns must not be negative.</source>
        <translation>转弯半径不能为负数。</translation>
    </message>
    <message>
        <source>The way before a pass must not be negative.</source>
        <translation>航线引入距离不能为负数。</translation>
    </message>
    <message>
        <source>The aircraft must be able to climb.</source>
        <translation>飞机必须能够爬升。</translation>
    </message>
    <message>
        <source>The aircraft must be able to descend.</source>
        <translation>飞机必须能够下降。</translation>
    </message>
    <message>
        <source>The time that a flight may take must be more than 0.</source>
        <translation>单次飞行时间必须大于 0。</translation>
    </message>
    <message>
        <source>The side overlap must be at least 0 and less than 100 %.</source>
        <translation>旁向重叠率必须不小于 0 且小于 100 %。</translation>
    </message>
    <message>
        <source>The forward overlap must be at least 0 and less than 100 %.</source>
        <translation>航向重叠率必须不小于 0 且小于 100 %。</translation>
    </message>
    <message>
        <source>The height must be more than 0.</source>
        <translation>高度必须大于 0。</translation>
    </message>
    <message>
        <source>The direction of the passes is no angle.</source>
        <translation>航线方向不是一个角度。</translation>
    </message>
    <message>
        <source>The height of the ground is no number.</source>
        <translation>地面高度不是一个数。</translation>
    </message>
    <message>
        <source>The clearance must not be negative.</source>
        <translation>安全高度不能为负数。</translation>
    </message>
    <message>
        <source>The wind is as fast as the aircraft.</source>
        <translation>风速不小于飞机速度。</translation>
    </message>
    <message>
        <source>The direction of the wind is no angle.</source>
        <translation>风向不是一个角度。</translation>
    </message>
    <message>
        <source>The number of passes must not be negative.</source>
        <translation>航线条数不能为负数。</translation>
    </message>
    <message>
        <source>There are the entry points 0 to 3.</source>
        <translation>入口点的编号为 0 到 3。</translation>
    </message>
    <message>
        <source>The height of home is no number.</source>
        <translation>起降点高度不是一个数。</translation>
    </message>
    <message>
        <source>The distance from no-fly zones must be more than 0.</source>
        <translation>与禁飞区的距离必须大于 0。</translation>
    </message>
    <message>
        <source>The strip has no width.</source>
        <translation>条带没有宽度。</translation>
    </message>
    <message>
        <source>The radius of the circle must be more than 0.</source>
        <translation>环绕半径必须大于 0。</translation>
    </message>
    <message>
        <source>Without heights of the ground no route can follow it.</source>
        <translation>没有地面高程，航线无法仿地飞行。</translation>
    </message>
    <message>
        <source>There is nothing to fly over.</source>
        <translation>没有可飞行的区域。</translation>
    </message>
    <message>
        <source>The strip has too many passes.</source>
        <translation>条带的航线条数太多。</translation>
    </message>
    <message>
        <source>The route has too many photos.</source>
        <translation>航线的照片太多。</translation>
    </message>
    <message>
        <source>The height of the ground is not known at %1, %2.</source>
        <translation>%1, %2 处的地面高程未知。</translation>
    </message>
    <message>
        <source>The route is too long to follow the ground.</source>
        <translation>航线太长，无法仿地飞行。</translation>
    </message>
</context>
<context>
    <name>AxProjectFile</name>
    <message>
        <source>it is no route</source>
        <translation>不是航线</translation>
    </message>
    <message>
        <source>it is no number</source>
        <translation>不是数值</translation>
    </message>
    <message>
        <source>%1 is not from %2 to %3</source>
        <translation>%1 不在 %2 到 %3 之间</translation>
    </message>
    <message>
        <source>%1 is no whole number</source>
        <translation>%1 不是整数</translation>
    </message>
    <message>
        <source>it is no text</source>
        <translation>不是文本</translation>
    </message>
    <message>
        <source>it is longer than %1 characters</source>
        <translation>超过 %1 个字符</translation>
    </message>
    <message>
        <source>it is empty</source>
        <translation>为空</translation>
    </message>
    <message>
        <source>it is no list</source>
        <translation>不是列表</translation>
    </message>
    <message>
        <source>it has more than %1 entries</source>
        <translation>超过 %1 项</translation>
    </message>
    <message>
        <source>it is no place</source>
        <translation>不是位置</translation>
    </message>
    <message>
        <source>it is not on the globe</source>
        <translation>不在地球上</translation>
    </message>
    <message>
        <source>vertex %1: %2</source>
        <translation>第 %1 个顶点：%2</translation>
    </message>
    <message>
        <source>it has no longitude</source>
        <translation>没有对应的经度</translation>
    </message>
    <message>
        <source>this value is not possible</source>
        <translation>该值不可能</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>没有这个文件。</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>这不是文件。</translation>
    </message>
    <message>
        <source>Reading failed: %1.</source>
        <translation>读取失败：%1。</translation>
    </message>
    <message>
        <source>This is no project.</source>
        <translation>这不是项目文件。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>It was written by a later version of the program.</source>
        <translation>它由更新版本的程序写成。</translation>
    </message>
    <message>
        <source>The file is damaged: %1.</source>
        <translation>文件已损坏：%1。</translation>
    </message>
    <message>
        <source>its version or its size cannot be</source>
        <translation>版本或大小不合理</translation>
    </message>
    <message>
        <source>It is not overwritten.</source>
        <translation>不会覆盖它。</translation>
    </message>
    <message>
        <source>Nothing is written, because it could not be read again: %1.</source>
        <translation>未写入任何内容，因为将无法再次读取：%1。</translation>
    </message>
    <message>
        <source>Writing failed: %1.</source>
        <translation>写入失败：%1。</translation>
    </message>
    <message>
        <source>%1 on %2, process %3</source>
        <translation>%2 上的 %1，进程 %3</translation>
    </message>
    <message>
        <source>a program that is not known</source>
        <translation>未知的程序</translation>
    </message>
    <message>
        <source>there are more than %1 rows</source>
        <translation>超过 %1 行</translation>
    </message>
    <message>
        <source>field %1: %2</source>
        <translation>字段 %1：%2</translation>
    </message>
    <message>
        <source>block &quot;%1&quot;, %2</source>
        <translation>测区“%1”，%2</translation>
    </message>
    <message>
        <source>task &quot;%1&quot;, %2</source>
        <translation>任务“%1”，%2</translation>
    </message>
    <message>
        <source>mark point &quot;%1&quot;, %2</source>
        <translation>标记点“%1”，%2</translation>
    </message>
    <message>
        <source>field id: another one has it, too</source>
        <translation>字段 id：与另一个重复</translation>
    </message>
    <message>
        <source>field block: there is no such block</source>
        <translation>字段 block：没有这个测区</translation>
    </message>
    <message>
        <source>view, %1</source>
        <translation>视图，%1</translation>
    </message>
    <message>
        <source>tables are missing</source>
        <translation>缺少数据表</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be written.</source>
        <translation>无法写入文件夹“%1”。</translation>
    </message>
    <message>
        <source>the folder for temporary files, &quot;%1&quot;: %2</source>
        <translation>临时文件夹“%1”：%2</translation>
    </message>
    <message>
        <source>%1, since %2</source>
        <translation>%1，自 %2 起</translation>
    </message>
</context>
<context>
    <name>AxRecord</name>
    <message>
        <source>time (as &quot;t_ms&quot;)</source>
        <translation>时间（如“t_ms”）</translation>
    </message>
    <message>
        <source>latitude (as &quot;lat&quot;)</source>
        <translation>纬度（如“lat”）</translation>
    </message>
    <message>
        <source>longitude (as &quot;lon&quot;)</source>
        <translation>经度（如“lon”）</translation>
    </message>
    <message>
        <source>altitude (as &quot;alt_amsl&quot; or &quot;alt_ellipsoid&quot;)</source>
        <translation>高程（如“alt_amsl”或“alt_ellipsoid”）</translation>
    </message>
    <message>
        <source>The line of column names lacks: %1.</source>
        <translation>列名行缺少：%1。</translation>
    </message>
    <message>
        <source>Columns that say neither degrees nor radians (as &quot;roll_deg&quot;) are left out: %1.</source>
        <translation>以下列未说明是度还是弧度（应如“roll_deg”），未被读入：%1。</translation>
    </message>
    <message>
        <source>The column &quot;%1&quot; is taken for metres above the sea.</source>
        <translation>“%1”列按海拔米数读入。</translation>
    </message>
    <message>
        <source>Line %1: %2.</source>
        <translation>第 %1 行：%2。</translation>
    </message>
    <message>
        <source>Times without a time zone are taken for UTC; some programs write those of the computer&apos;s own zone.</source>
        <translation>没有时区的时间按 UTC 处理；有些程序写的是计算机本地时区的时间。</translation>
    </message>
    <message>
        <source>%1 has a decimal comma: &quot;%2&quot;; write a point</source>
        <translation>%1 用逗号作小数点：“%2”；请改用句点</translation>
    </message>
    <message>
        <source>%1 is no number: &quot;%2&quot;</source>
        <translation>%1 不是数字：“%2”</translation>
    </message>
    <message>
        <source>the unit of the time %1 is not known; name the column &quot;t_ms&quot; or &quot;t_s&quot;</source>
        <translation>时间 %1 的单位未知；请将该列命名为“t_ms”或“t_s”</translation>
    </message>
    <message>
        <source>%1 columns instead of %2; are there decimal commas?</source>
        <translation>有 %1 列，而非 %2 列；是否用逗号作了小数点？</translation>
    </message>
    <message>
        <source>%1 columns instead of %2</source>
        <translation>有 %1 列，而非 %2 列</translation>
    </message>
    <message>
        <source>The clock starts anew in the file: it has %1 flights.</source>
        <translation>文件中的时钟重新计时：共有 %1 次飞行。</translation>
    </message>
    <message>
        <source>No line has a time, a place on the globe and an altitude.</source>
        <translation>没有一行同时含有时间、地球上的位置和高程。</translation>
    </message>
    <message>
        <source>%1 lines without a time, a place on the globe or an altitude are left out.</source>
        <translation>%1 行缺少时间、地球上的位置或高程，未被读入。</translation>
    </message>
    <message>
        <source>The last line is cut and left out.</source>
        <translation>最后一行不完整，未被读入。</translation>
    </message>
    <message>
        <source>Heights above the sea and above the ellipsoid are taken for the same: %1</source>
        <translation>海拔高度与椭球高被视为相同：%1</translation>
    </message>
    <message>
        <source>Line %1: this is no table of text.</source>
        <translation>第 %1 行：这不是文本表格。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件是空的。</translation>
    </message>
    <message>
        <source>The flight has no positions.</source>
        <translation>该次飞行没有位置。</translation>
    </message>
    <message>
        <source>%1: cannot be read: %2</source>
        <translation>%1：无法读取：%2</translation>
    </message>
    <message>
        <source>The file was not read to its end: %1</source>
        <translation>文件未能读完：%1</translation>
    </message>
    <message>
        <source>There are no photos with a place.</source>
        <translation>没有带位置的照片。</translation>
    </message>
    <message>
        <source>%1 photos without a place are left out.</source>
        <translation>%1 张没有位置的照片未写入。</translation>
    </message>
    <message>
        <source>Photos whose date is not known have no time in the file.</source>
        <translation>日期未知的照片在文件中没有时间。</translation>
    </message>
    <message>
        <source>The file ends in the middle of a record; all before it is there.</source>
        <translation>文件在一条记录的中间结束；此前的内容完整。</translation>
    </message>
    <message>
        <source>%1 damaged places of %2 bytes together are left out.</source>
        <translation>跳过了 %1 处损坏，共 %2 字节。</translation>
    </message>
    <message>
        <source>The clock of the recording was set %1 times; times go on from what they were before.</source>
        <translation>记录时的时钟被调整过 %1 次；时间从调整前接续。</translation>
    </message>
    <message>
        <source>%1 frames are left out: they need another signing key.</source>
        <translation>%1 个帧未被读入：它们需要另一个签名密钥。</translation>
    </message>
    <message>
        <source>This is no .tlog: it begins with no MAVLink frame behind a time.</source>
        <translation>这不是 .tlog 文件：开头没有带时间的 MAVLink 帧。</translation>
    </message>
    <message>
        <source>The file holds no flight that this signing key opens.</source>
        <translation>文件中没有能用此签名密钥读取的飞行。</translation>
    </message>
    <message>
        <source>The file holds no flight: no aircraft tells where it is.</source>
        <translation>文件中没有飞行：没有飞机给出位置。</translation>
    </message>
    <message>
        <source>A signing key has 32 bytes.</source>
        <translation>签名密钥长 32 字节。</translation>
    </message>
</context>
<context>
    <name>AxSealedFile</name>
    <message>
        <source>The key is empty.</source>
        <translation>密钥为空。</translation>
    </message>
    <message>
        <source>The cipher library could not be started.</source>
        <translation>无法启动加密库。</translation>
    </message>
    <message>
        <source>Writing failed: %1.</source>
        <translation>写入失败：%1。</translation>
    </message>
    <message>
        <source>Writing failed: the disk is full.</source>
        <translation>写入失败：磁盘已满。</translation>
    </message>
    <message>
        <source>Reading failed: %1.</source>
        <translation>读取失败：%1。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>没有此文件。</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>这不是文件。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>The file is too large to be a zone file.</source>
        <translation>文件太大，不可能是禁飞区文件。</translation>
    </message>
    <message>
        <source>This is a folder.</source>
        <translation>这是文件夹。</translation>
    </message>
    <message>
        <source>This is not a sealed zone file.</source>
        <translation>这不是加密的禁飞区文件。</translation>
    </message>
    <message>
        <source>The file is cut short.</source>
        <translation>文件不完整。</translation>
    </message>
    <message>
        <source>The file is damaged.</source>
        <translation>文件已损坏。</translation>
    </message>
    <message>
        <source>The file is sealed with another key, or it is damaged.</source>
        <translation>文件用其他密钥加密，或已损坏。</translation>
    </message>
    <message>
        <source>The file is damaged or cut short.</source>
        <translation>文件已损坏或不完整。</translation>
    </message>
    <message>
        <source>Something was appended to the file.</source>
        <translation>文件末尾被追加了内容。</translation>
    </message>
</context>
<context>
    <name>AxSimulator</name>
    <message>
        <source>The ground is not known: heights above it are taken for heights above home.</source>
        <translation>地面高程未知：相对地面的高度按相对起飞点的高度处理。</translation>
    </message>
    <message>
        <source>A new mission: flown from its beginning.</source>
        <translation>收到新任务：从头开始飞行。</translation>
    </message>
    <message>
        <source>Armed.</source>
        <translation>已解锁。</translation>
    </message>
    <message>
        <source>Disarmed.</source>
        <translation>已上锁。</translation>
    </message>
    <message>
        <source>Item %1 lacks a number and is passed over.</source>
        <translation>第 %1 项缺少数值，已跳过。</translation>
    </message>
    <message>
        <source>Item %1: the command %2 is passed over.</source>
        <translation>第 %1 项：命令 %2 已跳过。</translation>
    </message>
    <message>
        <source>Landed and disarmed.</source>
        <translation>已着陆并上锁。</translation>
    </message>
    <message>
        <source>Not armed: no position yet.</source>
        <translation>未解锁：尚无位置。</translation>
    </message>
    <message>
        <source>Not armed: the battery is low.</source>
        <translation>未解锁：电量低。</translation>
    </message>
    <message>
        <source>Not disarmed: the aircraft is in the air.</source>
        <translation>未上锁：飞机在空中。</translation>
    </message>
    <message>
        <source>Returning home.</source>
        <translation>正在返航。</translation>
    </message>
    <message>
        <source>Simulator</source>
        <translation>模拟器</translation>
    </message>
    <message>
        <source>Taking off.</source>
        <translation>正在起飞。</translation>
    </message>
    <message>
        <source>The aircraft has hit the ground.</source>
        <translation>飞机已撞地。</translation>
    </message>
    <message>
        <source>The aircraft still rolls.</source>
        <translation>飞机仍在滑行。</translation>
    </message>
    <message>
        <source>The battery is empty: landing here.</source>
        <translation>电量耗尽：就地降落。</translation>
    </message>
    <message>
        <source>The battery is low.</source>
        <translation>电量低。</translation>
    </message>
    <message>
        <source>The mission has no place to start from.</source>
        <translation>任务没有可起飞的位置。</translation>
    </message>
    <message>
        <source>The mission is flown.</source>
        <translation>任务已完成。</translation>
    </message>
    <message>
        <source>The mission jumps without flying anywhere.</source>
        <translation>任务只有跳转，没有飞行。</translation>
    </message>
    <message>
        <source>Waypoint %1 was missed by %2 m.</source>
        <translation>航点 %1 偏离 %2 米，未能到达。</translation>
    </message>
</context>
<context>
    <name>AxTelemetryLink</name>
    <message>
        <source>there is no such port</source>
        <translation>没有该端口</translation>
    </message>
    <message>
        <source>another program uses the port, or this user may not</source>
        <translation>端口被其他程序占用，或当前用户无权使用</translation>
    </message>
    <message>
        <source>the port was unplugged</source>
        <translation>端口已被拔出</translation>
    </message>
    <message>
        <source>the peer has closed the connection</source>
        <translation>对方已关闭连接</translation>
    </message>
    <message>
        <source>the peer has fallen silent</source>
        <translation>对方已无响应</translation>
    </message>
    <message>
        <source>nobody listens there</source>
        <translation>该处无人监听</translation>
    </message>
    <message>
        <source>a host and a port are needed</source>
        <translation>需要主机和端口</translation>
    </message>
    <message>
        <source>another program uses the port</source>
        <translation>端口被其他程序占用</translation>
    </message>
    <message>
        <source>there is no computer named &quot;%1&quot;</source>
        <translation>没有名为“%1”的计算机</translation>
    </message>
</context>
<context>
    <name>AxTlogRecorder</name>
    <message>
        <source>The flight is not recorded: %1: %2</source>
        <translation>飞行未被记录：%1：%2</translation>
    </message>
    <message>
        <source>The record ends here: %1: %2</source>
        <translation>记录到此为止：%1：%2</translation>
    </message>
</context>
<context>
    <name>AxUnits</name>
    <message>
        <source>%1 m³</source>
        <translation>%1 立方米</translation>
    </message>
    <message>
        <source>%1 yd³</source>
        <translation>%1 立方码</translation>
    </message>
    <message>
        <source>%1 ft</source>
        <translation>%1 英尺</translation>
    </message>
    <message>
        <source>%1 mi</source>
        <translation>%1 英里</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 米</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 千米</translation>
    </message>
    <message>
        <source>%1 ft²</source>
        <translation>%1 平方英尺</translation>
    </message>
    <message>
        <source>%1 ac</source>
        <translation>%1 英亩</translation>
    </message>
    <message>
        <source>%1 mi²</source>
        <translation>%1 平方英里</translation>
    </message>
    <message>
        <source>%1 mu (%2 ha)</source>
        <translation>%1 亩（%2 公顷）</translation>
    </message>
    <message>
        <source>%1 m²</source>
        <translation>%1 平方米</translation>
    </message>
    <message>
        <source>%1 km²</source>
        <translation>%1 平方千米</translation>
    </message>
    <message>
        <source>m</source>
        <translation>米</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>英尺</translation>
    </message>
    <message>
        <source>km</source>
        <translation>千米</translation>
    </message>
    <message>
        <source>mi</source>
        <translation>英里</translation>
    </message>
    <message>
        <source>ac</source>
        <translation>英亩</translation>
    </message>
    <message>
        <source>mu</source>
        <translation>亩</translation>
    </message>
    <message>
        <source>km^2</source>
        <translation>km^2</translation>
    </message>
</context>
<context>
    <name>AxVehicle</name>
    <message>
        <source>No position for 3 s: the one that is shown is old.</source>
        <translation>已 3 秒没有位置：显示的是旧位置。</translation>
    </message>
    <message>
        <source>The aircraft does not say that it is disarmed.</source>
        <translation>飞行器没有报告已上锁。</translation>
    </message>
    <message>
        <source>The aircraft refuses for now.</source>
        <translation>飞机暂时拒绝。</translation>
    </message>
    <message>
        <source>The aircraft refuses.</source>
        <translation>飞机拒绝。</translation>
    </message>
    <message>
        <source>The aircraft does not know the command.</source>
        <translation>飞机不识别该指令。</translation>
    </message>
    <message>
        <source>The aircraft has tried and failed.</source>
        <translation>飞机已尝试，但失败。</translation>
    </message>
    <message>
        <source>The command was cancelled.</source>
        <translation>指令已取消。</translation>
    </message>
    <message>
        <source>The aircraft answers with the number %1.</source>
        <translation>飞机以编号 %1 应答。</translation>
    </message>
    <message>
        <source>The link was closed.</source>
        <translation>链路已关闭。</translation>
    </message>
    <message>
        <source>The link is closed.</source>
        <translation>链路已关闭。</translation>
    </message>
    <message>
        <source>The aircraft does not answer.</source>
        <translation>飞机没有应答。</translation>
    </message>
    <message>
        <source>Another command was more urgent.</source>
        <translation>另一条命令更紧急。</translation>
    </message>
    <message>
        <source>Aircraft %1</source>
        <translation>飞机 %1</translation>
    </message>
    <message>
        <source>Aircraft %1 (%2)</source>
        <translation>飞机 %1（%2）</translation>
    </message>
    <message>
        <source>Altitudes above the sea stand for those above the ellipsoid: %1</source>
        <translation>以海拔高代替椭球高：%1</translation>
    </message>
    <message>
        <source>Stabilize</source>
        <translation>自稳</translation>
    </message>
    <message>
        <source>Acro</source>
        <translation>特技</translation>
    </message>
    <message>
        <source>Altitude hold</source>
        <translation>定高</translation>
    </message>
    <message>
        <source>Mission</source>
        <translation>任务</translation>
    </message>
    <message>
        <source>Guided</source>
        <translation>引导</translation>
    </message>
    <message>
        <source>Loiter</source>
        <translation>悬停盘旋</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>返航</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>绕圈</translation>
    </message>
    <message>
        <source>Land</source>
        <translation>降落</translation>
    </message>
    <message>
        <source>Drift</source>
        <translation>漂移</translation>
    </message>
    <message>
        <source>Sport</source>
        <translation>运动</translation>
    </message>
    <message>
        <source>Flip</source>
        <translation>翻滚</translation>
    </message>
    <message>
        <source>Autotune</source>
        <translation>自动调参</translation>
    </message>
    <message>
        <source>Position hold</source>
        <translation>定点</translation>
    </message>
    <message>
        <source>Brake</source>
        <translation>刹车</translation>
    </message>
    <message>
        <source>Throw</source>
        <translation>抛飞</translation>
    </message>
    <message>
        <source>Avoiding traffic</source>
        <translation>避让空中交通</translation>
    </message>
    <message>
        <source>Guided without position</source>
        <translation>无定位引导</translation>
    </message>
    <message>
        <source>Smart return</source>
        <translation>智能返航</translation>
    </message>
    <message>
        <source>Flow hold</source>
        <translation>光流定点</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>跟随</translation>
    </message>
    <message>
        <source>Zigzag</source>
        <translation>之字形</translation>
    </message>
    <message>
        <source>System identification</source>
        <translation>系统辨识</translation>
    </message>
    <message>
        <source>Autorotation</source>
        <translation>自转下滑</translation>
    </message>
    <message>
        <source>Return by the mission</source>
        <translation>按任务返航</translation>
    </message>
    <message>
        <source>Turtle</source>
        <translation>翻身</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>手动</translation>
    </message>
    <message>
        <source>Training</source>
        <translation>训练</translation>
    </message>
    <message>
        <source>Fly by wire A</source>
        <translation>电传 A</translation>
    </message>
    <message>
        <source>Fly by wire B</source>
        <translation>电传 B</translation>
    </message>
    <message>
        <source>Cruise</source>
        <translation>巡航</translation>
    </message>
    <message>
        <source>Take-off</source>
        <translation>起飞</translation>
    </message>
    <message>
        <source>Starting up</source>
        <translation>启动中</translation>
    </message>
    <message>
        <source>Hovering: stabilize</source>
        <translation>悬停：自稳</translation>
    </message>
    <message>
        <source>Hovering: altitude hold</source>
        <translation>悬停：定高</translation>
    </message>
    <message>
        <source>Hovering: loiter</source>
        <translation>悬停：定点</translation>
    </message>
    <message>
        <source>Hovering: land</source>
        <translation>悬停：降落</translation>
    </message>
    <message>
        <source>Hovering: return</source>
        <translation>悬停：返航</translation>
    </message>
    <message>
        <source>Hovering: autotune</source>
        <translation>悬停：自动调参</translation>
    </message>
    <message>
        <source>Hovering: acro</source>
        <translation>悬停：特技</translation>
    </message>
    <message>
        <source>Thermal</source>
        <translation>热气流滑翔</translation>
    </message>
    <message>
        <source>Loiter, then land hovering</source>
        <translation>盘旋后悬停降落</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Offboard</source>
        <translation>机外控制</translation>
    </message>
    <message>
        <source>Rattitude</source>
        <translation>角速度姿态</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>Precision landing</source>
        <translation>精准降落</translation>
    </message>
    <message>
        <source>Mode %1</source>
        <translation>模式 %1</translation>
    </message>
</context>
<context>
    <name>AxZoneQuery</name>
    <message>
        <source>The database is damaged: %1.</source>
        <translation>数据库已损坏：%1。</translation>
    </message>
    <message>
        <source>There is no table &quot;%1&quot;.</source>
        <translation>没有表“%1”。</translation>
    </message>
    <message>
        <source>Table &quot;%1&quot; has no column &quot;%2&quot;.</source>
        <translation>表“%1”没有列“%2”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no condition.</source>
        <translation>“%1”不是条件。</translation>
    </message>
    <message>
        <source>Table &quot;%1&quot; cannot be read: %2.</source>
        <translation>无法读取表“%1”：%2。</translation>
    </message>
</context>
<context>
    <name>CAxBaseDialog</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>CAxBlockManager</name>
    <message>
        <source>Block %1</source>
        <translation>测区 %1</translation>
    </message>
</context>
<context>
    <name>CAxNoflyApplyUpload</name>
    <message>
        <source>Application to fly</source>
        <translation>飞行申请</translation>
    </message>
    <message>
        <source>There is no complete application to send. Nothing was sent.</source>
        <translation>没有完整的申请可发送，未发送任何内容。</translation>
    </message>
    <message>
        <source>No address is set up to which applications are sent. Nothing was sent.</source>
        <translation>尚未设置接收申请的地址，未发送任何内容。</translation>
    </message>
    <message>
        <source>Applications cannot be sent to &quot;%1&quot;: it is no http or https address. Nothing was sent.</source>
        <translation>无法向“%1”发送申请：它不是 http 或 https 地址。未发送任何内容。</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>正在连接 %1……</translation>
    </message>
    <message>
        <source>Sent %1 of %2 ...</source>
        <translation>已发送 %1，共 %2……</translation>
    </message>
    <message>
        <source>Waiting for the answer of %1 ...</source>
        <translation>正在等待 %1 的答复……</translation>
    </message>
    <message>
        <source>The application was sent.</source>
        <translation>申请已发送。</translation>
    </message>
    <message>
        <source>The server says: %1</source>
        <translation>服务器答复：%1</translation>
    </message>
    <message>
        <source>%1 did not take the application (status %2).</source>
        <translation>%1 未接受该申请（状态 %2）。</translation>
    </message>
    <message>
        <source>%1 sends applications on to another address, which is not followed: %2</source>
        <translation>%1 要求将申请转发到另一地址，未予转发：%2</translation>
    </message>
    <message>
        <source>%1 does not answer.</source>
        <translation>%1 没有答复。</translation>
    </message>
    <message>
        <source>No server with the name %1 was found. Is there a network connection?</source>
        <translation>找不到名为 %1 的服务器。网络是否已连接？</translation>
    </message>
    <message>
        <source>%1 does not take connections.</source>
        <translation>%1 不接受连接。</translation>
    </message>
    <message>
        <source>The connection to %1 cannot be trusted: %2</source>
        <translation>与 %1 的连接不可信：%2</translation>
    </message>
    <message>
        <source>The connection to %1 was lost.</source>
        <translation>与 %1 的连接已中断。</translation>
    </message>
    <message>
        <source>The answer of %1 cannot be understood.</source>
        <translation>无法理解 %1 的答复。</translation>
    </message>
    <message>
        <source>The application could not be sent to %1: %2</source>
        <translation>无法将申请发送到 %1：%2</translation>
    </message>
    <message>
        <source>The application may have arrived all the same.</source>
        <translation>申请可能仍已送达。</translation>
    </message>
    <message>
        <source>Your entries are kept. Retry sends the same application again.</source>
        <translation>填写的内容已保留。“重试”将再次发送同一申请。</translation>
    </message>
</context>
<context>
    <name>CAxNoflyApplyWgt</name>
    <message>
        <source>Application to fly</source>
        <translation>飞行申请</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>Applicant</source>
        <translation>申请人</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>姓名</translation>
    </message>
    <message>
        <source>Organisation</source>
        <translation>单位</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>电话</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>电子邮箱</translation>
    </message>
    <message>
        <source>Aircraft</source>
        <translation>飞行器</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>型号</translation>
    </message>
    <message>
        <source>Registration</source>
        <translation>登记号</translation>
    </message>
    <message>
        <source>Flight</source>
        <translation>飞行</translation>
    </message>
    <message>
        <source>Purpose</source>
        <translation>用途</translation>
    </message>
    <message>
        <source>Begin (UTC)</source>
        <translation>开始（UTC）</translation>
    </message>
    <message>
        <source>End (UTC)</source>
        <translation>结束（UTC）</translation>
    </message>
    <message>
        <source>Max. height above ground (m)</source>
        <translation>最大离地高度（米）</translation>
    </message>
    <message>
        <source>Remarks</source>
        <translation>备注</translation>
    </message>
    <message>
        <source>Entries marked with * are required.</source>
        <translation>标有 * 的项目必须填写。</translation>
    </message>
    <message>
        <source>%1 *</source>
        <translation>%1 *</translation>
    </message>
    <message>
        <source>No-fly zones of the area: %1</source>
        <translation>该区域涉及的禁飞区：%1 个</translation>
    </message>
    <message>
        <source>Block: %1</source>
        <translation>测区：%1</translation>
    </message>
    <message>
        <source>No picture</source>
        <translation>没有图片</translation>
    </message>
    <message>
        <source>Local time: %1</source>
        <translation>当地时间：%1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; must be filled in.</source>
        <translation>“%1”必须填写。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no telephone number: digits and + - ( ) / . are expected, as in +86 10 1234 5678.</source>
        <translation>“%1”不是电话号码：应由数字和 + - ( ) / . 组成，例如 +86 10 1234 5678。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address: name@example.org is expected.</source>
        <translation>“%1”不是有效的邮箱地址：格式应如 name@example.org。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; must be a whole number from 1 to %2.</source>
        <translation>“%1”必须是 1 到 %2 的整数。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lies in the past.</source>
        <translation>“%1”早于当前时间。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; must be later than &quot;%2&quot;.</source>
        <translation>“%1”必须晚于“%2”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; may have %2 characters at most.</source>
        <translation>“%1”最多 %2 个字符。</translation>
    </message>
</context>
<context>
    <name>CAxNoflyZoneMgr</name>
    <message>
        <source>The environment variable %1 holds no key.</source>
        <translation>环境变量 %1 中没有密钥。</translation>
    </message>
    <message>
        <source>The key file &quot;%1&quot; cannot be read: %2.</source>
        <translation>无法读取密钥文件“%1”：%2。</translation>
    </message>
    <message>
        <source>The key file &quot;%1&quot; is empty.</source>
        <translation>密钥文件“%1”为空。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is still open.</source>
        <translation>“%1”仍处于打开状态。</translation>
    </message>
    <message>
        <source>There is no file &quot;%1&quot;.</source>
        <translation>没有文件“%1”。</translation>
    </message>
    <message>
        <source>There is no room for the plain form of &quot;%1&quot;: %2.</source>
        <translation>没有地方存放“%1”的明文：%2。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no zone database.</source>
        <translation>“%1”不是禁飞区数据库。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be sealed: another program uses it, or its folder cannot be written.</source>
        <translation>无法加密“%1”：其他程序正在使用它，或其文件夹不可写。</translation>
    </message>
    <message>
        <source>There is no file &quot;%1&quot;, or it cannot be read.</source>
        <translation>没有文件“%1”，或无法读取。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is sealed.</source>
        <translation>“%1”处于加密状态。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be read: %2</source>
        <translation>无法读取“%1”：%2</translation>
    </message>
    <message>
        <source>No zone database is open.</source>
        <translation>没有打开的禁飞区数据库。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
</context>
<context>
    <name>CAxProgressWgt</name>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>CAxVolumeWgt</name>
    <message>
        <source>Cut:</source>
        <translation>挖方：</translation>
    </message>
    <message>
        <source>Fill:</source>
        <translation>填方：</translation>
    </message>
    <message>
        <source>Cut less fill:</source>
        <translation>挖方减填方：</translation>
    </message>
    <message>
        <source>%1:</source>
        <translation>%1：</translation>
    </message>
</context>
<context>
    <name>AxGeoFile</name>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
    <message>
        <source>The picture cannot be made.</source>
        <translation>无法生成该图像。</translation>
    </message>
    <message>
        <source>Called off.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; of an earlier export is still there; nothing of this export is in it.</source>
        <translation>先前导出的“%1”仍在原处，其中没有本次导出的内容。</translation>
    </message>
    <message>
        <source>its curves cannot be made lines</source>
        <translation>其曲线无法转换为折线</translation>
    </message>
    <message>
        <source>%1 has %2 parts; each is a shape of its own.</source>
        <translation>%1 由 %2 个部分组成，每个部分各为一个图形。</translation>
    </message>
    <message>
        <source>%1: its width or radius is no length and is not taken over.</source>
        <translation>%1：其宽度或半径不是有效长度，未被读入。</translation>
    </message>
    <message>
        <source>The file has more than %1 shapes.</source>
        <translation>文件中的图形多于 %1 个。</translation>
    </message>
    <message>
        <source>The file has more than %1 points.</source>
        <translation>文件中的点多于 %1 个。</translation>
    </message>
    <message>
        <source>%1: simplified from %2 to %3 points; what was left out lies within %4 m of it.</source>
        <translation>%1：已由 %2 个点简化为 %3 个点；略去的点与简化后的线相距不超过 %4 米。</translation>
    </message>
    <message>
        <source>a ring has fewer than three different points</source>
        <translation>环的不同点少于三个</translation>
    </message>
    <message>
        <source>a line has fewer than two different points</source>
        <translation>线的不同点少于两个</translation>
    </message>
    <message>
        <source>a coordinate of point %1 is no number</source>
        <translation>第 %1 个点的坐标不是数值</translation>
    </message>
    <message>
        <source>The file does not say which coordinate system it uses, and its coordinates are no degrees. Choose the system.</source>
        <translation>文件未说明所用坐标系，且其坐标不是经纬度。请选择坐标系。</translation>
    </message>
    <message>
        <source>point %1 is not on the globe: longitude %2, latitude %3</source>
        <translation>第 %1 个点不在地球上：经度 %2，纬度 %3</translation>
    </message>
    <message>
        <source>Areas with holes: %1.</source>
        <translation>有孔洞的区域：%1 个。</translation>
    </message>
    <message>
        <source>Features without a geometry, which are left out: %1.</source>
        <translation>没有几何图形而被略去的要素：%1 个。</translation>
    </message>
    <message>
        <source>Features whose curves are now lines: %1.</source>
        <translation>曲线已转换为折线的要素：%1 个。</translation>
    </message>
    <message>
        <source>Features whose measures (M) are not taken over: %1.</source>
        <translation>M 值未被读入的要素：%1 个。</translation>
    </message>
    <message>
        <source>Shapes whose heights differ from point to point and are not taken over: %1.</source>
        <translation>各点高度不同因而高度未被读入的图形：%1 个。</translation>
    </message>
    <message>
        <source>Heights above the ground that are not taken over: %1.</source>
        <translation>未采用的相对地面高度：%1。</translation>
    </message>
    <message>
        <source>Collections that lie too deep in others and are left out: %1.</source>
        <translation>嵌套过深而被略去的集合：%1 个。</translation>
    </message>
    <message>
        <source>Names that are cut to 200 characters: %1.</source>
        <translation>被截短到 200 个字符的名称：%1 个。</translation>
    </message>
    <message>
        <source>Further notes of this kind: %1.</source>
        <translation>其他同类说明：%1 条。</translation>
    </message>
    <message>
        <source>%1 is left out: %2.</source>
        <translation>%1 已略去：%2。</translation>
    </message>
    <message>
        <source>Its text has more than %1 MB.</source>
        <translation>其文本大于 %1 MB。</translation>
    </message>
    <message>
        <source>It declares entities of its own, which no KML file needs.</source>
        <translation>文件自行声明了实体，KML 文件无需如此。</translation>
    </message>
    <message>
        <source>Line %1: elements are nested too deep.</source>
        <translation>第 %1 行：元素嵌套过深。</translation>
    </message>
    <message>
        <source>It has more than %1 elements.</source>
        <translation>文件中的元素多于 %1 个。</translation>
    </message>
    <message>
        <source>Line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>Elements of KML that are not taken over: %1 (%2).</source>
        <translation>未读入的 KML 元素：%1（%2 个）。</translation>
    </message>
    <message>
        <source>It is no KMZ file.</source>
        <translation>这不是 KMZ 文件。</translation>
    </message>
    <message>
        <source>It holds more than %1 files.</source>
        <translation>其中的文件多于 %1 个。</translation>
    </message>
    <message>
        <source>There is no KML document in it.</source>
        <translation>其中没有 KML 文档。</translation>
    </message>
    <message>
        <source>The file holds %1 documents; &quot;%2&quot; is read.</source>
        <translation>文件含有 %1 个文档，读取的是“%2”。</translation>
    </message>
    <message>
        <source>Its document cannot be unpacked.</source>
        <translation>其中的文档无法解压。</translation>
    </message>
    <message>
        <source>It is no file of this format.</source>
        <translation>文件不是该格式。</translation>
    </message>
    <message>
        <source>It is no drawing in text (ASCII DXF), or it is damaged.</source>
        <translation>文件不是文本格式的图形（ASCII DXF），或已损坏。</translation>
    </message>
    <message>
        <source>It cannot be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message>
        <source>The memory does not suffice.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>The index (.shx) of the shapefile is missing; it was made anew in memory.</source>
        <translation>Shapefile 缺少索引文件（.shx），已在内存中重建。</translation>
    </message>
    <message>
        <source>The table (.dbf) of the shapefile is missing; the shapes have no names.</source>
        <translation>Shapefile 缺少属性表（.dbf），图形没有名称。</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>文件不存在。</translation>
    </message>
    <message>
        <source>It is no file.</source>
        <translation>这不是文件。</translation>
    </message>
    <message>
        <source>It may not be read.</source>
        <translation>没有读取权限。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>It has %1 MB; more than %2 MB of this format cannot be read.</source>
        <translation>文件大小为 %1 MB；此格式最多可读取 %2 MB。</translation>
    </message>
    <message>
        <source>The format &quot;%1&quot; is not known.</source>
        <translation>未知的格式“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no coordinate system.</source>
        <translation>“%1”不是坐标系。</translation>
    </message>
    <message>
        <source>The coordinate system &quot;%1&quot; does not say where on the globe it lies.</source>
        <translation>坐标系“%1”未说明其在地球上的位置。</translation>
    </message>
    <message>
        <source>The coordinate system &quot;%1&quot; cannot be converted to degrees.</source>
        <translation>坐标系“%1”无法转换为经纬度。</translation>
    </message>
    <message>
        <source>The table has neither columns &quot;longitude&quot; and &quot;latitude&quot; nor a column &quot;WKT&quot; with shapes.</source>
        <translation>表中既没有“longitude”和“latitude”列，也没有含图形的“WKT”列。</translation>
    </message>
    <message>
        <source>The table has neither columns &quot;longitude&quot; and &quot;latitude&quot; nor a column &quot;WKT&quot; with points.</source>
        <translation>表中既没有“longitude”和“latitude”列，也没有含点的“WKT”列。</translation>
    </message>
    <message>
        <source>Row %1</source>
        <translation>第 %1 行</translation>
    </message>
    <message>
        <source>Rows of the table that are points: %1. Rows with &quot;area&quot; or &quot;line&quot; in a column &quot;kind&quot; and the same name make one shape.</source>
        <translation>表中有 %1 行为点。“kind”列为“area”或“line”且名称相同的各行组成一个图形。</translation>
    </message>
    <message>
        <source>The file does not say which coordinate system it uses; WGS 84 is assumed.</source>
        <translation>文件未说明所用坐标系，按 WGS 84 处理。</translation>
    </message>
    <message>
        <source>Writing failed: %1</source>
        <translation>写入失败：%1</translation>
    </message>
    <message>
        <source>This installation of GDAL cannot write the format (%1).</source>
        <translation>本机安装的 GDAL 无法写入该格式（%1）。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is too far from the first shape for one drawing in metres.</source>
        <translation>“%1”离第一个图形太远，无法写入同一张以米为单位的图纸。</translation>
    </message>
    <message>
        <source>The reader says: %1</source>
        <translation>读取程序提示：%1</translation>
    </message>
    <message>
        <source>Layer &quot;%1&quot;, feature %2 (%3)</source>
        <translation>图层“%1”，要素 %2（%3）</translation>
    </message>
    <message>
        <source>Layer &quot;%1&quot;: its texts are not in UTF-8 and are read as %2.</source>
        <translation>图层“%1”：其文字不是 UTF-8 编码，按 %2 读取。</translation>
    </message>
    <message>
        <source>How the coordinate system &quot;%1&quot; lies to WGS 84 is not known: shapes may lie some hundred metres beside their place.</source>
        <translation>坐标系“%1”与 WGS 84 的关系未知：图形可能偏离实际位置数百米。</translation>
    </message>
    <message>
        <source>Reading was cancelled.</source>
        <translation>读取已取消。</translation>
    </message>
    <message>
        <source>There is no area, line or point in it.</source>
        <translation>其中没有区域、线或点。</translation>
    </message>
    <message>
        <source>There is no point in it.</source>
        <translation>其中没有点。</translation>
    </message>
    <message>
        <source>There is nothing to write.</source>
        <translation>没有可写入的内容。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has too few points, or one that is not on the globe.</source>
        <translation>“%1”的点太少，或有点不在地球上。</translation>
    </message>
    <message>
        <source>A shapefile has shapes of one kind; the others are in &quot;%1&quot;.</source>
        <translation>一个 Shapefile 只含一种图形，其余图形在“%1”中。</translation>
    </message>
    <message>
        <source>A shapefile has shapes of one kind; the others would be in &quot;%1&quot;, which is there already. Choose another name.</source>
        <translation>一个 Shapefile 只含一种图形，其余图形应写入“%1”，但该文件已存在。请另选名称。</translation>
    </message>
    <message>
        <source>Hole %1 of %2</source>
        <translation>%2 的孔洞 %1</translation>
    </message>
    <message>
        <source>Not all shapes have a height, so the file may have none.</source>
        <translation>并非所有图形都有高程，因此文件可能不含高程。</translation>
    </message>
    <message>
        <source>The drawing has metres in the UTM zone %1; it says so only in a comment.</source>
        <translation>图纸以米为单位，采用 UTM 分带 %1；仅在注释中说明。</translation>
    </message>
    <message>
        <source>A drawing has names as those of its layers, and neither widths nor radius.</source>
        <translation>图纸以图层名作为名称，不含宽度和半径。</translation>
    </message>
</context>
<context>
    <name>AxTiles</name>
    <message>
        <source>The service answers with status %1.</source>
        <translation>服务返回状态码 %1。</translation>
    </message>
    <message>
        <source>The service asks to be left alone (status %1).</source>
        <translation>服务要求暂停访问（状态码 %1）。</translation>
    </message>
    <message>
        <source>The proxy wants a name and a password.</source>
        <translation>代理需要用户名和密码。</translation>
    </message>
    <message>
        <source>The service refuses (status %1): it may want a key, or allow no saving.</source>
        <translation>服务拒绝访问（状态码 %1）：可能需要密钥，或不允许保存。</translation>
    </message>
    <message>
        <source>The answer is larger than a tile can be.</source>
        <translation>返回内容超过瓦片可能的大小。</translation>
    </message>
    <message>
        <source>The service does not answer in time.</source>
        <translation>服务未及时响应。</translation>
    </message>
    <message>
        <source>The connection to the service cannot be trusted: %1</source>
        <translation>与服务的连接不可信：%1</translation>
    </message>
    <message>
        <source>The host %1 is not found.</source>
        <translation>找不到主机 %1。</translation>
    </message>
    <message>
        <source>The host %1 takes no connection.</source>
        <translation>主机 %1 不接受连接。</translation>
    </message>
    <message>
        <source>The service leads elsewhere, where nobody may follow.</source>
        <translation>服务重定向到不可跟随的地址。</translation>
    </message>
    <message>
        <source>The proxy is not found.</source>
        <translation>找不到代理服务器。</translation>
    </message>
    <message>
        <source>The proxy takes no connection, or ends it.</source>
        <translation>代理服务器拒绝或断开了连接。</translation>
    </message>
    <message>
        <source>No answer came: %1</source>
        <translation>没有收到响应：%1</translation>
    </message>
    <message>
        <source>This computer has no OpenSSL, without which nothing comes by https.</source>
        <translation>本机没有 OpenSSL，无法使用 https。</translation>
    </message>
    <message>
        <source>The connection ended before the whole answer was here.</source>
        <translation>连接在内容接收完整之前中断。</translation>
    </message>
    <message>
        <source>There is no area.</source>
        <translation>没有区域。</translation>
    </message>
    <message>
        <source>The levels are 0 to %1, the coarse one first.</source>
        <translation>级别为 0 至 %1，粗级在前。</translation>
    </message>
    <message>
        <source>There is no file.</source>
        <translation>没有文件。</translation>
    </message>
    <message>
        <source>These are %1 tiles; no more than %2 are fetched.</source>
        <translation>共 %1 个瓦片；最多下载 %2 个。</translation>
    </message>
    <message>
        <source>It was called off; the next time it goes on from here.</source>
        <translation>已取消；下次将从此处继续。</translation>
    </message>
    <message>
        <source>A picture has %1 pixels instead of %2.</source>
        <translation>图片为 %1 像素，而不是 %2 像素。</translation>
    </message>
    <message>
        <source>%1 Go on later; what has come is kept.</source>
        <translation>%1 请稍后继续；已下载的内容已保留。</translation>
    </message>
    <message>
        <source>The service has none of the first %1 tiles. Is its address right?</source>
        <translation>服务没有最初的 %1 个瓦片。地址是否正确？</translation>
    </message>
    <message>
        <source>%1 tiles in a row could not be had. %2</source>
        <translation>连续 %1 个瓦片无法获取。%2</translation>
    </message>
    <message>
        <source>%1 tiles could not be had: %2</source>
        <translation>%1 个瓦片无法获取：%2</translation>
    </message>
    <message>
        <source>it was not fetched by this program</source>
        <translation>它不是由本程序下载的</translation>
    </message>
    <message>
        <source>it has tiles of another service</source>
        <translation>它包含其他服务的瓦片</translation>
    </message>
    <message>
        <source>it was fetched for the levels %1</source>
        <translation>它是按级别 %1 下载的</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be written: %2.</source>
        <translation>无法写入“%1”：%2。</translation>
    </message>
    <message>
        <source>there is no such folder</source>
        <translation>没有该文件夹</translation>
    </message>
    <message>
        <source>it is not a file</source>
        <translation>它不是文件</translation>
    </message>
    <message>
        <source>it may only be read</source>
        <translation>它是只读的</translation>
    </message>
    <message>
        <source>it was deleted or moved away meanwhile</source>
        <translation>它在此期间被删除或移走</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was deleted or moved away while it was saved.</source>
        <translation>保存过程中“%1”被删除或移走。</translation>
    </message>
    <message>
        <source>The finest level of the service is %1.</source>
        <translation>该服务的最细级别为 %1。</translation>
    </message>
    <message>
        <source>it is being fetched already</source>
        <translation>它正在下载中</translation>
    </message>
    <message>
        <source>nothing can be written into its folder</source>
        <translation>无法写入其所在文件夹</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be read: %2.</source>
        <translation>无法读取“%1”：%2。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is there already, and no file of tiles.</source>
        <translation>“%1”已存在，且不是瓦片文件。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is there already, and cannot be gone on with: %2.</source>
        <translation>“%1”已存在，无法继续下载：%2。</translation>
    </message>
    <message>
        <source>The answer is no PNG, JPEG or WebP picture.</source>
        <translation>返回内容不是 PNG、JPEG 或 WebP 图片。</translation>
    </message>
    <message>
        <source>The picture cannot be read.</source>
        <translation>无法读取图片。</translation>
    </message>
    <message>
        <source>The picture is not a square of at most %1 pixels.</source>
        <translation>图片不是边长不超过 %1 像素的正方形。</translation>
    </message>
    <message>
        <source>The picture is broken.</source>
        <translation>图片已损坏。</translation>
    </message>
    <message>
        <source>There is no address, as https://tiles.example.org/{z}/{x}/{y}.png is one.</source>
        <translation>没有地址，例如 https://tiles.example.org/{z}/{x}/{y}.png。</translation>
    </message>
    <message>
        <source>{%1} is not understood; {z}, {x}, {y}, {-y} and {s} are.</source>
        <translation>无法识别 {%1}；可用 {z}、{x}、{y}、{-y} 和 {s}。</translation>
    </message>
    <message>
        <source>The address has no {%1}.</source>
        <translation>地址中没有 {%1}。</translation>
    </message>
    <message>
        <source>The address needs {y} or {-y}.</source>
        <translation>地址中需要 {y} 或 {-y}。</translation>
    </message>
    <message>
        <source>This is not an address of the web.</source>
        <translation>这不是网络地址。</translation>
    </message>
    <message>
        <source>An address begins with http:// or https://.</source>
        <translation>地址应以 http:// 或 https:// 开头。</translation>
    </message>
</context>
</TS>

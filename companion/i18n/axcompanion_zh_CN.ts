<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
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
        <source>Applications cannot be sent with this version. Nothing was sent.</source>
        <translation>此版本不能发送申请，未发送任何内容。</translation>
    </message>
</context>
<context>
    <name>CAxNoflyApplyWgt</name>
    <message>
        <source>Application to fly</source>
        <translation>飞行申请</translation>
    </message>
    <message>
        <source>Applications cannot be made with this version.</source>
        <translation>此版本不能提出申请。</translation>
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
        <source>Cut (m³):</source>
        <translation>挖方（立方米）：</translation>
    </message>
    <message>
        <source>Fill (m³):</source>
        <translation>填方（立方米）：</translation>
    </message>
    <message>
        <source>Difference (m³):</source>
        <translation>差值（立方米）：</translation>
    </message>
</context>
</TS>

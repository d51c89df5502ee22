<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The toolkit's own words that its Japanese texts lack. -->
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>QAbstractFileIconProvider</name>
    <message>
        <source>Folder</source>
        <comment>All other platforms</comment>
        <translation>フォルダ</translation>
    </message>
    <message>
        <source>File Folder</source>
        <comment>Match Windows Explorer</comment>
        <translation>フォルダ</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>ドライブ</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>%1 File</source>
        <translation>%1 ファイル</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
</context>
<context>
    <name>QPrintSettingsOutput</name>
    <message>
        <source>Pages</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>Specify pages or ranges separated by commas. Ranges are specified by two numbers separated by a hyphen. E.g: 3,5-7,9 prints pages 3, 5, 6, 7 and 9.</source>
        <translation>ページか範囲をコンマで区切って指定します。範囲は二つの番号をハイフンでつなぎます。例: 3,5-7,9 は 3、5、6、7、9 ページを印刷します。</translation>
    </message>
    <message>
        <source>Double Sided Printing</source>
        <translation>両面印刷</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>しない</translation>
    </message>
    <message>
        <source>Long side binding</source>
        <translation>長辺とじ</translation>
    </message>
    <message>
        <source>Short side binding</source>
        <translation>短辺とじ</translation>
    </message>
</context>
<context>
    <name>QPrintPropertiesWidget</name>
    <message>
        <source>Advanced</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>There are conflicts in some options. Please fix them.</source>
        <translation>両立しない項目があります。直してください。</translation>
    </message>
</context>
</TS>

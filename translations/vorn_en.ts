<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="ja_JP">
<context>
    <name>vorn::Ui</name>
    <message>
        <source>アドレスの選択</source>
        <translation>Choose Addresses</translation>
    </message>
    <message>
        <source>検索する文字(&amp;T)</source>
        <translation>&amp;Text to find</translation>
    </message>
    <message>
        <source>検索(&amp;K)</source>
        <translation>&amp;Find</translation>
    </message>
    <message>
        <source>選択(&amp;S)</source>
        <translation>&amp;Choose</translation>
    </message>
    <message>
        <source>アドレスブック</source>
        <translation>Address Book</translation>
    </message>
    <message>
        <source>見つかったアドレス</source>
        <translation>Addresses found</translation>
    </message>
    <message>
        <source>すべてのアドレスブック</source>
        <translation>All address books</translation>
    </message>
    <message>
        <source>キャンセル</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>設定値を入力してください。</source>
        <translation>Enter a value.</translation>
    </message>
    <message>
        <source>フォルダの選択</source>
        <translation>Choose a Folder</translation>
    </message>
    <message>
        <source>フォルダを選択してください。</source>
        <translation>Choose a folder.</translation>
    </message>
    <message>
        <source>システム</source>
        <translation>System</translation>
    </message>
    <message>
        <source>プロファイルの一覧を読み込めません。</source>
        <translation>The list of profiles cannot be read.</translation>
    </message>
    <message>
        <source>プロファイルがありません。</source>
        <translation>There is no profile.</translation>
    </message>
    <message>
        <source>プロファイルを読み込めません。</source>
        <translation>The profile cannot be read. </translation>
    </message>
    <message>
        <source>プロファイルに書き込めません。</source>
        <translation>The profile cannot be written. </translation>
    </message>
    <message>
        <source>プロファイルが複数あります。名前を指定してください。</source>
        <translation>There are several profiles. Name one.</translation>
    </message>
    <message>
        <source>プロファイル「%1」はありません。</source>
        <translation>There is no profile “%1”.</translation>
    </message>
    <message>
        <source>ログインできませんでした。入力したプロファイル情報を確認してください。</source>
        <translation>The login failed. Check the profile and its password.</translation>
    </message>
    <message>
        <source>ユーザー設定を保存できないため、起動できません。</source>
        <translation>The program cannot start because the user&apos;s settings cannot be saved.</translation>
    </message>
    <message>
        <source>プロファイル一覧のファイル「%1」を開けません。%2</source>
        <translation>The file of the profiles, “%1”, cannot be opened. %2</translation>
    </message>
    <message>
        <source>プロファイル</source>
        <translation>Profile</translation>
    </message>
    <message>
        <source>フォルダ</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>アカウント</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>ブックマーク</source>
        <translation>Bookmarks</translation>
    </message>
    <message>
        <source>コンソールツリー</source>
        <translation>Tree of folders and objects</translation>
    </message>
    <message>
        <source>未開封 %1通</source>
        <translation>%1 unread</translation>
    </message>
    <message>
        <source>新規作成(&amp;N)..</source>
        <translation>&amp;New..</translation>
    </message>
    <message>
        <source>名前の変更(&amp;M)</source>
        <translation>Rena&amp;me</translation>
    </message>
    <message>
        <source>削除(&amp;D)</source>
        <translation>&amp;Delete</translation>
    </message>
    <message>
        <source>プロパティ(&amp;R)..</source>
        <translation>P&amp;roperties..</translation>
    </message>
    <message>
        <source>プロファイルの選択(&amp;L)</source>
        <translation>Choose a profile (&amp;L)</translation>
    </message>
    <message>
        <source>プロファイル(&amp;L)</source>
        <translation>Profi&amp;le</translation>
    </message>
    <message>
        <source>パスワード(&amp;P)</source>
        <translation>&amp;Password</translation>
    </message>
    <message>
        <source>中止</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Maildirのフォルダ (*)</source>
        <translation>Maildir folder (*)</translation>
    </message>
    <message>
        <source>emlファイルのフォルダ (*)</source>
        <translation>folder of .eml files (*)</translation>
    </message>
    <message>
        <source>メッセージの取り込み</source>
        <translation>Import Messages</translation>
    </message>
    <message>
        <source>メッセージ (*.eml *.mbox *.mbx);;すべてのファイル (*)</source>
        <translation>Messages (*.eml *.mbox *.mbx);;All files (*)</translation>
    </message>
    <message>
        <source>送受信が終わってから取り込んでください。</source>
        <translation>Import when sending and receiving has ended.</translation>
    </message>
    <message>
        <source>フォルダ「%1」の書き出し</source>
        <translation>Export the Folder “%1”</translation>
    </message>
    <message>
        <source>ツール(&amp;T)</source>
        <translation>&amp;Tools</translation>
    </message>
    <message>
        <source>メッセージ送受信(&amp;M)</source>
        <translation>Send and Receive &amp;Messages</translation>
    </message>
    <message>
        <source>送受信の中止(&amp;C)</source>
        <translation>&amp;Cancel Sending and Receiving</translation>
    </message>
    <message>
        <source>メッセージ条件(&amp;R)..</source>
        <translation>Message &amp;Rules..</translation>
    </message>
    <message>
        <source>設定(&amp;O)..</source>
        <translation>&amp;Options..</translation>
    </message>
    <message>
        <source>バージョン情報(&amp;V)..</source>
        <translation>&amp;Version..</translation>
    </message>
    <message>
        <source>ウィンドウ(&amp;W)</source>
        <translation>&amp;Window</translation>
    </message>
    <message>
        <source>重ねて表示(&amp;C)</source>
        <translation>&amp;Cascade</translation>
    </message>
    <message>
        <source>並べて表示(&amp;T)</source>
        <translation>&amp;Tile</translation>
    </message>
    <message>
        <source>次のウィンドウ(&amp;N)</source>
        <translation>&amp;Next Window</translation>
    </message>
    <message>
        <source>ウィンドウを閉じる(&amp;L)</source>
        <translation>C&amp;lose Window</translation>
    </message>
    <message>
        <source>ツリーに移動(&amp;F)</source>
        <translation>Go to &amp;Folders</translation>
    </message>
    <message>
        <source>ページに移動(&amp;P)</source>
        <translation>Go to &amp;Page</translation>
    </message>
    <message>
        <source>ヘルプ(&amp;H)</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>使い方(&amp;G)</source>
        <translation>&amp;Guide</translation>
    </message>
    <message>
        <source>使い方</source>
        <translation>Guide</translation>
    </message>
    <message>
        <source>ツールバー</source>
        <translation>Toolbar</translation>
    </message>
    <message>
        <source>送受信</source>
        <translation>Send/Receive</translation>
    </message>
    <message>
        <source>メッセージ送受信 Ctrl+M</source>
        <translation>Send and receive messages Ctrl+M</translation>
    </message>
    <message>
        <source>新規</source>
        <translation>New</translation>
    </message>
    <message>
        <source>新しいメッセージ Ctrl+N</source>
        <translation>New message Ctrl+N</translation>
    </message>
    <message>
        <source>返信</source>
        <translation>Reply</translation>
    </message>
    <message>
        <source>全員に返信</source>
        <translation>Reply to All</translation>
    </message>
    <message>
        <source>転送</source>
        <translation>Forward</translation>
    </message>
    <message>
        <source>フォルダに入れる</source>
        <translation>Move to Folder</translation>
    </message>
    <message>
        <source>くずかご</source>
        <translation>Trash</translation>
    </message>
    <message>
        <source>ファイル(&amp;F)</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>新規作成(&amp;N)</source>
        <translation>&amp;New</translation>
    </message>
    <message>
        <source>メッセージ(&amp;M)..</source>
        <translation>&amp;Message..</translation>
    </message>
    <message>
        <source>アカウント(&amp;A)..</source>
        <translation>&amp;Account..</translation>
    </message>
    <message>
        <source>フォルダ(&amp;F)..</source>
        <translation>&amp;Folder..</translation>
    </message>
    <message>
        <source>アドレスブック(&amp;D)..</source>
        <translation>A&amp;ddress Book..</translation>
    </message>
    <message>
        <source>ブックマーク(&amp;B)..</source>
        <translation>&amp;Bookmarks..</translation>
    </message>
    <message>
        <source>プロファイル(&amp;P)..</source>
        <translation>&amp;Profile..</translation>
    </message>
    <message>
        <source>くずかごを空にする(&amp;E)..</source>
        <translation>&amp;Empty the Trash..</translation>
    </message>
    <message>
        <source>ファイルから取り込む(&amp;I)..</source>
        <translation>&amp;Import from Files..</translation>
    </message>
    <message>
        <source>フォルダから取り込む(&amp;O)..</source>
        <translation>Import fr&amp;om a Folder..</translation>
    </message>
    <message>
        <source>フォルダの書き出し(&amp;W)..</source>
        <translation>Expor&amp;t the Folder..</translation>
    </message>
    <message>
        <source>終了(&amp;X)</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>表示(&amp;V)</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>イベントのクリア(&amp;C)..</source>
        <translation>&amp;Clear Events..</translation>
    </message>
    <message>
        <source>フォルダのレイアウト(&amp;L)..</source>
        <translation>Folder &amp;Layout..</translation>
    </message>
    <message>
        <source>お気に入り(&amp;A)</source>
        <translation>F&amp;avorites</translation>
    </message>
    <message>
        <source>（なし）</source>
        <translation>(none)</translation>
    </message>
    <message>
        <source>くずかごのメッセージをすべて削除します。元には戻せません。よろしいですか？</source>
        <translation>All messages in the trash will be permanently deleted. Continue?</translation>
    </message>
    <message>
        <source>削除できませんでした。</source>
        <translation>They could not be deleted. </translation>
    </message>
    <message>
        <source>記録イベントをクリアします？よろしいですか？</source>
        <translation>The recorded events will be cleared. Continue?</translation>
    </message>
    <message>
        <source>変更を保存できませんでした。</source>
        <translation>The change could not be saved. </translation>
    </message>
    <message>
        <source>メッセージを入れるフォルダを選択してください。</source>
        <translation>Choose the folder for the messages.</translation>
    </message>
    <message>
        <source>送受信するアカウントがありません。ファイル &gt; 新規作成 &gt; アカウントで追加してください。</source>
        <translation>There is no account to send and receive with. Add one by File &gt; New &gt; Account.</translation>
    </message>
    <message>
        <source>新着メッセージを受信しました。今すぐ開きますか？</source>
        <translation>New messages have arrived. Open them now?</translation>
    </message>
    <message>
        <source>パスワード</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>アカウント「%1」の受信のパスワードを入力してください。</source>
        <translation>Enter the password for receiving with the account “%1”.</translation>
    </message>
    <message>
        <source>印刷</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>データフォルダ「%1」を作成できません。</source>
        <translation>The data folder “%1” cannot be made.</translation>
    </message>
    <message>
        <source>は既に起動しています。</source>
        <translation> is already running.</translation>
    </message>
    <message>
        <source>プロファイルを作成できません。</source>
        <translation>The profile cannot be made. </translation>
    </message>
    <message>
        <source>送受信を中止します。</source>
        <translation>Ends sending and receiving.</translation>
    </message>
    <message>
        <source>添付ファイル「%1」を読み込めません。</source>
        <translation>The attachment “%1” cannot be read.</translation>
    </message>
    <message>
        <source>添付ファイル[%1].dat</source>
        <translation>attachment[%1].dat</translation>
    </message>
    <message>
        <source>フォルダを読み込めません。</source>
        <translation>The folder cannot be read. </translation>
    </message>
    <message>
        <source>中止しました。</source>
        <translation>Stopped.</translation>
    </message>
    <message>
        <source>・</source>
        <translation>, </translation>
    </message>
    <message>
        <source>メッセージを保存できません。</source>
        <translation>The message cannot be stored. </translation>
    </message>
    <message>
        <source>「%1」にメッセージがありません。</source>
        <translation>There is no message in “%1”.</translation>
    </message>
    <message>
        <source>「%1」を読み込めません。</source>
        <translation>“%1” cannot be read.</translation>
    </message>
    <message>
        <source>「%1」はもうあります。</source>
        <translation>“%1” already exists.</translation>
    </message>
    <message>
        <source>「%1」に書き込めません。</source>
        <translation>Cannot write to “%1”.</translation>
    </message>
    <message>
        <source>「%1」に書き込めません。ディスクの空き容量を確認してください。</source>
        <translation>Cannot write to “%1”. Check the free space on the disk.</translation>
    </message>
    <message>
        <source>開封通知： </source>
        <translation>Read: </translation>
    </message>
    <message>
        <source>下記内容のメールを受信したことをお知らせいたします。<byte value="xd"/>
<byte value="xd"/>
件名： </source>
        <translation>This is to let you know that the following message has been received.<byte value="xd"/>
<byte value="xd"/>
Subject: </translation>
    </message>
    <message>
        <source><byte value="xd"/>
日時： </source>
        <translation><byte value="xd"/>
Date: </translation>
    </message>
    <message>
        <source>差出人：</source>
        <translation>From: </translation>
    </message>
    <message>
        <source>宛て先：</source>
        <translation>To: </translation>
    </message>
    <message>
        <source>参照先：</source>
        <translation>Cc: </translation>
    </message>
    <message>
        <source>添付：</source>
        <translation>Attachments: </translation>
    </message>
    <message>
        <source>件名：</source>
        <translation>Subject: </translation>
    </message>
    <message>
        <source>宛先</source>
        <translation>To</translation>
    </message>
    <message>
        <source>差出人</source>
        <translation>From</translation>
    </message>
    <message>
        <source>返信先</source>
        <translation>Reply to</translation>
    </message>
    <message>
        <source>開封通知先</source>
        <translation>Receipt to</translation>
    </message>
    <message>
        <source>種類</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>アドレス</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>添付ファイル</source>
        <translation>Attachments</translation>
    </message>
    <message>
        <source>（</source>
        <translation> (</translation>
    </message>
    <message>
        <source>）</source>
        <translation>)</translation>
    </message>
    <message>
        <source>添付ファイルの選択</source>
        <translation>Choose Attachments</translation>
    </message>
    <message>
        <source>全てのファイル (*)</source>
        <translation>All files (*)</translation>
    </message>
    <message>
        <source>添付ファイルの保存</source>
        <translation>Save Attachment</translation>
    </message>
    <message>
        <source>保存したいファイルを選択して下さい。</source>
        <translation>Choose the files to save.</translation>
    </message>
    <message>
        <source>添付ファイルを保存するフォルダ</source>
        <translation>Folder for the Attachments</translation>
    </message>
    <message>
        <source>「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。</source>
        <translation>“%1” cannot be saved. Check the folder and the free space of the disk.</translation>
    </message>
    <message>
        <source>開く(&amp;O)</source>
        <translation>&amp;Open</translation>
    </message>
    <message>
        <source>保存(&amp;S)..</source>
        <translation>&amp;Save..</translation>
    </message>
    <message>
        <source>追加(&amp;A)..</source>
        <translation>&amp;Add..</translation>
    </message>
    <message>
        <source>外す(&amp;D)</source>
        <translation>&amp;Detach</translation>
    </message>
    <message>
        <source>検索(&amp;I)</source>
        <translation>F&amp;ind</translation>
    </message>
    <message>
        <source>前へ</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>次へ</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>閉じる</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。</source>
        <translation>This message has no recipient (To, Cc or Bcc). Add one to send it.</translation>
    </message>
    <message>
        <source>送信者(FROM)が不明です。送信するには送信者を指定して下さい。</source>
        <translation>There is no sender (FROM). Name one to send the message.</translation>
    </message>
    <message>
        <source>このメールは、</source>
        <translation>This message is in the folder </translation>
    </message>
    <message>
        <source>に入っています。取り出して送信しますか？</source>
        <translation>. Take it out and send it?</translation>
    </message>
    <message>
        <source>件名が設定されていません。送信してよろしいですか？</source>
        <translation>There is no subject. Send it anyway?</translation>
    </message>
    <message>
        <source>メッセージの送信をキャンセルして、編集できるようにします。よろしいですか？</source>
        <translation>The sending will be cancelled and the message can be edited. Continue?</translation>
    </message>
    <message>
        <source>メッセージを削除します。よろしいですか？</source>
        <translation>The message will be deleted. Continue?</translation>
    </message>
    <message>
        <source>保存フォルダ</source>
        <translation>Folders</translation>
    </message>
    <message>
        <source>メッセージを保存するフォルダを選択してください。</source>
        <translation>Choose the folders in which the message is filed.</translation>
    </message>
    <message>
        <source>ファイルに保存</source>
        <translation>Save to a File</translation>
    </message>
    <message>
        <source>メッセージファイル (*.eml)</source>
        <translation>Message file (*.eml)</translation>
    </message>
    <message>
        <source>印刷するページを書き込めません。ディスクの空き容量を確認してください。</source>
        <translation>The page to print cannot be written. Check the free space of the disk.</translation>
    </message>
    <message>
        <source> ソース</source>
        <translation> source</translation>
    </message>
    <message>
        <source>このメッセージは、送信された方から開封通知の要求がされています。通知しますか？</source>
        <translation>The sender has asked for a read receipt. Send one?</translation>
    </message>
    <message>
        <source>日本語ＪＩＳ(&amp;J)</source>
        <translation>Japanese &amp;JIS</translation>
    </message>
    <message>
        <source>日本語ＥＵＣ(&amp;E)</source>
        <translation>Japanese &amp;EUC</translation>
    </message>
    <message>
        <source>日本語ＳＪＩＳ(&amp;S)</source>
        <translation>Japanese &amp;Shift JIS</translation>
    </message>
    <message>
        <source>適切な文字セット(&amp;A)</source>
        <translation>&amp;Automatic</translation>
    </message>
    <message>
        <source>ＵＴＦ－８(&amp;U)</source>
        <translation>&amp;UTF-8</translation>
    </message>
    <message>
        <source>コマンド</source>
        <translation>Commands</translation>
    </message>
    <message>
        <source>くずかご(&amp;B)</source>
        <translation>&amp;Trash</translation>
    </message>
    <message>
        <source>ファイルに保存(&amp;F)..</source>
        <translation>Save to &amp;File..</translation>
    </message>
    <message>
        <source>印刷(&amp;P)..</source>
        <translation>&amp;Print..</translation>
    </message>
    <message>
        <source>閉じる(&amp;X)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>送信(&amp;S)</source>
        <translation>&amp;Send</translation>
    </message>
    <message>
        <source>送信者に返信(&amp;R)</source>
        <translation>&amp;Reply to Sender</translation>
    </message>
    <message>
        <source>関係者に返信(&amp;A)</source>
        <translation>Reply to &amp;All</translation>
    </message>
    <message>
        <source>転送(&amp;F)</source>
        <translation>&amp;Forward</translation>
    </message>
    <message>
        <source>再送信(&amp;T)</source>
        <translation>Send Again (&amp;T)</translation>
    </message>
    <message>
        <source>保存フォルダ(&amp;F)..</source>
        <translation>F&amp;olders..</translation>
    </message>
    <message>
        <source>編集(&amp;E)</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>切り取り(&amp;X)</source>
        <translation>Cu&amp;t</translation>
    </message>
    <message>
        <source>コピー(&amp;C)</source>
        <translation>&amp;Copy</translation>
    </message>
    <message>
        <source>貼り付け(&amp;P)</source>
        <translation>&amp;Paste</translation>
    </message>
    <message>
        <source>文字セット(&amp;H)</source>
        <translation>C&amp;haracter Set</translation>
    </message>
    <message>
        <source>添付ファイル(&amp;A)</source>
        <translation>&amp;Attachments</translation>
    </message>
    <message>
        <source>優先度(&amp;I)</source>
        <translation>Pr&amp;iority</translation>
    </message>
    <message>
        <source>元に戻す(&amp;U)</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>やり直し(&amp;R)</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>すべて選択(&amp;L)</source>
        <translation>Select A&amp;ll</translation>
    </message>
    <message>
        <source>検索(&amp;F)..</source>
        <translation>&amp;Find..</translation>
    </message>
    <message>
        <source>高い(&amp;H)</source>
        <translation>&amp;High</translation>
    </message>
    <message>
        <source>普通(&amp;N)</source>
        <translation>&amp;Normal</translation>
    </message>
    <message>
        <source>低い(&amp;L)</source>
        <translation>&amp;Low</translation>
    </message>
    <message>
        <source>前のメッセージ(&amp;B)</source>
        <translation>Previous Message (&amp;B)</translation>
    </message>
    <message>
        <source>次のメッセージ(&amp;N)</source>
        <translation>&amp;Next Message</translation>
    </message>
    <message>
        <source>拡大(&amp;I)</source>
        <translation>Zoom &amp;In</translation>
    </message>
    <message>
        <source>縮小(&amp;O)</source>
        <translation>Zoom &amp;Out</translation>
    </message>
    <message>
        <source>元の大きさ(&amp;0)</source>
        <translation>Original Size (&amp;0)</translation>
    </message>
    <message>
        <source>ソースを表示(&amp;S)</source>
        <translation>Show &amp;Source</translation>
    </message>
    <message>
        <source>送信</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>送信キャンセル</source>
        <translation>Cancel Sending</translation>
    </message>
    <message>
        <source>ﾌｧｲﾙ</source>
        <translation>File</translation>
    </message>
    <message>
        <source>添付</source>
        <translation>Attach</translation>
    </message>
    <message>
        <source>編集</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>再送</source>
        <translation>Send Again</translation>
    </message>
    <message>
        <source>送信をキャンセル(&amp;S)</source>
        <translation>Cancel &amp;Sending</translation>
    </message>
    <message>
        <source>メール</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>オプション</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>件名(&amp;J)</source>
        <translation>Sub&amp;ject</translation>
    </message>
    <message>
        <source>選択(&amp;L)..</source>
        <translation>Se&amp;lect..</translation>
    </message>
    <message>
        <source>アドレスブックから選びます。</source>
        <translation>Choose from the address books.</translation>
    </message>
    <message>
        <source>アドレス(&amp;D)</source>
        <translation>A&amp;ddresses</translation>
    </message>
    <message>
        <source>添付(&amp;T)</source>
        <translation>A&amp;ttachments</translation>
    </message>
    <message>
        <source>本文</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>テキスト</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>ヘッダ(&amp;H)</source>
        <translation>&amp;Header fields</translation>
    </message>
    <message>
        <source>参照(&amp;R)</source>
        <translation>&amp;References</translation>
    </message>
    <message>
        <source>返信元(&amp;Y)</source>
        <translation>In repl&amp;y to</translation>
    </message>
    <message>
        <source>イベント</source>
        <translation>Event</translation>
    </message>
    <message>
        <source>新しいメッセージ</source>
        <translation>New message</translation>
    </message>
    <message>
        <source>（件名なし）</source>
        <translation>(no subject)</translation>
    </message>
    <message>
        <source> プロパティ</source>
        <translation> - Message</translation>
    </message>
    <message>
        <source>このメッセージを保存します。よろしいですか？</source>
        <translation>The message will be saved. Is that all right?</translation>
    </message>
    <message>
        <source>($追加)</source>
        <translation>($add)</translation>
    </message>
    <message>
        <source>メールアドレスに「@」がありません。</source>
        <translation>The mail address has no “@”.</translation>
    </message>
    <message>
        <source>受信サーバーが設定されていません。</source>
        <translation>There is no server to receive from.</translation>
    </message>
    <message>
        <source>受信サーバーのユーザー名が設定されていません。</source>
        <translation>There is no user name for the server to receive from.</translation>
    </message>
    <message>
        <source>ポート番号は1から65535までの数です。</source>
        <translation>A port number is a number from 1 to 65535.</translation>
    </message>
    <message>
        <source>使えない文字（制御文字）があります。</source>
        <translation>There are characters that cannot be used (control characters).</translation>
    </message>
    <message>
        <source>パスワードを変更できませんでした。前のパスワードのままです。</source>
        <translation>The password could not be changed. It is still the old one.</translation>
    </message>
    <message>
        <source>オブジェクト名が設定されていません。</source>
        <translation>Please enter a name.</translation>
    </message>
    <message>
        <source>同じオブジェクト名を持つオブジェクトが存在します。</source>
        <translation>This name is already in use.</translation>
    </message>
    <message>
        <source>アカウント(&amp;A)</source>
        <translation>&amp;Account</translation>
    </message>
    <message>
        <source>メールアドレス(&amp;M)</source>
        <translation>&amp;Mail address</translation>
    </message>
    <message>
        <source>表示名(&amp;D)</source>
        <translation>&amp;Display name</translation>
    </message>
    <message>
        <source>送受信の結果をイベントに記録する(&amp;L)</source>
        <translation>Record resu&amp;lts as events</translation>
    </message>
    <message>
        <source>メールアドレスは「名前@ドメイン」の形で入力してください。</source>
        <translation>A mail address has the form name@domain.</translation>
    </message>
    <message>
        <source>サーバー(&amp;S)</source>
        <translation>&amp;Server</translation>
    </message>
    <message>
        <source>セキュリティ(&amp;Y)</source>
        <translation>Securit&amp;y</translation>
    </message>
    <message>
        <source>なし</source>
        <translation>None</translation>
    </message>
    <message>
        <source>ポート番号(&amp;P)</source>
        <translation>&amp;Port</translation>
    </message>
    <message>
        <source>接続を確認(&amp;K)</source>
        <translation>Chec&amp;k the Connection</translation>
    </message>
    <message>
        <source>この証明書を信頼する</source>
        <translation>Trust this certificate</translation>
    </message>
    <message>
        <source>接続しています…</source>
        <translation>Connecting…</translation>
    </message>
    <message>
        <source>確認できない証明書を信頼しています（SHA-256 %1…）。&lt;a href=&quot;#&quot;&gt;取り消す&lt;/a&gt;</source>
        <translation>A certificate that cannot be verified is trusted (SHA-256 %1…). &lt;a href=&quot;#&quot;&gt;Revoke&lt;/a&gt;</translation>
    </message>
    <message>
        <source>サーバー名に使えない文字があります。</source>
        <translation>The server name has characters that cannot be used.</translation>
    </message>
    <message>
        <source>受信(&amp;R)</source>
        <translation>&amp;Receiving</translation>
    </message>
    <message>
        <source>種類(&amp;T)</source>
        <translation>&amp;Type</translation>
    </message>
    <message>
        <source>ユーザー名(&amp;U)</source>
        <translation>&amp;User name</translation>
    </message>
    <message>
        <source>パスワード(&amp;W)</source>
        <translation>Pass&amp;word</translation>
    </message>
    <message>
        <source>パスワードを保存する(&amp;V)</source>
        <translation>Sa&amp;ve the password</translation>
    </message>
    <message>
        <source>受信したメッセージをサーバーから削除する(&amp;X)</source>
        <translation>Delete received messages from the server (&amp;X)</translation>
    </message>
    <message>
        <source>送信(&amp;E)</source>
        <translation>S&amp;ending</translation>
    </message>
    <message>
        <source>送信時に認証する(&amp;Z)</source>
        <translation>Log in to send (&amp;Z)</translation>
    </message>
    <message>
        <source>件名に含む</source>
        <translation>subject contains</translation>
    </message>
    <message>
        <source>アドレスに含む</source>
        <translation>address contains</translation>
    </message>
    <message>
        <source>フォルダにある</source>
        <translation>is in folder</translation>
    </message>
    <message>
        <source>状態</source>
        <translation>State</translation>
    </message>
    <message>
        <source>日付</source>
        <translation>date</translation>
    </message>
    <message>
        <source>編集</source>
        <comment>state</comment>
        <translation>being edited</translation>
    </message>
    <message>
        <source>待ち</source>
        <comment>state</comment>
        <translation>waiting</translation>
    </message>
    <message>
        <source>送信</source>
        <comment>state</comment>
        <translation>sent</translation>
    </message>
    <message>
        <source>受信</source>
        <comment>state</comment>
        <translation>received</translation>
    </message>
    <message>
        <source>結合</source>
        <translation>Joined</translation>
    </message>
    <message>
        <source>否定</source>
        <translation>Not</translation>
    </message>
    <message>
        <source>値</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>または</source>
        <translation>or</translation>
    </message>
    <message>
        <source>かつ</source>
        <translation>and</translation>
    </message>
    <message>
        <source>でない</source>
        <translation>not</translation>
    </message>
    <message>
        <source> 日前から</source>
        <translation> days ago or later</translation>
    </message>
    <message>
        <source>検索する文字列（* は任意の文字）</source>
        <translation>Text to find (* stands for anything)</translation>
    </message>
    <message>
        <source>保存できませんでした。</source>
        <translation>It could not be saved. </translation>
    </message>
    <message>
        <source>全般(&amp;G)</source>
        <translation>&amp;General</translation>
    </message>
    <message>
        <source>名前(&amp;N)</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>説明(&amp;D)</source>
        <translation>&amp;Description</translation>
    </message>
    <message>
        <source>場所(&amp;P)</source>
        <translation>&amp;Place</translation>
    </message>
    <message>
        <source>使用する(&amp;U)</source>
        <translation>&amp;Use</translation>
    </message>
    <message>
        <source>既定にする(&amp;T)</source>
        <translation>Make defaul&amp;t</translation>
    </message>
    <message>
        <source>標準のオブジェクト</source>
        <translation>Standard object</translation>
    </message>
    <message>
        <source>（最上位）</source>
        <translation>(top)</translation>
    </message>
    <message>
        <source>フォルダ(&amp;F)</source>
        <translation>&amp;Folder</translation>
    </message>
    <message>
        <source>条件を追加(&amp;A)</source>
        <translation>&amp;Add Condition</translation>
    </message>
    <message>
        <source>条件を削除(&amp;D)</source>
        <translation>&amp;Delete Condition</translation>
    </message>
    <message>
        <source>条件をSQLで書く(&amp;Q)</source>
        <translation>Write the condition in S&amp;QL</translation>
    </message>
    <message>
        <source>例: mail.FIELD_SUBJECT LIKE &apos;*会議*&apos; AND STATUS = 4</source>
        <translation>Example: mail.FIELD_SUBJECT LIKE &apos;*meeting*&apos; AND STATUS = 4</translation>
    </message>
    <message>
        <source>SQLの条件が書かれていません。</source>
        <translation>There is no SQL condition.</translation>
    </message>
    <message>
        <source>条件のフォルダをたどると、このフォルダ自身に戻ります。</source>
        <translation>The folders of the conditions lead back to this folder.</translation>
    </message>
    <message>
        <source>パスワードを表示します。</source>
        <translation>Shows the password.</translation>
    </message>
    <message>
        <source>上へ(&amp;U)</source>
        <translation>&amp;Up</translation>
    </message>
    <message>
        <source>下へ(&amp;W)</source>
        <translation>Do&amp;wn</translation>
    </message>
    <message>
        <source>アドレス(&amp;A)</source>
        <translation>&amp;Addresses</translation>
    </message>
    <message>
        <source>メールアドレス</source>
        <translation>Mail address</translation>
    </message>
    <message>
        <source>表示名</source>
        <translation>Display name</translation>
    </message>
    <message>
        <source>タイトル</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>新しい</source>
        <translation>New </translation>
    </message>
    <message>
        <source>イベント(&amp;V)</source>
        <translation>E&amp;vent</translation>
    </message>
    <message>
        <source>プロファイル(&amp;R)</source>
        <translation>P&amp;rofile</translation>
    </message>
    <message>
        <source>ファイル</source>
        <translation>File</translation>
    </message>
    <message>
        <source>メッセージのデータベース(&amp;B)</source>
        <translation>Message data&amp;bases</translation>
    </message>
    <message>
        <source>追加(&amp;A)</source>
        <translation>&amp;Add</translation>
    </message>
    <message>
        <source>新しいパスワード(&amp;W)</source>
        <translation>Ne&amp;w password</translation>
    </message>
    <message>
        <source>もう一度入力(&amp;I)</source>
        <translation>Aga&amp;in</translation>
    </message>
    <message>
        <source>変えないときは空のまま</source>
        <translation>Leave empty to keep it</translation>
    </message>
    <message>
        <source>最初のログインで決まります</source>
        <translation>Set at the first login</translation>
    </message>
    <message>
        <source>データーベースに保存されているメッセージも削除されます。よろしいですか？</source>
        <translation>The messages stored in the database will be deleted as well. Continue?</translation>
    </message>
    <message>
        <source>使用中</source>
        <translation>in use</translation>
    </message>
    <message>
        <source>二つのパスワードが一致しません。</source>
        <translation>The two passwords differ.</translation>
    </message>
    <message>
        <source>一覧をページに分ける(&amp;P)</source>
        <translation>Divide lists into &amp;pages</translation>
    </message>
    <message>
        <source>1ページの行数(&amp;N)</source>
        <translation>&amp;Number of rows on a page</translation>
    </message>
    <message>
        <source> 通</source>
        <translation> messages</translation>
    </message>
    <message>
        <source>メッセージの内容をHTMLとして扱わない（安全）(&amp;H)</source>
        <translation>Do not treat message text as &amp;HTML in lists (safe)</translation>
    </message>
    <message>
        <source>ツールバーをアイコンだけにする(&amp;I)</source>
        <translation>Only &amp;icons in toolbars</translation>
    </message>
    <message>
        <source>ステータスバーを表示する(&amp;S)</source>
        <translation>Show the &amp;status bar</translation>
    </message>
    <message>
        <source>通知領域にアイコンを表示する(&amp;T)</source>
        <translation>Show an icon in the no&amp;tification area</translation>
    </message>
    <message>
        <source>自動的に送受信する(&amp;A)</source>
        <translation>Send and receive &amp;automatically</translation>
    </message>
    <message>
        <source>間隔(&amp;N)</source>
        <translation>I&amp;nterval</translation>
    </message>
    <message>
        <source> 分</source>
        <translation> min</translation>
    </message>
    <message>
        <source>受信したことを通知(&amp;R)</source>
        <translation>Send read &amp;receipts when asked</translation>
    </message>
    <message>
        <source>編集してから送信(&amp;E)</source>
        <translation>&amp;Edit before sending</translation>
    </message>
    <message>
        <source>新着メッセージを知らせる(&amp;M)</source>
        <translation>Notify me of new &amp;messages</translation>
    </message>
    <message>
        <source>開くかどうかを尋ねる(&amp;D)</source>
        <translation>Ask whether to open them (&amp;D)</translation>
    </message>
    <message>
        <source>音を鳴らす(&amp;S)</source>
        <translation>Play a &amp;sound</translation>
    </message>
    <message>
        <source>音のファイル(&amp;F)</source>
        <translation>Sound &amp;file</translation>
    </message>
    <message>
        <source>参照(&amp;B)..</source>
        <translation>&amp;Browse..</translation>
    </message>
    <message>
        <source>音のファイル</source>
        <translation>Sound File</translation>
    </message>
    <message>
        <source>WAVE (*.wav);;すべてのファイル (*)</source>
        <translation>WAVE (*.wav);;All files (*)</translation>
    </message>
    <message>
        <source>音のファイルがありません。</source>
        <translation>There is no such sound file.</translation>
    </message>
    <message>
        <source>返信、転送を編集(&amp;S)</source>
        <translation>Quote in replie&amp;s and forwards</translation>
    </message>
    <message>
        <source>返信の件名(&amp;Y)</source>
        <translation>Subject of a repl&amp;y</translation>
    </message>
    <message>
        <source>転送の件名(&amp;F)</source>
        <translation>Subject of a &amp;forward</translation>
    </message>
    <message>
        <source>引用の記号(&amp;Q)</source>
        <translation>&amp;Quote mark</translation>
    </message>
    <message>
        <source>MIME形式(&amp;M) :</source>
        <translation>&amp;MIME encoding:</translation>
    </message>
    <message>
        <source>本文もMIME形式にする(&amp;T)</source>
        <translation>Encode the &amp;text as well</translation>
    </message>
    <message>
        <source>本文(&amp;X)</source>
        <translation>Te&amp;xt</translation>
    </message>
    <message>
        <source>本文として表示する形式(&amp;M)</source>
        <translation>Types shown as text (&amp;M)</translation>
    </message>
    <message>
        <source>本文として表示する形式（text/plain など）を一つ以上書いてください。</source>
        <translation>Write at least one type that is shown as text, such as text/plain.</translation>
    </message>
    <message>
        <source>設定</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>標準</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>表</source>
        <translation>Table</translation>
    </message>
    <message>
        <source>カード</source>
        <translation>Cards</translation>
    </message>
    <message>
        <source>メッセージ1通分の始まりと終わり</source>
        <translation>beginning and end of one message</translation>
    </message>
    <message>
        <source>件名</source>
        <translation>subject</translation>
    </message>
    <message>
        <source>日時</source>
        <translation>date and time</translation>
    </message>
    <message>
        <source>すべてのアドレス</source>
        <translation>all addresses</translation>
    </message>
    <message>
        <source>送信者</source>
        <translation>From</translation>
    </message>
    <message>
        <source>写し</source>
        <translation>Cc</translation>
    </message>
    <message>
        <source>隠し写し</source>
        <translation>Bcc</translation>
    </message>
    <message>
        <source>未開封の印 ○</source>
        <translation>mark for unread messages, ○</translation>
    </message>
    <message>
        <source>添付ファイルの印 ＠</source>
        <translation>mark for attachments, ＠</translation>
    </message>
    <message>
        <source>優先度の印 ↑ ↓</source>
        <translation>mark for priority, ↑ ↓</translation>
    </message>
    <message>
        <source>大きさ（キロバイト）</source>
        <translation>size in kilobytes</translation>
    </message>
    <message>
        <source>本文の始め</source>
        <translation>beginning of the text</translation>
    </message>
    <message>
        <source>&lt;+DIALOG&gt;開く&lt;+DIALOG&gt;</source>
        <translation>&lt;+DIALOG&gt;Open&lt;+DIALOG&gt;</translation>
    </message>
    <message>
        <source>メッセージを開くリンク</source>
        <translation>link that opens the message</translation>
    </message>
    <message>
        <source>&lt;+DIALOG&gt;&lt;REPLAY&gt;返信&lt;+DIALOG&gt;</source>
        <translation>&lt;+DIALOG&gt;&lt;REPLAY&gt;Reply&lt;+DIALOG&gt;</translation>
    </message>
    <message>
        <source>返信するリンク</source>
        <translation>link that replies</translation>
    </message>
    <message>
        <source>&lt;+DIALOG&gt;&lt;REPLAYALL&gt;全員に返信&lt;+DIALOG&gt;</source>
        <translation>&lt;+DIALOG&gt;&lt;REPLAYALL&gt;Reply to all&lt;+DIALOG&gt;</translation>
    </message>
    <message>
        <source>全員に返信するリンク</source>
        <translation>link that replies to all</translation>
    </message>
    <message>
        <source>&lt;+DIALOG&gt;&lt;FORWARD&gt;転送&lt;+DIALOG&gt;</source>
        <translation>&lt;+DIALOG&gt;&lt;FORWARD&gt;Forward&lt;+DIALOG&gt;</translation>
    </message>
    <message>
        <source>転送するリンク</source>
        <translation>link that forwards</translation>
    </message>
    <message>
        <source>フォルダの名前</source>
        <translation>name of the folder</translation>
    </message>
    <message>
        <source>フォルダの説明</source>
        <translation>description of the folder</translation>
    </message>
    <message>
        <source>返信(&amp;R)</source>
        <translation>&amp;Reply</translation>
    </message>
    <message>
        <source>全員に返信(&amp;A)</source>
        <translation>Reply to &amp;All</translation>
    </message>
    <message>
        <source>フォルダに入れる(&amp;M)..</source>
        <translation>&amp;Move to a Folder..</translation>
    </message>
    <message>
        <source>くずかごに入れる(&amp;D)</source>
        <translation>Move to the Trash (&amp;D)</translation>
    </message>
    <message>
        <source>くずかごから出す(&amp;U)</source>
        <translation>Take O&amp;ut of the Trash</translation>
    </message>
    <message>
        <source>リンク▾</source>
        <translation>Links▾</translation>
    </message>
    <message>
        <source>このページのリンク</source>
        <translation>Links of this page</translation>
    </message>
    <message>
        <source>最初のページ</source>
        <translation>First page</translation>
    </message>
    <message>
        <source>ページ番号</source>
        <translation>Page number</translation>
    </message>
    <message>
        <source>最新のページ</source>
        <translation>Newest page</translation>
    </message>
    <message>
        <source>フォルダの検索</source>
        <translation>Search the folder</translation>
    </message>
    <message>
        <source>件名、アドレスを検索</source>
        <translation>Search subject, address</translation>
    </message>
    <message>
        <source>更新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>&lt;b&gt;アカウントの追加&lt;/b&gt;: メニューの「ファイル」→「新規作成」→「アカウント」（Alt+F、N、A）。受信サーバーと送信サーバーは「接続を確認」で試せます。</source>
        <translation>&lt;b&gt;Add an account&lt;/b&gt;: menu “File” → “New” → “Account” (Alt+F, N, A). “Check the Connection” tries its servers.</translation>
    </message>
    <message>
        <source>&lt;b&gt;送受信&lt;/b&gt;: メニューの「ツール」→「メッセージ送受信」（Ctrl+M）。</source>
        <translation>&lt;b&gt;Send and receive&lt;/b&gt;: menu “Tools” → “Send and Receive Messages” (Ctrl+M).</translation>
    </message>
    <message>
        <source>&lt;b&gt;これまでのメール&lt;/b&gt;: メニューの「ファイル」→「ファイルから取り込む」または「フォルダから取り込む」。mbox、Maildir、emlのファイルを読みます。</source>
        <translation>&lt;b&gt;Mail you have&lt;/b&gt;: menu “File” → “Import from Files” or “Import from a Folder”. It reads mbox, Maildir and .eml files.</translation>
    </message>
    <message>
        <source>&lt;b&gt;使い方&lt;/b&gt;: F1キー。</source>
        <translation>&lt;b&gt;Guide&lt;/b&gt;: the key F1.</translation>
    </message>
    <message>
        <source>ようこそ</source>
        <translation>Welcome</translation>
    </message>
    <message>
        <source>メールを受信するには、アカウントを追加してください。</source>
        <translation>Add an account to receive mail.</translation>
    </message>
    <message>
        <source>&lt;p&gt;フォルダを表示できません。&lt;/p&gt;&lt;p&gt;</source>
        <translation>&lt;p&gt;The folder cannot be shown.&lt;/p&gt;&lt;p&gt;</translation>
    </message>
    <message>
        <source>このフォルダのレイアウト</source>
        <translation>Layout of this folder</translation>
    </message>
    <message>
        <source>ひな形(&amp;L):</source>
        <translation>&amp;Layout:</translation>
    </message>
    <message>
        <source>タグ（ダブルクリックまたはEnterで挿入）(&amp;T):</source>
        <translation>&amp;Tags (double-click or Enter inserts):</translation>
    </message>
    <message>
        <source>ページのフォルダ(&amp;P):</source>
        <translation>Folder of the &amp;pages:</translation>
    </message>
    <message>
        <source>フォルダのレイアウト - </source>
        <translation>Folder Layout - </translation>
    </message>
    <message>
        <source>このレイアウトは何も表示しません。</source>
        <translation>This layout shows nothing.</translation>
    </message>
    <message>
        <source>ページのフォルダが見つかりません。</source>
        <translation>The folder of the pages does not exist.</translation>
    </message>
    <message>
        <source>変更を保存しますか？</source>
        <translation>Save the changes?</translation>
    </message>
    <message>
        <source>このプログラムのデータベースではありません。</source>
        <translation>It is not a database of this program.</translation>
    </message>
    <message>
        <source>新しい版のプログラムで作られたデータベースです。プログラムを更新してください。</source>
        <translation>The database was made by a newer program. Update the program.</translation>
    </message>
    <message>
        <source>実行できる文は一つだけです。</source>
        <translation>Only one statement can be run.</translation>
    </message>
    <message>
        <source>ディスクに書き込めません。</source>
        <translation>Cannot write to the disk.</translation>
    </message>
    <message>
        <source>データベースが使用中です。</source>
        <translation>The database is in use.</translation>
    </message>
    <message>
        <source>同じ名前のファイルが既にあります。</source>
        <translation>There is a file of this name already.</translation>
    </message>
    <message>
        <source>データベースファイルが開かれていません。</source>
        <translation>The database file is not open.</translation>
    </message>
    <message>
        <source>この文の結果は変更できません。</source>
        <translation>The result of this statement cannot be changed.</translation>
    </message>
    <message>
        <source>ファイルを複製できません。ディスクの空き容量を確認してください。</source>
        <translation>The file cannot be copied. Check the free space on the disk.</translation>
    </message>
    <message>
        <source>ファイルがありません。</source>
        <translation>There is no such file.</translation>
    </message>
    <message>
        <source>データベースファイルを開けません。ファイルとフォルダに書き込めるかどうかを確認してください。</source>
        <translation>The database file cannot be opened. Check whether the file and its folder can be written.</translation>
    </message>
    <message>
        <source>データベースが使用中です。しばらくしてからやり直してください。</source>
        <translation>The database is in use. Try again in a while.</translation>
    </message>
    <message>
        <source>ディスクに書き込めません。空き容量を確認してください。</source>
        <translation>Cannot write to the disk. Check its free space.</translation>
    </message>
    <message>
        <source>データベースファイルを読み書きできません。</source>
        <translation>The database file cannot be read or written.</translation>
    </message>
    <message>
        <source>ディスクの空き容量が足りません。空きを作ってからやり直してください。</source>
        <translation>The disk is full. Make room and try again.</translation>
    </message>
    <message>
        <source>データベースファイルが壊れています。</source>
        <translation>The database file is damaged.</translation>
    </message>
    <message>
        <source>条件に使えるのはメッセージの検索だけです。</source>
        <translation>A condition can only search messages.</translation>
    </message>
    <message>
        <source>データベースファイルに書き込めません。</source>
        <translation>Cannot write to the database file.</translation>
    </message>
    <message>
        <source>プロファイルのフォルダに書き込めません。</source>
        <translation>Cannot write to the profile&apos;s folder.</translation>
    </message>
    <message>
        <source>パスワードの変更を完了できません。ファイルを使っているプログラムを終了してから、もう一度ログインしてください。</source>
        <translation>The change of the password cannot be completed. End the program that uses the file and log in again.</translation>
    </message>
    <message>
        <source>条件にWITHは使えません。</source>
        <translation>A condition cannot use WITH.</translation>
    </message>
    <message>
        <source>条件に使える文は一つだけです。</source>
        <translation>A condition is one statement only.</translation>
    </message>
    <message>
        <source>条件の引用符が閉じていません。</source>
        <translation>A quotation mark of the condition is not closed.</translation>
    </message>
    <message>
        <source>パスワードが入力されなかったので、受信しませんでした。</source>
        <translation>Nothing was received because no password was entered.</translation>
    </message>
    <message>
        <source>接続できました。</source>
        <translation>The connection works.</translation>
    </message>
    <message>
        <source>接続を拒否されました</source>
        <translation>the connection was refused</translation>
    </message>
    <message>
        <source>その名前のサーバーは見つかりません</source>
        <translation>there is no server of that name</translation>
    </message>
    <message>
        <source>応答がありません</source>
        <translation>there is no answer</translation>
    </message>
    <message>
        <source>ネットワークにつながっていません</source>
        <translation>there is no network connection</translation>
    </message>
    <message>
        <source>通信が許可されていません</source>
        <translation>the connection is not allowed</translation>
    </message>
    <message>
        <source>サーバーが接続を切りました</source>
        <translation>the server closed the connection</translation>
    </message>
    <message>
        <source>暗号化の取り決めができませんでした</source>
        <translation>no encryption could be agreed on</translation>
    </message>
    <message>
        <source>通信エラー%1</source>
        <translation>network error %1</translation>
    </message>
    <message>
        <source>サーバー自身が署名した証明書です</source>
        <translation>the certificate is signed by the server itself</translation>
    </message>
    <message>
        <source>証明書の発行者が信頼できる認証局ではありません</source>
        <translation>the certificate&apos;s issuer is not a trusted authority</translation>
    </message>
    <message>
        <source>証明書がこのサーバー名のものではありません</source>
        <translation>the certificate is not for this server name</translation>
    </message>
    <message>
        <source>証明書の有効期限が切れています</source>
        <translation>the certificate has expired</translation>
    </message>
    <message>
        <source>証明書の有効期間がまだ始まっていません。パソコンの日付を確認してください</source>
        <translation>the certificate is not valid yet; check the computer&apos;s date</translation>
    </message>
    <message>
        <source>証明書が取り消されています</source>
        <translation>the certificate has been revoked</translation>
    </message>
    <message>
        <source>サーバーが証明書を示しません</source>
        <translation>the server shows no certificate</translation>
    </message>
    <message>
        <source>証明書の署名が正しくありません</source>
        <translation>the certificate&apos;s signature is wrong</translation>
    </message>
    <message>
        <source>証明書の用途が正しくありません</source>
        <translation>the certificate is for another purpose</translation>
    </message>
    <message>
        <source>証明書のエラー%1</source>
        <translation>certificate error %1</translation>
    </message>
    <message>
        <source>サーバー「%1」（ポート%2）に接続できません。サーバー名、ポート番号、ネットワークの接続を確認してください。（%3）</source>
        <translation>The server “%1” (port %2) cannot be reached. Check the server name, the port and the network connection. (%3)</translation>
    </message>
    <message>
        <source>サーバー「%1」の証明書を確認できないため、通信を中止しました。（%2）</source>
        <translation>The certificate of the server “%1” cannot be verified, so the connection was ended. (%2)</translation>
    </message>
    <message>
        <source>サーバー「%1」との暗号化に失敗しました。ポート番号とセキュリティの設定を確認してください。（%2）</source>
        <translation>The connection to the server “%1” could not be encrypted. Check the port and the security setting. (%2)</translation>
    </message>
    <message>
        <source>サーバー「%1」に接続できません（時間切れ）。サーバー名とネットワークの接続を確認してください。</source>
        <translation>The server “%1” cannot be reached (time-out). Check the server name and the network connection.</translation>
    </message>
    <message>
        <source>サーバー「%1」の応答がありません（時間切れ）。しばらくしてからもう一度実行してください。</source>
        <translation>The server “%1” does not answer (time-out). Try again in a while.</translation>
    </message>
    <message>
        <source>受信中に接続が切れました。受信済みのメッセージは保存されています。もう一度受信してください。</source>
        <translation>The connection broke while receiving. What was received is stored. Receive again.</translation>
    </message>
    <message>
        <source>サーバーが接続を切りました。しばらくしてからもう一度受信してください。</source>
        <translation>The server closed the connection. Receive again in a while.</translation>
    </message>
    <message>
        <source>大きすぎるメッセージなので受信できません。</source>
        <translation>The message is too large to be received.</translation>
    </message>
    <message>
        <source>サーバーの応答を理解できません。サーバー名とポート番号を確認してください。</source>
        <translation>The server&apos;s answer cannot be understood. Check the server name and the port.</translation>
    </message>
    <message>
        <source>サーバーに接続を断られました。しばらくしてからもう一度受信してください。</source>
        <translation>The server refused the connection. Receive again in a while.</translation>
    </message>
    <message>
        <source>メッセージの一覧を取得できません。</source>
        <translation>The list of messages cannot be fetched.</translation>
    </message>
    <message>
        <source>メッセージを受信できません。</source>
        <translation>The message cannot be received.</translation>
    </message>
    <message>
        <source>サーバーのメッセージを削除できません。</source>
        <translation>The message on the server cannot be deleted.</translation>
    </message>
    <message>
        <source>サーバーがSTARTTLSに対応していません。アカウントの受信のセキュリティを確認してください。</source>
        <translation>The server does not offer STARTTLS. Check the account&apos;s security for receiving.</translation>
    </message>
    <message>
        <source>暗号化を始められません。</source>
        <translation>The encryption cannot begin.</translation>
    </message>
    <message>
        <source>暗号化の前に余分なデータが届きました。通信が改ざんされているおそれがあります。</source>
        <translation>Unexpected data arrived before encryption began. Someone may be tampering with the connection.</translation>
    </message>
    <message>
        <source>ログインできません。ユーザー名とパスワードを確認してください。</source>
        <translation>The login failed. Check the user name and the password.</translation>
    </message>
    <message>
        <source>ユーザー名かパスワードに改行などの使えない文字があります。</source>
        <translation>The user name or the password has characters that cannot be used, such as line breaks.</translation>
    </message>
    <message>
        <source>サーバーがAPOPに対応していません。アカウントの受信の種類をPOP3に変えてください。</source>
        <translation>The server does not offer APOP. Change the account&apos;s type for receiving to POP3.</translation>
    </message>
    <message>
        <source>アカウントの選択</source>
        <translation>Choose an Account</translation>
    </message>
    <message>
        <source>送信する際のアカウントを選択して下さい。</source>
        <translation>Choose the account to send with.</translation>
    </message>
    <message>
        <source>送信で使用するアカウントが不明です。</source>
        <translation>The account to send with is not known.</translation>
    </message>
    <message>
        <source>（サーバーの応答: </source>
        <translation> (the server&apos;s answer: </translation>
    </message>
    <message>
        <source>サーバーに接続を断られました。しばらくしてからもう一度送信してください。</source>
        <translation>The server refused the connection. Send again in a while.</translation>
    </message>
    <message>
        <source>サーバーに接続を断られました。</source>
        <translation>The server refused the connection.</translation>
    </message>
    <message>
        <source>メッセージの送信を断られました。</source>
        <translation>The server refused the message.</translation>
    </message>
    <message>
        <source>サーバーの応答を理解できません。</source>
        <translation>The server&apos;s answer cannot be understood.</translation>
    </message>
    <message>
        <source>サーバーがSTARTTLSに対応していません。アカウントの送信のセキュリティを確認してください。</source>
        <translation>The server does not offer STARTTLS. Check the account&apos;s security for sending.</translation>
    </message>
    <message>
        <source>サーバーが送信時の認証に対応していません。アカウントの送信の設定を確認してください。</source>
        <translation>The server offers no login for sending. Check the account&apos;s settings for sending.</translation>
    </message>
    <message>
        <source>送信できないアドレスです: </source>
        <translation>Cannot be sent to: </translation>
    </message>
    <message>
        <source>宛先がありません。</source>
        <translation>There is no recipient.</translation>
    </message>
    <message>
        <source>メッセージが大きすぎます。サーバーが受け付けるのは%1バイトまでです。</source>
        <translation>The message is too large. The server takes up to %1 bytes.</translation>
    </message>
    <message>
        <source>サーバーが接続を切りました。メッセージは送信待ちのまま残ります。</source>
        <translation>The server closed the connection. The message stays waiting.</translation>
    </message>
    <message>
        <source>受信したメッセージを保存できません。サーバーには残っています。</source>
        <translation>A received message cannot be stored. It is still on the server.</translation>
    </message>
    <message>
        <source>メッセージをディスクに書き込めません。サーバーからは削除しません。</source>
        <translation>The messages cannot be written to the disk. They are not deleted from the server.</translation>
    </message>
    <message>
        <source>メッセージは送信されましたが、送信済みとして保存できません。</source>
        <translation>The message was sent but cannot be stored as sent.</translation>
    </message>
    <message>
        <source>メッセージを送信しました。</source>
        <translation>The message was sent.</translation>
    </message>
    <message>
        <source>受信停止(&amp;S)</source>
        <translation>Blocked mail (&amp;S)</translation>
    </message>
    <message>
        <source>動作(&amp;D)</source>
        <translation>Action (&amp;D)</translation>
    </message>
    <message>
        <source>次の条件に合うメッセージを受信しない</source>
        <translation>Do not receive messages that match these conditions</translation>
    </message>
    <message>
        <source>受信停止の条件</source>
        <translation>Conditions for blocked mail</translation>
    </message>
    <message>
        <source>追加するには ($追加) を右クリックするか、選んでEnterキーを押します。
使える記号: * 任意の文字列、? 任意の1文字、# 数字、[ ] いずれかの文字</source>
        <translation>To add one, right-click ($add), or select it and press Enter.
Wildcards: * anything, ? one character, # a digit, [ ] one of these characters</translation>
    </message>
    <message>
        <source>受信を停止したメッセージをサーバーから削除する(&amp;X)</source>
        <translation>Delete blocked messages from the server (&amp;X)</translation>
    </message>
    <message>
        <source>条件の編集</source>
        <translation>Edit Conditions</translation>
    </message>
    <message>
        <source>メーラー(&amp;M)</source>
        <translation>&amp;Mailer</translation>
    </message>
    <message>
        <source>送信者(&amp;F)</source>
        <translation>Sender (&amp;F)</translation>
    </message>
    <message>
        <source>メッセージ条件</source>
        <translation>Message Rules</translation>
    </message>
    <message>
        <source>データベースを置くフォルダ</source>
        <translation>folder of the databases</translation>
    </message>
    <message>
        <source>開くメッセージのファイルまたはmailto:のアドレス</source>
        <translation>message files or mailto: addresses to open</translation>
    </message>
    <message>
        <source>リモート画像を表示(&amp;R)</source>
        <translation>Show &amp;Remote Pictures</translation>
    </message>
    <message>
        <source>送信者に知られないように、リモート画像は表示していません。</source>
        <translation>Remote pictures are hidden so that the sender cannot track you.</translation>
    </message>
    <message>
        <source>次のアドレスを開きます。よろしいですか？

</source>
        <translation>This address will be opened. Continue?

</translation>
    </message>
    <message>
        <source>フォルダを最新のページで開く(&amp;W)</source>
        <translation>Open folders at their ne&amp;west page</translation>
    </message>
    <message>
        <source>表示の言語（次の起動から）(&amp;L)</source>
        <translation>&amp;Language (from the next start)</translation>
    </message>
    <message>
        <source>システムに合わせる</source>
        <translation>As the system</translation>
    </message>
    <message>
        <source>プロファイル</source>
        <comment>group</comment>
        <translation>Profiles</translation>
    </message>
    <message>
        <source>フォルダ</source>
        <comment>group</comment>
        <translation>Folders</translation>
    </message>
    <message>
        <source>アカウント</source>
        <comment>group</comment>
        <translation>Accounts</translation>
    </message>
    <message>
        <source>アドレスブック</source>
        <comment>group</comment>
        <translation>Address Books</translation>
    </message>
    <message>
        <source>ブックマーク</source>
        <comment>group</comment>
        <translation>Bookmarks</translation>
    </message>
    <message>
        <source>画面の状態を1行ずつ標準出力に書く（自動操作のため）</source>
        <translation>writes the state of the windows to standard output, one line each (for automation)</translation>
    </message>
    <message>
        <source>プロファイルを使えません。</source>
        <translation>The profile cannot be used.</translation>
    </message>
    <message>
        <source>「%1」は既にあります。上書きしますか？</source>
        <translation>“%1” already exists. Overwrite it?</translation>
    </message>
    <message>
        <source>保存されているメッセージを読み込めないため、取り込みません。</source>
        <translation>Nothing is imported because the stored messages cannot be read.</translation>
    </message>
    <message>
        <source>「%1」には書き出したメッセージのほかのものがあるので、置き換えません。</source>
        <translation>“%1” contains something other than exported messages, so it is not replaced.</translation>
    </message>
    <message>
        <source>「%1」には別の書き出しが書き込んでいます。</source>
        <translation>Another export is writing to “%1”.</translation>
    </message>
    <message>
        <source>もう一度送信(&amp;G)</source>
        <translation>Send a&amp;gain</translation>
    </message>
    <message>
        <source>送信済みにする(&amp;K)</source>
        <translation>Mar&amp;k as Sent</translation>
    </message>
    <message>
        <source>このメッセージは、届いたかどうか分かりません。相手に確かめてから選んでください。</source>
        <translation>It is not known whether this message arrived. Ask the recipient, then choose.</translation>
    </message>
    <message>
        <source>いつ送信を試みたか: %1（サーバー「%2」）</source>
        <translation>Sending was attempted: %1 (server “%2”)</translation>
    </message>
    <message>
        <source>サーバーの応答: %1</source>
        <translation>The server&apos;s reply: %1</translation>
    </message>
    <message>
        <source>メッセージを変更できません。</source>
        <translation>The message cannot be changed. </translation>
    </message>
    <message>
        <source>メッセージを削除できません。</source>
        <translation>The message cannot be deleted. </translation>
    </message>
    <message>
        <source>メッセージ%1を読み込めません。</source>
        <translation>Message %1 cannot be read. </translation>
    </message>
    <message>
        <source>メッセージがありません。</source>
        <translation>There is no message.</translation>
    </message>
    <message>
        <source>パスワードの変更がまだ終わっていません。プログラムを終了して、新しいパスワードでログインしてください。</source>
        <translation>The password change is not finished yet. End the program and log in with the new password.</translation>
    </message>
    <message>
        <source>メッセージのデータが壊れています。</source>
        <translation>The message&apos;s data are damaged.</translation>
    </message>
    <message>
        <source>ファイルが空です。中身が失われています。</source>
        <translation>The file is empty. Its contents are lost.</translation>
    </message>
    <message>
        <source>ファイルの先頭が壊れています。</source>
        <translation>The beginning of the file is damaged.</translation>
    </message>
    <message>
        <source>記録ファイル「%1」が壊れているか、別のデータベースのものです。</source>
        <translation>The log “%1” is damaged or belongs to another database.</translation>
    </message>
    <message>
        <source>データベースファイルを作成できません。</source>
        <translation>The database file cannot be created.</translation>
    </message>
    <message>
        <source>「%1」はありません。</source>
        <translation>“%1” does not exist.</translation>
    </message>
    <message>
        <source>「%1」の近くに誤りがあります。</source>
        <translation>There is a mistake near “%1”.</translation>
    </message>
    <message>
        <source>パスワードが違うか、ファイルの先頭が壊れています。</source>
        <translation>The password is wrong, or the beginning of the file is damaged.</translation>
    </message>
    <message>
        <source>送信中か、送信の結果が分からないメッセージです。</source>
        <translation>The message is being sent, or it is not known whether it was sent.</translation>
    </message>
    <message>
        <source>同じメッセージが既に保存されています。</source>
        <translation>The same message is stored already.</translation>
    </message>
    <message>
        <source>文を実行できません。</source>
        <translation>The statement cannot be run.</translation>
    </message>
    <message>
        <source>データベースのエラーです（番号%1）。</source>
        <translation>An error of the database (number %1).</translation>
    </message>
    <message>
        <source>必要な表がありません。</source>
        <translation>A table is missing.</translation>
    </message>
    <message>
        <source>データベースファイルに読み込めない部分があります。</source>
        <translation>Parts of the database file cannot be read.</translation>
    </message>
    <message>
        <source>データベースの構造に%1件の異常があります。</source>
        <translation>Faults in the structure of the database: %1.</translation>
    </message>
    <message>
        <source>メッセージのないフォルダの登録が%1件あります。</source>
        <translation>Folder entries without a message: %1.</translation>
    </message>
    <message>
        <source>どのメッセージのものか分からない本文が%1件あります。</source>
        <translation>Sources that belong to no message: %1.</translation>
    </message>
    <message>
        <source>読み込めないメッセージが%1通あります。</source>
        <translation>Messages that cannot be read: %1.</translation>
    </message>
    <message>
        <source>壊れた設定の値が%1件あります。</source>
        <translation>Damaged values of settings: %1.</translation>
    </message>
    <message>
        <source>記録ファイル（-wal）が壊れていました。最後の変更が失われた可能性があります。</source>
        <translation>The log (-wal) was damaged. The last changes may be lost.</translation>
    </message>
    <message>
        <source>件名不明</source>
        <translation>subject unknown</translation>
    </message>
    <message>
        <source>日付不明</source>
        <translation>date unknown</translation>
    </message>
    <message>
        <source>ファイルが途中で切れています。</source>
        <translation>The file is cut short.</translation>
    </message>
    <message>
        <source>データベースファイルを作成できません。ディスクの空き容量を確認してください。</source>
        <translation>The database file cannot be created. Check the free space on the disk.</translation>
    </message>
    <message>
        <source>フォルダ「%1」に書き込めません。</source>
        <translation>The folder “%1” cannot be written to.</translation>
    </message>
    <message>
        <source>ほかのプログラムがデータベースを作成しています。</source>
        <translation>Another program is creating the database.</translation>
    </message>
    <message>
        <source>「%1」: 前のパスワードのままです。</source>
        <translation>“%1”: still under the former password.</translation>
    </message>
    <message>
        <source>パスワードの変更を完了できません。「%1」の新しいファイルがありません。</source>
        <translation>The password change cannot be completed. The new file of “%1” is missing.</translation>
    </message>
    <message>
        <source>パスワードの変更を完了できません。「%1」の新しいファイルが壊れています。</source>
        <translation>The password change cannot be completed. The new file of “%1” is damaged.</translation>
    </message>
    <message>
        <source>使っているプログラム: %1</source>
        <translation>Program that uses it: %1</translation>
    </message>
    <message>
        <source>ほかのプログラムがパスワードを変更しています。しばらくしてからやり直してください。</source>
        <translation>Another program is changing the password. Try again in a while.</translation>
    </message>
    <message>
        <source>ほかのプログラムがこのプロファイルを使っています。終了してからやり直してください。</source>
        <translation>Another program uses this profile. End it and try again.</translation>
    </message>
    <message>
        <source>データが壊れています。</source>
        <translation>The data are damaged.</translation>
    </message>
    <message>
        <source>別のプログラム（%1）が同じ作業をしています。</source>
        <translation>Another program (%1) is doing the same work.</translation>
    </message>
    <message>
        <source>「%1」が壊れているため、受信しません。</source>
        <translation>Nothing is received because “%1” is damaged.</translation>
    </message>
    <message>
        <source>サーバー「%1」の応答が遅すぎるため、通信を中止しました。しばらくしてからもう一度実行してください。</source>
        <translation>The server “%1” answers too slowly; the connection was ended. Try again in a while.</translation>
    </message>
    <message>
        <source>サーバー「%1」のポート%2は最初から暗号化する接続（TLS）のためのポートです。アカウントのセキュリティの設定かポート番号を確認してください。</source>
        <translation>Port %2 of the server “%1” is for connections that are encrypted from the start (TLS). Check the account&apos;s security setting or the port number.</translation>
    </message>
    <message>
        <source>サーバー「%1」の応答がありません（時間切れ）。ポート番号とセキュリティの設定を確認してください。</source>
        <translation>The server “%1” does not answer (time-out). Check the port number and the security setting.</translation>
    </message>
    <message>
        <source>サーバーがヘッダーだけの受信（TOP）に対応していないため、メッセージ条件はメッセージを受信してから調べます。</source>
        <translation>The server cannot give headers alone (TOP), so the message rules are tested after a message was received.</translation>
    </message>
    <message>
        <source>送信待ちのメッセージを読み込めません。</source>
        <translation>The waiting messages cannot be read. </translation>
    </message>
    <message>
        <source>送信の途中で終了したため、届いたかどうか分からないメッセージが%1通あります。開いて、もう一度送信するか、送信済みにするかを選んでください。</source>
        <translation>A program ended while it was sending, so it is not known whether some messages arrived: %1. Open them and choose whether to send them again or mark them as sent.</translation>
    </message>
    <message>
        <source>メッセージ「%1」を読み込めないので、送信しませんでした。</source>
        <translation>The message “%1” cannot be read and was not sent. </translation>
    </message>
    <message>
        <source>この宛先をサーバーに断られたので、送信しませんでした。</source>
        <translation>The server refused these recipients, so nothing was sent.</translation>
    </message>
    <message>
        <source>届いたかどうか分かりません。相手に確かめてから、もう一度送信するか、送信済みにするかを選んでください。</source>
        <translation>It is not known whether it arrived. Ask the recipient, then choose whether to send it again or mark it as sent.</translation>
    </message>
    <message>
        <source>アドレス「%1」の@より前に、このサーバーが扱えない文字があります（SMTPUTF8に対応していません）。半角の英数字のアドレスを使ってください。</source>
        <translation>The address “%1” has characters before the @ that this server cannot handle (it lacks SMTPUTF8). Use an address in ASCII.</translation>
    </message>
    <message>
        <source>差出人のアドレス「%1」をサーバーに断られました。</source>
        <translation>The server refused the sender “%1”.</translation>
    </message>
    <message>
        <source>宛先をサーバーに断られました。アドレスを確認してください。</source>
        <translation>The server refused recipients. Check the addresses. </translation>
    </message>
    <message>
        <source>送信の確認を受け取る前に接続が切れました。届いている可能性もあります。</source>
        <translation>The connection broke before the sending was confirmed. The message may have arrived.</translation>
    </message>
    <message>
        <source>データベースファイルが壊れているので、サーバーからは削除しません。</source>
        <translation>Nothing is deleted on the server because the database file is damaged.</translation>
    </message>
    <message>
        <source>送信の記録を保存できないので、送信しませんでした。</source>
        <translation>It was not sent because the record of the sending cannot be stored. </translation>
    </message>
    <message>
        <source>（サーバーは受け取りました）</source>
        <translation>(the server accepted it)</translation>
    </message>
    <message>
        <source>送信できなかったことを保存できません。</source>
        <translation>Cannot record that the message was not sent. </translation>
    </message>
    <message>
        <source>保存済みのメッセージを読み込めないので、サーバーから削除しません。</source>
        <translation>A stored message cannot be read, so it is not deleted on the server.</translation>
    </message>
    <message>
        <source>「%1」: ファイルの先頭が壊れています。パスワードは正しく、メッセージのファイルは開けます。</source>
        <translation>“%1”: the beginning of the file is damaged. The password is right; the message file can be opened.</translation>
    </message>
    <message>
        <source>なくなったファイルを元に戻せません。</source>
        <translation>The lost files cannot be brought back. </translation>
    </message>
    <message>
        <source>プロファイル一覧のファイルを読めないため、「%1」という名前で残しました。</source>
        <translation>The list of profiles cannot be read; it was kept under the name “%1”.</translation>
    </message>
    <message>
        <source>プロファイル一覧を、フォルダにある%1個のプロファイルから作り直しました。名前はログインすると元に戻ります。</source>
        <translation>The list of profiles was made anew from the folders of profiles found: %1. Their names come back with the login.</translation>
    </message>
    <message>
        <source>つなぎ直す(&amp;R)</source>
        <translation>&amp;Reconnect</translation>
    </message>
    <message>
        <source>ファイルを選ぶ(&amp;F)...</source>
        <translation>Choose &amp;file...</translation>
    </message>
    <message>
        <source>新しい空のファイルを作る(&amp;N)</source>
        <translation>Make a &amp;new, empty file</translation>
    </message>
    <message>
        <source>なくなったファイルを選ぶ</source>
        <translation>Choose the lost file</translation>
    </message>
    <message>
        <source>（メッセージ%1通）</source>
        <translation>(messages: %1)</translation>
    </message>
    <message>
        <source>ファイル「%1」%2が空になっています。</source>
        <translation>The file “%1” %2 is empty.</translation>
    </message>
    <message>
        <source>ファイル「%1」%2がありません。</source>
        <translation>The file “%1” %2 is missing.</translation>
    </message>
    <message>
        <source>「%1」がそのファイルです。</source>
        <translation>“%1” is that file.</translation>
    </message>
    <message>
        <source>フォルダにはほかのデータベースがありません。</source>
        <translation>The folder holds no other database.</translation>
    </message>
    <message>
        <source>フォルダにあるファイル: %1</source>
        <translation>Files in the folder: %1</translation>
    </message>
    <message>
        <source>「%1」は、なくなったファイルではありません。</source>
        <translation>“%1” is not the lost file.</translation>
    </message>
    <message>
        <source>「%1」は使用中です。</source>
        <translation>“%1” is in use.</translation>
    </message>
    <message>
        <source>「%1」を元に戻せません。</source>
        <translation>“%1” cannot be brought back.</translation>
    </message>
    <message>
        <source>プロファイル%1</source>
        <translation>Profile %1</translation>
    </message>
    <message>
        <source>ファイルが途中で切れているか、壊れています。</source>
        <translation>The file is cut short or damaged.</translation>
    </message>
    <message>
        <source>データベースファイル「%1」がありません。</source>
        <translation>The database file “%1” is missing.</translation>
    </message>
    <message>
        <source>「%1」: ファイルの先頭が壊れているか、このプロファイルのファイルではありません。</source>
        <translation>“%1”: the beginning of the file is damaged, or it is no file of this profile.</translation>
    </message>
    <message>
        <source>データベースファイル「%1」が壊れています。</source>
        <translation>The database file “%1” is damaged.</translation>
    </message>
    <message>
        <source>読み込めないメッセージがあるかもしれません。決めるまでは受信せず、サーバーのメッセージも削除しません。</source>
        <translation>Some messages may be unreadable. Until you decide, nothing is received, and nothing is deleted on the server.</translation>
    </message>
    <message>
        <source>読み込めるメッセージを「ファイル」の「フォルダの書き出し」で別の場所に保存するか、バックアップから戻してください。「vornctl check」で、どのメッセージが読み込めないかを調べられます。</source>
        <translation>Save the readable messages elsewhere by File &gt; Export the Folder, or restore a backup. “vornctl check” tells which messages cannot be read.</translation>
    </message>
    <message>
        <source>それでも受信する</source>
        <translation>Receive all the same</translation>
    </message>
    <message>
        <source>受信しない</source>
        <translation>Do not receive</translation>
    </message>
    <message>
        <source>判断を保存できません。</source>
        <translation>Your decision could not be saved. </translation>
    </message>
    <message>
        <source>記録ファイル「%1」を読み込めません。</source>
        <translation>The log “%1” cannot be read.</translation>
    </message>
    <message>
        <source>ファイル「%1」%2の場所にあるのは、別のデータベースか、先頭の壊れたファイルです。</source>
        <translation>In the place of the file “%1”%2 there is another database, or a file whose beginning is damaged.</translation>
    </message>
    <message>
        <source>「%1」はメッセージのファイルではありません。</source>
        <translation>“%1” is not a message file.</translation>
    </message>
    <message>
        <source>「%1」はメールアドレスではありません。</source>
        <translation>“%1” is not a mail address.</translation>
    </message>
    <message>
        <source>画像.png</source>
        <translation>picture.png</translation>
    </message>
    <message>
        <source>なくなったファイルはないので、つなぎ直しません。</source>
        <translation>No file is missing, so there is nothing to reconnect.</translation>
    </message>
    <message>
        <source>データベースファイル「%1」は、前に使ったときより古い状態です（古い複製か、記録ファイルが失われています）。送信待ちのメッセージは、送信済みかどうかを確かめてください。</source>
        <translation>The database file “%1” is in an older state than when it was last used (it is an older copy, or its log is lost). Please find out whether the messages that wait to be sent have been sent already.</translation>
    </message>
    <message>
        <source>メールファイルが古い状態に戻っていたので、もう送信したかもしれません。</source>
        <translation>The mail file had gone back to an older state, so it may have been sent already.</translation>
    </message>
    <message>
        <source>前に使ったときより古い状態です。その後に受信したメッセージはこのファイルにありません。</source>
        <translation>It is in an older state than when it was last used. What was received since is not in this file.</translation>
    </message>
    <message>
        <source>（この版で編集できない条件）</source>
        <translation>(a condition that this version cannot edit)</translation>
    </message>
    <message>
        <source>（削除されたフォルダ）</source>
        <translation>(deleted folder)</translation>
    </message>
    <message>
        <source>（ほか: %1）</source>
        <translation>(also: %1)</translation>
    </message>
    <message>
        <source>（もとの値 %1）</source>
        <translation>(was %1) </translation>
    </message>
    <message>
        <source>パスワードをなくす(&amp;N)</source>
        <translation>&amp;No password</translation>
    </message>
    <message>
        <source>ファイルを削除できませんでした。</source>
        <translation>The file could not be deleted.</translation>
    </message>
    <message>
        <source>削除する</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>ログインできませんでした。</source>
        <translation>The login failed. </translation>
    </message>
    <message>
        <source>ほかのプログラムが使用中です。</source>
        <translation>Another program is using it.</translation>
    </message>
    <message>
        <source>このイベントのアカウントは削除されています。</source>
        <translation>The account of this event has been deleted.</translation>
    </message>
    <message>
        <source>このプロファイルは初めて使われます。パスワードをもう一度入力してください。</source>
        <translation>This profile is used for the first time. Enter the password once more.</translation>
    </message>
    <message>
        <source>「%1」が壊れているため、送信しません。</source>
        <translation>“%1” is damaged, so nothing is sent.</translation>
    </message>
    <message>
        <source>送信が済むと終了します。</source>
        <translation>The program will close when everything has been sent.</translation>
    </message>
    <message>
        <source>メッセージを入れられるフォルダがありません。条件のないフォルダを作ると、そこに入れられます。</source>
        <translation>There is no folder to put messages into. A folder without conditions can be filled by hand.</translation>
    </message>
    <message>
        <source>「look.lock」に書き込めません。フォルダの権限を確認してください。</source>
        <translation>“look.lock” cannot be written. Please check the permissions of the folder.</translation>
    </message>
    <message>
        <source>「%1」はほかの利用者が作ったものです。メールのリンクやファイルをこのプログラムに渡すことはできません。</source>
        <translation>“%1” was made by another user. Mail links and files cannot be passed to this program.</translation>
    </message>
    <message>
        <source>送信し終えていないメッセージがあります。送信してから終了しますか？

「いいえ」を選ぶと、送信を中止して終了します。送信中のものは、届いたかどうか分からなくなることがあります。残りは送信待ちのままになります。</source>
        <translation>There are messages that have not been sent yet. Send them before exiting?

“No” stops sending and exits. It may stay unknown whether the message being sent arrived; the rest keep waiting.</translation>
    </message>
    <message>
        <source>種類の分からないデータ</source>
        <translation>data of an unknown kind</translation>
    </message>
    <message>
        <source>空のファイル</source>
        <translation>an empty file</translation>
    </message>
    <message>
        <source>HTML文書</source>
        <translation>HTML document</translation>
    </message>
    <message>
        <source>プログラム</source>
        <translation>program</translation>
    </message>
    <message>
        <source>Windowsのプログラム</source>
        <translation>Windows program</translation>
    </message>
    <message>
        <source>スクリプト</source>
        <translation>script</translation>
    </message>
    <message>
        <source>プログラムを起動するファイル</source>
        <translation>file that starts a program</translation>
    </message>
    <message>
        <source>圧縮ファイル</source>
        <translation>archive</translation>
    </message>
    <message>
        <source>「%1」は、開くとパソコンに害を及ぼすおそれがあります。プログラムや、プログラムを含むファイルかもしれません。

名前が示す種類: %2
実際の中身: %3

開きますか？</source>
        <translation>Opening “%1” may harm your computer. It may be a program or contain one.

Type by its name: %2
Actual contents: %3

Open it?</translation>
    </message>
    <message>
        <source>見つかりません。</source>
        <translation>Not found.</translation>
    </message>
    <message>
        <source>このメッセージは送信済みです。同じ宛て先にもう一度送信しますか？</source>
        <translation>This message has been sent. Send it to the same recipients once more?</translation>
    </message>
    <message>
        <source>アドレスの選択では検索するまで何も選ばない(&amp;L)</source>
        <translation>The address picker chooses nobody unti&amp;l something is searched for</translation>
    </message>
    <message>
        <source>条件に合うメッセージを探すのに時間がかかりすぎるため、中止しました。</source>
        <translation>The search was stopped because it took too long.</translation>
    </message>
    <message>
        <source>フォルダが選択されていません。</source>
        <translation>No folder is chosen.</translation>
    </message>
    <message>
        <source>メッセージが選択されていません。</source>
        <translation>No message is chosen.</translation>
    </message>
    <message>
        <source>サーバーにあるメッセージの記録を読み書きできません。</source>
        <translation>The record of the messages on the server cannot be read or written.</translation>
    </message>
    <message>
        <source>受信(&amp;O)</source>
        <translation>Receiving (&amp;O)</translation>
    </message>
    <message>
        <source>作成(&amp;K)</source>
        <translation>Writing (&amp;K)</translation>
    </message>
    <message>
        <source>標準のブラウザーを起動できません。</source>
        <translation>The system&apos;s browser cannot be started.</translation>
    </message>
    <message>
        <source>お気に入りのページを標準のブラウザーで開く(&amp;B)</source>
        <translation>Open bookmarks in the system&apos;s &amp;browser</translation>
    </message>
    <message>
        <source>ファイルを新しい鍵で書き直せません。ディスクの空き容量と、ファイルが壊れていないかを確認してください。</source>
        <translation>The file cannot be written under a new key. Check the free space on the disk, and whether the file is damaged.</translation>
    </message>
    <message>
        <source>メールのファイルはフォルダ「%1」に残ります。</source>
        <translation>Its mail files stay in the folder “%1”.</translation>
    </message>
    <message>
        <source>添付ファイル「%1」は、添付してから変わっています。今の内容で送信してよろしいですか？</source>
        <translation>The file “%1” has changed since it was attached. Send it as it is now?</translation>
    </message>
    <message>
        <source>このプロファイルにログインすると変えられます</source>
        <translation>Can be changed when logged in to this profile</translation>
    </message>
    <message>
        <source>既存のファイル(&amp;E)..</source>
        <translation>&amp;Existing File..</translation>
    </message>
    <message>
        <source>既存のファイル</source>
        <translation>Existing File</translation>
    </message>
    <message>
        <source>データベース (*.mbx)</source>
        <translation>Databases (*.mbx)</translation>
    </message>
    <message>
        <source>プロファイルのフォルダ「%1」にあるファイルだけを使えます。先にそこへコピーしてください。</source>
        <translation>Only files in the profile&apos;s folder “%1” can be used. Copy it there first.</translation>
    </message>
    <message>
        <source>このファイルは一覧にあります。</source>
        <translation>This file is in the list.</translation>
    </message>
    <message>
        <source>メッセージのデータベースとして開けません。</source>
        <translation>It cannot be opened as a database of messages.</translation>
    </message>
    <message>
        <source>ファイルを残す</source>
        <translation>Keep the File</translation>
    </message>
    <message>
        <source>ファイル「%1」は「OK」を押したときに削除します。残すときは一覧から外れるだけで、「既存のファイル」で戻せます。</source>
        <translation>The file “%1” is deleted when “OK” is pressed. When it is kept it only leaves the list, and “Existing File” brings it back.</translation>
    </message>
    <message>
        <source>件名: </source>
        <translation>Subject: </translation>
    </message>
    <message>
        <source>サーバーの応答の順序が乱れています。</source>
        <translation>The server&apos;s answers are out of step.</translation>
    </message>
    <message>
        <source>パスワードが分からないので、自動では受信しません。送受信を押すと入力できます。</source>
        <translation>Not received automatically because the password is not known. Press Send and receive to enter it.</translation>
    </message>
    <message>
        <source>送信サーバーのユーザー名に使えない文字があります。</source>
        <translation>The user name of the outgoing server holds characters that cannot be used.</translation>
    </message>
    <message>
        <source>送信中なので、そのままにしました: %1</source>
        <translation>Being sent, so left as they were: %1</translation>
    </message>
    <message>
        <source>このフォルダは次のフォルダの条件に使われています: %1</source>
        <translation>The conditions of these folders refer to it: %1</translation>
    </message>
    <message>
        <source>このアドレスから送信を待つメッセージが%1通あります。</source>
        <translation>Messages from this address that wait to be sent: %1</translation>
    </message>
    <message>
        <source>「%1」のページからのメッセージ:</source>
        <translation>The page at “%1” says:</translation>
    </message>
    <message>
        <source>「%1」はすべてのメッセージに合います。</source>
        <translation>“%1” matches every message.</translation>
    </message>
    <message>
        <source>サーバーからの削除をやめました。</source>
        <translation>Deletion on the server was cancelled.</translation>
    </message>
    <message>
        <source>お気に入りのアドレスを入力してください。</source>
        <translation>Please enter the address of the bookmark.</translation>
    </message>
    <message>
        <source>標準のヘッダと開封通知を使う(&amp;H)</source>
        <translation>Use standard &amp;headers and receipts</translation>
    </message>
    <message>
        <source>Reply-To、In-Reply-To などです。</source>
        <translation>Reply-To, In-Reply-To and so on.</translation>
    </message>
    <message>
        <source>いまの習慣で返信する(&amp;U)</source>
        <translation>Reply the way that is &amp;usual today</translation>
    </message>
    <message>
        <source>関係者に宛先の人も含め、引用の1行目にも記号を付けます。</source>
        <translation>To all recipients, and with a mark at the first quoted line too.</translation>
    </message>
    <message>
        <source>うっかりを防ぐ(&amp;C)</source>
        <translation>&amp;Catch mistakes</translation>
    </message>
    <message>
        <source>保存済みかどうかを調べられないメッセージがあるので、受信しません。</source>
        <translation>For some messages it cannot be determined whether they are already stored, so they are not received. </translation>
    </message>
    <message>
        <source>配信できませんでした。</source>
        <translation>It could not be delivered.</translation>
    </message>
    <message>
        <source>配信が遅れています。サーバーが送り直します。</source>
        <translation>Its delivery is delayed. The server tries again.</translation>
    </message>
    <message>
        <source>配信されました。</source>
        <translation>It was delivered.</translation>
    </message>
    <message>
        <source>配信を知らせないサーバーに渡されました。</source>
        <translation>It was handed to a server that does not report deliveries.</translation>
    </message>
    <message>
        <source>複数の宛先に配信されました。</source>
        <translation>It was delivered to several recipients.</translation>
    </message>
    <message>
        <source>宛先のメールアドレスがありません。</source>
        <translation>The address does not exist.</translation>
    </message>
    <message>
        <source>宛先のドメイン（@の後）がありません。</source>
        <translation>The domain (behind the @) does not exist.</translation>
    </message>
    <message>
        <source>宛先のドメインはメールを受け取りません。</source>
        <translation>The domain does not accept mail.</translation>
    </message>
    <message>
        <source>受信者のメールボックスが使われていません。</source>
        <translation>The mailbox is not in use.</translation>
    </message>
    <message>
        <source>受信者のメールボックスがいっぱいです。</source>
        <translation>The mailbox is full.</translation>
    </message>
    <message>
        <source>メッセージが大きすぎます。</source>
        <translation>The message is too large.</translation>
    </message>
    <message>
        <source>受信者のサーバーが応答しません。</source>
        <translation>The server of the recipient does not answer.</translation>
    </message>
    <message>
        <source>受信者のサーバーが見つかりません。</source>
        <translation>The server of the recipient cannot be found.</translation>
    </message>
    <message>
        <source>決められた時間のうちに配信できませんでした。</source>
        <translation>It could not be delivered in time.</translation>
    </message>
    <message>
        <source>受信者のサーバーに受け取りを断られました。</source>
        <translation>The server of the recipient refused it.</translation>
    </message>
    <message>
        <source>差出人を確かめられないので、受け取りを断られました。</source>
        <translation>It was refused because its sender could not be verified.</translation>
    </message>
    <message>
        <source>開封されました。</source>
        <translation>It was opened.</translation>
    </message>
    <message>
        <source>開封されずに削除されました。</source>
        <translation>It was deleted without having been opened.</translation>
    </message>
    <message>
        <source>自動的に処理されました。</source>
        <translation>It was processed automatically.</translation>
    </message>
    <message>
        <source>開封したかどうかを知らせないとのことです。</source>
        <translation>The recipient does not say whether it was opened.</translation>
    </message>
    <message>
        <source>宛先: </source>
        <translation>To: </translation>
    </message>
    <message>
        <source>結果: </source>
        <translation>Outcome: </translation>
    </message>
    <message>
        <source>理由: </source>
        <translation>Reason: </translation>
    </message>
    <message>
        <source>サーバーの応答: </source>
        <translation>Reply of the server: </translation>
    </message>
    <message>
        <source>受信者: </source>
        <translation>Recipient: </translation>
    </message>
    <message>
        <source>予定への招待</source>
        <translation>Invitation</translation>
    </message>
    <message>
        <source>予定の取り消し</source>
        <translation>Cancelled appointment</translation>
    </message>
    <message>
        <source>招待への返事</source>
        <translation>Answer to an invitation</translation>
    </message>
    <message>
        <source>別の日時の提案</source>
        <translation>Another time is proposed</translation>
    </message>
    <message>
        <source>予定</source>
        <translation>Appointment</translation>
    </message>
    <message>
        <source>出席します</source>
        <translation>accepted</translation>
    </message>
    <message>
        <source>欠席します</source>
        <translation>declined</translation>
    </message>
    <message>
        <source>出席するかもしれません</source>
        <translation>tentative</translation>
    </message>
    <message>
        <source>代わりの人が出席します</source>
        <translation>delegated</translation>
    </message>
    <message>
        <source>まだ返事がありません</source>
        <translation>no answer yet</translation>
    </message>
    <message>
        <source>～</source>
        <translation> to </translation>
    </message>
    <message>
        <source>【%1】</source>
        <translation>[%1]</translation>
    </message>
    <message>
        <source>日時: </source>
        <translation>Date: </translation>
    </message>
    <message>
        <source>場所: </source>
        <translation>Where: </translation>
    </message>
    <message>
        <source>主催者: </source>
        <translation>Organizer: </translation>
    </message>
    <message>
        <source>本文.rtf</source>
        <translation>Text.rtf</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>%1の中</source>
        <translation>in %1</translation>
    </message>
    <message>
        <source>、パスワード付き</source>
        <translation>, with password</translation>
    </message>
    <message>
        <source>中のファイルを取り出す(&amp;X)..</source>
        <translation>E&amp;xtract Files..</translation>
    </message>
    <message>
        <source>予定への招待です。返事をしますか？</source>
        <translation>An invitation to an appointment. Do you want to answer?</translation>
    </message>
    <message>
        <source>このメールには予定があります。</source>
        <translation>This message contains an appointment.</translation>
    </message>
    <message>
        <source>カレンダー用に保存</source>
        <translation>Save for Calendar</translation>
    </message>
    <message>
        <source>予定のファイル (*.ics)</source>
        <translation>Appointments (*.ics)</translation>
    </message>
    <message>
        <source>。</source>
        <translation>.</translation>
    </message>
    <message>
        <source>中のファイルの取り出し</source>
        <translation>Extract Files</translation>
    </message>
    <message>
        <source>取り出したいファイルを選択して下さい。</source>
        <translation>Choose the files to extract.</translation>
    </message>
    <message>
        <source>「%1」のファイルは暗号化されています。パスワードを入力して下さい。</source>
        <translation>The files in “%1” are encrypted. Enter the password.</translation>
    </message>
    <message>
        <source>パスワードが違うか、ファイルが壊れています。もう一度入力して下さい。</source>
        <translation>The password is wrong or the file is damaged. Enter it again.</translation>
    </message>
    <message>
        <source>「%1」を開けません。壊れているか、知らない形式です。</source>
        <translation>“%1” cannot be opened. It is damaged or in an unknown format.</translation>
    </message>
    <message>
        <source>最後にログインしたプロファイルが既定になります。</source>
        <translation>The profile that was logged in last is the default one.</translation>
    </message>
    <message>
        <source>メールのデータベースファイルが入れ替わったので、サーバーからは削除しません。</source>
        <translation>The mail database file was replaced by another one. Nothing is deleted on the server.</translation>
    </message>
    <message>
        <source>カレンダー用に保存(&amp;4)..</source>
        <translation>Save for Calendar.. (&amp;4)</translation>
    </message>
    <message>
        <source>予定への返事として、カレンダーに伝わります:</source>
        <translation>Your answer to the calendar:</translation>
    </message>
    <message>
        <source>」「</source>
        <translation>”, “</translation>
    </message>
    <message>
        <source>（先頭の%1個です）</source>
        <translation> (the first %1)</translation>
    </message>
    <message>
        <source>電子署名（S/MIME）が付いています。署名が正しいかどうかは確かめていません。</source>
        <translation>The message has a digital signature (S/MIME). Whether it is valid has not been checked.</translation>
    </message>
    <message>
        <source>電子署名（OpenPGP）が付いています。署名が正しいかどうかは確かめていません。</source>
        <translation>The message has a digital signature (OpenPGP). Whether it is valid has not been checked.</translation>
    </message>
    <message>
        <source>S/MIMEで署名か暗号化されています。内容は添付ファイルの中にあり、ここでは開けません。</source>
        <translation>Signed or encrypted with S/MIME. The contents are in the attachment and cannot be opened here.</translation>
    </message>
    <message>
        <source>OpenPGPで暗号化されています。ここでは内容を読めません。</source>
        <translation>Encrypted with OpenPGP. The contents cannot be read here.</translation>
    </message>
    <message>
        <source>文字コードの指定がありません。</source>
        <translation>The message does not say which character set it uses.</translation>
    </message>
    <message>
        <source>メッセージの指定「%1」では読めない文字があります。</source>
        <translation>Some characters cannot be read in “%1”, which the message declares.</translation>
    </message>
    <message>
        <source>文字コードを選んで読む</source>
        <translation>Read as</translation>
    </message>
    <message>
        <source>この画面だけで使う文字コードを選んで下さい。上にあるものほど、文章として読めそうです。</source>
        <translation>Choose a character set for this window only. The likelier ones stand first.</translation>
    </message>
    <message>
        <source>名前で絞り込む</source>
        <translation>Filter by name</translation>
    </message>
    <message>
        <source>文字コード</source>
        <translation>Character set</translation>
    </message>
    <message>
        <source>この文字コードで読むと</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>読む</source>
        <translation>Read</translation>
    </message>
    <message>
        <source>この画面では「%1」として読んでいます。</source>
        <translation>Read as “%1” in this window.</translation>
    </message>
    <message>
        <source>文字コードを選んで読む(&amp;M)..</source>
        <translation>R&amp;ead as..</translation>
    </message>
    <message>
        <source>元の読み方に戻す(&amp;Y)</source>
        <translation>&amp;Back to normal</translation>
    </message>
    <message>
        <source>送信を始めてから変更されたか取り消されたので、元の内容は送信しませんでした。</source>
        <translation>Changed or cancelled after sending began; the former text was not sent.</translation>
    </message>
    <message>
        <source>「%1」はフォルダなので添付できません。</source>
        <translation>“%1” is a folder and cannot be attached.</translation>
    </message>
    <message>
        <source>このファイルは今のパスワードでは開けません。一覧から外したときのパスワードを入力してください。</source>
        <translation>This file does not open with the current password. Enter the password that was in use when it was removed from the list.</translation>
    </message>
    <message>
        <source>メッセージ条件に合うヘッダーが、もう一度受信すると異なりました。そのメッセージはサーバーに残します。</source>
        <translation>A header matched by a message rule was different when it was fetched again. That message stays on the server.</translation>
    </message>
    <message>
        <source>パスワードがないので、このパソコンのファイルを見られる人はだれでもメールを読めます。</source>
        <translation>There is no password, so whoever can see the files of this computer can read the mail.</translation>
    </message>
    <message>
        <source>メールは、パスワードから作った鍵で暗号化されています。パスワードを忘れると読めません。</source>
        <translation>The mail is encrypted with a key made from the password. Without the password it cannot be read.</translation>
    </message>
    <message>
        <source>別のプログラムが同じ作業をしています。</source>
        <translation>Another program is doing the same work.</translation>
    </message>
    <message>
        <source>Webページのスクリプトは許可したサイトだけで動かす(&amp;J)</source>
        <translation>Run scripts of web pages on allowed sites only (&amp;J)</translation>
    </message>
    <message>
        <source>このサイトに許可する(&amp;J)</source>
        <translation>Allow for this site (&amp;J)</translation>
    </message>
    <message>
        <source>「%1」のスクリプトは止めてあります。</source>
        <translation>Scripts of “%1” are blocked.</translation>
    </message>
    <message>
        <source>（繰り返しのうちの1回です）</source>
        <translation>(One of a series)</translation>
    </message>
    <message>
        <source>予定への返事として、カレンダーに伝わります（本文の返事の言葉は変わっていません）:</source>
        <translation>Your answer to the calendar (the text of the message has not changed with it):</translation>
    </message>
    <message>
        <source>このメッセージは、もう送信待ちではありません（送信中か、送信済みか、削除されています）。</source>
        <translation>This message is no longer waiting to be sent (it is being sent, was sent or was deleted).</translation>
    </message>
    <message>
        <source>添付ファイル「%1」は、添付してから変わっています。今の内容で保存してよろしいですか？</source>
        <translation>The attached file “%1” has changed since it was attached. Save it with its present content?</translation>
    </message>
    <message>
        <source>予定への招待です。そのうち「%1」に返事をしますか？</source>
        <translation>An invitation. Answer “%1”, which is one of its appointments?</translation>
    </message>
    <message>
        <source>タブで表示(&amp;B)</source>
        <translation>Show in Ta&amp;bs</translation>
    </message>
    <message>
        <source>すべてのフォルダの表示形式(&amp;A)</source>
        <translation>Layout of &amp;All Folders</translation>
    </message>
    <message>
        <source>前</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>次</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>日時はサーバーに届いた時刻にする(&amp;J)</source>
        <translation>Use the &amp;time when the server received a message</translation>
    </message>
    <message>
        <source>メッセージはありません。</source>
        <translation>There are no messages.</translation>
    </message>
    <message>
        <source>短い日時（きょうは時刻だけ）</source>
        <translation>short date (today the time alone)</translation>
    </message>
    <message>
        <source>選んだメッセージの表示(&amp;P)</source>
        <translation>Reading &amp;Pane</translation>
    </message>
    <message>
        <source>しない(&amp;N)</source>
        <translation>&amp;None</translation>
    </message>
    <message>
        <source>一覧の下(&amp;B)</source>
        <translation>&amp;Below the List</translation>
    </message>
    <message>
        <source>一覧の右(&amp;R)</source>
        <translation>To the &amp;Right of the List</translation>
    </message>
    <message>
        <source>設定を保存できません。</source>
        <translation>The settings cannot be saved. </translation>
    </message>
    <message>
        <source>元に戻す</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Caps Lock がオンになっています。</source>
        <translation>Caps Lock is on.</translation>
    </message>
    <message>
        <source>ブラウザーを起動できません。アドレスをコピーして使ってください。

</source>
        <translation>No browser can be started. Please copy the address.

</translation>
    </message>
    <message>
        <source> 他%1件</source>
        <translation> and %1 more</translation>
    </message>
    <message>
        <source>メッセージを選ぶと、ここに表示します。</source>
        <translation>The message that you choose is shown here.</translation>
    </message>
    <message>
        <source>ウィンドウで開く</source>
        <translation>Open in a Window</translation>
    </message>
    <message>
        <source>差出人が開封の通知を求めています。ウィンドウで開くと、送るかどうかを選べます。</source>
        <translation>The sender asks for a receipt. Open the message in a window to choose whether one is sent.</translation>
    </message>
    <message>
        <source>日時：</source>
        <translation>Date: </translation>
    </message>
    <message>
        <source>%d、%n さんは書きました：</source>
        <translation>On %d, %n wrote:</translation>
    </message>
    <message>
        <source>新しいメッセージと返信の本文に入ります。空なら入れません。</source>
        <translation>Stands in the text of new messages and replies. None when empty.</translation>
    </message>
    <message>
        <source>署名(&amp;B)</source>
        <translation>Signature &amp;block</translation>
    </message>
    <message>
        <source>設定を探す</source>
        <translation>Find a setting</translation>
    </message>
    <message>
        <source>設定を探す（Ctrl+F）</source>
        <translation>Find a setting (Ctrl+F)</translation>
    </message>
    <message>
        <source>いまのパスワード(&amp;T)</source>
        <translation>Curren&amp;t password</translation>
    </message>
    <message>
        <source>ありません</source>
        <translation>None</translation>
    </message>
    <message>
        <source>いまのパスワードが違います。</source>
        <translation>The current password is not correct.</translation>
    </message>
    <message>
        <source>選んだメッセージの表示(&amp;R)</source>
        <translation>&amp;Reading pane</translation>
    </message>
    <message>
        <source>しない</source>
        <translation>None</translation>
    </message>
    <message>
        <source>一覧の下</source>
        <translation>Below the list</translation>
    </message>
    <message>
        <source>一覧の右</source>
        <translation>To the right of the list</translation>
    </message>
    <message>
        <source>HTMLだけのメッセージはHTMLで開く(&amp;G)</source>
        <translation>Open messa&amp;ges that are HTML only as HTML</translation>
    </message>
    <message>
        <source>引用の前の行(&amp;D)</source>
        <translation>Line above the quote&amp;d text</translation>
    </message>
    <message>
        <source>署名を引用の上に入れる(&amp;G)</source>
        <translation>Put the si&amp;gnature above the quotation</translation>
    </message>
    <message>
        <source>スター ★、返信済み ↩、転送済み →の印</source>
        <translation>Marks: star ★, answered ↩, forwarded →</translation>
    </message>
    <message>
        <source>開封済みにする(&amp;E)</source>
        <translation>Mark as Op&amp;ened</translation>
    </message>
    <message>
        <source>スターを付ける、外す(&amp;S)</source>
        <translation>Add or Remove a &amp;Star</translation>
    </message>
    <message>
        <source>ほかのボタン</source>
        <translation>More Buttons</translation>
    </message>
    <message>
        <source>パスワードを表示</source>
        <translation>Show the password</translation>
    </message>
    <message>
        <source>条件</source>
        <translation>Conditions</translation>
    </message>
    <message>
        <source>（現地の時間: %1）</source>
        <translation> (local time of %1)</translation>
    </message>
    <message>
        <source>用件</source>
        <translation>To do</translation>
    </message>
    <message>
        <source>期限: </source>
        <translation>Due: </translation>
    </message>
    <message>
        <source>繰り返し: </source>
        <translation>Repeats: </translation>
    </message>
    <message>
        <source>毎時</source>
        <translation>every hour</translation>
    </message>
    <message>
        <source>%1時間ごと</source>
        <translation>every %1 hours</translation>
    </message>
    <message>
        <source>毎日</source>
        <translation>every day</translation>
    </message>
    <message>
        <source>%1日ごと</source>
        <translation>every %1 days</translation>
    </message>
    <message>
        <source>毎週</source>
        <translation>every week</translation>
    </message>
    <message>
        <source>%1週間ごと</source>
        <translation>every %1 weeks</translation>
    </message>
    <message>
        <source>毎月</source>
        <translation>every month</translation>
    </message>
    <message>
        <source>%1か月ごと</source>
        <translation>every %1 months</translation>
    </message>
    <message>
        <source>毎年</source>
        <translation>every year</translation>
    </message>
    <message>
        <source>%1年ごと</source>
        <translation>every %1 years</translation>
    </message>
    <message>
        <source>日</source>
        <translation>Sun</translation>
    </message>
    <message>
        <source>月</source>
        <translation>Mon</translation>
    </message>
    <message>
        <source>火</source>
        <translation>Tue</translation>
    </message>
    <message>
        <source>水</source>
        <translation>Wed</translation>
    </message>
    <message>
        <source>木</source>
        <translation>Thu</translation>
    </message>
    <message>
        <source>金</source>
        <translation>Fri</translation>
    </message>
    <message>
        <source>土</source>
        <translation>Sat</translation>
    </message>
    <message>
        <source>最後の</source>
        <translation>last </translation>
    </message>
    <message>
        <source>最後から%1番目の</source>
        <translation>no. %1 from the last </translation>
    </message>
    <message>
        <source>第%1</source>
        <translation>no. %1 </translation>
    </message>
    <message>
        <source>%1曜日</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>のうち最後の日</source>
        <translation>, the last of them</translation>
    </message>
    <message>
        <source>のうち%1番目の日</source>
        <translation>, no. %1 of them</translation>
    </message>
    <message>
        <source>末日</source>
        <translation>last day</translation>
    </message>
    <message>
        <source>%1日</source>
        <translation>day %1</translation>
    </message>
    <message>
        <source>%1月</source>
        <translation>month %1</translation>
    </message>
    <message>
        <source>、%1まで</source>
        <translation>, until %1</translation>
    </message>
    <message>
        <source>新しい表示を使いますか？

メッセージを表で並べ、選んだものをその下に表示し、フォルダをタブで開きます。「表示」と「ウィンドウ」のメニューと設定で、いつでも変えられます。</source>
        <translation>Use the new look?

Messages are listed in a table, the one you choose is shown below it, and folders open in tabs. You can change this at any time in the “View” and “Window” menus and in the options.</translation>
    </message>
    <message>
        <source>いまの操作を元に戻します（Ctrl+Z）。</source>
        <translation>Undoes what was just done (Ctrl+Z).</translation>
    </message>
    <message>
        <source>%dは日時、%nは名前、%aはアドレスです。</source>
        <translation>%d is the date, %n the name, %a the address.</translation>
    </message>
    <message>
        <source>新しいメッセージを上に表示する(&amp;U)</source>
        <translation>Show newest messages first (&amp;U)</translation>
    </message>
    <message>
        <source>最も古いページ</source>
        <translation>Oldest Page</translation>
    </message>
    <message>
        <source>回復コードを入力したのなら、打ち間違いがあります。</source>
        <translation>If you entered a recovery code, there is a typing mistake in it.</translation>
    </message>
    <message>
        <source>鍵のファイル「%1」は、このプロファイルのものではありません。</source>
        <translation>The key file “%1” does not belong to this profile. </translation>
    </message>
    <message>
        <source>鍵のファイル「%1」が壊れているか、読む権限がありません。</source>
        <translation>The key file “%1” is damaged, or you may not read it. </translation>
    </message>
    <message>
        <source>鍵のファイル「%1」がありません。</source>
        <translation>The key file “%1” is missing. </translation>
    </message>
    <message>
        <source>元のファイルを戻すか、パスワードの欄に回復コードを入力してください。</source>
        <translation>Put the original file back, or enter the recovery code as the password.</translation>
    </message>
    <message>
        <source>データフォルダ「%1」には、ほかの利用者も書き込めます。ほかの利用者が書き込めないフォルダに変えてください。</source>
        <translation>Other users can write to the data folder “%1”. Please change it so that they cannot.</translation>
    </message>
    <message>
        <source>回復コードと同じ形のものは、パスワードにできません。</source>
        <translation>What looks like a recovery code cannot be a password.</translation>
    </message>
    <message>
        <source>回復コード</source>
        <translation>Recovery Code</translation>
    </message>
    <message>
        <source>開く</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>開封済みにする</source>
        <translation>Mark as Opened</translation>
    </message>
    <message>
        <source>新着メッセージ %1通</source>
        <translation>New messages: %1</translation>
    </message>
    <message>
        <source>ほか%1通</source>
        <translation>and %1 more</translation>
    </message>
    <message>
        <source>メッセージを読み込めません。</source>
        <translation>The message cannot be read. </translation>
    </message>
    <message>
        <source>送信者のメールアドレスがありません。</source>
        <translation>The sender&apos;s mail address is missing.</translation>
    </message>
    <message>
        <source>この行は%1文字、%2桁</source>
        <translation>Characters in this line: %1, columns: %2</translation>
    </message>
    <message>
        <source>このようなメールをフォルダに集める(&amp;G)..</source>
        <translation>&amp;Gather Messages Like This in a Folder..</translation>
    </message>
    <message>
        <source>このようなメールを受信しない(&amp;X)..</source>
        <translation>Block Messages Like This (&amp;X)..</translation>
    </message>
    <message>
        <source>サーバーを探す(&amp;F)</source>
        <translation>&amp;Find Servers</translation>
    </message>
    <message>
        <source>メールアドレスのドメインに、受信と送信のサーバーを問い合わせます。</source>
        <translation>Asks the domain of the mail address for its receiving and sending servers.</translation>
    </message>
    <message>
        <source>サーバーを入れました: 受信 %1、送信 %2</source>
        <translation>Servers filled in: receiving %1, sending %2</translation>
    </message>
    <message>
        <source>中止(&amp;F)</source>
        <translation>Cancel (&amp;F)</translation>
    </message>
    <message>
        <source>問い合わせています…</source>
        <translation>Asking…</translation>
    </message>
    <message>
        <source>見つかりませんでした。プロバイダーの案内を見て入力してください。</source>
        <translation>No servers were found. Please enter them from your provider&apos;s instructions.</translation>
    </message>
    <message>
        <source>見つかったサーバーは受信 %1、送信 %2 です。入力されているものはそのままにしました。</source>
        <translation>The servers found are %1 for receiving and %2 for sending. What was filled in is left as it is.</translation>
    </message>
    <message>
        <source>尋ねないときも鳴らす(&amp;P)</source>
        <translation>&amp;Play it even when not asking</translation>
    </message>
    <message>
        <source>本文を72桁で折り返して送信する(&amp;W)</source>
        <translation>&amp;Wrap the text at 72 columns when it is sent</translation>
    </message>
    <message>
        <source>全角の文字は2桁です。引用した行とアドレスは折り返しません。</source>
        <translation>Full-width characters take 2 columns. Quoted lines and addresses are not wrapped.</translation>
    </message>
    <message>
        <source>フォント(&amp;Z)</source>
        <translation>Fonts (&amp;Z)</translation>
    </message>
    <message>
        <source>一覧(&amp;L)</source>
        <translation>&amp;List</translation>
    </message>
    <message>
        <source>一覧の大きさ(&amp;I)</source>
        <translation>S&amp;ize in the list</translation>
    </message>
    <message>
        <source>メッセージ(&amp;M)</source>
        <translation>&amp;Message</translation>
    </message>
    <message>
        <source>メッセージの大きさ(&amp;E)</source>
        <translation>Siz&amp;e of the message</translation>
    </message>
    <message>
        <source>作成中の大きさ(&amp;N)</source>
        <translation>Size while writi&amp;ng</translation>
    </message>
    <message>
        <source> ポイント</source>
        <translation> points</translation>
    </message>
    <message>
        <source>デスクトップの通知に出す(&amp;G)</source>
        <translation>Show a desktop notification (&amp;G)</translation>
    </message>
    <message>
        <source>作成中の本文(&amp;W)</source>
        <translation>Text being &amp;written</translation>
    </message>
    <message>
        <source>回復コードを表示(&amp;K)..</source>
        <translation>Show Recovery Code (&amp;K)..</translation>
    </message>
    <message>
        <source>その言葉のある設定は見つかりません。</source>
        <translation>No setting matches.</translation>
    </message>
    <message>
        <source>数式の入った表（プログラムを起動できます）</source>
        <translation>a table with formulas (which can start programs)</translation>
    </message>
    <message>
        <source>スクリプトの入ったPDF</source>
        <translation>a PDF with scripts</translation>
    </message>
    <message>
        <source>マクロやほかのファイルの入った文書</source>
        <translation>a document with macros or other files in it</translation>
    </message>
    <message>
        <source>配送状況.txt</source>
        <translation>delivery status.txt</translation>
    </message>
    <message>
        <source>元のヘッダー.txt</source>
        <translation>original header.txt</translation>
    </message>
    <message>
        <source>このメールには予定があります。ウィンドウで開くと、招待に返事をしたり、カレンダー用に保存したりできます。</source>
        <translation>This message contains an appointment. Open it in a window to answer an invitation or to save it for a calendar.</translation>
    </message>
    <message>
        <source>開封通知.txt</source>
        <translation>read receipt.txt</translation>
    </message>
    <message>
        <source>キーの一覧(&amp;K)</source>
        <translation>&amp;Keys</translation>
    </message>
    <message>
        <source>ページのキー</source>
        <translation>Keys of the page</translation>
    </message>
    <message>
        <source>:/guide/index.md</source>
        <translation>:/guide/index.en.md</translation>
    </message>
    <message>
        <source>「%1」に保存しました。</source>
        <translation>Saved as “%1”.</translation>
    </message>
    <message>
        <source>受信</source>
        <comment>folder</comment>
        <translation>Inbox</translation>
    </message>
    <message>
        <source>受信メッセージが保存されているフォルダです。</source>
        <translation>Holds the messages that were received.</translation>
    </message>
    <message>
        <source>送信</source>
        <comment>folder</comment>
        <translation>Sent</translation>
    </message>
    <message>
        <source>送信済みメッセージが保存されているフォルダです。</source>
        <translation>Holds the messages that were sent.</translation>
    </message>
    <message>
        <source>待ち</source>
        <comment>folder</comment>
        <translation>Waiting</translation>
    </message>
    <message>
        <source>編集中および送信待ちのメッセージが保存されているフォルダです。</source>
        <translation>Holds the messages that are being written or wait to be sent.</translation>
    </message>
    <message>
        <source>くずかご</source>
        <comment>folder</comment>
        <translation>Trash</translation>
    </message>
    <message>
        <source>くずかごに入れられたメッセージが保存されているフォルダです。</source>
        <translation>Holds the messages that were thrown away.</translation>
    </message>
    <message>
        <source>お気に入り。</source>
        <translation>Favorites</translation>
    </message>
    <message>
        <source>ホームページ</source>
        <translation>Home page</translation>
    </message>
    <message>
        <source>掲示板</source>
        <translation>Forum</translation>
    </message>
    <message>
        <source>アドレスが</source>
        <translation>address is</translation>
    </message>
    <message>
        <source>パスワードがないので、メールは、プロファイルのフォルダにある鍵のファイル「profile.key」で暗号化されています。メールのファイルだけを手に入れた人は読めませんが、フォルダごと手に入れた人は読めます。それも防ぐには、パスワードを決めてください。決めると、今の回復コードは使えなくなります。</source>
        <translation>There is no password, so the mail is encrypted with the key file “profile.key” in the profile&apos;s folder. Whoever gets hold of the mail files alone cannot read them, but whoever gets the whole folder can. To prevent that too, set a password. The current recovery code is then no longer valid.</translation>
    </message>
    <message>
        <source>【読み込めません】</source>
        <translation>[cannot be read]</translation>
    </message>
    <message>
        <source>&lt;P&gt;読み込めないメッセージがあります（%1通以上）。データベースファイルが壊れています。&lt;/P&gt;</source>
        <translation>&lt;P&gt;There are messages that cannot be read (%1 or more). The database file is damaged.&lt;/P&gt;</translation>
    </message>
    <message>
        <source>【送信を確認】</source>
        <translation>[check whether it was sent] </translation>
    </message>
    <message>
        <source>(件名なし)</source>
        <translation>(no subject)</translation>
    </message>
    <message>
        <source>件名</source>
        <comment>heading</comment>
        <translation>Subject</translation>
    </message>
    <message>
        <source>日時</source>
        <comment>heading</comment>
        <translation>Date</translation>
    </message>
    <message>
        <source>イベント</source>
        <comment>log</comment>
        <translation>Events</translation>
    </message>
    <message>
        <source>中止(&amp;C)</source>
        <translation>S&amp;top</translation>
    </message>
    <message>
        <source>条件に合うメッセージを数えています…</source>
        <translation>Counting matching messages…</translation>
    </message>
    <message>
        <source>&lt;p&gt;読み込み中です。&lt;/p&gt;</source>
        <translation>&lt;p&gt;Loading…&lt;/p&gt;</translation>
    </message>
    <message>
        <source>&lt;p&gt;中止しました。もう一度探すには「更新」を押してください。&lt;/p&gt;</source>
        <translation>&lt;p&gt;Stopped. Press “Refresh” to search again.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>条件に合うメッセージを探しています…</source>
        <translation>Searching for matching messages…</translation>
    </message>
    <message>
        <source>このデータフォルダを使っているほかのプログラムがあるので、一覧を作り直しません。そのプログラムを終了するか、それと同じ利用者として（同じホームフォルダで）起動してください。ファイルは何も変えていません。</source>
        <translation>Another program is using this data folder, so the list is not updated. End that program, or start as the same user (with the same home folder). No file has been changed.</translation>
    </message>
    <message>
        <source>新しいフォルダの名前を入力してください。</source>
        <translation>Please enter the name of the new folder.</translation>
    </message>
    <message>
        <source>新しいフォルダ(&amp;N)..</source>
        <translation>&amp;New Folder..</translation>
    </message>
    <message>
        <source>新しいフォルダ</source>
        <translation>New Folder</translation>
    </message>
    <message>
        <source>ファイル「%1」%2の場所にあるのは、パスワードが変わる前の古い複製です。つなぎ直すと、今のパスワードに合わせた複製に替わり、このファイルは別の名前で残ります。</source>
        <translation>What stands in the place of the file “%1”%2 is an older copy, from before the password changed. If you reconnect it, a copy that fits the current password takes its place, and this file is kept under another name.</translation>
    </message>
    <message>
        <source>このファイルのときのパスワード、または回復コードを入力してください。</source>
        <translation>Enter the password that this file was under, or its recovery code.</translation>
    </message>
    <message>
        <source>登録するアドレスブック：</source>
        <translation>Address book to add to:</translation>
    </message>
    <message>
        <source>「%1」には、もう登録されています。</source>
        <translation>Already in “%1”.</translation>
    </message>
    <message>
        <source>%1を「%2」に登録しました。</source>
        <translation>%1 was added to “%2”.</translation>
    </message>
    <message>
        <source>登録できるメールアドレスがありません。</source>
        <translation>There is no mail address that can be added.</translation>
    </message>
    <message>
        <source>このアドレスブックは編集中です。そのウィンドウを閉じてから登録してください。</source>
        <translation>This address book is being edited. Close its window, then add the address.</translation>
    </message>
    <message>
        <source>アドレスブックに登録(&amp;B)</source>
        <translation>Add to Address &amp;Book</translation>
    </message>
    <message>
        <source>次の未開封へ(&amp;N)</source>
        <translation>&amp;Next Unopened</translation>
    </message>
    <message>
        <source>未開封に戻す(&amp;T)</source>
        <translation>Mark as Unopened (&amp;T)</translation>
    </message>
    <message>
        <source>ほかに未開封のメッセージはありません。</source>
        <translation>There are no other unopened messages.</translation>
    </message>
    <message>
        <source>ディスクの空き容量が足りないので、「%1」を今のパスワードに合わせられません。</source>
        <translation>There is not enough space on the disk to re-encrypt “%1” with the current password.</translation>
    </message>
    <message>
        <source>「%1」は壊れているので、今のパスワードに合わせられません。</source>
        <translation>“%1” is damaged and cannot be re-encrypted with the current password.</translation>
    </message>
    <message>
        <source>%1通を選択</source>
        <translation>%1 selected</translation>
    </message>
    <message>
        <source>開くだけでほかの場所に接続するPDF</source>
        <translation>PDF that contacts another place as soon as it is opened</translation>
    </message>
    <message>
        <source>中身を確かめられないPDF</source>
        <translation>PDF whose content cannot be checked</translation>
    </message>
    <message>
        <source>開くだけでほかの場所に接続する文書</source>
        <translation>document that contacts another place as soon as it is opened</translation>
    </message>
    <message>
        <source>中身を確かめられない文書</source>
        <translation>document whose content cannot be checked</translation>
    </message>
    <message>
        <source>「%1」はこのパスワードで開けますが、メッセージのファイルは開けません。どちらかが、パスワードが変わる前の古い複製です。今のパスワードを入力してください。</source>
        <translation>“%1” opens with this password, but the file of messages does not. One of them is an older copy from before the password changed. Enter the current password.</translation>
    </message>
    <message>
        <source>このパスワードで開けるのは、最後に使ったときのものではないファイルだけです。入力したのが変える前のパスワードなら、今のパスワードを入力してください。</source>
        <translation>With this password only files open that are not those of the last use. If it is the password from before you changed it, enter the current one.</translation>
    </message>
    <message>
        <source>開くだけでほかの場所に接続する連絡先</source>
        <translation>a contact card that connects to another place when it is opened</translation>
    </message>
    <message>
        <source>パスワード付きの文書</source>
        <translation>a document with a password</translation>
    </message>
    <message>
        <source>古い形式の文書</source>
        <translation>a document of an old format</translation>
    </message>
    <message>
        <source>添付ファイルを開く</source>
        <translation>Open attachment</translation>
    </message>
    <message>
        <source>添付ファイルの中身を調べています…</source>
        <translation>Checking the attachment…</translation>
    </message>
    <message>
        <source>「%1」の中身は確かめられません（%2）。マクロなどのプログラムが入っていることもあります。知っている人から送られてくるはずのファイルのときだけ開いてください。

名前が示す種類: %3

開きますか？</source>
        <translation>The contents of “%1” cannot be checked (%2). There may be macros or other programs in it. Open it only if it comes from someone you know and you were expecting it.

Type by its name: %3

Open it?</translation>
    </message>
    <message>
        <source>左の一覧からフォルダを選ぶと、ここに表示します。</source>
        <translation>Choose a folder on the left to show it here.</translation>
    </message>
    <message>
        <source>フォルダが開いていません。左の一覧から選んでください。</source>
        <translation>No folder is open. Choose one on the left.</translation>
    </message>
    <message>
        <source>プログラムを起動したり、ほかの場所に接続したりする予定</source>
        <translation>an appointment that starts a program or connects to another place</translation>
    </message>
    <message>
        <source>

接続先：%1</source>
        <translation>

Connects to: %1</translation>
    </message>
    <message>
        <source>%1通</source>
        <translation>Messages: %1</translation>
    </message>
    <message>
        <source>

起動しているほうに渡せなかったため、次のものは開いていません：
</source>
        <translation>

These could not be passed to the program that is already running, and were not opened:
</translation>
    </message>
    <message>
        <source>（名前なし）</source>
        <translation>(no name)</translation>
    </message>
    <message>
        <source>このウィンドウではファイルを保存できません。システムのブラウザーで開いてください。</source>
        <translation>Files cannot be saved from this window. Open the page in the system&apos;s browser.</translation>
    </message>
    <message>
        <source>プロファイルのファイルは、どれも最後に使ったときのものではありません。古い複製ならそのときのパスワードで、パスワードを変えた直後に異常終了したのなら新しいパスワードで開けます。</source>
        <translation>None of the profile&apos;s files are the ones last used. Older copies open with the password of that time; if the program ended abnormally right after the password was changed, they open with the new one.</translation>
    </message>
    <message>
        <source>新しいメッセージはありません。</source>
        <translation>There are no new messages.</translation>
    </message>
    <message>
        <source>鍵のファイル「profile.key」を保存できません。ディスクの空き容量、フォルダの権限、デスクトップのキーリングを確認してください。</source>
        <translation>The key file “profile.key” cannot be stored. Please check the free space on the disk, the permissions of the folder and the desktop’s keyring.</translation>
    </message>
    <message>
        <source>パスワードをなくすと、パスワードを入力せずにメールを読めるようになります。新しい回復コードが作られます。前に印刷したコードがあっても、もう使えません。

よろしいですか？</source>
        <translation>Without a password the mail can be read without entering one. A new recovery code is made; a code that was printed before is no longer valid.

Do you want that?</translation>
    </message>
    <message>
        <source>鍵のファイル「profile.key」やデスクトップのキーリングの鍵がなくなったときは、ログインのパスワードの欄にこのコードを入力するとメールを読めます。このコードを見た人は、メールのファイルのコピーを読めます。パソコンとは別の所に保管してください。パスワードを決めたり、なくしたりすると、このコードは使えなくなります。</source>
        <translation>When the key file “profile.key” or the key in the desktop’s keyring is lost, enter this code as the password at the login to read your mail. Whoever sees this code can read copies of the mail files. Keep it elsewhere than the computer. Setting or removing a password makes this code invalid.</translation>
    </message>
    <message>
        <source>パスワードを決めるまで、このパソコンにあなたとしてログインした人はメールを読めます。鍵はデスクトップのキーリングにあります。なくなったときのために、同じ所で回復コードを印刷しておいてください。</source>
        <translation>Until a password is set, whoever logs in to this computer as you can read the mail. The key is in the desktop’s keyring; print the recovery code there too, in case it is lost.</translation>
    </message>
    <message>
        <source>パスワードを決めるまで、プロファイルのフォルダを手に入れた人はメールを読めます。</source>
        <translation>Until a password is set, whoever gets the profile’s folder can read the mail.</translation>
    </message>
    <message>
        <source>&lt;b&gt;パスワード&lt;/b&gt;: ツリーの「プロファイル」の下の名前で右クリックし、「プロパティ」。%1</source>
        <translation>&lt;b&gt;Password&lt;/b&gt;: right-click the name below “Profiles” in the tree, “Properties”. %1</translation>
    </message>
    <message>
        <source>「%1」を作成しています。</source>
        <translation>“%1” is being made.</translation>
    </message>
    <message>
        <source>「%1」に書き込めません。ディスクの空き容量とフォルダの権限を確認してください。</source>
        <translation>“%1” cannot be written. Please check the free space on the disk and the permissions of the folder.</translation>
    </message>
    <message>
        <source>プロファイルの鍵はデスクトップのキーリングにあり、読めません（鍵のファイル「%1」）。キーリングのロックを解除してもう一度ログインしてください。鍵がなくなっているときは、パスワードの欄に回復コードを入力してください。</source>
        <translation>The profile’s key is in the desktop’s keyring and cannot be read (key file “%1”). Unlock the keyring and log in again. If the key is gone, enter the recovery code as the password.</translation>
    </message>
    <message>
        <source>パスワードがないので、メールは、デスクトップのキーリングにある鍵で暗号化されています。プロファイルのフォルダを手に入れた人は読めませんが、このパソコンにあなたとしてログインした人は読めます。それも防ぐには、パスワードを決めてください。キーリングの鍵がなくなると回復コードでしか読めないので、回復コードを印刷して保管してください。パスワードを決めると、今の回復コードは使えなくなります。</source>
        <translation>There is no password, so the mail is encrypted with a key in the desktop’s keyring. Whoever gets the profile’s folder cannot read it; whoever logs in to this computer as you can. Set a password to prevent that too. If the keyring’s key is lost, only the recovery code opens the mail: print and keep it. Setting a password makes this code invalid.</translation>
    </message>
    <message>
        <source>元に戻せる操作はありません。</source>
        <translation>There is nothing to undo.</translation>
    </message>
    <message>
        <source>【断られました】</source>
        <translation>[Refused] </translation>
    </message>
    <message>
        <source>再送の前に確かめます。サーバーに断られたものは送り直さず、
捨てたメッセージはフォルダに表示せず、
消したものは受信し直しません。</source>
        <translation>Asks before sending a message again. Messages that a server refused are not retried
at each check, those in the trash are not shown in folders,
and those that were deleted are not received again.</translation>
    </message>
    <message>
        <source>スター</source>
        <translation>Star</translation>
    </message>
    <message>
        <source>フォルダに入れたものを受信に表示しない(&amp;F)</source>
        <translation>Hide what is &amp;filed from the inbox</translation>
    </message>
    <message>
        <source> 他%1名</source>
        <translation> and %1 more</translation>
    </message>
    <message>
        <source>差出人: </source>
        <translation>From: </translation>
    </message>
    <message>
        <source>---- 転送するメッセージ ----</source>
        <translation>---- Forwarded message ----</translation>
    </message>
    <message>
        <source>名前を入力して選びます。</source>
        <translation>Type a name to choose</translation>
    </message>
    <message>
        <source>本文中の画像 %1個</source>
        <translation>Images in the text: %1</translation>
    </message>
    <message>
        <source>すべて保存(&amp;V)..</source>
        <translation>Sa&amp;ve All..</translation>
    </message>
    <message>
        <source>「%1」を開くプログラムがありません。ファイルに保存しますか？</source>
        <translation>No program on this computer opens “%1”. Save it to a file?</translation>
    </message>
    <message>
        <source>同じアドレスのアカウントのうち、送信に使うものにします。</source>
        <translation>Among accounts with the same address, this one is used for sending.</translation>
    </message>
    <message>
        <source>起動したときに、このフォルダを開きます。</source>
        <translation>This folder is opened when the program starts.</translation>
    </message>
    <message>
        <source>メッセージの相手を登録するときに、このアドレスブックに登録します。</source>
        <translation>Correspondents of messages are added to this address book.</translation>
    </message>
    <message>
        <source>使用中のプロファイルは削除できません。</source>
        <translation>The profile in use cannot be deleted.</translation>
    </message>
    <message>
        <source>標準のフォルダは削除できません。</source>
        <translation>The standard folders cannot be deleted.</translation>
    </message>
    <message>
        <source>イベントはアカウントごとに1行にまとめる(&amp;L)</source>
        <translation>One &amp;line of events for each account</translation>
    </message>
    <message>
        <source>メッセージはまだありません。メールを受信してください。</source>
        <translation>There are no messages yet. Receive your mail.</translation>
    </message>
    <message>
        <source>「%1」に一致するメッセージはありません。</source>
        <translation>No message matches “%1”.</translation>
    </message>
    <message>
        <source>すべてのフォルダを検索する</source>
        <translation>Search all folders</translation>
    </message>
    <message>
        <source>検索をやめる</source>
        <translation>End the search</translation>
    </message>
    <message>
        <source>すべてのフォルダ</source>
        <translation>All folders</translation>
    </message>
    <message>
        <source>くずかごのほかのすべてのフォルダを検索します。</source>
        <translation>Searches all folders but the trash.</translation>
    </message>
    <message>
        <source>「%1」に入れられるのは、受信したメッセージだけです。</source>
        <translation>Only received messages can be put into “%1”.</translation>
    </message>
    <message>
        <source>（差出人 %1）</source>
        <translation> (sender: %1)</translation>
    </message>
    <message>
        <source>「%1」を選ぶと使えます。</source>
        <translation>Available with “%1”.</translation>
    </message>
    <message>
        <source>開封通知を求められたときに、送るかどうかを尋ねます。</source>
        <translation>Asks whether to send a read receipt when one is requested.</translation>
    </message>
    <message>
        <source>返信と転送で、件名に印を付け、もとの本文を引用します。</source>
        <translation>Answers and forwards mark the subject and quote the text.</translation>
    </message>
    <message>
        <source>送信をキャンセルできませんでした。</source>
        <translation>The sending could not be cancelled. </translation>
    </message>
    <message>
        <source>添付ファイルがある</source>
        <translation>has an attachment</translation>
    </message>
    <message>
        <source>本文も検索する</source>
        <translation>Search the texts, too</translation>
    </message>
    <message>
        <source>本文も</source>
        <translation>Texts Too</translation>
    </message>
    <message>
        <source>メッセージの本文も検索します。一通ずつ読むので時間がかかります。</source>
        <translation>Also searches the text of the messages. Each one has to be read, which takes time.</translation>
    </message>
    <message>
        <source>本文を検索しています…</source>
        <translation>Searching the texts…</translation>
    </message>
    <message>
        <source>本文を検索しています… %1／%2通</source>
        <translation>Searching the texts… message %1 of %2</translation>
    </message>
    <message>
        <source>「%1」で始まるものが%2個あります。続きを入力するか、↑ ↓ で選んでください。</source>
        <translation>%2 names begin with “%1”. Type on, or choose with ↑ ↓.</translation>
    </message>
    <message>
        <source>大きいのでここには表示しません。添付ファイルを開いてください。</source>
        <translation>Too large to be shown here. Please open the attachment.</translation>
    </message>
    <message>
        <source>画像として読めません。</source>
        <translation>It cannot be displayed as a picture.</translation>
    </message>
    <message>
        <source>元のメール.html</source>
        <translation>Original message.html</translation>
    </message>
    <message>
        <source>画像</source>
        <translation>Pictures</translation>
    </message>
    <message>
        <source>すべて</source>
        <translation>All</translation>
    </message>
    <message>
        <source>添付ファイルをすべて見せます。</source>
        <translation>Shows all attachments.</translation>
    </message>
    <message>
        <source>入っているフォルダ（すべてのフォルダの検索だけ）</source>
        <translation>The folder it is in (in a search of all folders only)</translation>
    </message>
    <message>
        <source>%1「%2」を削除します。よろしいですか？</source>
        <translation>%1 “%2” will be deleted. Continue?</translation>
    </message>
    <message>
        <source>%1の名前を入力してください。</source>
        <translation> Type the name of the new or changed entry (%1).</translation>
    </message>
    <message>
        <source>（%1「%2」）</source>
        <translation> (%1 “%2”)</translation>
    </message>
    <message>
        <source>もう一度起動されたら手前に出る(&amp;Q)</source>
        <translation>Come to the front when started again (&amp;Q)</translation>
    </message>
    <message>
        <source>「%1」は件名にもアドレスにもありません。本文を検索しています…</source>
        <translation>No subject or address contains “%1”. Searching the texts…</translation>
    </message>
    <message>
        <source>%1通以上</source>
        <translation>%1 messages or more</translation>
    </message>
    <message>
        <source>多いので、本文の検索は新しいものから%1通で終わりました。</source>
        <translation>There are many messages, so the search of the texts ended after the newest %1.</translation>
    </message>
    <message>
        <source>サーバーがログインか暗号化を求めています。アカウントの送信の設定を確認してください。</source>
        <translation>The server wants a login or encryption. Please check the account’s settings for sending.</translation>
    </message>
    <message>
        <source>サーバーの応答がログインの手順に合わないため、ログインを中止しました。</source>
        <translation>The server’s answer does not fit the way to log in, so the login was given up.</translation>
    </message>
    <message>
        <source>--in-protocol は pop3 か apop です。</source>
        <translation>--in-protocol takes pop3 or apop.</translation>
    </message>
    <message>
        <source>--in-security と --out-security は none か starttls か tls です。</source>
        <translation>--in-security and --out-security take none, starttls or tls.</translation>
    </message>
    <message>
        <source>--in-port は数です。</source>
        <translation>--in-port takes a number.</translation>
    </message>
    <message>
        <source>--out-port は数です。</source>
        <translation>--out-port takes a number.</translation>
    </message>
    <message>
        <source>アカウントを保存できません。</source>
        <translation>The account cannot be saved. </translation>
    </message>
    <message>
        <source>使い方: vornctl import パス... [--folder フォルダ] [--json]</source>
        <translation>usage: vornctl import PATH... [--folder FOLDER] [--json]</translation>
    </message>
    <message>
        <source>フォルダ「%1」はありません。</source>
        <translation>There is no folder “%1”.</translation>
    </message>
    <message>
        <source>保存済みですが読み込めません: </source>
        <translation>Stored, but cannot be read: </translation>
    </message>
    <message>
        <source>使い方: vornctl export フォルダ [--format mbox|maildir|eml] --out パス [--overwrite]</source>
        <translation>usage: vornctl export FOLDER [--format mbox|maildir|eml] --out PATH [--overwrite]</translation>
    </message>
    <message>
        <source>読み込めません: </source>
        <translation>Cannot be read: </translation>
    </message>
    <message numerus="yes">
        <source>書き出し %n通</source>
        <translation>
            <numerusform>%n message exported</numerusform>
            <numerusform>%n messages exported</numerusform>
        </translation>
    </message>
    <message>
        <source>、読み込めないもの %1通</source>
        <translation>, cannot be read: %1</translation>
    </message>
    <message>
        <source>--%1 の値がありません。</source>
        <translation>--%1 needs a value.</translation>
    </message>
    <message>
        <source>--%1 を読み込めません。</source>
        <translation>--%1 cannot be read.</translation>
    </message>
    <message>
        <source>正常です。</source>
        <translation>OK.</translation>
    </message>
    <message>
        <source>  読み込めません: </source>
        <translation>  Cannot be read: </translation>
    </message>
    <message>
        <source>--charset は jis、euc、sjis、utf8、auto、--mime は base64、qp、uu のどれかです。</source>
        <translation>--charset takes jis, euc, sjis, utf8 or auto, --mime takes base64, qp or uu.</translation>
    </message>
    <message>
        <source>--body-file を読み込めません。</source>
        <translation>--body-file cannot be read.</translation>
    </message>
    <message>
        <source>--out に書き込めません。</source>
        <translation>--out cannot be written.</translation>
    </message>
    <message>
        <source>終わるのを待っています。</source>
        <translation> Waiting for it to end.</translation>
    </message>
    <message>
        <source>使い方: vornctl doubtful [list [--json] | again メッセージ | sent メッセージ]</source>
        <translation>usage: vornctl doubtful [list [--json] | again MESSAGE | sent MESSAGE]</translation>
    </message>
    <message>
        <source>「%1」は、届いたかどうか分からないメッセージではありません。</source>
        <translation>“%1” is not a message whose arrival is unknown.</translation>
    </message>
    <message>
        <source>「%1」の扱いを決められません。</source>
        <translation>Nothing could be decided about “%1”. </translation>
    </message>
    <message>
        <source>添付: %1（%2、%3バイト）</source>
        <translation>Attachment: %1 (%2, bytes: %3)</translation>
    </message>
    <message>
        <source>使い方: vornctl inspect ファイル|- [--json]</source>
        <translation>usage: vornctl inspect FILE|- [--json]</translation>
    </message>
    <message>
        <source>一覧を最後まで読み込めません。</source>
        <translation>The list cannot be read to its end. </translation>
    </message>
    <message>
        <source>フォルダ「%1」のプロパティで条件を見直してください。</source>
        <translation> Check the conditions in the properties of the folder “%1”.</translation>
    </message>
    <message>
        <source>使い方: vornctl [--data フォルダ] [--profile 名前] [--password-fd 番号]
      [--create] [--reconnect ファイル]... [--former-password-fd 番号] コマンド

</source>
        <translation>usage: vornctl [--data FOLDER] [--profile NAME] [--password-fd N]
      [--create] [--reconnect FILE]... [--former-password-fd N] COMMAND

</translation>
    </message>
    <message>
        <source>  account add --name 名前 --address アドレス [--display 表示名]
      --in-server サーバー [--in-port ポート] --in-user ユーザー --in-password-fd 番号
      [--in-protocol pop3|apop] [--in-security none|starttls|tls] [--delete-on-server]
      [--out-server サーバー] [--out-port ポート] [--out-security none|starttls|tls]
      [--out-user ユーザー --out-password-fd 番号] [--default]
  receive [--account 名前] [--json]
  send [ファイル]... [--account 名前] [--json]
  doubtful [list [--json] | again メッセージ | sent メッセージ]
  list フォルダ [--json]
  page フォルダ [--page 番号] --out ファイル
  rules list|add 条件|test ファイル|- [--json]
  import パス... [--folder フォルダ] [--json]      （mbox、Maildir、eml）
  export フォルダ [--format mbox|maildir|eml] --out パス [--overwrite] [--json]
  check [--accept-damage] [--json]
  inspect ファイル|- [--json]
  open 0-6 ファイル|-|メッセージ [--json]
  compose --from アドレス --to アドレス [--cc アドレス] [--bcc アドレス] --subject 件名
      --body-file ファイル [--attach ファイル]... [--charset jis|euc|sjis|utf8|auto]
      [--mime base64|qp|uu] --out ファイル

</source>
        <translation>  account add --name NAME --address ADDRESS [--display NAME]
      --in-server SERVER [--in-port PORT] --in-user USER --in-password-fd N
      [--in-protocol pop3|apop] [--in-security none|starttls|tls] [--delete-on-server]
      [--out-server SERVER] [--out-port PORT] [--out-security none|starttls|tls]
      [--out-user USER --out-password-fd N] [--default]
  receive [--account NAME] [--json]
  send [FILE]... [--account NAME] [--json]
  doubtful [list [--json] | again MESSAGE | sent MESSAGE]
  list FOLDER [--json]
  page FOLDER [--page N] --out FILE
  rules list|add RULE|test FILE|- [--json]
  import PATH... [--folder FOLDER] [--json]      (mbox, Maildir, eml)
  export FOLDER [--format mbox|maildir|eml] --out PATH [--overwrite] [--json]
  check [--accept-damage] [--json]
  inspect FILE|- [--json]
  open 0-6 FILE|-|MESSAGE [--json]
  compose --from ADDRESS --to ADDRESS [--cc ADDRESS] [--bcc ADDRESS] --subject SUBJECT
      --body-file FILE [--attach FILE]... [--charset jis|euc|sjis|utf8|auto]
      [--mime base64|qp|uu] --out FILE

</translation>
    </message>
    <message>
        <source>フォルダは「受信」などの名前かシリアル番号です。パスワードは引数に書かず、ファイル記述子から
読み込みます。プロファイルのファイルがなくなったときは、--reconnect でつなぎ直すか、--create で
空のファイルを作ります。終了コード: 0 成功、1 失敗、2 使い方の誤り、3 ログインの失敗、
4 読み込めないメッセージを除いて終了</source>
        <translation>A folder is named by its name, such as Inbox, or its serial identifier. Passwords are never
written as arguments, but read from a file descriptor. When a file of the profile is lost,
--reconnect brings it back and --create makes an empty one. Exit codes: 0 done, 1 failed,
2 wrong usage, 3 the login failed, 4 done but for messages that cannot be read</translation>
    </message>
    <message>
        <source>
ファイルをつなぎ直すときは --reconnect ファイル を、新しい空のファイルを作るときは --create を付けてください。--reconnect は、そのファイルの複製を今のパスワードに合わせて元の場所に置き、指定したファイルは変えません。</source>
        <translation>
Add --reconnect FILE to reconnect the file, or --create to make a new, empty one. --reconnect puts a copy of that file, fitted to the current password, in its old place, and does not change the file that is named.</translation>
    </message>
    <message>
        <source>
そのファイルのときのパスワードか回復コードを --former-password-fd で渡してください。</source>
        <translation>
Give the password or the recovery code of that time with --former-password-fd.</translation>
    </message>
    <message>
        <source>vornctl check で調べてください。</source>
        <translation> Check it with vornctl check.</translation>
    </message>
    <message>
        <source>壊れていることを記録できません。</source>
        <translation>It cannot be recorded that it is damaged.</translation>
    </message>
    <message>
        <source>--%1 は使えません。</source>
        <translation>--%1 cannot be used here.</translation>
    </message>
    <message>
        <source>使い方: vornctl open 0-6 ファイル|メッセージ [--json]</source>
        <translation>usage: vornctl open 0-6 FILE|MESSAGE [--json]</translation>
    </message>
    <message>
        <source>メッセージ「%1」を読み込めません。</source>
        <translation>The message “%1” cannot be read.</translation>
    </message>
    <message>
        <source>--page は1以上の数、--out はファイル名です。</source>
        <translation>--page takes a number from 1 on, --out the name of a file.</translation>
    </message>
    <message>
        <source>ページを作成できません。</source>
        <translation>The page cannot be made. </translation>
    </message>
    <message>
        <source>受信 %1通、受信済み %2通、停止 %3通、サーバーから削除 %4通、エラー %5件（%6秒）</source>
        <translation>received: %1, already known: %2, blocked: %3, deleted on the server: %4, errors: %5 (%6 s)</translation>
    </message>
    <message>
        <source>アカウント「%1」はありません。</source>
        <translation>There is no account “%1”.</translation>
    </message>
    <message>
        <source>受信するアカウントがありません。</source>
        <translation>There is no account to receive from.</translation>
    </message>
    <message>
        <source>受信しません。vornctl check で調べ、そのまま受信するなら vornctl check --accept-damage を実行してください。</source>
        <translation> Nothing is received. Check it with vornctl check; to receive all the same, run vornctl check --accept-damage.</translation>
    </message>
    <message>
        <source>条件は「from:」か「x-mailer:」で始め、後にパターンを続けてください。</source>
        <translation>Begin the rule with “from:” or “x-mailer:”, followed by a pattern.</translation>
    </message>
    <message>
        <source>受信しません: </source>
        <translation>not received: </translation>
    </message>
    <message>
        <source>（サーバーから削除します）</source>
        <translation> (deleted on the server)</translation>
    </message>
    <message>
        <source>受信します。</source>
        <translation>received.</translation>
    </message>
    <message>
        <source>使い方: vornctl rules list|add 条件|test ファイル|- [--json]</source>
        <translation>usage: vornctl rules list|add RULE|test FILE|- [--json]</translation>
    </message>
    <message>
        <source>「%1」の差出人のアカウントがありません。--account で選んでください。何も送信していません。</source>
        <translation>There is no account for the sender of “%1”. Choose one with --account. Nothing was sent.</translation>
    </message>
    <message>
        <source>メッセージを保存できません。何も送信していません。</source>
        <translation>The messages cannot be stored. Nothing was sent. </translation>
    </message>
    <message>
        <source>送信 %1通、エラー %2件</source>
        <translation>sent: %1, errors: %2</translation>
    </message>
    <message>
        <source>送信できなかったメッセージは「待ち」に残っています。ファイルを指定しないvornctl sendで送信します（同じファイルをもう一度指定すると2通になります）。</source>
        <translation>Messages that could not be sent stay in “Waiting”. vornctl send without a file sends them (naming the same file again would send it twice).</translation>
    </message>
    <message numerus="yes">
        <source>届いたかどうか分からないメッセージが%n通あります。vornctl doubtful で確かめてください。</source>
        <translation>
            <numerusform>It is not known whether %n message arrived. Check it with vornctl doubtful.</numerusform>
            <numerusform>It is not known whether %n messages arrived. Check them with vornctl doubtful.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通を「%1」に取り込みました。</source>
        <translation>
            <numerusform>Imported %n message into “%1”.</numerusform>
            <numerusform>Imported %n messages into “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通は保存済みでした。</source>
        <translation>
            <numerusform> %n was already stored.</numerusform>
            <numerusform> %n were already stored.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>保存済みのもののうち、次の%n通は壊れていて読み込めません。</source>
        <translation>
            <numerusform>Of what is stored, the following message is damaged and cannot be read.</numerusform>
            <numerusform>Of what is stored, the following %n messages are damaged and cannot be read.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通を書き出しました。</source>
        <translation>
            <numerusform>%n message was written.</numerusform>
            <numerusform>%n messages were written.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>次の%n通は壊れていて読み込めないので、含まれていません。</source>
        <translation>
            <numerusform>The following message is damaged and cannot be read; it is not included.</numerusform>
            <numerusform>The following %n messages are damaged and cannot be read; they are not included.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>自分で作ったレイアウトのフォルダが%n個あります。それも変えますか？</source>
        <translation>
            <numerusform>%n folder has a layout of its own. Change it as well?</numerusform>
            <numerusform>%n folders have layouts of their own. Change them as well?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n件のアドレスを「%1」に登録しました。</source>
        <translation>
            <numerusform>%n address was added to “%1”.</numerusform>
            <numerusform>%n addresses were added to “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>メッセージ%n通を削除します。元には戻せません。よろしいですか？</source>
        <translation>
            <numerusform>%n message will be permanently deleted. Continue?</numerusform>
            <numerusform>%n messages will be permanently deleted. Continue?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>メッセージ%n通をそれぞれのウィンドウで開きます。よろしいですか？</source>
        <translation>
            <numerusform>%n message will be opened in a window of its own. Continue?</numerusform>
            <numerusform>%n messages will be opened, each in a window of its own. Continue?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>送信を試みて、届いたかどうか分からないメッセージが%n通あります。開いて確かめますか？</source>
        <translation>
            <numerusform>It is not known whether %n message that was being sent arrived. Open it?</numerusform>
            <numerusform>It is not known whether %n messages that were being sent arrived. Open them?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>前回、編集中のまま終了したメッセージが%n通あります。開きますか？</source>
        <translation>
            <numerusform>%n message was being written when the program last ended. Open it?</numerusform>
            <numerusform>%n messages were being written when the program last ended. Open them?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>.. %n通</source>
        <translation>
            <numerusform>.. %n message</numerusform>
            <numerusform>.. %n messages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>メッセージのファイル（.emlか.mbox）でない%n個のファイルは取り込みませんでした。</source>
        <translation>
            <numerusform>%n file that is not a message file (.eml or .mbox) was skipped.</numerusform>
            <numerusform>%n files that are not message files (.eml or .mbox) were skipped.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n バイト</source>
        <translation>
            <numerusform>%n byte</numerusform>
            <numerusform>%n bytes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>（ほかに%n件の予定があります）</source>
        <translation>
            <numerusform>(And %n more appointment)</numerusform>
            <numerusform>(And %n more appointments)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>末日の%n日前</source>
        <translation>
            <numerusform>%n day before the last</numerusform>
            <numerusform>%n days before the last</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>、全%n回</source>
        <translation>
            <numerusform>, once</numerusform>
            <numerusform>, %n times</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n個の添付ファイルを「%1」に保存しました。</source>
        <translation>
            <numerusform>Saved %n attachment to “%1”.</numerusform>
            <numerusform>Saved %n attachments to “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n個のファイルを「%1」に保存しました。</source>
        <translation>
            <numerusform>%n file was saved in “%1”.</numerusform>
            <numerusform>%n files were saved in “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>大きすぎる画像%n個は表示していません。</source>
        <translation>
            <numerusform>%n image is not shown because it is too large.</numerusform>
            <numerusform>%n images are not shown because they are too large.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>画像が多すぎるため、%n個は表示していません。</source>
        <translation>
            <numerusform>%n image is not shown because there are too many.</numerusform>
            <numerusform>%n images are not shown because there are too many.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>このコンピューターやその近くのネットワークにある画像%n個は、安全のため読み込んでいません。</source>
        <translation>
            <numerusform>%n image on this computer or its own network was not loaded, for safety.</numerusform>
            <numerusform>%n images on this computer or its own network were not loaded, for safety.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>背景など、ほかの形で書かれたリモート画像%n個は表示しません。</source>
        <translation>
            <numerusform>%n remote image that is written in another form, such as a background, is not shown.</numerusform>
            <numerusform>%n remote images that are written in other forms, such as backgrounds, are not shown.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>今は%n通のメッセージが当てはまります。</source>
        <translation>
            <numerusform>%n message matches now.</numerusform>
            <numerusform>%n messages match now.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>メッセージを%n通受信しました。</source>
        <translation>
            <numerusform>%n message was received.</numerusform>
            <numerusform>%n messages were received.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>サーバーが知らせた大きさと合わないメッセージが%n通ありました。サーバーには残します。</source>
        <translation>
            <numerusform>%n message did not fit the size that the server announced. It is left on the server.</numerusform>
            <numerusform>%n messages did not fit the size that the server announced. They are left on the server.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>メッセージ条件により%n通を受信しませんでした。</source>
        <translation>
            <numerusform>%n message was not received because of the rules.</numerusform>
            <numerusform>%n messages were not received because of the rules.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>そのうち%n通はサーバーから削除します。</source>
        <translation>
            <numerusform>%n of them is deleted on the server.</numerusform>
            <numerusform>%n of them are deleted on the server.</numerusform>
        </translation>
    </message>
    <message>
        <source>「%1」</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>(不明なメールアドレス)</source>
        <translation>(unknown mail address)</translation>
    </message>
    <message>
        <source> ／ </source>
        <translation> / </translation>
    </message>
    <message>
        <source>（%1）</source>
        <translation> (%1)</translation>
    </message>
    <message>
        <source>「%1」: </source>
        <translation>“%1”: </translation>
    </message>
    <message>
        <source>・</source>
        <comment>list</comment>
        <translation>• </translation>
    </message>
    <message>
        <source>第1</source>
        <translation>first </translation>
    </message>
    <message>
        <source>第2</source>
        <translation>second </translation>
    </message>
    <message>
        <source>第3</source>
        <translation>third </translation>
    </message>
    <message>
        <source>第4</source>
        <translation>fourth </translation>
    </message>
    <message>
        <source>第5</source>
        <translation>fifth </translation>
    </message>
    <message>
        <source>取り込んだメッセージを入れるフォルダを選択してください。</source>
        <translation>Choose the folder for the imported messages.</translation>
    </message>
    <message>
        <source>「%1」の取り込み</source>
        <translation>Importing “%1”</translation>
    </message>
    <message>
        <source>取り込みを元に戻せませんでした。</source>
        <translation>The import could not be undone. </translation>
    </message>
    <message>
        <source>「%1」の書き出し</source>
        <translation>Exporting “%1”</translation>
    </message>
    <message>
        <source>送信できていないメッセージ %1通</source>
        <translation>Messages not sent: %1</translation>
    </message>
    <message>
        <source>.. %1 / %2通</source>
        <translation>.. message %1 of %2</translation>
    </message>
    <message>
        <source>いつ送信を試みたか: %1</source>
        <translation>Tried at: %1</translation>
    </message>
    <message>
        <source>アカウントを作成(&amp;A)..</source>
        <translation>Create an &amp;Account..</translation>
    </message>
    <message>
        <source>送信するアカウントがまだないので、このメッセージは送信できません。書いておくことはできます。</source>
        <translation>There is no account yet to send this message with. You can write it now.</translation>
    </message>
    <message>
        <source>行の高さ（表、カード）(&amp;D)</source>
        <translation>Row Height (Table, Cards) (&amp;D)</translation>
    </message>
    <message>
        <source>普通</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>広い</source>
        <translation>Spacious</translation>
    </message>
    <message>
        <source>狭い</source>
        <translation>Compact</translation>
    </message>
    <message>
        <source>接続中 …（%1）</source>
        <translation>Connecting … (%1)</translation>
    </message>
    <message>
        <source>送信中 …（あと%1通、%2）</source>
        <translation>Sending … (%1 to go, %2)</translation>
    </message>
    <message>
        <source>%1 / %2 通を受信中 …（%3）</source>
        <translation>Receiving message %1 of %2 … (%3)</translation>
    </message>
    <message numerus="yes">
        <source>取り込んだメッセージ%n通をくずかごに入れました。</source>
        <translation>
            <numerusform>%n imported message was moved to the trash.</numerusform>
            <numerusform>%n imported messages were moved to the trash.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>取り込んでから変更された%n通は残しました。</source>
        <translation>
            <numerusform> %n message that has changed since was kept.</numerusform>
            <numerusform> %n messages that have changed since were kept.</numerusform>
        </translation>
    </message>
    <message>
        <source>一覧の鍵は利用者の設定にあります。いつもの利用者として（いつものホームフォルダで）実行してください。鍵をなくしたときは、Vornを起動するか --create を付けると、一覧を作り直します。</source>
        <translation>The list’s key is in the user’s settings. Run this as the usual user (with the usual home folder). If the key is lost, start Vorn or add --create, and the list is made anew.</translation>
    </message>
    <message>
        <source>その後、送信しました。</source>
        <translation>Sent since then.</translation>
    </message>
    <message>
        <source>.. %1 / %2 MB（%3通）</source>
        <translation>.. %1 / %2 MB (%3 messages)</translation>
    </message>
    <message>
        <source>サーバーに断られたので、送信していません。編集して、もう一度送信してください。</source>
        <translation>Not sent, because the server refused it. Edit the message and send it again.</translation>
    </message>
    <message>
        <source>先に、送信するアカウントを「アカウントを作成」のボタンで作ってください。</source>
        <translation>First create an account to send from, with the button “Create an Account”.</translation>
    </message>
    <message>
        <source>編集して再送</source>
        <translation>Edit and Resend</translation>
    </message>
    <message>
        <source>編集して再送(&amp;S)..</source>
        <translation>Edit and Re&amp;send..</translation>
    </message>
    <message>
        <source>開いて編集..</source>
        <translation>Open to Edit..</translation>
    </message>
    <message>
        <source>サーバーに断られたので、送信しませんでした。開いて編集し、もう一度送信してください。</source>
        <translation>The server refused it, so it was not sent. Open it, edit it and send it again.</translation>
    </message>
    <message numerus="yes">
        <source>サーバーに断られたメッセージが%n通あり、送信しませんでした。開いて編集し、もう一度送信してください。</source>
        <translation>
            <numerusform>One message that the server refused was not sent. Open it, edit it and send it again.</numerusform>
            <numerusform>%n messages that the server refused were not sent. Open them, edit them and send them again.</numerusform>
        </translation>
    </message>
    <message>
        <source>サーバーに断られたままなので、送信しませんでした。開いて編集し、もう一度送信してください。</source>
        <translation>The server has refused it before, so it was not sent. Open it, edit it and send it again.</translation>
    </message>
    <message>
        <source>届いているか確認中 …（%1）</source>
        <translation>Checking for new messages … (%1)</translation>
    </message>
    <message numerus="yes">
        <source>%n通を受信、ほかに届いているか確認中 …（%1）</source>
        <translation>
            <numerusform>Received %n message, checking for more … (%1)</numerusform>
            <numerusform>Received %n messages, checking for more … (%1)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通を「%1」に入れました。</source>
        <translation>
            <numerusform>Moved %n message to “%1”.</numerusform>
            <numerusform>Moved %n messages to “%1”.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通をくずかごに入れました。</source>
        <translation>
            <numerusform>Moved %n message to the trash.</numerusform>
            <numerusform>Moved %n messages to the trash.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通をくずかごから出しました。</source>
        <translation>
            <numerusform>Took %n message out of the trash.</numerusform>
            <numerusform>Took %n messages out of the trash.</numerusform>
        </translation>
    </message>
    <message>
        <source>次の未開封</source>
        <translation>Next Unopened</translation>
    </message>
    <message numerus="yes">
        <source>%n通を未開封にしました。</source>
        <translation>
            <numerusform>Marked %n message as unopened.</numerusform>
            <numerusform>Marked %n messages as unopened.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通を開封済みにしました。</source>
        <translation>
            <numerusform>Marked %n message as opened.</numerusform>
            <numerusform>Marked %n messages as opened.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通のスターを変えました。</source>
        <translation>
            <numerusform>Changed the star of %n message.</numerusform>
            <numerusform>Changed the stars of %n messages.</numerusform>
        </translation>
    </message>
    <message>
        <source>届いた日時 %1 と1日以上違います。</source>
        <translation>More than a day off: the message arrived on %1.</translation>
    </message>
    <message>
        <source>クリックすると未開封か開封済みになります</source>
        <translation>Click to mark as not opened or as opened</translation>
    </message>
    <message>
        <source>サーバーがこのアカウントのログインの方法に対応していません。</source>
        <translation>The server offers no way to log in that this account could use.</translation>
    </message>
    <message>
        <source>一覧</source>
        <translation>List</translation>
    </message>
    <message>
        <source>フォルダの一覧とページを切り替え F6</source>
        <translation>Turn between the tree and the page F6</translation>
    </message>
    <message>
        <source>取り込み %1通、くずかごから %2通、保存済み %3通</source>
        <translation>imported: %1, from the trash: %2, already stored: %3</translation>
    </message>
    <message numerus="yes">
        <source>%n通をくずかごから「%1」に戻しました。</source>
        <translation>
            <numerusform> %n message came back from the trash into “%1”.</numerusform>
            <numerusform> %n messages came back from the trash into “%1”.</numerusform>
        </translation>
    </message>
    <message>
        <source>編集する(&amp;T)</source>
        <translation>Edi&amp;t</translation>
    </message>
    <message>
        <source>「%1」の差出人はアカウント「%2」のものです。何も送信していません。</source>
        <translation>The sender of “%1” belongs to the account “%2”. Nothing was sent.</translation>
    </message>
    <message>
        <source>次の添付ファイルは、大きいか、読み込めないため、編集中のメッセージに残っていません。もう一度添付してください。</source>
        <translation>These attachments are too large or cannot be read, and the message that was being written has lost them. Please attach them again.</translation>
    </message>
    <message>
        <source>ほかのプログラムがプロファイルを作成しています。しばらくしてからやり直してください。</source>
        <translation>Another program is making the profile. Please try again in a while.</translation>
    </message>
    <message>
        <source>データフォルダに書き込めません。</source>
        <translation>The data folder cannot be written to.</translation>
    </message>
    <message>
        <source>保存済みのうち %1通は書きかけか送信待ちで、くずかごに入ったままです。</source>
        <translation>Of those already stored, %1 are drafts or wait to be sent, and stay in the trash.</translation>
    </message>
    <message>
        <source>取り込むフォルダ（mbox、Maildir、emlのファイル）</source>
        <translation>Folder to import (mbox, Maildir or .eml files)</translation>
    </message>
    <message>
        <source>このメッセージは削除されました。書いたものはこのウィンドウに残っていて、閉じるときに保存するかどうかを選べます。</source>
        <translation>This message has been deleted. What you wrote is still in this window, and you are asked whether to save it when you close it.</translation>
    </message>
    <message>
        <source>このメッセージは削除されました。このウィンドウを閉じるまでは、返信や転送、ファイルへの保存ができます。</source>
        <translation>This message has been deleted. Until you close this window you can still reply to it, forward it or save it to a file.</translation>
    </message>
    <message>
        <source>このメッセージは削除されました。新しいメッセージとして保存します。よろしいですか？</source>
        <translation>This message has been deleted. Save it as a new message?</translation>
    </message>
    <message>
        <source>ファイル「%1」%2は、途中で切れているか、壊れていて開けません。複製があればつなぎ直せます。新しい空のファイルを作ると、メッセージはそのまま残りますが、アカウントやフォルダは作り直しになります。壊れたファイルは別の名前で残ります。</source>
        <translation>The file “%1”%2 is cut short or damaged and cannot be opened. If you have a copy of it, that can be connected again. With a new empty file your messages stay as they are, but accounts and folders have to be made anew. The damaged file is kept under another name.</translation>
    </message>
    <message>
        <source>パスワードが入力されなかったので、送信しませんでした。</source>
        <translation>No password was entered, so nothing was sent.</translation>
    </message>
    <message numerus="yes">
        <source>%n通を削除しました。</source>
        <translation>
            <numerusform>%n message was deleted.</numerusform>
            <numerusform>%n messages were deleted.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n通が残っています。</source>
        <translation>
            <numerusform>%n message is left.</numerusform>
            <numerusform>%n messages are left.</numerusform>
        </translation>
    </message>
    <message>
        <source>メッセージの移動</source>
        <translation>Moving messages</translation>
    </message>
    <message>
        <source>くずかごの削除</source>
        <translation>Emptying the trash</translation>
    </message>
    <message>
        <source>取り込みの取り消し</source>
        <translation>Taking back the import</translation>
    </message>
    <message numerus="yes">
        <source>中止したので、%n通が残っています。</source>
        <translation>
            <numerusform> It was stopped; %n message is left.</numerusform>
            <numerusform> It was stopped; %n messages are left.</numerusform>
        </translation>
    </message>
    <message>
        <source>書きかけの内容を控えておけません。今プログラムが終わると失われます。</source>
        <translation>What you have written cannot be kept for the case of a crash; it would be lost if the program ended now. </translation>
    </message>
    <message numerus="yes">
        <source>うち%n通は未送信で、くずかごの中です。</source>
        <translation>
            <numerusform> %n of them is unsent, in the trash.</numerusform>
            <numerusform> %n of them are unsent, in the trash.</numerusform>
        </translation>
    </message>
    <message>
        <source>「%1」から：</source>
        <translation>From “%1”: </translation>
    </message>
    <message>
        <source>パスワードの変更</source>
        <translation>Changing the password</translation>
    </message>
    <message>
        <source>パスワードを変えています。メッセージが多いと、しばらくかかります。</source>
        <translation>The password is being changed. With many messages this takes a while.</translation>
    </message>
    <message>
        <source>パスワードが分からないので、自動では送信しません。送受信を押すと入力できます。</source>
        <translation>The password is not known, so nothing is sent automatically. Press Send and receive to enter it.</translation>
    </message>
    <message>
        <source>取り消し：%1</source>
        <translation>Undo: %1</translation>
    </message>
    <message>
        <source>送信するために、アカウント「%1」の受信のパスワードを入力してください。</source>
        <translation>To send, enter the password for receiving with the account “%1”.</translation>
    </message>
    <message>
        <source>入力されたパスワードではログインできませんでした。</source>
        <translation>The password that was entered was not accepted. </translation>
    </message>
    <message>
        <source>Enterで検索し、Escでやめます。</source>
        <translation>Enter searches, Esc gives it up.</translation>
    </message>
    <message>
        <source>このアドレスから送信を待つメッセージがあるか、確かめられません。</source>
        <translation>Whether messages from this address wait to be sent cannot be found out. </translation>
    </message>
    <message numerus="yes">
        <source>編集中だったメッセージのうち%n通を開けません。残してあるので、次に始めるときにもう一度尋ねます。</source>
        <translation>
            <numerusform>%n message that was being written cannot be opened. It is kept, and the next start asks again.</numerusform>
            <numerusform>%n messages that were being written cannot be opened. They are kept, and the next start asks again.</numerusform>
        </translation>
    </message>
</context>
</TS>

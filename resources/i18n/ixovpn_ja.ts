<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>構成: %1バイト</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>接続済み</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>接続中…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>未接続</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>切断中…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>エラー</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>終了</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>接続失敗</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>構成を取得中…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>待機中</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>サービスに接続済み</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>サービスが起動していません</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>設定</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>ご契約期間が終了しました</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>サポート</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>タップして接続</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>トンネル確立済み</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>サービスの応答待ち…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>お知らせ</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>紹介コードを入力してください:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>コードが無効です — 6文字の半角英数字で入力してください</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>紹介コード</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>保存</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>保存しました ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>例: ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>戻る</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>言語</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>言語</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>保存</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>設定</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>終了</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>紹介コード</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>設定</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>サポート</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>戻る</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>お問い合わせ</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>クリックしてコピー</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>コピーしました！</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>VPNの動作に関するお問い合わせはこちら:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>情報</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>紹介コード:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>サポート</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>バージョン:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>お客様ID:</translation>
  </message>
</context>
</TS>

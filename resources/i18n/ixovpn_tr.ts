<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr_TR" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Yapılandırma: %1 bayt</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Bağlı</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Bağlanıyor…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Bağlı değil</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Bağlantı kesiliyor…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Hata</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Çıkış</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Başarısız</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Yapılandırma alınıyor…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Boşta</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Hizmete bağlı</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Hizmet çalışmıyor</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ayarlar</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Abonelik sona erdi</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Destek</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Bağlanmak için dokunun</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tünel etkin</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Hizmet bekleniyor…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Bildirim</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Davet kodunuzu girin:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Geçersiz kod — tam 6&#xa0;İngilizce harf veya rakamdan oluşmalı</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Davet kodu</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Kaydet</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Kaydedildi ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>örn. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Geri</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>DİL</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Dil</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Kaydet</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ayarlar</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Çıkış</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Davet kodu</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ayarlar</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Destek</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Geri</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>İLETİŞİM</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Kopyalamak için tıklayın</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Kopyalandı!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>VPN ile ilgili tüm sorularınız için bize ulaşın:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>BİLGİ</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Davet kodu:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Destek</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Sürüm:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Kullanıcı kimliği:</translation>
  </message>
</context>
</TS>

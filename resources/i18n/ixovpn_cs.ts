<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="cs_CZ" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Konfigurace: %1 B</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Připojeno</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Připojování…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Odpojeno</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Odpojování…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Chyba</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Ukončit</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Nezdařilo se</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Načítání konfigurace…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Tunel není aktivní</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Připojeno ke službě</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Služba neběží</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Nastavení</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Předplatné vypršelo</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Podpora</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Klepnutím se připojíte</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunel je aktivní</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Čekání na službu…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Oznámení</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Zadejte doporučovací kód:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Neplatný kód — musí mít přesně 6&#xa0;písmen nebo číslic</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Doporučovací kód</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Uložit</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Uloženo ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>např. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Zpět</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>JAZYK</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Jazyk</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Uložit</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Nastavení</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Ukončit</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Doporučovací kód</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Nastavení</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Podpora</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Zpět</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>KONTAKT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Kliknutím zkopírujete</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Zkopírováno!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>S&#xa0;dotazy k&#xa0;fungování VPN se obracejte na&#xa0;nás:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMACE</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Doporučovací kód:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Podpora</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Verze:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Vaše ID:</translation>
  </message>
</context>
</TS>

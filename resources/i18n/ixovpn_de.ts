<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Konfiguration: %1 Byte</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Verbunden</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Wird verbunden…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Getrennt</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Wird getrennt…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Fehler</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Beenden</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Fehlgeschlagen</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Konfiguration wird abgerufen…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inaktiv</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Mit dem Dienst verbunden</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Dienst läuft nicht</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Einstellungen</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Abonnement abgelaufen</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Support</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Tippen Sie zum Verbinden</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunnel aktiv</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Warten auf den Dienst…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Hinweis</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Empfehlungscode eingeben:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Ungültiger Code — genau 6&#xa0;Buchstaben oder Ziffern erforderlich</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Empfehlungscode</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Speichern</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Gespeichert ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>z.&#xa0;B. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Zurück</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>SPRACHE</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Sprache</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Speichern</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Einstellungen</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Beenden</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Empfehlungscode</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Einstellungen</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Support</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Zurück</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>KONTAKT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Zum Kopieren klicken</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Kopiert!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Bei Fragen zum VPN erreichen Sie uns hier:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFO</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Empfehlungscode:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Support</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Version:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Ihre ID:</translation>
  </message>
</context>
</TS>

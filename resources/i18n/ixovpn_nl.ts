<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl_NL" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configuratie: %1 bytes</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Verbonden</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Verbinden…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Niet verbonden</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Verbinding verbreken…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Fout</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Afsluiten</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Mislukt</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Configuratie ophalen…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inactief</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Verbonden met de service</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Service is niet actief</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Instellingen</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Abonnement verlopen</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Ondersteuning</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Tik om te verbinden</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunnel actief</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Wachten op de service…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Melding</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Voer je verwijzingscode in:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Ongeldige code — precies 6&#xa0;letters of cijfers vereist</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Verwijzingscode</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Opslaan</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Opgeslagen ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>bijv. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Terug</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>TAAL</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Taal</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Opslaan</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Instellingen</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Afsluiten</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Verwijzingscode</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Instellingen</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Ondersteuning</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Terug</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTACT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Klik om te kopiëren</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Gekopieerd!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Heb je vragen over de werking van de VPN? Neem contact met ons op:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFO</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Verwijzingscode:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Ondersteuning</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Versie:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Je ID:</translation>
  </message>
</context>
</TS>

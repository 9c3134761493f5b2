<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl_PL" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Konfiguracja: %1 B</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Połączono</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Łączenie…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Rozłączono</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Rozłączanie…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Błąd</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Zakończ</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Niepowodzenie</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Pobieranie konfiguracji…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Tunel nieaktywny</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Połączono z usługą</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Usługa nie jest uruchomiona</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ustawienia</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Subskrypcja wygasła</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Pomoc techniczna</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Dotknij, aby się połączyć</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunel aktywny</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Oczekiwanie na usługę…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Komunikat</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Wpisz kod polecający:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Nieprawidłowy kod — wymagane dokładnie 6&#xa0;liter lub cyfr</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Kod polecający</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Zapisz</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Zapisano ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>np. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Wstecz</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>JĘZYK</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Język</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Zapisz</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ustawienia</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Zakończ</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Kod polecający</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ustawienia</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Pomoc techniczna</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Wstecz</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>KONTAKT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Kliknij, aby skopiować</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Skopiowano!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>W&#xa0;razie pytań dotyczących działania VPN prosimy o&#xa0;kontakt:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMACJE</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Kod polecający:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Pomoc techniczna</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Wersja:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Identyfikator:</translation>
  </message>
</context>
</TS>

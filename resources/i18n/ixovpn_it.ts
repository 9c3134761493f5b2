<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configurazione: %1 byte</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Connesso</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Connessione…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Disconnesso</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Disconnessione…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Errore</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Esci</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Connessione fallita</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Recupero della configurazione…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inattivo</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Connesso al servizio</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Servizio non in esecuzione</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Impostazioni</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Abbonamento scaduto</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistenza</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Tocca per connetterti</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunnel attivo</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>In attesa del servizio…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Avviso</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Inserisci il tuo codice invito:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Codice non valido — servono esattamente 6&#xa0;lettere o cifre</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Codice invito</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Salva</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Salvato ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>ad es. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Indietro</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>LINGUA</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Lingua</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Salva</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Impostazioni</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Esci</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Codice invito</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Impostazioni</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistenza</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Indietro</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTATTI</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Fai clic per copiare</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Copiato!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Per domande sul funzionamento della VPN puoi contattarci qui:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMAZIONI</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Codice invito:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistenza</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Versione:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Il tuo ID:</translation>
  </message>
</context>
</TS>

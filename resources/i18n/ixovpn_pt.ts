<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_PT" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configuração: %1 bytes</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Ligado</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>A ligar…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Desligado</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>A desligar…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Erro</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Sair</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Falhou</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>A obter a configuração…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inativo</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Ligado ao serviço</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Serviço parado</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Definições</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Subscrição expirada</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Suporte</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Toque para ligar</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Túnel ativo</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>A aguardar o serviço…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Aviso</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Introduza o seu código de convite:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Código inválido — tem de ter exatamente 6&#xa0;letras ou algarismos</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Código de convite</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Guardar</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Guardado ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>p.&#xa0;ex. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Voltar</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>IDIOMA</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Idioma</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Guardar</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Definições</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Sair</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Código de convite</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Definições</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Suporte</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Voltar</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTACTO</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Clique para copiar</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Copiado!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Para qualquer questão sobre o funcionamento da VPN, contacte-nos:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMAÇÕES</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Código de convite:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Suporte</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Versão:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>O seu ID:</translation>
  </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configuração: %1 bytes</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Conectado</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Conectando…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Desconectado</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Desconectando…</translation>
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
    <translation>Falha</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Obtendo a configuração…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inativo</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Conectado ao serviço</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Serviço parado</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Configurações</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Assinatura expirada</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Suporte</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Toque para conectar</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Túnel ativo</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Aguardando o serviço…</translation>
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
    <translation>Digite seu código de indicação:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Código inválido — deve ter exatamente 6&#xa0;letras ou números</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Código de indicação</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Salvar</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Salvo ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>ex.: ABC123</translation>
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
    <translation>Salvar</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Configurações</translation>
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
    <translation>Código de indicação</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Configurações</translation>
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
    <translation>CONTATO</translation>
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
    <translation>Em caso de dúvidas sobre o funcionamento da VPN, fale conosco:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMAÇÕES</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Código de indicação:</translation>
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
    <translation>Seu ID:</translation>
  </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configuración: %1 bytes</translation>
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
    <translation>Error</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Salir</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Conexión fallida</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Obteniendo la configuración…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inactivo</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Conectado al servicio</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Servicio detenido</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ajustes</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Suscripción caducada</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Soporte</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Pulsa para conectar</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Túnel activo</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Esperando al servicio…</translation>
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
    <translation>Introduce tu código de invitación:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Código no válido — debe tener exactamente 6&#xa0;letras o números</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Código de invitación</translation>
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
    <translation>p.&#xa0;ej. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Atrás</translation>
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
    <translation>Ajustes</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Salir</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Código de invitación</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Ajustes</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Soporte</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Atrás</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTACTO</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Haz clic para copiar</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>¡Copiado!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Si tienes dudas sobre el funcionamiento de la VPN, contacta con nosotros:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMACIÓN</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Código de invitación:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Soporte</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Versión:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Tu ID:</translation>
  </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk_UA" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Конфігурація: %1 Б</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Підключено</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Підключення…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Відключено</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Відключення…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Помилка</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Вихід</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Збій</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Отримання конфігурації…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Неактивно</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Підключено до служби</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Службу не запущено</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Налаштування</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Підписка закінчилася</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Підтримка</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Натисніть, щоб підключитися</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Тунель активний</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Очікування служби…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Повідомлення</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Введіть реферальний код:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Неправильний код — потрібно рівно 6&#xa0;латинських літер або цифр</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Реферальний код</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Зберегти</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Збережено ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>наприклад, ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Назад</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>МОВА</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Мова</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Зберегти</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Налаштування</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Вихід</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Реферальний код</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Налаштування</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Підтримка</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Назад</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>КОНТАКТИ</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Натисніть, щоб скопіювати</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Скопійовано!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>З&#xa0;питань роботи VPN звертайтеся до&#xa0;нас:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>ІНФОРМАЦІЯ</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Реферальний код:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Підтримка</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Версія:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Ваш ID:</translation>
  </message>
</context>
</TS>

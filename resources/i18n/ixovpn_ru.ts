<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>IXOVPN</source>
    <translation>IXOVPN</translation>
  </message>
  <message>
    <source>Config %1 bytes</source>
    <translation>Конфигурация: %1 Б</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Подключено</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Подключение…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Отключено</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Отключение…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Ошибка</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Выход</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Сбой</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Получение конфигурации…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Неактивно</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Подключено к службе</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Служба не запущена</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Настройки</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Срок подписки истёк</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Поддержка</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Нажмите, чтобы подключиться</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Туннель активен</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Ожидание службы…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Уведомление</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Введите реферальный код:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Неверный код — нужно ровно 6&#xa0;латинских букв или цифр</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Реферальный код</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Сохранить</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Сохранено ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>например, ABC123</translation>
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
    <translation>ЯЗЫК</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Язык</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Сохранить</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Настройки</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Выход</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Реферальный код</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Настройки</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Поддержка</translation>
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
    <translation>КОНТАКТЫ</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Нажмите, чтобы скопировать</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Скопировано!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>По вопросам работы VPN пишите нам:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>ИНФОРМАЦИЯ</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Реферальный код:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Поддержка</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Версия:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Ваш ID:</translation>
  </message>
</context>
</TS>

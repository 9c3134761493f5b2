<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>IXOVPN</source>
    <translation>IXOVPN</translation>
  </message>
  <message>
    <source>Config %1 bytes</source>
    <translation>Config %1 bytes</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Connected</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Connecting…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Disconnected</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Disconnecting…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Error</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Exit</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Failed</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Fetching config…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Idle</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Service connected</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Service is not running</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Settings</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Subscription expired</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Support</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Tap the switch to connect</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunnel up</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>Waiting for service…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Notice</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Enter your referral code:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Invalid code — must be exactly 6 letters or digits</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Referral Code</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Save</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Saved ✓</translation>
  </message>
  <message>
    <source>e.g. ABC123</source>
    <translation>e.g. ABC123</translation>
  </message>
</context>
<context>
  <name>ui::SettingsDialog</name>
  <message>
    <source>Back</source>
    <translation>Back</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>LANGUAGE</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Language</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Save</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Settings</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Exit</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Referral Code</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Settings</translation>
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
    <translation>Back</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTACT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Click to copy</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Copied!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>For any questions about VPN operation, please contact us:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFO</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Referral:</translation>
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
    <translation>Your ID:</translation>
  </message>
</context>
</TS>

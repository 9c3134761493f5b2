<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
  <name>MainWindow</name>
  <message>
    <source>Config %1 bytes</source>
    <translation>Configuration&#xa0;: %1 octets</translation>
  </message>
  <message>
    <source>Connected</source>
    <translation>Connecté</translation>
  </message>
  <message>
    <source>Connecting…</source>
    <translation>Connexion…</translation>
  </message>
  <message>
    <source>Disconnected</source>
    <translation>Déconnecté</translation>
  </message>
  <message>
    <source>Disconnecting…</source>
    <translation>Déconnexion…</translation>
  </message>
  <message>
    <source>Error</source>
    <translation>Erreur</translation>
  </message>
  <message>
    <source>Exit</source>
    <translation>Quitter</translation>
  </message>
  <message>
    <source>Failed</source>
    <translation>Échec</translation>
  </message>
  <message>
    <source>Fetching config…</source>
    <translation>Récupération de la configuration…</translation>
  </message>
  <message>
    <source>Idle</source>
    <translation>Inactif</translation>
  </message>
  <message>
    <source>Service connected</source>
    <translation>Connecté au service</translation>
  </message>
  <message>
    <source>Service is not running</source>
    <translation>Service arrêté</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Paramètres</translation>
  </message>
  <message>
    <source>Subscription expired</source>
    <translation>Abonnement expiré</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistance</translation>
  </message>
  <message>
    <source>Tap the switch to connect</source>
    <translation>Appuyez pour vous connecter</translation>
  </message>
  <message>
    <source>Tunnel up</source>
    <translation>Tunnel actif</translation>
  </message>
  <message>
    <source>Waiting for service…</source>
    <translation>En attente du service…</translation>
  </message>
</context>
<context>
  <name>ui::NoticeDialog</name>
  <message>
    <source>Notice</source>
    <translation>Information</translation>
  </message>
</context>
<context>
  <name>ui::ReferralDialog</name>
  <message>
    <source>Enter your referral code:</source>
    <translation>Entrez votre code de parrainage&#xa0;:</translation>
  </message>
  <message>
    <source>Invalid code — must be exactly 6 letters or digits</source>
    <translation>Code non valide — il doit comporter exactement 6&#xa0;lettres ou chiffres</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Code de parrainage</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Enregistrer</translation>
  </message>
  <message>
    <source>Saved ✓</source>
    <translation>Enregistré ✓</translation>
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
    <translation>Retour</translation>
  </message>
  <message>
    <source>LANGUAGE</source>
    <translation>LANGUE</translation>
  </message>
  <message>
    <source>Language</source>
    <translation>Langue</translation>
  </message>
  <message>
    <source>Save</source>
    <translation>Enregistrer</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Paramètres</translation>
  </message>
</context>
<context>
  <name>ui::SideMenu</name>
  <message>
    <source>Exit</source>
    <translation>Quitter</translation>
  </message>
  <message>
    <source>Referral Code</source>
    <translation>Code de parrainage</translation>
  </message>
  <message>
    <source>Settings</source>
    <translation>Paramètres</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistance</translation>
  </message>
</context>
<context>
  <name>ui::SupportDialog</name>
  <message>
    <source>Back</source>
    <translation>Retour</translation>
  </message>
  <message>
    <source>CONTACT</source>
    <translation>CONTACT</translation>
  </message>
  <message>
    <source>Click to copy</source>
    <translation>Cliquez pour copier</translation>
  </message>
  <message>
    <source>Copied!</source>
    <translation>Copié&#xa0;!</translation>
  </message>
  <message>
    <source>For any questions about VPN operation, please contact us:</source>
    <translation>Pour toute question sur le fonctionnement du VPN, contactez-nous&#xa0;:</translation>
  </message>
  <message>
    <source>INFO</source>
    <translation>INFORMATIONS</translation>
  </message>
  <message>
    <source>Referral:</source>
    <translation>Code de parrainage&#xa0;:</translation>
  </message>
  <message>
    <source>Support</source>
    <translation>Assistance</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Version&#xa0;:</translation>
  </message>
  <message>
    <source>Your ID:</source>
    <translation>Votre ID&#xa0;:</translation>
  </message>
</context>
</TS>

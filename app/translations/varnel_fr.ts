<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>ArchivedBar</name>
    <message>
        <source>Archived conversation</source>
        <translation>Conversation archivée</translation>
    </message>
    <message>
        <source>Unarchive</source>
        <translation>Désarchiver</translation>
    </message>
</context>
<context>
    <name>ArchivedRow</name>
    <message>
        <source>Unarchive</source>
        <translation>Désarchiver</translation>
    </message>
</context>
<context>
    <name>ArchivedSessionsView</name>
    <message>
        <source>Archived</source>
        <translation>Archivées</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Archived conversations</source>
        <translation>Conversations archivées</translation>
    </message>
    <message>
        <source>Load more</source>
        <translation>Charger la suite</translation>
    </message>
    <message>
        <source>No archived conversations</source>
        <translation>Aucune conversation archivée</translation>
    </message>
    <message>
        <source>Loading archived conversations</source>
        <translation>Chargement des conversations archivées</translation>
    </message>
</context>
<context>
    <name>AttachmentCapsules</name>
    <message>
        <source>Remove %1</source>
        <translation>Retirer %1</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Envoi en cours</translation>
    </message>
</context>
<context>
    <name>CodeBlock</name>
    <message>
        <source>Wrap lines</source>
        <translation>Couper les lignes</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>Copier le code</translation>
    </message>
</context>
<context>
    <name>Composer</name>
    <message>
        <source>Message Codex</source>
        <translation>Écrire à Codex</translation>
    </message>
    <message>
        <source>Transcribe again</source>
        <translation>Transcrire à nouveau</translation>
    </message>
    <message>
        <source>Attach image or video</source>
        <translation>Joindre une image ou une vidéo</translation>
    </message>
    <message>
        <source>Conversation settings</source>
        <translation>Réglages de la conversation</translation>
    </message>
    <message>
        <source>Send when done</source>
        <translation>Envoyer à la fin</translation>
    </message>
</context>
<context>
    <name>ConnectionRow</name>
    <message>
        <source>Connection</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Pair again</source>
        <translation>Associer à nouveau</translation>
    </message>
    <message>
        <source>Reconnect now</source>
        <translation>Reconnecter</translation>
    </message>
</context>
<context>
    <name>Conversations</name>
    <message>
        <source>Conversation</source>
        <translation>Conversation</translation>
    </message>
</context>
<context>
    <name>CopiedNote</name>
    <message>
        <source>Copied</source>
        <translation>Copié</translation>
    </message>
</context>
<context>
    <name>DictationButton</name>
    <message>
        <source>Dictation language</source>
        <translation>Langue de dictée</translation>
    </message>
</context>
<context>
    <name>HostLabel</name>
    <message>
        <source>your computer</source>
        <translation>votre ordinateur</translation>
    </message>
</context>
<context>
    <name>JumpButton</name>
    <message numerus="yes">
        <source>Jump to newest, %n reply(s) below</source>
        <translation>
            <numerusform>Aller au plus récent, %n réponse plus bas</numerusform>
            <numerusform>Aller au plus récent, %n réponses plus bas</numerusform>
        </translation>
    </message>
    <message>
        <source>Jump to newest</source>
        <translation>Aller au plus récent</translation>
    </message>
</context>
<context>
    <name>Limits</name>
    <message>
        <source>5-hour limit</source>
        <translation>Limite de 5 heures</translation>
    </message>
    <message>
        <source>Weekly limit</source>
        <translation>Limite hebdomadaire</translation>
    </message>
    <message>
        <source>Token limit</source>
        <translation>Limite de jetons</translation>
    </message>
    <message>
        <source>%1% left</source>
        <translation>reste %1 %</translation>
    </message>
    <message>
        <source>5-hour token limit</source>
        <translation>Limite de jetons sur 5 heures</translation>
    </message>
    <message>
        <source>Weekly token limit</source>
        <translation>Limite de jetons hebdomadaire</translation>
    </message>
    <message>
        <source>Codex did not provide a reset time for this limit.</source>
        <translation>Codex n’a pas indiqué quand cette limite se renouvelle.</translation>
    </message>
    <message>
        <source>Your token limit resets %1.</source>
        <translation>Votre limite de jetons se renouvelle le %1.</translation>
    </message>
</context>
<context>
    <name>LinkDialog</name>
    <message>
        <source>Open this link?</source>
        <translation>Ouvrir ce lien ?</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Lien</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>MainTabView</name>
    <message>
        <source>Sessions</source>
        <translation>Sessions</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nouvelle</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>No conversation selected</source>
        <translation>Aucune conversation choisie</translation>
    </message>
</context>
<context>
    <name>MessageDialog</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>NewSession</name>
    <message>
        <source>Read only</source>
        <translation>Lecture seule</translation>
    </message>
    <message>
        <source>Workspace write</source>
        <translation>Écriture dans l’espace de travail</translation>
    </message>
    <message>
        <source>Full host access</source>
        <translation>Accès complet à l’hôte</translation>
    </message>
    <message>
        <source>Ask when needed</source>
        <translation>Demander si nécessaire</translation>
    </message>
    <message>
        <source>Never ask</source>
        <translation>Ne jamais demander</translation>
    </message>
</context>
<context>
    <name>NewSessionView</name>
    <message>
        <source>New Session</source>
        <translation>Nouvelle session</translation>
    </message>
    <message>
        <source>Workspace</source>
        <translation>Espace de travail</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projet</translation>
    </message>
    <message>
        <source>This targets /root and can affect the administrator home.</source>
        <translation>Ceci vise /root et peut toucher au dossier de l’administrateur.</translation>
    </message>
    <message>
        <source>I understand the risk</source>
        <translation>Je comprends le risque</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modèle</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Mode</translation>
    </message>
    <message>
        <source>Reasoning</source>
        <translation>Raisonnement</translation>
    </message>
    <message>
        <source>Safety</source>
        <translation>Sécurité</translation>
    </message>
    <message>
        <source>Sandbox</source>
        <translation>Bac à sable</translation>
    </message>
    <message>
        <source>Approvals</source>
        <translation>Autorisations</translation>
    </message>
    <message>
        <source>This configuration reduces protection for commands started from your phone.</source>
        <translation>Cette configuration protège moins des commandes lancées depuis votre téléphone.</translation>
    </message>
    <message>
        <source>First prompt</source>
        <translation>Première consigne</translation>
    </message>
    <message>
        <source>What should Codex do?</source>
        <translation>Que doit faire Codex ?</translation>
    </message>
    <message>
        <source>Restore prompt</source>
        <translation>Rétablir la consigne</translation>
    </message>
    <message>
        <source>Start Codex session</source>
        <translation>Démarrer une session Codex</translation>
    </message>
</context>
<context>
    <name>PairingSheet</name>
    <message>
        <source>Scan pairing code</source>
        <translation>Scanner le code d’association</translation>
    </message>
    <message>
        <source>Paste code</source>
        <translation>Coller le code</translation>
    </message>
    <message>
        <source>Open QR image</source>
        <translation>Ouvrir une image QR</translation>
    </message>
    <message>
        <source>Or type the code</source>
        <translation>Ou saisissez le code</translation>
    </message>
    <message>
        <source>Pairing code</source>
        <translation>Code d’association</translation>
    </message>
    <message>
        <source>Pair</source>
        <translation>Associer</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Images</translation>
    </message>
</context>
<context>
    <name>PairingView</name>
    <message>
        <source>Varnel</source>
        <translation>Varnel</translation>
    </message>
    <message>
        <source>Pair with Codex</source>
        <translation>Associer avec Codex</translation>
    </message>
    <message>
        <source>Scan pairing code</source>
        <translation>Scanner le code d’association</translation>
    </message>
    <message>
        <source>Pairing…</source>
        <translation>Association…</translation>
    </message>
    <message>
        <source>Pairing expires after five minutes. The bridge remains private to your tailnet.</source>
        <translation>Le code expire après cinq minutes. Le pont reste privé dans votre tailnet.</translation>
    </message>
</context>
<context>
    <name>QueueList</name>
    <message>
        <source>Send when done</source>
        <translation>Envoyer à la fin</translation>
    </message>
    <message>
        <source>Edit queued message</source>
        <translation>Modifier le message en attente</translation>
    </message>
    <message>
        <source>Cancel queued message</source>
        <translation>Annuler le message en attente</translation>
    </message>
</context>
<context>
    <name>QuickSwitcher</name>
    <message>
        <source>Go to conversation</source>
        <translation>Aller à une conversation</translation>
    </message>
</context>
<context>
    <name>RateLimitRow</name>
    <message>
        <source>Shows when the token limit resets</source>
        <translation>Indique quand la limite de jetons se renouvelle</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>Rename conversation</source>
        <translation>Renommer la conversation</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
</context>
<context>
    <name>RenameSessionDialog</name>
    <message>
        <source>Rename conversation</source>
        <translation>Renommer la conversation</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
</context>
<context>
    <name>RequestCard</name>
    <message>
        <source>Codex needs input</source>
        <translation>Codex attend une réponse</translation>
    </message>
    <message>
        <source>Review the full request before responding.</source>
        <translation>Lisez toute la demande avant de répondre.</translation>
    </message>
</context>
<context>
    <name>RequestDecision</name>
    <message>
        <source>Decline</source>
        <translation>Refuser</translation>
    </message>
    <message>
        <source>Approve</source>
        <translation>Autoriser</translation>
    </message>
</context>
<context>
    <name>RequestDetails</name>
    <message>
        <source>Full request details</source>
        <translation>Détails complets de la demande</translation>
    </message>
</context>
<context>
    <name>RequestReply</name>
    <message>
        <source>Reply</source>
        <translation>Réponse</translation>
    </message>
    <message>
        <source>Send answer</source>
        <translation>Envoyer la réponse</translation>
    </message>
</context>
<context>
    <name>RootView</name>
    <message>
        <source>Varnel</source>
        <translation>Varnel</translation>
    </message>
</context>
<context>
    <name>ScopePicker</name>
    <message>
        <source>Approval scope</source>
        <translation>Portée de l’autorisation</translation>
    </message>
</context>
<context>
    <name>SearchField</name>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Clear search</source>
        <translation>Effacer la recherche</translation>
    </message>
</context>
<context>
    <name>SearchResultRow</name>
    <message>
        <source>Archived</source>
        <translation>Archivées</translation>
    </message>
</context>
<context>
    <name>SearchResults</name>
    <message>
        <source>Search results</source>
        <translation>Résultats de la recherche</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Recherche en cours</translation>
    </message>
    <message>
        <source>Load more results</source>
        <translation>Charger d’autres résultats</translation>
    </message>
</context>
<context>
    <name>SessionRow</name>
    <message>
        <source>Unpin</source>
        <translation>Détacher</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>Épingler</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archiver</translation>
    </message>
    <message>
        <source>LIVE</source>
        <translation>SUIVIE</translation>
    </message>
    <message>
        <source>Draft: %1</source>
        <translation>Brouillon : %1</translation>
    </message>
    <message>
        <source>Working</source>
        <translation>Au travail</translation>
    </message>
    <message>
        <source>Needs input</source>
        <translation>Réponse attendue</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>Interrupted</source>
        <translation>Interrompue</translation>
    </message>
    <message>
        <source>Stale</source>
        <translation>Sans nouvelles</translation>
    </message>
    <message>
        <source>Pinned</source>
        <translation>Épinglée</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Suivie</translation>
    </message>
    <message>
        <source>Unread</source>
        <translation>Non lue</translation>
    </message>
</context>
<context>
    <name>SessionView</name>
    <message>
        <source>Codex is working</source>
        <translation>Codex travaille</translation>
    </message>
    <message>
        <source>Loading conversation</source>
        <translation>Chargement de la conversation</translation>
    </message>
    <message>
        <source>Conversation actions</source>
        <translation>Actions de la conversation</translation>
    </message>
    <message>
        <source>No messages yet</source>
        <translation>Aucun message</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archiver</translation>
    </message>
    <message>
        <source>Copy resume command</source>
        <translation>Copier la commande de reprise</translation>
    </message>
    <message>
        <source>Attach image or video</source>
        <translation>Joindre une image ou une vidéo</translation>
    </message>
    <message>
        <source>Images and videos (%1)</source>
        <translation>Images et vidéos (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
</context>
<context>
    <name>SessionsView</name>
    <message>
        <source>Varnel</source>
        <translation>Varnel</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Archived conversations</source>
        <translation>Conversations archivées</translation>
    </message>
    <message>
        <source>Conversations</source>
        <translation>Conversations</translation>
    </message>
    <message>
        <source>Active and recent</source>
        <translation>Actives et récentes</translation>
    </message>
    <message>
        <source>No Codex sessions</source>
        <translation>Aucune session Codex</translation>
    </message>
    <message>
        <source>Start Codex with the varnel command or create a session here.</source>
        <translation>Lancez Codex avec la commande varnel ou créez une session ici.</translation>
    </message>
    <message>
        <source>Loading conversations</source>
        <translation>Chargement des conversations</translation>
    </message>
    <message>
        <source>Archived</source>
        <translation>Archivées</translation>
    </message>
    <message>
        <source>Token limit reset</source>
        <translation>Renouvellement de la limite</translation>
    </message>
    <message>
        <source>This is what was saved on this device. It is brought up to date as soon as your host is reached.</source>
        <translation>Ceci est la copie gardée sur cet appareil. Elle sera mise à jour dès que votre hôte répondra.</translation>
    </message>
</context>
<context>
    <name>SettingsMenu</name>
    <message>
        <source>Fast</source>
        <translation>Rapide</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Host</source>
        <translation>Hôte</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Last contact</source>
        <translation>Dernier contact</translation>
    </message>
    <message>
        <source>Live Activity</source>
        <translation>Activité en direct</translation>
    </message>
    <message>
        <source>Allowed</source>
        <translation>Autorisée</translation>
    </message>
    <message>
        <source>Delivery</source>
        <translation>Transmission</translation>
    </message>
    <message>
        <source>Foreground prototype</source>
        <translation>Prototype au premier plan</translation>
    </message>
    <message>
        <source>With free signing, the latest state remains visible after locking but new updates wait until the app reconnects.</source>
        <translation>Avec la signature gratuite, le dernier état reste visible après le verrouillage, mais les nouveautés attendent que l’application se reconnecte.</translation>
    </message>
    <message>
        <source>Clear Live Activity</source>
        <translation>Effacer l’activité en direct</translation>
    </message>
    <message>
        <source>Pairing</source>
        <translation>Association</translation>
    </message>
    <message>
        <source>Forget this host</source>
        <translation>Oublier cet hôte</translation>
    </message>
    <message>
        <source>Compatibility</source>
        <translation>Compatibilité</translation>
    </message>
    <message>
        <source>Codex CLI contract</source>
        <translation>Contrat du CLI Codex</translation>
    </message>
    <message>
        <source>Phone API</source>
        <translation>API du téléphone</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>Codex needs input</source>
        <translation>Codex attend une réponse</translation>
    </message>
    <message>
        <source>A conversation failed</source>
        <translation>Une conversation a échoué</translation>
    </message>
    <message>
        <source>A conversation is done</source>
        <translation>Une conversation est terminée</translation>
    </message>
    <message>
        <source>The token limit resets</source>
        <translation>La limite de jetons se renouvelle</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Application</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Keep running when the window closes</source>
        <translation>Continuer quand la fenêtre se ferme</translation>
    </message>
    <message>
        <source>Quit Varnel</source>
        <translation>Quitter Varnel</translation>
    </message>
</context>
<context>
    <name>Sheet</name>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>ShortcutsWindow</name>
    <message>
        <source>Go to conversation</source>
        <translation>Aller à une conversation</translation>
    </message>
    <message>
        <source>New session</source>
        <translation>Nouvelle session</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Previous conversation</source>
        <translation>Conversation précédente</translation>
    </message>
    <message>
        <source>Next conversation</source>
        <translation>Conversation suivante</translation>
    </message>
    <message>
        <source>Next conversation that needs input</source>
        <translation>Prochaine conversation en attente</translation>
    </message>
    <message>
        <source>Newest message</source>
        <translation>Dernier message</translation>
    </message>
    <message>
        <source>Send message</source>
        <translation>Envoyer le message</translation>
    </message>
    <message>
        <source>Ctrl+Enter</source>
        <translation>Ctrl+Entrée</translation>
    </message>
    <message>
        <source>Stop current task</source>
        <translation>Arrêter la tâche en cours</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Échap</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Actions of a row</source>
        <translation>Actions d’une ligne</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>This list</source>
        <translation>Cette liste</translation>
    </message>
    <message>
        <source>Quit Varnel</source>
        <translation>Quitter Varnel</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
</context>
<context>
    <name>StatusSection</name>
    <message>
        <source>Shows the usage</source>
        <translation>Affiche l’utilisation</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Utilisation</translation>
    </message>
    <message>
        <source>Token limit</source>
        <translation>Limite de jetons</translation>
    </message>
</context>
<context>
    <name>TabStrip</name>
    <message>
        <source>Tabs</source>
        <translation>Onglets</translation>
    </message>
</context>
<context>
    <name>TableBlock</name>
    <message>
        <source>Table</source>
        <translation>Tableau</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
</context>
<context>
    <name>TranscriptMessage</name>
    <message>
        <source>You</source>
        <translation>Vous</translation>
    </message>
    <message>
        <source>Codex</source>
        <translation>Codex</translation>
    </message>
    <message>
        <source>Use again</source>
        <translation>Réutiliser</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
</context>
<context>
    <name>TranscriptView</name>
    <message>
        <source>Transcript</source>
        <translation>Transcription</translation>
    </message>
</context>
<context>
    <name>UndoBar</name>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>Usage</name>
    <message>
        <source>Day %1, Tokens %2</source>
        <translation>Jour %1, jetons %2</translation>
    </message>
    <message>
        <source> days</source>
        <translation> jours</translation>
    </message>
    <message>
        <source>Lifetime</source>
        <translation>Au total</translation>
    </message>
    <message>
        <source>Peak day</source>
        <translation>Jour record</translation>
    </message>
    <message>
        <source>Current streak</source>
        <translation>Série en cours</translation>
    </message>
    <message>
        <source>Longest streak</source>
        <translation>Plus longue série</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modèle</translation>
    </message>
</context>
<context>
    <name>UsageChart</name>
    <message>
        <source>Daily token usage chart</source>
        <translation>Graphique des jetons par jour</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Jours</translation>
    </message>
</context>
<context>
    <name>UsageDashboardView</name>
    <message>
        <source>Usage</source>
        <translation>Utilisation</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Usage unavailable</source>
        <translation>Utilisation indisponible</translation>
    </message>
    <message>
        <source>Daily tokens</source>
        <translation>Jetons par jour</translation>
    </message>
    <message>
        <source>Conversation breakdown</source>
        <translation>Détail de la conversation</translation>
    </message>
</context>
<context>
    <name>WaitingBar</name>
    <message>
        <source>Codex needs input</source>
        <translation>Codex attend une réponse</translation>
    </message>
</context>
<context>
    <name>varnel::device::SpeechTranscriber</name>
    <message>
        <source>Enable microphone and speech recognition access in Settings.</source>
        <translation>Autorisez le microphone et la reconnaissance vocale dans les réglages.</translation>
    </message>
    <message>
        <source>Speech recognition is unavailable.</source>
        <translation>La reconnaissance vocale n’est pas disponible.</translation>
    </message>
    <message>
        <source>Could not start recording.</source>
        <translation>L’enregistrement n’a pas pu commencer.</translation>
    </message>
    <message>
        <source>No speech was recognized.</source>
        <translation>Aucune parole n’a été reconnue.</translation>
    </message>
</context>
<context>
    <name>varnel::screens::ComposerState</name>
    <message>
        <source>Stop current task</source>
        <translation>Arrêter la tâche en cours</translation>
    </message>
    <message>
        <source>Send message</source>
        <translation>Envoyer le message</translation>
    </message>
    <message>
        <source>%1 of %2 · %3</source>
        <translation>%1 sur %2 · %3</translation>
    </message>
</context>
<context>
    <name>varnel::screens::ConnectionState</name>
    <message>
        <source>Connected to %1</source>
        <translation>Connecté à %1</translation>
    </message>
    <message>
        <source>Reconnecting…</source>
        <translation>Reconnexion…</translation>
    </message>
    <message>
        <source>Revoked: pair again</source>
        <translation>Accès révoqué : associez à nouveau</translation>
    </message>
    <message>
        <source>Host not reachable since %1</source>
        <translation>Hôte injoignable depuis %1</translation>
    </message>
</context>
<context>
    <name>varnel::screens::ConversationSearch</name>
    <message>
        <source>Archived</source>
        <translation>Archivées</translation>
    </message>
    <message>
        <source>No results for “%1”</source>
        <translation>Aucun résultat pour « %1 »</translation>
    </message>
</context>
<context>
    <name>varnel::screens::DictationState</name>
    <message>
        <source>Stop recording</source>
        <translation>Arrêter l’enregistrement</translation>
    </message>
    <message>
        <source>Dictate message</source>
        <translation>Dicter le message</translation>
    </message>
    <message>
        <source>Speech recognition is unavailable.</source>
        <translation>La reconnaissance vocale n’est pas disponible.</translation>
    </message>
</context>
<context>
    <name>varnel::screens::LimitsState</name>
    <message>
        <source>%1, %2 percent left</source>
        <translation>%1, reste %2 pour cent</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Utilisation</translation>
    </message>
</context>
<context>
    <name>varnel::screens::NewSessionViewState</name>
    <message>
        <source>Select a Git worktree</source>
        <translation>Choisir un worktree Git</translation>
    </message>
    <message>
        <source>Go</source>
        <translation>Agir</translation>
    </message>
    <message>
        <source>Plan</source>
        <translation>Planifier</translation>
    </message>
    <message>
        <source>Select model</source>
        <translation>Choisir un modèle</translation>
    </message>
</context>
<context>
    <name>varnel::screens::PairingViewState</name>
    <message>
        <source>Run varnel pair on %1, then scan the one-time code.</source>
        <translation>Lancez varnel pair sur %1, puis scannez le code à usage unique.</translation>
    </message>
    <message>
        <source>Run &lt;code&gt;varnel pair&lt;/code&gt; on %1, then scan the one-time code.</source>
        <translation>Lancez &lt;code&gt;varnel pair&lt;/code&gt; sur %1, puis scannez le code à usage unique.</translation>
    </message>
    <message>
        <source>No camera is available. Copy the code that varnel pair prints on %1 and paste it here.</source>
        <translation>Aucune caméra. Copiez le code que varnel pair affiche sur %1 et collez-le ici.</translation>
    </message>
    <message>
        <source>There is no text to paste. Copy the code first.</source>
        <translation>Il n’y a pas de texte à coller. Copiez d’abord le code.</translation>
    </message>
    <message>
        <source>No pairing code was found in that picture.</source>
        <translation>Aucun code d’association dans cette image.</translation>
    </message>
</context>
<context>
    <name>varnel::screens::PendingRequestCardState</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>One reply answers all of these questions.</source>
        <translation>Une seule réponse vaut pour toutes ces questions.</translation>
    </message>
</context>
<context>
    <name>varnel::screens::PlanCardState</name>
    <message>
        <source>Completed</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>In progress</source>
        <translation>En cours</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Plan complete</source>
        <translation>Plan terminé</translation>
    </message>
    <message>
        <source>Plan</source>
        <translation>Planifier</translation>
    </message>
    <message>
        <source>Plan, %1 of %2 steps complete</source>
        <translation>Plan, %1 étapes terminées sur %2</translation>
    </message>
</context>
<context>
    <name>varnel::screens::SessionSettings</name>
    <message>
        <source>Model · %1</source>
        <translation>Modèle · %1</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Thinking · %1</source>
        <translation>Réflexion · %1</translation>
    </message>
    <message>
        <source>Mode · %1</source>
        <translation>Mode · %1</translation>
    </message>
    <message>
        <source>Goal</source>
        <translation>Objectif</translation>
    </message>
    <message>
        <source>Plan</source>
        <translation>Planifier</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Suivie</translation>
    </message>
    <message>
        <source>%1 of %2 tokens</source>
        <translation>%1 jetons sur %2</translation>
    </message>
    <message>
        <source>%1% used</source>
        <translation>%1 % utilisés</translation>
    </message>
    <message>
        <source>Live Context · %1%</source>
        <translation>Contexte en direct · %1 %</translation>
    </message>
    <message>
        <source>Live Context · Waiting</source>
        <translation>Contexte en direct · en attente</translation>
    </message>
</context>
<context>
    <name>varnel::screens::SessionViewState</name>
    <message>
        <source>Session</source>
        <translation>Session</translation>
    </message>
    <message>
        <source>Unpin conversation</source>
        <translation>Détacher la conversation</translation>
    </message>
    <message>
        <source>Pin conversation</source>
        <translation>Épingler la conversation</translation>
    </message>
</context>
<context>
    <name>varnel::screens::SettingsViewState</name>
    <message>
        <source>Not paired</source>
        <translation>Non associé</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>Reconnexion</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>The bridge speaks version %1 of the contract, this app version %2.</source>
        <translation>Le pont parle la version %1 du contrat, cette application la version %2.</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Système</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
</context>
<context>
    <name>varnel::screens::ShellState</name>
    <message>
        <source>Unknown error</source>
        <translation>Erreur inconnue</translation>
    </message>
    <message>
        <source>Varnel</source>
        <translation>Varnel</translation>
    </message>
    <message>
        <source>(%1) Varnel</source>
        <translation>(%1) Varnel</translation>
    </message>
</context>
<context>
    <name>varnel::screens::UsageDashboardState</name>
    <message>
        <source>Updated %1</source>
        <translation>Mis à jour le %1</translation>
    </message>
</context>
</TS>

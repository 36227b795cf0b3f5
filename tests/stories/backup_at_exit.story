# What the end of the program does with the company's files.
@ --today 2026-03-05
# Whoever has not chosen is asked once; who gives no answer is asked at the next end.
> {"sql":"UPDATE Company SET BackupOnExit = null"}
> {"quit":true}
< {"waiting":{"modal":"frmBackupOptions"}}
> {"click":"frmBackupOptions.btnCancel"}
< {"waiting":null,"closed":["frmBackupOptions","frmQuillon"]}
@ --today 2026-03-05
> {"menu":"File > Exit"}
< {"waiting":{"modal":"frmBackupOptions"}}
> {"set":"frmBackupOptions.radBackupOnExit","value":"Always"}
> {"click":"frmBackupOptions.btnOK"}
< {"waiting":null,"messages":[],"closed":["frmBackupOptions","frmQuillon"]}
@ none {folder}/company/backup/Thursday --today 2026-03-06
> {"sql":"SELECT BackupOnExit, CompanyName FROM Company"}
< {"rows":[[1,"Acme"]]}

# A copy each day of the week; not while somebody else is in the company.
@ --today 2026-03-06
> {"sql":"UPDATE Company SET CompanyName = 'Friday'"}
2> {"screens":true}
> {"quit":true}
< {"ok":true,"messages":[],"waiting":null,"closed":["frmQuillon"]}
2> {"open":"TfrmGLAccounts"}
@ none {folder}/company/backup/Friday
< {"messages":[{"text":"Error opening database '{folder}/company/backup/Friday'...\rThe specified directory does not exist."}]}
@ --today 2026-03-06
> {"quit":true}
@ none {folder}/company/backup/Friday
> {"sql":"SELECT CompanyName FROM Company"}
< {"rows":[["Friday"]]}

# Ask: the backup's screen, unless somebody else is there. What it cannot do is told, and it stays.
@ --today 2026-03-07
> {"sql":"UPDATE Company SET BackupOnExit = 3"}
2> {"screens":true}
> {"quit":true}
< {"ok":true,"messages":[],"waiting":null,"closed":["frmQuillon"]}
@ --today 2026-03-07
> {"quit":true}
< {"waiting":{"modal":"frmBackup"},"messages":[]}
2> {"screens":true}
> {"click":"frmBackup.btnOK"}
< {"ok":false,"messages":[{"text":"No one else can be using Quillon Enterprise Accounting"}],"waiting":{"modal":"frmBackup"}}
2> {"quit":true,"force":true}
2!
> {"click":"frmBackup.btnOK"}
< {"messages":[],"waiting":null,"closed":["frmBackup","frmQuillon"]}
@ none {folder}/company/backup/Saturday
> {"sql":"SELECT CompanyName FROM Company"}
< {"rows":[["Friday"]]}

# A copy that cannot be made holds nothing up.
= company/backup/Sunday []
@ --today 2026-03-08
> {"sql":"UPDATE Company SET BackupOnExit = 1"}
> {"quit":true}
< {"ok":true,"messages":[],"waiting":null,"closed":["frmQuillon"]}

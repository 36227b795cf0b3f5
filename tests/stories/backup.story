# A backup of the company: its options, its checks, the copy, and what stands in its way.
@ --today 2026-03-05
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)"}

# Options.
> {"menu":"Backup > Options..."}
< {"waiting":{"modal":"frmBackupOptions"}}
> {"state":"frmBackupOptions"}
< {"state":{"title":"Backup Options","controls":{"radBackupOnExit":{"caption":"Backup on Exit","value":"Never","data":2,
   "choices":["Always","Never","Ask"]},"btnOK":{},"btnCancel":{}}}}
> {"set":"frmBackupOptions.radBackupOnExit","value":"Ask"}
> {"click":"frmBackupOptions.btnCancel"}
< {"waiting":null,"closed":["frmBackupOptions"]}
> {"sql":"SELECT BackupOnExit FROM Company"}
< {"rows":[[2]]}
> {"menu":"Backup > Options..."}
2> {"menu":"Backup > Options..."}
> {"set":"frmBackupOptions.radBackupOnExit","value":"Always"}
2> {"set":"frmBackupOptions.radBackupOnExit","value":"Ask"}
2< {"waiting":{"dialog":{"text":"The 'tblCompany' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false}
2> {"quit":true,"force":true}
2!
> {"set":"frmBackupOptions.radBackupOnExit","value":"Never"}
> {"click":"frmBackupOptions.btnOK"}

# What is checked, in this order.
> {"menu":"Backup > Backup..."}
< {"waiting":{"modal":"frmBackup"},"focus":"frmBackup.editFolder"}
> {"state":"frmBackup"}
< {"state":{"controls":{"editFolder":{"caption":"Backup to folder:","value":"{folder}/company/backup/Thursday"},
   "btnBrowse":{"caption":"&Browse..."}},"default":"btnOK"}}
= a_file []
| "" | Backup to folder must be entered
| "  " | Backup to folder must be entered
| "{folder}/a_file/below" | Backup to folder invalid
| "{folder}/a_file" | Backup to folder invalid
| "/proc/quillon" | Backup to folder invalid
| "elsewhere" | Backup to folder invalid
| "{folder}/company" | Backup to folder must not be same as database folder
| "{folder}/company/." | Backup to folder must not be same as database folder
| "{folder}/company/../company/" | Backup to folder must not be same as database folder
> {"set":"frmBackup.editFolder","value":{1}}
> {"click":"frmBackup.btnOK"}
< {"ok":false,"messages":[{"kind":"error","caption":"Quillon Enterprise Accounting","text":"{2}"}],
   "focus":"frmBackup.editFolder","waiting":{"modal":"frmBackup"}}
|
# A folder that is there and takes no files.
> {"set":"frmBackup.editFolder","value":"/proc/self"}
> {"click":"frmBackup.btnOK"}
< {"ok":false,"messages":[{"kind":"error"}],"waiting":{"modal":"frmBackup"}}
> {"sql":"SELECT COUNT(*) N FROM GLAccnt"}
< {"rows":[[1]]}

# Another user, then a form of our own.
2> {"screens":true}
> {"set":"frmBackup.editFolder","value":"{folder}/copies/first"}
> {"click":"frmBackup.btnOK"}
< {"ok":false,"messages":[{"text":"No one else can be using Quillon Enterprise Accounting"}],"waiting":{"modal":"frmBackup"}}
2> {"quit":true}
2!
> {"click":"frmBackup.btnCancel"}
> {"menu":"GL > Accounts"}
> {"menu":"Backup > Backup..."}
> {"click":"frmBackup.btnOK"}
< {"ok":false,"messages":[{"text":"All forms must be closed before running this option"}]}
> {"click":"frmBackup.btnCancel"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"total":1}}}}
> {"close":"frmGLAccounts"}

# The copy; the company is open again at once.
> {"menu":"Backup > Backup..."}
> {"click":"frmBackup.btnBrowse"}
< {"waiting":{"dialog":{"kind":"folder","caption":"Backup to folder"}}}
> {"answer":"{folder}/copies/first"}
> {"click":"frmBackup.btnOK"}
< {"ok":true,"messages":[],"closed":["frmBackup"],"waiting":null}
> {"menu":"GL > Accounts"}
> {"click":"frmGLAccounts.mnuNew"}
> {"set":"frmGLAccount.editGLAccount","value":"2000"}
> {"set":"frmGLAccount.editAccountName","value":"Bank"}
> {"set":"frmGLAccount.radAccountType","value":"Asset"}
> {"click":"frmGLAccount.btnOK"}
> {"close":"frmGLAccounts"}
> {"menu":"Backup > Backup..."}
> {"click":"frmBackup.btnOK"}
< {"ok":true,"closed":["frmBackup"]}
> {"quit":true}

# What was copied is a company.
@ none {folder}/copies/first
> {"sql":"SELECT GLAccount FROM GLAccnt"}
< {"rows":[["1000"]]}
> {"quit":true}
@ none {folder}/company/backup/Thursday
> {"sql":"SELECT GLAccount FROM GLAccnt"}
< {"rows":[["1000"],["2000"]]}
> {"quit":true}

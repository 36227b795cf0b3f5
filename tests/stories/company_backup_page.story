# A company without a name has to be entered before its backup is chosen: the question leads to that page.
@ --today 2026-03-05 --country Canada
> {"sql":"UPDATE Company SET CompanyName = null"}
@ --today 2026-03-05 --country Canada
| {"menu":"General > Backup > Options"}
| {"open":"TfrmBackupOptions"}
> {1}
< {"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"text":"\"Your Company\" info must be entered before you can set backup options.\r\rWould you like to enter it now?"}}}
> {"answer":"No"}
< {"opened":[]}
|
> {"menu":"General > Backup > Options"}
> {"answer":"Yes"}
< {"opened":["frmCompany"],"focus":"frmCompany.radBackupOnExit"}
> {"set":"frmCompany.radBackupOnExit","value":"Always"}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Company Name' must have a value"}],"focus":"frmCompany.editCompanyName"}
> {"set":"frmCompany.editCompanyName","value":"Acme"}
> {"click":"frmCompany.btnOK"}
> {"sql":"SELECT CompanyName, BackupOnExit FROM Company"}
< {"rows":[["Acme",1]]}
